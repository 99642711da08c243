// A server that takes connections and says nothing, or less than it should.
#pragma once

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "support/TemporaryFolder.h"

namespace KivoraTest {

/// Stands on a socket in a folder of its own. To each connection it says `words` and no more, or then `chatter` again
/// and again for as long as somebody takes it; by default it does not even look at who waits there.
class CSilentSocket {
public:
    explicit CSilentSocket(const std::string& words = {}, const std::string& chatter = {})
        : words_(words), chatter_(chatter) {
        sockaddr_un place{};
        place.sun_family = AF_UNIX;
        const std::string path = folder_ / "socket";
        std::memcpy(place.sun_path, path.data(), path.size());
        server_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        EXPECT_EQ(bind(server_, reinterpret_cast<const sockaddr*>(&place), sizeof place), 0);
        EXPECT_EQ(listen(server_, kBacklog), 0);
        if (!words_.empty()) {
            thread_ = std::thread([this] { Serve(); });
        }
    }
    ~CSilentSocket() {
        stop_ = true;
        if (thread_.joinable()) {
            thread_.join();
        }
        for (const int connection : connections_) {
            close(connection);
        }
        close(server_);
    }
    CSilentSocket(const CSilentSocket&) = delete;
    CSilentSocket& operator=(const CSilentSocket&) = delete;

    std::string GetAddress() const { return "unix:path=" + (folder_ / "socket").native(); }
    /// Whether somebody has come whom nobody has looked at.
    bool HasVisitor() const {
        pollfd wanted{server_, POLLIN, 0};
        return poll(&wanted, 1, 0) > 0;
    }

    static constexpr int kBacklog = 2;

private:
    void Serve() {
        const int lookMs = chatter_.empty() ? 5 : 0;
        while (!stop_) {
            pollfd wanted{server_, POLLIN, 0};
            if (poll(&wanted, 1, lookMs) > 0) {
                connections_.push_back(accept4(server_, nullptr, nullptr, SOCK_CLOEXEC));
                EXPECT_EQ(send(connections_.back(), words_.data(), words_.size(), MSG_NOSIGNAL),
                          static_cast<ssize_t>(words_.size()));
            }
            for (std::size_t i = 0; i < connections_.size() && !chatter_.empty(); ++i) {
                static_cast<void>(send(connections_[i], chatter_.data(), chatter_.size(), MSG_NOSIGNAL | MSG_DONTWAIT));
            }
        }
    }

    CTemporaryFolder folder_;
    const std::string words_;
    const std::string chatter_;
    int server_ = -1;
    std::vector<int> connections_;
    std::atomic<bool> stop_ = false;
    std::thread thread_;
};

}  // namespace KivoraTest
