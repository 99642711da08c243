#include "nk/nk_standard_streams.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "nk/nk_logger.h"

namespace {

/// The standard output becomes a pipe that nobody reads.
void BreakOutput() {
    int ends[2] = {-1, -1};
    if (pipe(ends) != 0) {
        std::exit(2);
    }
    dup2(ends[1], STDOUT_FILENO);
    close(ends[0]);
    close(ends[1]);
}

class StandardStreams : public testing::Test {
protected:
    StandardStreams() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

TEST_F(StandardStreams, ALineThatNobodyReadsEndsTheProgramOtherwise) {
    const auto log = [](bool secured) {
        signal(SIGPIPE, SIG_DFL);
        BreakOutput();
        if (secured) {
            NK::SecureStandardStreams();
        }
        NK::CConsoleLogger logger;
        logger.Write(L"nobody reads it");
        logger.Write(L"nor this");
        std::exit(0);
    };
    EXPECT_EXIT(log(false), testing::KilledBySignal(SIGPIPE), "");
    EXPECT_EXIT(log(true), testing::ExitedWithCode(0), "");
}

TEST_F(StandardStreams, NoFileGetsTheNumberOfAClosedStream) {
    EXPECT_EXIT(
        {
            for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
                close(stream);
            }
            NK::SecureStandardStreams();
            const int file = open("/dev/null", O_RDONLY);
            std::exit(file > STDERR_FILENO ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(StandardStreams, ProgramsThatAreStartedGetTheUsualBehaviour) {
    EXPECT_EXIT(
        {
            signal(SIGPIPE, SIG_DFL);
            NK::SecureStandardStreams();
            // The shell's own kill would be caught if the handler were "ignore".
            execl("/bin/sh", "sh", "-c", "kill -PIPE $$", nullptr);
            std::exit(2);
        },
        testing::KilledBySignal(SIGPIPE), "");
}

TEST_F(StandardStreams, WhatWasIgnoredStaysIgnored) {
    EXPECT_EXIT(
        {
            signal(SIGPIPE, SIG_IGN);
            NK::SecureStandardStreams();
            struct sigaction action {};
            sigaction(SIGPIPE, nullptr, &action);
            std::exit(action.sa_handler == SIG_IGN ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace
