#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include "nk/nk_standard_streams.h"

namespace NK {

void SecureStandardStreams() {
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (fcntl(stream, F_GETFD) < 0 && open("/dev/null", O_RDWR) != stream) {
            return;  // no descriptor is to be had
        }
    }
    struct sigaction action {};
    sigaction(SIGPIPE, nullptr, &action);
    if (action.sa_handler == SIG_DFL) {
        // Not "ignored", which the programs that are started would inherit.
        action.sa_handler = [](int) {};
        action.sa_flags = SA_RESTART;
        sigemptyset(&action.sa_mask);
        sigaction(SIGPIPE, &action, nullptr);
    }
}

}  // namespace NK
