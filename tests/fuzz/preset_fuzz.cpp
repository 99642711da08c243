// Any bytes as a preset and as a settings file: loading, what must hold afterwards, playing with what was loaded, and a
// second life on the disk.
#include <QCoreApplication>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "engine/EngineControls.h"
#include "libmidi/SynthSettingsFile.h"
#include "nk/nk_memory_file.h"
#include "support/FakeBackend.h"
#include "support/FakePlayer.h"
#include "support/SynthModel.h"
#include "support/VirtualTime.h"

namespace {

using namespace KivoraTest;
using namespace NK;

constexpr std::uint8_t kNotes[] = {48, 60, 64};
constexpr const wchar_t* kOutput = L"Software synthesizer";

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

bool IsWithin(int value, int lowest, int highest) {
    return value >= lowest && value <= highest;
}

/// An engine without threads whose output is a model of a synthesizer.
class Instrument {
public:
    Instrument() {
        backend_.Plug(kOutput, LibMidi::kOutput).onWrite = [this](const LibMidi::MIDIEvent& event) {
            synth_.Play(event);
        };
        time_.onSleep = [this](std::uint32_t) { RunPlayer(); };
        engine_ = std::make_unique<Kivora::CKivora>(
            Kivora::EngineDependencies{.backends = {backend_.GetCreator()},
                                       .createPlayer =
                                           [this] {
                                               auto made = std::make_unique<FakePlayer>(time_, time_);
                                               player_ = made.get();
                                               return made;
                                           },
                                       .wallClockMs = [this] { return time_.GetTimeMs(); },
                                       .sleeper = time_,
                                       .runTickTimer = false});
        engine_->SetOutputPortByName(kOutput);
        controls_ = std::make_unique<Kivora::EngineControls>(*engine_);
    }

    bool Load(CIniFile& file) {
        return controls_->ReplaceVoices([&] { return engine_->ApplyPreset(L"any", file); });
    }

    void RequireThatEverythingIsInItsRange() {
        for (int slot = 0; slot < Kivora::CKivora::kSlotCount; ++slot) {
            Require(IsWithin(engine_->GetPatch(slot), -1, 127));
            Require(IsWithin(engine_->GetTranspose(slot), -108, 108));
            Require(IsWithin(engine_->GetVelocityPercent(slot), 1, 200));
            Require(IsWithin(engine_->GetVolume(slot), 0, 127));
        }
        Require(IsWithin(engine_->GetTempo(), Kivora::CKivora::kMinTempo, Kivora::CKivora::kMaxTempo));
        for (int index = 0; index < Kivora::CKivora::kArpeggiatorCount; ++index) {
            engine_->WithArpeggiator(index, [](MIDI::CArpeggiator1& arpeggiator) {
                arpeggiator.GetSettings().Check();
                Require(arpeggiator.GetDurationPercent() > 0);
            });
        }
    }

    void RequireThatNoNoteIsLeftHanging() {
        for (const std::uint8_t note : kNotes) {
            engine_->PlayNoteOn(note, 100);
        }
        for (int ms = 0; ms < 100; ++ms) {
            time_.AdvanceMs(1);
            engine_->OnTimer(0);
            RunPlayer();
        }
        for (const std::uint8_t note : kNotes) {
            engine_->PlayNoteOff(note);
        }
        controls_->AllNotesOff();
        RunPlayer();
        Require(!synth_.IsSounding());
    }

    CString Save() {
        CIniFile file;
        Require(engine_->SaveVoiceSettings(file, Kivora::PresetStore::kSection));
        CString text;
        for (const CString& line : file) {
            text += line + L"\n";
        }
        return text;
    }

private:
    void RunPlayer() {
        if (player_ != nullptr) {
            player_->RunRound();
        }
    }

    CVirtualTime time_;
    FakeBackend backend_;
    SynthModel synth_;
    FakePlayer* player_ = nullptr;
    std::unique_ptr<Kivora::CKivora> engine_;
    std::unique_ptr<Kivora::EngineControls> controls_;
};

void LoadAsPreset(CIniFile& file) {
    Instrument instrument;
    const bool hasSection = file.SelectSection(Kivora::PresetStore::kSection);
    Require(instrument.Load(file) == hasSection);
    instrument.RequireThatEverythingIsInItsRange();
    instrument.RequireThatNoNoteIsLeftHanging();

    const CString saved = instrument.Save();
    CMemoryFile disk(saved.ToUtf8());
    CIniFile again;
    Require(again.Load(disk));
    Instrument other;
    Require(other.Load(again));
    Require(other.Save() == saved);
}

void LoadAsSettings(CIniFile& file) {
    file.SelectOrAddSection(Kivora::Settings::kSection);
    const Kivora::Settings read = Kivora::Settings::Read(file);
    read.Write(file);
    const Kivora::Settings again = Kivora::Settings::Read(file);
    Require(again.velocityLow == read.velocityLow && again.velocityNormal == read.velocityNormal &&
            again.velocityHigh == read.velocityHigh && again.translatePatchNames == read.translatePatchNames &&
            again.translateKeyNames == read.translateKeyNames && again.showNoteNames == read.showNoteNames &&
            again.keyboardColoring == read.keyboardColoring && again.uiColor == read.uiColor &&
            again.uiDisplayColor == read.uiDisplayColor && again.uiDisplay2Color == read.uiDisplay2Color);

    file.SelectOrAddSection(Kivora::Settings::kSynthSection);
    const LibMidi::SynthSettings synth = LibMidi::ReadSynthSettings(file);
    Require(synth.gain >= 0 && synth.gain <= LibMidi::SynthSettings::kMaxGain);
    Require(synth.latencyFrames >= LibMidi::SynthSettings::kMinLatencyFrames &&
            synth.latencyFrames <= LibMidi::SynthSettings::kMaxLatencyFrames);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static int argc = 0;
    static const std::unique_ptr<QCoreApplication> application =
        QCoreApplication::instance() == nullptr ? std::make_unique<QCoreApplication>(argc, nullptr) : nullptr;
    CMemoryFile file(std::string_view(reinterpret_cast<const char*>(data), size));
    CIniFile ini;
    if (!ini.Load(file)) {
        Require(ini.GetLoadResult() == CIniFile::LoadResult::kDamaged && ini.IsEmpty());
        return 0;
    }
    LoadAsPreset(ini);
    LoadAsSettings(ini);
    return 0;
}
