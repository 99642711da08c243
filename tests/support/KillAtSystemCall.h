// A process that is killed at one of its system calls.
#pragma once

#include <signal.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

namespace KivoraTest {

enum class EndOfRun { kKilled, kFinished, kNotAllowed };

/// Runs `body` in a copy of this process, which has one thread, and kills that at its Nth stop, 1-based, at a system
/// call: each call stops twice, before it does anything and when it has done its work. The stops count from where the
/// body calls the function that it is given. kFinished when the body has ended before, kNotAllowed where the system
/// lets no process be traced.
inline EndOfRun KillAtSystemCall(int number, const std::function<void(const std::function<void()>& begin)>& body) {
    constexpr int kSystemCallStop = SIGTRAP | 0x80;
    constexpr int kCannotBeTraced = 77;
    const pid_t child = ::fork();
    if (child == 0) {
        body([] {
            if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
                ::_exit(kCannotBeTraced);
            }
            ::raise(SIGSTOP);
        });
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (!WIFSTOPPED(status)) {
        return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? EndOfRun::kFinished : EndOfRun::kNotAllowed;
    }
    ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    for (long signal = 0, stops = 0;;) {
        ::ptrace(PTRACE_SYSCALL, child, nullptr, signal);
        ::waitpid(child, &status, 0);
        if (!WIFSTOPPED(status)) {
            return EndOfRun::kFinished;
        }
        const bool isCall = WSTOPSIG(status) == kSystemCallStop;
        signal = isCall ? 0 : WSTOPSIG(status);
        if (isCall && ++stops == number) {
            ::kill(child, SIGKILL);
            ::waitpid(child, &status, 0);
            return EndOfRun::kKilled;
        }
    }
}

}  // namespace KivoraTest
