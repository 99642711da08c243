#include "nk/platform/platform_realtime_kit.h"

#include <dbus/dbus.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <type_traits>

namespace NK::Platform {
namespace {

constexpr int kAnswerMs = 50;
constexpr const char* kService = "org.freedesktop.RealtimeKit1";
constexpr const char* kPath = "/org/freedesktop/RealtimeKit1";

struct TCloseConnection {
    void operator()(DBusConnection* connection) const {
        dbus_connection_close(connection);
        dbus_connection_unref(connection);
    }
};
struct TReleaseMessage {
    void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};
using ConnectionPointer = std::unique_ptr<DBusConnection, TCloseConnection>;
using MessagePointer = std::unique_ptr<DBusMessage, TReleaseMessage>;

/// A D-Bus error with its lifetime.
class CError {
public:
    CError() { dbus_error_init(&error_); }
    ~CError() { dbus_error_free(&error_); }
    CError(const CError&) = delete;
    CError& operator=(const CError&) = delete;
    DBusError* Get() { return &error_; }
    bool Is(const char* name) const { return dbus_error_has_name(&error_, name) != 0; }

private:
    DBusError error_{};
};

std::string SystemBusAddress() {
    const char* const address = std::getenv("DBUS_SYSTEM_BUS_ADDRESS");
    return address != nullptr && *address != '\0' ? address : "unix:path=/run/dbus/system_bus_socket";
}

}  // namespace

CRealtimeKit& CRealtimeKit::Instance() {
    static CRealtimeKit instance(SystemBusAddress());
    return instance;
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
    static const bool threadsReady = dbus_threads_init_default() != 0;
    CError error;
    const ConnectionPointer bus(threadsReady ? dbus_connection_open_private(busAddress_.c_str(), error.Get())
                                             : nullptr);
    if (!bus) {
        return Outcome::noService;
    }
    const auto send = [&](DBusMessage* message) {
        return MessagePointer(dbus_connection_send_with_reply_and_block(bus.get(), message, kAnswerMs, error.Get()));
    };
    const auto failure = [&] {
        if (error.Is(DBUS_ERROR_NO_REPLY) || error.Is(DBUS_ERROR_TIMEOUT) || error.Is(DBUS_ERROR_TIMED_OUT)) {
            return Outcome::noAnswer;
        }
        return error.Is(DBUS_ERROR_SERVICE_UNKNOWN) || error.Is(DBUS_ERROR_DISCONNECTED) ? Outcome::noService
                                                                                         : Outcome::refused;
    };

    // dbus_bus_register() would wait up to 25 s for this answer.
    const MessagePointer hello(
        dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "Hello"));
    if (!send(hello.get())) {
        return failure() == Outcome::refused ? Outcome::noService : failure();
    }
    const MessagePointer call(dbus_message_new_method_call(kService, kPath, kService, request));
    const dbus_uint64_t thread = static_cast<dbus_uint64_t>(tid);
    std::visit(
        [&](auto wanted) {
            const int type = std::is_signed_v<decltype(wanted)> ? DBUS_TYPE_INT32 : DBUS_TYPE_UINT32;
            dbus_message_append_args(call.get(), DBUS_TYPE_UINT64, &thread, type, &wanted, DBUS_TYPE_INVALID);
        },
        priority);
    return send(call.get()) ? Outcome::granted : failure();
}

}  // namespace NK::Platform
