// What every test against the ALSA sequencer asks first.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "support/SequencerClient.h"

namespace KivoraTest {

/// For SetUp(): skips the test where this machine has no sequencer, and fails it there when KIVORA_REQUIRE_SEQUENCER is
/// set.
inline void RequireSequencer() {
    if (HasSequencer()) {
        return;
    }
    if (std::getenv("KIVORA_REQUIRE_SEQUENCER") != nullptr) {
        FAIL() << "a sequencer is required, and this machine has none";
    }
    GTEST_SKIP() << "this machine has no ALSA sequencer";
}

/// False after a minute.
template <class Condition>
bool WaitUntil(const Condition& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

}  // namespace KivoraTest
