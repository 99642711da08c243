#include "QtWidgets/piano/QGMPatchMenu.h"

#include <algorithm>
#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QStyleOptionMenuItem>

#include "midi/GMNames.h"
#include "QtWidgets/piano/NoteNamesQt.h"

namespace {

constexpr int kProgramCount = 128;
constexpr int kFamilySize = PatchMenuLayout::kProgramsInFamily;
constexpr int kFamilyCount = PatchMenuLayout::kFamilies;
constexpr int kNowhere = -2;
constexpr int kRestMs = 80;

QString LabelOf(int program, const QString& name) {
    return QString::asprintf("%03d ", program + 1) + name;
}

}  // namespace

QGMPatchMenu::QGMPatchMenu(int voice, int currentProgram, QWidget* parent)
    : QMenu(parent), voice_(voice), currentProgram_(currentProgram) {
    for (int program = 0; program < kProgramCount; ++program) {
        addProgram(LabelOf(program, GMProgramName(program)), program, currentProgram);
        if ((program + 1) % kFamilySize == 0) {
            addSeparator();
            families_ << QString::asprintf("%03d - %03d", program + 2 - kFamilySize, program + 1);
        }
    }
    addProgram(GMDrumKitName(), kDrumKit, currentProgram);
    family_ = std::clamp(currentProgram, 0, kProgramCount - 1) / kFamilySize;
    setMouseTracking(true);
}

void QGMPatchMenu::addProgram(const QString& label, int program, int currentProgram) {
    QAction* action = addAction(label);
    action->setData(program);
    if (program == currentProgram) {
        action->setCheckable(true);
        action->setChecked(true);
    }
}

void QGMPatchMenu::setTranslated(bool translated) {
    for (int program = 0; program < kProgramCount; ++program) {
        actionOf(program)->setText(
            LabelOf(program, translated ? GMProgramName(program) : QString(NK::MIDI::GetGMProgramText(program))));
    }
    actionOf(kDrumKit)->setText(translated ? GMDrumKitName() : QString(NK::MIDI::GetDrumKitText()));
}

void QGMPatchMenu::setFamilies(const QStringList& names) {
    for (int family = 0; family < std::min(kFamilyCount, static_cast<int>(names.size())); ++family) {
        families_[family] = names[family];
    }
}

std::optional<int> QGMPatchMenu::choose(const QPoint& globalPosition) {
    wanted_ = globalPosition;
    layOut();
    const QAction* action = exec(globalPosition);
    if (action == nullptr) {
        return std::nullopt;
    }
    bool isNumber = false;
    const int program = action->data().toInt(&isNumber);
    if (!isNumber || program < kDrumKit || program >= kProgramCount) {
        return std::nullopt;
    }
    return program;
}

QAction* QGMPatchMenu::actionOf(int program) const {
    return program < 0 ? actions().last() : actions().at(program + program / kFamilySize);
}

int QGMPatchMenu::activeProgram() const {
    const QAction* const action = activeAction();
    return action != nullptr && !action->isSeparator() ? action->data().toInt() : currentProgram_;
}

QRect QGMPatchMenu::programRect(int program) const {
    if (program < 0) {
        return layout_.DrumKit();
    }
    return program / kFamilySize == family_ ? layout_.Program(program % kFamilySize) : QRect();
}

int QGMPatchMenu::programAt(const QPoint& point) const {
    if (layout_.DrumKit().contains(point)) {
        return kDrumKit;
    }
    for (int row = 0; row < kFamilySize; ++row) {
        if (layout_.Program(row).contains(point)) {
            return family_ * kFamilySize + row;
        }
    }
    return kNowhere;
}

int QGMPatchMenu::familyAt(const QPoint& point) const {
    for (int family = 0; family < kFamilyCount; ++family) {
        if (layout_.Family(family).contains(point)) {
            return family;
        }
    }
    return kNowhere;
}

void QGMPatchMenu::activate(int program) {
    setActiveAction(actionOf(program));
    if (program >= 0) {
        family_ = program / kFamilySize;
    }
    update();
}

/// As the Enter key does, which ends exec() with the action.
void QGMPatchMenu::trigger(int program) {
    activate(program);
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QMenu::keyPressEvent(&enter);
}

void QGMPatchMenu::showFamily(int family) {
    rest_.stop();
    if (family != family_) {
        activate(family * kFamilySize + std::max(activeProgram(), 0) % kFamilySize);
    }
}

