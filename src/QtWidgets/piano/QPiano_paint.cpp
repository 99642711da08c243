// Drawing of the piano: white keys, the shadows of the black keys, black keys, the cover's shadow, texts.
#include <QLinearGradient>
#include <QPainter>
#include <QPaintEvent>

#include <algorithm>
#include <cmath>

#include "QtWidgets/piano/KeyColors.h"
#include "QtWidgets/piano/NoteNamesQt.h"
#include "QtWidgets/piano/QPiano.h"

namespace {
constexpr QRgb kBed = 0xFF0B0B0C;
// In units of a white key of 32 x 176.
constexpr qreal kWhiteWidth = 32.0;
constexpr qreal kWhiteLength = 176.0;
constexpr qreal kCoverShadowLength = 9.0;
constexpr qreal kNameRowTop = 143.0;
constexpr qreal kNameRowHeight = 18.0;
constexpr qreal kNamePatchWidth = 20.0;
constexpr qreal kNamePatchRadius = 4.0;
constexpr QPointF kPressedTextShift(0.2, 1.0);

// Device pixels a logical pixel, also where a picture finer than the screen is painted on.
qreal deviceRatioOf(const QPainter& painter) {
    const QTransform transform = painter.deviceTransform();
    const bool scalesOnly = transform.type() <= QTransform::TxScale && transform.m11() > 0.0;
    return scalesOnly ? transform.m11() : painter.device()->devicePixelRatioF();
}

QColor withAlpha(QRgb rgb, float alpha) {
    QColor color = QColor::fromRgb(rgb);
    color.setAlphaF(alpha);
    return color;
}
}  // namespace

QPiano::TKeyPlace QPiano::placeOf(BYTE note) const {
    const qreal ratio = paintRatio_;
    const QRectF& rect = keyRects_[note];
    const int left = qRound(rect.left() * ratio);
    int width = qRound(rect.right() * ratio) - left;
    if (IsWhiteKey(note)) {
        width -= std::max(1, qRound(GetWhiteKeyWidth() / kWhiteWidth * ratio));
    }
    return {left, std::max(1, width)};
}

QPiano::TKeyLight QPiano::lightOf(BYTE note) const {
    return {IsPressed(note), note == cursorNote_ && isCursorShown()};
}

bool QPiano::isTinted(BYTE note) const {
    return colors_ != nullptr && colors_->GetNoteColor(note)->IsTint();
}

QColor QPiano::keyColor(BYTE note, bool cursor) const {
    const bool black = !IsWhiteKey(note);
    const bool bass = note < splitMainPartStartKey_;
    if (cursor) {
        return black ? blackCursorColor_ : whiteCursorColor_;
    }
    if (colors_ != nullptr) {
        return KeyColors::Tint(*colors_->GetNoteColor(note), black, bass);
    }
    if (black) {
        return blackColor_;
    }
    return bass ? bassColor_ : whiteColor_;
}

PianoKeyLook QPiano::lookOf(BYTE note, const TKeyLight& light, int width) const {
    PianoKeyLook look;
    look.black = !IsWhiteKey(note);
    look.pressed = light.pressed;
    look.width = width;
    const bool bass = note < splitMainPartStartKey_;
    const QColor& shine = bass ? lights_.bass : lights_.main;
    look.lit = light.pressed && shine.isValid();
    if (look.lit) {
        const QColor idle = keyColor(note, false);
        const QColor& tip = bass || !lights_.layer.isValid() ? shine : lights_.layer;
        look.color = KeyColors::Shine(idle, shine).rgb();
        look.tip = KeyColors::Shine(idle, tip).rgb();
    } else {
        look.color = keyColor(note, light.cursor).rgb();
    }
    return look;
}

void QPiano::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    paintRatio_ = deviceRatioOf(painter);
    prepareUnpressed();
    painter.drawPixmap(0, 0, unpressed_);
    for (int key = GetFirstNote(); key <= lastNote(); ++key) {
        const auto note = static_cast<BYTE>(key);
        const TKeyLight light = lightOf(note);
        if (!light.pressed && !light.cursor) {
            continue;
        }
        const QRect area = keyArea(note);
        if (event->region().intersects(area)) {
            painter.setClipRect(area);
            drawKeys(painter, toWidget(area), false);
        }
    }
}

void QPiano::prepareUnpressed() {
    const qreal ratio = paintRatio_;
    skin_.setMetrics({ratio, qreal(lengthAcrossKeys()), blackKeyLength(), vertical_, leftLight_, pressedKeyDarkener_});
    const QSize size(static_cast<int>(std::ceil(width() * ratio)), static_cast<int>(std::ceil(height() * ratio)));
    if (!unpressed_.isNull() && unpressed_.size() == size && unpressed_.devicePixelRatio() == ratio) {
        return;
    }
    unpressed_ = QPixmap(size);
    unpressed_.fill(Qt::black);  // seen in part where the edge falls between two of the screen's pixels
    unpressed_.setDevicePixelRatio(ratio);
    QPainter painter(&unpressed_);
    drawKeys(painter, toWidget(rect()), true);
}

