// Playing by place: what the keys play on the keyboard layouts of many countries, and what stands above the piano.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <string>
#include <vector>

#include "e2e/InstrumentProcess.h"
#include "e2e/Places.h"
#include "support/WaitUntil.h"

namespace {

using KivoraTest::WaitUntil;
using namespace PlaceCodes;

class Places : public PlacesTest {
protected:
    void TearDown() override { EXPECT_EQ(instrument.Close(), 0); }

    void UseLayout(const QString& layout, const QString& variant = {}) {
        bool ok = false;
        instrument.RunOnDisplay("setxkbmap", {"-layout", layout, "-variant", variant}, &ok);
        ASSERT_TRUE(ok) << layout.toStdString();
    }
};

TEST_F(Places, EveryPlaceOfEveryLayoutPlaysWhatItPlaysOnAUSKeyboard) {
    instrument.AddSetting("ComputerKeys=2");
    ASSERT_TRUE(instrument.Start());
    for (const auto& [layout, variant] : kPlacedLayouts) {
        SCOPED_TRACE(std::string(layout) + "(" + variant + ")");
        UseLayout(layout, variant);
        ExpectAllPlaces("50");
    }
    instrument.MoveKey(kShift, true);
    ExpectAllPlaces("7F");
    instrument.MoveKey(kShift, false);
    instrument.MoveKey(kCtrl, true);
    ExpectAllPlaces("28");
    instrument.MoveKey(kCtrl, false);
}

TEST_F(Places, AutomaticallyWithTheProgramInEnglishEveryOtherLayoutPlaysByPlace) {
    ASSERT_TRUE(instrument.Start());
    for (const char* layout : {"us", "de", "fr", "gr", "ua", "ru", "il", "br", "jp"}) {
        SCOPED_TRACE(layout);
        UseLayout(layout);
        ASSERT_TRUE(instrument.FocusAlone());  // the program has read what the server told before
        ExpectAllPlaces("50", layout == std::string("us"));
    }
}

TEST_F(Places, AutomaticallyTheActiveLayoutOfSeveralCounts) {
    ASSERT_TRUE(instrument.Start());
    UseLayout("us,gr,de", ",,");
    instrument.LockLayout(1);
    ExpectAllPlaces("50");
    instrument.LockLayout(2);
    ExpectAllPlaces("50");
    instrument.LockLayout(0);
    ExpectAllPlaces("50", true);
}

TEST_F(Places, TheGermanZAndYPlayAsTypedAndByPlace) {
    instrument.AddSetting("ComputerKeys=1");
    ASSERT_TRUE(instrument.Start());
    UseLayout("de");
    ASSERT_TRUE(instrument.FocusAlone());
    Move(kY);
    ExpectNotes(MessagesOf(60, "50"), kY);
    Move(kZ);
    ExpectNotes(MessagesOf(81, "50"), kZ);
}

TEST_F(Places, FourKeysHeldOverAChangeOfTheLayoutEndWithTheirReleases) {
    ASSERT_TRUE(instrument.Start());
    UseLayout("us,fr,gr", ",,");
    constexpr std::uint8_t kHeld[] = {24, 25, 52, 53};
    std::size_t count = 0;
    for (std::uint8_t first = 0; first < 3; ++first) {
        instrument.LockLayout(first);
        for (const std::uint8_t code : kHeld) {
            instrument.MoveKey(code, true);
        }
        ASSERT_TRUE(instrument.WaitForNoteMessages(count + 4));
        instrument.LockLayout(static_cast<std::uint8_t>((first + 1) % 3));
        for (const std::uint8_t code : kHeld) {
            instrument.MoveKey(code, false);
        }
        ASSERT_TRUE(instrument.WaitForNoteMessages(count + 8));
        count = instrument.GetNoteMessages().size();
    }
    Move(kX);
    ASSERT_TRUE(instrument.WaitForNoteMessages(count + 2));
    EXPECT_EQ(instrument.GetNoteMessages().size(), 26U) << "four notes on and off three times, and the last one";
}

TEST_F(Places, AKeyThatRepeatsWhileLayoutsChangePlaysOnceAndEndsWithItsRelease) {
    ASSERT_TRUE(instrument.Start());
    UseLayout("us,fr,gr", ",,");
    ASSERT_TRUE(instrument.RunOnDisplay("xset", {"r", "rate", "100", "100"}).isEmpty());
    constexpr std::uint8_t kHeld[] = {24, 25};
    for (std::size_t count = 0; count < 40; count += 4) {
        for (const std::uint8_t code : kHeld) {
            instrument.MoveKey(code, true);
        }
        ASSERT_TRUE(instrument.WaitForNoteMessages(count + 2));
        for (std::uint8_t change = 1; change <= 60; ++change) {
            instrument.LockLayout(change % 3);
        }
        for (const std::uint8_t code : kHeld) {
            instrument.MoveKey(code, false);
        }
        ASSERT_TRUE(instrument.WaitForNoteMessages(count + 4)) << count;
        ASSERT_EQ(instrument.GetNoteMessages().size(), count + 4);
    }
}

TEST(PlacedKeys, AltWithThePlaceOfQEndsTheProgramOnGreek) {
    constexpr std::uint8_t kAlt = 64;
    constexpr std::uint8_t kScanQ = 24;
    for (const QStringList& layouts : {QStringList{"gr"}, QStringList{"us,gr"}, QStringList{"ru"}}) {
        InstrumentProcess instrument;
        ASSERT_TRUE(instrument.Start());
        bool ok = false;
        instrument.RunOnDisplay("setxkbmap", layouts, &ok);
        ASSERT_TRUE(ok);
        instrument.LockLayout(layouts.front().contains(',') ? 1 : 0);
        instrument.MoveKey(kAlt, true);
        instrument.MoveKey(kScanQ, true);
        EXPECT_EQ(instrument.WaitForExitCode(), 0) << layouts.front().toStdString();
    }
}

TEST(PlacedKeys, BesideAFrenchLayoutAltWithItsQEndsTheProgramOnGreek) {
    constexpr std::uint8_t kAlt = 64;
    constexpr std::uint8_t kFrenchA = 24;
    constexpr std::uint8_t kFrenchQ = 38;
    InstrumentProcess instrument;
    ASSERT_TRUE(instrument.Start());
    bool ok = false;
    instrument.RunOnDisplay("setxkbmap", {"fr,gr"}, &ok);
    ASSERT_TRUE(ok);
    instrument.LockLayout(1);
    instrument.MoveKey(kAlt, true);
    instrument.MoveKey(kFrenchA, true);
    instrument.MoveKey(kFrenchA, false);
    instrument.MoveKey(kAlt, false);
    instrument.MoveKey(kX, true);
    instrument.MoveKey(kX, false);
    ASSERT_TRUE(instrument.WaitForNoteMessages(2)) << "no shortcut";
    instrument.MoveKey(kAlt, true);
    instrument.MoveKey(kFrenchQ, true);
    EXPECT_EQ(instrument.WaitForExitCode(), 0);
}

TEST_F(Places, TheHintsFollowTheLayout) {
    ASSERT_TRUE(instrument.Start());
    const QImage english = GrabHints();
    const auto becomes = [&](bool like, const QImage& other) {
        return WaitUntil([&] { return (GrabHints() == other) == like; });
    };
    UseLayout("fr");
    ASSERT_TRUE(becomes(false, english));
    const QImage french = GrabHints();
    UseLayout("gr");
    ASSERT_TRUE(WaitUntil([&] {
        const QImage now = GrabHints();
        return now != english && now != french;
    }));
    UseLayout("us");
    EXPECT_TRUE(becomes(true, english));
}

}  // namespace
