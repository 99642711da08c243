#include "ui/parts/PanelKey.h"

#include <QPainter>

namespace {
constexpr double kDisabledOpacity = 0.4;
constexpr double kMargin = 4.0;  // logical pixels on either side of the caption
}  // namespace

PanelKey::PanelKey(QWidget* parent) : QPixmapButton(parent) {
    blinkTimer_.setSingleShot(true);
    connect(&blinkTimer_, &QTimer::timeout, this, qOverload<>(&PanelKey::update));
}

void PanelKey::blink(int milliseconds) {
    blinkTimer_.start(milliseconds);
    update();
}

void PanelKey::setCaptionStyle(const PanelTextStyle& style, double baseline) {
    style_ = style;
    baseline_ = baseline;
    hasCaption_ = true;
    update();
}

void PanelKey::ShareCaptionSize(std::initializer_list<PanelKey*> row) {
    std::vector<PanelText::InRoom> captions;
    for (const PanelKey* key : row) {
        captions.push_back({key->text(), key->captionWidth()});
    }
    const double size = PanelText::CommonSize(PanelText::kCaption, captions);
    for (PanelKey* key : row) {
        key->style_.pixels = size;
        key->update();
    }
}

void PanelKey::setCaptionColors(const QColor& normal, const QColor& on) {
    normalColor_ = normal;
    onColor_ = on;
    update();
}

void PanelKey::setCaptionTravel(double y) {
    travel_ = y;
    update();
}

double PanelKey::captionWidth() const {
    return designWidth(*this) - 2 * kMargin;
}

PanelText::Fitted PanelKey::fittedCaption() const {
    return PanelText::Fit(style_, text(), captionWidth());
}

void PanelKey::paintEvent(QPaintEvent* event) {
    QPixmapButton::paintEvent(event);
    if (!hasCaption_) {
        return;
    }
    const bool on = isOn();
    QPainter painter(this);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.scale(panelScale(), panelScale());
    painter.setOpacity(isEnabled() ? 1.0 : kDisabledOpacity);
    PanelText::Draw(painter, style_.Colored(on ? onColor_ : normalColor_), text(),
                    {width() / panelScale() / 2.0, baseline_ + (on ? travel_ : 0.0)}, Qt::AlignHCenter, captionWidth());
}
