// How the menu of patches is laid out and drawn.
#include <algorithm>
#include <cmath>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QStyleOptionMenuItem>

#include "midi/MIDIPrograms.h"
#include "QtWidgets/piano/QGMPatchMenu.h"

using NK::MIDI::kDrumKit;

namespace {

constexpr int kFamilySize = PatchMenuLayout::kProgramsInFamily;
constexpr double kStarSize = 0.62;  // of the row's height

/// Five points in a circle of radius 1, the first one up.
QPolygonF MakeStar() {
    constexpr int kCorners = 10;
    constexpr double kInner = 0.42;
    QPolygonF star;
    for (int i = 0; i < kCorners; ++i) {
        const double angle = i * 2 * M_PI / kCorners;
        const double radius = i % 2 == 0 ? 1.0 : kInner;
        star << QPointF(radius * std::sin(angle), -radius * std::cos(angle));
    }
    return star;
}

}  // namespace

int QGMPatchMenu::widthOf(const QStyleOptionMenuItem& item, const QString& text) const {
    const QSize contents(fontMetrics().horizontalAdvance(text), fontMetrics().height());
    return style()->sizeFromContents(QStyle::CT_MenuItem, &item, contents, this).width();
}

void QGMPatchMenu::layOut() {
    const QStyleOptionMenuItem item = familyItem(0);
    layout_.rowHeight =
        style()->sizeFromContents(QStyle::CT_MenuItem, &item, QSize(1, fontMetrics().height()), this).height();
    layout_.margin = style()->pixelMetric(QStyle::PM_MenuPanelWidth, nullptr, this) +
                     style()->pixelMetric(QStyle::PM_MenuVMargin, nullptr, this);
    layout_.familyWidth = 0;
    for (int family = 0; family < kFound; ++family) {
        layout_.familyWidth = std::max(layout_.familyWidth, widthOf(item, familyName(family)));
    }
    layout_.programWidth = 0;
    for (const QAction* action : actions()) {
        layout_.programWidth = std::max(layout_.programWidth, widthOf(item, action->text()));
    }
    layout_.programWidth += layout_.rowHeight;  // for the stars
    const QScreen* const where = QGuiApplication::screenAt(wanted_);
    const QRect room = (where != nullptr ? where : screen())->availableGeometry();
    layout_.familyColumns = 2;
    if (layout_.Size().width() > room.width()) {
        layout_.familyColumns = 1;
    }
    setGeometry(QRect(PatchMenuLayout::Place(layout_.Size(), wanted_, avoided_, room), layout_.Size()));
}

QSize QGMPatchMenu::sizeHint() const {
    return layout_.rowHeight > 0 ? layout_.Size() : QMenu::sizeHint();
}

QStyleOptionMenuItem QGMPatchMenu::familyItem(int family) const {
    QStyleOptionMenuItem item;
    item.initFrom(this);
    item.state = QStyle::State_Enabled | QStyle::State_Active;
    item.font = font();
    item.menuItemType = QStyleOptionMenuItem::SubMenu;
    item.menuHasCheckableItems = true;
    item.checkType = QStyleOptionMenuItem::Exclusive;
    item.checked = currentProgram_ >= 0 && currentProgram_ / kFamilySize == family;
    item.text = familyName(family);
    item.rect = familyRect(family);
    if (family == list_ && (activeProgram() != kDrumKit || !isFamily())) {
        item.state |= QStyle::State_Selected;
    }
    return item;
}

void QGMPatchMenu::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QStyleOptionMenuItem panel;
    panel.initFrom(this);
    panel.state = QStyle::State_None;
    panel.checkType = QStyleOptionMenuItem::NotCheckable;
    style()->drawPrimitive(QStyle::PE_PanelMenu, &panel, &painter, this);
    style()->drawPrimitive(QStyle::PE_FrameMenu, &panel, &painter, this);
    for (int family = 0; family < kFound; ++family) {
        const QStyleOptionMenuItem item = familyItem(family);
        style()->drawControl(QStyle::CE_MenuItem, &item, &painter, this);
    }
    const auto drawProgram = [&](int program, const QRect& place) {
        QStyleOptionMenuItem item;
        initStyleOption(&item, actionOf(program));
        item.rect = place;
        item.menuHasCheckableItems = true;
        item.checkType = QStyleOptionMenuItem::Exclusive;
        style()->drawControl(QStyle::CE_MenuItem, &item, &painter, this);
    };
    for (int row = 0; row < kFamilySize; ++row) {
        if (const std::optional<int> program = programAtRow(row)) {
            drawProgram(*program, layout_.Program(row).adjusted(0, 0, -layout_.rowHeight, 0));
            paintStar(painter, *program);
        }
    }
    drawProgram(kDrumKit, layout_.DrumKit());
    paintSearch(painter);
    painter.setPen(palette().color(QPalette::Midlight));
    painter.drawLine(layout_.Divider(), layout_.margin + 2, layout_.Divider(), height() - layout_.margin - 3);
    const int line = layout_.DrumKit().top() - 5;
    painter.drawLine(layout_.margin + 2, line, layout_.Divider() - 6, line);
}

void QGMPatchMenu::paintSearch(QPainter& painter) const {
    const QRect field = layout_.Search().adjusted(2, 1, -3, -2);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette().color(QPalette::Midlight));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(field).adjusted(0.5, 0.5, 0.5, 0.5), 3, 3);
    const QRect room = field.adjusted(8, 0, -8, 0);
    const bool isSearching = !query_.isEmpty();
    QString text = tr("Type to search");
    if (isSearching) {
        const QString count = found_.empty() ? tr("Nothing") : QString::number(found_.size());
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(room, Qt::AlignRight | Qt::AlignVCenter, count);
        const int left = room.width() - fontMetrics().horizontalAdvance(count + "  ");
        text = fontMetrics().elidedText(query_ + "|", Qt::ElideLeft, left);
    }
    painter.setPen(palette().color(isSearching ? QPalette::Text : QPalette::PlaceholderText));
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter, text);
    painter.restore();
}

void QGMPatchMenu::paintStar(QPainter& painter, int program) const {
    const bool isFavorite = std::find(favorites_.begin(), favorites_.end(), program) != favorites_.end();
    if (!isFavorite && (activeAction() == nullptr || activeProgram() != program)) {
        return;
    }
    const QRectF place = starRect(program);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(place.center());
    painter.scale(place.height() * kStarSize / 2, place.height() * kStarSize / 2);
    QPen pen(palette().color(QPalette::WindowText));
    pen.setWidthF(1.0);
    pen.setCosmetic(true);
    painter.setPen(pen);
    painter.setBrush(isFavorite ? QBrush(palette().color(QPalette::WindowText)) : QBrush(Qt::NoBrush));
    painter.drawPolygon(MakeStar());
    painter.restore();
}
