// The type of dialogs: the panel's typeface in the desktop's size. [gui]
#pragma once

#include <QFont>
#include <QFontMetrics>
#include <QRect>

class QColor;
class QPainter;

namespace InstrumentLegend {

/// The panel's typeface for legends in the size and with the attributes of the given one.
QFont TextFont(const QFont& desktop);
/// The same as on key caps.
QFont KeyFont(const QFont& desktop);

/// A plate's legend: small spaced capitals. Sizes are for text beside it in the font of the metrics.
int Width(const QString& text, const QFontMetrics& metrics);
int Height(const QFontMetrics& metrics);
void Draw(QPainter& painter, const QRect& area, const QString& text, const QColor& color);

}  // namespace InstrumentLegend
