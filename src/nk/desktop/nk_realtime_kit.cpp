#include "nk/desktop/nk_realtime_kit.h"

#include <cstdlib>
#include <string>
#include <type_traits>

#include "nk/desktop/nk_bus_connection.h"
#include "nk/nk_priority_service.h"

namespace NK {
namespace {

constexpr std::chrono::milliseconds kAnswer{50};
constexpr const char* kService = "org.freedesktop.RealtimeKit1";
constexpr const char* kPath = "/org/freedesktop/RealtimeKit1";

std::string SystemBusAddress() {
    const char* const address = std::getenv("DBUS_SYSTEM_BUS_ADDRESS");
    return address != nullptr && *address != '\0' ? address : "unix:path=/run/dbus/system_bus_socket";
}

CRealtimeKit& SystemKit() {
    static CRealtimeKit kit(SystemBusAddress());
    return kit;
}

}  // namespace

void InstallRealtimeKit() {
    static constexpr TPriorityService kService{
        [](std::int32_t tid, std::uint32_t priority) { return SystemKit().MakeThreadRealtime(tid, priority); },
        [](std::int32_t tid, std::int32_t nice) { return SystemKit().MakeThreadHighPriority(tid, nice); }};
    SetPriorityService(&kService);
}

bool CRealtimeKit::MakeThreadRealtime(std::int32_t tid, std::uint32_t priority) {
    return Ask("MakeThreadRealtime", tid, priority);
}

bool CRealtimeKit::MakeThreadHighPriority(std::int32_t tid, std::int32_t nice) {
    return Ask("MakeThreadHighPriority", tid, nice);
}

bool CRealtimeKit::Ask(const char* request, std::int32_t tid, Priority priority) {
    const CLockGuard guard(lock_);
    if (chancesLeft_ == 0) {
        return false;
    }
    const Outcome outcome = Send(request, tid, priority);
    if (outcome == Outcome::noAnswer) {
        --chancesLeft_;
    } else if (outcome == Outcome::noService) {
        chancesLeft_ = 0;
    }
    return outcome == Outcome::granted;
}

CRealtimeKit::Outcome CRealtimeKit::Send(const char* request, std::int32_t tid, Priority priority) const {
    using Result = CBusConnection::Result;
    const auto failure = [](Result result) {
        return result == Result::kNoAnswer ? Outcome::noAnswer : Outcome::noService;
    };
    CBusConnection bus;
    if (const Result opened = bus.Open(busAddress_, CBusConnection::Clock::now() + kAnswer); opened != Result::kDone) {
        return failure(opened);
    }
    const BusMessagePointer call(dbus_message_new_method_call(kService, kPath, kService, request));
    const dbus_uint64_t thread = static_cast<dbus_uint64_t>(tid);
    std::visit(
        [&](auto wanted) {
            const int type = std::is_signed_v<decltype(wanted)> ? DBUS_TYPE_INT32 : DBUS_TYPE_UINT32;
            dbus_message_append_args(call.get(), DBUS_TYPE_UINT64, &thread, type, &wanted, DBUS_TYPE_INVALID);
        },
        priority);
    BusMessagePointer reply;
    if (const Result asked = bus.Call(*call, CBusConnection::Clock::now() + kAnswer, reply); asked != Result::kDone) {
        return failure(asked);
    }
    if (dbus_message_is_error(reply.get(), DBUS_ERROR_SERVICE_UNKNOWN) != 0) {
        return Outcome::noService;
    }
    return dbus_message_get_type(reply.get()) == DBUS_MESSAGE_TYPE_METHOD_RETURN ? Outcome::granted : Outcome::refused;
}

}  // namespace NK
