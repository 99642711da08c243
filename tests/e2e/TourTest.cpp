// The whole instrument as a person works it: every control of the panel by mouse and by keyboard, in both languages,
// with the bytes that each sends. A picture of the display after each step is kept beside the program under test.
#include <gtest/gtest.h>

#include <algorithm>
#include <QDir>
#include <string>
#include <vector>

#include "e2e/InstrumentProcess.h"
#include "support/WaitUntil.h"

namespace {

using KivoraTest::WaitUntil;

using Actions = std::vector<QStringList>;

enum class Dialog { kUntouched, kOpens, kCloses };

/// What is done, and the beginnings of the messages that it sends, perhaps among others. Their order is not held to:
/// what is queued together leaves the player's queue in any order.
struct Step {
    std::string name;
    Actions actions;
    std::vector<std::string> sends;
    Dialog dialog = Dialog::kUntouched;
};

QStringList MoveTo(int x, int y) {
    return {"mousemove", QString::number(x), QString::number(y)};
}

class Tour : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        ASSERT_TRUE(instrument_.Start({"--locale", GetParam()}));
        // "X=93" and so on, a line each.
        const QString place =
            instrument_.RunOnDisplay("xdotool", {"getwindowgeometry", "--shell", instrument_.GetWindow()});
        for (const QString& line : place.split('\n')) {
            if (line.startsWith("X=")) {
                left_ = line.mid(2).toInt();
            } else if (line.startsWith("Y=")) {
                top_ = line.mid(2).toInt();
            }
        }
        pictures_ = QDir(KIVORA_PICTURES_DIR + QString("/") + GetParam());
        ASSERT_TRUE(pictures_.mkpath("."));
    }

    /// Points on the panel.
    Actions Click(int x, int y, int button = 1) const {
        return {MoveTo(left_ + x, top_ + y), {"click", QString::number(button)}};
    }
    Actions Press(int x, int y) const { return {MoveTo(left_ + x, top_ + y), {"mousedown", "1"}, {"mouseup", "1"}}; }
    static Actions Key(const QString& key) { return {{"key", key}}; }
    /// So many controls on in the order of the Tab key, then what is done there.
    static Actions TabTo(int controls, const QString& key) {
        Actions actions(static_cast<std::size_t>(controls), QStringList{"key", "Tab"});
        actions.push_back({"key", key});
        return actions;
    }

    bool WaitForMessages(std::size_t from, const std::vector<std::string>& expected) const {
        return WaitUntil(
            [&] {
                std::vector<std::string> messages = instrument_.GetMessages();
                messages.erase(messages.begin(), messages.begin() + static_cast<std::ptrdiff_t>(from));
                return std::all_of(expected.begin(), expected.end(), [&](const std::string& beginning) {
                    const auto found = std::find_if(messages.begin(), messages.end(), [&](const std::string& message) {
                        return message.starts_with(beginning);
                    });
                    if (found == messages.end()) {
                        return false;
                    }
                    messages.erase(found);
                    return true;
                });
            },
            kStepLimit);
    }

    void Walk(const std::vector<Step>& steps) {
        int number = 0;
        for (const Step& step : steps) {
            const std::size_t from = instrument_.GetMessages().size();
            for (const QStringList& action : step.actions) {
                ASSERT_TRUE(instrument_.Xdotool(action)) << step.name;
            }
            if (step.dialog == Dialog::kOpens) {
                ASSERT_TRUE(instrument_.WaitForDialog()) << step.name;
            } else if (step.dialog == Dialog::kCloses) {
                ASSERT_TRUE(instrument_.FocusAlone()) << step.name;
            }
            EXPECT_TRUE(WaitForMessages(from, step.sends)) << step.name << " sent:" << Sent(from);
            const QString file =
                QString("%1-%2.png").arg(++number, 2, 10, QChar('0')).arg(QString::fromStdString(step.name));
            EXPECT_TRUE(instrument_.SavePicture(pictures_.filePath(file))) << step.name;
        }
    }

    std::string Sent(std::size_t from) const {
        std::string all;
        const std::vector<std::string> messages = instrument_.GetMessages();
        for (std::size_t i = from; i < messages.size(); ++i) {
            all += "\n" + messages[i];
        }
        return all;
    }

    static constexpr std::chrono::seconds kStepLimit{10};

    InstrumentProcess instrument_;
    int left_ = 0;
    int top_ = 0;
    QDir pictures_;
};

