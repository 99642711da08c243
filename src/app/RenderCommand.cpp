#include "app/RenderCommand.h"

#include <optional>
#include <QCoreApplication>
#include <QFileInfo>

#include "app/CommandLine.h"
#include "app/ConsoleOutput.h"
#include "app/PresetChoice.h"
#include "engine/takes/RecordedTrack.h"
#include "midi/reader/SMFReader.h"
#include "nk/nk_exception.h"
#include "nk/nk_file_failure.h"
#include "nk/qt/nk_qt_string.h"
#include "render/OfflineEngine.h"
#include "render/RenderedSound.h"

namespace Kivora {

namespace {

using NK::FromQt;
using NK::ToQt;

QString Tr(const char* text) {
    return QCoreApplication::translate("CommandLine", text);
}

int Fail(const QString& sentence) {
    PrintError(sentence);
    return kFailureExit;
}

/// Empty when the file is whole and can be played.
QString FindFault(const NK::MIDI::SMFContent& content, const QString& path) {
    if (content.damage) {
        return path + ": " + ToQt(NK::MIDI::Describe(*content.damage));
    }
    if (content.lengthUs / 1000 > OfflineEngine::kLongestMs) {
        return path + ": " + Tr(QT_TRANSLATE_NOOP("CommandLine", "The piece is longer than six hours."));
    }
    return {};
}

/// Why the sound could not be made, in a sentence; empty when only the file could not be written, and on success.
QString SaveSound(const LibMidi::CaptureStore::View& played, const LibMidi::SynthControl& synth, const QString& path,
                  bool& isSaved) {
    const std::string font = synth.GetSoundFontPath().ToUtf8();
    if (font.empty()) {
        return Tr(QT_TRANSLATE_NOOP("CommandLine", "No sound font is found; --sound-font names one."));
    }
    try {
        LibMidi::OfflineRenderer renderer(font, synth.GetSettings());
        isSaved = SaveRenderedSound(played, renderer, FromQt(path));
        return {};
    } catch (const NK::CException& error) {
        return QString::fromStdString(font) + ": " + NK::ToQt(error.GetMessage());
    }
}

int Save(const LibMidi::CaptureStore::View& played, const LibMidi::SynthControl& synth, const QString& path) {
    bool isSaved = false;
    if (CommandLine::IsSoundFile(path)) {
        if (const QString failure = SaveSound(played, synth, path, isSaved); !failure.isEmpty()) {
            return Fail(failure);
        }
    } else {
        isSaved = SaveRecordedTrack(played, FromQt(path), TrackBegin::kCapture);
    }
    return isSaved ? kSuccessExit
                   : Fail(WithFileFailure(Tr(QT_TRANSLATE_NOOP("CommandLine", "%1 cannot be written")), path));
}

bool IsSameFile(const QString& one, const QString& other) {
    const QString path = QFileInfo(one).canonicalFilePath();
    return !path.isEmpty() && path == QFileInfo(other).canonicalFilePath();
}

}  // namespace

int Render(const CommandLine& line, const EngineDependencies& dependencies) {
    if (IsSameFile(line.renderFrom, line.renderTo)) {
        PrintError(Tr(QT_TRANSLATE_NOOP("CommandLine", "The file to write is the one to play.")));
        return kRefusedExit;
    }
    NK::ForgetFileFailure();
    const std::optional<NK::MIDI::SMFContent> content = NK::MIDI::ReadSMFFile(FromQt(line.renderFrom));
    if (!content) {
        return Fail(WithFileFailure(Tr(QT_TRANSLATE_NOOP("CommandLine", "%1 cannot be read")), line.renderFrom));
    }
    if (const QString fault = FindFault(*content, line.renderFrom); !fault.isEmpty()) {
        return Fail(fault);
    }
    OfflineEngine engine(dependencies.userDataDir, dependencies.factoryPresetsDir);
    if (!line.preset.isEmpty()) {
        QString failure;
        const PresetResult result = LoadChosenPreset(engine.GetControls(), line.preset, failure);
        if (result != PresetResult::kLoaded) {
            PrintError(failure);
            return result == PresetResult::kUnknown ? kRefusedExit : kFailureExit;
        }
    }
    return Save(engine.Play(*content), *dependencies.synth, line.renderTo);
}

}  // namespace Kivora
