// A player of the click's own, on the built-in synthesizer.
#pragma once

#include <memory>

#include "libmidi/MIDIPlayer.h"
#include "libmidi/MIDIPort.h"

namespace Kivora {

/// Holds a port open beside the engine's output, with a player of its own: what fails here is silent, and no note of
/// the output is lost for it. The port outlives it and is not used by others meanwhile. [gui] unless a line says
/// otherwise.
class ClickOutput {
public:
    /// Null when the port does not open or the player, which may be null, does not start.
    static std::unique_ptr<ClickOutput> Open(LibMidi::MIDIOutPort& port, std::unique_ptr<LibMidi::MIDIPlayer> player,
                                             NK::CTimeSource& time);
    /// What sounds is ended, and the port closed.
    ~ClickOutput();
    ClickOutput(const ClickOutput&) = delete;
    ClickOutput& operator=(const ClickOutput&) = delete;

    LibMidi::MIDIOutPort& GetPort() const { return port_; }
    /// Nothing plays any more.
    bool HasFailed() const { return player_->HasWriteFailed(); }
    LibMidi::MIDIPlayerQueue* GetQueue() const { return sink_.get(); }  ///< never null; [tick]

private:
    ClickOutput(LibMidi::MIDIOutPort& port, std::unique_ptr<LibMidi::MIDIPlayer> player);

    LibMidi::MIDIOutPort& port_;
    std::unique_ptr<LibMidi::MIDIPlayer> player_;
    std::shared_ptr<LibMidi::MIDIPlayerQueue> sink_;
};

}  // namespace Kivora
