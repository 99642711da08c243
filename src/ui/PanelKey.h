// A key of the panel with a caption.
#pragma once

#include "QtWidgets/skin/QPixmapButton.h"
#include "ui/PanelText.h"

/// Draws its text in a style of the panel, fitted, over its picture; a disabled key's is pale. [gui]
class PanelKey : public QPixmapButton {
    Q_OBJECT

public:
    using QPixmapButton::QPixmapButton;

    /// Without it no caption is drawn. The baseline is in logical pixels from the key's top.
    void setCaptionStyle(const PanelTextStyle& style, double baseline);
    /// The caption's colours; the second while the key is on.
    void setCaptionColors(const QColor& normal, const QColor& on);
    /// Logical pixels by which the caption sinks while the key is on.
    void setCaptionTravel(double y);
    /// The caption as it fits the key now.
    QString fittedCaption() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double captionWidth() const;

    PanelTextStyle style_ = PanelText::kCaption;
    double baseline_ = 0.0;
    bool hasCaption_ = false;
    double travel_ = 0.0;
    QColor normalColor_ = PanelText::kCaption.color;
    QColor onColor_ = PanelText::kCaption.color;
};
