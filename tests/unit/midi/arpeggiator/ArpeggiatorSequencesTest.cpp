// The notes of every direction, worked out by hand.
//
// E4 is pressed first, then C4, then G4: the first key is 64, the lowest 60, the highest and last 67. The list is
//   extension 0:             60 64 67
//   extension 1:             60 64 67 72 76 79
//   extension 2:    48 52 55 60 64 67 72 76 79 84 88 91
//   extension 3:    48 52 55 60 64 67 72 76 79
// and of a single note n: n | n n+12 | n-12 n n+12 n+24 | n-12 n n+12.
#include <string>

#include "ArpeggiatorFixture.h"

using namespace KivoraTest;
using NK::MIDI::ArpeggiatorSettings;

namespace {

struct Sequence {
    int direction;
    int extension;
    bool repeat;
    std::vector<int> notes;
};

class ArpeggiatorSequence : public ArpeggiatorTest {
protected:
    void Set(const Sequence& sequence) {
        Load({{L"Direction", std::to_wstring(sequence.direction).c_str()},
              {L"Extension", std::to_wstring(sequence.extension).c_str()},
              {L"Repeat", sequence.repeat ? L"1" : L"0"}});
    }
    void PressChord() {
        Press(64);
        Press(60);
        Press(67);
    }
    /// Plays the sequence from a state in which no key was held when the settings came.
    void ExpectPlayed(const Sequence& sequence) {
        SCOPED_TRACE("direction " + std::to_string(sequence.direction) + ", extension " +
                     std::to_string(sequence.extension) + (sequence.repeat ? ", repeat" : ""));
        arpeggiator.Reset();
        Set(sequence);
        RunTo(now);
        PressChord();
        EXPECT_EQ(Steps(sequence.notes.size()), sequence.notes);
    }
    void ExpectPlayedWithAndWithoutRepeat(Sequence sequence) {
        sequence.repeat = false;
        ExpectPlayed(sequence);
        sequence.repeat = true;
        ExpectPlayed(sequence);
    }
};

}  // namespace

// From the bottom, and from the top back to the bottom.
TEST_F(ArpeggiatorSequence, Up) {
    for (const Sequence& sequence : {
             Sequence{ArpeggiatorSettings::kUp, 0, false, {60, 64, 67, 60, 64, 67, 60}},
             Sequence{ArpeggiatorSettings::kUp, 1, false, {60, 64, 67, 72, 76, 79, 60, 64}},
             Sequence{ArpeggiatorSettings::kUp, 2, false, {48, 52, 55, 60, 64, 67, 72, 76, 79, 84, 88, 91, 48, 52}},
             Sequence{ArpeggiatorSettings::kUp, 3, false, {48, 52, 55, 60, 64, 67, 72, 76, 79, 48, 52}},
         }) {
        ExpectPlayedWithAndWithoutRepeat(sequence);
    }
}

// The position was computed from an empty list: -1, which the first step takes as the lowest note; below it comes the
// top.
TEST_F(ArpeggiatorSequence, Down) {
    for (const Sequence& sequence : {
             Sequence{ArpeggiatorSettings::kDown, 0, false, {60, 67, 64, 60, 67, 64, 60}},
             Sequence{ArpeggiatorSettings::kDown, 1, false, {60, 79, 76, 72, 67, 64, 60, 79}},
             Sequence{ArpeggiatorSettings::kDown, 2, false, {48, 91, 88, 84, 79, 76, 72, 67, 64, 60, 55, 52, 48, 91}},
             Sequence{ArpeggiatorSettings::kDown, 3, false, {48, 79, 76, 72, 67, 64, 60, 55, 52, 48, 79}},
         }) {
        ExpectPlayedWithAndWithoutRepeat(sequence);
    }
}

