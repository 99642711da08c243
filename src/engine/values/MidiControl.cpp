#include "engine/values/MidiControl.h"

#include <algorithm>

#include "engine/values/HeldKeys.h"

namespace Kivora {

std::optional<MidiControl> MidiControl::Of(const LibMidi::MIDIEvent& event) {
    const auto made = [&event](Kind ofMessage) {
        return MidiControl{ofMessage, static_cast<std::uint8_t>(event.status & 0x0F),
                           static_cast<std::uint8_t>(event.data1 & 0x7F)};
    };
    switch (event.status & 0xF0) {
        case 0x80:
        case 0x90:
        case 0xA0:
            return made(Kind::kNote);
        case 0xB0:
            return made(Kind::kController);
        case 0xC0:
            return made(Kind::kProgram);
        default:
            return std::nullopt;
    }
}

bool MidiControl::IsReserved() const {
    constexpr std::uint8_t kFirstChannelMode = 120;
    return kind == Kind::kController &&
           (number >= kFirstChannelMode ||
            std::find(HeldKeys::kPedals.begin(), HeldKeys::kPedals.end(), number) != HeldKeys::kPedals.end());
}

}  // namespace Kivora
