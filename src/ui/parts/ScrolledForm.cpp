#include "ui/parts/ScrolledForm.h"

#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QScrollBar>

namespace {
constexpr QSize kSmallest(160, 80);

/// What the wheel would change.
bool isTurned(const QObject* object) {
    return qobject_cast<const QComboBox*>(object) != nullptr ||
           qobject_cast<const QAbstractSpinBox*>(object) != nullptr ||
           (qobject_cast<const QAbstractSlider*>(object) != nullptr &&
            qobject_cast<const QScrollBar*>(object) == nullptr);
}
}  // namespace

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
    } else if (event->type() == QEvent::Wheel && isTurned(watched) && !static_cast<QWidget*>(watched)->hasFocus()) {
        event->ignore();  // the next that gets it is what it lies on
        return true;
    }
    return QScrollArea::eventFilter(watched, event);
}

void ScrolledForm::showEvent(QShowEvent* event) {
    for (QWidget* part : findChildren<QWidget*>()) {
        if (isTurned(part)) {
            part->setFocusPolicy(Qt::StrongFocus);  // and not by the wheel
            part->installEventFilter(this);
        }
    }
    QScrollArea::showEvent(event);
}

void ScrolledForm::showFocused(QWidget*, QWidget* focused) {
    if (focused != nullptr && widget() != nullptr && widget()->isAncestorOf(focused)) {
        ensureWidgetVisible(focused);
        // Of a field of text that looks at the cursor only.
        const QRect place(focused->mapTo(widget(), QPoint()), focused->size());
        ensureVisible(place.center().x(), place.center().y(), place.width() / 2 + 1, place.height() / 2 + 1);
    }
}
