#include "app/SoundDoctor.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <QString>

#include "engine/CKivora.h"
#include "locale/Locale.h"
#include "support/FatalLog.h"
#include "support/Files.h"
#include "support/TinySoundFont.h"
#include "ui/dialogs/SoundReport.h"
#include "unit/engine/EngineRig.h"
#include "unit/libmidi/synth/FakeSynthApi.h"

namespace {

using namespace KivoraTest;
using namespace std::chrono_literals;
using NK::Platform::SequencerAccess;

/// A machine on which everything plays, until a test breaks something.
class SoundDoctorTest : public testing::TestWithParam<const char*> {
protected:
    SoundDoctorTest() {
        WriteFileBytes(rig_.folder / "font.sf2", MakeTinySoundFont());
        environment_.soundFont = rig_.folder / "font.sf2";
        environment_.deviceFolder = rig_.folder / "dev";
        environment_.runtimeFolder = rig_.folder / "run";
        rig_.Create();
    }
    SoundFindings Look() {
        const auto synthesizer = std::make_shared<LibMidi::Synthesizer>(
            api_, environment_,
            LibMidi::Synthesizer::Limits{.driverStart = 60s, .fontLoad = 60s, .apply = 60s, .close = 60s});
        return Kivora::SoundDoctor(synthesizer, {[this] { return volume_; }, [this] { return sequencer_; },
                                                 [this] { return hasRealtime_; }, [this] { ++heard_; }})
            .Look(rig_.engine.get());
    }
    /// What is said against what stands in the file "SITUATION_LANGUAGE.txt".
    void ExpectReport(const std::string& situation) {
        Kivora::SetLocale(GetParam(), false);
        const SoundFindings findings = Look();
        QString text = SoundReport::ToText(SoundReport::Write(findings));
        text.replace(QString::fromStdString(rig_.folder.GetPath().string()), "/folder");
        const std::string name = situation + "_" + std::string(GetParam()).substr(0, 2) + ".txt";
        const std::filesystem::path output = std::filesystem::path(KIVORA_GOLDEN_OUTPUT_DIR) / name;
        WriteFileBytes(output, text.toStdString());
        EXPECT_EQ(text.toStdString(), ReadFileBytes(std::filesystem::path(KIVORA_GOLDEN_DIR) / name))
            << "what came out is in " << output;
        Kivora::SetLocale("en_US", false);
    }

    const CFatalLog log_;
    EngineRig rig_;
    FakeSynthApi api_;
    LibMidi::SynthEnvironment environment_;
    Kivora::SystemVolume volume_{SoundFindings::Volume::kKnown, false, 80};
    SequencerAccess sequencer_ = SequencerAccess::kGranted;
    bool hasRealtime_ = true;
    int heard_ = 0;
};

}  // namespace

TEST_P(SoundDoctorTest, AllIsWell) {
    EXPECT_TRUE(Look().WouldSound());
    EXPECT_EQ(heard_, 1) << "the one audio system that plays";
    ExpectReport("well");
}

TEST_P(SoundDoctorTest, NoSoundFont) {
    environment_.soundFont = rig_.folder / "none.sf2";
    EXPECT_FALSE(Look().WouldSound());
    EXPECT_EQ(heard_, 0);
    ExpectReport("no_font");
}

TEST_P(SoundDoctorTest, NoSoundServer) {
    api_.failingDrivers = {"pulseaudio"};
    EXPECT_FALSE(Look().WouldSound());
    ExpectReport("no_server");
}

TEST_P(SoundDoctorTest, NoSequencerAndNoPriority) {
    sequencer_ = SequencerAccess::kAbsent;
    hasRealtime_ = false;
    rig_.backend.Unplug(kKeyboard);
    rig_.backend.Unplug(kOtherKeyboard);
    rig_.backend.Unplug(kOtherSynth);
    rig_.Create();
    EXPECT_TRUE(Look().WouldSound()) << "the software synthesizer needs neither";
    ExpectReport("no_sequencer");
}

TEST_P(SoundDoctorTest, TheChosenOutputIsUnplugged) {
    rig_.engine->SetSavedOutputPortName(L"USB Piano");
    EXPECT_FALSE(Look().WouldSound());
    ExpectReport("unplugged");
}

