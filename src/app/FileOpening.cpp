#include "app/FileOpening.h"

#include <QCoreApplication>

#include "app/PresetChoice.h"
#include "ui/dialogs/MIDIFileNames.h"
#include "ui/dialogs/SongFile.h"

namespace Kivora {

namespace {

QString Tr(const char* text) {
    return QCoreApplication::translate("CommandLine", text);
}

}  // namespace

QString OpenFile(EngineControls* controls, const QString& path, const std::function<void(const SongFile& song)>& play) {
    if (controls == nullptr) {
        return Tr(QT_TRANSLATE_NOOP("CommandLine", "%1 cannot be opened, as the instrument could not be started."))
            .arg(path);
    }
    QString failure;
    if (!MIDIFileNames::Fits(path, MIDIFileNames::kRead)) {
        static_cast<void>(LoadPresetFile(*controls, path, failure));
    } else if (const auto song = SongFile::Read(path, failure)) {
        play(*song);
    }
    return failure;
}

}  // namespace Kivora
