#include "QtWidgets/piano/QGMPatchMenu.h"

#include <algorithm>
#include <numeric>
#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QStyleOptionMenuItem>

#include "midi/GMNames.h"
#include "midi/MIDIPrograms.h"
#include "QtWidgets/piano/NoteNamesQt.h"

using NK::MIDI::kDrumKit;
using NK::MIDI::kProgramCount;

namespace {

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
    std::vector<QString> names;
    names.reserve(kProgramCount + 1);
    for (int program = 0; program < kProgramCount; ++program) {
        names.push_back(GMProgramName(program));
    }
    names.push_back(GMDrumKitName());
    search_.setTexts(names);
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

std::vector<int> QGMPatchMenu::shownPrograms() const {
    switch (list_) {
        case kLastUsed:
            return lastUsed_;
        case kFavorites:
            return favorites_;
        case kFound:
            return found_;
        default:
            break;
    }
    std::vector<int> programs(kFamilySize);
    std::iota(programs.begin(), programs.end(), list_ * kFamilySize);
    return programs;
}

int QGMPatchMenu::rowOf(int program) const {
    const std::vector<int> shown = shownPrograms();
    const auto found = std::find(shown.begin(), shown.end(), program);
    const int row = static_cast<int>(found - shown.begin()) - firstRow_;
    return found != shown.end() && row >= 0 && row < kFamilySize ? row : -1;
}

std::optional<int> QGMPatchMenu::programAtRow(int row) const {
    const std::vector<int> shown = shownPrograms();
    const auto place = static_cast<std::size_t>(firstRow_ + row);
    return place < shown.size() ? std::optional(shown[place]) : std::nullopt;
}

QRect QGMPatchMenu::familyRect(int family) const {
    switch (family) {
        case kLastUsed:
            return layout_.LastUsed();
        case kFavorites:
            return layout_.Favorites();
        default:
            return layout_.Family(family);
    }
}

QRect QGMPatchMenu::programRect(int program) const {
    if (program < 0) {
        return layout_.DrumKit();
    }
    const int row = rowOf(program);
    return row >= 0 ? layout_.Program(row) : QRect();
}

QRect QGMPatchMenu::starRect(int program) const {
    const int row = rowOf(program);
    return row >= 0 ? layout_.Star(row) : QRect();
}

int QGMPatchMenu::programAt(const QPoint& point) const {
    if (layout_.DrumKit().contains(point)) {
        return kDrumKit;
    }
    for (int row = 0; row < kFamilySize; ++row) {
        if (layout_.Program(row).contains(point)) {
            return programAtRow(row).value_or(kNowhere);
        }
    }
    return kNowhere;
}

int QGMPatchMenu::starAt(const QPoint& point) const {
    for (int row = 0; row < kFamilySize; ++row) {
        if (layout_.Star(row).contains(point)) {
            return programAtRow(row).value_or(kNowhere);
        }
    }
    return kNowhere;
}

int QGMPatchMenu::familyAt(const QPoint& point) const {
    for (int family = 0; family < kFound; ++family) {
        if (familyRect(family).contains(point)) {
            return family;
        }
    }
    return kNowhere;
}

void QGMPatchMenu::activate(int program) {
    setActiveAction(actionOf(program));
    if (!isFamily()) {
        scrollTo(program);
    } else if (program >= 0) {
        list_ = program / kFamilySize;
    }
    update();
}

void QGMPatchMenu::scrollTo(int program) {
    const std::vector<int> shown = shownPrograms();
    const int place = static_cast<int>(std::find(shown.begin(), shown.end(), program) - shown.begin());
    if (place < static_cast<int>(shown.size())) {
        firstRow_ = std::clamp(firstRow_, place - kFamilySize + 1, place);
    }
}

/// As the Enter key does, which ends exec() with the action.
void QGMPatchMenu::trigger(int program) {
    activate(program);
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QMenu::keyPressEvent(&enter);
}

void QGMPatchMenu::showEvent(QShowEvent* event) {
    layOut();  // the menu's own place would be the wanted one
    pointerAtOpening_ = QCursor::pos();
    pressed_ = false;
    query_.clear();
    setAccessibleDescription({});
    firstRow_ = 0;
    list_ = std::clamp(currentProgram_, 0, kProgramCount - 1) / kFamilySize;
    activate(currentProgram_);
    QMenu::showEvent(event);
}

void QGMPatchMenu::mouseMoveEvent(QMouseEvent* event) {
    const QPoint point = event->position().toPoint();
    if (const int program = programAt(point); program != kNowhere) {
        rest_.stop();
        activate(program);
    } else if (const int family = familyAt(point); family != kNowhere && query_.isEmpty()) {
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
    const QPoint point = event->position().toPoint();
    if (const int starred = starAt(point); starred != kNowhere) {
        if (pressed_) {
            toggleFavorite(starred);
        }
        return;
    }
    const int program = programAt(point);
    if (program != kNowhere && (pressed_ || moved.manhattanLength() > QApplication::startDragDistance())) {
        trigger(program);
    }
}

void QGMPatchMenu::wheelEvent(QWheelEvent* event) {
    const int longest = static_cast<int>(shownPrograms().size()) - kFamilySize;
    if (const int turn = event->angleDelta().y(); turn != 0 && longest > 0) {
        firstRow_ = std::clamp(firstRow_ + (turn > 0 ? -1 : 1), 0, longest);
        update();
    } else if (turn != 0 && list_ != kFound) {
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
