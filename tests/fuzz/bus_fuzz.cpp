// Any bytes as what a message bus says: nobody waits on it, and an answer is an answer.
#include <dbus/dbus.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <thread>

#include "nk/desktop/nk_bus_connection.h"

namespace {

using NK::CBusConnection;
using Result = CBusConnection::Result;

constexpr std::chrono::seconds kDeadline{5};

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// A bus that says one thing to whoever comes, and hangs up.
class Bus {
public:
    Bus() {
        sockaddr_un place{};
        place.sun_family = AF_UNIX;
        // A name that the system chooses, in the abstract name space.
        Require(bind(listener_, reinterpret_cast<const sockaddr*>(&place), sizeof place.sun_family) == 0);
        socklen_t size = sizeof place;
        Require(getsockname(listener_, reinterpret_cast<sockaddr*>(&place), &size) == 0 && listen(listener_, 1) == 0);
        name_.assign(place.sun_path + 1, size - offsetof(sockaddr_un, sun_path) - 1);
    }

    std::string GetAddress() const { return "unix:abstract=" + name_; }

    void SayTo(const std::string& words) const {
        const int client = accept(listener_, nullptr, nullptr);
        static_cast<void>(send(client, words.data(), words.size(), MSG_NOSIGNAL));
        shutdown(client, SHUT_WR);
        char heard[512];
        while (recv(client, heard, sizeof heard, 0) > 0) {
        }
        close(client);
    }

private:
    const int listener_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    std::string name_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Bus bus;
    const std::string words(reinterpret_cast<const char*>(data), size);
    std::thread speaker([&] { bus.SayTo(words); });
    {
        CBusConnection connection;
        const CBusConnection::Clock::time_point deadline = CBusConnection::Clock::now() + kDeadline;
        Result result = connection.Open(bus.GetAddress(), deadline);
        Require(result != Result::kNoAnswer);  // it hangs up
        if (result == Result::kDone) {
            const NK::BusMessagePointer call(dbus_message_new_method_call("a.b", "/", "a.b", "C"));
            NK::BusMessagePointer reply;
            result = connection.Call(*call, deadline, reply);
            Require(result == Result::kNoBus ||
                    (result == Result::kDone && dbus_message_get_reply_serial(reply.get()) != 0));
        }
    }
    speaker.join();
    return 0;
}
