#include "libmidi/MIDIEvent.h"

#include <gtest/gtest.h>

#include "libmidi/QueuedEvents.h"

namespace {

using namespace LibMidi;
using NK::MIDI::TMIDIMessage;

void ExpectBytes(const MIDIEvent& event, int status, int data1, int data2, std::uint32_t time) {
    EXPECT_EQ(event.status, status);
    EXPECT_EQ(event.data1, data1);
    EXPECT_EQ(event.data2, data2);
    EXPECT_EQ(event.time, time);
}

TEST(MIDIEvent, EachKindHasItsStatusWithTheChannelInTheLowNibble) {
    ExpectBytes(NoteEvent(7, 3, 60, 80, 0x90), 0x93, 60, 80, 7);
    ExpectBytes(NoteEvent(0, 15, 60, 0, 0x80), 0x8F, 60, 0, 0);
    ExpectBytes(CtrlEvent(1, 2, 7, 100), 0xB2, 7, 100, 1);
    ExpectBytes(PatchEvent(1, 9, 5), 0xC9, 5, 0, 1);
    ExpectBytes(WheelEvent(1, 0, 1, 64), 0xE0, 1, 64, 1);
    ExpectBytes(KATEvent(1, 4, 60, 33), 0xA4, 60, 33, 1);
    ExpectBytes(CATEvent(1, 5, 12), 0xD5, 12, 0, 1);
    ExpectBytes(TimeEvent(42), 0, 0, 0, 42);
}

TEST(MIDIEvent, AChannelOutOfRangeTouchesTheNibbleOnly) {
    ExpectBytes(CtrlEvent(0, 0x12, 7, 1), 0xB2, 7, 1, 0);
}

TEST(MIDIEvent, AMessageTakesTheChannelAsOneToSixteen) {
    EXPECT_EQ(MIDIEvent(5, 0x9F, 60, 80).ToMessage(), (TMIDIMessage{0x90, 16, 60, 80}));
    EXPECT_EQ(MIDIEvent(5, 0x80, 60, 0).ToMessage(), (TMIDIMessage{0x80, 1, 60, 0}));
}

TEST(MIDIEvent, ASystemMessageHasChannelZero) {
    EXPECT_EQ(MIDIEvent(0, 0xFF, 0, 0).ToMessage(), (TMIDIMessage{0xFF, 0, 0, 0}));
    EXPECT_EQ(MIDIEvent(0, 0xF2, 1, 2).ToMessage(), (TMIDIMessage{0xF2, 0, 1, 2}));
}

TEST(MIDIEvent, AMessageWithoutAChannelKeepsItsStatus) {
    ExpectBytes(MIDIEvent::FromMessage({0xFF, 0, 0, 0}, 3), 0xFF, 0, 0, 3);
    ExpectBytes(MIDIEvent::FromMessage({0x90, 16, 60, 80}, 3), 0x9F, 60, 80, 3);
    ExpectBytes(MIDIEvent::FromMessage({0x90, 1, 60, 80}, 3), 0x90, 60, 80, 3);
}

TEST(QueuedEvents, ANoteEventIsANoteOffWhereTheVelocityIsZero) {
    const NoteSynthEvent on(80, 250, 9, 3, 60, 2, 50);
    ExpectBytes(on.event, 0x93, 60, 80, 9);
    EXPECT_EQ(on.duration, 250);
    EXPECT_EQ(on.target, 2);
    EXPECT_EQ(on.priority, 50);
    const NoteSynthEvent off(0, 250, 9, 3, 60, 0, 100);
    ExpectBytes(off.event, 0x83, 60, 0, 9);
}

TEST(QueuedEvents, ANoteEventKeepsSevenBitsAndFourOfTheChannel) {
    const NoteSynthEvent event(0xC0, 0, 0, 0x1F, 0xBC, 0, 100);
    ExpectBytes(event.event, 0x9F, 0x3C, 0x40, 0);
}

TEST(QueuedEvents, ThePriorityIsAHundredByDefault) {
    EXPECT_EQ(SynthEventBase().priority, 100);
    EXPECT_EQ(SynthEventBase(CtrlEvent(0, 0, 7, 1)).target, kFirstPort);
}

}  // namespace