// Up and back; with repeat the end notes sound twice.
TEST_F(ArpeggiatorSequence, UpDown) {
    for (const Sequence& sequence : {
             Sequence{ArpeggiatorSettings::kUpDown, 0, false, {60, 64, 67, 64, 60, 64, 67, 64}},
             Sequence{ArpeggiatorSettings::kUpDown, 0, true, {60, 64, 67, 67, 64, 60, 60, 64, 67, 67}},
             Sequence{ArpeggiatorSettings::kUpDown, 1, false, {60, 64, 67, 72, 76, 79, 76, 72, 67, 64, 60, 64}},
             Sequence{ArpeggiatorSettings::kUpDown, 1, true, {60, 64, 67, 72, 76, 79, 79, 76, 72, 67, 64, 60, 60, 64}},
             Sequence{ArpeggiatorSettings::kUpDown, 2, false, {48, 52, 55, 60, 64, 67, 72, 76, 79, 84, 88, 91,
                                                               88, 84, 79, 76, 72, 67, 64, 60, 55, 52, 48, 52}},
             Sequence{ArpeggiatorSettings::kUpDown, 2, true, {48, 52, 55, 60, 64, 67, 72, 76, 79, 84, 88, 91, 91,
                                                              88, 84, 79, 76, 72, 67, 64, 60, 55, 52, 48, 48, 52}},
             Sequence{ArpeggiatorSettings::kUpDown,
                      3,
                      false,
                      {48, 52, 55, 60, 64, 67, 72, 76, 79, 76, 72, 67, 64, 60, 55, 52, 48, 52}},
             Sequence{ArpeggiatorSettings::kUpDown, 3, true, {48, 52, 55, 60, 64, 67, 72, 76, 79, 79,
                                                              76, 72, 67, 64, 60, 55, 52, 48, 48, 52}},
         }) {
        ExpectPlayed(sequence);
    }
}

// From the position -1 the first step takes the lowest note while moving down: the pattern turns up at once, and with
// repeat sounds that note twice.
TEST_F(ArpeggiatorSequence, DownUp) {
    for (const Sequence& sequence : {
             Sequence{ArpeggiatorSettings::kDownUp, 0, false, {60, 64, 67, 64, 60, 64, 67, 64}},
             Sequence{ArpeggiatorSettings::kDownUp, 0, true, {60, 60, 64, 67, 67, 64, 60, 60, 64}},
             Sequence{ArpeggiatorSettings::kDownUp, 1, false, {60, 64, 67, 72, 76, 79, 76, 72, 67, 64, 60, 64}},
             Sequence{ArpeggiatorSettings::kDownUp, 1, true, {60, 60, 64, 67, 72, 76, 79, 79, 76, 72, 67, 64, 60, 60}},
             Sequence{ArpeggiatorSettings::kDownUp, 2, false, {48, 52, 55, 60, 64, 67, 72, 76, 79, 84, 88, 91,
                                                               88, 84, 79, 76, 72, 67, 64, 60, 55, 52, 48, 52}},
             Sequence{ArpeggiatorSettings::kDownUp, 2, true, {48, 48, 52, 55, 60, 64, 67, 72, 76, 79, 84, 88, 91,
                                                              91, 88, 84, 79, 76, 72, 67, 64, 60, 55, 52, 48, 48}},
             Sequence{ArpeggiatorSettings::kDownUp,
                      3,
                      false,
                      {48, 52, 55, 60, 64, 67, 72, 76, 79, 76, 72, 67, 64, 60, 55, 52, 48, 52}},
             Sequence{ArpeggiatorSettings::kDownUp, 3, true, {48, 48, 52, 55, 60, 64, 67, 72, 76, 79,
                                                              79, 76, 72, 67, 64, 60, 55, 52, 48, 48}},
         }) {
        ExpectPlayed(sequence);
    }
}

