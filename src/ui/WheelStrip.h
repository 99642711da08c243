// The strip beside the piano: wheels and pedals.
#pragma once

#include <QColor>
#include <QRect>
#include <QWidget>

#include <array>
#include <vector>

#include "engine/PanelWheels.h"
#include "midi/TMIDIMessage.h"
#include "ui/parts/PanelScale.h"

class PanelKey;
class StripWheel;

/// Pitch, modulation and expression as wheels; soft, sostenuto and sustain as keys that stay down until they are
/// pressed again. Tells what is moved on it and follows what is played elsewhere. [gui]
class WheelStrip : public QWidget, public PanelScaled {
    Q_OBJECT

public:
    /// Its size is the design's.
    explicit WheelStrip(QWidget* parent);

    /// Wheels from the left, then pedals.
    std::vector<QWidget*> controls() const;
    std::vector<PanelKey*> pedals() const;
    void setFigureColor(const QColor& color);
    /// Shows what a message moves, whoever has sent it.
    void follow(NK::MIDI::TMIDIMessage message);
    /// For when it goes out of sight: nothing on it is held any more, nor shall be what was moved on it.
    void bringToRest();

signals:
    void moved(Kivora::EWheel wheel, int value);  ///< values as in Kivora::PanelWheels
    void sustainMoved(bool down);
    void restWanted();  ///< of all that was moved here

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct Wheel {
        StripWheel* control;
        Kivora::EWheel wheel;
    };
    struct Pedal {
        PanelKey* control;
        Kivora::EWheel wheel;
    };

    StripWheel* addWheel(const char* objectName, Kivora::EWheel wheel, const QRect& place);
    PanelKey* addPedal(const char* objectName, const QRect& place);
    void show(const Kivora::PanelWheels::Move& move);
    void retranslate();
    void describeAll();
    void describe(StripWheel& wheel);  ///< its value, while it can be seen

    std::array<Wheel, 3> wheels_;
    std::array<Pedal, 2> pedals_;
    PanelKey* sustain_;
    std::array<QString, 3> wheelLegends_;
    std::array<QString, 3> pedalLegends_;
};
