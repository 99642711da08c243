// What plays a song back, as the user's controls need it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "engine/SongPlayback.h"

namespace Kivora {

class EngineControls;
class Song;

/// Plays one song at a time through the instrument's output, while it is played on and recorded. Of several of one
/// engine each plays on with what another has begun. [gui]
class SongPlayer {
public:
    using State = SongPlayback::State;
    using Loop = SongPlayback::Loop;

    struct Status {
        State state = State::kStopped;
        std::int64_t positionUs = 0;
        std::int64_t lengthUs = 0;  ///< 0 without a song
        std::optional<Loop> loop;
        int tempoPercent = 100;
        int transposition = 0;
    };

    /// The controls are not owned.
    explicit SongPlayer(EngineControls& controls) : controls_(controls) {}

    /// Stops what is played. Null for nothing.
    void Open(std::shared_ptr<const Song> song);
    /// The same, to be listened to only: it is not in a take that runs.
    void OpenToListen(std::shared_ptr<const Song> song);
    /// The same, and it stands as it stood then, stopped.
    void OpenAgain(std::shared_ptr<const Song> song, const Status& then);
    std::shared_ptr<const Song> GetSong() const;
    /// False when there is nothing to be played or no output that would play it.
    bool Play();
    void Pause();
    void Stop();
    void Seek(std::int64_t positionUs);
    void SetLoop(std::optional<Loop> loop);
    void SetTempo(int percent);
    void SetTransposition(int semitones);
    Status GetStatus() const;

private:
    template <class Action>
    decltype(auto) With(Action&& action);

    EngineControls& controls_;
};

}  // namespace Kivora
