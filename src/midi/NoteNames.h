// Names of pitch classes and notes.
#pragma once

#include "nk/nk_string.h"

namespace NK::MIDI {

/// Translation contexts: names in texts, and names drawn on keys.
inline constexpr const char* kNoteNameContext = "Note name";
inline constexpr const char* kOneLetterNoteNameContext = "One-letter note name";

/// The untranslated name of a pitch class (note mod 12, 0 = C) with a sharp or a flat; null outside 0..11. [any]
const char* GetPitchClassText(int pitchClass, bool flats) noexcept;

/// The name in the context "Note name"; "ERROR" outside 0..11. [any]
CString GetPitchClassName(int pitchClass, bool flats);

/// The name of a note without its octave, in the context "One-letter note name" or "Note name"; outside 0..127
/// "INVALID NOTE NUMBER: " and the number. [any]
CString GetNoteName(int note, bool oneLetter, bool flats);

/// The name of a note followed by note / 12 + octaveBase: note 60 is C4 with a base of -1. Outside 0..127 as
/// GetNoteName(), without an octave. [any]
CString GetNoteNameWithOctave(int note, bool oneLetter, int octaveBase, bool flats);

}  // namespace NK::MIDI
