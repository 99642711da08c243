// The panel's pictures, tinted once for the colours in force.
#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>

#include <map>

class QPainter;

/// What the panel's pictures are composed for.
struct PanelSkinSettings {
    QColor body;
    QColor display;        ///< the main display
    QColor secondDisplay;  ///< parameter keys, read-outs, combos
    QPixmap wallpaper;     ///< null for none; its logical width is the panel's
    double devicePixelRatio = 1.0;
    bool plain = false;  ///< without the brushed metal
    double scale = 1.0;  ///< the panel's, in logical pixels of the screen for one of the design
};

/// Tints are composed beforehand; the body, which the whole panel shows through its overlay, is laid under it while
/// painting, so that another colour of it composes nothing. Composing again makes anew only what differs. Composed
/// pictures keep their addresses for the skin's life; they are in the screen's own pixels. [gui]
class PanelSkin {
public:
    /// Colours that would make a text illegible are corrected first.
    void Compose(const PanelSkinSettings& settings);

    /// What lies under the overlay: the colour, or the wallpaper behind smoked glass. In the design's coordinates.
    void DrawBody(QPainter& painter) const;
    /// Plates, bays, lights and shades of the whole panel, in the screen's own pixels, none fewer than the panel has.
    const QPixmap& GetOverlay() const { return overlay_; }
    /// Draws such a picture. In the design's coordinates.
    void DrawComposed(QPainter& painter, const QPixmap& picture) const;
    /// A tinted picture by its resource name without folder and extension: Btn_Param_In, Btn_Tempo_Pr, Lcd_Time,
    /// Combo_62, Display_Main … Throws std::out_of_range for a picture that takes no tint.
    QPixmap* GetTinted(const QString& name) { return &tinted_.at(name); }
    /// A part of a slider by its resource name. Its logical size is the one on the screen, which sliders take theirs
    /// from.
    QPixmap* GetSliderPart(const QString& name) { return &sliderParts_.at(name); }
    /// Figures on dark glass.
    QColor GetFigureColor() const { return figureColor_; }
    /// The main display's glass, and what is printed inverted on it.
    QColor GetDisplayColor() const { return displayColor_; }
    /// Device pixels for one of the design.
    double GetRatio() const { return ratio_; }

private:
    void ComposeOverlay();
    void ComposeWallpaper(const QPixmap& wallpaper);

    double ratio_ = 0.0;
    bool brushed_ = true;
    qint64 wallpaperKey_ = 0;  ///< of the picture that was composed last
    QColor body_;              ///< as it is painted
    QColor smoke_;
    QPixmap overlay_;
    QPixmap wallpaper_;  ///< in the screen's own pixels; null for none
    std::map<QString, QPixmap> tinted_;
    std::map<QString, QPixmap> sliderParts_;
    QColor figureColor_;
    QColor displayColor_;
};

/// The resource that has a picture finely enough for that many device pixels a pixel of the design, as far as there is
/// one: at 1x, 2x or 4x. [any]
QString SkinPictureFile(const QString& name, double ratio);
/// The picture itself, its device pixel ratio set. [gui]
QPixmap LoadSkinPicture(const QString& name, double ratio);
