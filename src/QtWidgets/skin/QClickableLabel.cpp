#include "QtWidgets/skin/QClickableLabel.h"

#include <QMouseEvent>

void QClickableLabel::mouseReleaseEvent(QMouseEvent* event) {
    const QPoint position = event->position().toPoint();
    if (event->button() == Qt::LeftButton) {
        emit clicked();
        emit clicked(true);
        emit clicked(position);
    } else if (event->button() == Qt::RightButton) {
        emit rightClicked();
        emit rightClicked(true);
        emit rightClicked(position);
    }
}