void QGMPatchMenu::stepFamily(int step) {
    showFamily((family_ + step + kFamilyCount) % kFamilyCount);
}

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
    for (const QString& name : families_) {
        layout_.familyWidth = std::max(layout_.familyWidth, widthOf(item, name));
    }
    layout_.programWidth = 0;
    for (const QAction* action : actions()) {
        layout_.programWidth = std::max(layout_.programWidth, widthOf(item, action->text()));
    }
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

void QGMPatchMenu::showEvent(QShowEvent* event) {
    layOut();  // the menu's own place would be the wanted one
    pointerAtOpening_ = QCursor::pos();
    pressed_ = false;
    activate(currentProgram_);
    QMenu::showEvent(event);
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
    item.text = families_[family];
    item.rect = layout_.Family(family);
    if (family == family_ && activeProgram() != kDrumKit) {
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
    for (int family = 0; family < kFamilyCount; ++family) {
        const QStyleOptionMenuItem item = familyItem(family);
        style()->drawControl(QStyle::CE_MenuItem, &item, &painter, this);
    }
    const auto drawProgram = [&](int program) {
        QStyleOptionMenuItem item;
        initStyleOption(&item, actionOf(program));
        item.rect = programRect(program);
        item.menuHasCheckableItems = true;
        item.checkType = QStyleOptionMenuItem::Exclusive;
        style()->drawControl(QStyle::CE_MenuItem, &item, &painter, this);
    };
    for (int row = 0; row < kFamilySize; ++row) {
        drawProgram(family_ * kFamilySize + row);
    }
    drawProgram(kDrumKit);
    painter.setPen(palette().color(QPalette::Midlight));
    painter.drawLine(layout_.Divider(), layout_.margin + 2, layout_.Divider(), height() - layout_.margin - 3);
    const int line = layout_.DrumKit().top() - 5;
    painter.drawLine(layout_.margin + 2, line, layout_.Divider() - 6, line);
}

void QGMPatchMenu::keyPressEvent(QKeyEvent* event) {
    constexpr int kPlaces = kProgramCount + 1;  // the drum kit is the last
    const int active = activeProgram();
    const int place = active < 0 ? kProgramCount : active;
    const auto goTo = [this](int target) { activate(target == kProgramCount ? kDrumKit : target); };
    switch (event->key()) {
        case Qt::Key_Up:
            goTo((place + kPlaces - 1) % kPlaces);
            break;
        case Qt::Key_Down:
            goTo((place + 1) % kPlaces);
            break;
        case Qt::Key_Left:
        case Qt::Key_PageUp:
            stepFamily(-1);
            break;
        case Qt::Key_Right:
        case Qt::Key_PageDown:
            stepFamily(1);
            break;
        case Qt::Key_Home:
            goTo(0);
            break;
        case Qt::Key_End:
            goTo(kProgramCount);
            break;
        default:
            QMenu::keyPressEvent(event);
            if (isVisible()) {
                activate(activeProgram());  // which a typed text may have changed
            }
            return;
    }
    event->accept();
}

void QGMPatchMenu::mouseMoveEvent(QMouseEvent* event) {
    const QPoint point = event->position().toPoint();
    if (const int program = programAt(point); program != kNowhere) {
        rest_.stop();
        activate(program);
    } else if (const int family = familyAt(point); family != kNowhere) {
        pointed_ = family;
        rest_.start(kRestMs, this);
    } else {
        rest_.stop();
    }
}

void QGMPatchMenu::mousePressEvent(QMouseEvent* event) {
    const QPoint point = event->position().toPoint();
    if (!rect().contains(point)) {
        QMenu::mousePressEvent(event);
        return;
    }
    pressed_ = true;
    if (const int family = familyAt(point); family != kNowhere) {
        showFamily(family);
    }
}

void QGMPatchMenu::mouseReleaseEvent(QMouseEvent* event) {
    // The button that opened the menu may be let go on it, or hold it until it is let go on a program.
    const QPoint moved = event->globalPosition().toPoint() - pointerAtOpening_;
    const int program = programAt(event->position().toPoint());
    if (program != kNowhere && (pressed_ || moved.manhattanLength() > QApplication::startDragDistance())) {
        trigger(program);
    }
}

void QGMPatchMenu::wheelEvent(QWheelEvent* event) {
    if (const int turn = event->angleDelta().y(); turn != 0) {
        stepFamily(turn > 0 ? -1 : 1);
    }
    event->accept();
}

void QGMPatchMenu::leaveEvent(QEvent*) {
    rest_.stop();
}

void QGMPatchMenu::timerEvent(QTimerEvent* event) {
    if (event->timerId() == rest_.timerId()) {
        showFamily(pointed_);
    } else {
        QMenu::timerEvent(event);
    }
}
