// What the audio driver is given while nothing sounds.
#include <gtest/gtest.h>

#include "libmidi/synth/SynthDevice.h"
#include "unit/libmidi/synth/FakeSynthApi.h"

namespace {

using namespace LibMidi;

class SynthDeviceRest : public testing::Test {
protected:
    static constexpr int kSecond = 48000;

    SynthDeviceRest() {
        SynthReason reason;
        EXPECT_TRUE(device.StartDriver({.soundFont = {}, .audioDriver = "alsa", .audioFile = {}}, reason));
        device.SetSound({});
    }
    /// Whether the synthesizer computes the sound of the next second.
    bool IsAskedInASecond() {
        const int before = api.computed;
        api.TakeSound(kSecond);
        return api.computed > before;
    }
    void BeSilentForHalfAMinute() {
        for (int second = 0; second < 30; ++second) {
            EXPECT_TRUE(IsAskedInASecond()) << second;
        }
    }

    KivoraTest::FakeSynthApi api;
    SynthDevice device{api};
};

TEST_F(SynthDeviceRest, AfterHalfAMinuteOfSilenceItIsAskedNoMore) {
    api.level = 1e-7F;
    BeSilentForHalfAMinute();
    EXPECT_FALSE(IsAskedInASecond());
    EXPECT_EQ(device.GetPlayedFrames(), 31U * kSecond);
}

TEST_F(SynthDeviceRest, AMessageEndsItAtOnce) {
    BeSilentForHalfAMinute();
    ASSERT_FALSE(IsAskedInASecond());
    device.Send(NoteEvent(0, 0, 60, 100, 0x90));
    EXPECT_TRUE(IsAskedInASecond());
}

TEST_F(SynthDeviceRest, SoDoesASetting) {
    BeSilentForHalfAMinute();
    ASSERT_FALSE(IsAskedInASecond());
    device.SetSound({});
    EXPECT_TRUE(IsAskedInASecond());
}

TEST_F(SynthDeviceRest, WhatSoundsIsComputedForAsLongAsItDoes) {
    api.level = 1e-4F;
    BeSilentForHalfAMinute();
    EXPECT_TRUE(IsAskedInASecond());
    api.level = 0;
    BeSilentForHalfAMinute();
    EXPECT_FALSE(IsAskedInASecond());
}

}  // namespace
