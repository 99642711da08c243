#include <gtest/gtest.h>

#include <map>
#include <string>

#include "midi/TMIDIMessage.h"

using namespace NK;
using namespace NK::MIDI;

namespace {

std::wstring Text(const TMIDIMessage& message, NoteNameStyle style = NoteNameStyle::kSharps) {
    wchar_t buffer[64];
    ToString(message, buffer, 64, style);
    return buffer;
}

}  // namespace

TEST(CommandNames, EveryStatus) {
    const std::map<int, std::wstring> names = {
        {0x80, L"Note Off"},       {0x90, L"Note On"},          {0xA0, L"Poly-Pressure"},  {0xB0, L"Control Change"},
        {0xC0, L"Program Change"}, {0xD0, L"Channel-Pressure"}, {0xE0, L"Pitch Bend"},     {0xF0, L"SysEx Start"},
        {0xF1, L"Time Code"},      {0xF2, L"Song Pointer"},     {0xF3, L"Song Select"},    {0xF6, L"Tune Request"},
        {0xF7, L"SysEx End"},      {0xF8, L"Timing Clock"},     {0xFA, L"Start Sequence"}, {0xFB, L"Continue Sequence"},
        {0xFC, L"Stop Sequence"},  {0xFE, L"Active Sensing"},   {0xFF, L"Reset"}};
    for (int status = 0; status < 256; ++status) {
        const auto found = names.find(status);
        EXPECT_EQ(TMIDIMessage::GetCommandName(static_cast<std::uint8_t>(status)),
                  found == names.end() ? L"Unknown Command" : found->second)
            << status;
    }
}

TEST(ControllerNames, EveryNumber) {
    const std::map<int, std::wstring> names = {{0, L"Bank Select MSB"},
                                               {1, L"Modulation"},
                                               {6, L"Data Entry MSB"},
                                               {7, L"Main Volume"},
                                               {10, L"Pan"},
                                               {11, L"Expression"},
                                               {32, L"Bank Select LSB"},
                                               {33, L"Modulation LSB"},
                                               {34, L"Breath Controller LSB"},
                                               {36, L"Foot Controller LSB"},
                                               {37, L"Portamento Time LSB"},
                                               {38, L"Data Entry LSB"},
                                               {39, L"Main Volume LSB"},
                                               {40, L"Balance LSB"},
                                               {48, L"Pan LSB"},
                                               {64, L"Sustain"},
                                               {65, L"Portamento"},
                                               {66, L"Sostuneto Thumby"},
                                               {67, L"Pedal Soft"},
                                               {68, L"Legato Footswitch"},
                                               {69, L"Hold 2"},
                                               {70, L"Sound Variation"},
                                               {71, L"Timbre/Harmonic Content"},
                                               {72, L"Release Time"},
                                               {73, L"Attack Time"},
                                               {74, L"Brightness"},
                                               {75, L"Decay"},
                                               {91, L"Reverb Depth"},
                                               {93, L"Chorus Depth"},
                                               {96, L"Data Increment"},
                                               {97, L"Data Decrement"},
                                               {98, L"NRPN LSB"},
                                               {99, L"NRPN MSB"},
                                               {100, L"RPN LSB"},
                                               {101, L"RPN MSB"},
                                               {120, L"All Sound Off"},
                                               {121, L"Reset Controllers"},
                                               {122, L"Local Control"},
                                               {123, L"All Notes Off"},
                                               {124, L"Omni OFF"},
                                               {125, L"Omni ON"},
                                               {126, L"Mono ON/Poly OFF"},
                                               {127, L"Poly ON/Mono OFF"}};
    for (int number = 0; number < 256; ++number) {
        const auto found = names.find(number);
        EXPECT_EQ(TMIDIMessage::GetControllerName(static_cast<std::uint8_t>(number)),
                  found == names.end() ? L"Unknown Controller" : found->second)
            << number;
    }
}

