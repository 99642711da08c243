#include "libmidi/portmidi/TickCounter.h"

#include <atomic>

namespace LibMidi::TickCounter {

namespace {
std::atomic<std::uint32_t> ticks{0};
}

void Advance() noexcept {
    ticks.fetch_add(1, std::memory_order_relaxed);
}

std::uint32_t Get() noexcept {
    return ticks.load(std::memory_order_relaxed);
}

PmTimestamp TimeProcedure(void*) {
    return static_cast<PmTimestamp>(Get());
}

}  // namespace LibMidi::TickCounter
