#include <algorithm>

#include "midi/NoteNames.h"
#include "midi/TMIDIMessage.h"

namespace NK::MIDI {

namespace {

constexpr std::uint8_t kSustainController = 64;

struct Name {
    std::uint8_t number;
    const wchar_t* text;
};

constexpr Name kCommandNames[] = {
    {0x80, L"Note Off"},       {0x90, L"Note On"},          {0xA0, L"Poly-Pressure"},  {0xB0, L"Control Change"},
    {0xC0, L"Program Change"}, {0xD0, L"Channel-Pressure"}, {0xE0, L"Pitch Bend"},     {0xF0, L"SysEx Start"},
    {0xF1, L"Time Code"},      {0xF2, L"Song Pointer"},     {0xF3, L"Song Select"},    {0xF6, L"Tune Request"},
    {0xF7, L"SysEx End"},      {0xF8, L"Timing Clock"},     {0xFA, L"Start Sequence"}, {0xFB, L"Continue Sequence"},
    {0xFC, L"Stop Sequence"},  {0xFE, L"Active Sensing"},   {0xFF, L"Reset"},
};

constexpr Name kControllerNames[] = {
    {0, L"Bank Select MSB"},
    {1, L"Modulation"},
    {6, L"Data Entry MSB"},
    {7, L"Main Volume"},
    {10, L"Pan"},
    {11, L"Expression"},
    {32, L"Bank Select LSB"},
    {33, L"Modulation LSB"},
    {34, L"Breath Controller LSB"},
    {36, L"Foot Controller LSB"},
    {37, L"Portamento Time LSB"},
    {38, L"Data Entry LSB"},
    {39, L"Main Volume LSB"},
    {40, L"Balance LSB"},
    {48, L"Pan LSB"},
    {64, L"Sustain"},
    {65, L"Portamento"},
    {66, L"Sostuneto Thumby"},
    {67, L"Pedal Soft"},
    {68, L"Legato Footswitch"},
    {69, L"Hold 2"},
    {70, L"Sound Variation"},
    {71, L"Timbre/Harmonic Content"},
    {72, L"Release Time"},
    {73, L"Attack Time"},
    {74, L"Brightness"},
    {75, L"Decay"},
    {91, L"Reverb Depth"},
    {93, L"Chorus Depth"},
    {96, L"Data Increment"},
    {97, L"Data Decrement"},
    {98, L"NRPN LSB"},
    {99, L"NRPN MSB"},
    {100, L"RPN LSB"},
    {101, L"RPN MSB"},
    {120, L"All Sound Off"},
    {121, L"Reset Controllers"},
    {122, L"Local Control"},
    {123, L"All Notes Off"},
    {124, L"Omni OFF"},
    {125, L"Omni ON"},
    {126, L"Mono ON/Poly OFF"},
    {127, L"Poly ON/Mono OFF"},
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
            return CString::Format(L"Pitch Bend: %d (%+0.02f)", raw, (raw - 8192) / 8192.0);
        }
        case TMIDIMessage::kProgramChange:
            return CString::Format(L"Program #%d", message.data1);
        case TMIDIMessage::kControlChange:
            if (message.data1 == kSustainController) {
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
