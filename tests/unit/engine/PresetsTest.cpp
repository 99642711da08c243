// Loading and saving presets.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "engine/EngineControls.h"
#include "support/Files.h"
#include "support/SynthModel.h"
#include "unit/engine/EngineRig.h"
#include "unit/nk/CommaLocale.h"

using namespace KivoraTest;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

std::string ReadGolden() {
    return ReadFileBytes(std::filesystem::path(KIVORA_GOLDEN_DIR) / "engine/Preset.kivoraLXPreset");
}

class Presets : public testing::Test {
protected:
    std::filesystem::path PathOf(const std::string& name, bool factory = false) const {
        return rig.folder / ((factory ? "factory/" : "user/Presets/") + name + ".kivoraLXPreset");
    }
    void Write(const std::string& bytes, bool factory = false) { WriteFileBytes(PathOf("p", factory), bytes); }
    /// Loads a section "KivoraPreset" with these lines.
    bool Load(const std::string& keys) {
        Write("[KivoraPreset]\n" + keys);
        return engine.LoadPreset(L"p", false);
    }
    bool IsBypassed(int index) {
        return engine.WithArpeggiator(index, [](auto& arpeggiator) { return arpeggiator.IsBypassed(); });
    }

    EngineRig rig;
    Kivora::CKivora& engine = rig.CreateOpen();
};

class PresetsUnderACommaLocale : public CCommaLocaleTest {};

}  // namespace

TEST_F(Presets, IsWrittenInItsOrderByteForByte) {
    Load(
        "Dual=yes\nPatch0=48\nPatch1 = -1\nTranspose0=-12\nTranspose1= 7\nVelocityPc0=90\nVelocityPc1=200\n"
        "volume0=110\nVolume1=64 or so\nVolume2=0\nTempo=96\nMetronome=on\nArpeggiation=true\n"
        "[KivoraPreset_Arpeggiator0]\nOutChannel=2\nNoteLength=12.5\nNoteStep=48\nDirection=2\nRepeat=1\nExtension=3\n"
        "VelocityMode=1\nVelocity=77\n"
        "[KivoraPreset_Arpeggiator1]\nBypass=1\nInChannel=3\n");
    EXPECT_TRUE(engine.SavePreset(L"written"));
    EXPECT_EQ(ReadFileBytes(PathOf("written")), ReadGolden());
}

TEST_F(Presets, WhatIsWrittenIsReadBack) {
    Write(ReadGolden(), true);
    EXPECT_TRUE(engine.LoadPreset(L"p", true));
    EXPECT_TRUE(engine.IsDual());
    EXPECT_FALSE(engine.IsSplit());
    EXPECT_EQ(engine.GetPatch(0), 48);
    EXPECT_EQ(engine.GetPatch(1), -1);
    EXPECT_EQ(engine.GetPatch(2), 32);
    EXPECT_EQ(engine.GetTranspose(0), -12);
    EXPECT_EQ(engine.GetTranspose(1), 7);
    EXPECT_EQ(engine.GetVelocityPercent(0), 90);
    EXPECT_EQ(engine.GetVelocityPercent(1), 200);
    EXPECT_EQ(engine.GetVolume(0), 110);
    EXPECT_EQ(engine.GetVolume(1), 64);
    EXPECT_EQ(engine.GetVolume(2), 0);
    EXPECT_EQ(engine.GetTempo(), 96);
    EXPECT_TRUE(engine.IsMetronomeOn());
    EXPECT_TRUE(engine.IsArpeggiating());
    EXPECT_FALSE(IsBypassed(0));
    EXPECT_TRUE(IsBypassed(1));
    EXPECT_TRUE(engine.SavePreset(L"again"));
    EXPECT_EQ(ReadFileBytes(PathOf("again")), ReadGolden());
}

