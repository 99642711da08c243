// Moving a transposed note into the MIDI range.
#pragma once

namespace Kivora {

/// The note of the same pitch class in 0..127 that is nearest to `note` by whole octaves: below 0 it lands in 0..11,
/// above 127 in 116..127. Never drops and never clamps a note. [any]
constexpr int FoldNote(int note) noexcept {
    if (note < 0) {
        return note + 12 * ((-note - 1) / 12 + 1);
    }
    if (note > 127) {
        return note - 12 * ((note - 128) / 12 + 1);
    }
    return note;
}

}  // namespace Kivora
