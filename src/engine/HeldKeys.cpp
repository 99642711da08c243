#include "engine/HeldKeys.h"

namespace Kivora {

void HeldKeys::Follow(NK::MIDI::TMIDIMessage message) noexcept {
    switch (message.status) {
        case 0x80:
        case 0x90:
            if (message.data1 < 128) {
                notes_[message.data1] = message.status == 0x90 && message.data2 != 0;
            }
            break;
        case 0xB0:
            if (message.data1 == kSustainController) {
                pedalDown_ = message.data2 != 0;
            }
            break;
        default:
            break;
    }
}

void HeldKeys::Clear() noexcept {
    notes_.reset();
    pedalDown_ = false;
}

}  // namespace Kivora