// Loading draws once for an empty list (index 0); each step then draws the next index: 32767 the last of n notes, 16384
// the one at (n - 1) / 2 rounded up: of 3 the index 1, of 6 the index 3, of 12 the index 6, of 9 the index 4.
TEST_F(ArpeggiatorSequence, Random) {
    for (const Sequence& sequence : {
             Sequence{ArpeggiatorSettings::kRandom, 0, false, {60, 67, 64, 60, 67}},
             Sequence{ArpeggiatorSettings::kRandom, 1, false, {60, 79, 72, 60, 79}},
             Sequence{ArpeggiatorSettings::kRandom, 2, false, {48, 91, 72, 48, 91}},
             Sequence{ArpeggiatorSettings::kRandom, 3, false, {48, 79, 64, 48, 79}},
         }) {
        for (const bool repeat : {false, true}) {
            arpeggiator.SetDirection(ArpeggiatorSettings::kUp);
            Draw({12345, 32767, 16384, 0, 32767});
            ExpectPlayed({sequence.direction, sequence.extension, repeat, sequence.notes});
        }
    }
}

// These play the lowest note of their list at every step, so an extension downward moves the note down.
TEST_F(ArpeggiatorSequence, SingleNotes) {
    for (const Sequence& sequence : {
             Sequence{ArpeggiatorSettings::kLowestNote, 0, false, {60, 60, 60}},
             Sequence{ArpeggiatorSettings::kLowestNote, 1, false, {60, 60, 60}},
             Sequence{ArpeggiatorSettings::kLowestNote, 2, false, {48, 48, 48}},
             Sequence{ArpeggiatorSettings::kLowestNote, 3, false, {48, 48, 48}},
             Sequence{ArpeggiatorSettings::kHighestNote, 0, false, {67, 67, 67}},
             Sequence{ArpeggiatorSettings::kHighestNote, 1, false, {67, 67, 67}},
             Sequence{ArpeggiatorSettings::kHighestNote, 2, false, {55, 55, 55}},
             Sequence{ArpeggiatorSettings::kHighestNote, 3, false, {55, 55, 55}},
             Sequence{ArpeggiatorSettings::kFirstNote, 0, false, {64, 64, 64}},
             Sequence{ArpeggiatorSettings::kFirstNote, 1, false, {64, 64, 64}},
             Sequence{ArpeggiatorSettings::kFirstNote, 2, false, {52, 52, 52}},
             Sequence{ArpeggiatorSettings::kFirstNote, 3, false, {52, 52, 52}},
             Sequence{ArpeggiatorSettings::kLastNote, 0, false, {67, 67, 67}},
             Sequence{ArpeggiatorSettings::kLastNote, 1, false, {67, 67, 67}},
             Sequence{ArpeggiatorSettings::kLastNote, 2, false, {55, 55, 55}},
             Sequence{ArpeggiatorSettings::kLastNote, 3, false, {55, 55, 55}},
         }) {
        ExpectPlayedWithAndWithoutRepeat(sequence);
    }
}

// With keys held when the settings come, the position is that of the held notes: the top for the downward directions.
TEST_F(ArpeggiatorSequence, RestartedWithKeysHeld) {
    PressChord();
    for (const Sequence& sequence : {
             Sequence{ArpeggiatorSettings::kUp, 0, false, {60, 64, 67, 60}},
             Sequence{ArpeggiatorSettings::kDown, 0, false, {67, 64, 60, 67}},
             Sequence{ArpeggiatorSettings::kDown, 1, false, {79, 76, 72, 67, 64, 60, 79}},
             Sequence{ArpeggiatorSettings::kUpDown, 0, false, {60, 64, 67, 64, 60, 64}},
             Sequence{ArpeggiatorSettings::kDownUp, 0, false, {67, 64, 60, 64, 67, 64}},
             Sequence{ArpeggiatorSettings::kDownUp, 0, true, {67, 64, 60, 60, 64, 67, 67, 64}},
             Sequence{ArpeggiatorSettings::kLowestNote, 0, false, {60, 60}},
             Sequence{ArpeggiatorSettings::kHighestNote, 0, false, {67, 67}},
         }) {
        SCOPED_TRACE(sequence.direction);
        Set(sequence);
        EXPECT_EQ(Steps(sequence.notes.size()), sequence.notes);
    }
}

TEST_F(ArpeggiatorSequence, SettingTheExtensionRestartsTheDirection) {
    arpeggiator.SetDirection(ArpeggiatorSettings::kDownUp);
    PressChord();
    arpeggiator.SetExtension(0);
    EXPECT_EQ(Steps(6), (Notes{67, 64, 60, 64, 67, 64}));
}

