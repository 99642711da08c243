// Waits on a condition instead of a time.
#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace KivoraTest {

/// False when the condition has not come true within a minute, which only a failure makes last that long.
inline bool WaitUntil(const std::function<bool()>& condition) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > limit) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

}  // namespace KivoraTest
