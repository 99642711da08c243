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
    ClickOutput() = default;
    /// What sounds is ended.
    ~ClickOutput() { Close(); }
    ClickOutput(const ClickOutput&) = delete;
    ClickOutput& operator=(const ClickOutput&) = delete;

    /// Closed first. Whether it plays now; the player may be null.
    bool Open(LibMidi::MIDIOutPort& port, std::unique_ptr<LibMidi::MIDIPlayer> player, NK::CTimeSource& time);
    void Close();
    bool IsOpen() const { return player_ != nullptr; }
    /// Null while it is closed. Under the lock under which it is opened and closed. [tick]
    LibMidi::MIDIPlayerQueue* GetQueue() const { return sink_.get(); }

private:
    LibMidi::MIDIOutPort* port_ = nullptr;
    std::unique_ptr<LibMidi::MIDIPlayer> player_;
    std::shared_ptr<LibMidi::MIDIPlayerQueue> sink_;
};

}  // namespace Kivora
