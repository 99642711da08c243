// A clock that nobody sets.
#pragma once

#include <cstdint>

namespace NK {

/// Nanoseconds since a moment of the system's choice, truncated to a millisecond: for a CSysTimeSource whose time goes
/// on evenly when the wall clock is set, and stands still while the computer sleeps. [any]
std::int64_t GetSteadyNowNs();

}  // namespace NK
