#include <limits>

#include "ArpeggiatorFixture.h"
#include "midi/TMIDIMessage.h"

using namespace KivoraTest;
using namespace NK;
using namespace NK::MIDI;

namespace {

class ArpeggiatorSettingsTest : public ArpeggiatorTest {
protected:
    static CIniFile NewSection() {
        CIniFile ini;
        ini.SelectOrAddSection(L"Arpeggiator");
        return ini;
    }
    std::vector<std::wstring> SavedLines() {
        CIniFile ini = NewSection();
        EXPECT_TRUE(arpeggiator.SaveSettings(ini));
        std::vector<std::wstring> lines;
        for (const CString& line : ini) {
            lines.emplace_back(line.View());
        }
        return lines;
    }
};

template <class Exception, class Action>
void ExpectThrow(const wchar_t* text, Action action) {
    try {
        action();
        FAIL() << "nothing thrown, expected " << CString(text).ToUtf8();
    } catch (const Exception& e) {
        EXPECT_STREQ(e.GetMessage(), text);
    }
}

// New keys stand above the earlier ones, so the last one written comes first.
const std::vector<std::wstring> kDefaultLines = {
    L"[Arpeggiator]", L"Velocity=100", L"VelocityMode=2", L"Extension=0",   L"Multiplication=0", L"Repeat=0",
    L"Direction=0",   L"NoteStep=96",  L"NoteLength=32",  L"OutChannel=-1", L"InChannel=-1",     L"Bypass=0"};

}  // namespace

TEST_F(ArpeggiatorSettingsTest, DefaultsAfterConstruction) {
    EXPECT_EQ(SavedLines(), kDefaultLines);
    EXPECT_FALSE(arpeggiator.IsBypassed());
    EXPECT_DOUBLE_EQ(arpeggiator.GetDurationPercent(), 200.0);
    EXPECT_EQ(arpeggiator.GetNoteStep(), 96);
    EXPECT_EQ(arpeggiator.GetDirection(), 0);
    EXPECT_EQ(arpeggiator.GetVelocityMode(), 2);
    EXPECT_EQ(arpeggiator.GetExtension(), 0);
    EXPECT_EQ(arpeggiator.GetMultiplication(), 0);
    EXPECT_FALSE(arpeggiator.GetRepeat());
}

TEST_F(ArpeggiatorSettingsTest, SetDefaultsKeepsTheExtension) {
    Load({{L"InChannel", L"2"},
          {L"OutChannel", L"3"},
          {L"NoteLength", L"1.5"},
          {L"NoteStep", L"7"},
          {L"Direction", L"4"},
          {L"Repeat", L"1"},
          {L"Multiplication", L"1"},
          {L"Extension", L"3"},
          {L"VelocityMode", L"1"},
          {L"Velocity", L"5"}});
    Press(60, 100, 2);
    arpeggiator.SetDefaults();
    std::vector<std::wstring> expected = kDefaultLines;
    expected[3] = L"Extension=3";
    EXPECT_EQ(SavedLines(), expected);
    RunTo(now);
    EXPECT_EQ(Step(), Notes{});
}

TEST_F(ArpeggiatorSettingsTest, SetDefaultsLeavesTheBypass) {
    arpeggiator.SetBypassed(true);
    arpeggiator.SetDefaults();
    EXPECT_TRUE(arpeggiator.IsBypassed());
}

TEST_F(ArpeggiatorSettingsTest, WhatWasSavedLoads) {
    Load({{L"Bypass", L"yes"},
          {L"InChannel", L"16"},
          {L"OutChannel", L"1"},
          {L"NoteLength", L"2.6666666666666665"},
          {L"NoteStep", L"16"},
          {L"Direction", L"8"},
          {L"Repeat", L"true"},
          {L"Multiplication", L"3"},
          {L"Extension", L"2"},
          {L"VelocityMode", L"3"},
          {L"Velocity", L"1"}});
    CIniFile ini = NewSection();
    ASSERT_TRUE(arpeggiator.SaveSettings(ini));
    CArpeggiator1 other;
    ASSERT_TRUE(other.LoadSettings(ini));
    EXPECT_TRUE(other.IsBypassed());
    const ArpeggiatorSettings& settings = other.GetSettings();
    EXPECT_EQ(settings.inChannel, 16);
    EXPECT_EQ(settings.outChannel, 1);
    EXPECT_EQ(settings.noteLength, 2.6666666666666665);
    EXPECT_EQ(settings.noteStep, 16);
    EXPECT_EQ(settings.direction, 8);
    EXPECT_TRUE(settings.repeat);
    EXPECT_EQ(settings.multiplication, 3);
    EXPECT_EQ(settings.extension, 2);
    EXPECT_EQ(settings.velocityMode, 3);
    EXPECT_EQ(settings.velocity, 1);
}

