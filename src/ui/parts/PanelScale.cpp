#include "ui/parts/PanelScale.h"

#include <algorithm>
#include <cmath>
#include <QComboBox>
#include <QWidget>

#include "ui/parts/FocusRing.h"
#include "ui/parts/PanelGeometry.h"

using PanelGeometry::kPanel;

double PanelScaled::designWidth(const QWidget& self) const {
    return designWidth_.value_or(self.width() / panelScale_);
}

double PanelScale::FitInto(const QSize& room, double wanted) {
    if (room.isEmpty()) {
        return wanted;
    }
    return std::min({wanted, static_cast<double>(room.width()) / kPanel.width(),
                     static_cast<double>(room.height()) / kPanel.height()});
}

void PanelScale::TakeDesign(const QWidget& panel) {
    Collect(panel, {});
}

void PanelScale::Collect(const QWidget& parent, const QPoint& corner) {
    for (QObject* object : parent.children()) {
        auto* const widget = qobject_cast<QWidget*>(object);
        if (widget == nullptr || widget->isWindow() || qobject_cast<FocusRing*>(widget) != nullptr) {
            continue;
        }
        const QRect design = widget->geometry().translated(corner);
        places_.push_back({widget, design, corner});
        if (auto* const scaled = dynamic_cast<PanelScaled*>(widget)) {
            scaled->setDesignWidth(design.width());
        }
        if (qobject_cast<QComboBox*>(widget) == nullptr) {
            Collect(*widget, design.topLeft());
        }
    }
}

QPoint PanelScale::Scaled(const QPoint& design) const {
    return {qRound(design.x() * scale_), qRound(design.y() * scale_)};
}

QSize PanelScale::SizeAt(double scale) {
    constexpr double kRounding = 1e-9;  // of a scale that was made to give a whole number
    return {static_cast<int>(std::floor(kPanel.width() * scale + kRounding)),
            static_cast<int>(std::floor(kPanel.height() * scale + kRounding))};
}

void PanelScale::Place(QWidget& widget, const QRect& design) {
    for (Placed& place : places_) {
        if (place.widget == &widget) {
            place.design = design;
            if (auto* const scaled = dynamic_cast<PanelScaled*>(&widget)) {
                scaled->setDesignWidth(design.width());
            }
            Move(place);
        }
    }
}

void PanelScale::Move(const Placed& place) const {
    if (place.widget == nullptr) {
        return;
    }
    QWidget& widget = *place.widget;
    const QPoint topLeft = Scaled(place.design.topLeft());
    const QPoint end = Scaled(place.design.topLeft() + QPoint(place.design.width(), place.design.height()));
    const QSize size(end.x() - topLeft.x(), end.y() - topLeft.y());
    if (auto* const scaled = dynamic_cast<PanelScaled*>(&widget)) {
        scaled->setPanelScale(scale_);
    }
    if (widget.minimumSize() == widget.maximumSize()) {
        widget.setFixedSize(size);
    }
    widget.setGeometry(QRect(topLeft - Scaled(place.parent), size));
    widget.update();
}

void PanelScale::Apply(double scale) {
    scale_ = scale;
    for (const Placed& place : places_) {
        Move(place);
    }
}
