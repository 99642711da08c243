#include "ui/parts/PlainTexts.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>

PlainTexts::PlainTexts() {
    qApp->installEventFilter(this);
}

bool PlainTexts::eventFilter(QObject* watched, QEvent* event) {
    // A label is polished before it is first measured, which is when the text is interpreted.
    if (event->type() == QEvent::Polish) {
        auto* const label = qobject_cast<QLabel*>(watched);
        if (label != nullptr && label->textFormat() == Qt::AutoText) {
            label->setTextFormat(Qt::PlainText);
        }
    }
    return QObject::eventFilter(watched, event);
}
