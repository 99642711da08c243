// Whether somebody opens a file.
#pragma once

#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <filesystem>

namespace KivoraTest {

/// Watches one file, whoever opens it, from this object's making on.
class COpenWatch {
public:
    explicit COpenWatch(const std::filesystem::path& file) : descriptor_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        EXPECT_GE(inotify_add_watch(descriptor_, file.c_str(), IN_OPEN), 0);
    }
    ~COpenWatch() { close(descriptor_); }
    COpenWatch(const COpenWatch&) = delete;
    COpenWatch& operator=(const COpenWatch&) = delete;

    /// Since the last call.
    bool WasOpened() {
        inotify_event event{};
        bool opened = false;
        while (read(descriptor_, &event, sizeof event) > 0) {
            opened = true;
        }
        return opened;
    }

private:
    int descriptor_;
};

}  // namespace KivoraTest
