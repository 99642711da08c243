// Names of notes and General MIDI programs for the user interface. [gui]
#pragma once

#include <QString>

/// The name of a note without its octave, translated in the context "One-letter note name" or "Note name"; outside
/// 0..127 "INVALID NOTE NUMBER: " and the number.
QString NoteName(int note, bool oneLetter, bool flats);

/// The name followed by note / 12 + octaveBase: note 60 is C4 with a base of -1. Outside 0..127 as NoteName().
QString NoteNameWithOctave(int note, bool oneLetter, int octaveBase, bool flats);

/// The name of a program, 0-based, translated in the context "GM"; outside 0..127 "INVALID PATCH NUMBER: " and the
/// number.
QString GMProgramName(int program);

/// "Standard Drum Kit", translated in the context "GM".
QString GMDrumKitName();
