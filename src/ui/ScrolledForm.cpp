#include "ui/ScrolledForm.h"

#include <QApplication>
#include <QEvent>

namespace {
constexpr QSize kSmallest(160, 80);
}

ScrolledForm::ScrolledForm(QWidget* parent) : QScrollArea(parent) {
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    connect(qApp, &QApplication::focusChanged, this, &ScrolledForm::showFocused);
}

ScrolledForm::~ScrolledForm() {
    // The focus is taken off the contents while they are destroyed, after this part of the object.
    disconnect(qApp, nullptr, this, nullptr);
}

QSize ScrolledForm::sizeHint() const {
    return widget() != nullptr ? widget()->sizeHint() : QScrollArea::sizeHint();
}

QSize ScrolledForm::minimumSizeHint() const {
    return kSmallest;
}

bool ScrolledForm::eventFilter(QObject* watched, QEvent* event) {
    if (watched == widget() && event->type() == QEvent::LayoutRequest) {
        updateGeometry();
    }
    return QScrollArea::eventFilter(watched, event);
}

void ScrolledForm::showFocused(QWidget*, QWidget* focused) {
    if (focused != nullptr && widget() != nullptr && widget()->isAncestorOf(focused)) {
        ensureWidgetVisible(focused);
    }
}
