// Which keys and mouse buttons are down, as the X server knows it.
#pragma once

#include <bitset>
#include <cstdint>
#include <optional>
#include <queue>

struct xcb_connection_t;

namespace NK {

struct TPressedInput {
    static constexpr int kLeftButton = 1;

    std::bitset<256> keys;     ///< by native scan code
    std::uint8_t buttons = 0;  ///< bit n - 1 for button n of 1..5

    /// A key with an unknown scan code (0) or one that no server has counts as down.
    bool IsKeyDown(std::uint32_t scanCode) const noexcept {
        return scanCode == 0 || scanCode >= keys.size() || keys[scanCode];
    }
    void NotePressedKey(std::uint32_t scanCode) noexcept {
        if (scanCode < keys.size()) {
            keys.set(scanCode);
        }
    }
    bool IsButtonDown(int number) const noexcept { return (buttons >> (number - 1) & 1) != 0; }
    bool IsAnythingDown() const noexcept { return buttons != 0 || keys.any(); }
};

/// Asks without waiting for the answer; what nobody took goes with the connection. [gui]
class CPressedInputQuery {
public:
    /// The connection is not owned, and another thread reads from it; null for none.
    explicit CPressedInputQuery(xcb_connection_t* server) noexcept : server_(server) {}
    CPressedInputQuery(const CPressedInputQuery&) = delete;
    CPressedInputQuery& operator=(const CPressedInputQuery&) = delete;

    /// What was asked before is not answered any more.
    void Ask();
    /// The answer to the last Ask(), once, when it has come.
    std::optional<TPressedInput> TakeAnswer();

private:
    struct TRequests {
        unsigned keys;
        unsigned pointer;
    };

    xcb_connection_t* const server_;
    std::queue<TRequests> asked_;  ///< the last of them is the one that counts
};

/// Whether an event of the X server, as XCB has it, tells that a window got the keyboard's focus. [any]
bool IsFocusIn(const void* xcbEvent) noexcept;

struct TKeyRelease {
    std::uint32_t scanCode;
    std::uint32_t atMs;  ///< the server's time
};

/// Of an event of the X server, as XCB has it. [any]
std::optional<TKeyRelease> AsKeyRelease(const void* xcbEvent) noexcept;

}  // namespace NK
