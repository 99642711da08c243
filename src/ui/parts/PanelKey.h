// A key of the panel with a caption.
#pragma once

#include <initializer_list>
#include <QTimer>

#include "QtWidgets/skin/QPixmapButton.h"
#include "ui/parts/PanelScale.h"
#include "ui/parts/PanelText.h"

/// Draws its text in a style of the panel, fitted, over its picture; a disabled key's is pale. [gui]
class PanelKey : public QPixmapButton, public PanelScaled {
    Q_OBJECT

public:
    explicit PanelKey(QWidget* parent = nullptr);

    /// Without it no caption is drawn. The baseline is in logical pixels from the key's top.
    void setCaptionStyle(const PanelTextStyle& style, double baseline);
    /// Gives the keys of a row the largest size of letters at which all of their captions fit.
    static void ShareCaptionSize(std::initializer_list<PanelKey*> row);
    double captionSize() const { return style_.pixels; }
    /// The caption's colours; the second while the key is on.
    void setCaptionColors(const QColor& normal, const QColor& on);
    /// Logical pixels by which the caption sinks while the key is on.
    void setCaptionTravel(double y);
    /// Shown as being on from now until that time has passed since the last call, whatever the mouse does with the key.
    void blink(int milliseconds);
    bool isOn() const override { return blinkTimer_.isActive() || QPixmapButton::isOn(); }
    /// The caption as it fits the key now.
    PanelText::Fitted fittedCaption() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double captionWidth() const;

    QTimer blinkTimer_;
    PanelTextStyle style_ = PanelText::kCaption;
    double baseline_ = 0.0;
    bool hasCaption_ = false;
    double travel_ = 0.0;
    QColor normalColor_ = PanelText::kCaption.color;
    QColor onColor_ = PanelText::kCaption.color;
};
