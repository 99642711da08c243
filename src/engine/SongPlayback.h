// Playing a song into the player's queue.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "engine/SharedPedals.h"
#include "libmidi/ChannelState.h"
#include "libmidi/OpenSounds.h"
#include "midi/TMIDIMessage.h"

namespace LibMidi {
class MIDIPlayerQueue;
}

namespace Kivora {

class Song;

/// Plays a song on its own channels beside what the user plays, as an engine ticks: what it sends is recorded like
/// everything else, and is nothing that was played last. It keeps a list of what it has begun, and ends that and
/// nothing else whenever it stops, pauses or goes to another place; where it begins, it first sends what the channels
/// have there, and afterwards what the player had sent there. A note or a pedal that the player holds too ends with the
/// last of the two. Modes (all notes off and the like) end its own notes and are not sent, nor is "local control".
/// Plays nothing at first. Guarded by the engine's lock.
class SongPlayback {
public:
    enum class State { kStopped, kPlaying, kPaused };
    using Show = std::function<void(NK::MIDI::TMIDIMessage message)>;

    /// The part that is played again and again, begin included and end not. Playing that begins behind its end leaves
    /// it.
    struct Loop {
        std::int64_t beginUs;
        std::int64_t endUs;
        friend bool operator==(const Loop&, const Loop&) = default;
    };

    static constexpr int kSlowestPercent = 25;
    static constexpr int kFastestPercent = 200;
    static constexpr int kMostTransposition = 24;  ///< semitones
    static constexpr std::int64_t kShortestLoopUs = 100'000;
    /// After a longer gap between two ticks, as when the machine was suspended, it goes on from where it was.
    static constexpr std::int64_t kLongestGapMs = 50;
    /// Where a song has more it becomes slower, so that it keeps nobody waiting.
    static constexpr int kMostEventsPerTick = 500;

    /// Null while there is none: then nothing plays.
    void SetQueue(std::shared_ptr<LibMidi::MIDIPlayerQueue> queue);
    /// Is told of the notes that are sent, but for percussion's; of a note that several channels play the end of the
    /// last one. Before anything is played.
    void SetShow(Show show) { show_ = std::move(show); }

    /// Stops; null for none. The loop, the tempo and the transposition go. A song that is only listened to is not in a
    /// take that runs.
    void Load(std::shared_ptr<const Song> song, bool isListenedTo = false);
    /// From the present position on. False when there is nothing to play or no queue.
    bool Play();
    /// Also sets back what the song sets anywhere: to what the player has sent last, and to its rest where that is
    /// nothing.
    void Pause();
    /// The same where the device can take nothing more: Rest() is due when it can.
    void Lose();
    /// Brings to rest what the song had set when the device was lost.
    void Rest();
    /// The same, and goes to the begin.
    void Stop();
    void Seek(std::int64_t positionUs);
    /// A loop that is too short is none.
    void SetLoop(std::optional<Loop> loop);
    void SetTempo(int percent);
    /// Of all channels but the percussion's. What sounds is ended as it was begun.
    void SetTransposition(int semitones);
    /// The device is about to be reset: what sounds ends, and what the channels have is sent once more.
    void Interrupt();

    const std::shared_ptr<const Song>& GetSong() const { return song_; }
    State GetState() const { return state_; }
    std::int64_t GetPositionUs() const { return positionUs_; }
    const std::optional<Loop>& GetLoop() const { return loop_; }
    int GetTempo() const { return tempoPercent_; }
    int GetTransposition() const { return transposition_; }

    /// Sends what the player plays, but for the end of a note that the song has begun on the same channel and not
    /// ended, and of a pedal as much as the two hold it. What was played last has it as it was played. Needs the queue.
    void SendOfPlayer(NK::MIDI::TMIDIMessage message);
    /// Whether the song or the player holds a note of a channel 0..15.
    bool IsNoteHeld(std::uint8_t note, int channel) const {
        return open_.IsNoteOpen(note, channel) || player_.IsNoteOpen(note, channel);
    }

    bool NeedsTick() const { return state_ == State::kPlaying; }
    /// Plays what has come since the last call, by a clock in milliseconds; a song that has ended is stopped by that,
    /// see Stop(). Allocates nothing once warm. [tick]
    void Tick(std::int64_t nowMs);

private:
    static constexpr int kChannels = 16;
    static constexpr int kNotes = 128;
    static constexpr std::uint8_t kSilent = 0xFF;

    void GoTo(std::int64_t positionUs);
    void SendState();
    /// Whatever that song sets anywhere.
    void SetBack(const Song& song);
    void ForgetPlayer();
    /// What goes on of what the player sends.
    std::optional<NK::MIDI::TMIDIMessage> FollowPlayer(NK::MIDI::TMIDIMessage message);
    void End();
    void EndNotes(std::uint8_t channel);
    /// All events before that time; false, at the place of the first that is left, when these are too many at once.
    bool PlayBefore(std::int64_t timeUs);
    void PlayEvent(NK::MIDI::TMIDIMessage message);
    void BeginNote(NK::MIDI::TMIDIMessage message);
    void EndNote(NK::MIDI::TMIDIMessage message);
    void MovePedal(NK::MIDI::TMIDIMessage message);
    /// "Reset all controllers", but for the pedals that the player holds on that channel.
    void ResetControllers(NK::MIDI::TMIDIMessage message);
    void Send(NK::MIDI::TMIDIMessage message);
    /// Sent by the song, or by the player where that is changed because of the song.
    void Queue(NK::MIDI::TMIDIMessage message);
    bool IsShown(NK::MIDI::TMIDIMessage message) const;
    /// What a note of the song sounds as, by its channel 1..16; kSilent while it does not.
    std::uint8_t& SentAs(NK::MIDI::TMIDIMessage message) {
        return sentAs_[message.channel - 1U][message.data1 & 0x7FU];
    }

    std::shared_ptr<LibMidi::MIDIPlayerQueue> queue_;
    Show show_;
    std::shared_ptr<const Song> song_;
    bool isListenedTo_ = false;
    std::shared_ptr<const Song> lost_;  ///< has set what Rest() brings to rest; null for nothing
    State state_ = State::kStopped;
    std::int64_t positionUs_ = 0;
    std::size_t next_ = 0;  ///< the first event that was not played
    std::optional<std::int64_t> lastMs_;
    bool stateDue_ = false;  ///< before the next event
    std::optional<Loop> loop_;
    int tempoPercent_ = 100;
    int transposition_ = 0;
    LibMidi::OpenSounds open_;    ///< notes that were sent, and were not ended by the player at one blow
    LibMidi::OpenSounds player_;  ///< what the player holds
    LibMidi::ChannelState set_;   ///< by the player
    SharedPedals pedals_;
    std::array<std::array<std::uint8_t, kNotes>, kChannels> sentAs_ = MakeSilent();
    std::array<std::uint16_t, kNotes> shown_{};  ///< how many notes of the song show as this one

    static constexpr std::array<std::array<std::uint8_t, kNotes>, kChannels> MakeSilent() {
        std::array<std::array<std::uint8_t, kNotes>, kChannels> silent{};
        for (auto& channel : silent) {
            channel.fill(kSilent);
        }
        return silent;
    }
};

}  // namespace Kivora
