// The metronome that is heard. [owner]
#pragma once

#include <algorithm>

#include "engine/values/ClickSettings.h"
#include "midi/MIDIChannels.h"
#include "midi/MusicalClock.h"
#include "midi/TMIDIMessage.h"

namespace LibMidi {
class MIDIPlayerQueue;
}

namespace Kivora {

/// Plays a short note of the percussion at each beat of the musical clock, while the metronome is on and while it
/// counts a recording in. What it plays is no part of any recording. Silent at first. The two notes are the click's
/// own: a key that plays one of them on the percussion's channel ends with the next click. Guarded by the engine's
/// lock.
class Click {
public:
    static constexpr int kDurationMs = 40;
    static constexpr std::uint8_t kChannel = NK::MIDI::kPercussionChannel;

    const ClickSettings& GetSettings() const { return settings_; }
    void SetSettings(const ClickSettings& settings) { settings_ = settings; }

    void SetMetronome(bool on);
    /// Counts in from the clock's present position, which is the beginning of a bar. Nothing without a sound.
    void BeginCountIn(const NK::MIDI::MusicalClock& clock);
    void EndCountIn() { countInEnd_ = 0; }
    bool IsCountingIn() const { return countInEnd_ > 0; }
    /// The beats that are left, the present one among them; 0 while nothing is counted in.
    int GetCountIn(const NK::MIDI::MusicalClock& clock) const { return std::max(countInEnd_ - GetBeat(clock), 0); }
    /// Whether Play() is to be called each millisecond.
    bool NeedsTick() const {
        return settings_.sound != ClickSettings::Sound::kSilent && (metronome_ || IsCountingIn());
    }
    /// Whether a message on the output is about one of its notes.
    bool IsNote(NK::MIDI::TMIDIMessage message) const;
    /// The clock has been set to the beginning of a bar, whose beat is to be heard.
    void Restart() { lastBeat_ = kNoBeat; }
    /// Plays the beat that has begun since the last call, if any. The queue may be null. Allocates nothing once warm.
    void Play(const NK::MIDI::MusicalClock& clock, LibMidi::MIDIPlayerQueue* queue);

private:
    static constexpr int kNoBeat = -1;

    static int GetBeat(const NK::MIDI::MusicalClock& clock) { return clock.bar * clock.beatsPerBar + clock.beat; }

    ClickSettings settings_;
    bool metronome_ = false;
    int lastBeat_ = kNoBeat;  ///< since the start of the clock
    int countInEnd_ = 0;      ///< the beat that is not counted in any more; 0 while nothing is
};

}  // namespace Kivora
