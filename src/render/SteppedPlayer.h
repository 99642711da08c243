// The player without its threads: it plays when its clock is moved. [owner]
#pragma once

#include <cstdint>

#include "libmidi/MIDIPlayerImpl.h"
#include "nk/nk_sleep.h"
#include "nk/nk_time_source.h"

namespace Kivora {

/// A clock that stands still until somebody sleeps, which takes no time. For one thread.
class SteppedClock : public NK::CTimeSource, public NK::CSleeper {
public:
    std::int64_t GetTimeNs() override { return nowMs_ * 1000000; }
    /// At each millisecond on the way the player, if there is one, writes what is queued and ends what has sounded long
    /// enough.
    void Sleep(std::uint32_t milliseconds) override;
    void SetPlayer(LibMidi::MIDIPlayerImpl* player) { player_ = player; }

private:
    void RunRound();

    std::int64_t nowMs_ = 0;
    LibMidi::MIDIPlayerImpl* player_ = nullptr;
};

/// Times everything by the stepped clock, whatever time source it is given. Its listeners are told nothing.
class SteppedPlayer : public LibMidi::MIDIPlayerImpl {
public:
    /// The clock outlives the player and knows no other.
    explicit SteppedPlayer(SteppedClock& clock);
    ~SteppedPlayer() override;

    void SetTimeSource(NK::CTimeSource* source) override;
    bool Start() override;
    void Stop() override { running_ = false; }
    bool IsRunning() const override { return running_; }

private:
    SteppedClock& clock_;
    bool running_ = false;
};

}  // namespace Kivora
