#include "ui/parts/KeyRepeats.h"

#include <QKeyEvent>

void KeyRepeats::noteRelease(const QKeyEvent& event) {
    scanCode_ = event.nativeScanCode();
    timeMs_ = event.timestamp();
}

bool KeyRepeats::isRepeat(const QKeyEvent& press) const {
    const bool pairs =
        scanCode_ != 0 && timeMs_ != 0 && press.nativeScanCode() == scanCode_ && press.timestamp() == timeMs_;
    return press.isAutoRepeat() || pairs;
}
