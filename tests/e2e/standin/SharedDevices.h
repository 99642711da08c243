// The devices that a test lends to the stand-in for PortMidi: the layout of a file that both map. The test names it in
// KIVORA_STANDIN_DEVICES and makes it before the program starts. All counters go up and wrap.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace Standin {

inline constexpr int kOutputCount = 2;  ///< devices 0 and 1
inline constexpr int kInput = 2;
inline constexpr int kDeviceCount = 3;
inline constexpr std::uint32_t kInputSize = 1U << 12;
inline constexpr std::uint32_t kWrittenSize = 1U << 22;

/// Messages are packed as PortMidi packs them, status lowest; a written one has its output in the highest byte.
struct TSharedDevices {
    /// Odd while the device is there; a stream that was opened at another count is one of a device that went away.
    std::atomic<std::uint32_t> presence[kDeviceCount];
    std::atomic<std::uint32_t> writesToFail;   ///< by the test; the device lives on
    std::atomic<std::uint32_t> overflows;      ///< by the test: how often the input's buffer is to run over
    std::atomic<std::uint32_t> overflowsTold;  ///< by the stand-in
    std::atomic<std::uint32_t> inputRounds;    ///< how often the open input was polled
    /// The presence at which the device is open; 0 where it is not, or a write has failed since.
    std::atomic<std::uint32_t> openAs[kDeviceCount];
    std::atomic<std::uint32_t> played;  ///< by the test: messages put into `input`
    std::atomic<std::uint32_t> read;    ///< by the stand-in: of these, taken
    std::atomic<std::uint32_t> input[kInputSize];
    std::atomic<std::uint32_t> writtenCount;
    std::atomic<std::uint32_t> written[kWrittenSize];  ///< the first of them; what comes after is a refused write
};

static_assert(std::atomic<std::uint32_t>::is_always_lock_free);

}  // namespace Standin
