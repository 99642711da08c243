// The ports: opening them, what is told about them, and the settings where they are chosen.
#include <QMessageBox>
#include <utility>

#include "engine/CKivora.h"
#include "engine/EngineControls.h"
#include "engine/PortKeeper.h"
#include "nk/nk_exception.h"
#include "nk/qt/nk_qt_string.h"
#include "QtWidgets/skin/QBlinkingLed.h"
#include "ui/dialogs/midiSettings.h"
#include "ui/dialogs/SoundTexts.h"
#include "ui/KeptText.h"
#include "ui/KivoraWidget.h"
#include "ui/MainDisplay.h"
#include "ui/parts/MessageBoxes.h"
#include "ui/parts/NoticeLine.h"
#include "ui/parts/UnaskedBox.h"

using Kivora::PortKeeper;
using Topic = NoticeLine::Topic;

namespace {
constexpr int kReturnToldMs = 8000;
}

void KivoraWidget::openPorts() {
    if (controls_ == nullptr || keeper_ != nullptr) {
        return;
    }
    keeper_ = std::make_unique<PortKeeper>(*controls_);
    connect(keeper_.get(), &PortKeeper::StateChanged, this, &KivoraWidget::updateNotices);
    connect(keeper_.get(), &PortKeeper::InputReturned, this, &KivoraWidget::inputReturned);
    connect(&portTimer_, &QTimer::timeout, keeper_.get(), &PortKeeper::Look);
    connect(engine_, &Kivora::CKivora::DevicesChanged, keeper_.get(), &PortKeeper::FollowDevices, Qt::QueuedConnection);
    controls_->UpdatePorts();  // to what nobody was told of before
    portTimer_.start(PortKeeper::kLookPeriodMs);
    QString failure;
    try {
        controls_->OpenPorts();
    } catch (const NK::CException& error) {
        failure = NK::ToQt(error.GetMessage());
    } catch (...) {
        failure = tr("An unknown exception occured.");
    }
    updateNotices();
    const QString reasons = failure.isEmpty() ? QString() : explainPorts();
    // Told once, and not at every start: the display goes on saying it.
    if (KeptText(cacheFolder() + "ports-told.txt").Change(failure + reasons) && !failure.isEmpty()) {
        notices_.Tell(QMessageBox::Critical, tr("MIDI Engine Error"), failure, reasons);
    }
}

void KivoraWidget::setEngineFailure(const QString& title, const QString& text, std::function<QString()> reason,
                                    LibMidi::SynthControl* synth, std::function<void()> engineWanted) {
    engineFailure_ = std::move(reason);
    engineWanted_ = std::move(engineWanted);
    substituteSynth_ = synth;
    notices_.Tell(QMessageBox::Critical, title, text);
    updateNotices();
}

void KivoraWidget::setSoundDoctor(SoundDoctorTools tools) {
    doctor_ = std::move(tools);
}

QString KivoraWidget::explainPorts() const {
    if (engine_ == nullptr) {
        return engineFailure_ ? SoundTexts::NoEngineExplanation(engineFailure_()) : QString();
    }
    if (keeper_ == nullptr) {
        return {};
    }
    const LibMidi::SynthControl* const synth = engine_->GetSynth();
    QStringList texts;
    const QString output =
        SoundTexts::OutputExplanation(keeper_->GetOutputState(), SoundTexts::PortName(engine_->GetOutputPortName()),
                                      keeper_->IsOutputBuiltIn() ? NK::ToQt(synth->GetLastError()) : QString());
    if (!output.isEmpty()) {
        texts << output;
    }
    if (engine_->IsInputLost()) {
        texts << SoundTexts::InputExplanation(SoundTexts::PortName(engine_->GetInputPortName()));
    }
    return texts.join("\n\n");
}

void KivoraWidget::updateNotices() {
    NoticeLine& line = *display_->notice();
    const auto tell = [&](Topic topic, const QString& text) {
        if (text.isEmpty()) {
            line.withdraw(topic);
        } else {
            line.tell(topic, text, [this] { settingsClicked(); });
        }
    };
    if (engine_ == nullptr) {
        tell(Topic::kSound, engineFailure_ ? SoundTexts::NoEngineNotice(engineFailure_()) : QString());
    } else if (keeper_ != nullptr) {
        const PortKeeper::OutputState state = keeper_->GetOutputState();
        tell(Topic::kSound, SoundTexts::OutputNotice(state, SoundTexts::PortName(engine_->GetOutputPortName()),
                                                     engine_->IsRecording()));
        if (engine_->IsInputLost()) {
            tell(Topic::kInput, SoundTexts::InputNotice(SoundTexts::PortName(engine_->GetInputPortName())));
        } else if (inputReturnTimer_.isActive()) {
            line.tell(Topic::kInput, SoundTexts::InputReturned(SoundTexts::PortName(engine_->GetInputPortName())));
        } else {
            line.withdraw(Topic::kInput);
        }
    }
}

void KivoraWidget::inputReturned() {
    inputReturnTimer_.setSingleShot(true);
    inputReturnTimer_.start(kReturnToldMs);
    updateNotices();
}

bool KivoraWidget::isOutputWorking() const {
    return engine_ != nullptr && engine_->IsOutputReady() && !engine_->IsOutputLost();
}

void KivoraWidget::outputLost() {
    releaseHeld();
    updateNotices();
}

void KivoraWidget::showInputLosses() {
    if (const std::uint32_t losses = engine_ != nullptr ? engine_->GetInputLostCount() : 0; losses > 0) {
        midiLamp_->setToolTip(tr("Messages of the MIDI keyboard were lost %n time(s), and its held keys were released.",
                                 nullptr, static_cast<int>(losses)));
        midiLamp_->setAccessibleDescription(midiLamp_->toolTip());
    }
}

void KivoraWidget::inputLost() {
    showInputLosses();
    if (!std::exchange(inputLossTold_, true)) {
        UnaskedBox::show(
            MessageBoxes::Make(this, QMessageBox::Warning, tr("Warning"),
                               tr("The MIDI keyboard sends faster than the computer takes it: messages were lost. "
                                  "The keys that it held were released. The MIDI lamp tells how often.")),
            *this);
    }
}

void KivoraWidget::settingsClicked() {
    releaseHeld();
    midiSettings dialog(controls_, this);
    if (engine_ == nullptr) {
        dialog.setSynth(substituteSynth_);
    }
    dialog.explainBy([this] { return explainPorts(); });
    dialog.setSoundDoctor(doctor_);
    if (keeper_ != nullptr) {
        connect(keeper_.get(), &PortKeeper::StateChanged, &dialog, &midiSettings::portsChanged);
        connect(keeper_.get(), &PortKeeper::InputReturned, &dialog, &midiSettings::portsChanged);
        connect(keeper_.get(), &PortKeeper::PortsChanged, &dialog, &midiSettings::portsChanged);
    }
    const bool confirmed = dialog.exec() == QDialog::Accepted;
    updateNotices();
    inputLossTold_ = inputLossTold_ && !confirmed;
    if (confirmed && engine_ == nullptr && engineWanted_) {
        engineWanted_();
    }
}