TEST_P(SoundDoctorTest, TheSystemIsMuted) {
    volume_.isMuted = true;
    EXPECT_FALSE(Look().WouldSound());
    ExpectReport("muted");
}

INSTANTIATE_TEST_SUITE_P(In, SoundDoctorTest, testing::Values("en_US", "ru_RU"));

namespace {

class SoundDoctorDetails : public SoundDoctorTest {};

}  // namespace

TEST_P(SoundDoctorDetails, AnotherOutputNeedsNeitherAFontNorTheSystemsVolume) {
    environment_.soundFont = rig_.folder / "none.sf2";
    volume_.isMuted = true;
    rig_.engine->SetSavedOutputPortName(kOtherSynth);
    const SoundFindings findings = Look();
    EXPECT_TRUE(findings.WouldSound());
    for (const SoundReport::Line& line : SoundReport::Write(findings)) {
        EXPECT_NE(line.grade, SoundReport::Grade::kTrouble) << line.text.toStdString();
    }
}

TEST_P(SoundDoctorDetails, AVolumeOfNothingIsSilence) {
    volume_.percent = 0;
    EXPECT_FALSE(Look().WouldSound());
    volume_.state = SoundFindings::Volume::kNoTool;
    EXPECT_TRUE(Look().WouldSound()) << "nobody knows";
}

TEST_P(SoundDoctorDetails, ALoopBackSoundsOnlyWhereAnotherProgramListens) {
    constexpr const wchar_t* kLoopBack = L"Midi Through Port-0";
    rig_.backend.Plug(kLoopBack, LibMidi::kOutput);
    rig_.Create().SetSavedOutputPortName(kLoopBack);
    const SoundFindings findings = Look();
    EXPECT_FALSE(findings.WouldSound());
    EXPECT_EQ(SoundReport::Write(findings)[1].text,
              "The chosen synthesizer, Midi Through Port-0, only hands the notes to other programs.");
}

TEST_P(SoundDoctorDetails, OfTheSoftwareSynthesizerItsFontTellsThatItIsNotThere) {
    environment_.soundFont = rig_.folder / "none.sf2";
    rig_.backend.Unplug(kSynth);
    rig_.Create().SetSavedOutputPortName(kSynth);
    const SoundFindings findings = Look();
    EXPECT_FALSE(findings.WouldSound());
    EXPECT_TRUE(SoundReport::Write(findings)[1].text.startsWith("No sound font is found"));
}

TEST_P(SoundDoctorDetails, WithoutAnEngineThereIsNothingToPlayTo) {
    rig_.engine.reset();
    const SoundFindings findings = Look();
    EXPECT_FALSE(findings.WouldSound());
    EXPECT_EQ(SoundReport::Write(findings)[1].text, "There is no synthesizer to play to.");
}

TEST_P(SoundDoctorDetails, AFontThatIsNoneIsSaid) {
    WriteFileBytes(rig_.folder / "font.sf2", "nothing");
    const SoundFindings findings = Look();
    EXPECT_EQ(findings.font, SoundFindings::Font::kUnplayable);
    EXPECT_FALSE(findings.fontReason.isEmpty());
    EXPECT_TRUE(findings.drivers.isEmpty());
}

TEST_P(SoundDoctorDetails, TheWordsOfTheVolumesToolAreUnderstood) {
    EXPECT_EQ(
        Kivora::ParseVolume("Volume: front-left: 52428 /  80% / -5.81 dB,   front-right: 26214 /  40% / -23.87 dB\n"
                            "        balance -0.50\n"),
        80);
    EXPECT_EQ(Kivora::ParseVolume("Volume: mono: 0 /   0% / -inf dB"), 0);
    EXPECT_EQ(Kivora::ParseVolume("Connection failure"), std::nullopt);
    EXPECT_EQ(Kivora::ParseVolume("99999999999999%"), 999999) << "never beyond a number";
}

INSTANTIATE_TEST_SUITE_P(In, SoundDoctorDetails, testing::Values("en_US"));
