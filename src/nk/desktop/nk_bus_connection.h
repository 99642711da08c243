// A connection to a D-Bus message bus that never waits longer than it is told. [owner]
#pragma once

#include <dbus/dbus.h>

#include <chrono>
#include <memory>
#include <string>

namespace NK {

struct TReleaseBusMessage {
    void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};
using BusMessagePointer = std::unique_ptr<DBusMessage, TReleaseBusMessage>;

/// Speaks to a bus on a local socket, as the D-Bus Specification 0.42 has it ("Authentication Protocol", "Message
/// Protocol"). libdbus is asked for the messages only: what it offers for connecting waits without a limit for a bus
/// that takes a connection and never answers. For one thread.
class CBusConnection {
public:
    using Clock = std::chrono::steady_clock;
    enum class Result {
        kDone,
        kNoBus,    ///< nobody is there, speaks D-Bus or lets this user in; also once the bus has hung up
        kNoAnswer  ///< somebody is there, and the deadline has passed
    };

    CBusConnection() = default;
    ~CBusConnection();
    CBusConnection(const CBusConnection&) = delete;
    CBusConnection& operator=(const CBusConnection&) = delete;

    /// Connects, authenticates and says hello. The address is one in D-Bus's notation, or several with ";" between; of
    /// these the first local socket counts.
    Result Open(const std::string& address, Clock::time_point deadline);
    /// Sends a method call and waits for what it returns, an error message as well.
    Result Call(DBusMessage& call, Clock::time_point deadline, BusMessagePointer& reply);

private:
    Result Connect(const std::string& address, Clock::time_point deadline);
    Result Authenticate(Clock::time_point deadline);
    Result Send(const char* bytes, std::size_t count, Clock::time_point deadline);
    /// Appends what comes to `received_`.
    Result Receive(Clock::time_point deadline);
    Result Wait(short events, Clock::time_point deadline) const;

    int socket_ = -1;
    dbus_uint32_t serial_ = 0;
    std::string received_;
};

/// Whether an address names a local socket, of which alone a CBusConnection can tell whether anybody answers.
bool IsLocalBus(const std::string& address);

}  // namespace NK
