#include <algorithm>

#include "midi/MIDIControllers.h"
#include "midi/NoteNames.h"
#include "midi/TMIDIMessage.h"

namespace NK::MIDI {

namespace {

struct Name {
    std::uint8_t number;
    const wchar_t* text;
};

constexpr Name kCommandNames[] = {
    {TMIDIMessage::kNoteOff, L"Note Off"},
    {TMIDIMessage::kNoteOn, L"Note On"},
    {TMIDIMessage::kKeyPressure, L"Poly-Pressure"},
    {TMIDIMessage::kControlChange, L"Control Change"},
    {TMIDIMessage::kProgramChange, L"Program Change"},
    {TMIDIMessage::kChannelPressure, L"Channel-Pressure"},
    {TMIDIMessage::kPitchWheel, L"Pitch Bend"},
    {TMIDIMessage::kSystemExclusive, L"SysEx Start"},
    {TMIDIMessage::kTimeCode, L"Time Code"},
    {TMIDIMessage::kSongPosition, L"Song Pointer"},
    {TMIDIMessage::kSongSelect, L"Song Select"},
    {TMIDIMessage::kTuneRequest, L"Tune Request"},
    {TMIDIMessage::kEndOfExclusive, L"SysEx End"},
    {TMIDIMessage::kTimingClock, L"Timing Clock"},
    {TMIDIMessage::kStart, L"Start Sequence"},
    {TMIDIMessage::kContinue, L"Continue Sequence"},
    {TMIDIMessage::kStop, L"Stop Sequence"},
    {TMIDIMessage::kActiveSensing, L"Active Sensing"},
    {TMIDIMessage::kSystemReset, L"Reset"},
};

constexpr Name kControllerNames[] = {
    {Controller::kBank, L"Bank Select MSB"},
    {Controller::kModulation, L"Modulation"},
    {Controller::kDataEntry, L"Data Entry MSB"},
    {Controller::kVolume, L"Main Volume"},
    {Controller::kPan, L"Pan"},
    {Controller::kExpression, L"Expression"},
    {Controller::kBankLow, L"Bank Select LSB"},
    {Controller::kLow + Controller::kModulation, L"Modulation LSB"},
    {34, L"Breath Controller LSB"},
    {36, L"Foot Controller LSB"},
    {37, L"Portamento Time LSB"},
    {Controller::kDataEntryLow, L"Data Entry LSB"},
    {Controller::kLow + Controller::kVolume, L"Main Volume LSB"},
    {Controller::kLow + Controller::kBalance, L"Balance LSB"},
    {48, L"Pan LSB"},
    {Controller::kSustain, L"Sustain"},
    {Controller::kPortamento, L"Portamento"},
    {Controller::kSostenuto, L"Sostuneto Thumby"},
    {Controller::kSoftPedal, L"Pedal Soft"},
    {Controller::kLegato, L"Legato Footswitch"},
    {Controller::kHold2, L"Hold 2"},
    {70, L"Sound Variation"},
    {71, L"Timbre/Harmonic Content"},
    {72, L"Release Time"},
    {73, L"Attack Time"},
    {74, L"Brightness"},
    {75, L"Decay"},
    {Controller::kReverb, L"Reverb Depth"},
    {Controller::kChorus, L"Chorus Depth"},
    {Controller::kDataIncrement, L"Data Increment"},
    {Controller::kDataDecrement, L"Data Decrement"},
    {Controller::kUnregisteredLow, L"NRPN LSB"},
    {Controller::kUnregistered, L"NRPN MSB"},
    {Controller::kRegisteredLow, L"RPN LSB"},
    {Controller::kRegistered, L"RPN MSB"},
    {Controller::kAllSoundOff, L"All Sound Off"},
    {Controller::kResetControllers, L"Reset Controllers"},
    {Controller::kLocalControl, L"Local Control"},
    {Controller::kAllNotesOff, L"All Notes Off"},
    {Controller::kOmniOff, L"Omni OFF"},
    {Controller::kOmniOn, L"Omni ON"},
    {Controller::kMonoOn, L"Mono ON/Poly OFF"},
    {Controller::kPolyOn, L"Poly ON/Mono OFF"},
};

template <std::size_t size>
const wchar_t* Find(const Name (&names)[size], std::uint8_t number, const wchar_t* otherwise) noexcept {
    const Name* found = std::find_if(names, names + size, [&](const Name& name) { return name.number == number; });
    return found == names + size ? otherwise : found->text;
}

CString FormatMessage(const TMIDIMessage& message, NoteNameStyle style) {
    const auto noteText = [&](const wchar_t* what) {
        const CString name = GetNoteName(message.data1, false, style == NoteNameStyle::kFlats);
        return CString::Format(L"%ls %ls", what, name.c_str());
    };
    switch (message.status) {
        case TMIDIMessage::kNoteOn:
            return noteText(message.data2 > 0 ? L"Note ON" : L"Note OFF");
        case TMIDIMessage::kNoteOff:
            return noteText(L"Note OFF");
        case TMIDIMessage::kPitchWheel: {
            const int raw = message.GetPitchWheel();
            return CString::Format(L"Pitch Bend: %d (%+0.02f)", raw,
                                   (raw - TMIDIMessage::kPitchWheelCentre) / double{TMIDIMessage::kPitchWheelCentre});
        }
        case TMIDIMessage::kProgramChange:
            return CString::Format(L"Program #%d", message.data1);
        case TMIDIMessage::kControlChange:
            if (message.data1 == Controller::kSustain) {
                return message.data2 != 0 ? L"Sustain ON" : L"Sustain OFF";
            }
            return CString::Format(L"%ls: %d", TMIDIMessage::GetControllerName(message.data1), message.data2);
        default:
            return CString::Format(L"%ls (%d)", TMIDIMessage::GetCommandName(message.status), message.status);
    }
}

}  // namespace

const wchar_t* TMIDIMessage::GetCommandName(std::uint8_t status) noexcept {
    return Find(kCommandNames, status, L"Unknown Command");
}

const wchar_t* TMIDIMessage::GetControllerName(std::uint8_t number) noexcept {
    return Find(kControllerNames, number, L"Unknown Controller");
}

void ToString(const TMIDIMessage& message, wchar_t* buffer, std::size_t bufferSize, NoteNameStyle style) {
    if (buffer == nullptr || bufferSize == 0) {
        throw CInvalidParameterException(L"No output buffer in MIDI message to string converter.");
    }
    const CString text = FormatMessage(message, style);
    const std::size_t length = std::min<std::size_t>(text.GetLength(), bufferSize - 1);
    std::copy_n(text.c_str(), length, buffer);
    buffer[length] = L'\0';
}

}  // namespace NK::MIDI
