#include "render/SteppedPlayer.h"

namespace Kivora {

void SteppedClock::Sleep(std::uint32_t milliseconds) {
    for (; milliseconds > 0; --milliseconds) {
        RunRound();
        ++nowMs_;
        RunRound();
    }
}

void SteppedClock::RunRound() {
    if (player_ != nullptr && player_->IsRunning()) {
        static_cast<void>(player_->RunPlayerRound());  // what it writes to never fails
    }
}

SteppedPlayer::SteppedPlayer(SteppedClock& clock) : MIDIPlayerImpl(clock), clock_(clock) {
    MIDIPlayerImpl::SetTimeSource(&clock);
    clock_.SetPlayer(this);
}

SteppedPlayer::~SteppedPlayer() {
    clock_.SetPlayer(nullptr);
}

void SteppedPlayer::SetTimeSource(NK::CTimeSource*) {
}

bool SteppedPlayer::Start() {
    GetSink()->SetAccepting(true);
    BeginRounds();
    running_ = true;
    return true;
}

}  // namespace Kivora
