// The test's end of the stand-in for PortMidi: a MIDI keyboard to play on, outputs to listen to, and their plugs.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "e2e/player/Sounding.h"
#include "e2e/standin/SharedDevices.h"

namespace Player {

class LentDevices {
public:
    /// Makes the file, with every device plugged in.
    explicit LentDevices(const std::string& path);
    ~LentDevices();
    LentDevices(const LentDevices&) = delete;
    LentDevices& operator=(const LentDevices&) = delete;

    bool IsPluggedIn(int device) const;
    void PlugIn(int device);
    void Unplug(int device);
    void FailNextWrite();
    void Overflow();
    /// A message of the MIDI keyboard; lost while it is unplugged.
    void Play(std::uint32_t message);

    /// What was written since the last call.
    void Listen(Sounding& sounding);

    /// Whether the program has the device open and reaches it, which it does not after a plug was pulled.
    bool IsReached(int device) const;
    bool IsAnyOutputReached() const;
    /// Whether the program still has the keyboard open as it was before its plug was pulled, and so has not let go yet
    /// of what was held on it.
    bool IsInputStale() const;
    /// Whether everything that was played has been read, or nobody reads.
    bool IsInputRead() const;
    std::uint32_t GetInputRounds() const { return shared_->inputRounds; }
    std::uint32_t GetWrittenCount() const { return shared_->writtenCount; }
    /// "90 3C 50 to output 0", the last `count` of them, a line each.
    std::string GetLastWritten(std::uint32_t count) const;

private:
    Standin::TSharedDevices* shared_ = nullptr;
    std::uint32_t heard_ = 0;
};

}  // namespace Player
