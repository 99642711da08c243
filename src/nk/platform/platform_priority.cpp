#include "nk/platform/platform_priority.h"

#include <sched.h>
#include <sys/resource.h>

#include <array>
#include <cstddef>

namespace NK::Platform {
namespace {

constexpr int kLevelNormal = 3;
constexpr int kLevelFirstRealtime = 5;
constexpr int kLevelLast = 6;
constexpr std::array<int, kLevelFirstRealtime> kNiceValues{19, 10, 5, 0, -5};
constexpr std::array<int, 2> kRealtimePriorities{10, 15};

bool SetRealtime(std::int32_t tid, int priority) {
    sched_param parameters{};
    parameters.sched_priority = priority;
    // Programs that this thread starts run at the normal priority.
    return sched_setscheduler(tid, SCHED_RR | SCHED_RESET_ON_FORK, &parameters) == 0;
}

bool SetNice(std::int32_t tid, int nice) {
    const int policy = sched_getscheduler(tid) & ~SCHED_RESET_ON_FORK;
    const sched_param parameters{};
    if (policy != SCHED_OTHER && sched_setscheduler(tid, SCHED_OTHER, &parameters) != 0) {
        return false;
    }
    return setpriority(PRIO_PROCESS, static_cast<id_t>(tid), nice) == 0;
}

}  // namespace

bool SetThreadPriority(std::int32_t tid, int level) {
    const int known = level < 0 || level > kLevelLast ? kLevelNormal : level;
    if (known < kLevelFirstRealtime) {
        return SetNice(tid, kNiceValues[static_cast<std::size_t>(known)]);
    }
    return SetRealtime(tid, kRealtimePriorities[static_cast<std::size_t>(known - kLevelFirstRealtime)]);
}

}  // namespace NK::Platform
