#include "libmidi/synth/SynthOutPort.h"

#include <utility>

namespace LibMidi {

SynthOutPort::SynthOutPort(std::shared_ptr<Synthesizer> synthesizer)
    : MIDIPortImpl(0, kName, kOutput), synthesizer_(std::move(synthesizer)) {
}

SynthOutPort::~SynthOutPort() {
    SynthOutPort::Close();
}

Result SynthOutPort::Close() {
    const Result result = MIDIOutPortImpl::Close();
    if (result == kNotOpen) {
        synthesizer_->LetGo();
    }
    return result;
}

bool SynthOutPort::OpenDevice() {
    return synthesizer_->Open();
}

void SynthOutPort::CloseDevice() {
    synthesizer_->Close();
}

bool SynthOutPort::WriteEvent(const MIDIEvent& event) {
    return synthesizer_->Write(event);
}

}  // namespace LibMidi
