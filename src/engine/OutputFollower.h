// An output port that is followed.
#pragma once

#include "libmidi/MIDIPort.h"
#include "libmidi/OpenSounds.h"
#include "nk/nk_critical_section.h"

namespace Kivora {

/// Stands before a port, passes everything on to it, and knows what sounds on its device. The port outlives it.
class OutputFollower : public LibMidi::MIDIOutPort {
public:
    explicit OutputFollower(LibMidi::MIDIOutPort& port) : port_(port) {}

    const NK::CString& GetName() const override { return port_.GetName(); }
    std::uint32_t GetFlags() const override { return port_.GetFlags(); }
    LibMidi::Result Open() override { return port_.Open(); }
    LibMidi::Result Close() override { return port_.Close(); }
    LibMidi::DeviceState LookAtDevice() override { return port_.LookAtDevice(); }
    LibMidi::Result Write(const LibMidi::MIDIEvent* events, std::int32_t count) override;

    /// What was written and has not been ended. [any]
    LibMidi::OpenSounds GetSounding() const;
    /// Writes what ends everything that sounds, up to the first write that fails. [any]
    void EndSounding();

private:
    LibMidi::MIDIOutPort& port_;
    mutable CCriticalSection lock_;
    LibMidi::OpenSounds sounding_ NK_GUARDED_BY(lock_);
};

}  // namespace Kivora