TEST_F(PresetsUnderACommaLocale, AreReadAndWrittenTheSame) {
    EngineRig rig;
    Kivora::CKivora& engine = rig.Create();
    WriteFileBytes(rig.folder / "user/Presets/p.kivoraLXPreset", ReadGolden());
    ASSERT_TRUE(IsComma());
    EXPECT_TRUE(engine.LoadPreset(L"p", false));
    EXPECT_EQ(engine.WithArpeggiator(0, [](auto& arpeggiator) { return arpeggiator.GetSettings().noteLength; }), 12.5);
    EXPECT_TRUE(engine.SavePreset(L"again"));
    EXPECT_EQ(ReadFileBytes(rig.folder / "user/Presets/again.kivoraLXPreset"), ReadGolden());
}

TEST_F(Presets, NumbersOutsideTheirRangeAreClamped) {
    Load(
        "Transpose1=200\nTranspose2=-200\nPatch0=-5\nPatch1=128\nVelocityPc2=0\nVelocityPc1=999\nVolume0=300\n"
        "Volume1=-1\nTempo=1000\n");
    EXPECT_EQ(engine.GetTranspose(1), 108);
    EXPECT_EQ(engine.GetTranspose(2), -108);
    EXPECT_EQ(engine.GetPatch(0), -1);
    EXPECT_EQ(engine.GetPatch(1), 127);
    EXPECT_EQ(engine.GetVelocityPercent(2), 1);
    EXPECT_EQ(engine.GetVelocityPercent(1), 200);
    EXPECT_EQ(engine.GetVolume(0), 127);
    EXPECT_EQ(engine.GetVolume(1), 0);
    EXPECT_EQ(engine.GetTempo(), 220);
    Load("Tempo=-3\n");
    EXPECT_EQ(engine.GetTempo(), 40);
}

TEST_F(Presets, MissingKeysTakeTheirDefaultsButPatchesAndTheMetronomeStay) {
    Write(ReadGolden(), true);
    engine.LoadPreset(L"p", true);
    Load("");
    EXPECT_FALSE(engine.IsDual());
    EXPECT_FALSE(engine.IsSplit());
    EXPECT_FALSE(engine.IsArpeggiating());
    EXPECT_EQ(engine.GetTempo(), 120);
    EXPECT_TRUE(engine.IsMetronomeOn());
    for (int slot = 0; slot < 3; ++slot) {
        EXPECT_EQ(engine.GetPatch(slot), (std::array{48, -1, 32}[static_cast<std::size_t>(slot)]));
        EXPECT_EQ(engine.GetTranspose(slot), 0);
        EXPECT_EQ(engine.GetVelocityPercent(slot), 100);
        EXPECT_EQ(engine.GetVolume(slot), 100);
    }
    Load("Metronome=0\n");
    EXPECT_FALSE(engine.IsMetronomeOn());
    Load("");
    EXPECT_FALSE(engine.IsMetronomeOn());
}

TEST_F(Presets, HoldTheSplitPointWhereItIsNotMiddleC) {
    EXPECT_TRUE(engine.SavePreset(L"usual"));
    EXPECT_EQ(ReadFileBytes(PathOf("usual")).find("SplitPoint"), std::string::npos);
    engine.SetSplitPoint(52);
    EXPECT_TRUE(engine.SavePreset(L"low"));
    EXPECT_NE(ReadFileBytes(PathOf("low")).find("SplitPoint=52\n"), std::string::npos);
    EXPECT_TRUE(engine.LoadPreset(L"usual", false));
    EXPECT_EQ(engine.GetSplitPoint(), 60);
    EXPECT_TRUE(engine.LoadPreset(L"low", false));
    EXPECT_EQ(engine.GetSplitPoint(), 52);
    Load("SplitPoint=0\n");
    EXPECT_EQ(engine.GetSplitPoint(), 1);
    Load("SplitPoint=128\n");
    EXPECT_EQ(engine.GetSplitPoint(), 127);
    Load("SplitPoint=C4\n");
    EXPECT_EQ(engine.GetSplitPoint(), 60);
}

TEST_F(Presets, UnreadableValuesCountAsMissing) {
    engine.SetPatch(7, 0);
    Load("Dual=maybe\nPatch0=piano\nVolume0=\nTempo=99999999999999\nTranspose0=0x\n");
    EXPECT_FALSE(engine.IsDual());
    EXPECT_EQ(engine.GetPatch(0), 7);
    EXPECT_EQ(engine.GetVolume(0), 100);
    EXPECT_EQ(engine.GetTempo(), 120);
    EXPECT_EQ(engine.GetTranspose(0), 0);
}

