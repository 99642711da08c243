#include "ui/parts/PanelText.h"

#include <algorithm>
#include <QFontMetricsF>
#include <QPainter>

namespace {

constexpr double kShrinkStep = 0.5;
constexpr double kSmallestText = 8.0;
constexpr double kSmallestCaption = 8.5;
constexpr double kSmallestPatchName = 13.0;
constexpr auto kLegendFont = PanelTextStyle::Family::kLegend;
constexpr auto kDisplayFont = PanelTextStyle::Family::kDisplay;

QFont MakeFont(const PanelTextStyle& style, double pixels, double spacing) {
    QFont font;
    if (style.family == kLegendFont) {
        font.setFamilies({"Inter", "Liberation Sans", "Helvetica"});
    } else {
        font.setFamilies({"Play", "Inter", "Liberation Sans", "Helvetica"});
    }
    font.setWeight(style.weight);
    font.setPixelSize(qRound(pixels));
    font.setLetterSpacing(QFont::AbsoluteSpacing, spacing);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

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

double Fitted::Size() const {
    return font.pixelSize() * kFontScale;
}

double Fitted::Width() const {
    return QFontMetricsF(font).horizontalAdvance(text) * kFontScale;
}

double Fitted::CapHeight() const {
    return QFontMetricsF(font).capHeight() * kFontScale;
}

Fitted AtSize(const PanelTextStyle& style, const QString& text, double pixels) {
    return {MakeFont(style, pixels / kFontScale, style.spacing / kFontScale), style.capitals ? text.toUpper() : text};
}

Fitted Fit(const PanelTextStyle& style, const QString& text, double width) {
    for (double size = style.pixels; size >= style.smallest; size -= kShrinkStep) {
        Fitted fitted = AtSize(style, text, size);
        if (fitted.Width() <= width) {
            return fitted;
        }
    }
    Fitted fitted = AtSize(style, text, std::min(style.smallest, style.pixels));
    fitted.text = QFontMetricsF(fitted.font).elidedText(fitted.text, Qt::ElideRight, width / kFontScale);
    return fitted;
}

double CommonSize(const PanelTextStyle& style, const std::vector<InRoom>& texts) {
    for (double size = style.pixels; size > style.smallest; size -= kShrinkStep) {
        if (std::all_of(texts.begin(), texts.end(),
                        [&](const InRoom& one) { return AtSize(style, one.text, size).Width() <= one.width; })) {
            return size;
        }
    }
    return style.smallest;
}

void Draw(QPainter& painter, const PanelTextStyle& style, const QString& text, const QPointF& baseline,
          Qt::Alignment alignment, double width) {
    const Fitted fitted = Fit(style, text, width);
    const double advance = fitted.Width();
    double left = baseline.x();
    if (alignment.testFlag(Qt::AlignRight)) {
        left -= advance - style.spacing;
    } else if (alignment.testFlag(Qt::AlignHCenter)) {
        left -= (advance - style.spacing) / 2;
    }
    painter.save();
    painter.translate(left, baseline.y());
    painter.scale(kFontScale, kFontScale);
    painter.setFont(fitted.font);
    painter.setPen(style.color);
    painter.drawText(QPointF(), fitted.text);
    painter.restore();
}

}  // namespace PanelText

QFont PanelTextStyle::Font() const {
    return MakeFont(*this, pixels, spacing);
}

PanelTextStyle PanelTextStyle::Sized(double otherPixels) const {
    PanelTextStyle style = *this;
    style.pixels = otherPixels;
    return style;
}

PanelTextStyle PanelTextStyle::Colored(const QColor& other) const {
    PanelTextStyle style = *this;
    style.color = other;
    return style;
}
