// The computer keys under a Wayland compositor, which runs in a window of a virtual X server and takes its keyboard.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <QDir>
#include <QFile>
#include <set>
#include <string>
#include <utility>

#include "e2e/InstrumentProcess.h"
#include "e2e/Places.h"
#include "e2e/Sounding.h"
#include "support/WaitUntil.h"

namespace {

using KivoraTest::WaitUntil;
using namespace PlaceCodes;

constexpr std::uint8_t kSpace = 65;
constexpr std::size_t kMostLayouts = 4;  // of one keyboard

class OnWayland : public PlacesTest {
protected:
    void SetUp() override {
        if (!InstrumentProcess::HasCompositor()) {
            GTEST_SKIP() << "needs weston and Qt's platform plugin for Wayland";
        }
    }
    void TearDown() override {
        if (instrument.IsRunning()) {
            EXPECT_EQ(instrument.Terminate(), 0);
        }
    }
    void Start(const QString& layouts, const QString& variants = {}, const QStringList& environment = {}) {
        instrument.UseCompositor(layouts, variants);
        ASSERT_TRUE(instrument.Start({"--locale", "en_US"}, environment));
        ForgetNotes();
    }
    std::set<std::string> Sounding() const { return SoundingAfter(instrument.GetMessages()); }
    QString Root() {
        return instrument.RunOnDisplay("xdotool", {"search", "--maxdepth", "0", ".*"}).section('\n', 0, 0).trimmed();
    }
};

/// Layouts that one keyboard has together.
class OnWaylandWithLayouts : public OnWayland, public testing::WithParamInterface<std::size_t> {};

TEST_P(OnWaylandWithLayouts, EveryPlacePlaysWhatItPlaysOnAUSKeyboard) {
    QStringList layouts;
    QStringList variants;
    for (std::size_t i = GetParam(); i < std::min(GetParam() + kMostLayouts, kPlacedLayouts.size()); ++i) {
        layouts << kPlacedLayouts[i].layout;
        variants << kPlacedLayouts[i].variant;
    }
    instrument.AddSetting("ComputerKeys=2");
    ASSERT_NO_FATAL_FAILURE(Start(layouts.join(','), variants.join(',')));
    for (int i = 0; i < layouts.size(); ++i) {
        SCOPED_TRACE(layouts[i].toStdString() + "(" + variants[i].toStdString() + ")");
        instrument.LockLayout(static_cast<std::uint8_t>(i));
        ExpectAllPlaces("50");
    }
}

INSTANTIATE_TEST_SUITE_P(Countries, OnWaylandWithLayouts,
                         testing::Range(std::size_t{0}, std::size_t{19}, kMostLayouts));

TEST_F(OnWayland, LoudAndSoftByPlaceOnAFrenchKeyboard) {
    ASSERT_NO_FATAL_FAILURE(Start("fr"));
    ExpectAllPlaces("50");
    instrument.MoveKey(kShift, true);
    ExpectAllPlaces("7F");
    instrument.MoveKey(kShift, false);
    instrument.MoveKey(kCtrl, true);
    ExpectAllPlaces("28");
    instrument.MoveKey(kCtrl, false);
}

TEST_F(OnWayland, TheActiveLayoutOfSeveralCounts) {
    ASSERT_NO_FATAL_FAILURE(Start("us,gr,de", ",,"));
    ExpectAllPlaces("50", true);
    instrument.LockLayout(1);
    ExpectAllPlaces("50");
    instrument.LockLayout(2);
    ExpectAllPlaces("50");
    instrument.LockLayout(0);
    ExpectAllPlaces("50", true);
}

TEST_F(OnWayland, TheGermanZAndYPlayAsTyped) {
    instrument.AddSetting("ComputerKeys=1");
    ASSERT_NO_FATAL_FAILURE(Start("de"));
    Move(kY);
    ExpectNotes(MessagesOf(60, "50"), kY);
    Move(kZ);
    ExpectNotes(MessagesOf(81, "50"), kZ);
}

TEST_F(OnWayland, FourKeysHeldOverAChangeOfTheLayoutEndWithTheirReleases) {
    ASSERT_NO_FATAL_FAILURE(Start("us,fr,gr", ",,"));
    constexpr std::uint8_t kHeld[] = {24, 25, 52, 53};
    for (std::uint8_t first = 0; first < 3; ++first) {
        instrument.LockLayout(first);
        for (const std::uint8_t code : kHeld) {
            instrument.MoveKey(code, true);
        }
        ASSERT_TRUE(WaitUntil([&] { return Sounding().size() == 4; }));
        instrument.LockLayout(static_cast<std::uint8_t>((first + 1) % 3));
        for (const std::uint8_t code : kHeld) {
            instrument.MoveKey(code, false);
        }
        ASSERT_TRUE(WaitUntil([&] { return Sounding().empty(); }));
    }
    ForgetNotes();
    Move(kX);
    ExpectNotes(MessagesOf(62, "50"), kX);
}

TEST_F(OnWayland, AHeldKeyPlaysOnce) {
    ASSERT_NO_FATAL_FAILURE(Start("us"));
    const std::size_t first = instrument.GetNoteMessages().size();
    instrument.MoveKey(kX, true);
    ASSERT_TRUE(instrument.WaitForNoteMessages(first + 1));
    // The mouse takes longer than many repeats, and stops none of them.
    for (std::size_t i = 1; i <= 5; ++i) {
        ASSERT_TRUE(instrument.Xdotool({"mousemove", "700", "500", "click", "1"}));
        ASSERT_TRUE(instrument.WaitForNoteMessages(first + 1 + 2 * i));
    }
    instrument.MoveKey(kX, false);
    ASSERT_TRUE(instrument.WaitForNoteMessages(first + 12));
    const std::vector<std::string> messages = instrument.GetNoteMessages();
    const auto begin = messages.begin() + static_cast<std::ptrdiff_t>(first);
    EXPECT_EQ(*begin, "90 3E 50");
    EXPECT_EQ(std::count(begin, messages.end(), "90 3E 50"), 1);
    EXPECT_EQ(std::count(begin, messages.end(), "80 3E 00"), 1);
    EXPECT_EQ(messages.back(), "80 3E 00");
}

TEST_F(OnWayland, WhatIsHeldEndsWhenTheKeyboardGoesElsewhere) {
    ASSERT_NO_FATAL_FAILURE(Start("us"));
    instrument.MoveKey(kSpace, true);
    instrument.MoveKey(kZ, true);
    ASSERT_TRUE(WaitUntil([&] { return Sounding().contains("0/60") && Sounding().contains("0/pedal"); }));
    ASSERT_TRUE(instrument.Xdotool({"windowfocus", Root()}));
    EXPECT_TRUE(WaitUntil([&] { return Sounding().empty(); }));
}

TEST_F(OnWayland, WithoutItsCompositorTheProgramEndsWhatSoundsAndKeepsEverything) {
    constexpr std::uint8_t kAlt = 64;
    constexpr std::uint8_t kN = 57;
    constexpr std::uint8_t kF11 = 95;
    ASSERT_NO_FATAL_FAILURE(Start("us"));
    for (const auto& [code, down] : {std::pair(kAlt, true),
                                     {kN, true},
                                     {kN, false},
                                     {kAlt, false},
                                     {kF11, true},
                                     {kF11, false},
                                     {kSpace, true},
                                     {kZ, true}}) {
        instrument.MoveKey(code, down);
    }
    ASSERT_TRUE(WaitUntil([&] { return Sounding().contains("0/60") && Sounding().contains("0/pedal"); }));
    EXPECT_EQ(instrument.KillCompositor(), 1);
    EXPECT_EQ(Sounding(), std::set<std::string>());
    const QDir folder(instrument.GetDataDir() + "/data/Brennholt/Kivora");
    EXPECT_EQ(QDir(folder.filePath("Takes")).entryList({"*.kivtake"}, QDir::Files).size(), 1);
    QFile settings(folder.filePath("Kivora.ini"));
    ASSERT_TRUE(settings.open(QIODevice::ReadOnly));
    EXPECT_TRUE(settings.readAll().contains("\nShowNoteNames=1\n"));
}

TEST_F(OnWayland, TheHintsFollowTheLayout) {
    ASSERT_NO_FATAL_FAILURE(Start("us,fr,gr", ",,"));
    QImage english;
    ASSERT_TRUE(WaitUntil([&] {
        const QImage now = GrabHints();
        return std::exchange(english, now) == now;
    })) << "of the key that was played last";
    instrument.LockLayout(1);
    ASSERT_TRUE(WaitUntil([&] { return GrabHints() != english; }));
    const QImage french = GrabHints();
    instrument.LockLayout(2);
    ASSERT_TRUE(WaitUntil([&] {
        const QImage now = GrabHints();
        return now != english && now != french;
    }));
    instrument.LockLayout(0);
    EXPECT_TRUE(WaitUntil([&] { return GrabHints() == english; }));
}

/// Scales between the whole ones.
class OnWaylandScaled : public OnWayland, public testing::WithParamInterface<const char*> {};

TEST_P(OnWaylandScaled, KeysAndMousePlay) {
    ASSERT_NO_FATAL_FAILURE(Start("fr", {}, {QString("QT_SCALE_FACTOR=") + GetParam()}));
    Move(kZ);
    ExpectNotes(MessagesOf(60, "50"), kZ);
    ASSERT_TRUE(instrument.Xdotool({"mousemove", "700", "600", "mousedown", "1"}));
    ASSERT_TRUE(WaitUntil([&] { return Sounding().size() == 1; }));
    ASSERT_TRUE(instrument.Xdotool({"mouseup", "1"}));
    EXPECT_TRUE(WaitUntil([&] { return Sounding().empty(); }));
}

INSTANTIATE_TEST_SUITE_P(Factors, OnWaylandScaled, testing::Values("1.25", "1.5"));

}  // namespace
