// The numbers of notes.
#pragma once

#include <cstdint>

namespace NK::MIDI {

inline constexpr std::uint8_t kNoteCount = 128;  ///< 0..127
inline constexpr int kOctave = 12;               ///< notes of one
inline constexpr std::uint8_t kMiddleC = 60;

/// The note of the same name in 0..127 that is nearest by whole octaves: below 0 it lands in 0..11, above 127 in
/// 116..127. Never drops and never clamps a note. [any]
constexpr std::uint8_t FoldNote(int note) noexcept {
    if (note < 0) {
        note += kOctave * ((-note - 1) / kOctave + 1);
    } else if (note >= kNoteCount) {
        note -= kOctave * ((note - kNoteCount) / kOctave + 1);
    }
    return static_cast<std::uint8_t>(note);
}

}  // namespace NK::MIDI
