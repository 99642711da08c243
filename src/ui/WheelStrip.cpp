#include "ui/WheelStrip.h"

#include <cmath>
#include <QEvent>
#include <QInputDevice>
#include <QPainter>
#include <QTouchEvent>

#include "midi/MIDIControllers.h"
#include "ui/parts/InstrumentColors.h"
#include "ui/parts/InstrumentStyle.h"
#include "ui/parts/PanelKey.h"
#include "ui/parts/PanelText.h"
#include "ui/parts/StripWheel.h"

using Kivora::EWheel;
using Kivora::PanelWheels;

namespace {

// In the design's pixels, from the strip's corner.
constexpr std::array<QRect, 3> kWheels{{{13, 20, 30, 136}, {56, 20, 30, 136}, {99, 20, 30, 136}}};
constexpr std::array<QRect, 3> kPedals{{{11, 180, 35, 19}, {54, 180, 35, 19}, {97, 180, 35, 19}}};
constexpr double kWheelBaseline = 13.5;
constexpr double kPedalBaseline = 174.0;
constexpr double kLegendWidth = 41.0;
constexpr double kRadius = 6.0;
constexpr double kFrameWidth = 2.0;

/// A key that each finger presses, while others play the piano.
class StripPedal : public PanelKey {
public:
    explicit StripPedal(QWidget* parent) : PanelKey(parent) {
        setAttribute(Qt::WA_AcceptTouchEvents);
        setCheckable(true);
    }

protected:
    bool event(QEvent* event) override {
        switch (event->type()) {
            case QEvent::TouchBegin:
            case QEvent::TouchUpdate:
            case QEvent::TouchEnd:
            case QEvent::TouchCancel:
                return touch(*static_cast<QTouchEvent*>(event));
            default:
                return PanelKey::event(event);
        }
    }

private:
    bool touch(QTouchEvent& event) {
        if (event.device()->type() != QInputDevice::DeviceType::TouchScreen || !isEnabled()) {
            return PanelKey::event(&event);
        }
        if (event.type() == QEvent::TouchBegin) {
            click();
        }
        event.accept();
        return true;
    }
};

/// What a wheel counts its values from: the pitch from its centre.
int OriginOf(EWheel wheel) {
    return wheel == EWheel::kPitch ? PanelWheels::kPitchCentre : 0;
}

int HighestOf(EWheel wheel) {
    return wheel == EWheel::kPitch ? PanelWheels::kPitchHighest : PanelWheels::kHighest;
}

}  // namespace

WheelStrip::WheelStrip(QWidget* parent)
    : QWidget(parent),
      wheels_{{{addWheel("wheel-pitch", EWheel::kPitch, kWheels[0]), EWheel::kPitch},
               {addWheel("wheel-modulation", EWheel::kModulation, kWheels[1]), EWheel::kModulation},
               {addWheel("wheel-expression", EWheel::kExpression, kWheels[2]), EWheel::kExpression}}},
      pedals_{{{addPedal("pedal-soft", kPedals[0]), EWheel::kSoft},
               {addPedal("pedal-sostenuto", kPedals[1]), EWheel::kSostenuto}}},
      sustain_(addPedal("pedal-sustain", kPedals[2])) {
    setObjectName("wheel-strip");
    for (const Pedal& pedal : pedals_) {
        connect(pedal.control, &PanelKey::clicked, this,
                [this, wheel = pedal.wheel](bool down) { emit moved(wheel, down ? PanelWheels::kHighest : 0); });
    }
    connect(sustain_, &PanelKey::clicked, this, &WheelStrip::sustainMoved);
    retranslate();
}

StripWheel* WheelStrip::addWheel(const char* objectName, EWheel wheel, const QRect& place) {
    const int origin = OriginOf(wheel);
    auto* const control =
        new StripWheel(wheel == EWheel::kPitch ? StripWheel::EKind::kSpringsBack : StripWheel::EKind::kStays, -origin,
                       HighestOf(wheel) - origin, PanelWheels::RestOf(wheel) - origin, this);
    control->setObjectName(objectName);
    control->setGeometry(place);
    connect(control, &StripWheel::turned, this,
            [this, wheel, origin](int value) { emit moved(wheel, value + origin); });
    connect(control, &StripWheel::valueChanged, this, [this, control] { describe(*control); });
    return control;
}

PanelKey* WheelStrip::addPedal(const char* objectName, const QRect& place) {
    auto* const control = new StripPedal(this);
    control->setObjectName(objectName);
    control->setGeometry(place);
    return control;
}

std::vector<QWidget*> WheelStrip::controls() const {
    std::vector<QWidget*> all;
    for (const Wheel& wheel : wheels_) {
        all.push_back(wheel.control);
    }
    for (PanelKey* const pedal : pedals()) {
        all.push_back(pedal);
    }
    return all;
}

std::vector<PanelKey*> WheelStrip::pedals() const {
    return {pedals_[0].control, pedals_[1].control, sustain_};
}

void WheelStrip::setFigureColor(const QColor& color) {
    for (const Wheel& wheel : wheels_) {
        wheel.control->setFigureColor(color);
    }
}

