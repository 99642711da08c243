// A worker thread whose owner may stop it at any moment after the start. [owner]
#pragma once

#include <atomic>

#include "nk/nk_thread.h"

namespace LibMidi {

/// Repeats its rounds until IsStopRequested(). Started once.
class RoundThread : public NK::CThread {
public:
    RoundThread(int level, const wchar_t* name);

    /// Starts, and returns once the body has begun, so that a stop request made from then on is seen.
    bool Begin();
    /// Requests the stop and waits without limit.
    void End();

protected:
    /// The body; ends soon after IsStopRequested().
    virtual void RunRounds() = 0;

private:
    void Run() final;

    std::atomic<bool> begun_{false};
};

}  // namespace LibMidi
