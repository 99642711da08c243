#include "QtWidgets/piano/NoteNamesQt.h"

#include <QCoreApplication>

#include "midi/GMNames.h"
#include "midi/MIDINotes.h"
#include "midi/NoteNames.h"

namespace {

bool isNote(int note) {
    return note >= 0 && note < NK::MIDI::kNoteCount;
}

}  // namespace

QString NoteName(int note, bool oneLetter, bool flats) {
    if (!isNote(note)) {
        return QStringLiteral("INVALID NOTE NUMBER: %1").arg(note);
    }
    return QCoreApplication::translate(oneLetter ? NK::MIDI::kOneLetterNoteNameContext : NK::MIDI::kNoteNameContext,
                                       NK::MIDI::GetPitchClassText(note % NK::MIDI::kOctave, flats));
}

QString NoteNameWithOctave(int note, bool oneLetter, int octaveBase, bool flats) {
    const QString name = NoteName(note, oneLetter, flats);
    return isNote(note) ? name + QString::number(note / NK::MIDI::kOctave + octaveBase) : name;
}

QString GMProgramName(int program) {
    const char* text = NK::MIDI::GetGMProgramText(program);
    if (text == nullptr) {
        return QStringLiteral("INVALID PATCH NUMBER: %1").arg(program);
    }
    return QCoreApplication::translate(NK::MIDI::kGMContext, text);
}

QString GMDrumKitName() {
    return QCoreApplication::translate(NK::MIDI::kGMContext, NK::MIDI::GetDrumKitText());
}
