#include "locale/CLauncher.h"

#include <utility>

#include "nk/nk_shell.h"

namespace Kivora {

CLauncher::CLauncher(const NK::CString& path, CDone done) : path_(path), done_(std::move(done)) {
    SetName(L"Launcher");
    Start();
}

CLauncher::~CLauncher() {
    WaitForExit(-1);
}

void CLauncher::Run() {
    const bool opened = NK::OpenWithShell(path_);
    if (done_) {
        done_(opened);
    }
}

}  // namespace Kivora
