#include "midi/CMIDIProcessor.h"

namespace NK::MIDI {

void CMIDIProcessor::SetBypassed(bool bypass, bool forceReset) {
    if (bypass == bypassed_) {
        return;
    }
    bypassed_ = bypass;
    if (!forceReset && OnBypassChanged()) {
        return;
    }
    Reset();
}

}  // namespace NK::MIDI
