// What is held when the keyboard or the mouse goes elsewhere: no note and no pedal is left hanging.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <QDir>
#include <set>
#include <string>
#include <vector>

#include "e2e/InstrumentProcess.h"
#include "e2e/Sounding.h"
#include "support/WaitUntil.h"

namespace {

using KivoraTest::WaitUntil;

TEST(SoundingAfterTest, FollowsNotesPedalsAndResets) {
    using Names = std::set<std::string>;
    EXPECT_EQ(SoundingAfter({"90 3C 50", "91 3C 50", "80 3C 00"}), Names{"1/60"});
    EXPECT_EQ(SoundingAfter({"90 3C 50", "90 3C 00"}), Names{});
    EXPECT_EQ(SoundingAfter({"B0 40 7F", "90 3C 50", "B0 7B 00"}), Names{"0/pedal"});
    EXPECT_EQ(SoundingAfter({"B0 40 7F", "B0 40 00"}), Names{});
    EXPECT_EQ(SoundingAfter({"B2 40 7F", "90 3C 50", "FF 00 00"}), Names{});
}

/// Something that takes keys or the mouse away from the panel, and its end.
struct Disturbance {
    const char* name;
    std::vector<QStringList> begin;
    /// Of the window that comes up, empty for none: it gets the focus.
    const char* title;
    std::vector<QStringList> end;
    bool usesMouse;  ///< so that no mouse button can be held meanwhile
    bool endsHeld;   ///< at once; otherwise it is ended by its release
};

std::ostream& operator<<(std::ostream& out, const Disturbance& disturbance) {
    return out << disturbance.name;
}

QStringList ClickAt(int x, int y, int button = 1) {
    return {
        "mousemove", "--window", "WINDOW", QString::number(x), QString::number(y), "click", QString::number(button)};
}

const Disturbance kDisturbances[] = {
    {"FocusLeaves", {{"windowfocus", "ROOT"}}, "", {}, false, true},
    {"PopUpMenu", {{"key", "F10"}}, "", {{"key", "Escape"}}, false, true},
    {"PatchMenu", {ClickAt(380, 235, 3)}, "", {{"key", "Escape"}}, true, true},
    {"ComboList", {ClickAt(940, 132)}, "", {{"key", "Escape"}}, true, true},
    {"AboutBox", {ClickAt(1130, 22)}, "^About$", {{"key", "Escape"}}, true, true},
    {"PresetDialog", {{"key", "F2"}}, "^Load Preset$", {{"key", "Escape"}}, false, true},
    {"SettingsDialog", {{"key", "F4"}}, "^MIDI Settings$", {{"key", "Escape"}}, false, true},
    {"OctaveShift", {ClickAt(218, 272)}, "", {ClickAt(46, 272)}, true, false},
    {"VoiceMode", {{"key", "F6"}}, "", {{"key", "F5"}}, false, false},
    {"Panic", {{"key", "F12"}}, "", {}, false, true},
};

class HeldThings : public testing::Test {
protected:
    enum Held { kKey = 1, kPedal = 2, kMouse = 4 };

    void SetUp() override { ASSERT_TRUE(instrument.Start()); }

