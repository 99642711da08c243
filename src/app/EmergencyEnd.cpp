#include "app/EmergencyEnd.h"

#include <cstdlib>
#include <utility>

namespace Kivora {

EmergencyEnd* EmergencyEnd::current_ = nullptr;

EmergencyEnd::EmergencyEnd(std::function<void()> act) : act_(std::move(act)) {
    // Once: what is registered cannot be taken back.
    [[maybe_unused]] static const int registered = std::atexit(&EmergencyEnd::OnExit);
    current_ = this;
}

EmergencyEnd::~EmergencyEnd() {
    current_ = nullptr;
}

void EmergencyEnd::OnExit() {
    EmergencyEnd* const end = std::exchange(current_, nullptr);
    if (end != nullptr && end->thread_ == std::this_thread::get_id()) {
        end->act_();
        std::_Exit(EXIT_FAILURE);
    }
}

}  // namespace Kivora
