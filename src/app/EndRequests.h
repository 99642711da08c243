// The system's wish that the program end.
#pragma once

#include <QObject>

#include "nk/nk_end_request.h"

namespace Kivora {

/// Ends the event loops, dialogs' included, with the exit code 0 when the system asks the program to end: by a signal
/// (NK::CEndRequest), or by the session manager at the end of the session. No window is asked whether it may be closed.
/// What the loops' callers do then is theirs: see IsEndWanted(). [gui]
class EndRequests : public QObject {
    Q_OBJECT

public:
    /// After the application object, which has the object for a filter.
    EndRequests();

    /// Whether the system has asked. A loop that is begun afterwards is to be left out.
    bool IsEndWanted() const { return endWanted_; }

signals:
    /// The session is about to end, but may yet go on: what is saved at the program's end is to be saved now, without
    /// a question.
    void SaveWanted();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void End();

    NK::CEndRequest request_;
    bool endWanted_ = false;
};

}  // namespace Kivora
