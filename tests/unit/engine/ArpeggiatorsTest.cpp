// The arpeggiators together.
#include "engine/Arpeggiators.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "engine/values/VoiceSlots.h"
#include "nk/nk_exception.h"

namespace {

using Kivora::Arpeggiators;
using NK::MIDI::TMIDIMessage;

class Notes : public NK::MIDI::CMIDIOutputBase {
public:
    void SendMessage(TMIDIMessage, std::uint32_t) override {}
    void PlayNote(std::uint8_t, std::uint8_t note, std::uint8_t, int, std::uint32_t) override {
        played.push_back(note);
    }

    std::vector<int> played;
};

/// A chord of one note that arpeggiator `index` holds.
void Hold(Arpeggiators& arpeggiators, int index, std::uint8_t note, Notes& output) {
    TMIDIMessage on{TMIDIMessage::kNoteOn, 1, note, 100};
    arpeggiators.At(index).Process(&on, 1, {}, output);
}

TEST(Arpeggiators, EverySlotHasOneAndTheMainVoiceOneOfItsOwn) {
    Arpeggiators arpeggiators;
    EXPECT_EQ(&arpeggiators.OfSlot(0), &arpeggiators.At(0));
    EXPECT_EQ(&arpeggiators.OfSlot(1), &arpeggiators.At(1));
    EXPECT_EQ(&arpeggiators.OfSlot(2), &arpeggiators.At(1));
    for (int slot = 0; slot < Kivora::VoiceSlots::kCount; ++slot) {
        EXPECT_LT(Arpeggiators::GetIndexOfSlot(slot), Arpeggiators::kCount) << slot;
    }
}

TEST(Arpeggiators, AnIndexOutsideThrows) {
    Arpeggiators arpeggiators;
    EXPECT_THROW(arpeggiators.At(-1), NK::CBadIndexException);
    EXPECT_THROW(std::as_const(arpeggiators).At(Arpeggiators::kCount), NK::CBadIndexException);
}

TEST(Arpeggiators, NotesOfAnyOfThemCountAndEndWithAReset) {
    for (int index = 0; index < Arpeggiators::kCount; ++index) {
        Arpeggiators arpeggiators;
        Notes output;
        EXPECT_FALSE(arpeggiators.HasNotes());
        Hold(arpeggiators, index, 60, output);
        EXPECT_TRUE(arpeggiators.HasNotes()) << index;
        EXPECT_TRUE(arpeggiators.IsPlaying()) << index;
        arpeggiators.At(index).SetBypassed(true);
        EXPECT_FALSE(arpeggiators.IsPlaying()) << index;
        arpeggiators.Reset();
        EXPECT_FALSE(arpeggiators.HasNotes()) << index;
    }
}

TEST(Arpeggiators, ALatchedChordEndsInEachOfThem) {
    Arpeggiators arpeggiators;
    Notes output;
    for (int index = 0; index < Arpeggiators::kCount; ++index) {
        arpeggiators.At(index).SetLatch(true);
        Hold(arpeggiators, index, 60, output);
        TMIDIMessage off{TMIDIMessage::kNoteOff, 1, 60, 0};
        arpeggiators.At(index).Process(&off, 1, {}, output);
    }
    EXPECT_TRUE(arpeggiators.HasNotes());
    arpeggiators.EndLatched();
    EXPECT_FALSE(arpeggiators.HasNotes());
}

TEST(Arpeggiators, TheyPlayTogetherAndGoOnFromTheClockTheyAreSyncedTo) {
    Arpeggiators arpeggiators;
    Notes output;
    NK::MIDI::MusicalClock clock;
    clock.bar = 8;
    Hold(arpeggiators, 0, 60, output);
    Hold(arpeggiators, 1, 72, output);
    output.played.clear();
    arpeggiators.Play(clock, output);
    EXPECT_EQ(output.played, (std::vector{60, 72}));
    clock.bar = 4;
    arpeggiators.Play(clock, output);
    EXPECT_EQ(output.played.size(), 2U) << "the clock went back, and nobody has told them";
    arpeggiators.SyncTo(clock);
    clock.beat = 1;
    arpeggiators.Play(clock, output);
    EXPECT_EQ(output.played, (std::vector{60, 72, 60, 72}));
}

}  // namespace