TEST(MessageText, NotesCarryTheNameWithoutOctave) {
    EXPECT_EQ(Text({0x90, 1, 60, 100}), L"Note ON C");
    EXPECT_EQ(Text({0x90, 1, 61, 1}), L"Note ON C#");
    EXPECT_EQ(Text({0x90, 1, 61, 1}, NoteNameStyle::kFlats), L"Note ON Db");
    EXPECT_EQ(Text({0x90, 1, 61, 0}), L"Note OFF C#");
    EXPECT_EQ(Text({0x80, 1, 70, 64}, NoteNameStyle::kFlats), L"Note OFF Bb");
}

TEST(MessageText, ANoteAbove127IsNoPitchClass) {
    EXPECT_EQ(Text({0x90, 1, 127, 1}), L"Note ON G");
    EXPECT_EQ(Text({0x90, 1, 128, 1}), L"Note ON INVALID NOTE NUMBER: 128");
    EXPECT_EQ(Text({0x90, 1, 255, 0}, NoteNameStyle::kFlats), L"Note OFF INVALID NOTE NUMBER: 255");
    EXPECT_EQ(Text({0x80, 1, 200, 0}), L"Note OFF INVALID NOTE NUMBER: 200");
}

TEST(MessageText, PitchWheelShowsTheRawValueAndTheSignedFraction) {
    EXPECT_EQ(Text({0xE0, 1, 0, 64}), L"Pitch Bend: 8192 (+0.00)");
    EXPECT_EQ(Text({0xE0, 1, 0, 96}), L"Pitch Bend: 12288 (+0.50)");
    EXPECT_EQ(Text({0xE0, 1, 0, 0}), L"Pitch Bend: 0 (-1.00)");
}

TEST(MessageText, ProgramAndControllers) {
    EXPECT_EQ(Text({0xC0, 1, 40, 0}), L"Program #40");
    EXPECT_EQ(Text({0xB0, 1, 64, 1}), L"Sustain ON");
    EXPECT_EQ(Text({0xB0, 1, 64, 0}), L"Sustain OFF");
    EXPECT_EQ(Text({0xB0, 1, 7, 99}), L"Main Volume: 99");
    EXPECT_EQ(Text({0xB0, 1, 3, 5}), L"Unknown Controller: 5");
}

TEST(MessageText, AnythingElseShowsTheCommandAndTheStatus) {
    EXPECT_EQ(Text({0xA0, 1, 60, 5}), L"Poly-Pressure (160)");
    EXPECT_EQ(Text({0xFF, 0, 0, 0}), L"Reset (255)");
    EXPECT_EQ(Text({0xF4, 0, 0, 0}), L"Unknown Command (244)");
}

TEST(MessageText, ATextLongerThanTheBufferIsCutAndTerminated) {
    wchar_t buffer[] = L"########";
    ToString({0x90, 1, 60, 100}, buffer, 5);
    EXPECT_EQ(std::wstring(buffer), L"Note");
    EXPECT_EQ(std::wstring(buffer + 5), L"###");
    ToString({0x90, 1, 60, 100}, buffer, 1);
    EXPECT_EQ(buffer[0], L'\0');
}

TEST(MessageText, WithoutABufferItThrows) {
    const auto expectThrow = [](wchar_t* buffer, std::size_t size) {
        try {
            ToString({0x90, 1, 60, 100}, buffer, size);
            FAIL();
        } catch (const CInvalidParameterException& e) {
            EXPECT_STREQ(e.GetMessage(), L"No output buffer in MIDI message to string converter.");
        }
    };
    wchar_t buffer[4];
    expectThrow(nullptr, 4);
    expectThrow(buffer, 0);
}

TEST(InvalidMIDIChannel, CarriesItsText) {
    const CInvalidMIDIChannelException exception;
    EXPECT_STREQ(exception.GetMessage(), L"Invalid MIDI channel number.");
    EXPECT_STREQ(exception.what(), "Invalid MIDI channel number.");
}
