// The millisecond counter that stands in for a clock towards PortMidi.
#pragma once

#include <portmidi.h>

#include <cstdint>

namespace LibMidi {

/// Process-wide; wraps around. Advanced by the input timer, read by PortMidi and the writers with no lock.
namespace TickCounter {
void Advance() noexcept;           ///< [input-timer]
std::uint32_t Get() noexcept;      ///< [any]
PmTimestamp TimeProcedure(void*);  ///< Get() in the form that PortMidi takes. [any]
}  // namespace TickCounter

}  // namespace LibMidi
