#include "midi/GMNames.h"

#include "midi/MIDIPrograms.h"
#include "nk/nk_translate.h"
#include "nk/nk_translation_mark.h"

namespace NK::MIDI {

namespace {

// Eight to a family.
constexpr const char* kPrograms[] = {
    KIVORA_TR_NOOP("GM", "Acoustic Grand Piano"),
    KIVORA_TR_NOOP("GM", "Bright Acoustic Piano"),
    KIVORA_TR_NOOP("GM", "Electric Grand Piano"),
    KIVORA_TR_NOOP("GM", "Honky-tonk Piano"),
    KIVORA_TR_NOOP("GM", "Rhodes Piano"),
    KIVORA_TR_NOOP("GM", "Chorused Piano"),
    KIVORA_TR_NOOP("GM", "Harpsichord"),
    KIVORA_TR_NOOP("GM", "Clavinet"),

    KIVORA_TR_NOOP("GM", "Celesta"),
    KIVORA_TR_NOOP("GM", "Glockenspiel"),
    KIVORA_TR_NOOP("GM", "Music Box"),
    KIVORA_TR_NOOP("GM", "Vibraphone"),
    KIVORA_TR_NOOP("GM", "Marimba"),
    KIVORA_TR_NOOP("GM", "Xylophone"),
    KIVORA_TR_NOOP("GM", "Tubular Bells"),
    KIVORA_TR_NOOP("GM", "Dulcimer"),

    KIVORA_TR_NOOP("GM", "Hammond Organ"),
    KIVORA_TR_NOOP("GM", "Percussive Organ"),
    KIVORA_TR_NOOP("GM", "Rock Organ"),
    KIVORA_TR_NOOP("GM", "Church Organ"),
    KIVORA_TR_NOOP("GM", "Reed Organ"),
    KIVORA_TR_NOOP("GM", "Accordion"),
    KIVORA_TR_NOOP("GM", "Harmonica"),
    KIVORA_TR_NOOP("GM", "Tango Accordion"),

    KIVORA_TR_NOOP("GM", "Acoustic Guitar (nylon)"),
    KIVORA_TR_NOOP("GM", "Acoustic Guitar (steel)"),
    KIVORA_TR_NOOP("GM", "Electric Guitar (jazz)"),
    KIVORA_TR_NOOP("GM", "Electric Guitar (clean)"),
    KIVORA_TR_NOOP("GM", "Electric Guitar (muted)"),
    KIVORA_TR_NOOP("GM", "Overdriven Guitar"),
    KIVORA_TR_NOOP("GM", "Distortion Guitar"),
    KIVORA_TR_NOOP("GM", "Guitar Harmonics"),

    KIVORA_TR_NOOP("GM", "Acoustic Bass"),
    KIVORA_TR_NOOP("GM", "Electric Bass (finger)"),
    KIVORA_TR_NOOP("GM", "Electric Bass (pick)"),
    KIVORA_TR_NOOP("GM", "Fretless Bass"),
    KIVORA_TR_NOOP("GM", "Slap Bass 1"),
    KIVORA_TR_NOOP("GM", "Slap Bass 2"),
    KIVORA_TR_NOOP("GM", "Synth Bass 1"),
    KIVORA_TR_NOOP("GM", "Synth Bass 2"),

    KIVORA_TR_NOOP("GM", "Violin"),
    KIVORA_TR_NOOP("GM", "Viola"),
    KIVORA_TR_NOOP("GM", "Cello"),
    KIVORA_TR_NOOP("GM", "Contrabass"),
    KIVORA_TR_NOOP("GM", "Tremolo Strings"),
    KIVORA_TR_NOOP("GM", "Pizzicato Strings"),
    KIVORA_TR_NOOP("GM", "Orchestral Harp"),
    KIVORA_TR_NOOP("GM", "Timpani"),

    KIVORA_TR_NOOP("GM", "String Ensemble 1"),
    KIVORA_TR_NOOP("GM", "String Ensemble 2"),
    KIVORA_TR_NOOP("GM", "SynthStrings 1"),
    KIVORA_TR_NOOP("GM", "SynthStrings 2"),
    KIVORA_TR_NOOP("GM", "Choir Aahs"),
    KIVORA_TR_NOOP("GM", "Voice Oohs"),
    KIVORA_TR_NOOP("GM", "Synth Voice"),
    KIVORA_TR_NOOP("GM", "Orchestra Hit"),

    KIVORA_TR_NOOP("GM", "Trumpet"),
    KIVORA_TR_NOOP("GM", "Trombone"),
    KIVORA_TR_NOOP("GM", "Tuba"),
    KIVORA_TR_NOOP("GM", "Muted Trumpet"),
    KIVORA_TR_NOOP("GM", "French Horn"),
    KIVORA_TR_NOOP("GM", "Brass Section"),
    KIVORA_TR_NOOP("GM", "Synth Brass 1"),
    KIVORA_TR_NOOP("GM", "Synth Brass 2"),

    KIVORA_TR_NOOP("GM", "Soprano Sax"),
    KIVORA_TR_NOOP("GM", "Alto Sax"),
    KIVORA_TR_NOOP("GM", "Tenor Sax"),
    KIVORA_TR_NOOP("GM", "Baritone Sax"),
    KIVORA_TR_NOOP("GM", "Oboe"),
    KIVORA_TR_NOOP("GM", "English Horn"),
    KIVORA_TR_NOOP("GM", "Bassoon"),
    KIVORA_TR_NOOP("GM", "Clarinet"),

    KIVORA_TR_NOOP("GM", "Piccolo"),
    KIVORA_TR_NOOP("GM", "Flute"),
    KIVORA_TR_NOOP("GM", "Recorder"),
    KIVORA_TR_NOOP("GM", "Pan Flute"),
    KIVORA_TR_NOOP("GM", "Bottle Blow"),
    KIVORA_TR_NOOP("GM", "Shakuhachi"),
    KIVORA_TR_NOOP("GM", "Whistle"),
    KIVORA_TR_NOOP("GM", "Ocarina"),

    KIVORA_TR_NOOP("GM", "Lead 1 (square)"),
    KIVORA_TR_NOOP("GM", "Lead 2 (sawtooth)"),
    KIVORA_TR_NOOP("GM", "Lead 3 (calliope lead)"),
    KIVORA_TR_NOOP("GM", "Lead 4 (chiff lead)"),
    KIVORA_TR_NOOP("GM", "Lead 5 (charang)"),
    KIVORA_TR_NOOP("GM", "Lead 6 (voice)"),
    KIVORA_TR_NOOP("GM", "Lead 7 (fifths)"),
    KIVORA_TR_NOOP("GM", "Lead 8 (bass + lead)"),

    KIVORA_TR_NOOP("GM", "Pad 1 (new age)"),
    KIVORA_TR_NOOP("GM", "Pad 2 (warm)"),
    KIVORA_TR_NOOP("GM", "Pad 3 (polysynth)"),
    KIVORA_TR_NOOP("GM", "Pad 4 (choir)"),
    KIVORA_TR_NOOP("GM", "Pad 5 (bowed)"),
    KIVORA_TR_NOOP("GM", "Pad 6 (metallic)"),
    KIVORA_TR_NOOP("GM", "Pad 7 (halo)"),
    KIVORA_TR_NOOP("GM", "Pad 8 (sweep)"),

    KIVORA_TR_NOOP("GM", "FX 1 (rain)"),
    KIVORA_TR_NOOP("GM", "FX 2 (soundtrack)"),
    KIVORA_TR_NOOP("GM", "FX 3 (crystal)"),
    KIVORA_TR_NOOP("GM", "FX 4 (atmosphere)"),
    KIVORA_TR_NOOP("GM", "FX 5 (brightness)"),
    KIVORA_TR_NOOP("GM", "FX 6 (goblins)"),
    KIVORA_TR_NOOP("GM", "FX 7 (echoes)"),
    KIVORA_TR_NOOP("GM", "FX 8 (sci-fi)"),

    KIVORA_TR_NOOP("GM", "Sitar"),
    KIVORA_TR_NOOP("GM", "Banjo"),
    KIVORA_TR_NOOP("GM", "Shamisen"),
    KIVORA_TR_NOOP("GM", "Koto"),
    KIVORA_TR_NOOP("GM", "Kalimba"),
    KIVORA_TR_NOOP("GM", "Bagpipe"),
    KIVORA_TR_NOOP("GM", "Fiddle"),
    KIVORA_TR_NOOP("GM", "Shanai"),

    KIVORA_TR_NOOP("GM", "Tinkle Bell"),
    KIVORA_TR_NOOP("GM", "Agogo"),
    KIVORA_TR_NOOP("GM", "Steel Drums"),
    KIVORA_TR_NOOP("GM", "Woodblock"),
    KIVORA_TR_NOOP("GM", "Taiko Drum"),
    KIVORA_TR_NOOP("GM", "Melodic Tom"),
    KIVORA_TR_NOOP("GM", "Synth Drum"),
    KIVORA_TR_NOOP("GM", "Reverse Cymbal"),

    KIVORA_TR_NOOP("GM", "Guitar Fret Noise"),
    KIVORA_TR_NOOP("GM", "Breath Noise"),
    KIVORA_TR_NOOP("GM", "Seashore"),
    KIVORA_TR_NOOP("GM", "Bird Tweet"),
    KIVORA_TR_NOOP("GM", "Telephone Ring"),
    KIVORA_TR_NOOP("GM", "Helicopter"),
    KIVORA_TR_NOOP("GM", "Applause"),
    KIVORA_TR_NOOP("GM", "Gunshot"),
};
static_assert(sizeof(kPrograms) / sizeof(*kPrograms) == kProgramCount);

constexpr const char* kDrumKitName = KIVORA_TR_NOOP("GM", "Standard Drum Kit");

}  // namespace

const char* GetGMProgramText(int program) noexcept {
    return program < 0 || program >= kProgramCount ? nullptr : kPrograms[program];
}

CString GetGMProgramName(int program) {
    const char* text = GetGMProgramText(program);
    return text == nullptr ? L"INVALID PATCH NUMBER: " + CString::FromInt(program) : Translate(kGMContext, text);
}

const char* GetDrumKitText() noexcept {
    return kDrumKitName;
}

CString GetDrumKitName() {
    return Translate(kGMContext, kDrumKitName);
}

}  // namespace NK::MIDI
