#include "ui/KivoraWidget.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <utility>

#include "engine/CKivora.h"
#include "engine/EngineControls.h"
#include "engine/PortKeeper.h"
#include "engine/TakeJournal.h"
#include "locale/Locale.h"
#include "nk/nk_paths.h"
#include "QtWidgets/piano/QPiano.h"
#include "ui/arpeggiatorSettings.h"
#include "ui/ComputerKeys.h"
#include "ui/dialogs/About.h"
#include "ui/dialogs/PresetList.h"
#include "ui/InputLanguage.h"
#include "ui/MIDIEventRelay.h"
#include "ui/parts/FailureTexts.h"
#include "ui/parts/FocusRing.h"
#include "ui/parts/PanelControlKeys.h"
#include "ui/parts/PlayAlong.h"
#include "ui/parts/UnaskedBox.h"

namespace {
const NK::CString kTakesFolder = L"Takes";
constexpr int kLongestNoticeDelayMs = 1000;  // for a window that does not become the active one
}  // namespace

KivoraWidget::KivoraWidget(Kivora::EngineControls* controls, QWidget* parent, Ports ports)
    : QWidget(parent),
      controls_(controls),
      engine_(controls != nullptr ? &controls->GetEngine() : nullptr),
      editor_(controls),
      relay_(std::make_unique<MIDIEventRelay>()),
      keys_([](int code, bool shift) {
          return Kivora::PlayingKeyToCharacter(Kivora::GetLocalizedKeyMap(), code, shift, Kivora::GetInputLanguage());
      }),
      computerKeys_(std::make_unique<ComputerKeys>(&Kivora::GetInputLayout)),
      helpPages_(this) {
    setObjectName("KivoraWidget");
    setFocusPolicy(Qt::StrongFocus);
    controlKeys_ = new PanelControlKeys(this);
    createHeader();
    createLeftColumn();
    createCentre();
    createValueColumn();
    createRightColumn();
    createKeyboard();
    createStrip();
    scale_.TakeDesign(*this);
    orderFocus();
    focusRing_ = new FocusRing(this);
    focusRing_->exclude(piano_);
    octaveOfferTimer_.setSingleShot(true);
    connect(&octaveOfferTimer_, &QTimer::timeout, this, &KivoraWidget::withdrawOctaveShift);
    connect(&panelTimer_, &QTimer::timeout, this, &KivoraWidget::timerTick);
    connect(computerKeys_.get(), &ComputerKeys::layoutChanged, this, &KivoraWidget::updateKeyNames);
    const Kivora::InputLayoutWatch& layoutWatch = Kivora::InputLayoutWatch::Get();
    connect(&layoutWatch, &Kivora::InputLayoutWatch::Changed, computerKeys_.get(), &ComputerKeys::look);
    if (layoutWatch.TellsAtOnce()) {
        computerKeys_->stopLooking();
    }
    connect(relay_.get(), &MIDIEventRelay::MIDIMessageReady, this, &KivoraWidget::MIDIMessageSent);
    if (engine_ != nullptr) {
        connectEngine();
        loadSettings();
        createRemote();
    }
    setOctaveShift(0);
    loadLanguageFiles();
    updateSkin();
    if (engine_ != nullptr) {
        loadView();
    }
    updateLeftPane();
    updateRightPane();
    recordingStateChanged();
    setFocus();
    if (engine_ != nullptr) {
        tellAboutSettings();
        if (ports == Ports::kOpen) {
            openPorts();
        }
    }
    connect(&inputReturnTimer_, &QTimer::timeout, this, &KivoraWidget::updateNotices);
}

KivoraWidget::~KivoraWidget() {
    releaseHeld();
    if (engine_ != nullptr) {
        // Under the lock, with which every message is emitted: no thread is inside the relay afterwards.
        engine_->WithLock([this] { engine_->disconnect(relay_.get()); });
    }
}

QSize KivoraWidget::sizeHint() const {
    return scale_.GetSize();
}

void KivoraWidget::connectEngine() {
    using Kivora::CKivora;
    connect(engine_, &CKivora::OnMIDIEvent, relay_.get(), &MIDIEventRelay::Put, Qt::DirectConnection);
    connect(engine_, &CKivora::PatchChanged, this, &KivoraWidget::patchChanged);
    connect(engine_, &CKivora::KeyTranslationSettingChanged, this, &KivoraWidget::updateKeyNames);
    connect(engine_, &CKivora::KeyboardDisplayChanged, this, &KivoraWidget::updateKeyboardDisplay);
    connect(engine_, &CKivora::SynthSet, this, &KivoraWidget::synthSet);
    connect(engine_, &CKivora::VoiceSettingsChanged, this, &KivoraWidget::updateVoiceModeButtons);
    connect(engine_, &CKivora::PresetChanged, this, &KivoraWidget::presetChanged);
    connect(engine_, &CKivora::RecordingStateChanged, this, &KivoraWidget::recordingStateChanged);
    connect(engine_, &CKivora::TempoChanged, this, &KivoraWidget::updateTempo);
    connect(engine_, &CKivora::Bar, this, &KivoraWidget::onBar);
    connect(engine_, &CKivora::Beat, this, &KivoraWidget::onBeat);
    connect(engine_, &CKivora::MetronomeChanged, this, &KivoraWidget::updateMetronome);
    connect(engine_, &CKivora::ArpeggiatingChanged, this, &KivoraWidget::arpeggiatingChanged);
    connect(engine_, &CKivora::OutputLost, this, &KivoraWidget::outputLost, Qt::QueuedConnection);
    connect(engine_, &CKivora::InputLost, this, &KivoraWidget::inputLost, Qt::QueuedConnection);
    for (arpeggiatorSettings* pane : {arpeggiator1_, arpeggiator2_}) {
        connect(pane, &arpeggiatorSettings::arpeggiatorBypassChanged, this, [this] { controls_->AllNotesOff(); });
    }
    arpeggiator1_->setArpeggiator(controls_, 0);
    arpeggiator2_->setArpeggiator(controls_, 1);
}

