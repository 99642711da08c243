// A text on the panel: a figure on a display, or a legend.
#pragma once

#include <QLabel>

#include <initializer_list>
#include <optional>

#include "ui/parts/PanelScale.h"
#include "ui/parts/PanelText.h"

/// Shows its text in a style of the panel, fitted into its width, over an optional picture. The horizontal alignment
/// counts; the vertical place is the baseline's. [gui]
class PanelLabel : public QLabel, public PanelScaled {
    Q_OBJECT

public:
    explicit PanelLabel(QWidget* parent = nullptr) : PanelLabel(PanelText::kLegend, parent) {}
    explicit PanelLabel(const PanelTextStyle& style, QWidget* parent = nullptr);

    void setTextStyle(const PanelTextStyle& style);
    /// Gives the labels of a row a style, at the largest size at which all of their texts fit.
    static void ShareTextStyle(const PanelTextStyle& style, std::initializer_list<PanelLabel*> row);
    double textSize() const { return style_.pixels; }
    void setTextColor(const QColor& color);
    /// Logical pixels from the label's top; without one the capitals stand in the middle.
    void setBaseline(double y);
    /// Drawn under the text over the whole label. Not owned; null for none.
    void setGlass(const QPixmap* glass);
    /// Whether the text throws the faint shadow of an LCD.
    void setShadow(bool on);
    /// The text as it fits the label now.
    PanelText::Fitted fittedText() const { return PanelText::Fit(style_, text(), designWidth(*this)); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// The label's size in the design's pixels.
    QSizeF room() const { return QSizeF(size()) / panelScale(); }

    PanelTextStyle style_;
    std::optional<double> baseline_;
    const QPixmap* glass_ = nullptr;
    bool shadow_ = false;
};
