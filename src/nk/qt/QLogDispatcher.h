// A logger that hands its lines to the event loops of Qt objects.
#pragma once

#include <QList>
#include <QObject>

#include "nk/nk_logger.h"

namespace NK {

/// Posts every line as a QLoggerEvent to each listener, which gets it in its own thread. Without a listener lines are
/// dropped. [any]
class QLogDispatcher : public QObject, public CLogger {
    Q_OBJECT

public:
    QLogDispatcher() = default;
    ~QLogDispatcher() override;

    /// The process's one dispatcher. Created on first use, which makes it the current logger; never destroyed.
    static QLogDispatcher& Instance();

    /// The object is not owned; it leaves the list by itself when it is destroyed, in whatever thread that happens.
    /// Null and an object that is in the list already are ignored.
    void AddListener(QObject* object);

public slots:
    void RemoveListener(QObject* object);

protected:
    void Output(const CString& timestamp, const CString& message) override NK_REQUIRES(lock_);

private:
    QList<QObject*> listeners_ NK_GUARDED_BY(lock_);
};

}  // namespace NK
