#include "QtWidgets/piano/PianoKeySkin.h"

#include <QImage>
#include <QLinearGradient>
#include <QPainter>

#include <cmath>
#include <initializer_list>
#include <utility>

#include "QtWidgets/piano/GaussianBlur.h"

namespace {
// The drawing's own units: a white key of 31 x 176 and a black key of 16 x 117.92, light from above and the left.
constexpr qreal kWhiteWidth = 31.0;
constexpr qreal kWhiteLength = 176.0;
constexpr qreal kBlackWidth = 16.0;
constexpr qreal kBlackLength = 117.92;
constexpr qreal kShadowBlur = 2.0;
constexpr qreal kShadowOpacity = 0.42;
constexpr qreal kShadowReach = 3.0 * kShadowBlur;
constexpr qreal kShadowLeft = 2.0;
constexpr qreal kShadowRight = 19.0;
constexpr qreal kShadowLength = 122.92;
constexpr int kMostPictures = 512;
// Of a lit key: how much of the pressed keys' shade it has, and where along it one colour passes into the other.
constexpr qreal kLitShade = 0.45;
constexpr qreal kLitRim = 0.35;
constexpr qreal kPressedRim = 0.72;
constexpr qreal kWhiteTipFrom = 0.76;
constexpr qreal kWhiteTipTo = 0.88;
constexpr qreal kBlackTipFrom = 0.45;
constexpr qreal kBlackTipTo = 0.65;

QColor black(qreal alpha) {
    return QColor::fromRgbF(0.0F, 0.0F, 0.0F, static_cast<float>(qBound(0.0, alpha, 1.0)));
}
QColor white(qreal alpha) {
    return QColor::fromRgbF(1.0F, 1.0F, 1.0F, static_cast<float>(alpha));
}

struct Stop {
    qreal position;
    QColor color;
};

QBrush gradient(const QPointF& from, const QPointF& to, std::initializer_list<Stop> stops) {
    QLinearGradient result(from, to);
    for (const Stop& stop : stops) {
        result.setColorAt(stop.position, stop.color);
    }
    return result;
}

QBrush along(qreal top, qreal bottom, std::initializer_list<Stop> stops) {
    return gradient({0.0, top}, {0.0, bottom}, stops);
}

// A rectangle whose two lower corners are parts of ellipses.
QPainterPath tip(const QRectF& rect, qreal radiusX, qreal radiusY) {
    QPainterPath path(rect.topLeft());
    path.lineTo(rect.topRight());
    path.lineTo(rect.right(), rect.bottom() - radiusY);
    path.arcTo(QRectF(rect.right() - 2 * radiusX, rect.bottom() - 2 * radiusY, 2 * radiusX, 2 * radiusY), 0, -90);
    path.lineTo(rect.left() + radiusX, rect.bottom());
    path.arcTo(QRectF(rect.left(), rect.bottom() - 2 * radiusY, 2 * radiusX, 2 * radiusY), -90, -90);
    path.closeSubpath();
    return path;
}

QPainterPath softTip(const QRectF& rect, qreal radius) {
    QPainterPath path(rect.topLeft());
    path.lineTo(rect.topRight());
    path.lineTo(rect.right(), rect.bottom() - radius);
    path.quadTo(rect.bottomRight(), {rect.right() - radius, rect.bottom()});
    path.lineTo(rect.left() + radius, rect.bottom());
    path.quadTo(rect.bottomLeft(), {rect.left(), rect.bottom() - radius});
    path.closeSubpath();
    return path;
}

QPainterPath whiteBody() {
    return tip({0, 0, kWhiteWidth, kWhiteLength}, 3, 3);
}
QPainterPath blackBody() {
    return tip({0, 0, kBlackWidth, kBlackLength}, 2.5, 2.5);
}

QPainterPath blackBevel() {
    QPainterPath path({2.2, 106.42});
    path.quadTo(2.6, 107.92, 4.5, 107.92);
    path.lineTo(11.5, 107.92);
    path.quadTo(13.4, 107.92, 13.8, 106.42);
    path.lineTo(13.8, 113.92);
    path.quadTo(13.8, 115.92, 11.8, 115.92);
    path.lineTo(4.2, 115.92);
    path.quadTo(2.2, 115.92, 2.2, 113.92);
    path.closeSubpath();
    return path;
}

QBrush pressedBody(const PianoKeyLook& look) {
    const QColor color = QColor::fromRgb(look.color);
    if (!look.lit) {
        return color;
    }
    const QColor tipColor = QColor::fromRgb(look.tip);
    return look.black ? along(0.0, kBlackLength, {{kBlackTipFrom, color}, {kBlackTipTo, tipColor}})
                      : along(0.0, kWhiteLength, {{kWhiteTipFrom, color}, {kWhiteTipTo, tipColor}});
}

QBrush frontFace(qreal top) {
    return along(top, kWhiteLength, {{0.0, black(0.14)}, {0.7, black(0.24)}, {1.0, black(0.42)}});
}

int deviceLength(qreal length, qreal devicePixelRatio) {
    return static_cast<int>(std::ceil(length * devicePixelRatio - 1e-6));
}
}  // namespace

