#include "ui/parts/PanelCombo.h"

#include <cmath>
#include <QAbstractItemView>
#include <QPainter>
#include <QStyledItemDelegate>

namespace {

constexpr int kTextLeft = 7;
constexpr int kChevronZone = 16;
constexpr int kRowHeight = 20;
constexpr int kMostRows = 12;
constexpr QColor kRowInk(0xEC, 0xED, 0xE6);

/// Draws the rows of a combo box's list in the style of its face; the current one is filled with the style's colour.
class RowDelegate : public QStyledItemDelegate {
public:
    RowDelegate(const PanelTextStyle& style, QObject* parent) : QStyledItemDelegate(parent), style_(style) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const bool current = option.state.testFlag(QStyle::State_Selected);
        if (current) {
            painter->fillRect(option.rect, style_.color);
        }
        const QString text = index.data().toString();
        const QRectF area = option.rect.adjusted(kTextLeft - 1, 0, 0, 0);
        const double capHeight = PanelText::Fit(style_, text, area.width()).CapHeight();
        PanelText::Draw(*painter, style_.Colored(current ? PanelText::kLitGlassInk : kRowInk), text,
                        {area.left(), area.center().y() + capHeight / 2.0}, Qt::AlignLeft, area.width());
    }
    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const override {
        const double width = PanelText::AtSize(style_, index.data().toString(), style_.pixels).Width();
        return {static_cast<int>(std::ceil(width)) + 2 * kTextLeft, kRowHeight};
    }

private:
    const PanelTextStyle& style_;
};

}  // namespace

PanelCombo::PanelCombo(QWidget* parent) : QComboBox(parent) {
    setMaxVisibleItems(kMostRows);
    setItemDelegate(new RowDelegate(style_, this));
    setStyleSheet(
        "QComboBox { combobox-popup: 0; }"
        "QAbstractItemView { background: #17181A; border: 1px solid #37383A; outline: 0; }");
}

void PanelCombo::setSkin(const QPixmap* face, const QColor& figures) {
    face_ = face;
    style_ = style_.Colored(figures);
    update();
}

QRectF PanelCombo::textArea() const {
    return QRectF(QPointF(), QSizeF(size()) / panelScale()).adjusted(kTextLeft, 0, -kChevronZone, 0);
}

QString PanelCombo::fittedText() const {
    return PanelText::Fit(style_, currentText(), textArea().width()).text;
}

void PanelCombo::showPopup() {
    view()->setMinimumWidth(view()->sizeHintForColumn(0));
    QComboBox::showPopup();
}

void PanelCombo::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::SmoothPixmapTransform | QPainter::TextAntialiasing);
    if (face_ != nullptr) {
        painter.drawPixmap(rect(), *face_);
    }
    painter.scale(panelScale(), panelScale());
    const QRectF area = textArea();
    const double capHeight = PanelText::Fit(style_, currentText(), area.width()).CapHeight();
    PanelText::Draw(painter, style_, currentText(), {area.left(), (area.height() + capHeight) / 2.0}, Qt::AlignLeft,
                    area.width());
}
