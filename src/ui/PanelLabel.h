// A text on the panel: a figure on a display, or a legend.
#pragma once

#include <QLabel>

#include <optional>

#include "ui/PanelText.h"

/// Shows its text in a style of the panel, fitted into its width, over an optional picture. The horizontal alignment
/// counts; the vertical place is the baseline's. [gui]
class PanelLabel : public QLabel {
    Q_OBJECT

public:
    explicit PanelLabel(QWidget* parent = nullptr) : PanelLabel(PanelText::kLegend, parent) {}
    explicit PanelLabel(const PanelTextStyle& style, QWidget* parent = nullptr);

    void setTextStyle(const PanelTextStyle& style);
    void setTextColor(const QColor& color);
    /// Logical pixels from the label's top; without one the capitals stand in the middle.
    void setBaseline(double y);
    /// Drawn under the text over the whole label. Not owned; null for none.
    void setGlass(const QPixmap* glass);
    /// Whether the text throws the faint shadow of an LCD.
    void setShadow(bool on);
    /// The text as it fits the label now.
    QString fittedText() const { return PanelText::Fit(style_, text(), width()).text; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    PanelTextStyle style_;
    std::optional<double> baseline_;
    const QPixmap* glass_ = nullptr;
    bool shadow_ = false;
};