// The index becomes -1 and 1 in turn and is clamped at each step.
TEST_F(ArpeggiatorSequence, ASingleNoteBouncesOnItself) {
    for (const bool repeat : {false, true}) {
        for (const int direction : {ArpeggiatorSettings::kUpDown, ArpeggiatorSettings::kDownUp}) {
            arpeggiator.Reset();
            Set({direction, 0, repeat, {}});
            RunTo(now);
            Press(60);
            EXPECT_EQ(Steps(5), (Notes{60, 60, 60, 60, 60}));
        }
    }
}

// Steps on one note leave the index outside, at -1 or 1; the next step clamps it to what the larger list has there.
TEST_F(ArpeggiatorSequence, AKeyThatJoinsABouncingSingleNote) {
    Set({ArpeggiatorSettings::kUpDown, 0, false, {}});
    Press(60);
    EXPECT_EQ(Steps(1), Notes{60});  // turned down, index -1
    Press(64);
    EXPECT_EQ(Steps(4), (Notes{60, 64, 60, 64}));
}

TEST_F(ArpeggiatorSequence, TwoNotesAlternateOrPair) {
    Set({ArpeggiatorSettings::kUpDown, 0, false, {}});
    Press(60);
    Press(64);
    EXPECT_EQ(Steps(5), (Notes{60, 64, 60, 64, 60}));
    Set({ArpeggiatorSettings::kUpDown, 0, true, {}});
    EXPECT_EQ(Steps(6), (Notes{60, 64, 64, 60, 60, 64}));
}

// A key that comes or goes keeps the index: after 60 the index is 1.
TEST_F(ArpeggiatorSequence, AChangedChordKeepsThePosition) {
    PressChord();
    EXPECT_EQ(Steps(1), Notes{60});
    Press(62);
    EXPECT_EQ(Steps(2), (Notes{62, 64}));  // of 60 62 64 67
    Release(60);
    Release(62);
    EXPECT_EQ(Steps(2), (Notes{67, 64}));  // index 3 is clamped to 1 of 64 67, then wraps
}

// A direction takes effect on the list with the next message.
TEST_F(ArpeggiatorSequence, ADirectionChangeKeepsTheListUntilTheNextMessage) {
    PressChord();
    arpeggiator.SetDirection(ArpeggiatorSettings::kHighestNote);
    EXPECT_EQ(Steps(2), (Notes{60, 60}));  // index 0 of the old list
    Press(65);
    EXPECT_EQ(Steps(1), Notes{67});
}

TEST_F(ArpeggiatorSequence, TheLastKeyNeedNotBeTheHighest) {
    Set({ArpeggiatorSettings::kLastNote, 0, false, {}});
    Press(60);
    Press(67);
    Press(64);
    EXPECT_EQ(Steps(2), (Notes{64, 64}));
    Release(64);
    EXPECT_EQ(Step(), Notes{});  // it is not held any more
    Press(60);
    EXPECT_EQ(Steps(1), Notes{60});
}

TEST_F(ArpeggiatorSequence, TheFirstKeyIsForgottenOnceItIsReleased) {
    Set({ArpeggiatorSettings::kFirstNote, 0, false, {}});
    Press(64);
    Press(60);
    Release(64);
    EXPECT_EQ(Step(), Notes{});
    Press(67);  // pressed while no note was in the list
    EXPECT_EQ(Steps(2), (Notes{67, 67}));
}

TEST_F(ArpeggiatorSequence, AKeyPressedIntoAListIsNotTheFirst) {
    Set({ArpeggiatorSettings::kFirstNote, 0, false, {}});
    Press(64);
    Press(60);
    Release(64);  // the list is empty: the next batch forgets the first key
    arpeggiator.SetDirection(ArpeggiatorSettings::kUp);
    Send({{0xA0, 1, 60, 100}});
    Press(67);  // 60 is in the list
    arpeggiator.SetDirection(ArpeggiatorSettings::kFirstNote);
    Send({{0xA0, 1, 60, 100}});
    EXPECT_EQ(Step(), Notes{});
}

