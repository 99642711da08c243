#include "QtWidgets/piano/QPiano.h"

#include <QEvent>
#include <QTouchEvent>

#include <algorithm>
#include <utility>

#include "nk/desktop/nk_pressed_input.h"
#include "nk/nk_exception.h"
#include "QtWidgets/piano/KeyColors.h"
#include "QtWidgets/piano/QPianoAccessible.h"

namespace {
constexpr std::int32_t kFirstLength = 500;
constexpr int kFadePeriodMs = 50;
constexpr std::int32_t kFadeTicks = 3;
constexpr int kPreferredWhiteWidth = 32;
constexpr int kPreferredWhiteLength = 176;
}  // namespace

QPiano::QPiano(QWidget* parent)
    : QWidget(parent),
      CKeyboardPosCalc(kFirstLength),
      whiteColor_(QColor::fromRgb(KeyColors::kWhiteBase)),
      bassColor_(0xD9, 0xDE, 0xE3),
      blackColor_(QColor::fromRgb(KeyColors::kBlackBase)),
      blackCursorColor_(0x5C, 0x92, 0xF0),
      whiteCursorColor_(0x4A, 0x86, 0xE8),
      noteNameFont_(QStringLiteral("Helvetica"), 10),
      finePrintFont_(QStringLiteral("Helvetica"), 5) {
    QPianoAccessible::installFactory();
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_AcceptTouchEvents);
    fadeTimer_.setInterval(kFadePeriodMs);
    connect(&fadeTimer_, &QTimer::timeout, this, &QPiano::onTimer);
    layoutKeys();
}

QPiano::~QPiano() = default;

void QPiano::SetKeys(BYTE first, BYTE count) {
    if (count == 0) {
        throw NK::CInvalidParameterException(L"Number of piano notes must be positive.");
    }
    if (first >= NK::Piano::kNoteCount) {
        throw NK::CInvalidParameterException(L"Piano's starting note must be within MIDI range: [0..127].");
    }
    int widenedCount = count;
    if (NK::Piano::IsBlackNote(first)) {
        --first;
        ++widenedCount;
    }
    if (NK::Piano::IsBlackNote(static_cast<std::uint8_t>((first + widenedCount - 1) % 12))) {
        ++widenedCount;
    }
    SetLayout(first, static_cast<BYTE>(widenedCount), lengthAlongKeys());
    rebuildRects();
    emit geometryChanged();

    // A range past note 255 shows no key at all.
    const int last = std::max<int>(first, lastNote());
    const int wanted = cursorNote_ == kNoKey ? first + widenedCount / 2 : cursorNote_;
    setCursorNote(static_cast<BYTE>(std::clamp<int>(wanted, first, last)));
    QPianoAccessible::rangeChanged(*this);
    repaintAll();
}

void QPiano::setKeyRange(BYTE first, BYTE count) {
    fadeCounters_.fill(0);
    SetLayout(first, count, lengthAlongKeys());
    rebuildRects();
    emit geometryChanged();
    repaintAll();
}

void QPiano::SetBlackKeyWidthRatio(double ratio) {
    CKeyboardPosCalc::SetBlackKeyWidthRatio(ratio);
    rebuildRects();
    emit geometryChanged();
    repaintAll();
}

void QPiano::Assign(const NK::Piano::CKeyboardPosCalc& other) {
    CKeyboardPosCalc::Assign(other);
    rebuildRects();
    emit geometryChanged();
    repaintAll();
}

void QPiano::PressKey(std::uint8_t note) {
    if (note >= NK::Piano::kNoteCount) {
        return;
    }
    CKeyboardStatePoll::PressKey(note);
    if (standalone_) {
        fadeCounters_[note] = kFadeTicks;
    }
    updateKey(note);
}

void QPiano::ReleaseKey(std::uint8_t note) {
    if (note >= NK::Piano::kNoteCount) {
        return;
    }
    CKeyboardStatePoll::ReleaseKey(note);
    updateKey(note);
}

bool QPiano::ReleaseAll() {
    const bool changed = CKeyboardStatePoll::ReleaseAll();
    scheduleChanges();
    return changed;
}

void QPiano::EndPoll() {
    CKeyboardStatePoll::EndPoll();
    scheduleChanges();
}

void QPiano::Assign(const NK::Piano::CKeyboardStatePoll& other) {
    CKeyboardStatePoll::Assign(other);
    scheduleChanges();
}

