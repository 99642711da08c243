#include "libmidi/OpenSounds.h"

#include <algorithm>

namespace LibMidi {

using NK::MIDI::TMIDIMessage;
namespace Controller = NK::MIDI::Controller;

namespace {

bool EndsNotes(TMIDIMessage message) {
    return message.status == TMIDIMessage::kControlChange &&
           (message.data1 == Controller::kAllSoundOff || message.data1 >= Controller::kAllNotesOff);
}

bool EndsPedals(TMIDIMessage message) {
    return message.status == TMIDIMessage::kControlChange && message.data1 == Controller::kResetControllers;
}

bool IsOnChannel(TMIDIMessage message) {
    return message.status < TMIDIMessage::kFirstSystemStatus && message.channel >= 1 && message.channel <= 16;
}

}  // namespace

void OpenSounds::Follow(TMIDIMessage message) noexcept {
    if (message.status == TMIDIMessage::kSystemReset) {
        channels_ = {};
    }
    if (!IsOnChannel(message) || message.data1 >= NK::MIDI::kNoteCount) {
        return;
    }
    Channel& channel = channels_[message.channel - 1U];
    if (message.status == TMIDIMessage::kNoteOn || message.status == TMIDIMessage::kNoteOff) {
        channel.notes[message.data1] = message.status == TMIDIMessage::kNoteOn && message.data2 != 0;
    } else if (EndsNotes(message)) {
        channel.notes.reset();
    } else if (EndsPedals(message)) {
        channel.pedals.reset();
    } else if (const std::size_t pedal = FindPedal(message); pedal < kPedals.size()) {
        channel.pedals[pedal] = message.data2 != 0;
    }
}

void OpenSounds::Add(const OpenSounds& others) noexcept {
    for (std::size_t channel = 0; channel < channels_.size(); ++channel) {
        channels_[channel].notes |= others.channels_[channel].notes;
        channels_[channel].pedals |= others.channels_[channel].pedals;
    }
}

std::size_t OpenSounds::FindPedal(TMIDIMessage message) noexcept {
    const auto* const pedal = message.status == TMIDIMessage::kControlChange
                                  ? std::find(kPedals.begin(), kPedals.end(), message.data1)
                                  : kPedals.end();
    return static_cast<std::size_t>(pedal - kPedals.begin());
}

bool OpenSounds::LiftsNothing(TMIDIMessage message) const noexcept {
    const std::size_t pedal = FindPedal(message);
    return pedal < kPedals.size() && message.data2 == 0 && IsOnChannel(message) &&
           !channels_[message.channel - 1U].pedals[pedal];
}

bool OpenSounds::IsAny() const noexcept {
    return std::any_of(channels_.begin(), channels_.end(),
                       [](const Channel& channel) { return channel.notes.any() || channel.pedals.any(); });
}

bool OpenSounds::IsAnyNote() const noexcept {
    return std::any_of(channels_.begin(), channels_.end(), [](const Channel& channel) { return channel.notes.any(); });
}

bool OpenSounds::IsNoteOpen(std::uint8_t note) const noexcept {
    return note < 128 && std::any_of(channels_.begin(), channels_.end(),
                                     [note](const Channel& channel) { return channel.notes[note]; });
}

bool OpenSounds::IsNoteOpen(std::uint8_t note, int channel) const noexcept {
    return note < 128 && channels_[static_cast<std::size_t>(channel)].notes[note];
}

void OpenSounds::VisitEndedBy(TMIDIMessage message, const Visit& visit) const {
    if (message.status == TMIDIMessage::kSystemReset) {
        VisitEnds(visit);
    } else if (IsOnChannel(message) && EndsNotes(message)) {
        VisitNotes(message.channel - 1, visit);
    } else if (IsOnChannel(message) && EndsPedals(message)) {
        VisitPedals(message.channel - 1, visit);
    }
}

void OpenSounds::VisitEnds(const Visit& visit) const {
    for (int channel = 0; channel < kChannels; ++channel) {
        VisitNotes(channel, visit);
    }
    for (int channel = 0; channel < kChannels; ++channel) {
        VisitPedals(channel, visit);
    }
}

void OpenSounds::VisitNotes(int channel, const Visit& visit) const {
    const auto& notes = channels_[static_cast<std::size_t>(channel)].notes;
    for (std::size_t note = 0; note < notes.size(); ++note) {
        if (notes[note]) {
            visit({TMIDIMessage::kNoteOff, static_cast<std::uint8_t>(channel + 1), static_cast<std::uint8_t>(note), 0});
        }
    }
}

void OpenSounds::VisitPedals(int channel, const Visit& visit) const {
    for (std::size_t pedal = 0; pedal < kPedals.size(); ++pedal) {
        if (channels_[static_cast<std::size_t>(channel)].pedals[pedal]) {
            visit({TMIDIMessage::kControlChange, static_cast<std::uint8_t>(channel + 1), kPedals[pedal], 0});
        }
    }
}

}  // namespace LibMidi
