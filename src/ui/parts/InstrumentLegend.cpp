#include "ui/parts/InstrumentLegend.h"

#include <cmath>
#include <QPainter>

namespace InstrumentLegend {

namespace {

constexpr double kShare = 0.86;    // of the text's size
constexpr double kSpacing = 0.06;  // of the legend's size, between letters

QFont LegendFont(QFont font) {
    if (font.pointSizeF() > 0) {
        font.setPointSizeF(font.pointSizeF() * kShare);
    } else {
        font.setPixelSize(static_cast<int>(std::lround(font.pixelSize() * kShare)));
    }
    font.setWeight(QFont::DemiBold);
    font.setCapitalization(QFont::AllUppercase);
    font.setLetterSpacing(QFont::PercentageSpacing, 100.0 * (1.0 + kSpacing));
    return font;
}

}  // namespace

QFont TextFont(const QFont& desktop) {
    QFont font = desktop;
    font.setFamilies({"Inter", "Liberation Sans", "Helvetica"});
    font.setStyleName({});
    return font;
}

QFont KeyFont(const QFont& desktop) {
    QFont font = TextFont(desktop);
    font.setWeight(QFont::DemiBold);
    return font;
}

int Width(const QString& text, const QFontMetrics& metrics) {
    return static_cast<int>(std::ceil(metrics.horizontalAdvance(text.toUpper()) * (1.0 + kSpacing)));
}

int Height(const QFontMetrics& metrics) {
    return metrics.height();
}

void Draw(QPainter& painter, const QRect& area, const QString& text, const QColor& color) {
    painter.save();
    painter.setFont(LegendFont(painter.font()));
    painter.setPen(color);
    painter.drawText(area, Qt::AlignLeft | Qt::AlignTop | Qt::TextHideMnemonic, text);
    painter.restore();
}

}  // namespace InstrumentLegend
