#include "e2e/player/Sounding.h"

namespace Player {

namespace {
constexpr int kFirstOfPressed = 64;
constexpr int kAllSoundOff = 120;
constexpr int kResetControllers = 121;
constexpr int kAllNotesOff = 123;  ///< the controllers behind it end the notes too
constexpr std::uint8_t kSystemReset = 0xFF;

bool IsPedal(int controller) {
    return controller == 64 || controller == 66 || controller == 69;
}
}  // namespace

void Sounding::Take(int output, std::uint8_t status, std::uint8_t data1, std::uint8_t data2) {
    if (status == kSystemReset) {
        Forget(output);
        return;
    }
    const int channel = (status & 0x0F) + 1;
    const TKey note{output, channel, EThing::kNote, data1};
    switch (status & 0xF0) {
        case 0x90:
            if (data2 > 0) {
                held_.insert(note);
                ++strikeCount_;
            } else {
                held_.erase(note);
            }
            break;
        case 0x80:
            held_.erase(note);
            break;
        case 0xB0:
            TakeController(output, channel, data1, data2);
            break;
        default:
            break;
    }
}

void Sounding::TakeController(int output, int channel, int controller, int value) {
    if (IsPedal(controller)) {
        const TKey pedal{output, channel, EThing::kPedal, controller};
        if (value >= kFirstOfPressed) {
            held_.insert(pedal);
        } else {
            held_.erase(pedal);
        }
    } else if (controller == kResetControllers) {
        EndAll(output, channel, EThing::kPedal);
    } else if (controller == kAllSoundOff || controller >= kAllNotesOff) {
        EndAll(output, channel, EThing::kNote);
    }
}

void Sounding::EndAll(int output, int channel, EThing thing) {
    std::erase_if(held_, [&](const TKey& key) {
        return std::get<0>(key) == output && std::get<1>(key) == channel && std::get<2>(key) == thing;
    });
}

void Sounding::Forget(int output) {
    std::erase_if(held_, [output](const TKey& key) { return std::get<0>(key) == output; });
}

std::vector<std::string> Sounding::GetNames() const {
    std::vector<std::string> names;
    for (const auto& [output, channel, thing, number] : held_) {
        names.push_back("output " + std::to_string(output) + ", channel " + std::to_string(channel) +
                        (thing == EThing::kNote ? ": note " : ": pedal ") + std::to_string(number));
    }
    return names;
}

}  // namespace Player
