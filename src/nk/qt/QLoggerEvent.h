// A log line on its way to an object's event loop. [owner]
#pragma once

#include <QEvent>
#include <QString>
#include <utility>

#include "nk/nk_string.h"
#include "nk/qt/nk_qt_string.h"

namespace NK {

/// Carries one log line, time stamp included.
class QLoggerEvent : public QEvent {
public:
    static constexpr QEvent::Type kType = static_cast<QEvent::Type>(QEvent::User + 5);  ///< 1005

    explicit QLoggerEvent(QString line) : QEvent(kType), line_(std::move(line)) {}
    explicit QLoggerEvent(const CString& line) : QLoggerEvent(ToQt(line)) {}
    explicit QLoggerEvent(const wchar_t* line) : QLoggerEvent(CString(line)) {}
    explicit QLoggerEvent(const char* latin1) : QLoggerEvent(CString(latin1)) {}

    const QString& GetLine() const { return line_; }

private:
    QString line_;
};

}  // namespace NK