TEST_F(ArpeggiatorSettingsTest, MissingAndUnreadableKeysTakeTheDefaults) {
    Load({{L"Bypass", L"1"}, {L"Extension", L"2"}, {L"Direction", L"4"}, {L"NoteLength", L"3"}});
    Load({});
    EXPECT_EQ(SavedLines(), kDefaultLines);
    Load({{L"Bypass", L"perhaps"},
          {L"NoteLength", L"long"},
          {L"NoteStep", L""},
          {L"Direction", L"up"},
          {L"Repeat", L"-"}});
    EXPECT_EQ(SavedLines(), kDefaultLines);
}

TEST_F(ArpeggiatorSettingsTest, AnyNegativeChannelMeansAny) {
    Load({{L"InChannel", L"-7"}, {L"OutChannel", L"-100"}});
    Press(60, 100, 9);
    RunTo(250);
    ASSERT_EQ(output.played.size(), 1U);
    EXPECT_EQ(output.played[0].channel, 8);
}

TEST_F(ArpeggiatorSettingsTest, ARefusedSectionChangesNothing) {
    Load({{L"Bypass", L"0"}, {L"Direction", L"1"}, {L"Extension", L"1"}});
    const std::vector<std::wstring> before = SavedLines();
    Press(60);
    const auto refuse = [&](const wchar_t* key, const wchar_t* value) {
        Load({{L"Bypass", L"1"}, {L"InChannel", L"2"}, {L"NoteStep", L"5"}, {L"Velocity", L"9"}, {key, value}});
    };
    const wchar_t* const kChannelText = L"Invalid MIDI channel number.";
    ExpectThrow<CInvalidMIDIChannelException>(kChannelText, [&] { refuse(L"InChannel", L"0"); });
    ExpectThrow<CInvalidMIDIChannelException>(kChannelText, [&] { refuse(L"InChannel", L"17"); });
    ExpectThrow<CInvalidMIDIChannelException>(kChannelText, [&] { refuse(L"OutChannel", L"0"); });
    ExpectThrow<CInvalidMIDIChannelException>(kChannelText, [&] { refuse(L"OutChannel", L"17"); });
    const struct {
        const wchar_t* key;
        const wchar_t* value;
        const wchar_t* text;
    } refused[] = {
        {L"NoteLength", L"-0.5", L"Note length cannot be negative."},
        {L"NoteLength", L"nan", L"Note length cannot be negative."},
        {L"NoteStep", L"0", L"Note step must be positive."},
        {L"NoteStep", L"-96", L"Note step must be positive."},
        {L"Direction", L"9", L"Invalid arpeggiator direction."},
        {L"Direction", L"-1", L"Invalid arpeggiator direction."},
        {L"Multiplication", L"4", L"Invalid arpeggiator multiplication mode."},
        {L"Extension", L"4", L"Invalid arpeggiator range extension mode."},
        {L"VelocityMode", L"4", L"Invalid arpeggiator velocity mode."},
    };
    for (const auto& wrong : refused) {
        ExpectThrow<CInvalidParameterException>(wrong.text, [&] { refuse(wrong.key, wrong.value); });
    }
    EXPECT_EQ(SavedLines(), before);
    EXPECT_EQ(Steps(2), (Notes{60, 72}));  // the key is still held, the list and the position are as they were
}

