#include "nk/platform/platform_priority.h"

#include <sched.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>

#include "nk/nk_priority_service.h"

namespace NK::Platform {
namespace {

constexpr int kLevelNormal = 3;
constexpr int kLevelFirstRealtime = 5;
constexpr int kLevelLast = 6;
constexpr std::array<int, kLevelFirstRealtime> kNiceValues{19, 10, 5, 0, -5};
constexpr std::array<int, 2> kRealtimePriorities{10, 15};

/// Takes the real-time scheduling from the thread that has used up its time.
void OnTimeUsedUp(int) {
    const int savedErrno = errno;
    const sched_param parameters{};
    sched_setscheduler(0, SCHED_OTHER, &parameters);
    errno = savedErrno;
}

/// Services serve only a process that the system stops when a real-time thread of it runs for 200 ms without a
/// pause. At 150 ms the thread loses its scheduling instead.
bool LimitRealtime() {
    static const bool limited = [] {
        struct sigaction present {};
        if (sigaction(SIGXCPU, nullptr, &present) == 0 && present.sa_handler == SIG_DFL) {
            struct sigaction action {};
            action.sa_handler = &OnTimeUsedUp;
            action.sa_flags = SA_RESTART;
            sigaction(SIGXCPU, &action, nullptr);
        }
        constexpr rlim_t kSoftUs = 150'000;
        constexpr rlim_t kHardUs = 200'000;
        rlimit limit{};
        getrlimit(RLIMIT_RTTIME, &limit);
        limit.rlim_max = std::min(limit.rlim_max, kHardUs);
        limit.rlim_cur = std::min({limit.rlim_cur, limit.rlim_max, kSoftUs});
        return setrlimit(RLIMIT_RTTIME, &limit) == 0;
    }();
    return limited;
}

bool SetRealtime(std::int32_t tid, int priority) {
    sched_param parameters{};
    parameters.sched_priority = priority;
    // Programs that this thread starts run at the normal priority.
    if (sched_setscheduler(tid, SCHED_RR | SCHED_RESET_ON_FORK, &parameters) == 0) {
        return true;
    }
    const TPriorityService* const service = GetPriorityService();
    return service != nullptr && LimitRealtime() && service->makeRealtime(tid, static_cast<std::uint32_t>(priority));
}

bool SetNice(std::int32_t tid, int nice) {
    const int policy = sched_getscheduler(tid) & ~SCHED_RESET_ON_FORK;
    const sched_param parameters{};
    if (policy != SCHED_OTHER && sched_setscheduler(tid, SCHED_OTHER, &parameters) != 0) {
        return false;
    }
    if (setpriority(PRIO_PROCESS, static_cast<id_t>(tid), nice) == 0) {
        return true;
    }
    const TPriorityService* const service = GetPriorityService();
    return service != nullptr && nice < 0 && service->makeUrgent(tid, nice);
}

}  // namespace

bool SetThreadPriority(std::int32_t tid, int level) {
    const int known = level < 0 || level > kLevelLast ? kLevelNormal : level;
    if (known < kLevelFirstRealtime) {
        return SetNice(tid, kNiceValues[static_cast<std::size_t>(known)]);
    }
    return SetRealtime(tid, kRealtimePriorities[static_cast<std::size_t>(known - kLevelFirstRealtime)]);
}

bool SetCallersPriority(int level) {
    return SetThreadPriority(gettid(), level);
}

}  // namespace NK::Platform
