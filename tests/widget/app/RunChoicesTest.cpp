#include "app/RunChoices.h"

#include <gtest/gtest.h>

#include "app/CommandLine.h"
#include "app/ConsoleOutput.h"
#include "engine/CKivora.h"
#include "engine/EngineControls.h"
#include "locale/Locale.h"
#include "support/Files.h"
#include "unit/engine/EngineRig.h"

namespace {

using namespace KivoraTest;

class RunChoices : public testing::Test {
protected:
    RunChoices() {
        Kivora::SetLocale("en_US", false);
        engine_.SetSavedOutputPortName(kSynth);
        engine_.SetSavedInputPortName(kKeyboard);
    }
    /// The exit code, -1 for none.
    int Apply() { return Kivora::ApplyChoices(line_, controls_, ports_).value_or(-1); }
    std::string ApplyAndListen() {
        testing::internal::CaptureStderr();
        exitCode_ = Apply();
        return testing::internal::GetCapturedStderr();
    }
    /// "output, input" in the settings file after a save.
    std::string GetSavedPorts() {
        const Kivora::RunPorts::Hidden hidden(ports_, controls_);
        return engine_.GetOutputPortName().ToUtf8() + ", " + engine_.GetInputPortName().ToUtf8();
    }

    EngineRig rig_;
    Kivora::CKivora& engine_ = rig_.Create();
    Kivora::EngineControls controls_{engine_};
    Kivora::RunPorts ports_;
    Kivora::CommandLine line_;
    int exitCode_ = 0;
};

}  // namespace

TEST_F(RunChoices, PortsOfTheRunAreOpenedAndNotSaved) {
    line_.outputPort = "Other synthesizer";
    line_.inputPort = "Other keyboard";
    EXPECT_EQ(Apply(), -1);
    controls_.OpenPorts();
    EXPECT_TRUE(rig_.GetDevice(kOtherSynth).isOpen);
    EXPECT_TRUE(rig_.GetDevice(kOtherKeyboard).isOpen);
    EXPECT_EQ(GetSavedPorts(), "Software synthesizer, Keyboard");
    EXPECT_EQ(engine_.GetOutputPortName(), kOtherSynth) << "the run goes on with its own";
    EXPECT_EQ(engine_.GetInputPortName(), kOtherKeyboard);
}

TEST_F(RunChoices, PortsAreFoundByTheNamesThatAnEarlierVersionGaveThem) {
    rig_.GetDevice(kOtherSynth).formerName = L"Port 1";
    rig_.GetDevice(kOtherKeyboard).formerName = L"Port 2";
    line_.outputPort = "Port 1";
    line_.inputPort = "Port 2";
    EXPECT_EQ(Apply(), -1);
    controls_.OpenPorts();
    EXPECT_TRUE(rig_.GetDevice(kOtherSynth).isOpen);
    EXPECT_TRUE(rig_.GetDevice(kOtherKeyboard).isOpen);
    EXPECT_EQ(engine_.GetOutputPortName(), kOtherSynth);
    EXPECT_EQ(GetSavedPorts(), "Software synthesizer, Keyboard");
    line_.outputPort = "Port 2";
    controls_.Close();
    EXPECT_NE(ApplyAndListen().find("no MIDI output \"Port 2\""), std::string::npos) << "which is an input";
}

TEST_F(RunChoices, AnotherPortThatTheUserChoosesIsSaved) {
    line_.outputPort = "Other synthesizer";
    EXPECT_EQ(Apply(), -1);
    controls_.OpenPorts();
    engine_.SetSavedInputPortName(kOtherKeyboard);
    EXPECT_EQ(GetSavedPorts(), "Software synthesizer, Other keyboard");
    engine_.SetSavedOutputPortName(L"A third one");
    EXPECT_EQ(GetSavedPorts(), "A third one, Other keyboard");
}

TEST_F(RunChoices, WithoutPortsTheRememberedOnesStay) {
    EXPECT_EQ(Apply(), -1);
    EXPECT_EQ(engine_.GetOutputPortName(), kSynth);
    EXPECT_EQ(GetSavedPorts(), "Software synthesizer, Keyboard");
}

TEST_F(RunChoices, APortThatIsNotThereIsRefused) {
    line_.outputPort = "None";
    EXPECT_EQ(ApplyAndListen(),
              "kivora: There is no MIDI output \"None\". kivora --list-ports lists those that are there.\n");
    EXPECT_EQ(exitCode_, 2);
    line_.outputPort = "Keyboard";
    EXPECT_NE(ApplyAndListen().find("no MIDI output \"Keyboard\""), std::string::npos) << "which is an input";
    line_.outputPort.clear();
    line_.inputPort = "None";
    EXPECT_EQ(ApplyAndListen(),
              "kivora: There is no MIDI input \"None\". kivora --list-ports lists those that are there.\n");
    EXPECT_EQ(engine_.GetOutputPortName(), kSynth);
}

TEST_F(RunChoices, APresetIsLoadedByItsNameOrItsFile) {
    engine_.SetPatch(11, 0);
    ASSERT_TRUE(engine_.SavePreset(L"Mine"));
    engine_.SetPatch(0, 0);
    line_.preset = "Mine";
    EXPECT_EQ(Apply(), -1);
    EXPECT_EQ(engine_.GetPatch(0), 11);
    const std::filesystem::path file = rig_.folder / "Sent by a friend.kivoraLXPreset";
    std::filesystem::copy_file(rig_.folder / "user/Presets/Mine.kivoraLXPreset", file);
    engine_.SetPatch(0, 0);
    line_.preset = QString::fromStdString(file.string());
    EXPECT_EQ(Apply(), -1);
    EXPECT_EQ(engine_.GetPatch(0), 11);
    EXPECT_EQ(engine_.GetPresetName(), L"Sent by a friend");
}

TEST_F(RunChoices, APresetThatCannotBeLoadedIsTold) {
    line_.preset = "None";
    EXPECT_EQ(ApplyAndListen(), "kivora: There is no preset \"None\".\n");
    EXPECT_EQ(exitCode_, 2);
    const std::string path = (rig_.folder / "x.kivoraLXPreset").string();
    line_.preset = QString::fromStdString(path);
    EXPECT_EQ(ApplyAndListen(), "kivora: The preset " + path + " cannot be read: No such file or directory.\n");
    EXPECT_EQ(exitCode_, 1);
    WriteFileBytes(path, "[Something]\n");
    EXPECT_EQ(ApplyAndListen(), "kivora: " + path + " is no preset.\n");
    EXPECT_EQ(exitCode_, 1);
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);
    EXPECT_EQ(ApplyAndListen(), "kivora: The preset " + path + " cannot be read: It is no regular file.\n");
}