TEST_F(Presets, AMissingTempoIs120AndAChangedTempoRestartsTheClock) {
    engine.SetTempo(100);
    rig.Run(2000);
    EXPECT_NE(engine.GetMusicalClock().beat, 0);
    Load("");
    EXPECT_EQ(engine.GetTempo(), 120);
    EXPECT_EQ(engine.GetMusicalClock().beat, 0);
    EXPECT_EQ(engine.GetMusicalClock().bar, 0);
    rig.Run(600);
    EXPECT_EQ(engine.GetMusicalClock().beat, 1);
    Load("");
    EXPECT_EQ(engine.GetMusicalClock().beat, 1) << "the same tempo leaves the clock alone";
}

TEST_F(Presets, WithoutAnArpeggiatorSectionThatArpeggiatorIsBypassed) {
    Load("[KivoraPreset_Arpeggiator1]\nBypass=0\n");
    EXPECT_TRUE(IsBypassed(0));
    EXPECT_FALSE(IsBypassed(1));
}

TEST_F(Presets, AnArpeggiatorSectionThatIsRefusedBypassesTheArpeggiatorAndChangesNothingElse) {
    for (const char* const keys :
         {"InChannel=0", "InChannel=17", "OutChannel=0", "NoteLength=-1", "NoteLength=nan", "NoteLength=inf",
          "NoteLength=1e309", "NoteStep=0", "Direction=9", "Multiplication=4", "Extension=-1", "VelocityMode=4"}) {
        Load("[KivoraPreset_Arpeggiator0]\nDirection=3\nNoteLength=10\n[KivoraPreset_Arpeggiator1]\n");
        ASSERT_FALSE(IsBypassed(0));
        EXPECT_TRUE(Load("Tempo=99\n[KivoraPreset_Arpeggiator0]\n" + std::string(keys) +
                         "\n[KivoraPreset_Arpeggiator1]\nDirection=1\n"))
            << keys;
        EXPECT_TRUE(IsBypassed(0)) << keys;
        engine.WithArpeggiator(0, [&](auto& arpeggiator) {
            EXPECT_EQ(arpeggiator.GetDirection(), 3) << keys;
            EXPECT_EQ(arpeggiator.GetSettings().noteLength, 10.0) << keys;
        });
        EXPECT_EQ(engine.GetTempo(), 99);
        EXPECT_FALSE(IsBypassed(1));
    }
}

TEST_F(Presets, LoadingSendsThePatchesNamesThePresetAndAnnouncesIt) {
    engine.SetTempo(99);
    SignalLog signals_(engine);
    EXPECT_TRUE(Load("Patch0=5\nPatch1=6\nPatch2=-1\nTempo=99\n"));
    EXPECT_THAT(signals_.Take(),
                ElementsAre("MetronomeChanged", "PatchChanged", "PresetChanged", "VoiceSettingsChanged"));
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("c0 05", "c1 06", "c9 00"));
    EXPECT_EQ(engine.GetPresetName(), L"p");
    EXPECT_TRUE(Load("Arpeggiation=1\nMetronome=1\n"));
    EXPECT_THAT(signals_.Take(), ElementsAre("TempoChanged", "MetronomeChanged", "ArpeggiatingChanged", "PatchChanged",
                                             "PresetChanged", "VoiceSettingsChanged"));
}

TEST_F(Presets, LoadingWhatIsNotThereOrHasNoSectionReportsFalseAndChangesNothing) {
    Load("Patch0=5\n");
    rig.TakeWritten();
    SignalLog signals_(engine);
    EXPECT_FALSE(engine.LoadPreset(L"none", false));
    EXPECT_FALSE(engine.LoadPreset(L"p", true));
    EXPECT_FALSE(engine.LoadPreset(L"", false));
    EXPECT_FALSE(engine.LoadPreset(L"..", false));
    Write("[SomethingElse]\nPatch0=9\n");
    EXPECT_FALSE(engine.LoadPreset(L"p", false));
    EXPECT_THAT(signals_.Take(), IsEmpty());
    EXPECT_THAT(rig.TakeWritten(), IsEmpty());
    EXPECT_EQ(engine.GetPatch(0), 5);
    EXPECT_EQ(engine.GetPresetName(), L"p");
}

