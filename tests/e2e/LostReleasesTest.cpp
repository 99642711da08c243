// Releases that the program is never told of: the keyboard or the mouse was elsewhere for a moment.
#include <gtest/gtest.h>
#include <signal.h>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <cstdlib>
#include <functional>
#include <string>

#include "e2e/InstrumentProcess.h"
#include "e2e/Sounding.h"
#include "support/WaitUntil.h"

namespace {

using KivoraTest::WaitUntil;

// Of every PC keyboard under X.
constexpr std::uint8_t kZ = 52;
constexpr std::uint8_t kSpace = 65;

class LostReleases : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(instrument.Start()); }

    bool IsSilent() { return SoundingAfter(instrument.GetMessages()).empty(); }
    void ExpectSilence() {
        EXPECT_TRUE(WaitUntil([&] { return IsSilent(); }, std::chrono::seconds(10)))
            << *SoundingAfter(instrument.GetMessages()).begin() << " hangs";
    }
    /// Z and the pedal.
    void HoldKeys() {
        instrument.MoveKey(kSpace, true);
        instrument.MoveKey(kZ, true);
        ASSERT_TRUE(WaitUntil([&] { return SoundingAfter(instrument.GetMessages()).size() == 4; }));
    }
    static void ReleaseKeys(xcb_connection_t* server) {
        for (const std::uint8_t key : {kZ, kSpace}) {
            xcb_test_fake_input(server, XCB_KEY_RELEASE, key, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
        }
    }
    static xcb_window_t RootOf(xcb_connection_t* server) {
        return xcb_setup_roots_iterator(xcb_get_setup(server)).data->root;
    }
    /// A notice flashes up for as long as the server needs, and the keys are released meanwhile.
    void ReleaseKeysElsewhere() {
        instrument.WithServer([&](xcb_connection_t* server) {
            const xcb_window_t notice = xcb_generate_id(server);
            const std::uint32_t unmanaged = 1;
            xcb_create_window(server, XCB_COPY_FROM_PARENT, notice, RootOf(server), 0, 0, 9, 9, 0,
                              XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                              &unmanaged);
            xcb_map_window(server, notice);
            xcb_set_input_focus(server, XCB_INPUT_FOCUS_PARENT, notice, XCB_CURRENT_TIME);
            ReleaseKeys(server);
            xcb_set_input_focus(server, XCB_INPUT_FOCUS_PARENT, instrument.GetWindow().toUInt(), XCB_CURRENT_TIME);
        });
    }
    void ExpectPlayable() {
        const std::size_t before = instrument.GetNoteMessages().size();
        ASSERT_TRUE(instrument.Xdotool({"key", "x"}));
        EXPECT_TRUE(instrument.WaitForNoteMessages(before + 2));
        ExpectSilence();
    }
    bool MoveMouse(int x, int y) {
        return instrument.Xdotool(
            {"mousemove", "--window", instrument.GetWindow(), QString::number(x), QString::number(y)});
    }

    InstrumentProcess instrument;
};

TEST_F(LostReleases, WhileTheFocusIsElsewhereForAMoment) {
    for (int i = 0; i < 5; ++i) {
        HoldKeys();
        ReleaseKeysElsewhere();
        ExpectSilence();
        ExpectPlayable();
    }
}

TEST_F(LostReleases, WhileAnotherProgramGrabsTheKeyboard) {
    for (int i = 0; i < 5; ++i) {
        HoldKeys();
        instrument.WithServer([&](xcb_connection_t* server) {
            std::free(xcb_grab_keyboard_reply(server,
                                              xcb_grab_keyboard(server, 0, RootOf(server), XCB_CURRENT_TIME,
                                                                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                              nullptr));
            ReleaseKeys(server);
            xcb_ungrab_keyboard(server, XCB_CURRENT_TIME);
        });
        ExpectSilence();
        ExpectPlayable();
    }
}

TEST_F(LostReleases, WhileTheProgramIsBusy) {
    for (int i = 0; i < 5; ++i) {
        HoldKeys();
        instrument.Signal(SIGSTOP);
        ReleaseKeysElsewhere();
        instrument.Signal(SIGCONT);
        ExpectSilence();
        ExpectPlayable();
    }
}

TEST_F(LostReleases, KeysThatStayDownSoundOn) {
    HoldKeys();
    ASSERT_TRUE(instrument.Xdotool({"sleep", "0.5"}));
    EXPECT_EQ(SoundingAfter(instrument.GetMessages()).size(), 4U);
    instrument.WithServer([](xcb_connection_t* server) { ReleaseKeys(server); });
    ExpectSilence();
}

TEST_F(LostReleases, OfAButtonAfterOneThatWasPressedInADialog) {
    for (const bool releasedAtOnce : {false, true}) {
        for (const char* button : {"1", "2", "3"}) {
            SCOPED_TRACE(std::string("button ") + button + (releasedAtOnce ? ", released at once" : ""));
            ASSERT_TRUE(instrument.Xdotool({"key", "F4"}));
            ASSERT_TRUE(instrument.WaitForDialog());
            const QString dialog = instrument.RunOnDisplay("xdotool", {"getwindowfocus"}).trimmed();
            ASSERT_TRUE(instrument.Xdotool({"mousemove", "--window", dialog, "3", "3", "mousedown", button}));
            ASSERT_TRUE(instrument.Xdotool({"key", "Escape"}));
            ASSERT_TRUE(instrument.FocusAlone());
            if (releasedAtOnce || *button == '1') {
                ASSERT_TRUE(instrument.Xdotool({"mouseup", button}));
            }
            for (int i = 0; i < 3; ++i) {
                const std::size_t before = instrument.GetNoteMessages().size();
                ASSERT_TRUE(MoveMouse(30, 480));
                ASSERT_TRUE(instrument.Xdotool({"mousedown", "1"}));
                EXPECT_TRUE(instrument.WaitForNoteMessages(before + 1));
                ASSERT_TRUE(MoveMouse(60, 480));
                EXPECT_TRUE(WaitUntil([&] { return instrument.GetNoteMessages().size() >= before + 3; },
                                      std::chrono::seconds(10)))
                    << "no glissando";
                ASSERT_TRUE(instrument.Xdotool({"mouseup", "1"}));
                ExpectSilence();
            }
            ASSERT_TRUE(instrument.Xdotool({"mouseup", button}));
            if (HasFailure()) {
                return;
            }
        }
    }
}

}  // namespace
