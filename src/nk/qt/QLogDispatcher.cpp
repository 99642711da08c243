#include "nk/qt/QLogDispatcher.h"

#include <QCoreApplication>

#include "nk/qt/QLoggerEvent.h"

namespace NK {

QLogDispatcher::~QLogDispatcher() {
    ResetCurrentLogger(this);
}

QLogDispatcher& QLogDispatcher::Instance() {
    static QLogDispatcher* instance = nullptr;
    const CGlobalLockGuard guard;
    if (instance == nullptr) {
        instance = new QLogDispatcher;
        SetCurrentLogger(instance);
    }
    return *instance;
}

void QLogDispatcher::AddListener(QObject* object) {
    if (object == nullptr) {
        return;
    }
    const CLockGuard guard(lock_);
    if (listeners_.lastIndexOf(object) >= 0) {
        return;
    }
    listeners_.append(object);
    // Direct: the object must be out of the list before its destructor goes on.
    connect(object, &QObject::destroyed, this, &QLogDispatcher::RemoveListener,
            static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::UniqueConnection));
}

void QLogDispatcher::RemoveListener(QObject* object) {
    const CLockGuard guard(lock_);
    listeners_.removeAll(object);
}

void QLogDispatcher::Output(const CString& timestamp, const CString& message) {
    const CString line = timestamp + L" " + message;
    for (QObject* const listener : listeners_) {
        QCoreApplication::postEvent(listener, new QLoggerEvent(line));
    }
}

}  // namespace NK
