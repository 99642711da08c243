// What the random player is made of: it notices what hangs, its lists can be written down, and they get shorter.
#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>

#include "e2e/player/Action.h"
#include "e2e/player/ActionGenerator.h"
#include "e2e/player/LentDevices.h"
#include "e2e/player/Shrinker.h"
#include "e2e/player/Sounding.h"
#include "support/TemporaryFolder.h"

namespace {

using KivoraTest::CTemporaryFolder;

using Player::ActionGenerator;
using Player::CActions;
using Player::EAct;
using Player::Shrink;
using Player::Sounding;
using Player::TAction;
using testing::ElementsAre;

TEST(SoundingTest, NamesANoteThatNobodyEnds) {
    Sounding sounding;
    sounding.Take(0, 0x90, 60, 80);
    sounding.Take(0, 0x91, 60, 80);
    sounding.Take(0, 0x80, 60, 0);
    EXPECT_FALSE(sounding.IsQuiet());
    EXPECT_THAT(sounding.GetNames(), ElementsAre("output 0, channel 2: note 60"));
    sounding.Take(0, 0x91, 60, 0);
    EXPECT_TRUE(sounding.IsQuiet());
    EXPECT_EQ(sounding.GetStrikeCount(), 2U);
}

TEST(SoundingTest, NamesAPedalThatIsDown) {
    Sounding sounding;
    for (const std::uint8_t pedal : {std::uint8_t{64}, std::uint8_t{66}, std::uint8_t{69}}) {
        sounding.Take(1, 0xB2, pedal, 64);
    }
    EXPECT_THAT(sounding.GetNames(), ElementsAre("output 1, channel 3: pedal 64", "output 1, channel 3: pedal 66",
                                                 "output 1, channel 3: pedal 69"));
    sounding.Take(1, 0xB2, 64, 63);
    sounding.Take(1, 0xB2, 66, 0);
    EXPECT_THAT(sounding.GetNames(), ElementsAre("output 1, channel 3: pedal 69"));
    sounding.Take(1, 0xB2, 121, 0);
    EXPECT_TRUE(sounding.IsQuiet());
}

TEST(SoundingTest, AllNotesOffIsOfOneChannelAndLeavesThePedals) {
    Sounding sounding;
    sounding.Take(0, 0x90, 60, 80);
    sounding.Take(0, 0x91, 61, 80);
    sounding.Take(0, 0xB0, 64, 127);
    sounding.Take(0, 0xB0, 123, 0);
    EXPECT_THAT(sounding.GetNames(), ElementsAre("output 0, channel 1: pedal 64", "output 0, channel 2: note 61"));
}

TEST(SoundingTest, AResetOrALostDeviceEndsWhatSoundsThere) {
    Sounding sounding;
    for (const int output : {0, 1}) {
        sounding.Take(output, 0x90, 60, 80);
        sounding.Take(output, 0xB3, 64, 127);
    }
    sounding.Take(0, 0xFF, 0, 0);
    EXPECT_EQ(sounding.GetNames().size(), 2U);
    sounding.Forget(1);
    EXPECT_TRUE(sounding.IsQuiet());
}

TEST(SoundingTest, OtherMessagesChangeNothing) {
    Sounding sounding;
    sounding.Take(0, 0xC0, 60, 0);
    sounding.Take(0, 0xE0, 60, 64);
    sounding.Take(0, 0xB0, 7, 100);
    sounding.Take(0, 0xA0, 60, 100);
    EXPECT_TRUE(sounding.IsQuiet());
}

TEST(LentDevicesTest, AnUnpluggedOutputIsSilentAndAnUnpluggedKeyboardMute) {
    const CTemporaryFolder folder;
    Player::LentDevices devices((folder / "devices").native());
    Sounding sounding;
    sounding.Take(1, 0x90, 60, 80);
    devices.Listen(sounding);
    EXPECT_FALSE(sounding.IsQuiet());
    devices.Unplug(1);
    devices.Unplug(1);
    devices.Listen(sounding);
    EXPECT_TRUE(sounding.IsQuiet());
    EXPECT_FALSE(devices.IsPluggedIn(1));
    devices.PlugIn(1);
    EXPECT_TRUE(devices.IsPluggedIn(1));
}

TEST(ActionTest, EveryActionIsReadBackFromItsText) {
    const CActions actions = ActionGenerator(7).Make(2000);
    std::stringstream lines;
    for (const TAction& action : actions) {
        lines << action << "\n";
    }
    EXPECT_EQ(Player::ReadActions(lines), actions);
    EXPECT_EQ(Player::ToText({EAct::kMIDI, {144, 60, 80}}), "midi 144 60 80");
    EXPECT_FALSE(Player::ToAction("key-down"));
    EXPECT_FALSE(Player::ToAction("sing 1"));
    EXPECT_FALSE(Player::ToAction(""));
}

TEST(ActionGeneratorTest, ASeedGivesItsActionsAndAnotherSeedOthers) {
    EXPECT_EQ(ActionGenerator(1).Make(500), ActionGenerator(1).Make(500));
    EXPECT_NE(ActionGenerator(1).Make(500), ActionGenerator(2).Make(500));
    EXPECT_GE(Player::CountDeeds(ActionGenerator(1).Make(500)), 500U);
}

TEST(ActionGeneratorTest, EverySurfaceIsPlayed) {
    const CActions actions = ActionGenerator(3).Make(100000);  // some come once in 10,000
    for (int act = 0; act <= static_cast<int>(EAct::kEnd); ++act) {
        EXPECT_TRUE(std::any_of(actions.begin(), actions.end(), [act](const TAction& action) {
            return action.act == static_cast<EAct>(act);
        })) << Player::ToText({static_cast<EAct>(act), {}});
    }
}

TEST(ShrinkerTest, FindsTheFewThatMatterInTheirOrder) {
    std::vector<int> list(500);
    for (int i = 0; i < 500; ++i) {
        list[static_cast<std::size_t>(i)] = i;
    }
    const std::function<bool(const std::vector<int>&)> fails = [](const std::vector<int>& items) {
        const auto first = std::find(items.begin(), items.end(), 17);
        return first != items.end() && std::find(first, items.end(), 301) != items.end() &&
               std::find(first, items.end(), 302) != items.end();
    };
    EXPECT_THAT(Shrink(list, fails, 1000), ElementsAre(17, 301, 302));
}

TEST(ShrinkerTest, KeepsAListOfWhichNothingCanGo) {
    const std::function<bool(const std::vector<int>&)> fails = [](const std::vector<int>& items) {
        return items == std::vector{1, 2, 3};
    };
    EXPECT_THAT(Shrink({1, 2, 3}, fails, 100), ElementsAre(1, 2, 3));
}

TEST(ShrinkerTest, AFailureOfNothingShrinksToNothing) {
    const std::function<bool(const std::vector<int>&)> fails = [](const std::vector<int>&) { return true; };
    EXPECT_TRUE(Shrink({1, 2, 3, 4, 5}, fails, 100).empty());
}

TEST(ShrinkerTest, AsksNoMoreOftenThanItMay) {
    int asked = 0;
    const std::function<bool(const std::vector<int>&)> fails = [&asked](const std::vector<int>&) {
        ++asked;
        return false;
    };
    Shrink(std::vector<int>(100, 1), fails, 5);
    EXPECT_EQ(asked, 5);
}

}  // namespace
