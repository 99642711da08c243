#include "midi/NoteNames.h"

#include "nk/nk_translate.h"
#include "nk/nk_translation_mark.h"

namespace NK::MIDI {

namespace {

constexpr int kPitchClasses = 12;
constexpr int kNotes = 128;

// The names stand twice because a mark names one context.
constexpr const char* kNames[2][kPitchClasses] = {
    {KIVORA_TR_NOOP("Note name", "C"), KIVORA_TR_NOOP("Note name", "C#"), KIVORA_TR_NOOP("Note name", "D"),
     KIVORA_TR_NOOP("Note name", "D#"), KIVORA_TR_NOOP("Note name", "E"), KIVORA_TR_NOOP("Note name", "F"),
     KIVORA_TR_NOOP("Note name", "F#"), KIVORA_TR_NOOP("Note name", "G"), KIVORA_TR_NOOP("Note name", "G#"),
     KIVORA_TR_NOOP("Note name", "A"), KIVORA_TR_NOOP("Note name", "A#"), KIVORA_TR_NOOP("Note name", "B")},
    {KIVORA_TR_NOOP("Note name", "C"), KIVORA_TR_NOOP("Note name", "Db"), KIVORA_TR_NOOP("Note name", "D"),
     KIVORA_TR_NOOP("Note name", "Eb"), KIVORA_TR_NOOP("Note name", "E"), KIVORA_TR_NOOP("Note name", "F"),
     KIVORA_TR_NOOP("Note name", "Gb"), KIVORA_TR_NOOP("Note name", "G"), KIVORA_TR_NOOP("Note name", "Ab"),
     KIVORA_TR_NOOP("Note name", "A"), KIVORA_TR_NOOP("Note name", "Bb"), KIVORA_TR_NOOP("Note name", "B")}};

constexpr const char* kOneLetterNames[2][kPitchClasses] = {
    {KIVORA_TR_NOOP("One-letter note name", "C"), KIVORA_TR_NOOP("One-letter note name", "C#"),
     KIVORA_TR_NOOP("One-letter note name", "D"), KIVORA_TR_NOOP("One-letter note name", "D#"),
     KIVORA_TR_NOOP("One-letter note name", "E"), KIVORA_TR_NOOP("One-letter note name", "F"),
     KIVORA_TR_NOOP("One-letter note name", "F#"), KIVORA_TR_NOOP("One-letter note name", "G"),
     KIVORA_TR_NOOP("One-letter note name", "G#"), KIVORA_TR_NOOP("One-letter note name", "A"),
     KIVORA_TR_NOOP("One-letter note name", "A#"), KIVORA_TR_NOOP("One-letter note name", "B")},
    {KIVORA_TR_NOOP("One-letter note name", "C"), KIVORA_TR_NOOP("One-letter note name", "Db"),
     KIVORA_TR_NOOP("One-letter note name", "D"), KIVORA_TR_NOOP("One-letter note name", "Eb"),
     KIVORA_TR_NOOP("One-letter note name", "E"), KIVORA_TR_NOOP("One-letter note name", "F"),
     KIVORA_TR_NOOP("One-letter note name", "Gb"), KIVORA_TR_NOOP("One-letter note name", "G"),
     KIVORA_TR_NOOP("One-letter note name", "Ab"), KIVORA_TR_NOOP("One-letter note name", "A"),
     KIVORA_TR_NOOP("One-letter note name", "Bb"), KIVORA_TR_NOOP("One-letter note name", "B")}};

}  // namespace

const char* GetPitchClassText(int pitchClass, bool flats) noexcept {
    return pitchClass < 0 || pitchClass >= kPitchClasses ? nullptr : kNames[flats ? 1 : 0][pitchClass];
}

CString GetPitchClassName(int pitchClass, bool flats) {
    const char* text = GetPitchClassText(pitchClass, flats);
    return text == nullptr ? CString(L"ERROR") : Translate(kNoteNameContext, text);
}

CString GetNoteName(int note, bool oneLetter, bool flats) {
    if (note < 0 || note >= kNotes) {
        return L"INVALID NOTE NUMBER: " + CString::FromInt(note);
    }
    const int pitchClass = note % kPitchClasses;
    return oneLetter ? Translate(kOneLetterNoteNameContext, kOneLetterNames[flats ? 1 : 0][pitchClass])
                     : GetPitchClassName(pitchClass, flats);
}

CString GetNoteNameWithOctave(int note, bool oneLetter, int octaveBase, bool flats) {
    CString name = GetNoteName(note, oneLetter, flats);
    if (note >= 0 && note < kNotes) {
        name += CString::FromInt(note / kPitchClasses + octaveBase).View();
    }
    return name;
}

}  // namespace NK::MIDI
