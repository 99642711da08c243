// What the keyboards of an input hold down, and what of that is heard.
#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <vector>

#include "engine/values/MidiBindings.h"
#include "unit/engine/EngineRig.h"
#include "unit/engine/Studio.h"

namespace KivoraTest {

/// Keys and pads alike: each may be bound to the panel, and one that was bound when it went down is not heard. Plain
/// value.
class PlayedKeyboards {
public:
    using Notes = std::bitset<128>;

    static constexpr std::uint8_t kPadChannel = 15;
    static constexpr std::uint8_t kFirstPad = 48;
    static constexpr std::uint8_t kPads = 8;

    struct Key {
        int keyboard;
        std::uint8_t channel;
        std::uint8_t note;
    };

    /// Whether it is heard.
    bool Press(Key key) {
        Channel& channel = At(key);
        channel.pressed.set(key.note);
        const bool isHeard = bound_[Index(key)][key.note] != key.channel + 1;
        if (isHeard) {
            channel.heard.set(key.note);
        }
        channel.silent.set(key.note, !isHeard);
        return isHeard;
    }
    bool IsSilent(Key key) const { return At(key).silent[key.note] && !At(key).heard[key.note]; }
    /// Whether its note ends: not where it was not heard, or another keyboard holds the note.
    bool Release(Key key) {
        const bool isSilent = IsSilent(key);
        Channel& channel = At(key);
        channel.pressed.reset(key.note);
        channel.heard.reset(key.note);
        channel.silent.reset(key.note);
        return !isSilent && !IsHeardFrom(1 - key.keyboard, key.note);
    }
    /// The keyboard says that all notes of the channel are off: what it holds is not counted any more.
    void EndHeard(int keyboard, std::uint8_t channel) { At({keyboard, channel, 0}).heard.reset(); }
    /// What is down counts no more, and is not let go of.
    void Forget() { channels_ = {}; }
    void ForgetBindings() { bound_ = {}; }

    /// The keys that are down and were heard when they went down, by note.
    Notes GetHeld() const {
        Notes held;
        for (const auto& keyboard : channels_) {
            for (const Channel& channel : keyboard) {
                held |= channel.pressed & ~(channel.silent & ~channel.heard);
            }
        }
        return held;
    }
    std::vector<Key> GetPressed(int keyboard) const {
        std::vector<Key> pressed;
        for (std::uint8_t channel = 0; channel < 16; ++channel) {
            const Notes& notes = At({keyboard, channel, 0}).pressed;
            for (std::uint8_t note = 0; note < notes.size(); ++note) {
                if (notes[note]) {
                    pressed.push_back({keyboard, channel, note});
                }
            }
        }
        return pressed;
    }

    /// Binds the pad of that note on a channel, or clears it. Of a device each function has one control.
    void Bind(int keyboard, std::uint8_t pad, std::optional<std::uint8_t> channel) {
        bound_[static_cast<std::size_t>(keyboard)][pad] = channel ? *channel + 1 : 0;
    }
    bool IsBound(int keyboard, std::uint8_t pad) const { return bound_[static_cast<std::size_t>(keyboard)][pad] != 0; }
    Kivora::MidiBindings GetBindings() const {
        constexpr std::array kNames{kKeyboard, kOtherKeyboard};
        constexpr int kFirstFunction = 3;  // that is no value
        Kivora::MidiBindings bindings;
        for (std::size_t keyboard = 0; keyboard < kNames.size(); ++keyboard) {
            for (std::uint8_t pad = kFirstPad; pad < kFirstPad + kPads; ++pad) {
                if (const int channel = bound_[keyboard][pad]; channel != 0) {
                    bindings.Bind({kNames[keyboard],
                                   {Kivora::MidiControl::Kind::kNote, static_cast<std::uint8_t>(channel - 1), pad},
                                   static_cast<Kivora::EPanelFunction>(kFirstFunction + pad - kFirstPad),
                                   false});
                }
            }
        }
        return bindings;
    }

private:
    struct Channel {
        Notes pressed;
        Notes heard;   ///< and counted as held
        Notes silent;  ///< taken out of the stream
    };

    static std::size_t Index(Key key) { return static_cast<std::size_t>(key.keyboard); }
    Channel& At(Key key) { return channels_[Index(key)][key.channel]; }
    const Channel& At(Key key) const { return channels_[Index(key)][key.channel]; }
    bool IsHeardFrom(int keyboard, std::uint8_t note) const {
        for (const Channel& channel : channels_[static_cast<std::size_t>(keyboard)]) {
            if (channel.heard[note]) {
                return true;
            }
        }
        return false;
    }

    std::array<std::array<Channel, 16>, Studio::kKeyboards> channels_{};
    std::array<std::array<int, 128>, Studio::kKeyboards> bound_{};  ///< by keyboard and note the channel 1..16, or 0
};

}  // namespace KivoraTest