const std::vector<std::string> kAllNotesOff = {"B0 7B 00", "B1 7B 00", "B2 7B 00"};

TEST_P(Tour, EveryControlByMouse) {
    Walk({
        {"piano", Press(478, 500), {"90 3C", "80 3C 00"}},
        {"dual", Click(132, 82), kAllNotesOff},
        {"dual-note", Key("z"), {"90 3C 50", "91 3C 50", "80 3C 00", "81 3C 00"}},
        {"patch-2", Click(387, 271), {}},
        {"patch-2-plus", Click(822, 202), {"C1"}},
        {"patch-2-minus", Click(754, 202), {"C1"}},
        {"transpose-1", Click(513, 235), {}},
        {"transpose-1-up", Click(822, 202), kAllNotesOff},
        {"transposed-note", Key("z"), {"90 3D 50", "91 3C 50", "80 3D 00", "81 3C 00"}},
        {"transpose-2", Click(513, 271), {}},
        {"transpose-2-down", Click(754, 202), kAllNotesOff},
        {"volume-1", Click(639, 235), {}},
        {"volume-1-down", Click(754, 202), {"B0 07 61"}},
        {"volume-2", Click(639, 271), {}},
        {"volume-2-up", Click(822, 202), {"B1 07 67"}},
        {"split", Click(206, 82), kAllNotesOff},
        {"split-bass", Press(430, 500), {"92 3B", "82 3B 00"}},
        {"single", Click(58, 82), kAllNotesOff},
        {"patch-1", Click(387, 235), {}},
        {"jog-by-wheel", Click(788, 122, 5), {"C0 01"}},
        {"patch-name", Click(420, 100), {}},
        {"patch-menu", Click(420, 100, 3), {}},
        {"patch-menu-left", Key("Escape"), {}},
        {"octave-up", Click(218, 272), {}},
        {"higher-note", Key("z"), {"90 49 4E", "80 49 00"}},
        {"octave-down", Click(46, 272), {}},
        {"tempo", Click(81, 191), {}},
        {"tempo-plus", Click(822, 202), {}},
        {"metronome", Click(195, 191), {}},
        {"arpeggio-on", Click(1039, 61), kAllNotesOff},
        {"arpeggio-note", {{"keydown", "z"}, {"sleep", "1"}, {"keyup", "z"}}, {"90 3D", "80 3D", "90 3D", "80 3D"}},
        {"arpeggiator-1-bypassed", Click(897, 96), {"B0 7B 00"}},
        {"arpeggio-off", Click(1039, 61), kAllNotesOff},
        {"key-card", Click(1138, 61), {}},
        {"arpeggiators", Click(1138, 61), {}},
        {"recorder", Click(222, 127), {}},
        {"record", Click(171, 191), {"FF", "C0", "B0 07 61"}},
        {"recorded-note", Key("z"), {"90 3D 4E", "80 3D 00"}},
        {"stop", Click(219, 191), {}, Dialog::kOpens},
        {"not-saved-now", Key("Escape"), {}, Dialog::kCloses},
        {"metronome-view", Click(222, 127), {}},
        {"presets", Click(754, 272), {}, Dialog::kOpens},
        {"preset-loaded", Key("Return"), {"B0 7B 00", "C0", "B0 07"}, Dialog::kCloses},
        {"reset", Click(904, 23), {"B0 7B 00", "FF"}},
        {"settings", Click(980, 23), {}, Dialog::kOpens},
        {"settings-left", Key("Escape"), {}, Dialog::kCloses},
        {"about", Click(1132, 23), {}, Dialog::kOpens},
        {"about-left", Key("Escape"), {}, Dialog::kCloses},
        {"menu", Click(600, 20, 3), {}},
        {"menu-left", Key("Escape"), {}},
    });
}

