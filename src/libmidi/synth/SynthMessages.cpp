#include "libmidi/synth/SynthMessages.h"

namespace LibMidi {

namespace {
constexpr std::uint8_t kSystemReset = 0xFF;
constexpr int kProgramChange = 0xC0;
}  // namespace

bool LoadsSamples(const MIDIEvent& event) noexcept {
    return event.status == kSystemReset || (event.status & 0xF0) == kProgramChange;
}

void SendToSynth(SynthApi& api, fluid_synth_t* synth, const MIDIEvent& event) {
    const int channel = event.status & 0x0F;
    const int data1 = event.data1 & 0x7F;
    const int data2 = event.data2 & 0x7F;
    switch (event.status & 0xF0) {
        case 0x80:
            api.SynthNoteoff(synth, channel, data1);
            break;
        case 0x90:
            api.SynthNoteon(synth, channel, data1, data2);
            break;
        case 0xA0:
            api.SynthKeyPressure(synth, channel, data1, data2);
            break;
        case 0xB0:
            api.SynthCc(synth, channel, data1, data2);
            break;
        case kProgramChange:
            api.SynthProgramChange(synth, channel, data1);
            break;
        case 0xD0:
            api.SynthChannelPressure(synth, channel, data1);
            break;
        case 0xE0:
            api.SynthPitchBend(synth, channel, data1 | (data2 << 7));
            break;
        default:
            if (event.status == kSystemReset) {
                api.SynthSystemReset(synth);
            }
    }
}

}  // namespace LibMidi
