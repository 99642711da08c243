// The output port of the built-in synthesizer.
#pragma once

#include <memory>

#include "libmidi/MIDIOutPortImpl.h"
#include "libmidi/synth/Synthesizer.h"

namespace LibMidi {

/// Plays what is written to it. Why an operation gave kDeviceError is in GetLastError(), in words.
class SynthOutPort : public MIDIOutPortImpl {
public:
    static constexpr const wchar_t* kName = L"Software synthesizer";

    explicit SynthOutPort(std::shared_ptr<Synthesizer> synthesizer);
    ~SynthOutPort() override;

    /// A port that is not open lets go of what a look may have begun for its next opening.
    Result Close() override;
    DeviceState LookAtDevice() override { return synthesizer_->LookAtSession(); }
    NK::CString GetLastError() const { return synthesizer_->GetLastError(); }  ///< [any]

protected:
    bool OpenDevice() override NK_REQUIRES(deviceLock_);
    void CloseDevice() override NK_REQUIRES(deviceLock_);
    bool WriteEvent(const MIDIEvent& event) override NK_REQUIRES(deviceLock_);

private:
    const std::shared_ptr<Synthesizer> synthesizer_;
};

}  // namespace LibMidi
