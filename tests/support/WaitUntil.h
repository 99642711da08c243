// Waits on a condition instead of a time.
#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <thread>

namespace KivoraTest {

/// False when the condition has not come true within the limit, which only a failure makes last that long. It is asked
/// again after one millisecond, then less often, as it may be dear.
inline bool WaitUntil(const std::function<bool()>& condition,
                      std::chrono::milliseconds limit = std::chrono::minutes(1)) {
    constexpr std::chrono::milliseconds kLongestPause{8};
    const auto end = std::chrono::steady_clock::now() + limit;
    for (std::chrono::milliseconds pause{1}; !condition(); pause = std::min(2 * pause, kLongestPause)) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(pause);
    }
    return true;
}

}  // namespace KivoraTest