// 60 gives 72 as well, which is held with a velocity of its own; 84 is the copy of 72.
TEST_F(ArpeggiatorSequence, ACopyWhoseNoteIsThereAlreadyIsNotAdded) {
    Set({ArpeggiatorSettings::kUp, 1, false, {}});
    Press(60, 40);
    Press(72, 90);
    MoveClock(250);
    const int expected[][2] = {{60, 40}, {72, 90}, {84, 90}, {60, 40}};
    for (const auto& [note, velocity] : expected) {
        RunTo(now + 250);
        ASSERT_EQ(output.played.size(), 1U);
        EXPECT_EQ(output.played[0].note, note);
        EXPECT_EQ(output.played[0].velocity, velocity);
        output.played.clear();
    }
}

// 48 and 72 both give 60: the copy of the entry that comes first, 48, stands.
TEST_F(ArpeggiatorSequence, OfTwoCopiesOfOneNoteTheFirstStands) {
    Set({ArpeggiatorSettings::kUp, 3, false, {}});
    Press(72, 90);
    Press(48, 40);
    EXPECT_EQ(Steps(2), (Notes{36, 48}));
    RunTo(now + 250);
    ASSERT_EQ(output.played.size(), 1U);
    EXPECT_EQ(output.played[0].note, 60);
    EXPECT_EQ(output.played[0].velocity, 40);
}

TEST_F(ArpeggiatorSequence, Extension2OnNote110Adds98And122) {
    Set({ArpeggiatorSettings::kUp, 2, false, {}});
    Press(110);
    EXPECT_EQ(Steps(4), (Notes{98, 110, 122, 98}));
}

TEST_F(ArpeggiatorSequence, ExtensionStaysWithinTheLimits) {
    struct Case {
        int note;
        std::vector<int> notes;
    };
    for (const Case& expected :
         {Case{11, {11, 23, 35}}, Case{12, {0, 12, 24, 36}}, Case{103, {91, 103, 115, 127}}, Case{104, {92, 104, 116}},
          Case{115, {103, 115, 127}}, Case{116, {104, 116}}, Case{127, {115, 127}}, Case{0, {0, 12, 24}}}) {
        arpeggiator.Reset();
        Set({ArpeggiatorSettings::kUp, 2, false, {}});
        RunTo(now);
        Press(expected.note);
        EXPECT_EQ(Steps(expected.notes.size() + 1).back(), expected.notes.front()) << expected.note;
        EXPECT_EQ(Steps(expected.notes.size() - 1), Notes(expected.notes.begin() + 1, expected.notes.end()));
    }
}

// With 3 notes index = trunc(r x 2 / 32767 + 0.499999999): 8191 gives 0.99995, 8192 gives 1.00001, 24575 gives 1.99998,
// 24576 gives 2.00005.
TEST_F(ArpeggiatorSequence, RandomIndicesRoundToNearest) {
    Set({ArpeggiatorSettings::kRandom, 0, false, {}});
    PressChord();
    Draw({8191, 8192, 24575, 24576, 0});
    EXPECT_EQ(Steps(6), (Notes{60, 60, 64, 64, 67, 60}));
}

TEST_F(ArpeggiatorSequence, ARandomIndexOfAnEmptyListIsZeroAfterOneDraw) {
    arpeggiator.SetDirection(ArpeggiatorSettings::kRandom);
    Draw({32767});
    drawn = 0;
    arpeggiator.Reset();
    EXPECT_EQ(drawn, 1);
    RunTo(0);
    PressChord();
    EXPECT_EQ(Steps(1), Notes{60});
}

TEST_F(ArpeggiatorSequence, OnlyRandomDraws) {
    PressChord();
    for (const int direction : {0, 1, 2, 3, 5, 6, 7, 8}) {
        Set({direction, 0, false, {}});
        Step();
    }
    EXPECT_EQ(drawn, 0);
}
