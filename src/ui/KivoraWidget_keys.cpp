// What the piano and the computer keys do on the panel.
#include <algorithm>
#include <cstdlib>
#include <QAbstractButton>
#include <QAbstractSlider>
#include <QKeyEvent>

#include "engine/CKivora.h"
#include "engine/EngineControls.h"
#include "engine/EngineExtras.h"
#include "midi/MIDINotes.h"
#include "nk/desktop/nk_pressed_input.h"
#include "QtWidgets/piano/QPiano.h"
#include "QtWidgets/piano/QPianoPCKeyHelpBar.h"
#include "ui/ComputerKeys.h"
#include "ui/InputLanguage.h"
#include "ui/KivoraWidget.h"
#include "ui/MainDisplay.h"
#include "ui/parts/NoticeLine.h"
#include "ui/parts/PanelFigure.h"
#include "ui/parts/PanelLabel.h"
#include "ui/parts/PlayAlong.h"
#include "ui/parts/StripWheel.h"
#include "ui/parts/UnaskedBox.h"

using NK::Piano::CPCKeyPlayer;
using NK::Piano::EVelocityLevel;
using NK::Piano::TPCKeyAction;

namespace {

using NK::MIDI::kOctave;
constexpr int kMaxOctaveShift = 3 * kOctave;
constexpr int kLowestPCKey = 60;  // the note of the lower manual's first key
constexpr int kOfferMs = 15000;

/// The level as the engine counts them.
int LevelOf(EVelocityLevel level) {
    switch (level) {
        case EVelocityLevel::kLow:
            return 0;
        case EVelocityLevel::kHigh:
            return 2;
        default:
            return 1;
    }
}

void LetGoOf(QWidget& control) {
    if (auto* const button = qobject_cast<QAbstractButton*>(&control)) {
        button->setDown(false);
    } else if (auto* const slider = qobject_cast<QAbstractSlider*>(&control)) {
        slider->setSliderDown(false);
        slider->update();
    }
}

/// Whether the place of a click on a key of the piano tells its velocity.
bool IsHeightVelocity(const Kivora::CKivora& engine) {
    return engine.WithExtras([](const Kivora::EngineExtras& extras) { return extras.heightIsVelocity; });
}

}  // namespace

bool KivoraWidget::isPlayable() const {
    return engine_ != nullptr && (isActiveWindow() || UnaskedBox::isActive() || PlayAlong::isActive());
}

void KivoraWidget::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::NoModifier) {
        showMenu(mapToGlobal(rect().center()));
        return;
    }
    computerKeys_->follow(*event);
    const NK::Piano::TPCKey key = computerKeys_->keyOf(*event);
    if (keys_.MayBeLateRepeat(key) && computerKeys_->isDown(*event)) {
        keys_.TakeAsStruck();
    }
    CPCKeyPlayer::CActions actions;
    const bool acts = isPlayable() && keys_.Press(key, actions);
    carryOut(actions);
    event->setAccepted(acts);
}

void KivoraWidget::keyReleaseEvent(QKeyEvent* event) {
    keyRepeats_.noteRelease(*event);
    computerKeys_->follow(*event);
    CPCKeyPlayer::CActions actions;
    const bool acts = engine_ != nullptr && keys_.Release(computerKeys_->keyOf(*event), actions);
    if (keys_.IsReleaseWaiting() && computerKeys_->isUp(*event)) {
        keys_.SettleUp(actions);
    }
    carryOut(actions);
    if (keys_.IsReleaseWaiting()) {
        keySettleTimer_.start(NK::Piano::kRepeatSettleMs, Qt::PreciseTimer, this);
    }
    event->setAccepted(acts);
}

