#include "nk/platform/platform_descriptor_wait.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>

namespace NK::Platform {

CDescriptorWait::CDescriptorWait(std::vector<int> descriptors)
    : descriptors_(std::move(descriptors)), wakeUp_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
}

CDescriptorWait::~CDescriptorWait() {
    if (wakeUp_ >= 0) {
        close(wakeUp_);
    }
}

CDescriptorWait::Outcome CDescriptorWait::Wait() noexcept {
    constexpr std::size_t kMost = 16;
    if (wakeUp_ < 0 || descriptors_.size() >= kMost) {
        return Outcome::kBroken;
    }
    pollfd polled[kMost]{};
    const std::size_t count = descriptors_.size() + 1;
    polled[0] = {wakeUp_, POLLIN, 0};
    std::transform(descriptors_.begin(), descriptors_.end(), polled + 1, [](int descriptor) {
        return pollfd{descriptor, POLLIN, 0};
    });
    int result = 0;
    do {
        result = poll(polled, count, -1);
    } while (result < 0 && errno == EINTR);
    if (result < 0) {
        return Outcome::kBroken;
    }
    if (polled[0].revents != 0) {
        return Outcome::kWoken;
    }
    const bool hasInput =
        std::any_of(polled + 1, polled + count, [](const pollfd& one) { return (one.revents & POLLIN) != 0; });
    return hasInput ? Outcome::kInput : Outcome::kBroken;
}

void CDescriptorWait::Wake() noexcept {
    const std::uint64_t one = 1;
    static_cast<void>(!write(wakeUp_, &one, sizeof one));
}

}  // namespace NK::Platform
