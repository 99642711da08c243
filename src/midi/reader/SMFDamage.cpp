#include "midi/reader/SMFDamage.h"

#include <string>
#include <string_view>

#include "nk/nk_translate.h"
#include "nk/nk_translation_mark.h"

namespace NK::MIDI {

namespace {

constexpr const char* kContext = "MIDIFile";

const char* GetText(SMFDefect defect) {
    switch (defect) {
        case SMFDefect::kNoHeader:
            return KIVORA_TR_NOOP("MIDIFile", "It is no MIDI file (byte %1).");
        case SMFDefect::kUnknownFormat:
            return KIVORA_TR_NOOP("MIDIFile", "It is a MIDI file of a kind that cannot be played (byte %1).");
        case SMFDefect::kBadDivision:
            return KIVORA_TR_NOOP("MIDIFile", "It does not say how long its ticks are (byte %1).");
        case SMFDefect::kFileCutShort:
            return KIVORA_TR_NOOP("MIDIFile", "It is cut short: it ends at byte %1, inside a track.");
        case SMFDefect::kTrackMissing:
            return KIVORA_TR_NOOP("MIDIFile", "It is cut short: it ends at byte %1, and a track is missing.");
        case SMFDefect::kEventCutShort:
            return KIVORA_TR_NOOP("MIDIFile", "It is damaged: a track ends inside a message (byte %1).");
        case SMFDefect::kLongQuantity:
            return KIVORA_TR_NOOP("MIDIFile", "It is damaged: a number is too long (byte %1).");
        case SMFDefect::kTooLate:
            return KIVORA_TR_NOOP("MIDIFile", "It is damaged: a message stands at an impossible time (byte %1).");
        case SMFDefect::kNoStatus:
            return KIVORA_TR_NOOP("MIDIFile", "It is damaged: no message begins at byte %1.");
        case SMFDefect::kBadStatus:
            return KIVORA_TR_NOOP("MIDIFile", "It is damaged: an unknown message stands at byte %1.");
        case SMFDefect::kBadData:
            return KIVORA_TR_NOOP("MIDIFile", "It is damaged: a message is cut short at byte %1.");
        case SMFDefect::kBadTempo:
            return KIVORA_TR_NOOP("MIDIFile", "It is damaged: the tempo at byte %1 is none.");
    }
    return "";
}

}  // namespace

CString Describe(const SMFDamage& damage) {
    constexpr std::wstring_view kPlace = L"%1";
    std::wstring text(Translate(kContext, GetText(damage.defect)).View());
    if (const std::size_t place = text.find(kPlace); place != std::wstring::npos) {
        text.replace(place, kPlace.size(), std::to_wstring(damage.offset));
    }
    return CString(text);
}

}  // namespace NK::MIDI
