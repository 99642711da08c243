#include "piano/CKeyboardPosCalc.h"

#include "nk/nk_exception.h"

namespace NK::Piano {
namespace {
constexpr std::uint8_t kDefaultFirstNote = 36;
constexpr std::uint8_t kDefaultKeyCount = 61;

// Black keys of a group of two or three stand apart: in eighths of a black key's width, by pitch class.
constexpr std::array<int, 12> kBlackKeyOffsets = {0, -1, 0, +1, 0, 0, -1, 0, 0, 0, +1, 0};

std::uint32_t CountWhiteKeys(std::uint8_t first, std::uint8_t count) noexcept {
    const int octaves = count / 12;
    auto whiteKeys = static_cast<std::uint32_t>(7 * octaves);
    for (int note = first + 12 * octaves; note < first + count; ++note) {
        whiteKeys += IsBlackNote(static_cast<std::uint8_t>(note % 12)) ? 0U : 1U;
    }
    return whiteKeys;
}

std::uint8_t LastNote(std::uint8_t first, std::uint8_t count) noexcept {
    return static_cast<std::uint8_t>(first + count - 1);
}
}  // namespace

CKeyboardPosCalc::CKeyboardPosCalc(std::int32_t length)
    : CKeyboardPosCalc(kDefaultFirstNote, kDefaultKeyCount, length) {
}

CKeyboardPosCalc::CKeyboardPosCalc(std::uint8_t first, std::uint8_t count, std::int32_t length) {
    SetLayout(first, count, length);
}

void CKeyboardPosCalc::SetBlackKeyWidthRatio(double ratio) {
    if (ratio == blackKeyWidthRatio_) {
        return;
    }
    blackKeyWidthRatio_ = ratio;
    ComputePositions();
}

void CKeyboardPosCalc::Assign(const CKeyboardPosCalc& other) {
    keyPositions_ = other.keyPositions_;
    whiteKeys_ = other.whiteKeys_;
    firstNote_ = other.firstNote_;
    keyCount_ = other.keyCount_;
    rangeLow_ = other.rangeLow_;
    rangeHigh_ = other.rangeHigh_;
    whiteKeyCount_ = other.whiteKeyCount_;
    length_ = other.length_;
    whiteKeyWidth_ = other.whiteKeyWidth_;
    layoutChanged_ = true;
}

void CKeyboardPosCalc::SetRange(std::uint8_t first, std::uint8_t last) {
    SetLayout(first, static_cast<std::uint8_t>(last - first + 1), length_);
}

double CKeyboardPosCalc::GetKeyPos(std::uint8_t note) const {
    if (note >= kNoteCount) {
        throw CException(L"Bad key index in piano keyboard geometry calculator.");
    }
    return keyPositions_[note];
}

void CKeyboardPosCalc::SetLayout(std::uint8_t first, std::uint8_t count, std::int32_t length) {
    if (first == firstNote_ && count == keyCount_ && length == length_) {
        return;
    }
    keyCount_ = count;
    rangeHigh_ = LastNote(first, count);
    firstNote_ = first;
    rangeLow_ = first;
    length_ = length;
    layoutChanged_ = true;

    whiteKeyCount_ = CountWhiteKeys(first, count);
    if (whiteKeyCount_ == 0) {
        throw CException(L"Number of white keys on keyboard display cannot be zero.");
    }
    whiteKeyWidth_ = static_cast<double>(length) / static_cast<double>(whiteKeyCount_);
    ComputePositions();
}

int CKeyboardPosCalc::GetPrevWhiteKey(std::uint8_t note) const noexcept {
    if (note < rangeLow_ || note > rangeHigh_) {
        return -1;
    }
    for (int candidate = note - 1; candidate >= rangeLow_; --candidate) {
        if (IsWhiteKey(static_cast<std::uint8_t>(candidate))) {
            return candidate;
        }
    }
    return -1;
}

int CKeyboardPosCalc::GetNextWhiteKey(std::uint8_t note) const noexcept {
    if (note < rangeLow_ || note > rangeHigh_) {
        return -1;
    }
    for (int candidate = note + 1; candidate <= rangeHigh_; ++candidate) {
        if (IsWhiteKey(static_cast<std::uint8_t>(candidate))) {
            return candidate;
        }
    }
    return -1;
}

void CKeyboardPosCalc::ComputePositions() noexcept {
    const double blackWidth = blackKeyWidthRatio_ * whiteKeyWidth_;
    const double halfBlackWidth = blackWidth * 0.5;
    const double offsetUnit = halfBlackWidth * 0.25;
    const std::uint8_t last = LastNote(firstNote_, keyCount_);
    double edge = 0.0;
    for (int note = firstNote_; note <= last && note < kNoteCount; ++note) {
        const auto index = static_cast<std::size_t>(note);
        whiteKeys_[index] = !IsBlackNote(static_cast<std::uint8_t>(note));
        if (whiteKeys_[index]) {
            keyPositions_[index] = edge;
            edge = edge + whiteKeyWidth_;
        } else {
            keyPositions_[index] = edge - halfBlackWidth + kBlackKeyOffsets[index % 12] * offsetUnit;
        }
    }
}

}  // namespace NK::Piano
