// Images of plain colours, whose pixels tell which one a widget painted.
#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QWidget>
#include <vector>

inline QPixmap PlainPixmap(int width, int height, QColor color) {
    QPixmap pixmap(width, height);
    pixmap.fill(color);
    return pixmap;
}

/// Frames of one size, each of its colour, side by side or stacked.
inline QPixmap FramesPixmap(const std::vector<QColor>& colors, int width, int height, Qt::Orientation orientation) {
    const int count = static_cast<int>(colors.size());
    const bool horizontal = orientation == Qt::Horizontal;
    QPixmap pixmap(horizontal ? width * count : width, horizontal ? height : height * count);
    QPainter painter(&pixmap);
    for (int i = 0; i < count; ++i) {
        painter.fillRect(horizontal ? i * width : 0, horizontal ? 0 : i * height, width, height,
                         colors[static_cast<std::size_t>(i)]);
    }
    return pixmap;
}

inline QColor ColorAt(QWidget& widget, int x, int y) {
    return widget.grab().toImage().pixelColor(x, y);
}
inline QColor CentreColor(QWidget& widget) {
    return ColorAt(widget, widget.width() / 2, widget.height() / 2);
}
