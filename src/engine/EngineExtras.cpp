#include "engine/EngineExtras.h"

#include "engine/ExtraKey.h"
#include "libmidi/PlayedHistory.h"

namespace Kivora {

namespace {
constexpr const wchar_t* kPlayedSection = L"Kivora_Played";
constexpr const wchar_t* kKeep = L"Keep";
}  // namespace

EngineExtras::EngineExtras() : played(std::make_shared<LibMidi::PlayedHistory>()) {
    played->SetOn(true);
}

EngineExtras::~EngineExtras() = default;

bool EngineExtras::KeepsPlayed() const {
    return played->IsOn();
}

void EngineExtras::KeepPlayed(bool on) {
    played->SetOn(on);
}

void EngineExtras::ReadSettings(NK::CIniFile& file) {
    played->SetOn(ReadExtraInt(file, {kPlayedSection, kKeep, 1}) != 0);
}

void EngineExtras::WriteSettings(NK::CIniFile& file) const {
    click.GetSettings().Write(file);
    WriteExtraInt(file, {kPlayedSection, kKeep, 1}, played->IsOn() ? 1 : 0);
}

}  // namespace Kivora
