#include "ArpeggiatorFixture.h"

using namespace KivoraTest;
using NK::MIDI::ArpeggiatorSettings;

namespace {

class ArpeggiatorMessages : public ArpeggiatorTest {
protected:
    int NextVelocity() {
        RunTo(now / 250 * 250 + 250);
        EXPECT_EQ(output.played.size(), 1U);
        const int velocity = output.played.empty() ? -1 : output.played[0].velocity;
        output.played.clear();
        return velocity;
    }
    int NextChannel() {
        RunTo(now / 250 * 250 + 250);
        EXPECT_EQ(output.played.size(), 1U);
        const int channel = output.played.empty() ? -1 : output.played[0].channel;
        output.played.clear();
        return channel;
    }
};

}  // namespace

TEST_F(ArpeggiatorMessages, NotesAndKeyPressuresAreTakenOver) {
    const Message none;
    EXPECT_EQ(Send({{0x90, 1, 60, 100}, {0xA0, 1, 60, 50}, {0x90, 1, 60, 0}, {0x80, 1, 60, 64}}),
              (std::vector<Message>{none, none, none, none}));
}

TEST_F(ArpeggiatorMessages, OtherStatusesAreLeftAlone) {
    const std::vector<Message> others = {{0xB0, 1, 64, 127}, {0xC0, 1, 5, 0},    {0xD0, 1, 9, 0}, {0xE0, 1, 0, 64},
                                         {0xF0, 0, 1, 2},    {0xFF, 0, 60, 100}, {0, 0, 60, 100}, {0x91, 1, 60, 100}};
    EXPECT_EQ(Send(others), others);
    EXPECT_EQ(Step(), Notes{});
}

TEST_F(ArpeggiatorMessages, ASystemResetDoesNotReleaseTheKeys) {
    Press(60);
    Send({{0xFF, 0, 0, 0}});
    EXPECT_EQ(Step(), Notes{60});
}

TEST_F(ArpeggiatorMessages, BypassedItLeavesMessagesPlaysNothingAndTracksTheKeys) {
    arpeggiator.SetBypassed(true);
    const std::vector<Message> keys = {{0x90, 1, 60, 100}, {0xA0, 1, 60, 50}};
    EXPECT_EQ(Send(keys), keys);
    EXPECT_EQ(Step(), Notes{});
    arpeggiator.SetBypassed(false);
    EXPECT_EQ(Step(), Notes{60});
}

TEST_F(ArpeggiatorMessages, BypassedItStepsOn) {
    Press(60);
    Press(64);
    arpeggiator.SetBypassed(true);
    Step();
    arpeggiator.SetBypassed(false);
    EXPECT_EQ(Step(), Notes{64});
}

TEST_F(ArpeggiatorMessages, ANegativeInputChannelMeansAny) {
    Press(60, 100, 1);
    Press(64, 100, 16);
    EXPECT_EQ(Steps(2), (Notes{60, 64}));
}

TEST_F(ArpeggiatorMessages, OtherInputChannelsAreSkippedAndLeftAlone) {
    Load({{L"InChannel", L"3"}});
    const std::vector<Message> left = Send({{0x90, 2, 60, 100}, {0x90, 3, 64, 100}, {0x90, 0, 67, 100}});
    EXPECT_EQ(left, (std::vector<Message>{{0x90, 2, 60, 100}, {}, {0x90, 0, 67, 100}}));
    EXPECT_EQ(Steps(2), (Notes{64, 64}));
    Release(64, 2);
    EXPECT_EQ(Step(), Notes{64});
    Release(64, 3);
    EXPECT_EQ(Step(), Notes{});
}

TEST_F(ArpeggiatorMessages, WithoutAnOutputChannelTheLastInputChannelCounts) {
    Press(60, 100, 5);
    EXPECT_EQ(NextChannel(), 4);
    Press(64, 100, 16);
    EXPECT_EQ(NextChannel(), 15);
    Release(64, 2);
    EXPECT_EQ(NextChannel(), 1);
}