TEST_F(ArpeggiatorSettingsTest, SettersCheckTheirRanges) {
    ExpectThrow<CInvalidParameterException>(L"Invalid arpeggiator direction.", [&] { arpeggiator.SetDirection(9); });
    ExpectThrow<CInvalidParameterException>(L"Invalid arpeggiator direction.", [&] { arpeggiator.SetDirection(-1); });
    ExpectThrow<CInvalidParameterException>(L"Invalid arpeggiator velocity mode.",
                                            [&] { arpeggiator.SetVelocityMode(4); });
    ExpectThrow<CInvalidParameterException>(L"Invalid arpeggiator range extension mode.",
                                            [&] { arpeggiator.SetExtension(4); });
    ExpectThrow<CInvalidParameterException>(L"Invalid arpeggiator multiplication mode.",
                                            [&] { arpeggiator.SetMultiplication(4); });
    ExpectThrow<CInvalidParameterException>(L"Note step must be positive.", [&] { arpeggiator.SetNoteStep(0, 100); });
    ExpectThrow<CInvalidParameterException>(L"Note length cannot be negative.",
                                            [&] { arpeggiator.SetDurationPercent(-0.001); });
    ExpectThrow<CInvalidParameterException>(L"Note length cannot be negative.", [&] {
        arpeggiator.SetDurationPercent(std::numeric_limits<double>::quiet_NaN());
    });
    EXPECT_EQ(SavedLines(), kDefaultLines);
}

TEST_F(ArpeggiatorSettingsTest, ARefusedGateOfAStepLeavesTheNewStep) {
    arpeggiator.SetNoteStep(96, 100);
    ExpectThrow<CInvalidParameterException>(L"Note length cannot be negative.",
                                            [&] { arpeggiator.SetNoteStep(48, -1); });
    EXPECT_EQ(arpeggiator.GetNoteStep(), 48);
    EXPECT_DOUBLE_EQ(arpeggiator.GetSettings().noteLength, 16.0) << "the length is as it was";
}

TEST_F(ArpeggiatorSettingsTest, SettersAcceptTheirRanges) {
    for (int direction = 0; direction <= 8; ++direction) {
        arpeggiator.SetDirection(direction);
        EXPECT_EQ(arpeggiator.GetDirection(), direction);
    }
    for (int mode = 0; mode <= 3; ++mode) {
        arpeggiator.SetVelocityMode(mode);
        arpeggiator.SetExtension(mode);
        arpeggiator.SetMultiplication(mode);
        EXPECT_EQ(arpeggiator.GetVelocityMode(), mode);
        EXPECT_EQ(arpeggiator.GetExtension(), mode);
        EXPECT_EQ(arpeggiator.GetMultiplication(), mode);
    }
    arpeggiator.SetRepeat(true);
    EXPECT_TRUE(arpeggiator.GetRepeat());
}

TEST_F(ArpeggiatorSettingsTest, TheGateIsAPercentageOfTheStep) {
    arpeggiator.SetNoteStep(48, 100);
    EXPECT_EQ(arpeggiator.GetNoteStep(), 48);
    EXPECT_DOUBLE_EQ(arpeggiator.GetSettings().noteLength, 8.0);
    EXPECT_DOUBLE_EQ(arpeggiator.GetDurationPercent(), 100.0);
    arpeggiator.SetDurationPercent(50);
    EXPECT_DOUBLE_EQ(arpeggiator.GetSettings().noteLength, 4.0);
    EXPECT_EQ(arpeggiator.GetNoteStep(), 48);
    arpeggiator.SetDurationPercent(0);
    EXPECT_EQ(arpeggiator.GetDurationPercent(), 0);
}

TEST_F(ArpeggiatorSettingsTest, ABypassChangeKeepsTheHeldKeys) {
    Press(60);
    arpeggiator.SetBypassed(true);
    arpeggiator.SetBypassed(false);
    EXPECT_EQ(Step(), Notes{60});
}

TEST_F(ArpeggiatorSettingsTest, AForcedBypassChangeForgetsThem) {
    Press(60);
    arpeggiator.SetBypassed(true, true);
    arpeggiator.SetBypassed(false);
    RunTo(now);
    EXPECT_EQ(Step(), Notes{});
}
