#include "libmidi/portmidi/PortMIDIEvents.h"

#include <gtest/gtest.h>

namespace {

using LibMidi::MIDIEvent;
using LibMidi::ToInputEvent;

void ExpectEvent(int status, int data1, int data2, int expectedData1, int expectedData2) {
    const std::optional<MIDIEvent> event = ToInputEvent(Pm_Message(status, data1, data2));
    ASSERT_TRUE(event.has_value()) << std::hex << status;
    EXPECT_EQ(event->status, status);
    EXPECT_EQ(event->data1, expectedData1);
    EXPECT_EQ(event->data2, expectedData2);
    EXPECT_EQ(event->time, 0U);
}

TEST(PortMIDIEvents, EachChannelMessageKeepsItsStatusAndSevenBitsOfData) {
    for (const int channel : {0, 1, 9, 15}) {
        for (const int command : {0x80, 0x90, 0xA0, 0xB0, 0xE0}) {
            ExpectEvent(command | channel, 60, 100, 60, 100);
            ExpectEvent(command | channel, 0xBC, 0xE4, 60, 100);
        }
        ExpectEvent(0xC0 | channel, 0xBC, 0x55, 60, 0);
    }
}

TEST(PortMIDIEvents, ChannelPressureKeepsItsLowFourBits) {
    ExpectEvent(0xD3, 100, 55, 4, 0);
    ExpectEvent(0xD0, 15, 0, 15, 0);
    ExpectEvent(0xD0, 127, 0, 15, 0);
}

TEST(PortMIDIEvents, SystemMessagesProduceNoEvent) {
    for (int status = 0xF0; status <= 0xFF; ++status) {
        EXPECT_FALSE(ToInputEvent(Pm_Message(status, 1, 2)).has_value()) << std::hex << status;
    }
}

TEST(PortMIDIEvents, AByteThatIsNoStatusProducesNoEvent) {
    for (int byte = 0; byte < 0x80; ++byte) {
        EXPECT_FALSE(ToInputEvent(Pm_Message(byte, 60, 80)).has_value()) << std::hex << byte;
    }
}

}  // namespace
