// The strip of wheels and pedals beside the piano.
#include <QActionGroup>
#include <QApplication>
#include <QMenu>

#include "engine/EngineControls.h"
#include "engine/values/BendRange.h"
#include "QtWidgets/piano/QPiano.h"
#include "QtWidgets/piano/QPianoPCKeyHelpBar.h"
#include "ui/KivoraWidget.h"
#include "ui/parts/PanelControlKeys.h"
#include "ui/parts/PanelGeometry.h"
#include "ui/SplitMark.h"
#include "ui/WheelStrip.h"

using Kivora::BendRange;
using Kivora::EWheel;

void KivoraWidget::createStrip() {
    strip_ = new WheelStrip(this);
    strip_->setGeometry(PanelGeometry::kWheelStrip);
    strip_->hide();
    for (QWidget* const control : strip_->controls()) {
        controlKeys_->watch(control);
        control->installEventFilter(this);
    }
    if (controls_ != nullptr) {
        connect(strip_, &WheelStrip::moved, this,
                [this](EWheel wheel, int value) { controls_->SetWheel(wheel, value); });
        connect(strip_, &WheelStrip::sustainMoved, this, [this](bool down) { controls_->SetPanelSustain(down); });
        connect(strip_, &WheelStrip::restWanted, this, [this] { controls_->RestWheelsAndPedals(); });
    }
}

void KivoraWidget::showStrip() {
    const bool isShown = view_.showsWheels;
    if (isShown == strip_->isVisibleTo(this)) {
        return;
    }
    if (!isShown) {
        strip_->bringToRest();
        if (strip_->isAncestorOf(QApplication::focusWidget())) {
            setFocus();
        }
    }
    piano_->releaseHeld();
    const auto place = [this, isShown](QWidget* row, const QRect& design) {
        scale_.Place(*row, isShown ? PanelGeometry::BesideStrip(design) : design);
    };
    place(hintBar_, PanelGeometry::kHintBar);
    place(splitMark_, PanelGeometry::kSplitMark);
    place(piano_, PanelGeometry::kPiano);
    strip_->setVisible(isShown);
    centreHints();
    composeBackground();
}

void KivoraWidget::createStripMenu() {
    QMenu* const menu = menu_->addMenu(tr("Wheels and Pedals"));
    addMenuState(
        *menu, tr("Show beside the Piano"), Qt::ALT | Qt::Key_W,
        [this] {
            ViewSettings view = view_;
            view.showsWheels = !view.showsWheels;
            changeView(view);
        },
        [this] { return view_.showsWheels; });
    QMenu* const ranges = menu->addMenu(tr("Pitch Bend, in Semitones"));
    auto* const choice = new QActionGroup(menu_);
    for (int semitones = BendRange::kSmallest; semitones <= BendRange::kLargest; ++semitones) {
        addMenuState(
            *ranges, QString(QChar(0xB1)) + QString::number(semitones), {},
            [this, semitones] {
                if (controls_ != nullptr) {
                    controls_->SetBendRange(semitones);
                }
            },
            [this, semitones] { return controls_ != nullptr && controls_->GetBendRange() == semitones; }, choice);
    }
}
