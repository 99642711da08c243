#include "ui/parts/PanelLabel.h"

#include <QPainter>

namespace {
constexpr double kShadowInk = 0.15;
}

PanelLabel::PanelLabel(const PanelTextStyle& style, QWidget* parent) : QLabel(parent), style_(style) {
    setTextFormat(Qt::PlainText);
    setFont(style_.Font());
}

void PanelLabel::setTextStyle(const PanelTextStyle& style) {
    style_ = style;
    setFont(style_.Font());
    update();
}

void PanelLabel::ShareTextStyle(const PanelTextStyle& style, std::initializer_list<PanelLabel*> row) {
    std::vector<PanelText::InRoom> texts;
    for (const PanelLabel* label : row) {
        texts.push_back({label->text(), label->designWidth(*label)});
    }
    const PanelTextStyle shared = style.Sized(PanelText::CommonSize(style, texts));
    for (PanelLabel* label : row) {
        label->setTextStyle(shared);
    }
}

void PanelLabel::setTextColor(const QColor& color) {
    style_.color = color;
    update();
}

void PanelLabel::setBaseline(double y) {
    baseline_ = y;
    update();
}

void PanelLabel::setGlass(const QPixmap* glass) {
    glass_ = glass;
    update();
}

void PanelLabel::setShadow(bool on) {
    shadow_ = on;
    update();
}

void PanelLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    if (glass_ != nullptr) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(rect(), *glass_);
    }
    painter.scale(panelScale(), panelScale());
    const QSizeF place = room();
    double x = 0.0;
    if (alignment().testFlag(Qt::AlignRight)) {
        x = place.width();
    } else if (alignment().testFlag(Qt::AlignHCenter)) {
        x = place.width() / 2.0;
    }
    const double y = baseline_ ? *baseline_ : (place.height() + fittedText().CapHeight()) / 2.0;
    if (shadow_) {
        painter.setOpacity(kShadowInk);
        PanelText::Draw(painter, style_, text(), {x + 1, y + 1}, alignment(), designWidth(*this));
        painter.setOpacity(1.0);
    }
    PanelText::Draw(painter, style_, text(), {x, y}, alignment(), designWidth(*this));
}
