// The panel's pictures, tinted once for the colours in force.
#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>

#include <map>

/// What the panel's pictures are composed for.
struct PanelSkinSettings {
    QColor body;
    QColor display;        ///< the main display
    QColor secondDisplay;  ///< parameter keys, read-outs, combos
    QPixmap wallpaper;     ///< null for none; its logical width is the panel's
    double devicePixelRatio = 1.0;
};

/// Nothing is tinted while painting. Composed pictures keep their addresses for the skin's life. [gui]
class PanelSkin {
public:
    /// Composes everything anew. Colours that would make a text illegible are corrected first.
    void Compose(const PanelSkinSettings& settings);

    /// The whole panel without its controls, the main display's glass included.
    const QPixmap& GetPanel() const { return panel_; }
    /// A tinted picture by its resource name without folder and extension: Btn_Param_In, Btn_Tempo_Pr, Lcd_Time,
    /// Combo_62, Display_Main … Throws std::out_of_range for a picture that takes no tint.
    QPixmap* GetTinted(const QString& name) { return &tinted_.at(name); }
    /// Figures on dark glass.
    QColor GetFigureColor() const { return figureColor_; }
    /// The main display's glass, and what is printed inverted on it.
    QColor GetDisplayColor() const { return displayColor_; }
    double GetDevicePixelRatio() const { return panel_.devicePixelRatio(); }

private:
    QPixmap panel_;
    std::map<QString, QPixmap> tinted_;
    QColor figureColor_;
    QColor displayColor_;
};

/// A picture of the resources for that ratio: the one at 2x for ratios above 1.
QPixmap LoadSkinPicture(const QString& name, double devicePixelRatio);
