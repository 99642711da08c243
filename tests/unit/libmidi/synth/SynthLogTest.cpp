#include "libmidi/synth/SynthLog.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

using LibMidi::SynthLog;

TEST(SynthLog, KeepsTheFirstErrorOfItsThread) {
    const SynthLog log;
    SynthLog::Write(false, "a remark");
    SynthLog::Write(true, "first");
    SynthLog::Write(true, "second");
    EXPECT_EQ(log.GetError(), "first");
}

TEST(SynthLog, TheInnermostKeepsTheText) {
    const SynthLog outer;
    {
        const SynthLog inner;
        SynthLog::Write(true, "inner");
        EXPECT_EQ(inner.GetError(), "inner");
    }
    SynthLog::Write(true, "outer");
    EXPECT_EQ(outer.GetError(), "outer");
}

TEST(SynthLog, AnErrorOfAnotherThreadIsAFailureOfTheAudioSystem) {
    const SynthLog log;
    const auto before = SynthLog::GetAudioFailures();
    std::thread([] { SynthLog::Write(false, "only a warning"); }).join();
    EXPECT_EQ(SynthLog::GetAudioFailures(), before);
    std::thread([] { SynthLog::Write(true, "the device is gone"); }).join();
    EXPECT_EQ(SynthLog::GetAudioFailures(), before + 1);
    EXPECT_EQ(log.GetError(), "");
}

TEST(SynthLog, AnErrorOfACallIsNoFailureOfTheAudioSystem) {
    const auto before = SynthLog::GetAudioFailures();
    const SynthLog log;
    SynthLog::Write(true, "no such file");
    EXPECT_EQ(SynthLog::GetAudioFailures(), before);
}

}  // namespace
