#include "ui/PanelText.h"

#include <algorithm>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

namespace {

constexpr double kPointsPerInch = 72.0;
constexpr double kShrinkStep = 0.5;
constexpr double kSmallestText = 8.0;
constexpr double kSmallestCaption = 8.5;
constexpr double kSmallestPatchName = 13.0;
constexpr auto kLegendFont = PanelTextStyle::Family::kLegend;
constexpr auto kDisplayFont = PanelTextStyle::Family::kDisplay;

}  // namespace

namespace PanelText {

const PanelTextStyle kLegend{kLegendFont, QFont::DemiBold, 9.5, 0.55, true, {236, 237, 230}, kSmallestText};
const PanelTextStyle kHeaderLegend{kLegendFont, QFont::DemiBold, 9.5, 0.55, true, {255, 255, 255}, kSmallestText};
const PanelTextStyle kSmallLegend{kLegendFont, QFont::DemiBold, 9, 0.3, true, {216, 218, 208}, kSmallestText};
const PanelTextStyle kTitle{kLegendFont, QFont::Bold, 10, 0.8, true, {244, 245, 239}, kSmallestText};
const PanelTextStyle kCaption{kLegendFont, QFont::DemiBold, 10, 0.2, false, {240, 240, 236}, kSmallestCaption};
const PanelTextStyle kPatchName{kDisplayFont, QFont::Bold, 20, 0, false, kInk, kSmallestPatchName};
const PanelTextStyle kPatchFamily{kDisplayFont, QFont::Bold, 11, 0, false, kInk, kSmallestText};
const PanelTextStyle kVoiceValue{kDisplayFont, QFont::Bold, 19, 0, false, kInk, kSmallestText};
const PanelTextStyle kVoiceBadge{kDisplayFont, QFont::Bold, 16, 0, false, kInk, kSmallestText};
const PanelTextStyle kStatusValue{kDisplayFont, QFont::Bold, 12, 0, false, kInk, kSmallestText};
const PanelTextStyle kStatusLabel{kDisplayFont, QFont::Bold, 10, 0.3, true, kInk, kSmallestText};
const PanelTextStyle kParameter{kDisplayFont, QFont::Bold, 17, 0, false, kLitGlassInk, kSmallestText};
const PanelTextStyle kBigFigure{kDisplayFont, QFont::Bold, 27, 0, false, kLitGlassInk, kSmallestText};
const PanelTextStyle kOctaveFigure{kDisplayFont, QFont::Bold, 16, 0, false, kLitGlassInk, kSmallestText};
const PanelTextStyle kGateFigure{kDisplayFont, QFont::Bold, 13, 0, false, kLitGlassInk, kSmallestText};
const PanelTextStyle kComboText{kDisplayFont, QFont::Bold, 12, 0, false, kLitGlassInk, kSmallestText};

Fitted Fit(const PanelTextStyle& style, const QString& text, double width) {
    const QString shown = style.capitals ? text.toUpper() : text;
    for (double size = style.pixels; size >= style.smallest; size -= kShrinkStep) {
        const QFont font = style.FontOfSize(size);
        if (QFontMetricsF(font).horizontalAdvance(shown) <= width) {
            return {font, shown};
        }
    }
    const QFont font = style.FontOfSize(std::min(style.smallest, style.pixels));
    return {font, QFontMetricsF(font).elidedText(shown, Qt::ElideRight, width)};
}

void Draw(QPainter& painter, const PanelTextStyle& style, const QString& text, const QPointF& baseline,
          Qt::Alignment alignment, double width) {
    const Fitted fitted = Fit(style, text, width);
    const double advance = QFontMetricsF(fitted.font).horizontalAdvance(fitted.text);
    double left = baseline.x();
    if (alignment.testFlag(Qt::AlignRight)) {
        left -= advance - style.spacing;
    } else if (alignment.testFlag(Qt::AlignHCenter)) {
        left -= (advance - style.spacing) / 2;
    }
    painter.setFont(fitted.font);
    painter.setPen(style.color);
    painter.drawText(QPointF(left, baseline.y()), fitted.text);
}

}  // namespace PanelText

QFont PanelTextStyle::FontOfSize(double size) const {
    QFont font;
    if (family == Family::kLegend) {
        font.setFamilies({"Inter", "Liberation Sans", "Helvetica"});
    } else {
        font.setFamilies({"Play", "Inter", "Liberation Sans", "Helvetica"});
    }
    font.setWeight(weight);
    // Qt takes whole pixels only; points need the dots per inch that it will turn them back with.
    const QScreen* screen = QGuiApplication::primaryScreen();
    font.setPointSizeF(size * kPointsPerInch / (screen != nullptr ? screen->logicalDotsPerInchY() : kPointsPerInch));
    font.setLetterSpacing(QFont::AbsoluteSpacing, spacing);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

PanelTextStyle PanelTextStyle::Colored(const QColor& other) const {
    PanelTextStyle style = *this;
    style.color = other;
    return style;
}
