#include "engine/SongPlayer.h"

#include <utility>

#include "engine/EngineControls.h"
#include "engine/EngineExtras.h"
#include "engine/Song.h"

namespace Kivora {

template <class Action>
decltype(auto) SongPlayer::With(Action&& action) {
    CKivora& engine = controls_.engine_;
    // The hold of the engine, at whose end the tick begins to run.
    return engine.WithLock(
        [&] { return engine.WithExtras([&action](EngineExtras& extras) { return action(extras.song); }); });
}

void SongPlayer::Open(std::shared_ptr<const Song> song) {
    Stop();
    With([&song](SongPlayback& playback) { playback.Load(std::move(song)); });
}

void SongPlayer::OpenToListen(std::shared_ptr<const Song> song) {
    Stop();
    With([&song](SongPlayback& playback) { playback.Load(std::move(song), true); });
}

void SongPlayer::OpenAgain(std::shared_ptr<const Song> song, const Status& then) {
    Open(std::move(song));
    SetLoop(then.loop);
    SetTempo(then.tempoPercent);
    SetTransposition(then.transposition);
    Seek(then.positionUs);
}

std::shared_ptr<const Song> SongPlayer::GetSong() const {
    return controls_.GetEngine().WithExtras([](const EngineExtras& extras) { return extras.song.GetSong(); });
}

bool SongPlayer::Play() {
    CKivora& engine = controls_.engine_;
    return engine.WithLock([&] {
        return engine.IsOutputReady() && !engine.IsOutputLost() &&
               With([](SongPlayback& playback) { return playback.Play(); });
    });
}

void SongPlayer::Pause() {
    controls_.PauseSong();
}

void SongPlayer::Stop() {
    controls_.StopSong();
}

void SongPlayer::Seek(std::int64_t positionUs) {
    With([positionUs](SongPlayback& playback) { playback.Seek(positionUs); });
}

void SongPlayer::SetLoop(std::optional<Loop> loop) {
    With([loop](SongPlayback& playback) { playback.SetLoop(loop); });
}

void SongPlayer::SetTempo(int percent) {
    With([percent](SongPlayback& playback) { playback.SetTempo(percent); });
}

void SongPlayer::SetTransposition(int semitones) {
    With([semitones](SongPlayback& playback) { playback.SetTransposition(semitones); });
}

SongPlayer::Status SongPlayer::GetStatus() const {
    return controls_.GetEngine().WithExtras([](const EngineExtras& extras) {
        const SongPlayback& playback = extras.song;
        return Status{
            playback.GetState(), playback.GetPositionUs(), playback.GetSong() ? playback.GetSong()->GetLengthUs() : 0,
            playback.GetLoop(),  playback.GetTempo(),      playback.GetTransposition()};
    });
}

}  // namespace Kivora
