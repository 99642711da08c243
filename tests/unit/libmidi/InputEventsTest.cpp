#include "libmidi/InputEvents.h"

#include <gtest/gtest.h>

namespace {

using LibMidi::MIDIEvent;
using LibMidi::ToInputEvent;

void ExpectEvent(int status, int data1, int data2, int expectedData1, int expectedData2) {
    const std::optional<MIDIEvent> event = ToInputEvent(
        static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(data1), static_cast<std::uint8_t>(data2));
    ASSERT_TRUE(event.has_value()) << std::hex << status;
    EXPECT_EQ(event->status, status);
    EXPECT_EQ(event->data1, expectedData1);
    EXPECT_EQ(event->data2, expectedData2);
    EXPECT_EQ(event->time, 0U);
}

TEST(InputEvents, EachChannelMessageKeepsItsStatusAndSevenBitsOfData) {
    for (const int channel : {0, 1, 9, 15}) {
        for (const int command : {0x80, 0x90, 0xA0, 0xB0, 0xE0}) {
            ExpectEvent(command | channel, 60, 100, 60, 100);
            ExpectEvent(command | channel, 0xBC, 0xE4, 60, 100);
        }
        ExpectEvent(0xC0 | channel, 0xBC, 0x55, 60, 0);
    }
}

TEST(InputEvents, ChannelPressureKeepsItsSevenBits) {
    ExpectEvent(0xD3, 100, 55, 100, 0);
    ExpectEvent(0xD0, 0xFF, 0, 127, 0);
}

TEST(InputEvents, SystemMessagesAndBytesThatAreNoStatusProduceNoEvent) {
    for (int byte = 0; byte < 0x100; byte = byte == 0x7F ? 0xF0 : byte + 1) {
        EXPECT_FALSE(ToInputEvent(static_cast<std::uint8_t>(byte), 60, 80).has_value()) << std::hex << byte;
    }
}

}  // namespace
