#include "midi/CMIDIProcessor.h"

#include <gtest/gtest.h>

using namespace NK;
using namespace NK::MIDI;

namespace {

class CCountingProcessor : public CMIDIProcessor {
public:
    int resets = 0;
    int hooks = 0;
    bool bypassSeenByHook = false;
    bool hookResult = true;

    bool OnBypassChanged() override {
        ++hooks;
        bypassSeenByHook = IsBypassed();
        return hookResult;
    }
    void SetDefaults() override {}
    void Reset() override { ++resets; }
    bool SaveSettings(CIniFile&) override { return true; }
    bool LoadSettings(CIniFile&) override { return true; }
    void Process(TMIDIMessage*, int, const MusicalClock&, CMIDIOutputBase&) override {}
};

class CPlainProcessor : public CCountingProcessor {
public:
    bool OnBypassChanged() override { return CMIDIProcessor::OnBypassChanged(); }
};

}  // namespace

TEST(CMIDIProcessor, StartsNotBypassed) {
    EXPECT_FALSE(CCountingProcessor().IsBypassed());
}

TEST(CMIDIProcessor, ThePresentValueCallsNeitherHookNorReset) {
    CCountingProcessor processor;
    processor.SetBypassed(false);
    processor.SetBypassed(false, true);
    EXPECT_EQ(processor.hooks, 0);
    EXPECT_EQ(processor.resets, 0);
    processor.SetBypassed(true);
    processor.SetBypassed(true, true);
    EXPECT_EQ(processor.hooks, 1);
    EXPECT_EQ(processor.resets, 0);
}

TEST(CMIDIProcessor, AForcedResetCallsResetOnceAndNotTheHook) {
    CCountingProcessor processor;
    processor.SetBypassed(true, true);
    EXPECT_TRUE(processor.IsBypassed());
    EXPECT_EQ(processor.resets, 1);
    EXPECT_EQ(processor.hooks, 0);
}

TEST(CMIDIProcessor, TheHookSeesTheNewFlagAndDecidesAboutTheReset) {
    CCountingProcessor processor;
    processor.SetBypassed(true);
    EXPECT_TRUE(processor.bypassSeenByHook);
    EXPECT_EQ(processor.resets, 0);
    processor.hookResult = false;
    processor.SetBypassed(false);
    EXPECT_FALSE(processor.bypassSeenByHook);
    EXPECT_EQ(processor.hooks, 2);
    EXPECT_EQ(processor.resets, 1);
}

TEST(CMIDIProcessor, TheBaseHookKeepsTheRunningState) {
    CPlainProcessor processor;
    processor.SetBypassed(true);
    processor.SetBypassed(false);
    EXPECT_EQ(processor.resets, 0);
}

TEST(CMIDIProcessor, SynchronisingDoesNothingInTheBase) {
    CCountingProcessor processor;
    const MusicalClock clock;
    processor.SyncToTime(&clock);
    processor.SyncToTime(nullptr);
    EXPECT_EQ(processor.resets, 0);
}
