// The hook through which threads get a priority that the system refuses to the process itself.
#pragma once

#include <cstdint>

namespace NK {

/// Whoever can give it. Both take the number of a thread of this process and tell whether it has the priority now; they
/// wait 100 ms at most, and are called from any thread.
struct TPriorityService {
    bool (*makeRealtime)(std::int32_t tid, std::uint32_t priority);  ///< round-robin, 1..99
    bool (*makeUrgent)(std::int32_t tid, std::int32_t nice);         ///< a nice value of -1 to -20
};

/// Null installs none, as at first: then what the system refuses is refused. Set once at start-up, before other threads
/// run; the service lives as long as the process.
void SetPriorityService(const TPriorityService* service);
/// Null for none. [any]
const TPriorityService* GetPriorityService();

}  // namespace NK