void PianoKeySkin::setMetrics(const PianoSkinMetrics& metrics) {
    if (metrics == metrics_) {
        return;
    }
    metrics_ = metrics;
    keys_.clear();
    shadows_.clear();
}

QPixmap PianoKeySkin::key(const PianoKeyLook& look) {
    const auto known = keys_.constFind(look);
    if (known != keys_.constEnd()) {
        return *known;
    }
    const qreal ratio = metrics_.devicePixelRatio;
    const qreal length = look.black ? metrics_.blackLength : metrics_.whiteLength;
    QImage image(qMax(1, look.width), qMax(1, deviceLength(length, ratio)), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(look.width / (look.black ? kBlackWidth : kWhiteWidth),
                  length * ratio / (look.black ? kBlackLength : kWhiteLength));
    drawKey(painter, look);
    painter.end();

    if (keys_.size() >= kMostPictures) {
        keys_.clear();
    }
    QPixmap picture = finished(std::move(image));
    keys_.insert(look, picture);
    return picture;
}

void PianoKeySkin::drawKey(QPainter& painter, const PianoKeyLook& look) const {
    const QColor color = QColor::fromRgb(look.color);
    if (look.black) {
        look.pressed ? drawPressedBlack(painter, look) : drawBlack(painter, color);
    } else {
        look.pressed ? drawPressedWhite(painter, look) : drawWhite(painter, color);
    }
}

void PianoKeySkin::drawWhite(QPainter& painter, const QColor& color) const {
    painter.fillPath(whiteBody(), color);
    painter.fillPath(whiteBody(), along(0.0, kWhiteLength,
                                        {{0.0, black(0.4)},
                                         {0.03, black(0.2)},
                                         {0.1, black(0.1)},
                                         {0.35, black(0.055)},
                                         {0.75, black(0.015)},
                                         {0.95, black(0.0)}}));
    painter.fillPath(tip({0, 167, kWhiteWidth, 9}, 3, 3), frontFace(167));
    painter.fillRect(QRectF(1, 166, 29, 1), white(0.6));
    painter.fillRect(QRectF(0, 0, 1, 167), white(0.7));
    painter.fillRect(QRectF(30, 0, 1, 173), black(0.16));
}

qreal PianoKeySkin::pressedShade(const PianoKeyLook& look) const {
    return metrics_.pressedDarkener * (look.lit ? kLitShade : 1.0);
}

void PianoKeySkin::drawPressedWhite(QPainter& painter, const PianoKeyLook& look) const {
    const qreal k = pressedShade(look);
    const QPainterPath body = tip({0, 0, kWhiteWidth, kWhiteLength}, 3, 2);
    painter.fillPath(whiteBody(), pressedBody(look));
    painter.fillPath(
        body, along(0.0, kWhiteLength,
                    {{0.0, black(0.55 * k)}, {0.08, black(0.34 * k)}, {0.3, black(0.2 * k)}, {1.0, black(0.13 * k)}}));
    painter.fillRect(QRectF(0, 0, 6, 174), gradient({0, 0}, {6, 0}, {{0.0, black(0.42)}, {1.0, black(0.0)}}));
    painter.fillRect(QRectF(27, 0, 4, 174), gradient({31, 0}, {27, 0}, {{0.0, black(0.24)}, {1.0, black(0.0)}}));
    painter.fillPath(tip({0, 172, kWhiteWidth, 4}, 3, 2), frontFace(172));
}

void PianoKeySkin::drawBlack(QPainter& painter, const QColor& color) const {
    const QPainterPath top = softTip({2, 0, 12, 107.42}, 2.5);
    QPainterPath rim = blackBody();
    rim.addPath(top);
    rim.addPath(blackBevel());
    rim.setFillRule(Qt::OddEvenFill);
    painter.fillPath(blackBody(), color);
    painter.fillPath(rim, black(0.6));
    painter.fillPath(
        top,
        along(0.0, 107.42,
              {{0.0, black(0.5)}, {0.12, black(0.3)}, {0.6, black(0.04)}, {0.85, white(0.1)}, {1.0, white(0.22)}}));
    painter.fillRect(QRectF(2, 0, 1, 105.42), white(0.3));
    painter.fillPath(blackBevel(), along(106.42, 115.92, {{0.0, white(0.22)}, {0.3, black(0.05)}, {1.0, black(0.6)}}));
}

void PianoKeySkin::drawPressedBlack(QPainter& painter, const PianoKeyLook& look) const {
    const qreal k = pressedShade(look);
    const QPainterPath top = softTip({2, 0, 12, 113.92}, 2.5);
    QPainterPath rim = blackBody();
    rim.addPath(top);
    rim.setFillRule(Qt::OddEvenFill);
    painter.fillPath(blackBody(), pressedBody(look));
    painter.fillPath(rim, black(look.lit ? kLitRim : kPressedRim));
    painter.fillPath(top, along(0.0, 113.92, {{0.0, black(0.72 * k)}, {0.3, black(0.48 * k)}, {1.0, black(0.26 * k)}}));
    painter.fillRect(QRectF(2, 0, 1, 111.92), white(0.13));
}

QSize PianoKeySkin::blackShadowSize(int width) const {
    const qreal scaleX = width / kBlackWidth;
    const qreal scaleY = metrics_.blackLength * metrics_.devicePixelRatio / kBlackLength;
    return {static_cast<int>(std::ceil((kShadowRight - kShadowLeft + 2 * kShadowReach) * scaleX)),
            static_cast<int>(std::ceil((kShadowLength + kShadowReach) * scaleY))};
}

QPoint PianoKeySkin::blackShadowOffset(int width) const {
    const qreal left = (kShadowLeft - kShadowReach) * width / kBlackWidth;
    const int offset = static_cast<int>(std::floor(left));
    return {metrics_.leftLight ? offset : width - offset - blackShadowSize(width).width(), 0};
}

QPixmap PianoKeySkin::blackShadow(int width) {
    const auto known = shadows_.constFind(width);
    if (known != shadows_.constEnd()) {
        return *known;
    }
    const qreal scaleX = width / kBlackWidth;
    const qreal scaleY = metrics_.blackLength * metrics_.devicePixelRatio / kBlackLength;
    // The blur fades towards the root as well: there is no key above to throw a shadow.
    const int above = static_cast<int>(std::ceil(kShadowReach * scaleY));
    const QSize size = blackShadowSize(width);
    QImage image(size.width(), size.height() + above, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const int left = static_cast<int>(std::floor((kShadowLeft - kShadowReach) * scaleX));
    painter.translate(-left, above);
    painter.scale(scaleX, scaleY);
    painter.fillPath(tip({kShadowLeft, 0, kShadowRight - kShadowLeft, kShadowLength}, 3.5, 3.5), black(kShadowOpacity));
    painter.end();
    GaussianBlur(image, kShadowBlur * scaleX, kShadowBlur * scaleY);

    QPixmap picture = finished(image.copy(0, above, size.width(), size.height()));
    shadows_.insert(width, picture);
    return picture;
}

QPixmap PianoKeySkin::finished(QImage image) const {
    if (!metrics_.leftLight) {
        image = image.mirrored(true, false);
    }
    if (metrics_.vertical) {
        image = image.transformed(QTransform(0, 1, 1, 0, 0, 0));
    }
    QPixmap picture = QPixmap::fromImage(std::move(image));
    picture.setDevicePixelRatio(metrics_.devicePixelRatio);
    return picture;
}
