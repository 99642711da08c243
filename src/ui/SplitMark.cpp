#include "ui/SplitMark.h"

#include <algorithm>
#include <cmath>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <utility>

#include "engine/values/VoiceSlots.h"
#include "midi/MIDINotes.h"
#include "QtWidgets/piano/NoteNamesQt.h"
#include "ui/parts/InstrumentColors.h"

using Kivora::VoiceSlots;

namespace {

using NK::MIDI::kOctave;
constexpr int kOctaveBase = -1;
// In the design's pixels.
constexpr double kLineHeight = 3.0;
constexpr double kLineBottom = 0.5;
constexpr double kGap = 1.5;
constexpr QRectF kHandle{-5.5, 11.5, 11.0, 6.0};  // below the letters of the computer keys
constexpr double kGroove = 1.5;                   // from the edges of the handle
constexpr double kReach = 9.0;                    // of the handle, to either side
constexpr double kFingerReach = 24.0;

}  // namespace

SplitMark::SplitMark(QWidget* parent) : QAbstractSlider(parent) {
    setOrientation(Qt::Horizontal);
    setRange(VoiceSlots::kLowestSplit, VoiceSlots::kHighestSplit);
    setSingleStep(1);
    setPageStep(kOctave);
    setMouseTracking(true);
    setValue(VoiceSlots::kSplitPoint);
    nameValue();
}

void SplitMark::setKeys(BYTE first, std::vector<double> lefts) {
    first_ = first;
    lefts_ = std::move(lefts);
    update();
}

void SplitMark::setColors(const QColor& main, const QColor& bass) {
    main_ = main;
    bass_ = bass;
    update();
}

double SplitMark::xOf(int note) const {
    const int index = note - first_;
    if (index < 0) {
        return 0.0;
    }
    return index < static_cast<int>(lefts_.size()) ? lefts_[static_cast<std::size_t>(index)] : width();
}

int SplitMark::noteAt(double x) const {
    const auto distance = [x](double left) { return std::abs(left - x); };
    if (lefts_.empty()) {
        return value();
    }
    const auto nearest =
        std::min_element(lefts_.begin(), lefts_.end(), [&](double a, double b) { return distance(a) < distance(b); });
    return first_ + static_cast<int>(nearest - lefts_.begin());
}

double SplitMark::capX() const {
    const double half = kHandle.width() / 2 * panelScale();
    return std::clamp(handleX(), half, std::max(width() - half, half));
}

bool SplitMark::isOnHandle(const QMouseEvent& event) const {
    const double reach = event.source() == Qt::MouseEventNotSynthesized ? kReach : kFingerReach;
    return isEnabled() && std::abs(event.position().x() - capX()) <= reach * panelScale();
}

void SplitMark::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(panelScale(), panelScale());
    const double right = width() / panelScale();
    const double bottom = height() / panelScale() - kLineBottom;
    const double x = handleX() / panelScale();
    painter.fillRect(QRectF(QPointF(0.0, bottom - kLineHeight), QPointF(std::max(x - kGap, 0.0), bottom)), bass_);
    painter.fillRect(QRectF(QPointF(std::min(x + kGap, right), bottom - kLineHeight), QPointF(right, bottom)), main_);
    const QRectF cap = kHandle.translated(capX() / panelScale(), 0.0);
    QLinearGradient gradient(cap.topLeft(), cap.bottomLeft());
    gradient.setColorAt(0.0, isSliderDown() ? InstrumentColors::kCapText : InstrumentColors::kDimCapText);
    gradient.setColorAt(1.0, InstrumentColors::kEdge);
    painter.setPen(QPen(InstrumentColors::kCapBottom, 1.0));
    painter.setBrush(gradient);
    painter.drawRoundedRect(cap, 2.0, 2.0);
    painter.setPen(QPen(InstrumentColors::kCapBottom, 1.0));
    for (const double groove : {-2.0, 0.0, 2.0}) {
        const double place = cap.center().x() + groove;
        painter.drawLine(QPointF(place, cap.top() + kGroove), QPointF(place, cap.bottom() - kGroove));
    }
}

void SplitMark::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !isOnHandle(*event)) {
        event->ignore();
        return;
    }
    pressX_ = event->position().x();
    grip_ = pressX_ - handleX();
    isDragged_ = false;
    setSliderDown(true);
    update();
}

void SplitMark::mouseMoveEvent(QMouseEvent* event) {
    const double x = event->position().x();
    if (isSliderDown()) {
        isDragged_ = isDragged_ || std::abs(x - pressX_) >= QApplication::startDragDistance();
        if (isDragged_) {
            setValue(noteAt(x - grip_));
        }
    } else {
        setCursor(isOnHandle(*event) ? Qt::SplitHCursor : Qt::ArrowCursor);
    }
}

void SplitMark::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        setSliderDown(false);
        update();
    }
}

void SplitMark::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && isOnHandle(*event)) {
        setValue(VoiceSlots::kSplitPoint);
    }
}

void SplitMark::wheelEvent(QWheelEvent* event) {
    event->ignore();  // which turns what lies under it
}

void SplitMark::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Home) {
        setValue(VoiceSlots::kSplitPoint);
        return;
    }
    if (event->key() == Qt::Key_End) {
        return;  // the highest point of all is nobody's wish
    }
    QAbstractSlider::keyPressEvent(event);
}

void SplitMark::changeEvent(QEvent* event) {
    QAbstractSlider::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        nameValue();
    }
}

void SplitMark::sliderChange(SliderChange change) {
    QAbstractSlider::sliderChange(change);
    if (change == SliderValueChange) {
        nameValue();
    }
}

void SplitMark::nameValue() {
    const QString note = NoteNameWithOctave(value(), false, kOctaveBase, false);
    setAccessibleName(tr("Split point"));
    setAccessibleDescription(note);
    setToolTip(tr("Split point: %1. Drag it along the keys, or move it by the arrow keys. A double click, or Home, "
                  "brings it back to middle C.")
                   .arg(note));
}