bool QPiano::AssignCompare(const NK::Piano::CKeyboardStatePoll& other, bool compare) {
    const bool result = CKeyboardStatePoll::AssignCompare(other, compare);
    scheduleChanges();
    return result;
}

void QPiano::setColors(const NK::Piano::CPianoColors* colors) {
    change(colors_, colors);
}

bool QPiano::isCursorShown() const {
    return cursorEnabled_ && focusPolicy() != Qt::NoFocus && hasFocus();
}

void QPiano::setCursorNote(BYTE note) {
    if (note == cursorNote_) {
        return;
    }
    const BYTE previous = std::exchange(cursorNote_, note);
    emit cursorChanged(note);
    if (isCursorShown()) {
        if (previous != kNoKey) {
            update(keyArea(previous));
        }
        update(keyArea(note));
        QPianoAccessible::focusMoved(*this);
    }
}

void QPiano::setVertical(bool vertical) {
    if (vertical == vertical_) {
        return;
    }
    vertical_ = vertical;
    layoutKeys();
    emit geometryChanged();
    repaintAll();
}

void QPiano::setStandalone(bool standalone) {
    if (standalone == standalone_) {
        return;
    }
    standalone_ = standalone;
    if (standalone_) {
        fadeCounters_.fill(0);
        fadeTimer_.start();
    } else {
        fadeTimer_.stop();
    }
}

void QPiano::setBlackKeyLengthK(qreal ratio) {
    if (ratio == blackKeyLengthK_) {
        return;
    }
    blackKeyLengthK_ = ratio;
    rebuildRects();
    repaintAll();
}

void QPiano::setEnableCursor(bool enable) {
    if (enable == cursorEnabled_) {
        return;
    }
    if (!enable) {
        releaseSpace();
    }
    cursorEnabled_ = enable;
    if (enable && focusPolicy() == Qt::NoFocus) {
        setFocusPolicy(Qt::TabFocus);
    }
    update();
}

QSize QPiano::sizeHint() const {
    const QSize horizontal(static_cast<int>(GetWhiteKeyCount()) * kPreferredWhiteWidth, kPreferredWhiteLength);
    return vertical_ ? horizontal.transposed() : horizontal;
}

void QPiano::onTimer() {
    if (!isVisible()) {
        return;
    }
    for (int key = GetFirstNote(); key <= lastNote(); ++key) {
        const auto note = static_cast<BYTE>(key);
        if (IsPressed(note) && --fadeCounters_[note] <= 0) {
            ReleaseKey(note);
        }
    }
}

void QPiano::updateKey(BYTE note) {
    const bool pressed = IsPressed(note);
    if (shownPressed_[note] == pressed) {
        return;
    }
    shownPressed_[note] = pressed;
    if (isInRange(note)) {
        update(keyArea(note));
        QPianoAccessible::keyChanged(*this, note);
    }
}

void QPiano::scheduleChanges() {
    for (int note = 0; note < NK::Piano::kNoteCount; ++note) {
        updateKey(static_cast<BYTE>(note));
    }
}

void QPiano::repaintAll() {
    unpressed_ = QPixmap();
    update();
}

bool QPiano::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TouchCancel:
            if (touchEvent(*static_cast<QTouchEvent*>(event))) {
                event->accept();
                return true;
            }
            return false;
        default:
            return QWidget::event(event);
    }
}

void QPiano::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        repaintAll();
    } else if (event->type() == QEvent::EnabledChange && !isEnabled()) {
        releaseHeld();
        releaseBriefNotes();
    }
}

void QPiano::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layoutKeys();
    repaintAll();
}

void QPiano::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    fadeCounters_.fill(0);
}

void QPiano::releaseHeld() {
    releasePointers();
    releaseSpace();
}

void QPiano::releaseAllBut(const NK::TPressedInput& down) {
    if (!down.IsButtonDown(NK::TPressedInput::kLeftButton)) {
        release(mouse_);
    }
    if (!down.IsKeyDown(spaceScanCode_)) {
        releaseSpace();
    }
}

void QPiano::hideEvent(QHideEvent* event) {
    releaseHeld();
    releaseBriefNotes();
    QWidget::hideEvent(event);
}

void QPiano::closeEvent(QCloseEvent* event) {
    releaseHeld();
    releaseBriefNotes();
    QWidget::closeEvent(event);
}
