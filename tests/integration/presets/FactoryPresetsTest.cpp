// Every factory preset, loaded by the engine, played and heard.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "engine/EngineControls.h"
#include "libmidi/synth/OfflineRenderer.h"
#include "nk/nk_paths.h"
#include "support/Files.h"
#include "support/Pitch.h"
#include "unit/engine/EngineRig.h"

using namespace KivoraTest;
using testing::Contains;
using testing::Ge;
using testing::Gt;
using testing::Le;
using testing::Lt;

namespace {

constexpr int kHeldMs = 3000;
constexpr int kReleasedMs = 1500;
constexpr std::array<std::uint8_t, 3> kRightHand = {60, 64, 67};
constexpr std::array<std::uint8_t, 2> kLeftHand = {48, 55};
constexpr int kClockTicksPerQuarter = NK::MIDI::MusicalClock::kTicksPerQuarter;

std::vector<std::string> ListFiles() {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(KIVORA_PRESETS_DIR)) {
        if (entry.path().extension() == ".kivoraLXPreset") {
            files.push_back(entry.path().stem().native());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// An engine that has loaded the preset and whose output is remembered with its times.
class PlayedPreset {
public:
    explicit PlayedPreset(const std::string& name) {
        rig_.factoryPresets = KIVORA_PRESETS_DIR;
        engine_ = &rig_.CreateOpen();
        controls_.emplace(*engine_);
        rig_.GetDevice(kSynth).onWrite = [this](const LibMidi::MIDIEvent& event) {
            events_.push_back(event);
            events_.back().time = static_cast<std::uint32_t>(rig_.time.GetTimeMs() - startMs_);
        };
        startMs_ = rig_.time.GetTimeMs();
        isLoaded_ = controls_->LoadPreset(NK::CString::FromUtf8(name), true);
        rig_.Run(1);
    }

    /// A chord of both hands, held, then released.
    void PlayChord() {
        Press(true);
        rig_.Run(kHeldMs);
        releasedMs_ = GetNowMs();
        Press(false);
        rig_.Run(kReleasedMs);
    }
    bool IsLoaded() const { return isLoaded_; }
    Kivora::CKivora& GetEngine() { return *engine_; }
    const std::vector<LibMidi::MIDIEvent>& GetEvents() const { return events_; }
    std::uint32_t GetReleasedMs() const { return releasedMs_; }
    std::uint32_t GetNowMs() { return static_cast<std::uint32_t>(rig_.time.GetTimeMs() - startMs_); }
    /// The times of the note-ons on a slot's channel, in order, each once.
    std::vector<std::uint32_t> GetOnsets(int slot) const {
        const int status = 0x90 | engine_->VoiceChannel(slot);
        std::set<std::uint32_t> times;
        for (const LibMidi::MIDIEvent& event : events_) {
            if (event.status == status && event.data2 != 0) {
                times.insert(event.time);
            }
        }
        return {times.begin(), times.end()};
    }

private:
    void Press(bool down) {
        const auto press = [&](std::uint8_t note) {
            if (down) {
                engine_->PlayNoteOn(note, 100);
            } else {
                engine_->PlayNoteOff(note);
            }
        };
        std::for_each(kRightHand.begin(), kRightHand.end(), press);
        if (engine_->IsSplit()) {
            std::for_each(kLeftHand.begin(), kLeftHand.end(), press);
        }
    }

    EngineRig rig_;
    Kivora::CKivora* engine_ = nullptr;
    std::optional<Kivora::EngineControls> controls_;
    std::vector<LibMidi::MIDIEvent> events_;
    std::int64_t startMs_ = 0;
    std::uint32_t releasedMs_ = 0;
    bool isLoaded_ = false;
};

double ToDecibels(double level) {
    return 20.0 * std::log10(level);
}

double GetRootMeanSquare(const std::vector<float>& samples) {
    double sum = 0;
    for (const float sample : samples) {
        sum += static_cast<double>(sample) * static_cast<double>(sample);
    }
    return std::sqrt(sum / static_cast<double>(samples.size()));
}

/// Which slots sound, and through which arpeggiator.
bool IsSlotUsed(const Kivora::CKivora& engine, int slot) {
    return slot == 0 || (slot == 1 ? engine.IsDual() : engine.IsSplit());
}

class FactoryPreset : public testing::TestWithParam<std::string> {
protected:
    std::string ReadText() const {
        return ReadFileBytes(std::filesystem::path(KIVORA_PRESETS_DIR) / (GetParam() + ".kivoraLXPreset"));
    }
};

}  // namespace

TEST(FactoryPresets, ThereAreAtLeast32) {
    EXPECT_GE(ListFiles().size(), 32U);
}

TEST(FactoryPresets, StandBesideTheProgramInTheBuildTree) {
    EXPECT_EQ(TakeSnapshot(KIVORA_BUILT_PRESETS_DIR).size(), ListFiles().size());
    for (const std::string& name : ListFiles()) {
        const std::string file = name + ".kivoraLXPreset";
        EXPECT_EQ(ReadFileBytes(std::filesystem::path(KIVORA_BUILT_PRESETS_DIR) / file),
                  ReadFileBytes(std::filesystem::path(KIVORA_PRESETS_DIR) / file))
            << name;
    }
}

TEST(FactoryPresets, AreLookedForBesideTheProgram) {
    EXPECT_EQ(Kivora::EngineDependencies().factoryPresetsDir, NK::GetExecutableDir() + L"/Presets");
}

TEST_P(FactoryPreset, LoadsAndHoldsEveryKeyAsTheProgramWouldWriteIt) {
    PlayedPreset preset(GetParam());
    ASSERT_TRUE(preset.IsLoaded());
    EXPECT_EQ(preset.GetEngine().GetPresetName().ToUtf8(), GetParam());
    ASSERT_TRUE(preset.GetEngine().SavePreset(L"copy"));
    const NK::CString path = preset.GetEngine().GetPresetsDir(false) + L"copy.kivoraLXPreset";
    std::string saved = ReadFileBytes(path.ToUtf8());
    // Presets of the factory leave the metronome as it is.
    const std::string metronome = "Metronome=0\n";
    ASSERT_NE(saved.find(metronome), std::string::npos);
    saved.erase(saved.find(metronome), metronome.size());
    EXPECT_EQ(saved, ReadText());
}

TEST_P(FactoryPreset, HasArpeggiatorsThatThePanelCanShow) {
    PlayedPreset preset(GetParam());
    for (int index = 0; index < Kivora::CKivora::kArpeggiatorCount; ++index) {
        preset.GetEngine().WithArpeggiator(index, [](auto& arpeggiator) {
            EXPECT_THAT((std::array{384, 256, 192, 128, 96, 64, 48, 32, 24, 16}), Contains(arpeggiator.GetNoteStep()));
            EXPECT_THAT(arpeggiator.GetDurationPercent(), testing::AllOf(Ge(10.0), Le(100.01)));
            EXPECT_THAT(arpeggiator.GetDirection(), Le(6));
            EXPECT_THAT(arpeggiator.GetVelocityMode(), testing::AnyOf(1, 2));
        });
    }
}

TEST_P(FactoryPreset, ArpeggiatesOnTheGridOfItsTempoWhereItIsToDoSo) {
    PlayedPreset preset(GetParam());
    preset.PlayChord();
    const Kivora::CKivora& engine = preset.GetEngine();
    int arpeggiated = 0;
    for (int slot = 0; slot < Kivora::CKivora::kSlotCount; ++slot) {
        const std::vector<std::uint32_t> onsets = preset.GetOnsets(slot);
        if (!IsSlotUsed(engine, slot)) {
            EXPECT_TRUE(onsets.empty()) << slot;
            continue;
        }
        const auto [isBypassed, step] = preset.GetEngine().WithArpeggiator(slot == 0 ? 0 : 1, [](auto& arpeggiator) {
            return std::pair(arpeggiator.IsBypassed(), arpeggiator.GetNoteStep());
        });
        if (!engine.IsArpeggiating() || isBypassed) {
            EXPECT_EQ(onsets.size(), 1U) << "the chord of slot " << slot;
            continue;
        }
        ++arpeggiated;
        const double stepMs = 60000.0 / engine.GetTempo() * step / kClockTicksPerQuarter;
        EXPECT_GE(static_cast<double>(onsets.size()), kHeldMs / stepMs - 1) << slot;
        for (std::size_t i = 1; i < onsets.size(); ++i) {
            EXPECT_NEAR(onsets[i] - onsets[i - 1], stepMs, 3.0) << "slot " << slot << ", note " << i;
        }
    }
    EXPECT_EQ(arpeggiated > 0, engine.IsArpeggiating());
    EXPECT_EQ(engine.IsArpeggiating(), GetParam().starts_with("Arp"));
}

TEST_P(FactoryPreset, SoundsWithoutClippingAndFallsSilentAfterwards) {
    // The levels are set for the sound font that is installed with the program.
    const std::filesystem::path font = "/usr/share/sounds/sf2/TimGM6mb.sf2";
    ASSERT_TRUE(std::filesystem::exists(font)) << font << " is not installed";
    PlayedPreset preset(GetParam());
    preset.PlayChord();
    LibMidi::OfflineRenderer renderer(font);
    const std::vector<float> sound = renderer.Render(preset.GetEvents(), preset.GetNowMs());
    // At the limiter's ceiling something would have been turned down.
    EXPECT_THAT(GetPeak(sound), testing::AllOf(Gt(0.05F), Lt(LibMidi::PeakLimiter::kCeiling)));
    const auto firstSecond = sound.begin() + std::ptrdiff_t{2} * LibMidi::OfflineRenderer::kSampleRate;
    const double loudness = ToDecibels(GetRootMeanSquare({sound.begin(), firstSecond}));
    // A change of preset is no shock to the ears.
    EXPECT_THAT(loudness, testing::AllOf(Ge(-28.0), Le(-16.0)));
    const std::vector<float> tail = renderer.Render({}, 6000);
    EXPECT_LT(GetPeak({tail.end() - 96000, tail.end()}), 0.01F);
}

INSTANTIATE_TEST_SUITE_P(All, FactoryPreset, testing::ValuesIn(ListFiles()), [](const auto& instance) {
    std::string name;
    for (const char character : instance.param) {
        if (std::isalnum(static_cast<unsigned char>(character)) != 0) {
            name += character;
        }
    }
    return name;
});
