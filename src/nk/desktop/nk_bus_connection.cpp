#include "nk/desktop/nk_bus_connection.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <optional>

namespace NK {

namespace {

constexpr int kRetryMs = 1;
constexpr std::size_t kChunk = 4096;
constexpr std::size_t kMaxReceived = 1024 * 1024;  // more than any answer that is asked for here

using Clock = CBusConnection::Clock;
using Result = CBusConnection::Result;

int MillisecondsUntil(Clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return left > 0 ? static_cast<int>(left) : 0;
}

/// The name of a socket in the form of the system; in the abstract name space it begins with a zero byte.
std::optional<std::string> SocketNameOf(DBusAddressEntry* entry) {
    if (std::strcmp(dbus_address_entry_get_method(entry), "unix") != 0) {
        return std::nullopt;
    }
    if (const char* const path = dbus_address_entry_get_value(entry, "path")) {
        return path;
    }
    if (const char* const name = dbus_address_entry_get_value(entry, "abstract")) {
        return std::string(1, '\0') + name;
    }
    const char* const folder = std::getenv("XDG_RUNTIME_DIR");
    if (dbus_address_entry_get_value(entry, "runtime") != nullptr && folder != nullptr) {
        return std::string(folder) + "/bus";
    }
    return std::nullopt;
}

std::optional<std::string> SocketNameOf(const std::string& address) {
    DBusAddressEntry** entries = nullptr;
    int count = 0;
    if (dbus_parse_address(address.c_str(), &entries, &count, nullptr) == 0) {
        return std::nullopt;
    }
    std::optional<std::string> name;
    for (int i = 0; i < count && !name; ++i) {
        name = SocketNameOf(entries[i]);
    }
    dbus_address_entries_free(entries);
    return name;
}

std::string ToHex(const std::string& text) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string hex;
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        hex += kDigits[code >> 4];
        hex += kDigits[code & 15];
    }
    return hex;
}

}  // namespace

bool IsLocalBus(const std::string& address) {
    return SocketNameOf(address).has_value();
}

CBusConnection::~CBusConnection() {
    if (socket_ >= 0) {
        close(socket_);
    }
}

Result CBusConnection::Wait(short events, Clock::time_point deadline) const {
    pollfd wanted{socket_, events, 0};
    int count = 0;
    do {
        count = poll(&wanted, 1, MillisecondsUntil(deadline));
    } while (count < 0 && errno == EINTR);
    return count > 0 ? Result::kDone : count == 0 ? Result::kNoAnswer : Result::kNoBus;
}

Result CBusConnection::Connect(const std::string& address, Clock::time_point deadline) {
    const std::optional<std::string> name = SocketNameOf(address);
    sockaddr_un place{};
    if (!name || name->size() >= sizeof place.sun_path) {
        return Result::kNoBus;
    }
    place.sun_family = AF_UNIX;
    std::memcpy(place.sun_path, name->data(), name->size());
    const bool isAbstract = (*name)[0] == '\0';
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name->size() + (isAbstract ? 0U : 1U));
    socket_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    while (connect(socket_, reinterpret_cast<const sockaddr*>(&place), size) != 0) {
        // "Try again": so many wait to be taken that there is no room for one more.
        if (errno != EAGAIN && errno != EINTR) {
            return Result::kNoBus;
        }
        if (MillisecondsUntil(deadline) == 0) {
            return Result::kNoAnswer;
        }
        poll(nullptr, 0, kRetryMs);
    }
    return Result::kDone;
}

Result CBusConnection::Send(const char* bytes, std::size_t count, Clock::time_point deadline) {
    while (count > 0) {
        const ssize_t sent = send(socket_, bytes, count, MSG_NOSIGNAL);
        if (sent > 0) {
            bytes += sent;
            count -= static_cast<std::size_t>(sent);
        } else if (errno == EAGAIN) {
            if (const Result result = Wait(POLLOUT, deadline); result != Result::kDone) {
                return result;
            }
        } else if (errno != EINTR) {
            return Result::kNoBus;
        }
    }
    return Result::kDone;
}

Result CBusConnection::Receive(Clock::time_point deadline) {
    // A bus that never stops talking is waited for no longer than a silent one.
    if (Clock::now() >= deadline) {
        return Result::kNoAnswer;
    }
    if (const Result result = Wait(POLLIN, deadline); result != Result::kDone) {
        return result;
    }
    char chunk[kChunk];
    const ssize_t count = recv(socket_, chunk, sizeof chunk, 0);
    if (count > 0) {
        received_.append(chunk, static_cast<std::size_t>(count));
        return received_.size() <= kMaxReceived ? Result::kDone : Result::kNoBus;
    }
    return count < 0 && (errno == EAGAIN || errno == EINTR) ? Result::kDone : Result::kNoBus;
}

Result CBusConnection::Authenticate(Clock::time_point deadline) {
    constexpr const char* kLineEnd = "\r\n";
    constexpr const char kBegin[] = "BEGIN\r\n";
    const std::string request = std::string(1, '\0') + "AUTH EXTERNAL " + ToHex(std::to_string(geteuid())) + kLineEnd;
    Result result = Send(request.data(), request.size(), deadline);
    while (result == Result::kDone && received_.find(kLineEnd) == std::string::npos) {
        result = Receive(deadline);
    }
    if (result != Result::kDone) {
        return result;
    }
    if (!received_.starts_with("OK")) {
        return Result::kNoBus;
    }
    received_.erase(0, received_.find(kLineEnd) + std::strlen(kLineEnd));
    return Send(kBegin, sizeof kBegin - 1, deadline);
}

Result CBusConnection::Open(const std::string& address, Clock::time_point deadline) {
    Result result = Connect(address, deadline);
    if (result == Result::kDone) {
        result = Authenticate(deadline);
    }
    if (result != Result::kDone) {
        return result;
    }
    const BusMessagePointer hello(
        dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "Hello"));
    BusMessagePointer reply;
    result = Call(*hello, deadline, reply);
    return result == Result::kDone && dbus_message_get_type(reply.get()) == DBUS_MESSAGE_TYPE_ERROR ? Result::kNoBus
                                                                                                    : result;
}

Result CBusConnection::Call(DBusMessage& call, Clock::time_point deadline, BusMessagePointer& reply) {
    dbus_message_set_serial(&call, ++serial_);
    char* bytes = nullptr;
    int size = 0;
    if (dbus_message_marshal(&call, &bytes, &size) == 0) {
        return Result::kNoBus;
    }
    Result result = Send(bytes, static_cast<std::size_t>(size), deadline);
    dbus_free(bytes);
    while (result == Result::kDone) {
        const int needed = dbus_message_demarshal_bytes_needed(received_.data(), static_cast<int>(received_.size()));
        if (needed < 0) {
            return Result::kNoBus;
        }
        if (needed == 0 || static_cast<std::size_t>(needed) > received_.size()) {
            result = Receive(deadline);
            continue;
        }
        reply.reset(dbus_message_demarshal(received_.data(), needed, nullptr));
        received_.erase(0, static_cast<std::size_t>(needed));
        if (!reply) {
            return Result::kNoBus;
        }
        if (dbus_message_get_reply_serial(reply.get()) == serial_) {  // other messages are the bus's announcements
            break;
        }
    }
    return result;
}

}  // namespace NK
