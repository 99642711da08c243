// What sounds on a device, by what was written to it.
#include "engine/OutputFollower.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/FakePorts.h"

namespace {

using namespace LibMidi;
using Kivora::OutputFollower;
using KivoraTest::BytesOf;
using Written = std::vector<std::uint32_t>;

TEST(OutputFollower, WhatIsWrittenGoesThroughAndIsFollowedUpToAFailure) {
    KivoraTest::CFakeOutPort port;
    OutputFollower follower(port);
    EXPECT_EQ(follower.GetName(), L"out");
    EXPECT_EQ(follower.Open(), kSuccess);
    EXPECT_EQ(follower.GetFlags(), std::uint32_t{kOutput} | kOpen);
    const std::vector<MIDIEvent> chord{{0, 0x90, 60, 80}, {0, 0x90, 64, 80}, {0, 0x90, 67, 80}};
    int left = 2;
    port.device.onWriting = [&] { port.device.failsToWrite = left-- <= 0; };
    EXPECT_EQ(follower.Write(chord.data(), 3), kDeviceError);
    EXPECT_EQ(port.TakeWritten(), (Written{0x903C50, 0x904050}));
    left = 100;
    follower.EndSounding();
    EXPECT_EQ(port.TakeWritten(), (Written{0x803C00, 0x804000}));
    EXPECT_FALSE(follower.GetSounding().IsAny());
    EXPECT_EQ(follower.Write(nullptr, 1), kNoData);
    EXPECT_EQ(follower.Write(chord.data(), 0), kSuccess);
    EXPECT_EQ(follower.Close(), kSuccess);
}

TEST(OutputFollower, EndingStopsAtTheFirstFailureAndTheRestGoesOnSounding) {
    KivoraTest::CFakeOutPort port;
    OutputFollower follower(port);
    follower.Open();
    const std::vector<MIDIEvent> chord{{0, 0x90, 60, 80}, {0, 0x90, 64, 80}, {0, 0x90, 67, 80}};
    follower.Write(chord.data(), 3);
    port.TakeWritten();
    int tries = 0;
    port.device.onWriting = [&] { port.device.failsToWrite = ++tries != 1; };
    follower.EndSounding();
    EXPECT_EQ(tries, 2);
    EXPECT_EQ(port.TakeWritten(), Written{0x803C00});
    port.device.onWriting = nullptr;
    port.device.failsToWrite = false;
    follower.EndSounding();
    EXPECT_EQ(port.TakeWritten(), (Written{0x804000, 0x804300}));
}

}  // namespace
