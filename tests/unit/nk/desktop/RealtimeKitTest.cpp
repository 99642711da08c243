#include "nk/desktop/nk_realtime_kit.h"

#include <dbus/dbus.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

#include "support/SilentSocket.h"

namespace {

using NK::CRealtimeKit;

/// A message bus with a RealtimeKit of the test's on it, on a socket of its own.
class CFakeBus {
public:
    enum class Answer { yes, no, noSuchService, silence };

    explicit CFakeBus(Answer answer, bool greets = true) : answer_(answer), greets_(greets) {
        dbus_threads_init_default();
        server_ = dbus_server_listen("unix:tmpdir=/tmp", nullptr);
        dbus_server_set_new_connection_function(server_, &CFakeBus::OnConnection, this, nullptr);
        dbus_server_set_watch_functions(server_, &CFakeBus::AddWatch, &CFakeBus::RemoveWatch, nullptr, this, nullptr);
        thread_ = std::thread([this] { Serve(); });
    }
    ~CFakeBus() {
        stop_ = true;
        thread_.join();
        DropConnection();
        dbus_server_disconnect(server_);
        dbus_server_unref(server_);
    }
    CFakeBus(const CFakeBus&) = delete;
    CFakeBus& operator=(const CFakeBus&) = delete;

    std::string GetAddress() const {
        char* const address = dbus_server_get_address(server_);
        std::string result(address);
        dbus_free(address);
        return result;
    }

    std::atomic<int> connections{0};
    std::atomic<std::uint64_t> thread{0};
    std::atomic<std::uint32_t> priority{0};
    std::atomic<std::int32_t> nice{0};

private:
    static dbus_bool_t AddWatch(DBusWatch* watch, void* self) {
        static_cast<CFakeBus*>(self)->watch_ = watch;
        return TRUE;
    }
    static void RemoveWatch(DBusWatch*, void* self) { static_cast<CFakeBus*>(self)->watch_ = nullptr; }
    static void OnConnection(DBusServer*, DBusConnection* connection, void* self) {
        auto* const bus = static_cast<CFakeBus*>(self);
        bus->DropConnection();
        bus->connection_ = dbus_connection_ref(connection);
        ++bus->connections;
    }
    void DropConnection() {
        if (connection_ != nullptr) {
            dbus_connection_close(connection_);
            dbus_connection_unref(connection_);
            connection_ = nullptr;
        }
    }

    void Serve() {
        while (!stop_) {
            if (watch_ != nullptr) {
                dbus_watch_handle(watch_, DBUS_WATCH_READABLE);
            }
            if (connection_ == nullptr) {
                std::this_thread::yield();
                continue;
            }
            dbus_connection_read_write(connection_, 1);
            while (DBusMessage* const message = dbus_connection_pop_message(connection_)) {
                Reply(message);
                dbus_message_unref(message);
            }
        }
    }

    void Reply(DBusMessage* message) {
        if (dbus_message_is_method_call(message, DBUS_INTERFACE_DBUS, "Hello") != 0) {
            const char* const name = ":1.1";
            if (greets_) {
                DBusMessage* const reply = dbus_message_new_method_return(message);
                dbus_message_append_args(reply, DBUS_TYPE_STRING, &name, DBUS_TYPE_INVALID);
                Send(reply);
            }
            return;
        }
        const char* const service = "org.freedesktop.RealtimeKit1";
        dbus_uint64_t number = 0;
        dbus_uint32_t wanted = 0;
        dbus_int32_t wantedNice = 0;
        if (dbus_message_is_method_call(message, service, "MakeThreadRealtime") != 0) {
            dbus_message_get_args(message, nullptr, DBUS_TYPE_UINT64, &number, DBUS_TYPE_UINT32, &wanted,
                                  DBUS_TYPE_INVALID);
        } else if (dbus_message_is_method_call(message, service, "MakeThreadHighPriority") != 0) {
            dbus_message_get_args(message, nullptr, DBUS_TYPE_UINT64, &number, DBUS_TYPE_INT32, &wantedNice,
                                  DBUS_TYPE_INVALID);
        } else {
            return;
        }
        thread = number;
        priority = wanted;
        nice = wantedNice;
        if (answer_ == Answer::yes) {
            Send(dbus_message_new_method_return(message));
        } else if (answer_ == Answer::no) {
            Send(dbus_message_new_error(message, DBUS_ERROR_ACCESS_DENIED, "no"));
        } else if (answer_ == Answer::noSuchService) {
            Send(dbus_message_new_error(message, DBUS_ERROR_SERVICE_UNKNOWN, "no"));
        }
    }
    void Send(DBusMessage* message) {
        dbus_connection_send(connection_, message, nullptr);
        dbus_connection_flush(connection_);
        dbus_message_unref(message);
    }

