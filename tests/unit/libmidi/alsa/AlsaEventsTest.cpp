#include "libmidi/alsa/AlsaEvents.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/AllocationCounter.h"
#include "support/FakePorts.h"

namespace {

using namespace LibMidi;
using KivoraTest::BytesOf;

using Messages = std::vector<std::uint32_t>;

Messages Read(const snd_seq_event_t& event) {
    Messages messages;
    VisitInputEvents(event, [&messages](const MIDIEvent& message) {
        EXPECT_EQ(message.time, 0U);
        messages.push_back(BytesOf(message));
    });
    return messages;
}

snd_seq_event_t Note(snd_seq_event_type type, unsigned char channel, unsigned char note, unsigned char velocity) {
    snd_seq_event_t event{};
    event.type = static_cast<snd_seq_event_type_t>(type);
    event.data.note = {channel, note, velocity, 0, 0};
    return event;
}

snd_seq_event_t Control(snd_seq_event_type type, unsigned char channel, unsigned int parameter, int value) {
    snd_seq_event_t event{};
    event.type = static_cast<snd_seq_event_type_t>(type);
    event.data.control = {channel, {}, parameter, value};
    return event;
}

TEST(AlsaEvents, EachChannelMessageIsReadWithSevenBitsOfData) {
    EXPECT_EQ(Read(Note(SND_SEQ_EVENT_NOTEON, 3, 60, 100)), (Messages{0x933C64}));
    EXPECT_EQ(Read(Note(SND_SEQ_EVENT_NOTEON, 15, 60, 0)), (Messages{0x9F3C00}));
    EXPECT_EQ(Read(Note(SND_SEQ_EVENT_NOTEOFF, 0, 0xBC, 0xE4)), (Messages{0x803C64}));
    EXPECT_EQ(Read(Note(SND_SEQ_EVENT_KEYPRESS, 1, 60, 9)), (Messages{0xA13C09}));
    EXPECT_EQ(Read(Control(SND_SEQ_EVENT_CONTROLLER, 2, 64, 127)), (Messages{0xB2407F}));
    EXPECT_EQ(Read(Control(SND_SEQ_EVENT_PGMCHANGE, 9, 0, 5)), (Messages{0xC90500}));
}

TEST(AlsaEvents, ChannelPressureKeepsItsSevenBits) {
    EXPECT_EQ(Read(Control(SND_SEQ_EVENT_CHANPRESS, 0, 0, 100)), (Messages{0xD06400}));
}

TEST(AlsaEvents, TheWheelIsReadInFourteenBits) {
    EXPECT_EQ(Read(Control(SND_SEQ_EVENT_PITCHBEND, 0, 0, 0)), (Messages{0xE00040}));
    EXPECT_EQ(Read(Control(SND_SEQ_EVENT_PITCHBEND, 0, 0, -8192)), (Messages{0xE00000}));
    EXPECT_EQ(Read(Control(SND_SEQ_EVENT_PITCHBEND, 0, 0, 8191)), (Messages{0xE07F7F}));
    EXPECT_EQ(Read(Control(SND_SEQ_EVENT_PITCHBEND, 0, 0, 100000)), (Messages{0xE07F7F}));
}

TEST(AlsaEvents, WhatIsWiderIsReadAsTheControllersThatItStandsFor) {
    EXPECT_EQ(Read(Control(SND_SEQ_EVENT_CONTROL14, 0, 7, 100 << 7 | 5)), (Messages{0xB00764, 0xB02705}));
    EXPECT_EQ(Read(Control(SND_SEQ_EVENT_CONTROL14, 0, 64, 127)), (Messages{0xB0407F}));
    EXPECT_EQ(Read(Control(SND_SEQ_EVENT_REGPARAM, 0, 1 << 7 | 2, 3 << 7 | 4)),
              (Messages{0xB06501, 0xB06402, 0xB00603, 0xB02604}));
    EXPECT_EQ(Read(Control(SND_SEQ_EVENT_NONREGPARAM, 0, 1 << 7 | 2, 3 << 7 | 4)),
              (Messages{0xB06301, 0xB06202, 0xB00603, 0xB02604}));
}

TEST(AlsaEvents, SystemMessagesAndEverythingElseAreNotRead) {
    for (const auto type : {SND_SEQ_EVENT_CLOCK, SND_SEQ_EVENT_START, SND_SEQ_EVENT_SENSING, SND_SEQ_EVENT_SYSEX,
                            SND_SEQ_EVENT_QFRAME, SND_SEQ_EVENT_PORT_START, SND_SEQ_EVENT_ECHO, SND_SEQ_EVENT_NONE}) {
        EXPECT_EQ(Read(Control(type, 0, 1, 2)), (Messages{})) << type;
    }
}

TEST(AlsaEvents, WhatIsSentIsReadAsItWas) {
    for (const MIDIEvent message : {MIDIEvent{0, 0x93, 60, 100},
                                    {0, 0x83, 60, 1},
                                    {0, 0xA0, 60, 9},
                                    {0, 0xBF, 7, 100},
                                    {0, 0xC1, 5, 0},
                                    {0, 0xD2, 100, 0},
                                    {0, 0xE0, 0, 0},
                                    {0, 0xE0, 127, 127},
                                    {0, 0xE0, 0, 64}}) {
        snd_seq_event_t event{};
        ASSERT_TRUE(FillEvent(message, event));
        EXPECT_EQ(Read(event), (Messages{BytesOf(message)}));
    }
}

TEST(AlsaEvents, SystemMessagesOfAFixedLengthAreSent) {
    const auto typeOf = [](std::uint8_t status) {
        snd_seq_event_t event{};
        return FillEvent({0, status, 1, 2}, event) ? int{event.type} : -1;
    };
    EXPECT_EQ(typeOf(0xF1), SND_SEQ_EVENT_QFRAME);
    EXPECT_EQ(typeOf(0xF2), SND_SEQ_EVENT_SONGPOS);
    EXPECT_EQ(typeOf(0xF3), SND_SEQ_EVENT_SONGSEL);
    EXPECT_EQ(typeOf(0xF6), SND_SEQ_EVENT_TUNE_REQUEST);
    EXPECT_EQ(typeOf(0xF8), SND_SEQ_EVENT_CLOCK);
    EXPECT_EQ(typeOf(0xFA), SND_SEQ_EVENT_START);
    EXPECT_EQ(typeOf(0xFB), SND_SEQ_EVENT_CONTINUE);
    EXPECT_EQ(typeOf(0xFC), SND_SEQ_EVENT_STOP);
    EXPECT_EQ(typeOf(0xFE), SND_SEQ_EVENT_SENSING);
    EXPECT_EQ(typeOf(0xFF), SND_SEQ_EVENT_RESET);
    for (const int status : {0x00, 0x7F, 0xF0, 0xF4, 0xF5, 0xF7, 0xF9, 0xFD}) {
        EXPECT_EQ(typeOf(static_cast<std::uint8_t>(status)), -1) << std::hex << status;
    }
    snd_seq_event_t event{};
    FillEvent({0, 0xF2, 5, 3}, event);
    EXPECT_EQ(event.data.control.value, 3 << 7 | 5);
}

TEST(AlsaEvents, ReadingAndSendingAllocateNothing) {
    int messages = 0;
    const snd_seq_event_t event = Control(SND_SEQ_EVENT_REGPARAM, 0, 1, 2);
    const std::uint64_t before = KivoraTest::GetAllocationCount();
    VisitInputEvents(event, [&messages, &event](const MIDIEvent&) { messages += event.type != 0 ? 1 : 0; });
    snd_seq_event_t sent{};
    FillEvent({0, 0x90, 60, 100}, sent);
    EXPECT_EQ(KivoraTest::GetAllocationCount(), before);
    EXPECT_EQ(messages, 4);
}

}  // namespace
