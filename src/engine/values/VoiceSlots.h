// The three voices of the instrument and which of them plays a note. [owner]
#pragma once

#include <array>
#include <cstdint>

#include "midi/MIDINotes.h"
#include "midi/MIDIPrograms.h"

namespace Kivora {

/// Voice settings as plain values, by slot.
/// Whoever owns one says what guards it. Operations with a slot throw NK::CBadIndexException outside 0..2.
class VoiceSlots {
public:
    // The slots.
    static constexpr int kMain = 0;
    static constexpr int kLayer = 1;  ///< of dual mode, on every key
    static constexpr int kBass = 2;   ///< of split mode, on the keys below the split point
    static constexpr int kCount = 3;

    static constexpr int kSplitPoint = NK::MIDI::kMiddleC;  ///< of a fresh one
    static constexpr int kLowestSplit = 1;                  ///< so that each of the two has a note
    static constexpr int kHighestSplit = 127;
    static constexpr int kFirstPatch = NK::MIDI::kDrumKit;
    static constexpr int kLastPatch = NK::MIDI::kProgramCount - 1;

    /// Any negative patch is the percussion kit.
    static bool IsPercussion(int patch) noexcept { return patch < 0; }
    /// 0-based: the percussion channel for a negative patch, else the slot's number.
    int GetChannel(int slot) const;
    /// The slot that plays a key: the bass below the split point in split mode, else the main voice.
    int GetSlotOfNote(std::uint8_t note) const noexcept { return split && note < splitPoint ? kBass : kMain; }
    /// `note` transposed for the slot and folded into 0..127.
    std::uint8_t Transpose(std::uint8_t note, int slot) const;
    /// A velocity or pressure scaled by the slot's volume.
    std::uint8_t Scale(std::uint8_t velocity, int slot) const;

    /// The patch after (before) `patch` in the circle -1, 0 .. 127.
    static int GetNextPatch(int patch) noexcept { return patch >= kLastPatch ? kFirstPatch : patch + 1; }
    static int GetPreviousPatch(int patch) noexcept { return patch <= kFirstPatch ? kLastPatch : patch - 1; }

    void StepVolume(int slot, int by);     ///< clamped to 1..127
    void StepTranspose(int slot, int by);  ///< semitones, clamped to -120..120

    static void CheckSlot(int slot);

    std::array<int, kCount> patch{0, 40, 32};                ///< General MIDI program 0..127, or -1
    std::array<int, kCount> transpose{0, 0, 0};              ///< semitones, -120..120
    std::array<int, kCount> velocityPercent{100, 100, 100};  ///< 1..200; kept, and part of no computation
    std::array<int, kCount> volume{100, 100, 100};           ///< 0..127; channel volume and velocity percentage
    bool dual = false;
    bool split = false;
    int splitPoint = kSplitPoint;  ///< notes below it belong to the bass of split mode; kLowestSplit..kHighestSplit
};

}  // namespace Kivora
