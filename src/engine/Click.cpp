#include "engine/Click.h"

#include <algorithm>

#include "libmidi/MIDIPlayerQueue.h"

namespace Kivora {

namespace {
/// A beat that began longer ago is not caught up with, as after the metronome is switched on.
constexpr int kLatestMs = 20;
}  // namespace

void Click::SetMetronome(bool on) {
    metronome_ = on;
}

void Click::BeginCountIn(const NK::MIDI::MusicalClock& clock) {
    if (settings_.sound != ClickSettings::Sound::kSilent) {
        countInEnd_ = GetBeat(clock) + settings_.countInBars * clock.beatsPerBar;
        Restart();
    }
}

bool Click::IsNote(NK::MIDI::TMIDIMessage message) const {
    const bool isNote =
        message.status == NK::MIDI::TMIDIMessage::kNoteOn || message.status == NK::MIDI::TMIDIMessage::kNoteOff;
    return isNote && settings_.sound != ClickSettings::Sound::kSilent && message.channel == kChannel + 1 &&
           (message.data1 == settings_.barNote || message.data1 == settings_.beatNote);
}

void Click::Play(const NK::MIDI::MusicalClock& clock, LibMidi::MIDIPlayerQueue* queue) {
    const int beat = GetBeat(clock);
    if (beat == lastBeat_) {
        return;
    }
    lastBeat_ = beat;
    if (beat >= countInEnd_) {
        EndCountIn();
    }
    if (!NeedsTick() || queue == nullptr || clock.offset > kLatestMs) {
        return;
    }
    const bool isAccent = clock.beat == 0;
    const int velocity = isAccent ? settings_.loudness : std::max(settings_.loudness * 3 / 4, 1);
    LibMidi::NoteSynthEvent event(static_cast<std::uint8_t>(velocity), kDurationMs, 0, kChannel,
                                  static_cast<std::uint8_t>(isAccent ? settings_.barNote : settings_.beatNote),
                                  LibMidi::kFirstPort, LibMidi::SynthEventBase::kDefaultPriority);
    event.isCaptured = false;
    event.isRemembered = false;
    queue->Queue(event);
}

}  // namespace Kivora
