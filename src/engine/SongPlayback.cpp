#include "engine/SongPlayback.h"

#include <algorithm>
#include <utility>

#include "engine/Song.h"
#include "libmidi/MIDIPlayerQueue.h"
#include "midi/MIDIChannels.h"
#include "midi/MIDIControllers.h"
#include "midi/MIDINotes.h"

namespace Kivora {

using NK::MIDI::TMIDIMessage;
namespace Controller = NK::MIDI::Controller;

namespace {

constexpr std::int64_t kUsPerMsAndPercent = 10;

bool IsPercussion(TMIDIMessage message) {
    return message.channel == NK::MIDI::kPercussionChannel + 1;
}

bool EndsNote(TMIDIMessage message) {
    return message.status == TMIDIMessage::kNoteOff || (message.status == TMIDIMessage::kNoteOn && message.data2 == 0);
}

bool ResetsControllers(TMIDIMessage message) {
    return message.status == TMIDIMessage::kControlChange && message.data1 == Controller::kResetControllers;
}

bool EndsAllNotes(TMIDIMessage message) {
    return message.status == TMIDIMessage::kSystemReset ||
           (message.status == TMIDIMessage::kControlChange &&
            (message.data1 == Controller::kAllSoundOff || message.data1 >= Controller::kAllNotesOff));
}

}  // namespace

void SongPlayback::SetQueue(std::shared_ptr<LibMidi::MIDIPlayerQueue> queue) {
    Pause();
    ForgetPlayer();
    queue_ = std::move(queue);
}

void SongPlayback::Load(std::shared_ptr<const Song> song, bool isListenedTo) {
    Stop();
    song_ = std::move(song);
    isListenedTo_ = isListenedTo;
    loop_.reset();
    tempoPercent_ = 100;
    transposition_ = 0;
}

bool SongPlayback::Play() {
    if (!song_ || song_->IsEmpty() || !queue_) {
        return false;
    }
    if (state_ != State::kPlaying) {
        if (positionUs_ >= song_->GetLengthUs()) {
            GoTo(0);
        }
        state_ = State::kPlaying;
        stateDue_ = true;
        lastMs_.reset();
    }
    return true;
}

void SongPlayback::Pause() {
    if (state_ == State::kPlaying) {
        state_ = State::kPaused;
        End();
        SetBack(*song_);
    }
}

void SongPlayback::SendOfPlayer(TMIDIMessage message) {
    const std::optional<TMIDIMessage> sent = FollowPlayer(message);
    if (sent == message) {
        return queue_->SendMessage(message, 0);
    }
    if (sent) {
        Queue(*sent);
    }
    LibMidi::SynthEventBase played(LibMidi::MIDIEvent::FromMessage(message, 0));
    played.isWritten = false;
    played.isCaptured = isListenedTo_;
    queue_->Queue(played);
}

std::optional<TMIDIMessage> SongPlayback::FollowPlayer(TMIDIMessage message) {
    player_.Follow(message);
    set_.Follow(message);
    if (EndsAllNotes(message)) {
        open_.Follow(message);
    }
    if (ResetsControllers(message)) {
        pedals_.Lift(message.channel);
    } else if (message.status == TMIDIMessage::kSystemReset) {
        pedals_ = {};
    } else if (SharedPedals::IsPedal(message)) {
        return pedals_.MoveByPlayer(message);
    }
    const bool isSongs = EndsNote(message) && open_.IsNoteOpen(message.data1, message.channel - 1);
    return isSongs ? std::nullopt : std::optional(message);
}

void SongPlayback::ForgetPlayer() {
    player_ = {};
    set_ = {};
    pedals_.ForgetPlayer();
}

void SongPlayback::Lose() {
    ForgetPlayer();  // nothing of it sounds
    if (state_ == State::kPlaying) {
        lost_ = song_;
        Pause();
    }
}

void SongPlayback::Rest() {
    ForgetPlayer();
    if (const std::shared_ptr<const Song> lost = std::exchange(lost_, nullptr)) {
        SetBack(*lost);
    }
}

void SongPlayback::Stop() {
    Pause();
    state_ = State::kStopped;
    GoTo(0);
}

void SongPlayback::Seek(std::int64_t positionUs) {
    Interrupt();
    GoTo(std::clamp<std::int64_t>(positionUs, 0, song_ ? song_->GetLengthUs() : 0));
}

void SongPlayback::SetLoop(std::optional<Loop> loop) {
    if (loop && song_) {
        loop->beginUs = std::max<std::int64_t>(loop->beginUs, 0);
        loop->endUs = std::min(loop->endUs, song_->GetLengthUs());
    }
    loop_ = loop && song_ && loop->endUs - loop->beginUs >= kShortestLoopUs ? loop : std::nullopt;
}

void SongPlayback::SetTempo(int percent) {
    tempoPercent_ = std::clamp(percent, kSlowestPercent, kFastestPercent);
}

void SongPlayback::SetTransposition(int semitones) {
    transposition_ = std::clamp(semitones, -kMostTransposition, kMostTransposition);
}

void SongPlayback::Interrupt() {
    if (state_ == State::kPlaying) {
        End();
        stateDue_ = true;
    }
}

void SongPlayback::GoTo(std::int64_t positionUs) {
    positionUs_ = positionUs;
    next_ = song_ ? song_->FindEvent(positionUs) : 0;
}

void SongPlayback::Tick(std::int64_t nowMs) {
    if (state_ != State::kPlaying) {
        return;
    }
    const std::int64_t passedMs = nowMs - std::exchange(lastMs_, nowMs).value_or(nowMs);
    if (std::exchange(stateDue_, false)) {
        SendState();
    }
    std::int64_t target = positionUs_;
    if (passedMs > 0 && passedMs <= kLongestGapMs) {
        target += passedMs * tempoPercent_ * kUsPerMsAndPercent;
    }
    if (loop_ && positionUs_ < loop_->endUs && target >= loop_->endUs) {
        if (!PlayBefore(loop_->endUs)) {
            return;
        }
        End();
        target = loop_->beginUs + (target - loop_->endUs) % (loop_->endUs - loop_->beginUs);
        GoTo(loop_->beginUs);
        SendState();
    }
    if (!PlayBefore(target + 1)) {
        return;
    }
    positionUs_ = target;
    if (positionUs_ >= song_->GetLengthUs()) {
        Stop();
    }
}

void SongPlayback::SendState() {
    song_->VisitState(next_, [this](TMIDIMessage message) {
        if (!SharedPedals::IsPedal(message)) {
            Send(message);
        } else if (message.data2 != 0 || pedals_.IsHeldBySong(message)) {  // else it is not the song's to lift
            MovePedal(message);
        }
    });
}

void SongPlayback::SetBack(const Song& song) {
    song.VisitRest(set_, [this](TMIDIMessage message) {
        if (!SharedPedals::IsPedal(message)) {  // these are lifted where they are held
            Send(message);
        }
    });
}

bool SongPlayback::PlayBefore(std::int64_t timeUs) {
    const auto& events = song_->GetEvents();
    for (int played = 0; next_ < events.size() && events[next_].timeUs < timeUs; ++played) {
        if (played == kMostEventsPerTick) {
            positionUs_ = events[next_].timeUs;
            return false;
        }
        PlayEvent(events[next_++].message);
    }
    return true;
}

void SongPlayback::PlayEvent(TMIDIMessage message) {
    switch (message.status) {
        case TMIDIMessage::kNoteOn:
            return message.data2 != 0 ? BeginNote(message) : EndNote(message);
        case TMIDIMessage::kNoteOff:
            return EndNote(message);
        case TMIDIMessage::kKeyPressure:
            if (const std::uint8_t sounding = SentAs(message); sounding != kSilent) {
                message.data1 = sounding;
                Send(message);
            }
            return;
        case TMIDIMessage::kControlChange:
            if (SharedPedals::IsPedal(message)) {
                return MovePedal(message);
            }
            if (message.data1 == Controller::kResetControllers) {
                return ResetControllers(message);
            }
            if (message.data1 >= Controller::kFirstMode) {
                return message.data1 != Controller::kLocalControl ? EndNotes(message.channel) : void();
            }
            return Send(message);
        default:
            return Send(message);
    }
}

void SongPlayback::BeginNote(TMIDIMessage message) {
    std::uint8_t& sentAs = SentAs(message);
    const int moved = IsPercussion(message) ? message.data1 : NK::MIDI::FoldNote(message.data1 + transposition_);
    const auto note = static_cast<std::uint8_t>(moved);
    if (sentAs != kSilent && sentAs != note) {
        EndNote({TMIDIMessage::kNoteOff, message.channel, message.data1, 0});
    }
    if (sentAs == kSilent && IsShown(message)) {
        ++shown_[note];
    }
    sentAs = note;
    message.data1 = note;
    Send(message);
    if (IsShown(message)) {
        show_(message);
    }
}

void SongPlayback::EndNote(TMIDIMessage message) {
    const std::uint8_t note = std::exchange(SentAs(message), kSilent);
    if (note == kSilent) {
        return;  // it began before the song was begun here, and was ended
    }
    message.data1 = note;
    if (player_.IsNoteOpen(note, message.channel - 1)) {
        open_.Follow(message);
    } else {
        Send(message);
    }
    if (IsShown(message) && --shown_[note] == 0) {
        show_(message);
    }
}

void SongPlayback::EndNotes(std::uint8_t channel) {
    for (std::uint8_t note = 0; note < kNotes; ++note) {
        EndNote({TMIDIMessage::kNoteOff, channel, note, 0});
    }
}

void SongPlayback::End() {
    for (std::uint8_t channel = 1; channel <= kChannels; ++channel) {
        EndNotes(channel);
    }
    open_ = {};
    for (std::uint8_t channel = 1; channel <= kChannels; ++channel) {
        pedals_.VisitLifted(channel, [this](TMIDIMessage message) { MovePedal(message); });
    }
}

void SongPlayback::MovePedal(TMIDIMessage message) {
    if (const std::optional<TMIDIMessage> moved = pedals_.MoveBySong(message)) {
        Send(*moved);
    }
}

void SongPlayback::ResetControllers(TMIDIMessage message) {
    if (pedals_.IsAnyHeldByPlayer(message.channel)) {
        pedals_.VisitLifted(message.channel, [this](TMIDIMessage lifted) { MovePedal(lifted); });
        LibMidi::ChannelState::VisitControllersAtRest(message.channel, [this](TMIDIMessage resting) {
            if (!SharedPedals::IsPedal(resting)) {
                Send(resting);
            }
        });
    } else {
        pedals_.Lift(message.channel);
        Send(message);
    }
}

void SongPlayback::Send(TMIDIMessage message) {
    if (queue_) {
        Queue(message);
    }
    open_.Follow(message);
}

void SongPlayback::Queue(TMIDIMessage message) {
    LibMidi::SynthEventBase event(LibMidi::MIDIEvent::FromMessage(message, 0));
    event.isCaptured = !isListenedTo_;
    event.isRemembered = false;
    queue_->Queue(event);
}

bool SongPlayback::IsShown(TMIDIMessage message) const {
    return show_ && !IsPercussion(message);
}

}  // namespace Kivora