void KivoraWidget::timerEvent(QTimerEvent* event) {
    if (event->timerId() != keySettleTimer_.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    keySettleTimer_.stop();
    CPCKeyPlayer::CActions actions;
    keys_.Settle(actions);
    carryOut(actions);
}

void KivoraWidget::releaseComputerKeys() {
    CPCKeyPlayer::CActions actions;
    keys_.ReleaseAll(actions);
    carryOut(actions);
}

void KivoraWidget::carryOut(const CPCKeyPlayer::CActions& actions) {
    if (controls_ == nullptr) {
        return;
    }
    for (const TPCKeyAction& action : actions) {
        switch (action.kind) {
            case TPCKeyAction::EKind::kNoteOn:
                controls_->PlayPcKey(action.note, LevelOf(action.level));
                break;
            case TPCKeyAction::EKind::kNoteOff:
                controls_->PlayNoteOff(action.note);
                break;
            case TPCKeyAction::EKind::kSustainOn:
                controls_->SetSustain(true);
                break;
            case TPCKeyAction::EKind::kSustainOff:
                controls_->SetSustain(false);
                break;
            case TPCKeyAction::EKind::kPanic:
                resetClicked();
                break;
            case TPCKeyAction::EKind::kPlus:
                stepUpClicked();
                break;
            case TPCKeyAction::EKind::kMinus:
                stepDownClicked();
                break;
        }
    }
}

void KivoraWidget::releaseHeld() {
    releaseComputerKeys();
    piano_->releaseHeld();
    releaseControls(*this);
}

void KivoraWidget::releaseAllBut(const NK::TPressedInput& down) {
    CPCKeyPlayer::CActions actions;
    keys_.ReleaseAllBut([&down](std::uint32_t scanCode) { return down.IsKeyDown(scanCode); }, actions);
    carryOut(actions);
    piano_->releaseAllBut(down);
    const bool isButtonDown = down.IsButtonDown(NK::TPressedInput::kLeftButton);
    for (QWidget* control : findChildren<QWidget*>()) {
        if (auto* const wheel = qobject_cast<StripWheel*>(control)) {
            wheel->releaseAllBut(down);  // which keys and fingers hold too
        } else if (!isButtonDown && control->window() == window()) {
            LetGoOf(*control);
        }
    }
}

void KivoraWidget::releaseControls(QWidget& part) {
    QList<QWidget*> controls = part.findChildren<QWidget*>();
    controls.append(&part);
    for (QWidget* control : controls) {
        if (control->window() != window()) {
            continue;
        }
        LetGoOf(*control);
    }
}

void KivoraWidget::setOctaveShift(int semitones) {
    const int shift = std::clamp(semitones, -kMaxOctaveShift, kMaxOctaveShift);
    CPCKeyPlayer::CActions actions;
    keys_.SetOctaveShift(shift, actions);
    carryOut(actions);
    hintBar_->setOctaveShift(shift);
    if (isBassOnComputerKeys()) {
        withdrawOctaveShift();
    }
    showPianoRange();
    const int octaves = shift / kOctave;
    ShowFigure(octaveValue_, octaves == 0
                                 ? QStringLiteral("0")
                                 : QString(QChar(octaves < 0 ? 0x2212 : '+')) + QString::number(std::abs(octaves)));
}

bool KivoraWidget::isBassOnComputerKeys() const {
    return engine_ != nullptr && kLowestPCKey + keys_.GetOctaveShift() < engine_->GetSplitPoint();
}

void KivoraWidget::offerOctaveShift() {
    if (engine_ == nullptr || !engine_->IsSplit() || isBassOnComputerKeys()) {
        return;
    }
    const int octaves = std::max(kLowestPCKey - engine_->GetSplitPoint(), 0) / kOctave + 1;
    if (octaves * kOctave > kMaxOctaveShift) {
        withdrawOctaveShift();  // the bass lies below all of them
        return;
    }
    display_->notice()->tell(
        NoticeLine::Topic::kHint,
        tr("No computer key plays the bass: press here for octave shift \xE2\x88\x92%1").arg(octaves),
        [this, octaves] { setOctaveShift(-octaves * kOctave); });
    octaveOfferTimer_.start(kOfferMs);
}

void KivoraWidget::withdrawOctaveShift() {
    octaveOfferTimer_.stop();
    display_->notice()->withdraw(NoticeLine::Topic::kHint);
}

void KivoraWidget::octaveUpClicked() {
    setOctaveShift(keys_.GetOctaveShift() + kOctave);
}

void KivoraWidget::octaveDownClicked() {
    setOctaveShift(keys_.GetOctaveShift() - kOctave);
}

void KivoraWidget::UIKeyPressed(BYTE note, BYTE velocity) {
    if (engine_ != nullptr) {
        controls_->PlayNoteOn(note, IsHeightVelocity(*engine_) ? velocity : engine_->GetVelocityNormal());
    }
}

void KivoraWidget::UIKeyReleased(BYTE note) {
    if (engine_ != nullptr) {
        controls_->PlayNoteOff(note);
    }
}

void KivoraWidget::UIAfterTouch(BYTE note, BYTE pressure) {
    if (engine_ != nullptr && IsHeightVelocity(*engine_)) {
        controls_->PlayAfterTouch(note, pressure);
    }
}
