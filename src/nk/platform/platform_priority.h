// The scheduling of a thread by the framework's priority levels.
#pragma once

#include <cstdint>

namespace NK::Platform {

/// Gives thread `tid` of this process the level 0..6; any other is taken as 3. Levels 0..4 are nice values 19, 10, 5, 0
/// and -5; levels 5 and 6 are round-robin real-time with the priorities 10 and 15. Asked from the system and, for
/// levels 4 to 6 where the process may not, from the service of nk/nk_priority_service.h. Whether either agreed. Takes
/// at most about 100 ms. [any]
bool SetThreadPriority(std::int32_t tid, int level);
/// The same for the calling thread. [any]
bool SetCallersPriority(int level);

}  // namespace NK::Platform
