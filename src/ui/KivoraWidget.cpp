#include "ui/KivoraWidget.h"

#include <QEvent>
#include <QMessageBox>
#include <QPainter>
#include <QPaintEvent>

#include "engine/CKivora.h"
#include "engine/EngineFront.h"
#include "midi/TMIDIMessage.h"
#include "nk/nk_keyboard_layout.h"
#include "QtWidgets/piano/NoteNamesQt.h"
#include "QtWidgets/piano/QPiano.h"
#include "QtWidgets/piano/QPianoPCKeyHelpBar.h"
#include "QtWidgets/skin/QBlinkingLed.h"
#include "ui/MIDIEventRelay.h"
#include "ui/PanelGeometry.h"

using NK::MIDI::TMIDIMessage;

namespace {

constexpr QColor kInk(3, 10, 26);
constexpr BYTE kFirstNote = 36;
constexpr BYTE kKeyCount = 61;

QFont DisplayFont(int pixels) {
    QFont font;
    font.setFamilies({"Play", "Inter", "Liberation Sans"});
    font.setPixelSize(pixels);
    font.setBold(true);
    return font;
}

}  // namespace

KivoraWidget::KivoraWidget(Kivora::EngineFront* front, QWidget* parent)
    : QWidget(parent),
      front_(front),
      engine_(front != nullptr ? &front->GetEngine() : nullptr),
      relay_(std::make_unique<MIDIEventRelay>()),
      keys_([this](int code, bool shift) {
          return Kivora::PlayingKeyToCharacter(keyMap_, code, shift, NK::GetKeyboardLanguage());
      }) {
    keyMap_.Build();
    setFocusPolicy(Qt::StrongFocus);
    createWidgets();
    updateSkin();
    if (engine_ != nullptr) {
        connectEngine();
        openPorts();
    }
}

KivoraWidget::~KivoraWidget() {
    releaseComputerKeys();
    if (engine_ != nullptr) {
        engine_->disconnect(relay_.get());
    }
}

QSize KivoraWidget::sizeHint() const {
    return PanelGeometry::kPanel.size();
}

void KivoraWidget::createWidgets() {
    piano_ = new QPiano(this);
    piano_->setObjectName("piano");
    piano_->setGeometry(PanelGeometry::kPiano);
    piano_->SetKeys(kFirstNote, kKeyCount);
    connect(piano_, qOverload<BYTE, BYTE>(&QPiano::keyPressed), this, &KivoraWidget::UIKeyPressed);
    connect(piano_, &QPiano::keyReleased, this, &KivoraWidget::UIKeyReleased);
    connect(piano_, &QPiano::keyAfterTouch, this, &KivoraWidget::UIAfterTouch);

    hintBar_ = new QPianoPCKeyHelpBar(this);
    hintBar_->setObjectName("hint-bar");
    hintBar_->setGeometry(PanelGeometry::kHintBar);
    hintBar_->setRange(piano_->GetFirstNote(), piano_->GetKeyCount());

    midiLamp_ = new QBlinkingLed(this);
    midiLamp_->setObjectName("midi-led");
    midiLamp_->setGeometry(PanelGeometry::kMIDILamp);
    midiLamp_->setImage(":/Resources/Led_9x9_green.png");
}

void KivoraWidget::connectEngine() {
    connect(engine_, &Kivora::CKivora::OnMIDIEvent, relay_.get(), &MIDIEventRelay::Put, Qt::DirectConnection);
    connect(relay_.get(), &MIDIEventRelay::MIDIMessageReady, this, &KivoraWidget::MIDIMessageSent);
    connect(engine_, &Kivora::CKivora::PatchChanged, this, &KivoraWidget::patchChanged);
    connect(engine_, &Kivora::CKivora::SynthSet, this, &KivoraWidget::patchChanged);
    connect(engine_, &Kivora::CKivora::UISkinChanged, this, &KivoraWidget::updateSkin);
    connect(engine_, &Kivora::CKivora::OutputLost, this, &KivoraWidget::outputLost, Qt::QueuedConnection);
}

void KivoraWidget::openPorts() {
    const auto showError = [this](const QString& text) { QMessageBox::critical(this, tr("MIDI Engine Error"), text); };
    try {
        front_->OpenPorts();
    } catch (const NK::CException& error) {
        showError(QString::fromWCharArray(error.GetMessage()));
    } catch (...) {
        showError(tr("An unknown exception occured."));
    }
}

bool KivoraWidget::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::WindowDeactivate:
        case QEvent::WindowBlocked:
            releaseComputerKeys();
            break;
        default:
            break;
    }
    return QWidget::event(event);
}

void KivoraWidget::hideEvent(QHideEvent* event) {
    releaseComputerKeys();
    QWidget::hideEvent(event);
}

void KivoraWidget::paintEvent(QPaintEvent* event) {
    if (skin_.GetPanel().devicePixelRatio() != devicePixelRatio()) {
        composeSkin();  // the window has moved to another screen
    }
    QPainter painter(this);
    const double ratio = devicePixelRatio();
    const QRectF area = event->rect();
    painter.drawPixmap(area, skin_.GetPanel(), QRectF(area.topLeft() * ratio, area.size() * ratio));
    if (event->rect().intersects(PanelGeometry::kMainDisplay)) {
        drawDisplay(painter);
    }
}

void KivoraWidget::drawDisplay(QPainter& painter) const {
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setPen(kInk);
    const QRect inner = PanelGeometry::kMainDisplay.adjusted(10, 4, -10, -4);
    painter.setFont(DisplayFont(20));
    painter.drawText(
        inner, Qt::AlignLeft | Qt::AlignVCenter,
        engine_ == nullptr ? tr("Error: pointer to the engine is NULL") : GMProgramName(engine_->GetPatch(0)));
    painter.setFont(DisplayFont(12));
    painter.drawText(inner, Qt::AlignLeft | Qt::AlignBottom,
                     engine_ == nullptr ? tr("Error") : QString::fromWCharArray(engine_->GetOutputPortName().c_str()));
}

void KivoraWidget::composeSkin() {
    const QColor body = engine_ != nullptr ? engine_->GetUIColor() : Kivora::CKivora::GetDefaultUIColor();
    skin_.Compose({body,
                   Kivora::CKivora::GetDefaultUIDisplayColor(),
                   Kivora::CKivora::GetDefaultUIDisplay2Color(),
                   {},
                   devicePixelRatio()});
}

void KivoraWidget::updateSkin() {
    composeSkin();
    update();
}

void KivoraWidget::patchChanged() {
    update(PanelGeometry::kMainDisplay);
}

void KivoraWidget::outputLost() {
    QMessageBox::warning(this, tr("MIDI Engine Error"),
                         tr("The connection to the MIDI synthesizer was lost: %1")
                             .arg(QString::fromWCharArray(engine_->GetOutputPortName().c_str())));
}

void KivoraWidget::MIDIMessageSent(int packedMessage) {
    TMIDIMessage message = TMIDIMessage::FromWord(static_cast<std::uint32_t>(packedMessage));
    piano_->ProcessMessage(message);
    midiLamp_->blink();
}

void KivoraWidget::UIKeyPressed(BYTE note, BYTE velocity) {
    if (engine_ != nullptr) {
        engine_->PlayNoteOn(note, velocity);
    }
}

void KivoraWidget::UIKeyReleased(BYTE note) {
    if (engine_ != nullptr) {
        engine_->PlayNoteOff(note);
    }
}

void KivoraWidget::UIAfterTouch(BYTE note, BYTE pressure) {
    if (engine_ != nullptr) {
        engine_->PlayAfterTouch(note, pressure);
    }
}
