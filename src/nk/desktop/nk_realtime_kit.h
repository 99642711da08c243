// Real-time scheduling and nice values below 0 from the desktop's RealtimeKit service.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include "nk/nk_critical_section.h"

namespace NK {

/// Asks org.freedesktop.RealtimeKit1 on a D-Bus message bus. Once the bus is missing, the service is missing, or three
/// requests have timed out, it asks no more.
class CRealtimeKit {
public:
    /// The address in D-Bus's notation, for example "unix:path=/run/dbus/system_bus_socket".
    explicit CRealtimeKit(std::string busAddress) : busAddress_(std::move(busAddress)) {}
    /// Asks for round-robin scheduling of thread `tid` of this process with `priority`. Whether the service agreed.
    /// Waits at most 50 ms until the bus has taken the connection and this user, and 50 ms for the answer. [any]
    bool MakeThreadRealtime(std::int32_t tid, std::uint32_t priority) NK_EXCLUDES(lock_);
    /// As MakeThreadRealtime(), for a nice value of -1 to -15.
    bool MakeThreadHighPriority(std::int32_t tid, std::int32_t nice) NK_EXCLUDES(lock_);

private:
    enum class Outcome { granted, refused, noAnswer, noService };
    /// Priorities are unsigned for the one request of the service and signed for the other.
    using Priority = std::variant<std::uint32_t, std::int32_t>;
    bool Ask(const char* request, std::int32_t tid, Priority priority) NK_EXCLUDES(lock_);
    Outcome Send(const char* request, std::int32_t tid, Priority priority) const;

    const std::string busAddress_;
    CCriticalSection lock_;
    int chancesLeft_ NK_GUARDED_BY(lock_) = 3;
};

/// From now on the threads of this process get their priorities from the system's RealtimeKit where the system itself
/// refuses them, see SetPriorityService(). Before other threads run.
void InstallRealtimeKit();

}  // namespace NK
