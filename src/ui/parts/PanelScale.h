// How large the panel is drawn.
#pragma once

#include <QPointer>
#include <QRect>
#include <QSize>

#include <optional>
#include <vector>

class QWidget;

/// A widget of the panel that paints in the design's pixels, whatever size it has on the screen. [gui]
class PanelScaled {
public:
    virtual ~PanelScaled() = default;

    /// Logical pixels of the screen for one of the design.
    double panelScale() const { return panelScale_; }
    void setPanelScale(double scale) { panelScale_ = scale; }
    /// The width in the design's pixels, of one that stands in the design. On the screen it fills whole pixels and is
    /// up to one more or less wide: texts that are fitted into the design's width are of one size at every scale.
    void setDesignWidth(double width) { designWidth_ = width; }

protected:
    /// What was set, or else the width that it has on the screen.
    double designWidth(const QWidget& self) const;

private:
    double panelScale_ = 1.0;
    std::optional<double> designWidth_;
};

/// Lays the panel's widgets out at a scale: edges that meet in the design meet at every scale. [gui]
class PanelScale {
public:
    /// The largest scale up to `wanted` at which the design fits that room; `wanted` for no room.
    static double FitInto(const QSize& room, double wanted = 1.0);
    /// The whole panel's at a scale, in whole logical pixels, none of them more than it fills.
    static QSize SizeAt(double scale);

    /// Where the widgets inside the panel stand now is their place in the design. Windows and the parts of combo boxes
    /// are left alone, and so is the focus ring.
    void TakeDesign(const QWidget& panel);

    /// Gives a widget that was taken another place in the design, and moves it there.
    void Place(QWidget& widget, const QRect& design);

    /// Moves, resizes and repaints all of them.
    void Apply(double scale);
    double Get() const { return scale_; }
    QSize GetSize() const { return SizeAt(scale_); }

private:
    struct Placed {
        QPointer<QWidget> widget;
        QRect design;   ///< from the panel's top left corner
        QPoint parent;  ///< the parent's top left corner, likewise
    };

    void Collect(const QWidget& parent, const QPoint& corner);
    QPoint Scaled(const QPoint& design) const;

    void Move(const Placed& place) const;

    std::vector<Placed> places_;
    double scale_ = 1.0;
};
