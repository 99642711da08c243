#include "ui/dialogs/VelocitySettings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <utility>
#include <vector>

#include "engine/EngineControls.h"
#include "engine/EngineExtras.h"
#include "ui/dialogs/VelocityGraph.h"
#include "ui/parts/Mnemonics.h"
#include "ui/parts/ScrolledForm.h"

using Kivora::EngineExtras;
using Kivora::VelocityCurve;

namespace {
constexpr int kTouchPeriodMs = 50;
}

VelocitySettings::VelocitySettings(Kivora::EngineControls& controls, QWidget* parent)
    : FittedDialog(parent),
      controls_(controls),
      form_(new QFormLayout),
      columns_(new QHBoxLayout),
      shape_(new QComboBox),
      fixed_(addSpin("velocityFixed", VelocityCurve::kLowest, VelocityCurve::kHighest)),
      least_(addSpin("velocityLeast", VelocityCurve::kLowest, VelocityCurve::kHighest)),
      greatest_(addSpin("velocityGreatest", VelocityCurve::kLowest, VelocityCurve::kHighest)),
      firstY_(addSpin("velocityFirstY", VelocityCurve::kLowest, VelocityCurve::kHighest)),
      middleX_(addSpin("velocityMiddleX", VelocityCurve::kLowest + 1, VelocityCurve::kHighest - 1)),
      middleY_(addSpin("velocityMiddleY", VelocityCurve::kLowest, VelocityCurve::kHighest)),
      lastY_(addSpin("velocityLastY", VelocityCurve::kLowest, VelocityCurve::kHighest)),
      height_(new QCheckBox),
      graph_(new VelocityGraph),
      close_(new QPushButton) {
    setObjectName("VelocitySettings");
    shape_->setObjectName("velocityShape");
    height_->setObjectName("velocityHeight");
    graph_->setObjectName("velocityGraph");
    close_->setObjectName("velocityCloseBtn");
    for (QWidget* field :
         std::initializer_list<QWidget*>{shape_, fixed_, least_, greatest_, firstY_, middleX_, middleY_, lastY_}) {
        auto* const label = new QLabel;
        label->setBuddy(field);
        form_->addRow(label, field);
    }
    columns_->addLayout(form_);
    columns_->addWidget(graph_, 1);
    auto* const contents = new QWidget;
    auto* const rows = new QVBoxLayout(contents);
    rows->setContentsMargins({});
    rows->addLayout(columns_, 1);
    rows->addWidget(height_);
    auto* const form = new ScrolledForm;
    form->setObjectName("form");
    form->setWidget(contents);
    auto* const buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(close_);
    auto* const all = new QVBoxLayout(this);
    all->addWidget(form, 1);
    all->addLayout(buttons);
    close_->setDefault(true);
    connect(close_, &QPushButton::clicked, this, &QDialog::accept);
    connect(shape_, &QComboBox::currentIndexChanged, this, &VelocitySettings::store);
    connect(height_, &QCheckBox::toggled, this, &VelocitySettings::store);
    connect(graph_, &VelocityGraph::curveDrawn, this, [this](const VelocityCurve& drawn) {
        showCurve(drawn);
        store();
    });
    connect(&touchTimer_, &QTimer::timeout, this, &VelocitySettings::showTouches);
    touchTimer_.start(kTouchPeriodMs);
    retranslate();
}

QSpinBox* VelocitySettings::addSpin(const char* name, int least, int greatest) {
    auto* const box = new QSpinBox;
    box->setObjectName(name);
    box->setRange(least, greatest);
    box->setKeyboardTracking(false);  // half a number may be less than the smallest
    connect(box, &QSpinBox::valueChanged, this, &VelocitySettings::store);
    return box;
}

void VelocitySettings::changeEvent(QEvent* event) {
    FittedDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
}

void VelocitySettings::arrange(int width) {
    fold(*columns_, width);
}

