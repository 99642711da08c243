#include "nk/desktop/nk_session_bus.h"

#include <dbus/dbus.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "support/SilentSocket.h"

namespace {

constexpr std::uint32_t kLimitMs = 20;
constexpr const char* kSessionBus = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* kAssistiveBus = "AT_SPI_BUS_ADDRESS";

/// Gives the variables back at the end.
class SilentBuses : public testing::Test {
protected:
    SilentBuses() {
        for (Kept& kept : kept_) {
            if (const char* const value = std::getenv(kept.name)) {
                kept.value = value;
            }
            unsetenv(kept.name);
        }
    }
    ~SilentBuses() override {
        for (const Kept& kept : kept_) {
            kept.value ? setenv(kept.name, kept.value->c_str(), 1) : unsetenv(kept.name);
        }
    }
    static std::string Get(const char* name) {
        const char* const value = std::getenv(name);
        return value != nullptr ? value : "(none)";
    }

private:
    struct Kept {
        const char* name;
        std::optional<std::string> value = std::nullopt;
    };
    Kept kept_[3] = {{kSessionBus}, {kAssistiveBus}, {"XDG_RUNTIME_DIR"}};
};

TEST_F(SilentBuses, OneThatNeverAnswersIsLeftOut) {
    const KivoraTest::CSilentSocket bus;
    for (const char* const variable : {kSessionBus, kAssistiveBus}) {
        setenv(variable, bus.GetAddress().c_str(), 1);
        NK::LeaveOutSilentBuses(kLimitMs);
        EXPECT_EQ(Get(variable), "disabled:");
        EXPECT_EQ(dbus_connection_open_private(Get(variable).c_str(), nullptr), nullptr);
    }
}

TEST_F(SilentBuses, SoIsOneThatFallsSilentAfterTheAuthentication) {
    const KivoraTest::CSilentSocket bus("OK 0123456789abcdef0123456789abcdef\r\n");
    setenv(kSessionBus, bus.GetAddress().c_str(), 1);
    NK::LeaveOutSilentBuses(kLimitMs);
    EXPECT_EQ(Get(kSessionBus), "disabled:");
}

TEST_F(SilentBuses, SoIsOneThatSaysEverythingButTheAnswer) {
    DBusMessage* const announcement = dbus_message_new_signal("/a", "a.b", "C");
    dbus_message_set_serial(announcement, 1);
    char* bytes = nullptr;
    int size = 0;
    ASSERT_NE(dbus_message_marshal(announcement, &bytes, &size), 0);
    std::string chatter;
    for (int i = 0; i < 500; ++i) {  // faster than it is read
        chatter.append(bytes, static_cast<std::size_t>(size));
    }
    dbus_free(bytes);
    dbus_message_unref(announcement);

    const KivoraTest::CSilentSocket bus("OK 0123456789abcdef0123456789abcdef\r\n", chatter);
    setenv(kSessionBus, bus.GetAddress().c_str(), 1);
    NK::LeaveOutSilentBuses(kLimitMs);
    EXPECT_EQ(Get(kSessionBus), "disabled:");
}

TEST_F(SilentBuses, WhatDoesNotKeepAnybodyWaitingStays) {
    const KivoraTest::CSilentSocket rejecting("REJECTED\r\n");
    for (const std::string& address :
         {std::string("unix:path=/nonexistent/bus"), std::string("autolaunch:"), std::string("disabled:"),
          std::string("no address"), std::string("tcp:host=localhost,port=1"), rejecting.GetAddress()}) {
        setenv(kSessionBus, address.c_str(), 1);
        NK::LeaveOutSilentBuses(kLimitMs);
        EXPECT_EQ(Get(kSessionBus), address);
    }
    unsetenv(kSessionBus);
    NK::LeaveOutSilentBuses(kLimitMs);
    EXPECT_EQ(Get(kSessionBus), "(none)");
}

}  // namespace
