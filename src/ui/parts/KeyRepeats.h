// Tells the presses of the system's auto-repeat from those of a person.
#pragma once

#include <QtGlobal>

class QKeyEvent;

/// On X11 most repeats of a held key come without the repeat flag, as a release and a press with one time stamp. So it
/// is told of the releases. Events with an unknown scan code or time stamp (0) are judged by the flag alone. [gui]
class KeyRepeats {
public:
    void noteRelease(const QKeyEvent& event);
    bool isRepeat(const QKeyEvent& press) const;

private:
    quint32 scanCode_ = 0;  ///< native, of the latest release
    quint64 timeMs_ = 0;    ///< its time stamp
};