    std::set<std::string> Sounding() { return SoundingAfter(instrument.GetMessages()); }
    bool Run(QStringList arguments) {
        arguments.replaceInStrings("WINDOW", instrument.GetWindow());
        if (arguments.contains("ROOT")) {
            const QString root =
                instrument.RunOnDisplay("xdotool", {"search", "--maxdepth", "0", ".*"}).section('\n', 0, 0).trimmed();
            arguments.replaceInStrings("ROOT", root);
        }
        return instrument.Xdotool(arguments);
    }
    void Press(int held) {
        const std::size_t before = Sounding().size();
        std::size_t expected = before;
        if ((held & kPedal) != 0) {
            ASSERT_TRUE(Run({"keydown", "space"}));
            expected += 3;
        }
        if ((held & kKey) != 0) {
            ASSERT_TRUE(Run({"keydown", "z"}));
            expected += 1;
        }
        if ((held & kMouse) != 0) {
            ASSERT_TRUE(Run({"mousemove", "--window", "WINDOW", "30", "480", "mousedown", "1"}));
            expected += 1;
        }
        ASSERT_TRUE(WaitUntil([&] { return Sounding().size() == expected; })) << Sounding().size() << " sound";
    }
    void Release(int held) {
        if ((held & kMouse) != 0) {
            EXPECT_TRUE(Run({"mouseup", "1"}));
        }
        if ((held & kKey) != 0) {
            EXPECT_TRUE(Run({"keyup", "z"}));
        }
        if ((held & kPedal) != 0) {
            EXPECT_TRUE(Run({"keyup", "space"}));
        }
    }
    /// Runs the commands; the window of that title gets the focus.
    void Begin(const Disturbance& disturbance) {
        for (const QStringList& command : disturbance.begin) {
            ASSERT_TRUE(Run(command));
        }
        if (*disturbance.title != 0) {
            ASSERT_TRUE(WaitUntil([&] {
                return Run({"search", "--onlyvisible", "--name", disturbance.title, "windowfocus"});
            })) << disturbance.title;
        }
    }
    void End(const Disturbance& disturbance) {
        for (const QStringList& command : disturbance.end) {
            ASSERT_TRUE(Run(command));
        }
        ASSERT_TRUE(WaitUntil([&] {
            return *disturbance.title == 0 ||
                   instrument.RunOnDisplay("xdotool", {"search", "--onlyvisible", "--name", disturbance.title})
                       .trimmed()
                       .isEmpty();
        }));
        ASSERT_TRUE(WaitUntil([&] {
            Run({"windowfocus", "WINDOW"});
            return instrument.RunOnDisplay("xdotool", {"getwindowfocus"}).trimmed() == instrument.GetWindow();
        }));
    }
    /// The panel has the keyboard again once a key plays.
    void ExpectPlayable() {
        const std::size_t before = instrument.GetNoteMessages().size();
        EXPECT_TRUE(WaitUntil([&] {
            Run({"key", "x"});
            return instrument.GetNoteMessages().size() >= before + 2;
        }));
        EXPECT_TRUE(WaitUntil([&] { return Sounding().empty(); }));
    }

