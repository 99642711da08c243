#include "nk/nk_end_request.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <thread>

namespace {

using NK::CEndRequest;

using Handler = void (*)(int);

Handler GetHandler(int signal) {
    struct sigaction action {};
    sigaction(signal, nullptr, &action);
    return action.sa_handler;
}

bool IsReadable(int descriptor) {
    pollfd waited{descriptor, POLLIN, 0};
    return poll(&waited, 1, 0) == 1 && (waited.revents & POLLIN) != 0;
}

/// The signal has its usual behaviour, whatever the tests were started by.
class EndRequest : public testing::TestWithParam<int> {
protected:
    EndRequest() : before_(signal(GetParam(), SIG_DFL)) {}
    ~EndRequest() override { signal(GetParam(), before_); }

private:
    Handler before_;
};

}  // namespace

TEST_P(EndRequest, IsToldInsteadOfEndingTheProgram) {
    const CEndRequest request;
    EXPECT_FALSE(request.IsRequested());
    EXPECT_FALSE(IsReadable(request.GetDescriptor()));
    errno = 1234;
    raise(GetParam());
    EXPECT_EQ(errno, 1234);
    EXPECT_TRUE(request.IsRequested());
    EXPECT_TRUE(IsReadable(request.GetDescriptor()));
    raise(GetParam());
    EXPECT_TRUE(IsReadable(request.GetDescriptor())) << "for good";
}

TEST_P(EndRequest, IsToldOfASignalToAnotherThread) {
    const CEndRequest request;
    std::thread([] { pthread_kill(pthread_self(), GetParam()); }).join();
    EXPECT_TRUE(request.IsRequested());
}

TEST_P(EndRequest, TheSignalBehavesAsBeforeAfterwards) {
    {
        const CEndRequest request;
        EXPECT_NE(GetHandler(GetParam()), SIG_DFL);
    }
    EXPECT_EQ(GetHandler(GetParam()), SIG_DFL);
}

TEST_P(EndRequest, ASignalThatWasIgnoredStaysIgnored) {
    signal(GetParam(), SIG_IGN);
    {
        const CEndRequest request;
        raise(GetParam());
        EXPECT_FALSE(request.IsRequested());
    }
    EXPECT_EQ(GetHandler(GetParam()), SIG_IGN);
}

TEST_P(EndRequest, AStartedProgramIsEndedByItAsUsual) {
    const CEndRequest request;
    const int status = std::system(("kill -" + std::to_string(GetParam()) + " $$").c_str());
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == GetParam()) << status;
    EXPECT_FALSE(request.IsRequested());
}

TEST_P(EndRequest, OneMadeLaterForgetsWhatWasRequestedBefore) {
    {
        const CEndRequest request;
        raise(GetParam());
        EXPECT_TRUE(request.IsRequested());
    }
    const CEndRequest request;
    EXPECT_FALSE(request.IsRequested());
}

INSTANTIATE_TEST_SUITE_P(Signals, EndRequest, testing::Values(SIGTERM, SIGINT, SIGHUP));
