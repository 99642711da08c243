// What a strict synthesizer would be sounding.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>

#include "libmidi/MIDIEvent.h"

namespace KivoraTest {

/// Follows notes, the sustain and the sostenuto pedal and the controllers 120, 121 and 123 per channel, as MIDI 1.0 has
/// them: a pedal holds what is released under it, controller 123 included, the sostenuto pedal only what was down when
/// it went down last; pressed once more it catches anew.
/// A System Reset changes nothing, as on many devices.
class SynthModel {
public:
    static constexpr int kChannels = 16;

    /// What the last messages of each kind have set.
    struct Controls {
        std::array<std::uint8_t, 128> controller = AtRest();
        std::array<std::uint8_t, 128> keyPressure{};
        int pressure = 0;
        int wheel = 0x2000;
        int program = 0;
        std::array<std::uint8_t, 2> bank{};  ///< of the program: controllers 0 and 32 as they were when it came

        friend bool operator==(const Controls&, const Controls&) = default;
    };

    static constexpr std::size_t kExpression = 11;

    void Play(const LibMidi::MIDIEvent& event) {
        Channel& channel = channels_[event.status & 0x0F];
        switch (event.status & 0xF0) {
            case 0x80:
                Release(channel, event.data1);
                break;
            case 0x90:
                if (event.data2 == 0) {
                    Release(channel, event.data1);
                } else {
                    channel.pressed.set(event.data1);
                    channel.sustained.reset(event.data1);
                    channel.kept.reset(event.data1);
                }
                break;
            case 0xA0:
                channel.controls.keyPressure[event.data1 & 0x7F] = event.data2;
                break;
            case 0xC0:
                channel.controls.program = event.data1;
                channel.controls.bank = {channel.controls.controller[0], channel.controls.controller[32]};
                break;
            case 0xD0:
                channel.controls.pressure = event.data1;
                break;
            case 0xE0:
                channel.controls.wheel = event.data1 | event.data2 << 7;
                break;
            case 0xB0:
                channel.controls.controller[event.data1 & 0x7F] = event.data2;
                if (event.data1 == 121) {
                    Rest(channel);
                } else if (event.data1 == 120) {
                    channel.pressed.reset();
                    channel.sustained.reset();
                    channel.kept.reset();
                } else if (event.data1 == 64) {
                    channel.pedal = event.data2 != 0;
                    if (!channel.pedal) {
                        channel.sustained.reset();
                    }
                } else if (event.data1 == 66) {
                    if (event.data2 == 0) {
                        channel.kept.reset();
                        channel.caught.reset();
                    } else {
                        channel.caught = channel.pressed;
                    }
                    channel.sostenuto = event.data2 != 0;
                } else if (event.data1 == 123) {
                    if (channel.pedal) {
                        channel.sustained |= channel.pressed;
                    }
                    channel.kept |= channel.pressed & channel.caught;
                    channel.pressed.reset();
                }
                break;
            default:
                break;
        }
    }
    void Clear() { channels_ = {}; }

    bool IsPressed(int channel, int note) const { return Get(channel).pressed[static_cast<std::size_t>(note)]; }
    /// Notes whose note-off has not come.
    const std::bitset<128>& GetPressed(int channel) const { return Get(channel).pressed; }
    /// Released, and sounding on for the sostenuto pedal.
    const std::bitset<128>& GetKept(int channel) const { return Get(channel).kept; }
    const Controls& GetControls(int channel) const { return Get(channel).controls; }
    bool IsPedalDown(int channel) const { return Get(channel).pedal; }
    bool IsPedalDown() const {
        for (const Channel& channel : channels_) {
            if (channel.pedal) {
                return true;
            }
        }
        return false;
    }
    bool IsSostenutoDown() const {
        for (const Channel& channel : channels_) {
            if (channel.sostenuto) {
                return true;
            }
        }
        return false;
    }
    bool IsSounding() const {
        for (const Channel& channel : channels_) {
            if (channel.pressed.any() || channel.sustained.any() || channel.kept.any()) {
                return true;
            }
        }
        return false;
    }

private:
    struct Channel {
        std::bitset<128> pressed;
        std::bitset<128> sustained;  ///< released under the sustain pedal
        std::bitset<128> caught;     ///< down when the sostenuto pedal went down
        std::bitset<128> kept;       ///< of these, released
        bool pedal = false;
        bool sostenuto = false;
        Controls controls;
    };

    /// Controller 121: the controllers that a player moves go to rest.
    static void Rest(Channel& channel) {
        channel.pedal = false;
        channel.sustained.reset();
        channel.sostenuto = false;
        channel.caught.reset();
        channel.kept.reset();
        channel.controls.controller[kExpression] = 127;
        for (const std::size_t number : {1U, 64U, 65U, 66U, 67U, 69U}) {
            channel.controls.controller[number] = 0;
        }
        channel.controls.keyPressure = {};
        channel.controls.pressure = 0;
        channel.controls.wheel = 0x2000;
    }
    static constexpr std::array<std::uint8_t, 128> AtRest() {
        std::array<std::uint8_t, 128> controller{};
        controller[kExpression] = 127;
        return controller;
    }
    static void Release(Channel& channel, std::uint8_t note) {
        if (channel.pedal && channel.pressed[note]) {
            channel.sustained.set(note);
        }
        if (channel.caught[note] && channel.pressed[note]) {
            channel.kept.set(note);
        }
        channel.pressed.reset(note);
    }
    const Channel& Get(int channel) const { return channels_[static_cast<std::size_t>(channel)]; }

    std::array<Channel, kChannels> channels_;
};

}  // namespace KivoraTest
