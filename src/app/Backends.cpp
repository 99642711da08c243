#include "app/Backends.h"

#include <QCoreApplication>

#include "app/DeviceBackend.h"
#include "engine/values/Settings.h"
#include "libmidi/synth/SoundFontFile.h"
#include "libmidi/synth/SynthBackend.h"
#include "libmidi/SynthSettingsFile.h"
#include "nk/nk_ini_file.h"
#include "nk/nk_paths.h"
#include "nk/qt/nk_qt_string.h"

namespace Kivora {

namespace {

/// The saved settings decide whether the synthesizer has a port to be listed: its sound font may be the user's own.
/// Settings that cannot be put in force are the engine's to keep when it loads the file.
void ApplySavedSettings(LibMidi::Synthesizer& synthesizer, const NK::CString& userDataDir) {
    NK::CIniFile file;
    if (file.Load(NK::JoinPath(userDataDir, Settings::kFileName)) && file.SelectSection(Settings::kSynthSection)) {
        static_cast<void>(synthesizer.ApplySettings(LibMidi::ReadSynthSettings(file)));
    }
}

}  // namespace

QString ExplainSoundFont(const QString& path) {
    const NK::CString reason = LibMidi::CheckSoundFont(path.toStdString()).ToText();
    return reason.IsEmpty() ? QString()
                            : QCoreApplication::translate("CommandLine", "The sound font \"%1\" cannot be played: %2")
                                  .arg(path, NK::ToQt(reason));
}

std::shared_ptr<LibMidi::Synthesizer> CreateSynthesizer(const QString& soundFont) {
    auto synthesizer = std::make_shared<LibMidi::Synthesizer>();
    ApplySavedSettings(*synthesizer, EngineDependencies().userDataDir);
    synthesizer->SetRunFont(soundFont.toStdString());
    return synthesizer;
}

EngineDependencies CreateEngineDependencies(const std::shared_ptr<LibMidi::Synthesizer>& synthesizer) {
    EngineDependencies dependencies;
    dependencies.synth = synthesizer;
    dependencies.backends = {MakeDeviceBackend(), LibMidi::MakeSynthBackend(synthesizer)};
    dependencies.createPlayer = [] { return LibMidi::CreateMIDIPlayer(); };
    return dependencies;
}

}  // namespace Kivora
