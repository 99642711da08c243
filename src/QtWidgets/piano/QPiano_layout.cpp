// Where the keys of the piano lie.
#include <algorithm>

#include "QtWidgets/piano/QPiano.h"

namespace {
// Parts of the label area, as fractions of the key it lies on.
constexpr qreal kWhiteLabelMargin = 0.05;
constexpr qreal kWhiteLabelWidth = 0.9;
constexpr qreal kWhiteLabelBottom = 0.7644;
constexpr qreal kBlackLabelLeft = 0.2;
constexpr qreal kBlackLabelWidth = 0.75;
constexpr qreal kBlackLabelTop = 0.1;
constexpr qreal kBlackLabelBottom = 0.87;

// Rectangles are half-open, unlike QRectF::contains().
bool holds(const QRectF& rect, const QPointF& point) {
    return point.x() >= rect.left() && point.x() < rect.right() && point.y() >= rect.top() && point.y() < rect.bottom();
}
}  // namespace

int QPiano::lastNote() const {
    return std::min<int>(GetLastNote(), NK::Piano::kNoteCount - 1);
}

QRectF QPiano::toWidget(const QRectF& rect) const {
    return vertical_ ? QRectF(rect.y(), rect.x(), rect.height(), rect.width()) : rect;
}

void QPiano::layoutKeys() {
    SetLayout(GetFirstNote(), GetKeyCount(), lengthAlongKeys());
    rebuildRects();
}

void QPiano::rebuildRects() {
    const qreal length = lengthAcrossKeys();
    const qreal blackLength = blackKeyLength();
    const qreal whiteWidth = GetWhiteKeyWidth();
    const qreal blackWidth = whiteWidth * GetBlackKeyWidthRatio();
    for (int key = GetFirstNote(); key <= lastNote(); ++key) {
        const auto note = static_cast<BYTE>(key);
        const qreal x = GetKeyPos(note);
        if (IsWhiteKey(note)) {
            const qreal top = kWhiteLabelMargin * length + blackLength;
            keyRects_[note] = {x, 0.0, whiteWidth, length};
            labelRects_[note] = {x + kWhiteLabelMargin * whiteWidth, top, kWhiteLabelWidth * whiteWidth,
                                 kWhiteLabelBottom * length - top};
        } else {
            const qreal top = kBlackLabelTop * blackLength;
            keyRects_[note] = {x, 0.0, blackWidth, blackLength};
            labelRects_[note] = {x + kBlackLabelLeft * blackWidth, top, kBlackLabelWidth * blackWidth,
                                 kBlackLabelBottom * blackLength - top};
        }
    }
}

BYTE QPiano::keyAt(const QPointF& position) const {
    const QPointF point = toFrame(position);
    BYTE answer = kNoKey;
    int last = lastNote();
    for (int key = GetFirstNote(); key <= last; ++key) {
        const auto note = static_cast<BYTE>(key);
        if (!holds(keyRects_[note], point)) {
            continue;
        }
        if (!IsWhiteKey(note)) {
            return note;
        }
        answer = note;
        last = std::min(last, key + 1);
    }
    return answer;
}

QRectF QPiano::keyRect(BYTE note) const {
    return isInRange(note) ? toWidget(keyRects_[note]) : QRectF();
}

BYTE QPiano::velocityAt(BYTE note, const QPointF& position) const {
    constexpr double kSteps = 126.0;
    constexpr double kOffset = 1.499999999;
    const int length = IsWhiteKey(note) ? lengthAcrossKeys() : static_cast<int>(blackKeyLength());
    if (length == 0) {
        return 0;
    }
    const double part = std::clamp(toFrame(position).y() / length, 0.0, 1.0);
    return static_cast<BYTE>(std::clamp(static_cast<int>(part * kSteps + kOffset), 1, 127));
}

QRect QPiano::keyArea(BYTE note) const {
    QRectF area = keyRects_[note];
    if (!IsWhiteKey(note) && shadows_) {
        // A black key that goes down takes its shadow along.
        const TKeyPlace place = placeOf(note);
        const QPointF shadow(place.left + skin_.blackShadowOffset(place.width).x(), 0.0);
        area |= QRectF(shadow / paintRatio_, QSizeF(skin_.blackShadowSize(place.width)) / paintRatio_);
    }
    return toWidget(area).toAlignedRect();
}
