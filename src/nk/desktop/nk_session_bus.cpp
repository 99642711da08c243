#include <chrono>
#include <cstdlib>
#include <string>

#include "nk/desktop/nk_bus_connection.h"
#include "nk/desktop/nk_session_bus.h"

namespace NK {

namespace {

constexpr const char* kNoBus = "disabled:";  // a transport that there is not
constexpr const char* kPresetSessionBus = "unix:runtime=yes";

/// Other addresses than local sockets make libdbus start something; nobody waits on a silent one there.
bool IsSilent(const std::string& address, std::chrono::milliseconds limit) {
    CBusConnection bus;
    return IsLocalBus(address) &&
           bus.Open(address, CBusConnection::Clock::now() + limit) == CBusConnection::Result::kNoAnswer;
}

void LeaveOutIfSilent(const char* variable, const char* presetAddress, std::chrono::milliseconds limit) {
    const char* const value = std::getenv(variable);
    if (IsSilent(value != nullptr && *value != '\0' ? value : presetAddress, limit)) {
        ::setenv(variable, kNoBus, 1);
    }
}

}  // namespace

void LeaveOutSilentBuses(std::uint32_t limitMs) {
    const std::chrono::milliseconds limit(limitMs);
    LeaveOutIfSilent("DBUS_SESSION_BUS_ADDRESS", kPresetSessionBus, limit);
    LeaveOutIfSilent("AT_SPI_BUS_ADDRESS", "", limit);
}

}  // namespace NK
