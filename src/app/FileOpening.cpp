#include "app/FileOpening.h"

#include <QCoreApplication>

#include "app/ConsoleOutput.h"
#include "app/PresetChoice.h"
#include "midi/reader/SMFReader.h"
#include "nk/nk_file_failure.h"
#include "ui/Dialogs.h"

namespace Kivora {

namespace {

QString Tr(const char* text) {
    return QCoreApplication::translate("CommandLine", text);
}

/// Why a MIDI file is not opened.
QString RefuseMIDIFile(const QString& path) {
    NK::ForgetFileFailure();
    const auto content = NK::MIDI::ReadSMFFile(Dialogs::FromQt(path));
    if (!content) {
        return WithFileFailure(Tr(QT_TRANSLATE_NOOP("CommandLine", "%1 cannot be read")), path);
    }
    if (content->damage) {
        return path + ": " + Dialogs::ToQt(NK::MIDI::Describe(*content->damage));
    }
    return Tr(QT_TRANSLATE_NOOP("CommandLine",
                                "%1 is a MIDI file, which cannot be opened; kivora --render makes a sound file of it."))
        .arg(path);
}

}  // namespace

bool HasMIDIFileName(const QString& path) {
    return path.endsWith(".mid", Qt::CaseInsensitive) || path.endsWith(".midi", Qt::CaseInsensitive);
}

QString OpenFile(EngineFront* front, const QString& path) {
    if (HasMIDIFileName(path)) {
        return RefuseMIDIFile(path);
    }
    if (front == nullptr) {
        return Tr(QT_TRANSLATE_NOOP("CommandLine", "%1 cannot be opened, as the instrument could not be started."))
            .arg(path);
    }
    QString failure;
    static_cast<void>(LoadPresetFile(*front, path, failure));
    return failure;
}

}  // namespace Kivora