TEST_P(Tour, EveryControlByKeyboard) {
    // From the panel itself the Tab key goes through the voice modes, the left bay, the octave shift, the parameters,
    // the value, the presets, the right bay, the header and the piano.
    Walk({
        {"single", TabTo(1, "Return"), kAllNotesOff},
        {"dual", TabTo(1, "Return"), kAllNotesOff},
        {"split", TabTo(1, "Return"), kAllNotesOff},
        {"playing-from-a-control", Key("z"), {"90 3C 50", "80 3C 00"}},
        {"pedal-from-a-control", Key("space"), {"B0 40 7F", "B0 40 00"}},
        {"recorder", TabTo(1, "Return"), {}},
        {"metronome-view", Key("Return"), {}},
        {"tempo", TabTo(1, "Return"), {}},
        {"metronome", TabTo(1, "Return"), {}},
        {"octave-down", TabTo(1, "Return"), {}},
        {"octave-up", TabTo(1, "Return"), {}},
        {"patch-1", TabTo(1, "Return"), {}},
        {"transpose-1", TabTo(1, "Return"), {}},
        {"value-by-alt", Key("alt+equal"), kAllNotesOff},
        {"volume-1", TabTo(1, "Return"), {}},
        {"patch-2", TabTo(1, "Return"), {}},
        {"transpose-2", TabTo(1, "Return"), {}},
        {"volume-2", TabTo(1, "Return"), {}},
        {"jog", TabTo(1, "Up"), {"B2 07 67"}},
        {"minus", TabTo(1, "Return"), {"B2 07 64"}},
        {"plus", TabTo(1, "Return"), {"B2 07 67"}},
        {"presets", TabTo(1, "Return"), {}, Dialog::kOpens},
        {"presets-left", Key("Escape"), {}, Dialog::kCloses},
        {"save-preset", TabTo(1, "Return"), {}, Dialog::kOpens},
        {"save-preset-left", Key("Escape"), {}, Dialog::kCloses},
        {"arpeggio-on", TabTo(1, "Return"), kAllNotesOff},
        {"arpeggiators-hidden", TabTo(1, "Return"), {}},
        {"arpeggiators-shown", Key("Return"), {}},
        {"arpeggiator-1-off", TabTo(1, "Return"), {"B0 7B 00"}},
        // The ends can only be repeated where there are two.
        {"direction-down", TabTo(1, "Down"), {}},
        {"direction-up-down", Key("Down"), {}},
        {"repeat", {{"key", "shift+Tab"}, {"key", "Return"}}, {}},
        {"range", TabTo(2, "Down"), {}},
        {"note", TabTo(1, "Down"), {}},
        {"gate", TabTo(1, "Left"), {}},
        {"last-velocity", TabTo(1, "Return"), {}},
        {"arpeggiator-2-off", TabTo(1, "Return"), {"B0 7B 00"}},
        {"reset", TabTo(6, "Return"), {"B0 7B 00", "FF"}},
        {"settings", TabTo(1, "Return"), {}, Dialog::kOpens},
        {"settings-left", Key("Escape"), {}, Dialog::kCloses},
        {"about", TabTo(2, "Return"), {}, Dialog::kOpens},
        {"about-left", Key("Escape"), {}, Dialog::kCloses},
        {"split-mark", TabTo(1, "Right"), {}},
        {"piano-cursor", TabTo(1, "space"), {"9", "8"}},
        {"menu", Key("F10"), {}},
        {"menu-left", Key("Escape"), {}},
        {"panic", Key("Escape"), {"B0 7B 00", "FF"}},
    });
}

TEST_P(Tour, WheelsAndPedals) {
    const auto drag = [this](int x, int from, int to) {
        return Actions{MoveTo(left_ + x, top_ + from),
                       {"mousedown", "1"},
                       MoveTo(left_ + x, top_ + (from + to) / 2),
                       MoveTo(left_ + x, top_ + to),
                       {"mouseup", "1"}};
    };
    const auto back = [](int controls, const Actions& there) {
        Actions actions(static_cast<std::size_t>(controls), QStringList{"key", "shift+Tab"});
        actions.insert(actions.end(), there.begin(), there.end());
        return actions;
    };
    Walk({
        {"shown", Key("alt+w"), {}},
        {"pitch", drag(42, 391, 351), {"E0", "E1", "E2", "E0 00 40", "E1 00 40", "E2 00 40"}},
        {"modulation", Click(85, 391, 4), {"B0 01 04", "B1 01 04", "B2 01 04"}},
        {"expression", drag(128, 391, 421), {"B0 0B"}},
        {"soft", Click(42, 492), {"B0 43 7F", "B1 43 7F", "B2 43 7F"}},
        {"piano", Press(564, 500), {"90 3C", "80 3C 00"}},
        // The panel itself has the focus: backwards come the piano, the pedals and the wheels.
        {"sustain-by-key", back(2, {{"key", "Return"}}), {"B0 40 7F"}},
        {"pitch-by-key", back(5, {{"keydown", "Up"}, {"keyup", "Up"}}), {"E0", "E0 00 40"}},
        {"pitch-wholly", {{"keydown", "Prior"}, {"keyup", "Prior"}}, {"E0 7F 7F", "E0 00 40"}},
        {"modulation-by-key", TabTo(1, "Next"), {"B0 01 00"}},
        {"hidden", Key("alt+w"), {"B0 0B 7F", "B0 43 00", "B0 40 00"}},
    });
}

