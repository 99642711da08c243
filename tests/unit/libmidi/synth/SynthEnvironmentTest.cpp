#include "libmidi/synth/SynthEnvironment.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;
using KivoraTest::CTemporaryFolder;
using LibMidi::FindSoundFont;
using LibMidi::SynthEnvironment;

class SynthEnvironmentTest : public testing::Test {
protected:
    SynthEnvironmentTest() {
        environment_.fontFolders = {folder_ / "sf2", folder_ / "sf3"};
        environment_.deviceFolder = folder_ / "dev";
        environment_.runtimeFolder = folder_ / "run";
    }
    fs::path Make(const std::string& name) {
        const fs::path path = folder_ / name;
        fs::create_directories(path.parent_path());
        std::ofstream(path) << "x";
        return path;
    }

    CTemporaryFolder folder_;
    SynthEnvironment environment_;
};

TEST_F(SynthEnvironmentTest, WithoutAFontNoneIsFound) {
    EXPECT_TRUE(FindSoundFont(environment_).empty());
    Make("sf2/unknown.sf2");
    EXPECT_TRUE(FindSoundFont(environment_).empty());
}

TEST_F(SynthEnvironmentTest, TheSystemsDefaultComesBeforeKnownFonts) {
    const auto known = Make("sf2/TimGM6mb.sf2");
    EXPECT_EQ(FindSoundFont(environment_), known);
    const auto sf3 = Make("sf3/default-GM.sf3");
    EXPECT_EQ(FindSoundFont(environment_), sf3);
    const auto sf2 = Make("sf2/default-GM.sf2");
    EXPECT_EQ(FindSoundFont(environment_), sf2);
}

TEST_F(SynthEnvironmentTest, ADefaultThatLeadsNowhereIsPassedOver) {
    const auto known = Make("sf2/FluidR3_GM.sf2");
    fs::create_symlink(folder_ / "gone.sf2", folder_ / "sf2/default-GM.sf2");
    EXPECT_EQ(FindSoundFont(environment_), known);
}

TEST_F(SynthEnvironmentTest, AFolderOfAFontsNameIsNoFont) {
    fs::create_directories(folder_ / "sf2/default-GM.sf2");
    EXPECT_TRUE(FindSoundFont(environment_).empty());
}

TEST_F(SynthEnvironmentTest, TheNamedFontIsTheOnlyCandidate) {
    Make("sf2/default-GM.sf2");
    environment_.soundFont = folder_ / "missing.sf2";
    EXPECT_TRUE(FindSoundFont(environment_).empty());
    const auto own = Make("own.sf2");
    environment_.soundFont = own;
    EXPECT_EQ(FindSoundFont(environment_), own);
}

TEST_F(SynthEnvironmentTest, AJackServerShowsInTheSharedMemoryOrAsPipeWire) {
    EXPECT_FALSE(IsJackServerLikely(environment_));
    Make("dev/shm/other");
    EXPECT_FALSE(IsJackServerLikely(environment_));
    Make("run/pipewire-0");
    EXPECT_TRUE(IsJackServerLikely(environment_));
    fs::remove_all(folder_ / "run");
    Make("dev/shm/jack_default_1000_0");
    EXPECT_TRUE(IsJackServerLikely(environment_));
}

TEST_F(SynthEnvironmentTest, ASoundCardShowsAsAPcmDevice) {
    EXPECT_FALSE(HasSoundDevices(environment_));
    Make("dev/snd/seq");
    EXPECT_FALSE(HasSoundDevices(environment_));
    Make("dev/snd/pcmC0D0p");
    EXPECT_TRUE(HasSoundDevices(environment_));
}

TEST_F(SynthEnvironmentTest, TheAudioSystemsLearnTheProgramsName) {
    LibMidi::PrepareAudioEnvironment();
    const char* properties = std::getenv("PULSE_PROP_OVERRIDE");
    ASSERT_NE(properties, nullptr);
    EXPECT_NE(std::string(properties).find("application.name='Kivora LX'"), std::string::npos);
    const char* noServer = std::getenv("JACK_NO_START_SERVER");
    ASSERT_NE(noServer, nullptr);
    EXPECT_STREQ(noServer, "1");
}

}  // namespace
