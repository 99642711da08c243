#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "nk/nk_shell.h"
#include "nk/platform/platform_sleep.h"

namespace NK {
namespace {

constexpr std::uint32_t kLongestWaitMs = 3000;
constexpr std::uint32_t kPollMs = 10;

/// Starts the opener in a session of its own, with no signal blocked and an empty standard input.
std::optional<pid_t> Spawn(std::string target) {
    std::string program = "xdg-open";
    char* const arguments[] = {program.data(), target.data(), nullptr};
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK);
    pid_t child = 0;
    const int result = posix_spawnp(&child, program.c_str(), &files, &attributes, arguments, environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return result == 0 ? std::optional(child) : std::nullopt;
}

/// The exit status of `child` once it has ended.
std::optional<int> Reap(pid_t child) {
    int status = 0;
    const pid_t ended = waitpid(child, &status, WNOHANG);
    if (ended == 0 || (ended < 0 && errno == EINTR)) {
        return std::nullopt;
    }
    return ended == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::mutex busyMutex;
std::vector<pid_t> busyChildren;

}  // namespace

bool OpenWithShell(const CString& target) {
    {
        const std::lock_guard guard(busyMutex);
        std::erase_if(busyChildren, [](pid_t child) { return Reap(child).has_value(); });
    }
    std::string utf8 = target.ToUtf8();
    if (utf8.empty()) {
        return false;
    }
    if (utf8.front() == '-') {
        // A file, not an option.
        utf8.insert(0, "./");
    }
    const std::optional<pid_t> child = Spawn(std::move(utf8));
    if (!child) {
        return false;
    }
    for (std::uint32_t waitedMs = 0; waitedMs < kLongestWaitMs; waitedMs += kPollMs) {
        if (const std::optional<int> status = Reap(*child)) {
            return *status == 0;
        }
        Platform::Sleep(kPollMs);
    }
    const std::lock_guard guard(busyMutex);
    busyChildren.push_back(*child);
    return true;
}

}  // namespace NK
