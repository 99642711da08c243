// The panel worked from a MIDI keyboard.
#include "engine/CKivora.h"
#include "engine/EngineControls.h"
#include "midi/arpeggiator/CArpeggiator1.h"
#include "nk/nk_file_failure.h"
#include "ui/dialogs/MidiLearn.h"
#include "ui/dialogs/MidiRemote.h"
#include "ui/KivoraWidget.h"
#include "ui/MainDisplay.h"
#include "ui/parts/FailureTexts.h"
#include "ui/parts/NoticeLine.h"

void KivoraWidget::createRemote() {
    using Kivora::EPanelFunction;
    NK::ForgetFileFailure();
    remote_ = new MidiRemote(*controls_, *this);
    const auto tell = [this](const QString& text) { notices_.Tell(QMessageBox::Warning, tr("Warning"), text); };
    using State = Kivora::StoredBindings::State;
    if (remote_->state() == State::kPartly || remote_->state() == State::kDamaged) {
        tell(
            tr("The file of what is bound on MIDI keyboards is damaged. What is whole in it is in force; the file "
               "will be kept under another name."));
    } else if (remote_->state() == State::kNewer) {
        tell(
            tr("Some of what is bound on MIDI keyboards means nothing to this version. It stays in its file, and "
               "the rest is in force."));
    }
    tellUnreadable("bindings", remote_->state() == State::kUnreadable ? FailureTexts::OfLastFile() : QString(),
                   tr("The file of what is bound on MIDI keyboards cannot be read at present. Nothing is bound."));
    connect(remote_, &MidiRemote::damagedFileKept, this, &KivoraWidget::fileSetAside);
    connect(remote_, &MidiRemote::presetStepped, this, [this](bool loaded) {
        NoticeLine& line = *display_->notice();
        if (loaded) {
            line.withdraw(NoticeLine::Topic::kPresets);
        } else {
            line.tell(NoticeLine::Topic::kPresets, tr("There is no preset that can be loaded"),
                      [&line] { line.withdraw(NoticeLine::Topic::kPresets); });
        }
    });
    const auto onArpeggiatorSwitch = [this](int index) {
        return [this, index] {
            controls_->ChangeArpeggiator(index, [](NK::MIDI::CArpeggiator1& arpeggiator) {
                arpeggiator.SetBypassed(!arpeggiator.IsBypassed());
            });
            updateEffectWidgets();
        };
    };
    remote_->setAction(EPanelFunction::kRecord, [this] { toggleRecording(); });
    remote_->setAction(EPanelFunction::kPanic, [this] { resetClicked(); });
    remote_->setAction(EPanelFunction::kSingle, [this] { vm1Clicked(); });
    remote_->setAction(EPanelFunction::kDual, [this] { vm2Clicked(); });
    remote_->setAction(EPanelFunction::kSplit, [this] { vmSClicked(); });
    remote_->setAction(EPanelFunction::kNextVoiceMode, [this] {
        if (engine_->IsSplit()) {
            vm1Clicked();
        } else if (engine_->IsDual()) {
            vmSClicked();
        } else {
            vm2Clicked();
        }
    });
    remote_->setAction(EPanelFunction::kArpeggio, [this] { onArpeggiator(); });
    remote_->setAction(EPanelFunction::kArpeggiator1, onArpeggiatorSwitch(0));
    remote_->setAction(EPanelFunction::kArpeggiator2, onArpeggiatorSwitch(1));
    remote_->setAction(EPanelFunction::kLatch, [this] { toggleLatch(); });
}

void KivoraWidget::toggleRecording() {
    if (engine_ != nullptr && engine_->IsRecording()) {
        onStopRecording();
    } else {
        onRecord();
        leftView_ = LeftView::kRecorder;  // where one sees that it runs
        updateLeftPane();
    }
}

void KivoraWidget::bindPanel() {
    if (remote_ != nullptr) {
        releaseHeld();
        MidiLearn(*remote_, this).exec();
    }
}
