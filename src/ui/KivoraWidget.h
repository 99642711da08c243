// The front panel.
#pragma once

#include <memory>
#include <QBasicTimer>
#include <QWidget>

#include "locale/LocalizedKeyMap.h"
#include "piano/CPCKeyPlayer.h"
#include "QtWidgets/piano/PianoTypes.h"
#include "ui/PanelSkin.h"

class MIDIEventRelay;
class QBlinkingLed;
class QPiano;
class QPianoPCKeyHelpBar;

namespace Kivora {
class CKivora;
class EngineFront;
}  // namespace Kivora

/// Joins the piano, the computer keys and the displays to the engine. Without one nothing sounds and the display says
/// so. [gui]
class KivoraWidget : public QWidget {
    Q_OBJECT

public:
    /// The front is not owned and outlives the panel; null where there is no engine. Opens the ports; a box titled
    /// "MIDI Engine Error" says why one could not be opened.
    explicit KivoraWidget(Kivora::EngineFront* front, QWidget* parent = nullptr);
    ~KivoraWidget() override;

    QSize sizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private slots:
    void MIDIMessageSent(int packedMessage);
    void patchChanged();
    void updateSkin();
    void outputLost();
    void UIKeyPressed(BYTE note, BYTE velocity);
    void UIKeyReleased(BYTE note);
    void UIAfterTouch(BYTE note, BYTE pressure);

private:
    void createWidgets();
    void connectEngine();
    void openPorts();
    void composeSkin();
    void drawDisplay(QPainter& painter) const;

    // KivoraWidget_keys.cpp
    bool isPlayable() const;
    void carryOut(const NK::Piano::CPCKeyPlayer::CActions& actions);
    /// Ends what held computer keys have begun, for when their releases will go elsewhere.
    void releaseComputerKeys();

    Kivora::EngineFront* front_;
    Kivora::CKivora* engine_;
    std::unique_ptr<MIDIEventRelay> relay_;
    PanelSkin skin_;
    QPiano* piano_ = nullptr;  // Qt's parent owns these
    QPianoPCKeyHelpBar* hintBar_ = nullptr;
    QBlinkingLed* midiLamp_ = nullptr;
    Kivora::CLocalizedKeyMap keyMap_;
    NK::Piano::CPCKeyPlayer keys_;
    QBasicTimer keySettleTimer_;
};
