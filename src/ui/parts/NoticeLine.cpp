#include "ui/parts/NoticeLine.h"

#include <QAccessible>
#include <QMouseEvent>
#include <QPainter>
#include <utility>

#include "ui/parts/PanelText.h"

namespace {
constexpr double kRadius = 2.0;
constexpr double kMargin = 6.0;
}  // namespace

NoticeLine::NoticeLine(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    hide();
}

void NoticeLine::setGlassColor(const QColor& color) {
    glassColor_ = color;
    update();
}

void NoticeLine::tell(Topic topic, const QString& text, std::function<void()> pressed) {
    notices_[topic] = {text, std::move(pressed)};
    showMostUrgent();
}

void NoticeLine::withdraw(Topic topic) {
    if (notices_.erase(topic) != 0) {
        showMostUrgent();
    }
}

void NoticeLine::showMostUrgent() {
    if (notices_.empty()) {
        hide();
        setText({});
        return;
    }
    const Notice& notice = notices_.begin()->second;
    setCursor(notice.pressed ? Qt::PointingHandCursor : Qt::ArrowCursor);
    if (text() != notice.text) {
        setText(notice.text);
        setAccessibleName(notice.text);
        setToolTip(notice.text);  // whole, where the line is too short for it
        QAccessibleEvent alert(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
    show();
    raise();
}

void NoticeLine::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(PanelText::kInk);
    painter.scale(panelScale(), panelScale());
    const QRectF area(QPointF(), QSizeF(size()) / panelScale());
    painter.drawRoundedRect(area, kRadius, kRadius);
    const PanelTextStyle style = PanelText::kStatusValue.Colored(glassColor_);
    const double room = area.width() - 2 * kMargin;
    const double baseline = (area.height() + PanelText::Fit(style, text(), room).CapHeight()) / 2;
    PanelText::Draw(painter, style, text(), {kMargin, baseline}, Qt::AlignLeft, room);
}

void NoticeLine::mousePressEvent(QMouseEvent* event) {
    event->accept();  // so that the release comes here too
}

void NoticeLine::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !rect().contains(event->position().toPoint()) || notices_.empty()) {
        return;
    }
    // A copy: what it does may withdraw the notice.
    if (const auto pressed = notices_.begin()->second.pressed) {
        pressed();
    }
}
