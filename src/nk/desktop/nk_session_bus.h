// Message buses of the desktop that do not answer. [gui]
#pragma once

#include <cstdint>

namespace NK {

inline constexpr std::uint32_t kBusAnswerMs = 1000;

/// The toolkit waits without a limit for a bus that takes its connection and never answers, and shows no window
/// meanwhile. So the session's bus and that of the assistive tools are greeted here first; one that is there and has
/// not answered after `limitMs` does not exist for this process, and for those that it starts. Changes the environment:
/// before the application object and while no other thread runs.
void LeaveOutSilentBuses(std::uint32_t limitMs = kBusAnswerMs);

}  // namespace NK