void QPiano::drawKeys(QPainter& painter, const QRectF& frame, bool unpressed) {
    std::array<BYTE, NK::Piano::kNoteCount> notes;
    std::size_t count = 0;
    for (int key = GetFirstNote(); key <= lastNote(); ++key) {
        const auto note = static_cast<BYTE>(key);
        // Shadows reach out of the black keys.
        const qreal reach = IsWhiteKey(note) ? 0.0 : GetWhiteKeyWidth() / 2;
        if (keyRects_[note].adjusted(-reach, 0.0, reach, 0.0).intersects(frame)) {
            notes[count++] = note;
        }
    }
    const auto lightAt = [&](BYTE note) { return unpressed ? TKeyLight() : lightOf(note); };
    const auto drawAll = [&](bool white) {
        for (std::size_t i = 0; i < count; ++i) {
            if (IsWhiteKey(notes[i]) == white) {
                drawKey(painter, notes[i], lightAt(notes[i]));
            }
        }
    };
    painter.fillRect(toWidget(frame), QColor::fromRgb(kBed));
    drawAll(true);
    drawAll(false);

    const qreal coverShadow = lengthAcrossKeys() * kCoverShadowLength / kWhiteLength;
    QLinearGradient cover(QPointF(0.0, 0.0), vertical_ ? QPointF(coverShadow, 0.0) : QPointF(0.0, coverShadow));
    cover.setColorAt(0.0, withAlpha(0x000000, 0.5F));
    cover.setColorAt(1.0, withAlpha(0x000000, 0.0F));
    painter.fillRect(toWidget(QRectF(frame.left(), 0.0, frame.width(), coverShadow)), cover);

    if (noteNames_ || secondaryNoteNames_ || finePrint_) {
        painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
        for (std::size_t i = 0; i < count; ++i) {
            drawTexts(painter, notes[i], lightAt(notes[i]));
        }
    }
}

void QPiano::drawKey(QPainter& painter, BYTE note, const TKeyLight& light) {
    const bool black = !IsWhiteKey(note);
    const TKeyPlace place = placeOf(note);
    if (black && shadows_ && !light.pressed) {
        drawPicture(painter, QPoint(place.left, 0) + skin_.blackShadowOffset(place.width),
                    skin_.blackShadow(place.width));
    }
    drawPicture(painter, {place.left, 0}, skin_.key(lookOf(note, light, place.width)));
}

void QPiano::drawPicture(QPainter& painter, const QPoint& framePosition, const QPixmap& picture) const {
    const QPoint position = vertical_ ? framePosition.transposed() : framePosition;
    painter.drawPixmap(QPointF(position) / paintRatio_, picture);
}

void QPiano::drawTexts(QPainter& painter, BYTE note, const TKeyLight& light) const {
    QPointF shift;
    if (light.pressed) {
        shift = leftLight_ ? kPressedTextShift : QPointF(-kPressedTextShift.x(), kPressedTextShift.y());
    }
    painter.setPen(Qt::black);
    if (IsWhiteKey(note)) {
        const qreal scale = lengthAcrossKeys() / kWhiteLength;
        QRectF row(GetKeyPos(note) + 1.0, kNameRowTop * scale, GetWhiteKeyWidth() - 2.0, kNameRowHeight * scale);
        row.translate(shift);
        const bool patch = isTinted(note) && !light.cursor;
        if (noteNames_) {
            const bool bass = note < splitMainPartStartKey_;
            drawName(painter, keyName(note + (bass ? bassKeyNamesTransposing_ : keyNamesTransposing_)), row, patch);
        }
        if (secondaryNoteNames_) {
            drawName(painter, keyName(note + secondaryKeyNamesTransposing_), row.translated(0.0, -row.height()), patch);
        }
    }
    const QString& text = noteText_.texts[note];
    if (finePrint_ && !text.isEmpty()) {
        const QRectF area = toWidget(labelRects_[note].translated(shift));
        painter.save();
        painter.setFont(finePrintFont_);
        painter.setPen(IsWhiteKey(note) ? Qt::black : Qt::white);
        painter.translate(area.center());
        QSizeF size = area.size();
        if (finePrintVertically_) {
            painter.rotate(-90.0);
            size.transpose();
        }
        painter.drawText(QRectF(QPointF(-size.width() / 2, -size.height() / 2), size),
                         Qt::AlignCenter | Qt::TextDontClip, text);
        painter.restore();
    }
}

void QPiano::drawName(QPainter& painter, const QString& name, const QRectF& row, bool patch) const {
    const qreal widest = row.width() / std::max(2, static_cast<int>(name.size()));
    const int pixelSize = static_cast<int>(std::min(widest, row.height()) + 0.9);
    if (pixelSize < 1) {
        return;
    }
    QFont font = noteNameFont_;
    font.setPixelSize(pixelSize);
    painter.setFont(font);
    const QRectF area = toWidget(row);
    if (patch) {
        const qreal textWidth = QFontMetricsF(font).horizontalAdvance(name) + 4.0;
        QRectF ground(0.0, 0.0, std::max(kNamePatchWidth, textWidth), kNameRowHeight);
        ground.moveCenter(area.center());
        painter.setPen(Qt::NoPen);
        painter.setBrush(withAlpha(0xFFFFFF, 0.4F));
        painter.drawRoundedRect(ground, kNamePatchRadius, kNamePatchRadius);
        painter.setPen(Qt::black);
    }
    painter.drawText(area, Qt::AlignCenter | Qt::TextDontClip, name);
}

QString QPiano::keyName(int note) const {
    if (note < 0 || note >= NK::Piano::kNoteCount) {
        return QString::number(note);
    }
    const bool octaveBegins = note % 12 == 0;
    return octaveBegins ? NoteNameWithOctave(note, true, octavesFromZero_ ? 0 : -1, false)
                        : NoteName(note, true, false);
}