TEST_P(Tour, WhatTheMenuOffers) {
    // Counted from the menu's end, as that is the same in both languages.
    const auto entry = [](int fromTheEnd) {
        Actions actions{{"key", "F10"}};
        actions.insert(actions.end(), static_cast<std::size_t>(fromTheEnd), QStringList{"key", "Up"});
        actions.push_back({"key", "Return"});
        return actions;
    };
    const auto drag = [this](int from, int to, int y) {
        return Actions{MoveTo(left_ + from, top_ + y),
                       {"mousedown", "1"},
                       MoveTo(left_ + (from + to) / 2, top_ + y),
                       MoveTo(left_ + to, top_ + y),
                       {"mouseup", "1"}};
    };
    const auto then = [](Actions actions, const Actions& more) {
        actions.insert(actions.end(), more.begin(), more.end());
        return actions;
    };
    const auto type = [](const QString& text) { return QStringList{"type", "--delay", "20", text}; };
    Walk({
        {"note", Key("z"), {"90 3C 50", "80 3C 00"}},
        {"just-played", Key("alt+j"), {}, Dialog::kOpens},
        {"just-played-left", Key("Escape"), {}, Dialog::kCloses},
        {"learn", entry(5), {}, Dialog::kOpens},
        {"learn-left", Key("Escape"), {}, Dialog::kCloses},
        {"velocity", entry(6), {}, Dialog::kOpens},
        {"velocity-left", Key("Escape"), {}, Dialog::kCloses},
        {"metronome-sound", entry(18), {}, Dialog::kOpens},
        {"metronome-sound-left", Key("Escape"), {}, Dialog::kCloses},
        {"latch-and-swing", entry(20), {}, Dialog::kOpens},
        {"latch-and-swing-left", Key("Escape"), {}, Dialog::kCloses},
        {"tempo-tapped",
         {{"key", "alt+t"}, {"sleep", "0.4"}, {"key", "alt+t"}, {"sleep", "0.4"}, {"key", "alt+t"}},
         {}},
        {"arpeggio", Key("F8"), kAllNotesOff},
        {"latched", {{"key", "alt+l"}, {"key", "z"}}, {"90 3C", "80 3C", "90 3C", "80 3C"}},
        {"another-chord", Key("c"), {"90 40", "80 40", "90 40", "80 40"}},
        {"let-go", Key("alt+l"), {}},
        {"arpeggio-off", Key("F8"), kAllNotesOff},
        {"split", Key("F7"), kAllNotesOff},
        {"split-lower", drag(462, 238, 333), {}},
        {"above-the-split", Press(430, 500), {"90 3B", "80 3B 00"}},
        {"single", Key("F5"), kAllNotesOff},
        {"eighty-eight-keys", then(entry(12), {{"key", "Up"}, {"key", "Return"}}), {}},
        {"lowest-key", Press(26, 500), {"90 15", "80 15 00"}},
        {"patch-search", then(Click(420, 100, 3), {type("41")}), {}},
        {"patch-found", Key("Return"), {"C0 28"}},
        {"preset-search", Actions{{"key", "F2"}}, {}, Dialog::kOpens},
        {"preset-found", {{"key", "shift+Tab"}, {"key", "shift+Tab"}, type("organ")}, {}},
        {"preset-search-left", {{"key", "Escape"}, {"key", "Escape"}}, {}, Dialog::kCloses},
    });
}

INSTANTIATE_TEST_SUITE_P(Languages, Tour, testing::Values("en_US", "ru_RU"),
                         [](const auto& language) { return std::string(language.param); });

}  // namespace
