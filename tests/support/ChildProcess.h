// A program that a test starts and ends.
#pragma once

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

extern char** environ;

namespace KivoraTest {

/// Found by PATH, with the environment of the test. Ended with the object.
class CChildProcess {
public:
    explicit CChildProcess(std::vector<std::string> arguments) {
        std::vector<char*> pointers;
        for (std::string& argument : arguments) {
            pointers.push_back(argument.data());
        }
        pointers.push_back(nullptr);
        if (::posix_spawnp(&id_, pointers.front(), nullptr, nullptr, pointers.data(), environ) != 0) {
            throw std::runtime_error("cannot start " + arguments.front());
        }
    }
    ~CChildProcess() { End(SIGKILL); }
    CChildProcess(const CChildProcess&) = delete;
    CChildProcess& operator=(const CChildProcess&) = delete;

    pid_t GetId() const { return id_; }  ///< -1 once it was ended
    void Signal(int number) {
        if (id_ > 0) {
            ::kill(id_, number);
        }
    }
    /// Sends the signal and waits for the end.
    void End(int number = SIGTERM) {
        Signal(number);
        Wait();
    }
    /// Waits until it has ended by itself.
    void Wait() {
        if (const pid_t id = std::exchange(id_, -1); id > 0) {
            ::waitpid(id, nullptr, 0);
        }
    }

private:
    pid_t id_ = -1;
};

}  // namespace KivoraTest
