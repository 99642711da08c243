#include "app/EndRequests.h"

#include <QApplication>
#include <QEvent>
#include <QSocketNotifier>

namespace Kivora {

EndRequests::EndRequests() {
    if (request_.GetDescriptor() >= 0) {
        auto* const notifier = new QSocketNotifier(request_.GetDescriptor(), QSocketNotifier::Read, this);
        connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
            notifier->setEnabled(false);  // the descriptor stays readable
            End();
        });
    }
    connect(qApp, &QGuiApplication::commitDataRequest, this, &EndRequests::SaveWanted, Qt::DirectConnection);
    qApp->installEventFilter(this);
}

bool EndRequests::eventFilter(QObject* watched, QEvent* event) {
    // From the session manager. One that is not from outside comes when the last window was closed, or tries to close
    // them.
    if (event->type() == QEvent::Quit && watched == qApp && event->spontaneous()) {
        End();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

void EndRequests::End() {
    endWanted_ = true;
    QCoreApplication::exit(0);
}

}  // namespace Kivora
