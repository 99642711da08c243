// The choice of a colour in a dialog that fits the screen.
#pragma once

#include "ui/parts/FittedDialog.h"

class QColor;
class QColorDialog;

/// The toolkit's own choice of colours, which scrolls where the screen is too small for it. [gui]
class ColorChooser : public FittedDialog {
    Q_OBJECT

public:
    explicit ColorChooser(const QColor& color, QWidget* parent = nullptr);

signals:
    /// With each colour that is tried out.
    void currentColorChanged(const QColor& color);

private:
    QColorDialog* colors_;
};
