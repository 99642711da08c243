// The settings file.
#include <cmath>
#include <utility>

#include "engine/CKivora.h"
#include "engine/EngineExtras.h"
#include "engine/files/VoiceSlotsFile.h"
#include "libmidi/SynthSettingsFile.h"
#include "nk/nk_directory.h"
#include "nk/nk_exception.h"
#include "nk/nk_file_failure.h"
#include "nk/nk_paths.h"
#include "nk/qt/nk_qt_string.h"

namespace Kivora {

namespace {

constexpr int kDefaultTempo = 120;

NK::CString GetArpeggiatorSection(const NK::CString& section, int index) {
    return section + L"_Arpeggiator" + NK::CString::FromInt(index);
}

/// False when there is no such section or it is refused; then nothing has changed.
bool LoadArpeggiator(NK::MIDI::CArpeggiator1& arpeggiator, NK::CIniFile& file, const NK::CString& section) {
    double noteLength = 0;
    if (!file.SelectSection(section) || (file.GetDouble(L"NoteLength", noteLength) && !std::isfinite(noteLength))) {
        return false;
    }
    try {
        return arpeggiator.LoadSettings(file);
    } catch (const NK::CException&) {
        return false;
    }
}

}  // namespace

bool CKivora::LoadVoiceSettings(NK::CIniFile& file, const NK::CString& section) {
    const Hold hold(*this);
    if (!file.SelectSection(section)) {
        return false;
    }
    voices_ = ReadVoiceSlots(file, voices_);
    SetTempo(file.GetInt(L"Tempo", kDefaultTempo));
    bool metronome = IsMetronomeOn();
    file.GetBool(L"Metronome", metronome);
    SetMetronome(metronome);
    bool arpeggiating = false;
    file.GetBool(L"Arpeggiation", arpeggiating);
    SetArpeggiating(arpeggiating);
    for (int i = 0; i < kArpeggiatorCount; ++i) {
        if (!LoadArpeggiator(arpeggiators_.At(i), file, GetArpeggiatorSection(section, i))) {
            arpeggiators_.At(i).SetBypassed(true);
        }
    }
    return true;
}

bool CKivora::SaveVoiceSettings(NK::CIniFile& file, const NK::CString& section) {
    const Hold hold(*this);
    file.SelectOrAddSection(section);
    WriteVoiceSlots(file, voices_);
    file.SetInt(L"Tempo", clock_.GetTempo());
    file.SetInt(L"Metronome", IsMetronomeOn() ? 1 : 0);
    file.SetInt(L"Arpeggiation", arpeggiating_ ? 1 : 0);
    bool saved = true;
    for (int i = 0; i < kArpeggiatorCount; ++i) {
        file.SelectOrAddSection(GetArpeggiatorSection(section, i));
        saved = arpeggiators_.At(i).SaveSettings(file) && saved;
    }
    return saved;
}

bool CKivora::LoadSettings() {
    static_cast<void>(GetUserDataDir());
    NK::CIniFile file = settingsFile_.Load();
    if (!file.SelectSection(Settings::kSection)) {
        // As on the first start: every key is missing, those of the arpeggiators too.
        for (int i = 0; i < kArpeggiatorCount; ++i) {
            file.SelectOrAddSection(GetArpeggiatorSection(Settings::kSection, i));
        }
        file.SelectOrAddSection(Settings::kSection);
    }
    const SavedPorts ports = SavedPorts::Read(file);
    const Settings settings = Settings::Read(file);
    lastFolders_ = LastFolders::Read(file);
    LoadSynthSettings(file);
    {
        const Hold hold(*this);
        input_.SetName(ports.input);
        output_.SetName(ports.output);
        Tell(settings.GetLoaded(std::exchange(settings_, settings)));
        extras_->ReadSettings(file);
        StoreClick(ClickSettings::Read(file));
        LoadVoiceSettings(file, Settings::kSection);
        ResetSynth();
    }
    settingsFile_.Remember([this](NK::CIniFile& lines) { WriteSettings(lines); });
    return settingsFile_.GetState() == SettingsFile::State::kGood;
}

void CKivora::WriteSettings(NK::CIniFile& file) {
    {
        const Hold hold(*this);
        file.SelectOrAddSection(Settings::kSection);
        SavedPorts{input_.GetName(), output_.GetName()}.Write(file);
        settings_.Write(file);
        SaveVoiceSettings(file, Settings::kSection);
        extras_->WriteSettings(file);
    }
    SaveSynthSettings(file);
    lastFolders_.Write(file);
}

bool CKivora::SaveSettings() {
    NK::ForgetFileFailure();
    // The folder may have gone since it was first asked for.
    if (!NK::CreateFolder(GetUserDataDir())) {
        return false;
    }
    NK::CStringArray setAside;
    const bool saved = settingsFile_.Save([this](NK::CIniFile& lines) { WriteSettings(lines); }, setAside);
    for (const NK::CString& path : setAside) {
        emit DamagedFileSetAside(NK::ToQt(path));
    }
    return saved;
}

void CKivora::LoadSynthSettings(NK::CIniFile& file) {
    refusedSynth_.reset();
    LibMidi::SynthControl* const synth = GetSynth();
    if (synth == nullptr || !file.SelectSection(Settings::kSynthSection)) {
        return;
    }
    const LibMidi::SynthSettings wanted = LibMidi::ReadSynthSettings(file);
    if (synth->ApplySettings(wanted) != LibMidi::kSuccess) {
        LibMidi::SynthSettings withoutFont = wanted;
        withoutFont.soundFont.Clear();
        static_cast<void>(synth->ApplySettings(withoutFont));
        refusedSynth_ = {wanted, synth->GetSettings()};
    }
}

void CKivora::SaveSynthSettings(NK::CIniFile& file) {
    if (LibMidi::SynthControl* const synth = GetSynth()) {
        const LibMidi::SynthSettings inForce = synth->GetSettings();
        const bool refused = refusedSynth_ && refusedSynth_->second == inForce;
        file.SelectOrAddSection(Settings::kSynthSection);
        LibMidi::WriteSynthSettings(file, refused ? refusedSynth_->first : inForce);
    }
}

}  // namespace Kivora