TEST_F(ArpeggiatorMessages, TheOutputChannelWins) {
    Load({{L"OutChannel", L"10"}});
    Press(60, 100, 5);
    EXPECT_EQ(NextChannel(), 9);
}

TEST_F(ArpeggiatorMessages, ChannelZeroWrapsTo255) {
    Press(60, 100, 0);
    EXPECT_EQ(NextChannel(), 255);
}

// A reset sets the last input channel to 0, and the keys pressed after it set it anew.
TEST_F(ArpeggiatorMessages, AResetForgetsKeysAndVelocities) {
    Press(60, 30, 5);
    Press(64, 40, 5);
    arpeggiator.Reset();
    RunTo(now);
    EXPECT_EQ(Step(), Notes{});
    Press(64, 50, 7);
    EXPECT_EQ(NextChannel(), 6);
}

TEST_F(ArpeggiatorMessages, NotesOutOfRangeAreClamped) {
    Press(200);
    EXPECT_EQ(Step(), Notes{127});
    Release(128);  // clamped to the same key
    EXPECT_EQ(Step(), Notes{});
}

TEST_F(ArpeggiatorMessages, VelocitiesOutOfRangeAreClamped) {
    Press(60, 255);
    EXPECT_EQ(NextVelocity(), 127);
    Send({{0xA0, 1, 60, 0}});
    EXPECT_EQ(NextVelocity(), 1);
    Send({{0xA0, 1, 200, 200}});
    EXPECT_EQ(NextVelocity(), 1);
}

TEST_F(ArpeggiatorMessages, NoteOnWithVelocityZeroReleases) {
    Press(60);
    Press(60, 0);
    EXPECT_EQ(Step(), Notes{});
}

TEST_F(ArpeggiatorMessages, VelocityOfTheFirstKey) {
    arpeggiator.SetVelocityMode(ArpeggiatorSettings::kFirstVelocity);
    Press(64, 30);
    Press(60, 90);
    EXPECT_EQ(NextVelocity(), 30);
    EXPECT_EQ(NextVelocity(), 30);
    Release(64);  // the chord goes on, and so does its velocity
    EXPECT_EQ(NextVelocity(), 30);
    Release(60);
    Press(72, 55);  // a new chord
    EXPECT_EQ(NextVelocity(), 55);
}

TEST_F(ArpeggiatorMessages, TheKeysOfOneBatchHaveOneFirst) {
    arpeggiator.SetVelocityMode(ArpeggiatorSettings::kFirstVelocity);
    Send({{0x90, 1, 64, 30}, {0x90, 1, 60, 90}});
    EXPECT_EQ(NextVelocity(), 30);
}

TEST_F(ArpeggiatorMessages, VelocityOfTheLastKeyOrPressure) {
    arpeggiator.SetVelocityMode(ArpeggiatorSettings::kLastVelocity);
    Press(64, 30);
    Press(60, 90);
    EXPECT_EQ(NextVelocity(), 90);
    EXPECT_EQ(NextVelocity(), 90);
    Send({{0xA0, 1, 64, 45}});
    EXPECT_EQ(NextVelocity(), 45);
}

TEST_F(ArpeggiatorMessages, VelocityOfEachKey) {
    Press(60, 90);
    Press(64, 30);
    EXPECT_EQ(NextVelocity(), 90);
    EXPECT_EQ(NextVelocity(), 30);
    Send({{0xA0, 1, 60, 70}});
    EXPECT_EQ(NextVelocity(), 70);
}

TEST_F(ArpeggiatorMessages, FixedVelocity) {
    Load({{L"VelocityMode", L"3"}, {L"Velocity", L"77"}});
    Press(60, 90);
    EXPECT_EQ(NextVelocity(), 77);
}