    InstrumentProcess instrument;
};

class Hold : public HeldThings, public testing::WithParamInterface<Disturbance> {};

TEST_P(Hold, LeavesNothingHanging) {
    const Disturbance& disturbance = GetParam();
    for (const int held : {int{kKey}, int{kPedal}, int{kMouse}, int{kKey | kPedal}, int{kKey | kPedal | kMouse}}) {
        if (disturbance.usesMouse && (held & kMouse) != 0) {
            continue;
        }
        for (const bool releasedMeanwhile : {true, false}) {
            SCOPED_TRACE("held " + std::to_string(held) + (releasedMeanwhile ? ", released meanwhile" : ""));
            Press(held);
            Begin(disturbance);
            if (disturbance.endsHeld) {
                EXPECT_TRUE(WaitUntil([&] { return Sounding().empty(); }, std::chrono::seconds(10)))
                    << *Sounding().begin() << " hangs";
            }
            if (releasedMeanwhile) {
                Release(held);
            }
            End(disturbance);
            if (!releasedMeanwhile) {
                Release(held);
            }
            EXPECT_TRUE(WaitUntil([&] { return Sounding().empty(); }, std::chrono::seconds(10)))
                << *Sounding().begin() << " hangs";
            ExpectPlayable();
            if (HasFailure()) {
                return;
            }
        }
    }
    EXPECT_EQ(instrument.Close(), 0);
    EXPECT_TRUE(Sounding().empty());
}

INSTANTIATE_TEST_SUITE_P(All, Hold, testing::ValuesIn(kDisturbances),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(HeldThings, AChangeOfTheLanguageLeavesNothing) {
    // In the menu, from its end: Quit, About, Help, the keyboard's test, MIDI Learn, the velocities, Settings,
    // Language.
    const QStringList toLanguages = {"key", "F10", "Up", "Up", "Up", "Up", "Up", "Up", "Up", "Up", "Right"};
    const auto isSaved = [&](const char* code) {
        std::ifstream file((instrument.GetDataDir() + "/data/Brennholt/Kivora/Locale.ini").toStdString());
        const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        return text.find(code) != std::string::npos;
    };
    for (const bool releasedBetween : {true, false}) {
        Press(kKey | kPedal);
        ASSERT_TRUE(Run(toLanguages + QStringList{"Down", "Return"}));
        ASSERT_TRUE(WaitUntil([&] { return isSaved("ru_RU"); }));
        EXPECT_TRUE(WaitUntil([&] { return Sounding().empty(); }, std::chrono::seconds(10)))
            << *Sounding().begin() << " hangs";
        if (releasedBetween) {
            Release(kKey | kPedal);
        }
        ExpectPlayable();
        ASSERT_TRUE(Run(toLanguages + QStringList{"Return"}));
        ASSERT_TRUE(WaitUntil([&] { return isSaved("en_US"); }));
        if (!releasedBetween) {
            Release(kKey | kPedal);
        }
        ExpectPlayable();
    }
    EXPECT_EQ(instrument.Close(), 0);
    EXPECT_TRUE(Sounding().empty());
}

TEST_F(HeldThings, NothingIsTypedIntoADialogByAHeldKey) {
    const auto presets = [&] {
        return QDir(instrument.GetDataDir() + "/data/Brennholt/Kivora/Presets").entryList(QDir::Files);
    };
    Press(kKey | kPedal);
    ASSERT_TRUE(Run({"key", "F3"}));
    ASSERT_TRUE(WaitUntil([&] { return Run({"search", "--onlyvisible", "--name", "^Save Preset$", "windowfocus"}); }));
    ASSERT_TRUE(Run({"sleep", "1"}));  // in which the server repeats them
    ASSERT_TRUE(Run({"type", "--delay", "50", "name"}));
    ASSERT_TRUE(Run({"key", "Return"}));
    EXPECT_TRUE(WaitUntil([&] { return !presets().isEmpty(); }));
    ASSERT_EQ(presets().size(), 1);
    EXPECT_TRUE(presets().front().startsWith("name")) << presets().front().toStdString();
    Release(kKey | kPedal);
    EXPECT_TRUE(WaitUntil([&] { return Sounding().empty(); }));
}

TEST_F(HeldThings, ThePedalIsLiftedWhenThePianoGetsTheFocus) {
    ASSERT_TRUE(Run({"key", "shift+Tab", "shift+Tab"}));  // past the piano to the control before it
    Press(kKey | kPedal);
    ASSERT_TRUE(Run({"key", "Tab"}));
    Release(kKey | kPedal);
    EXPECT_TRUE(WaitUntil([&] { return Sounding().empty(); }, std::chrono::seconds(10)))
        << *Sounding().begin() << " hangs";
}

TEST_F(HeldThings, AValueKeyUnderTheMouseStops) {
    const auto count = [&] {
        const std::vector<std::string> messages = instrument.GetMessages();
        return std::count_if(messages.begin(), messages.end(),
                             [](const std::string& message) { return message.starts_with("B0 07"); });
    };
    ASSERT_TRUE(Run(ClickAt(639, 235)));  // the volume
    for (const char* name : {"FocusLeaves", "PopUpMenu", "PresetDialog"}) {
        SCOPED_TRACE(name);
        const Disturbance& disturbance =
            *std::find_if(std::begin(kDisturbances), std::end(kDisturbances),
                          [&](const Disturbance& candidate) { return std::string(candidate.name) == name; });
        const auto before = count();
        ASSERT_TRUE(Run({"mousemove", "--window", "WINDOW", "754", "202", "mousedown", "1"}));
        ASSERT_TRUE(WaitUntil([&] { return count() >= before + 3; }));
        Begin(disturbance);
        ASSERT_TRUE(Run({"mouseup", "1"}));
        End(disturbance);
        const auto stopped = count();
        ASSERT_TRUE(Run({"key", "x", "sleep", "0.5", "key", "x"}));
        ExpectPlayable();
        EXPECT_EQ(count(), stopped);
    }
}

/// The X server repeats a held key by itself; the hold is long enough for dozens of repeats.
class HeldSwitches : public HeldThings {
protected:
    void ExpectOnce(const char* key, int messagesOfOne) {
        const auto count = [&] {
            const std::vector<std::string> messages = instrument.GetMessages();
            return std::count(messages.begin(), messages.end(), "B0 7B 00");
        };
        const auto before = count();
        ASSERT_TRUE(Run({"keydown", key, "sleep", "2", "keyup", key}));
        // The single voice's key, twice "all notes off", shows that everything before it has been played.
        ASSERT_TRUE(Run({"key", "F5"}));
        ASSERT_TRUE(WaitUntil([&] { return count() >= before + messagesOfOne + 2; }));
        EXPECT_EQ(count(), before + messagesOfOne + 2);
    }
};

TEST_F(HeldSwitches, AFunctionKeyActsOnce) {
    ExpectOnce("F8", 1);
    ExpectOnce("F6", 2);
}

TEST_F(HeldSwitches, EnterActsOnce) {
    ASSERT_TRUE(Run({"key", "Tab"}));
    ExpectOnce("Return", 2);
}

TEST_F(HeldThings, ClosingTheWindowEndsThem) {
    Press(kKey | kPedal | kMouse);
    EXPECT_EQ(instrument.Close(), 0);
    EXPECT_TRUE(Sounding().empty());
}

}  // namespace
