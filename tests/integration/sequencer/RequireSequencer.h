// What every test against the ALSA sequencer asks first.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>

#include "support/SequencerClient.h"
#include "support/WaitUntil.h"

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

}  // namespace KivoraTest
