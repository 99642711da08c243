// Waiting for input at descriptors of the system's.
#pragma once

#include <vector>

namespace NK::Platform {

/// Sleeps until one of the descriptors has input or somebody wakes the sleeper; in between it costs nothing.
class CDescriptorWait {
public:
    enum class Outcome {
        kInput,
        kWoken,
        kBroken,  ///< a descriptor or the system has failed; every further wait ends so at once
    };

    /// The descriptors stay the caller's and outlive this object.
    explicit CDescriptorWait(std::vector<int> descriptors);
    ~CDescriptorWait();
    CDescriptorWait(const CDescriptorWait&) = delete;
    CDescriptorWait& operator=(const CDescriptorWait&) = delete;

    /// For one thread at a time. A wake-up goes before input.
    Outcome Wait() noexcept;
    /// For good: the wait in progress ends, and so does every later one at once. [any]
    void Wake() noexcept;

private:
    const std::vector<int> descriptors_;
    const int wakeUp_;
};

}  // namespace NK::Platform