void KivoraWidget::loadSettings() {
    connect(engine_, &Kivora::CKivora::DamagedFileSetAside, this, &KivoraWidget::fileSetAside, Qt::QueuedConnection);
    controls_->LoadSettings();
    // Queued: it reads pictures and may ask the user, and the signal comes with the engine's lock held. What was loaded
    // just now is shown by the constructor.
    connect(engine_, &Kivora::CKivora::UISkinChanged, this, &KivoraWidget::skinChanged, Qt::QueuedConnection);
    wallpaperRefused_ = wallpaperTold().Get();
    controls_->KeepTakes(NK::JoinPath(engine_->GetUserDataDir(), kTakesFolder));
    takes_ = controls_->GetTakes();
    connect(takes_, &Kivora::TakeJournal::WaitingChanged, this, &KivoraWidget::takesChanged);
    connect(takes_, &Kivora::TakeJournal::JournalFailed, this, &KivoraWidget::takeNotKept, Qt::QueuedConnection);
}

void KivoraWidget::takeNotKept() {
    updateTakeNotice();
}

void KivoraWidget::resetClicked() {
    if (controls_ != nullptr) {
        releaseHeld();
        controls_->Panic();
        piano_->ReleaseAll();
    }
}

void KivoraWidget::helpClicked() {
    helpPages_.showHelp();
}

void KivoraWidget::aboutClicked() {
    releaseHeld();
    kivoraAbout about(this);
    connect(&about, &kivoraAbout::webSiteWanted, &helpPages_, &HelpPages::showWebSite);
    about.exec();
}

void KivoraWidget::loadPatchClicked() {
    showPresets(false);
}

void KivoraWidget::savePatchClicked() {
    showPresets(true);
}

void KivoraWidget::showPresets(bool saveMode) {
    if (controls_ != nullptr) {
        releaseHeld();
        PresetList(controls_, saveMode, this).exec();
    }
}

void KivoraWidget::loadLanguageFiles() {
    nameControls();
    createActions();
    composeBackground();
    updateVoiceModeButtons();
    patchChanged();
    presetChanged();
    updateKeyNames();
    updateKeyboardDisplay();
    updateTempo();
    updateStatusDisplay();
    updateNotices();
    updateTakeNotice();
    showInputLosses();
    updateMetronome();
    arpeggiatingChanged();
    if (octaveOfferTimer_.isActive()) {
        offerOctaveShift();
    }
    update();
}

bool KivoraWidget::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::WindowDeactivate:
        case QEvent::FocusOut:
            if (!UnaskedBox::isActive() && !PlayAlong::isActive()) {  // which pass on the releases
                releaseHeld();
            }
            break;
        case QEvent::ShortcutOverride:
            if (keyRepeats_.isRepeat(*static_cast<QKeyEvent*>(event))) {
                event->accept();  // a key like any other, which means nothing
                return true;
            }
            break;
        default:
            break;
    }
    return QWidget::event(event);
}

bool KivoraWidget::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::WindowBlocked:
            releaseHeld();
            break;
        case QEvent::FocusOut:
            // To another control the releases of held keys still find their way; past a pop-up they do not.
            if (static_cast<QFocusEvent*>(event)->reason() == Qt::PopupFocusReason) {
                releaseHeld();
            }
            break;
        case QEvent::FocusIn:
            // The piano keeps the release of Space, which may be down as the pedal.
            if (watched == piano_) {
                releaseComputerKeys();
            }
            break;
        case QEvent::Hide:
            if (auto* const control = qobject_cast<QWidget*>(watched); control != nullptr && control != window()) {
                releaseControls(*control);
            }
            break;
        case QEvent::WindowActivate:
            if (watched == window()) {
                QTimer::singleShot(0, this, [this] { notices_.Begin(); });
            }
            break;
        case QEvent::Resize:
            if (watched == piano_) {
                QMetaObject::invokeMethod(this, &KivoraWidget::centreHints, Qt::QueuedConnection);  // of its new keys
            }
            break;
        case QEvent::ThemeChange:
            if (watched == window()) {
                showView();
            }
            break;
        case QEvent::Close:
            if (watched == window() && !isReadyToClose()) {
                event->ignore();
                return true;
            }
            break;
        default:
            break;
    }
    return QWidget::eventFilter(watched, event);
}

void KivoraWidget::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        loadLanguageFiles();
    }
}

void KivoraWidget::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    window()->installEventFilter(this);
    if (!std::exchange(shownBefore_, true)) {
        takesChanged();  // what an earlier run left
        QTimer::singleShot(kLongestNoticeDelayMs, this, [this] { notices_.Begin(); });
    }
}

void KivoraWidget::hideEvent(QHideEvent* event) {
    releaseHeld();
    QWidget::hideEvent(event);
}
