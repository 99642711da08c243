#include "libmidi/RoundThread.h"

namespace LibMidi {

RoundThread::RoundThread(int level, const wchar_t* name) : CThread(true, level) {
    SetName(name);
}

bool RoundThread::Begin() {
    if (!Start()) {
        return false;
    }
    begun_.wait(false);
    return true;
}

void RoundThread::End() {
    WaitForExit(-1);
}

void RoundThread::Run() {
    begun_ = true;
    begun_.notify_all();
    RunRounds();
}

}  // namespace LibMidi