void WheelStrip::follow(NK::MIDI::TMIDIMessage message) {
    if (PanelWheels::IsReset(message)) {
        for (const EWheel wheel : PanelWheels::kAll) {
            show({wheel, PanelWheels::RestOf(wheel)});
        }
        if (message.status == NK::MIDI::TMIDIMessage::kControlChange) {
            sustain_->setChecked(false);
        }
    } else if (const auto move = PanelWheels::FromMessage(message)) {
        show(*move);
    } else if (message.status == NK::MIDI::TMIDIMessage::kControlChange &&
               message.data1 == NK::MIDI::Controller::kSustain) {
        sustain_->setChecked(message.data2 != 0);
    }
}

void WheelStrip::show(const PanelWheels::Move& move) {
    for (const Wheel& wheel : wheels_) {
        if (wheel.wheel == move.wheel) {
            wheel.control->follow(move.value - OriginOf(move.wheel));
        }
    }
    for (const Pedal& pedal : pedals_) {
        if (pedal.wheel == move.wheel) {
            pedal.control->setChecked(move.value != 0);
        }
    }
}

void WheelStrip::bringToRest() {
    for (const Wheel& wheel : wheels_) {
        wheel.control->setSliderDown(false);
    }
    emit restWanted();
}

void WheelStrip::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
}

void WheelStrip::retranslate() {
    setAccessibleName(tr("Wheels and pedals"));
    wheelLegends_ = {tr("Pitch", "legend of a wheel"), tr("Mod", "legend of a wheel: modulation"),
                     tr("Expr", "legend of a wheel: expression")};
    pedalLegends_ = {tr("Soft", "legend of a pedal"), tr("Sost", "legend of a pedal: sostenuto"),
                     tr("Sust", "legend of a pedal: sustain")};
    const auto name = [](QWidget* control, const QString& text, const QString& toolTip) {
        control->setAccessibleName(text);
        control->setToolTip(text + ". " + toolTip);
    };
    const QString stays =
        tr("Drag it, turn the wheel of the mouse over it, or use the arrow keys. A double click, or Home, "
           "brings it to its rest.");
    name(wheels_[0].control, tr("Pitch bend"),
         tr("Drag it, or hold an arrow or page key; it springs back when you let go."));
    name(wheels_[1].control, tr("Modulation"), stays);
    name(wheels_[2].control, tr("Expression"), stays);
    const QString latches = tr("A click presses the pedal, another one lifts it.");
    name(pedals_[0].control, tr("Soft pedal"), latches);
    name(pedals_[1].control, tr("Sostenuto pedal"), latches);
    name(sustain_, tr("Sustain pedal"), latches);
    describeAll();
    update();
}

void WheelStrip::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    describeAll();
}

void WheelStrip::describeAll() {
    for (const Wheel& wheel : wheels_) {
        describe(*wheel.control);
    }
}

void WheelStrip::describe(StripWheel& wheel) {
    if (!isVisible()) {
        return;
    }
    constexpr double kPercent = 100.0;
    const double way = wheel.minimum() < 0 ? -wheel.minimum() : wheel.maximum();
    wheel.setAccessibleDescription(tr("%1%").arg(std::lround(wheel.value() / way * kPercent)));
}

void WheelStrip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.scale(panelScale(), panelScale());
    const QRectF block(0.0, 0.0, width() / panelScale(), height() / panelScale());
    painter.fillRect(block, Qt::black);
    const bool isPlain = InstrumentStyle::IsHighContrast();
    if (!isPlain) {
        QLinearGradient fall(block.topLeft(), block.bottomLeft());
        fall.setColorAt(0.0, InstrumentColors::kCapBottom);
        fall.setColorAt(0.12, InstrumentColors::kMenu.lighter(115));
        fall.setColorAt(1.0, InstrumentColors::kMenu);
        painter.setBrush(fall);
        painter.setPen(QPen(QColor(255, 255, 255, 26), 1.0));
        painter.drawRoundedRect(block.adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
    }
    const auto drawRow = [&painter](const std::array<QRect, 3>& places, const std::array<QString, 3>& legends,
                                    double y) {
        std::vector<PanelText::InRoom> row;
        row.reserve(legends.size());
        for (const QString& legend : legends) {
            row.push_back({legend, kLegendWidth});
        }
        const PanelTextStyle style = PanelText::kSmallLegend.Sized(PanelText::CommonSize(PanelText::kSmallLegend, row));
        for (std::size_t i = 0; i < places.size(); ++i) {
            PanelText::Draw(painter, style, legends[i], {QRectF(places[i]).center().x(), y}, Qt::AlignHCenter,
                            kLegendWidth);
        }
    };
    drawRow(kWheels, wheelLegends_, kWheelBaseline);
    drawRow(kPedals, pedalLegends_, kPedalBaseline);
    if (isPlain) {
        painter.setPen(QPen(Qt::white, kFrameWidth));
        painter.setBrush(Qt::NoBrush);
        constexpr double kOutside = kFrameWidth / 2;
        for (const auto& places : {kWheels, kPedals}) {
            for (const QRect& place : places) {
                painter.drawRoundedRect(QRectF(place).adjusted(-kOutside, -kOutside, kOutside, kOutside), kFrameWidth,
                                        kFrameWidth);
            }
        }
    }
}
