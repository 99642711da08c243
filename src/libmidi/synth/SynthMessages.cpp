#include "libmidi/synth/SynthMessages.h"

namespace LibMidi {

using NK::MIDI::TMIDIMessage;

bool LoadsSamples(const MIDIEvent& event) noexcept {
    return event.status == TMIDIMessage::kSystemReset || event.GetCommand() == TMIDIMessage::kProgramChange;
}

void SendToSynth(SynthApi& api, fluid_synth_t* synth, const MIDIEvent& event) {
    const int channel = event.GetChannel();
    const int data1 = TMIDIMessage::DataOf(event.data1);
    const int data2 = TMIDIMessage::DataOf(event.data2);
    switch (event.GetCommand()) {
        case TMIDIMessage::kNoteOff:
            api.SynthNoteoff(synth, channel, data1);
            break;
        case TMIDIMessage::kNoteOn:
            api.SynthNoteon(synth, channel, data1, data2);
            break;
        case TMIDIMessage::kKeyPressure:
            api.SynthKeyPressure(synth, channel, data1, data2);
            break;
        case TMIDIMessage::kControlChange:
            api.SynthCc(synth, channel, data1, data2);
            break;
        case TMIDIMessage::kProgramChange:
            api.SynthProgramChange(synth, channel, data1);
            break;
        case TMIDIMessage::kChannelPressure:
            api.SynthChannelPressure(synth, channel, data1);
            break;
        case TMIDIMessage::kPitchWheel:
            api.SynthPitchBend(synth, channel, data1 | (data2 << 7));
            break;
        default:
            if (event.status == TMIDIMessage::kSystemReset) {
                api.SynthSystemReset(synth);
            }
    }
}

}  // namespace LibMidi
