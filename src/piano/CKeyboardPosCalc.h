// The geometry of a piano keyboard along one axis.
#pragma once

#include <array>
#include <cstdint>

#include "midi/MIDINotes.h"

namespace NK::Piano {

using MIDI::kNoteCount;

/// Pitch classes 1, 3, 6, 8 and 10 are black keys. Any note 0..255.
constexpr bool IsBlackNote(std::uint8_t note) noexcept {
    constexpr unsigned kBlackPitchClasses = 0b0101'0100'1010;
    return (kBlackPitchClasses >> (note % 12U) & 1U) != 0;
}

/// Says where each key of a displayed range begins along the axis and how wide it is. Positions and widths are in
/// pixels, 0 being the leading edge of the first displayed key. Always computed, allocates nothing. [gui]
///
/// Notes of 128 and more have no entry, though the counts of a range that holds them include them. Entries outside the
/// displayed range keep what an earlier layout left in them.
class CKeyboardPosCalc {
public:
    /// The 61 notes 36..96. Throws as SetLayout() does, as do all operations that set a range.
    explicit CKeyboardPosCalc(std::int32_t length);
    CKeyboardPosCalc(std::uint8_t first, std::uint8_t count, std::int32_t length);
    CKeyboardPosCalc(const CKeyboardPosCalc&) = delete;
    CKeyboardPosCalc& operator=(const CKeyboardPosCalc&) = delete;

    /// Width of a black key as a fraction of a white key's. A new value recomputes the positions and leaves the
    /// layout-changed flag alone; the present value does nothing.
    virtual void SetBlackKeyWidthRatio(double ratio);
    /// Takes over the layout and the positions, not the ratio: until the next recomputation the positions belong to
    /// the ratio of `other`. Sets the layout-changed flag.
    virtual void Assign(const CKeyboardPosCalc& other);
    virtual ~CKeyboardPosCalc() = default;
    /// Notes first..last on the present length; the count wraps in 8 bits.
    virtual void SetRange(std::uint8_t first, std::uint8_t last);
    /// Leading edge of the key. Throws CException "Bad key index in piano keyboard geometry calculator." for a note of
    /// 128 or more; the displayed range is not checked.
    virtual double GetKeyPos(std::uint8_t note) const;

    /// Lays `count` notes from `first` out on `length` pixels. Does nothing when all three are as they are. A range
    /// without white keys throws CException "Number of white keys on keyboard display cannot be zero."; the new range
    /// and length are kept then, positions and white-key width stay. A range past note 255 computes no positions.
    void SetLayout(std::uint8_t first, std::uint8_t count, std::int32_t length);

    /// The nearest white key strictly below (above) the note inside the displayed range, or -1.
    int GetPrevWhiteKey(std::uint8_t note) const noexcept;
    int GetNextWhiteKey(std::uint8_t note) const noexcept;

    /// False for a note of 128 or more.
    bool IsWhiteKey(std::uint8_t note) const noexcept { return note < kNoteCount && whiteKeys_[note]; }
    std::uint8_t GetFirstNote() const noexcept { return firstNote_; }
    std::uint8_t GetKeyCount() const noexcept { return keyCount_; }
    std::uint8_t GetLastNote() const noexcept { return rangeHigh_; }
    std::uint32_t GetWhiteKeyCount() const noexcept { return whiteKeyCount_; }
    std::int32_t GetLength() const noexcept { return length_; }
    double GetWhiteKeyWidth() const noexcept { return whiteKeyWidth_; }
    double GetBlackKeyWidthRatio() const noexcept { return blackKeyWidthRatio_; }
    /// Set by every change of layout and by Assign(); never cleared here.
    bool IsLayoutChanged() const noexcept { return layoutChanged_; }
    void ResetLayoutChanged() noexcept { layoutChanged_ = false; }

private:
    void ComputePositions() noexcept;

    double blackKeyWidthRatio_ = 0.5;
    std::array<double, kNoteCount> keyPositions_{};
    std::array<bool, kNoteCount> whiteKeys_{};
    std::uint8_t firstNote_ = 255;
    std::uint8_t keyCount_ = 0;
    std::uint8_t rangeLow_ = 255;
    std::uint8_t rangeHigh_ = 254;
    std::uint32_t whiteKeyCount_ = 0;
    std::int32_t length_ = -1;
    double whiteKeyWidth_ = 0.0;
    bool layoutChanged_ = false;
};

}  // namespace NK::Piano
