// Pictures of single piano keys.
#pragma once

#include <QColor>
#include <QHash>
#include <QPainterPath>
#include <QPixmap>
#include <QPoint>

class QPainter;

/// What all keys of a keyboard have in common.
struct PianoSkinMetrics {
    qreal devicePixelRatio = 1.0;
    qreal whiteLength = 0.0;  ///< logical pixels
    qreal blackLength = 0.0;  ///< logical pixels
    bool vertical = false;    ///< pictures are transposed
    bool leftLight = true;    ///< pictures are mirrored along the keyboard when the light falls from the right
    qreal pressedDarkener = 1.0;

    friend bool operator==(const PianoSkinMetrics&, const PianoSkinMetrics&) = default;
};

/// How one key looks.
struct PianoKeyLook {
    bool black = false;
    bool pressed = false;
    bool lit = false;  ///< a pressed key that shines: less of its shade lies over it
    int width = 0;     ///< device pixels along the keyboard
    QRgb color = 0;
    QRgb tip = 0;  ///< of a lit key: what the colour passes into towards the tip

    friend bool operator==(const PianoKeyLook&, const PianoKeyLook&) = default;
    friend size_t qHash(const PianoKeyLook& look, size_t seed = 0) noexcept {
        return qHashMulti(seed, look.black, look.pressed, look.lit, look.width, look.color, look.tip);
    }
};

/// Draws keys once for each look and keeps the pictures. Every picture has the device pixel ratio of the metrics. [gui]
class PianoKeySkin {
public:
    /// Drops the pictures when the metrics differ.
    void setMetrics(const PianoSkinMetrics& metrics);

    /// A key with its root at the top (at the left when vertical), transparent outside its rounded tip.
    QPixmap key(const PianoKeyLook& look);

    /// The shadow that a raised black key throws, and the offset of its picture from the key's, in device pixels of the
    /// horizontal keyboard.
    QPixmap blackShadow(int width);
    QPoint blackShadowOffset(int width) const;
    /// The room that the shadow's picture takes on a horizontal keyboard, in device pixels.
    QSize blackShadowSize(int width) const;

private:
    void drawKey(QPainter& painter, const PianoKeyLook& look) const;
    void drawWhite(QPainter& painter, const QColor& color) const;
    void drawPressedWhite(QPainter& painter, const PianoKeyLook& look) const;
    void drawBlack(QPainter& painter, const QColor& color) const;
    void drawPressedBlack(QPainter& painter, const PianoKeyLook& look) const;
    qreal pressedShade(const PianoKeyLook& look) const;
    QPixmap finished(QImage image) const;

    PianoSkinMetrics metrics_;
    QHash<PianoKeyLook, QPixmap> keys_;
    QHash<int, QPixmap> shadows_;
};
