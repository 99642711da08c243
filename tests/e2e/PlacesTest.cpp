// Playing by place: what the keys play on the keyboard layouts of many countries, and what stands above the piano.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <string>
#include <vector>

#include "e2e/InstrumentProcess.h"

namespace {

/// Every place that plays, by key code, with its note; and among them all others of the four rows, which play nothing:
/// those of European, Brazilian and Japanese keyboards too.
struct TPlace {
    std::uint8_t code;
    int note;
};
constexpr int kSilent = 0;
constexpr TPlace kPlaces[] = {
    {49, kSilent}, {10, kSilent}, {11, 73},      {12, 75},      {13, kSilent}, {14, 78},       {15, 80},      {16, 82},
    {17, kSilent}, {18, 85},      {19, 87},      {20, kSilent}, {21, 90},      {132, kSilent}, {24, 72},      {25, 74},
    {26, 76},      {27, 77},      {28, 79},      {29, 81},      {30, 83},      {31, 84},       {32, 86},      {33, 88},
    {34, 89},      {35, 91},      {38, kSilent}, {39, 61},      {40, 63},      {41, kSilent},  {42, 66},      {43, 68},
    {44, 70},      {45, kSilent}, {46, 73},      {47, 75},      {48, kSilent}, {51, kSilent},  {94, kSilent}, {52, 60},
    {53, 62},      {54, 64},      {55, 65},      {56, 67},      {57, 69},      {58, 71},       {59, 72},      {60, 74},
    {61, 76},      {97, kSilent},
};

constexpr std::uint8_t kShift = 50;
constexpr std::uint8_t kCtrl = 37;
constexpr std::uint8_t kScanISO = 94;
constexpr std::uint8_t kScanX = 53;
constexpr std::uint8_t kScanY = 29;
constexpr std::uint8_t kScanZ = 52;

std::vector<std::string> MessagesOf(int note, const char* velocity) {
    const std::string data = QString::number(note, 16).toUpper().toStdString();
    return {"90 " + data + " " + velocity, "80 " + data + " 00"};
}

class Places : public testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(instrument.Close(), 0); }

    void UseLayout(const QString& layout, const QString& variant = {}) {
        bool ok = false;
        instrument.RunOnDisplay("setxkbmap", {"-layout", layout, "-variant", variant}, &ok);
        ASSERT_TRUE(ok) << layout.toStdString();
    }
    /// Presses the keys one after another, which must play these notes and nothing else.
    void ExpectAllPlaces(const char* velocity, bool asTyped = false) {
        for (const TPlace& place : kPlaces) {
            if (asTyped && place.code == kScanISO) {
                continue;  // which types a character that plays
            }
            Move(place.code);
            if (place.note != kSilent) {
                ExpectNotes(MessagesOf(place.note, velocity), place.code);
            }
        }
        Move(kScanX);  // whatever the silent keys had played would stand before this
        ExpectNotes(MessagesOf(62, velocity), kScanX);
    }
    void Move(std::uint8_t code) {
        instrument.MoveKey(code, true);
        instrument.MoveKey(code, false);
    }
    void ExpectNotes(const std::vector<std::string>& expected, int code) {
        ASSERT_TRUE(instrument.WaitForNoteMessages(seen_ + expected.size())) << "key " << code;
        const std::vector<std::string> all = instrument.GetNoteMessages();
        EXPECT_EQ(std::vector<std::string>(all.begin() + static_cast<std::ptrdiff_t>(seen_), all.end()), expected)
            << "key " << code;
        seen_ = all.size();
    }
    /// The strip above the piano.
    QImage GrabHints() {
        const QString path = instrument.GetDataDir() + "/hints.png";
        EXPECT_TRUE(instrument.SavePicture(path));
        const QImage screen(path);
        return screen.copy(0, screen.height() / 3, screen.width(), screen.height() / 3);
    }

    InstrumentProcess instrument;

private:
    std::size_t seen_ = 0;
};

TEST_F(Places, EveryPlaceOfEveryLayoutPlaysWhatItPlaysOnAUSKeyboard) {
    instrument.AddSetting("ComputerKeys=2");
    ASSERT_TRUE(instrument.Start());
    constexpr struct {
        const char* layout;
        const char* variant = "";
    } kLayouts[] = {{"us"}, {"gb"}, {"de"}, {"fr"}, {"es"}, {"it"}, {"br"}, {"pt"},           {"se"},
                    {"cz"}, {"pl"}, {"tr"}, {"ru"}, {"ua"}, {"gr"}, {"il"}, {"us", "dvorak"}, {"us", "colemak"},
                    {"jp"}};
    for (const auto& [layout, variant] : kLayouts) {
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
    Move(kScanY);
    ExpectNotes(MessagesOf(60, "50"), kScanY);
    Move(kScanZ);
    ExpectNotes(MessagesOf(81, "50"), kScanZ);
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
    Move(kScanX);
    ASSERT_TRUE(instrument.WaitForNoteMessages(count + 2));
    EXPECT_EQ(instrument.GetNoteMessages().size(), 26U) << "four notes on and off three times, and the last one";
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

TEST_F(Places, TheHintsFollowTheLayout) {
    ASSERT_TRUE(instrument.Start());
    const QImage english = GrabHints();
    const auto becomes = [&](bool like, const QImage& other) {
        return WaitFor([&] { return (GrabHints() == other) == like; });
    };
    UseLayout("fr");
    ASSERT_TRUE(becomes(false, english));
    const QImage french = GrabHints();
    UseLayout("gr");
    ASSERT_TRUE(WaitFor([&] {
        const QImage now = GrabHints();
        return now != english && now != french;
    }));
    UseLayout("us");
    EXPECT_TRUE(becomes(true, english));
}

}  // namespace
