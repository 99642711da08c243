// Presets: snapshots of the voices, the tempo, the metronome and the arpeggiators.
#include "engine/CKivora.h"
#include "nk/qt/nk_qt_string.h"

namespace Kivora {

const NK::CString& CKivora::GetUserDataDir() const {
    return presets_.GetUserDataDir();
}

const NK::CString& CKivora::GetPresetsDir(bool factory) const {
    return presets_.GetPresetsDir(factory);
}

void CKivora::ListPresets(NK::CStringArray& names, bool factory) const {
    presets_.List(names, factory);
}

bool CKivora::PresetExists(const NK::CString& name, bool factory) const {
    return presets_.Exists(name, factory);
}

bool CKivora::ReadPreset(const NK::CString& name, bool factory, NK::CIniFile& file) const {
    return presets_.Read(name, factory, file);
}

bool CKivora::ApplyPreset(const NK::CString& name, NK::CIniFile& file) {
    const Hold hold(*this);
    if (!LoadVoiceSettings(file, PresetStore::kSection)) {
        return false;
    }
    SendPatches();
    presetName_ = PresetStore::GetStoredName(name);
    emit PresetChanged();
    emit VoiceSettingsChanged();
    return true;
}

bool CKivora::LoadPreset(const NK::CString& name, bool factory) {
    NK::CIniFile file;
    return ReadPreset(name, factory, file) && ApplyPreset(name, file);
}

bool CKivora::SavePreset(const NK::CString& name) {
    NK::CIniFile file;
    NK::CString setAside;
    SaveVoiceSettings(file, PresetStore::kSection);
    if (!presets_.Save(name, file, setAside)) {
        return false;
    }
    {
        const Hold hold(*this);
        presetName_ = PresetStore::GetStoredName(name);
        emit PresetChanged();
    }
    if (!setAside.IsEmpty()) {
        emit DamagedFileSetAside(NK::ToQt(setAside));
    }
    return true;
}

bool CKivora::DeletePreset(const NK::CString& name) {
    return presets_.Delete(name);
}

}  // namespace Kivora
