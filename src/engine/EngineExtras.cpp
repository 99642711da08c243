#include "engine/EngineExtras.h"

#include "engine/values/ExtraKey.h"
#include "libmidi/PlayedHistory.h"

namespace Kivora {

namespace {
constexpr const wchar_t* kPlayedSection = L"Kivora_Played";
constexpr const wchar_t* kKeep = L"Keep";
constexpr ExtraKey kSavesTempo{L"Kivora_Takes", L"WriteTempo", 0};
constexpr ExtraKey kHeightIsVelocity{L"Kivora_Screen", L"HeightIsVelocity", 1};
}  // namespace

EngineExtras::EngineExtras() : played_(std::make_shared<LibMidi::PlayedHistory>()) {
    played_->SetOn(true);
}

EngineExtras::~EngineExtras() = default;

bool EngineExtras::KeepsPlayed() const {
    return played_->IsOn();
}

void EngineExtras::KeepPlayed(bool on) {
    played_->SetOn(on);
}

void EngineExtras::NotePlayed(int slot, int patch) {
    if (stepped.Play(slot, patch)) {
        patches.NoteUse(patch);
    }
    presets.Play();
}

void EngineExtras::ReadSettings(NK::CIniFile& file) {
    played_->SetOn(ReadExtraInt(file, {kPlayedSection, kKeep, 1}) != 0);
    velocity.SetCurve(VelocityCurve::Read(file));
    heightIsVelocity = ReadExtraInt(file, kHeightIsVelocity) != 0;
    patches = PatchShelf::Read(file);
    presets = RecentPresets::Read(file);
    bendRange = BendRange::Read(file);
    savesTempo = ReadExtraInt(file, kSavesTempo) != 0;
}

void EngineExtras::WriteSettings(NK::CIniFile& file) const {
    click.GetSettings().Write(file);
    velocity.GetCurve().Write(file);
    patches.Write(file);
    presets.Write(file);
    bendRange.Write(file);
    WriteExtraInt(file, kHeightIsVelocity, heightIsVelocity ? 1 : 0);
    WriteExtraInt(file, kSavesTempo, savesTempo ? 1 : 0);
    WriteExtraInt(file, {kPlayedSection, kKeep, 1}, played_->IsOn() ? 1 : 0);
}

}  // namespace Kivora
