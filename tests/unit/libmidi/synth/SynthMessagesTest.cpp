#include "libmidi/synth/SynthMessages.h"

#include <gtest/gtest.h>

#include "FakeSynthApi.h"

namespace {

using KivoraTest::FakeSynthApi;
using LibMidi::LoadsSamples;
using LibMidi::MIDIEvent;
using LibMidi::SendToSynth;
using Texts = std::vector<std::string>;

Texts Send(const MIDIEvent& event) {
    FakeSynthApi api;
    SendToSynth(api, nullptr, event);
    return api.GetTexts();
}

TEST(SynthMessages, PlaysEveryKindOfMessage) {
    EXPECT_EQ(Send(MIDIEvent(0, 0x80, 60, 64)), Texts{"off 0 60"});
    EXPECT_EQ(Send(MIDIEvent(0, 0x91, 60, 100)), Texts{"on 1 60 100"});
    EXPECT_EQ(Send(MIDIEvent(0, 0xA2, 60, 7)), Texts{"key pressure 2 60 7"});
    EXPECT_EQ(Send(MIDIEvent(0, 0xB3, 64, 127)), Texts{"cc 3 64 127"});
    EXPECT_EQ(Send(MIDIEvent(0, 0xC9, 25, 0)), Texts{"program 9 25"});
    EXPECT_EQ(Send(MIDIEvent(0, 0xDF, 80, 0)), Texts{"channel pressure 15 80"});
    EXPECT_EQ(Send(MIDIEvent(0, 0xFF, 0, 0)), Texts{"reset"});
}

TEST(SynthMessages, PitchWheelIsFourteenBitsLowFirst) {
    EXPECT_EQ(Send(MIDIEvent(0, 0xE0, 0, 64)), Texts{"bend 0 8192"});
    EXPECT_EQ(Send(MIDIEvent(0, 0xE4, 127, 127)), Texts{"bend 4 16383"});
    EXPECT_EQ(Send(MIDIEvent(0, 0xE4, 1, 0)), Texts{"bend 4 1"});
}

TEST(SynthMessages, DropsEveryOtherStatus) {
    for (int status = 0; status < 0x80; ++status) {
        EXPECT_TRUE(Send(MIDIEvent(0, static_cast<std::uint8_t>(status), 60, 100)).empty()) << status;
    }
    for (int status = 0xF0; status < 0xFF; ++status) {
        EXPECT_TRUE(Send(MIDIEvent(0, static_cast<std::uint8_t>(status), 60, 100)).empty()) << status;
    }
}

TEST(SynthMessages, DataBytesHaveSevenBits) {
    EXPECT_EQ(Send(MIDIEvent(0, 0x90, 0xBC, 0xFF)), Texts{"on 0 60 127"});
}

TEST(SynthMessages, OnlyProgramChangeAndResetLoadSamples) {
    for (int status = 0; status <= 0xFF; ++status) {
        const bool expected = (status >= 0xC0 && status <= 0xCF) || status == 0xFF;
        EXPECT_EQ(LoadsSamples(MIDIEvent(0, static_cast<std::uint8_t>(status), 0, 0)), expected) << status;
    }
}

}  // namespace