void VelocitySettings::retranslate() {
    setWindowTitle(tr("Velocity"));
    const std::initializer_list<std::pair<QWidget*, QString>> labels = {{shape_, tr("MIDI keyboard:")},
                                                                        {fixed_, tr("Fixed velocity:")},
                                                                        {least_, tr("Smallest:")},
                                                                        {greatest_, tr("Greatest:")},
                                                                        {firstY_, tr("Softest touch:")},
                                                                        {middleX_, tr("Middle point, touch:")},
                                                                        {middleY_, tr("Middle point, velocity:")},
                                                                        {lastY_, tr("Hardest touch:")}};
    for (const auto& [field, text] : labels) {
        qobject_cast<QLabel*>(form_->labelForField(field))->setText(text);
    }
    height_->setText(tr("On the screen's piano the height of the click is the velocity"));
    graph_->setAccessibleName(tr("Velocity curve"));
    graph_->setToolTip(
        tr("To the right what comes in, up what is played. The last notes are dots. The points of a drawn "
           "curve can be moved."));
    load();
    close_->setText(tr("Close"));
    AssignMnemonics(*this);
}

void VelocitySettings::load() {
    loading_ = true;
    shape_->clear();
    shape_->addItems({tr("Linear"), tr("Soft"), tr("Hard"), tr("Fixed"), tr("Drawn by three points")});
    showCurve(controls_.GetEngine().WithExtras([](const EngineExtras& extras) { return extras.velocity.GetCurve(); }));
    loading_ = true;
    height_->setChecked(
        controls_.GetEngine().WithExtras([](const EngineExtras& extras) { return extras.heightIsVelocity; }));
    loading_ = false;
    touchesShown_ = 0;
    showTouches();
}

void VelocitySettings::showCurve(const VelocityCurve& curve) {
    loading_ = true;
    shape_->setCurrentIndex(static_cast<int>(curve.shape));
    fixed_->setValue(curve.fixed);
    least_->setValue(curve.least);
    greatest_->setValue(curve.greatest);
    firstY_->setValue(curve.firstY);
    middleX_->setValue(curve.middleX);
    middleY_->setValue(curve.middleY);
    lastY_->setValue(curve.lastY);
    graph_->setCurve(curve);
    loading_ = false;
    enable();
}

VelocityCurve VelocitySettings::curve() const {
    VelocityCurve chosen;
    chosen.shape = static_cast<VelocityCurve::Shape>(shape_->currentIndex());
    chosen.fixed = fixed_->value();
    chosen.least = least_->value();
    chosen.greatest = greatest_->value();
    chosen.firstY = firstY_->value();
    chosen.middleX = middleX_->value();
    chosen.middleY = middleY_->value();
    chosen.lastY = lastY_->value();
    return chosen.Kept();
}

void VelocitySettings::store() {
    if (loading_) {
        return;
    }
    const VelocityCurve chosen = curve();
    controls_.SetVelocityWays(chosen, height_->isChecked());
    showCurve(chosen);
    graph_->setDots({});
}

void VelocitySettings::enable() {
    const auto shape = static_cast<VelocityCurve::Shape>(shape_->currentIndex());
    const bool isFixed = shape == VelocityCurve::Shape::kFixed;
    fixed_->setEnabled(isFixed);
    least_->setEnabled(!isFixed);
    greatest_->setEnabled(!isFixed);
    for (QSpinBox* point : {firstY_, middleX_, middleY_, lastY_}) {
        point->setEnabled(shape == VelocityCurve::Shape::kDrawn);
    }
}

void VelocitySettings::showTouches() {
    const auto [count, touches] = controls_.GetEngine().WithExtras([](const EngineExtras& extras) {
        return std::pair(extras.velocity.GetTouchCount(), extras.velocity.GetTouches());
    });
    if (count == touchesShown_) {
        return;
    }
    touchesShown_ = count;
    std::vector<QPoint> dots;
    for (const Kivora::VelocityMap::Touch& touch : touches) {
        if (touch.in != 0) {
            dots.emplace_back(touch.in, touch.out);
        }
    }
    graph_->setDots(std::move(dots));
}
