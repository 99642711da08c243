// What a synthesizer would be sounding if every message reached it at once.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>

#include "libmidi/MIDIEvent.h"
#include "support/SynthModel.h"

namespace KivoraTest {

/// A SynthModel that is played in the order of sending. A note with a duration ends when its note is sent again, or
/// with EndTimed().
class SentModel {
public:
    void Send(const LibMidi::MIDIEvent& event, bool timed) {
        const std::uint8_t kind = event.status & 0xF0;
        const std::size_t channel = event.status & 0x0F;
        if (kind == 0x80 || kind == 0x90) {
            End(channel, event.data1);
            timed_[channel].set(event.data1, timed && kind == 0x90);
        }
        synth_.Play(event);
    }
    void EndTimed() {
        for (std::size_t channel = 0; channel < timed_.size(); ++channel) {
            for (std::size_t note = 0; note < 128; ++note) {
                End(channel, note);
            }
        }
    }
    const SynthModel& GetSynth() const { return synth_; }
    /// Goes on from what a synthesizer is known to be sounding.
    void Take(const SynthModel& synth) { synth_ = synth; }

private:
    void End(std::size_t channel, std::size_t note) {
        if (timed_[channel][note]) {
            timed_[channel].reset(note);
            synth_.Play(
                LibMidi::NoteEvent(0, static_cast<std::uint8_t>(channel), static_cast<std::uint8_t>(note), 0, 0x80));
        }
    }

    SynthModel synth_;
    std::array<std::bitset<128>, SynthModel::kChannels> timed_;
};

}  // namespace KivoraTest