TEST_F(ArpeggiatorMessages, AFixedVelocityAboveTheDataRangeIsPlayedAs127) {
    Load({{L"VelocityMode", L"3"}, {L"Velocity", L"200"}});
    EXPECT_EQ(arpeggiator.GetSettings().velocity, 200);
    Press(60, 90);
    EXPECT_EQ(NextVelocity(), 127);
}

TEST_F(ArpeggiatorMessages, LowestAndHighestUseTheKeysOwnVelocity) {
    Load({{L"Direction", L"5"}});
    Press(60, 11);
    Press(64, 22);
    Press(67, 33);
    Press(62, 44);
    EXPECT_EQ(NextVelocity(), 11);
    Load({{L"Direction", L"6"}});
    EXPECT_EQ(NextVelocity(), 33);
}

TEST_F(ArpeggiatorMessages, FirstAndLastUseTheirRememberedVelocity) {
    Load({{L"Direction", L"7"}});
    Press(64, 22);
    Press(60, 11);
    Send({{0xA0, 1, 64, 99}});
    EXPECT_EQ(NextVelocity(), 22);
    Load({{L"Direction", L"8"}});
    EXPECT_EQ(NextVelocity(), 99);
}

TEST_F(ArpeggiatorMessages, KeyPressureNeverMovesTheLastNote) {
    Load({{L"Direction", L"8"}});
    Press(64);
    Press(60);
    Send({{0xA0, 1, 64, 99}});
    EXPECT_EQ(Step(), Notes{60});
}

TEST_F(ArpeggiatorMessages, KeyPressureStartsNoChord) {
    arpeggiator.SetVelocityMode(ArpeggiatorSettings::kFirstVelocity);
    Send({{0xA0, 1, 64, 99}, {0x90, 1, 60, 33}});
    EXPECT_EQ(NextVelocity(), 33);
}

TEST_F(ArpeggiatorMessages, MultiplicationPlaysOctaveCopies) {
    struct Case {
        int mode;
        int note;
        std::vector<int> notes;
    };
    for (const Case& expected : {
             Case{0, 60, {60}},
             Case{1, 60, {60, 72}},
             Case{2, 60, {60, 72, 84, 48}},
             Case{3, 60, {60, 72, 48}},
             Case{1, 115, {115, 127}},
             Case{1, 116, {116}},
             Case{2, 103, {103, 115, 127, 91}},
             Case{2, 104, {104, 116, 92}},
             Case{2, 116, {116, 104}},
             Case{3, 12, {12, 24, 0}},
             Case{3, 11, {11, 23}},
             Case{2, 0, {0, 12, 24}},
         }) {
        arpeggiator.Reset();
        arpeggiator.SetMultiplication(expected.mode);
        RunTo(now);
        Press(expected.note);
        EXPECT_EQ(Step(), expected.notes) << expected.mode << ' ' << expected.note;
    }
}

TEST_F(ArpeggiatorMessages, CopiesSoundLikeTheirNote) {
    arpeggiator.SetMultiplication(3);
    Press(60, 42, 4);
    RunTo(250);
    ASSERT_EQ(output.played.size(), 3U);
    for (const PlayedNote& note : output.played) {
        EXPECT_EQ(note.channel, 3);
        EXPECT_EQ(note.velocity, 42);
        EXPECT_EQ(note.duration, 149);
    }
}

TEST_F(ArpeggiatorMessages, ABatchIsTakenInOrder) {
    Send({{0x90, 1, 60, 100}, {0x90, 1, 64, 100}, {0x80, 1, 60, 0}, {0x90, 1, 67, 100}, {0x90, 1, 64, 0}});
    EXPECT_EQ(Steps(2), (Notes{67, 67}));
}

TEST_F(ArpeggiatorMessages, AllNotesHeld) {
    for (int note = 0; note < 128; ++note) {
        Press(note);
    }
    Notes all(128);
    for (int note = 0; note < 128; ++note) {
        all[static_cast<std::size_t>(note)] = note;
    }
    EXPECT_EQ(Steps(128), all);
}