    const Answer answer_;
    const bool greets_;
    DBusServer* server_ = nullptr;
    DBusWatch* watch_ = nullptr;
    DBusConnection* connection_ = nullptr;
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

TEST(RealtimeKit, AsksForTheThreadAndThePriority) {
    CFakeBus bus(CFakeBus::Answer::yes);
    CRealtimeKit kit(bus.GetAddress());
    EXPECT_TRUE(kit.MakeThreadRealtime(4711, 15));
    EXPECT_EQ(bus.thread, 4711U);
    EXPECT_EQ(bus.priority, 15U);
    EXPECT_TRUE(kit.MakeThreadRealtime(4712, 10));
    EXPECT_EQ(bus.thread, 4712U);
}

TEST(RealtimeKit, AsksForANiceValue) {
    CFakeBus bus(CFakeBus::Answer::yes);
    CRealtimeKit kit(bus.GetAddress());
    EXPECT_TRUE(kit.MakeThreadHighPriority(4711, -5));
    EXPECT_EQ(bus.thread, 4711U);
    EXPECT_EQ(bus.nice, -5);
    EXPECT_EQ(bus.priority, 0U);
}

TEST(RealtimeKit, ARefusalIsFalseAndTheNextThreadMayAsk) {
    CFakeBus bus(CFakeBus::Answer::no);
    CRealtimeKit kit(bus.GetAddress());
    for (int i = 1; i <= 5; ++i) {
        EXPECT_FALSE(kit.MakeThreadRealtime(i, 15));
        EXPECT_EQ(bus.connections, i);
    }
}

TEST(RealtimeKit, AsksNoMoreWhereTheServiceIsMissing) {
    CFakeBus bus(CFakeBus::Answer::noSuchService);
    CRealtimeKit kit(bus.GetAddress());
    EXPECT_FALSE(kit.MakeThreadRealtime(1, 15));
    EXPECT_FALSE(kit.MakeThreadRealtime(2, 15));
    EXPECT_EQ(bus.connections, 1);
}

TEST(RealtimeKit, AsksNoMoreAfterThreeTimeOuts) {
    CFakeBus bus(CFakeBus::Answer::silence);
    CRealtimeKit kit(bus.GetAddress());
    for (int i = 0; i < 5; ++i) {
        EXPECT_FALSE(kit.MakeThreadRealtime(1, 15));
    }
    EXPECT_EQ(bus.connections, 3);
}

TEST(RealtimeKit, GivesUpOnABusThatDoesNotGreet) {
    CFakeBus bus(CFakeBus::Answer::yes, false);
    CRealtimeKit kit(bus.GetAddress());
    EXPECT_FALSE(kit.MakeThreadRealtime(1, 15));
    EXPECT_EQ(bus.thread, 0U);
}

TEST(RealtimeKit, ABusThatTakesTheConnectionAndSaysNothingIsGivenUp) {
    for (const char* const words : {"", "OK", "OK 0123456789abcdef0123456789abcdef\r\n"}) {
        const KivoraTest::CSilentSocket bus(words);
        // Also when nobody takes one connection more.
        for (int i = 0; i < 2 + KivoraTest::CSilentSocket::kBacklog; ++i) {
            CRealtimeKit kit(bus.GetAddress());
            EXPECT_FALSE(kit.MakeThreadRealtime(1, 15));
        }
    }
}

TEST(RealtimeKit, ABusThatSpeaksSomethingElseIsNone) {
    for (const char* const words : {"REJECTED\r\n", "HTTP/1.1 400 Bad Request\r\n",
                                    "OK 0\r\nno message at all, and long enough to be taken for one's head\r\n"}) {
        const KivoraTest::CSilentSocket bus(words);
        CRealtimeKit kit(bus.GetAddress());
        EXPECT_FALSE(kit.MakeThreadRealtime(1, 15));
    }
}

TEST(RealtimeKit, IsFalseWithoutABus) {
    for (const char* const address : {"unix:path=/nonexistent/bus", "no address", ""}) {
        CRealtimeKit kit(address);
        EXPECT_FALSE(kit.MakeThreadRealtime(1, 15));
        EXPECT_FALSE(kit.MakeThreadRealtime(1, 15));
    }
}

}  // namespace
