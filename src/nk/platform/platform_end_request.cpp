#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <iterator>

#include "nk/nk_end_request.h"

namespace NK {

namespace {

constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};

/// The process has one and keeps it: a handler may run in another thread until the very end.
int EventDescriptor() {
    static const int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    return descriptor;
}

// Both are set while no handler is installed.
std::atomic<int> handlersDescriptor{-1};
static_assert(decltype(handlersDescriptor)::is_always_lock_free, "signal handlers take no lock");
struct sigaction formerActions[std::size(kSignals)];

void OnSignal(int) {
    const int savedErrno = errno;
    const std::uint64_t one = 1;
    // It can fail only once it is readable for ever.
    static_cast<void>(!write(handlersDescriptor, &one, sizeof(one)));
    errno = savedErrno;
}

}  // namespace

CEndRequest::CEndRequest() {
    handlersDescriptor = EventDescriptor();
    std::uint64_t forgotten = 0;
    static_cast<void>(!read(handlersDescriptor, &forgotten, sizeof(forgotten)));
    struct sigaction action {};
    action.sa_handler = OnSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < std::size(kSignals); ++i) {
        sigaction(kSignals[i], nullptr, &formerActions[i]);
        if (formerActions[i].sa_handler != SIG_IGN && handlersDescriptor >= 0) {
            sigaction(kSignals[i], &action, nullptr);
        }
    }
}

CEndRequest::~CEndRequest() {
    for (std::size_t i = 0; i < std::size(kSignals); ++i) {
        sigaction(kSignals[i], &formerActions[i], nullptr);
    }
}

int CEndRequest::GetDescriptor() const noexcept {
    return handlersDescriptor;
}

bool CEndRequest::IsRequested() const noexcept {
    pollfd waited{handlersDescriptor, POLLIN, 0};
    return poll(&waited, 1, 0) == 1;
}

}  // namespace NK
