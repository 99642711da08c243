// The end of a program whose main() never returns. [gui]
#pragma once

#include <functional>
#include <thread>

namespace Kivora {

/// Qt ends the process by exit() in the middle of its event loop when the display is lost: the X server was killed, the
/// window was by "xkill", a remote display is gone. While this lives, exit() by the thread that made it calls `act`
/// first, and the process ends right after it with EXIT_FAILURE: nothing is destroyed while threads still run. At most
/// one at a time in a process.
class EmergencyEnd {
public:
    /// `act` must neither throw nor touch the display.
    explicit EmergencyEnd(std::function<void()> act);
    ~EmergencyEnd();
    EmergencyEnd(const EmergencyEnd&) = delete;
    EmergencyEnd& operator=(const EmergencyEnd&) = delete;

private:
    static void OnExit();

    static EmergencyEnd* current_;
    const std::function<void()> act_;
    const std::thread::id thread_ = std::this_thread::get_id();
};

}  // namespace Kivora
