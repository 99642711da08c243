#include "ui/PanelCombo.h"

#include <QAbstractItemView>
#include <QPainter>

namespace {
constexpr int kTextLeft = 7;
constexpr int kChevronZone = 16;
}  // namespace

PanelCombo::PanelCombo(QWidget* parent) : QComboBox(parent) {
    setMaxVisibleItems(12);
}

void PanelCombo::setSkin(const QPixmap* face, const QColor& figures) {
    face_ = face;
    style_ = style_.Colored(figures);
    setStyleSheet(QStringLiteral("QComboBox { combobox-popup: 0; }"
                                 "QAbstractItemView { background: #17181A; color: #ECEDE6; border: 1px solid #37383A;"
                                 " outline: 0; }"
                                 "QAbstractItemView::item { height: 20px; padding-left: 6px; }"
                                 "QAbstractItemView::item:selected { background: %1; color: #04150B; }")
                      .arg(figures.name()));
    view()->setFont(style_.Font());
    update();
}

QRect PanelCombo::textArea() const {
    return rect().adjusted(kTextLeft, 0, -kChevronZone, 0);
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
    const QRectF area = textArea();
    const double capHeight = PanelText::Fit(style_, currentText(), area.width()).CapHeight();
    PanelText::Draw(painter, style_, currentText(), {area.left(), (height() + capHeight) / 2.0}, Qt::AlignLeft,
                    area.width());
}