TEST_F(Presets, SavingNamesThePresetAsStoredAndAnnouncesIt) {
    SignalLog signals_(engine);
    EXPECT_TRUE(engine.SavePreset(L"a/b"));
    EXPECT_THAT(signals_.Take(), ElementsAre("PresetChanged"));
    EXPECT_EQ(engine.GetPresetName(), L"a_b");
    EXPECT_TRUE(engine.PresetExists(L"a_b", false));
    EXPECT_FALSE(engine.PresetExists(L"a_b", true));
    NK::CStringArray names;
    engine.ListPresets(names, false);
    ASSERT_EQ(names.GetSize(), 1U);
    EXPECT_EQ(names[0], L"a_b");
}

TEST_F(Presets, SavingThatFailsReportsFalseAndAnnouncesNothing) {
    Load("");
    SignalLog signals_(engine);
    EXPECT_FALSE(engine.SavePreset(L""));
    EXPECT_FALSE(engine.SavePreset(NK::CString(std::wstring(300, L'n'))));
    EXPECT_THAT(signals_.Take(), IsEmpty());
    EXPECT_EQ(engine.GetPresetName(), L"p");
}

TEST_F(Presets, ADamagedFileIsSetAsideAndThatIsAnnounced) {
    Write(std::string(2'000'000, 'x'));
    EXPECT_FALSE(engine.LoadPreset(L"p", false));
    SignalLog signals_(engine);
    EXPECT_TRUE(engine.SavePreset(L"p"));
    EXPECT_THAT(signals_.Take(), ElementsAre("PresetChanged", "DamagedFileSetAside"));
    EXPECT_TRUE(engine.LoadPreset(L"p", false));
}

TEST_F(Presets, DeletingRemovesTheUsersPresetOnly) {
    Write("[KivoraPreset]\n", true);
    EXPECT_FALSE(engine.DeletePreset(L"p"));
    Write("[KivoraPreset]\n");
    EXPECT_TRUE(engine.DeletePreset(L"p"));
    EXPECT_FALSE(engine.PresetExists(L"p", false));
    EXPECT_TRUE(engine.PresetExists(L"p", true));
}

TEST_F(Presets, TheFoldersAreThoseOfTheUserAndOfTheFactory) {
    EXPECT_EQ(engine.GetPresetsDir(false).ToUtf8(), (rig.folder / "user/Presets/").native());
    EXPECT_EQ(engine.GetPresetsDir(true).ToUtf8(), (rig.folder / "factory/").native());
    EXPECT_TRUE(std::filesystem::is_directory(rig.folder / "user/Presets"));
}

TEST_F(Presets, TheFrontLoadsWithKeysHeldAndLeavesNoNote) {
    SynthModel synth;
    rig.GetDevice(kSynth).onWrite = [&synth](const LibMidi::MIDIEvent& event) { synth.Play(event); };
    Kivora::EngineControls controls(engine);
    Write("[KivoraPreset]\nPatch0=-1\nTranspose0=12\nVolume0=50\n");
    engine.PlayNoteOn(60, 100);
    rig.RunPlayer();
    EXPECT_FALSE(controls.LoadPreset(L"none", false));
    rig.RunPlayer();
    EXPECT_TRUE(synth.IsSounding()) << "a preset that is not there ends no note";
    rig.TakeWritten();
    EXPECT_TRUE(controls.LoadPreset(L"p", false));
    EXPECT_THAT(rig.TakeWritten(), Contains("b9 07 32"));
    EXPECT_FALSE(synth.IsSounding());
    engine.PlayNoteOff(60);
    rig.RunPlayer();
    EXPECT_FALSE(synth.IsSounding());
}
