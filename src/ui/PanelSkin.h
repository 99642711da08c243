// The panel's static pictures, tinted once for the colours in force.
#pragma once

#include <QColor>
#include <QPixmap>

/// Composed at a device pixel ratio; nothing is tinted while painting. [gui]
class PanelSkin {
public:
    /// Composes everything anew.
    void Compose(const QColor& body, const QColor& display, double devicePixelRatio);

    /// The whole panel without its controls, the main display's glass included.
    const QPixmap& GetPanel() const { return panel_; }

private:
    QPixmap panel_;
};
