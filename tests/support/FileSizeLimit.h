// A disk that is full.
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace KivoraTest {

/// While it lives the system refuses to let a file of this process grow above `bytes`, as a full disk would.
class CFileSizeLimit {
public:
    explicit CFileSizeLimit(rlim_t bytes) : previousHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &previous_);
        const rlimit limit{bytes, previous_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~CFileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &previous_);
        std::signal(SIGXFSZ, previousHandler_);
    }
    CFileSizeLimit(const CFileSizeLimit&) = delete;
    CFileSizeLimit& operator=(const CFileSizeLimit&) = delete;

private:
    rlimit previous_{};
    void (*previousHandler_)(int);
};

}  // namespace KivoraTest
