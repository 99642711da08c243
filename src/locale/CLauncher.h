// Opens a file or an address with the desktop's program for it, without keeping anybody waiting. [owner]
#pragma once

#include <functional>

#include "nk/nk_thread.h"

namespace Kivora {

/// A thread for one path, at work from its construction on and for at most about 3 s. The owner may delete it at any
/// time; the destructor waits until the thread has ended.
class CLauncher final : public NK::CThread {
public:
    /// Tells whether the desktop took the path. [the launcher's thread]
    using CDone = std::function<void(bool opened)>;

    /// `done` may be empty.
    CLauncher(const NK::CString& path, CDone done);
    ~CLauncher() override;

protected:
    void Run() override;

private:
    const NK::CString path_;
    const CDone done_;
};

}  // namespace Kivora
