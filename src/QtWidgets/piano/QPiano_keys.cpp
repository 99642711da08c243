// Playing the piano with its cursor.
#include <QKeyEvent>
#include <QTimerEvent>

#include <utility>

#include "QtWidgets/piano/QPiano.h"
#include "QtWidgets/piano/QPianoAccessible.h"

namespace {
constexpr BYTE kCursorVelocity = 100;
constexpr int kBriefMs = 300;

bool isCursorKey(int code) {
    switch (code) {
        case Qt::Key_Space:
        case Qt::Key_Home:
        case Qt::Key_End:
        case Qt::Key_Left:
        case Qt::Key_Up:
        case Qt::Key_Right:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            return true;
        default:
            return false;
    }
}

// The note that a key moves the cursor to from `note`, which may lie outside of first..last.
int targetOf(int code, int note, int first, int last) {
    using NK::MIDI::kOctave;
    const auto stepOr = [=](int step, int otherwise) {
        const int target = note + step;
        return target >= first && target <= last ? target : otherwise;
    };
    switch (code) {
        case Qt::Key_Home:
            return first;
        case Qt::Key_End:
            return last;
        case Qt::Key_Left:
        case Qt::Key_Up:
            return stepOr(-1, last);
        case Qt::Key_Right:
        case Qt::Key_Down:
            return stepOr(1, first);
        case Qt::Key_PageUp:
            return stepOr(-kOctave, note);
        case Qt::Key_PageDown:
            return stepOr(kOctave, note);
        default:
            return note;
    }
}
}  // namespace

void QPiano::keyPressEvent(QKeyEvent* event) {
    if (!isCursorShown() || !isCursorKey(event->key())) {
        QWidget::keyPressEvent(event);
        return;
    }
    event->accept();
    const NK::Piano::EKeyVerdict verdict = keys_.press(*event);
    settleKeyRelease();
    if (verdict == NK::Piano::EKeyVerdict::kPlay && event->key() == Qt::Key_Space && cursorNote_ != kNoKey) {
        releaseSpace();
        spaceNote_ = cursorNote_;
        spaceScanCode_ = event->nativeScanCode();
        play(spaceNote_);
    }
}

void QPiano::keyReleaseEvent(QKeyEvent* event) {
    if (!isCursorShown() || !isCursorKey(event->key())) {
        QWidget::keyReleaseEvent(event);
        return;
    }
    event->accept();
    settleKeyRelease();
    const TCursorKey key{event->key()};
    switch (keys_.release(*event, key)) {
        case NK::Piano::EKeyVerdict::kRepeat:
            break;
        case NK::Piano::EKeyVerdict::kWait:
            keySettleTimer_.start(NK::Piano::kRepeatSettleMs, this);
            break;
        case NK::Piano::EKeyVerdict::kPlay:
            carryOutRelease(key);
            break;
    }
}

void QPiano::carryOutRelease(const TCursorKey& key) {
    if (key.code == Qt::Key_Space) {
        releaseSpace();
    } else if (cursorNote_ != kNoKey) {
        setCursorNote(static_cast<BYTE>(targetOf(key.code, cursorNote_, GetFirstNote(), lastNote())));
    }
}

void QPiano::settleKeyRelease() {
    keySettleTimer_.stop();
    if (const std::optional<TCursorKey> key = keys_.takeWaiting()) {
        carryOutRelease(*key);
    }
}

void QPiano::releaseSpace() {
    if (const BYTE note = std::exchange(spaceNote_, kNoKey); note != kNoKey) {
        stop(note);
    }
}

void QPiano::playBriefly(BYTE note) {
    if (!isInRange(note) || !isEnabled()) {
        return;
    }
    if (briefNotes_[note]) {
        stop(note);
    }
    briefNotes_.set(note);
    briefTimer_.start(kBriefMs, this);
    play(note);
}

void QPiano::releaseBriefNotes() {
    briefTimer_.stop();
    const CKeySet notes = std::exchange(briefNotes_, CKeySet());
    for (std::size_t note = 0; note < notes.size(); ++note) {
        if (notes[note]) {
            stop(static_cast<BYTE>(note));
        }
    }
}

void QPiano::play(BYTE note) {
    PressKey(note);
    emit keyPressed(note);
    emit keyPressed(note, kCursorVelocity);
}

void QPiano::stop(BYTE note) {
    ReleaseKey(note);
    emit keyReleased(note);
}

void QPiano::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update();
    // Qt tells of the piano's own focus after this event; the key is to be told of last.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (isCursorShown()) {
                QPianoAccessible::focusMoved(*this);
            }
        },
        Qt::QueuedConnection);
}

void QPiano::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    settleKeyRelease();
    releaseSpace();
    update();
}

void QPiano::timerEvent(QTimerEvent* event) {
    if (event->timerId() == keySettleTimer_.timerId()) {
        settleKeyRelease();
    } else if (event->timerId() == briefTimer_.timerId()) {
        releaseBriefNotes();
    } else {
        QWidget::timerEvent(event);
    }
}
