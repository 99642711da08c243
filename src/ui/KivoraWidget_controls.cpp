// The controls of the panel: which there are, where they stand, what they are called.
#include <QAction>
#include <QCoreApplication>

#include "engine/EngineControls.h"
#include "QtWidgets/piano/QPiano.h"
#include "QtWidgets/piano/QPianoPCKeyHelpBar.h"
#include "QtWidgets/skin/QBlinkingLed.h"
#include "QtWidgets/skin/QClickableLabel.h"
#include "QtWidgets/skin/QJogDial.h"
#include "ui/arpeggiatorSettings.h"
#include "ui/KivoraWidget.h"
#include "ui/MainDisplay.h"
#include "ui/parts/PanelControlKeys.h"
#include "ui/parts/PanelFigure.h"
#include "ui/parts/PanelGeometry.h"
#include "ui/parts/PanelKey.h"
#include "ui/parts/PanelLabel.h"
#include "ui/RecordingTexts.h"
#include "ui/SplitMark.h"
#include "ui/WheelStrip.h"

namespace {

constexpr int kMIDIBlinkMs = 50;
constexpr int kBarBlinkMs = 120;
constexpr int kBeatBlinkMs = 60;
constexpr double kHalfTurn = 180.0;
constexpr double kJogRest = -32.0;  // degrees that the dial stands turned before it is first used
// Logical pixels from the tops of keys and read-outs.
constexpr double kCaptionBaseline = 17.4;
constexpr double kModeCaptionBaseline = 18.5;
constexpr double kParameterBaseline = 20.5;
constexpr double kTempoBaseline = 33.1;
constexpr double kTimeBaseline = 33.6;
constexpr double kTapBaseline = 14.5;
constexpr double kOctaveBaseline = 19.7;

constexpr const char* kArpeggiatorControls[] = {"onOffButton",   "btnRepeat",        "directionCombo", "rangeCombo",
                                                "noteStepCombo", "durationPcSlider", "btnLastVelocity"};

}  // namespace

PanelKey* KivoraWidget::addButton(const char* objectName, const QRect& place, Slot slot) {
    auto* button = new PanelKey(this);
    button->setObjectName(objectName);
    button->setGeometry(place);
    controlKeys_->watch(button);
    button->installEventFilter(this);
    connect(button, &PanelKey::clicked, this, slot);
    return button;
}

PanelKey* KivoraWidget::addToggle(const char* objectName, const QRect& place, Slot slot) {
    PanelKey* button = addButton(objectName, place, slot);
    button->setCheckable(true);
    return button;
}

void KivoraWidget::addCaption(PanelKey* button, double baseline) {
    button->setCaptionStyle(PanelText::kCaption, baseline);
    button->setCaptionTravel(1.0);
}

QBlinkingLed* KivoraWidget::addLamp(const char* objectName, const QRect& place, int blinkMs) {
    auto* lamp = new QBlinkingLed(this);
    lamp->setObjectName(objectName);
    lamp->setGeometry(place);
    lamp->setBlinkTime(blinkMs);
    return lamp;
}

PanelLabel* KivoraWidget::addReadOut(const char* objectName, const QRect& place, const PanelTextStyle& style) {
    auto* label = new PanelLabel(style, this);
    label->setObjectName(objectName);
    label->setGeometry(place);
    label->setAlignment(Qt::AlignHCenter);
    return label;
}

void KivoraWidget::createHeader() {
    midiLamp_ = addLamp("midi-led", PanelGeometry::kMIDILamp, kMIDIBlinkMs);
    reset_ = addButton("reset", PanelGeometry::kReset, &KivoraWidget::resetClicked);
    settings_ = addButton("settings", PanelGeometry::kSettings, &KivoraWidget::settingsClicked);
    helpButton_ = addButton("help", PanelGeometry::kHelp, &KivoraWidget::helpClicked);
    about_ = addButton("about", PanelGeometry::kAbout, &KivoraWidget::aboutClicked);
    for (PanelKey* button : {reset_, settings_, helpButton_, about_}) {
        addCaption(button, kCaptionBaseline);
    }
}

void KivoraWidget::createLeftColumn() {
    single_ = addToggle("voice-mode-single", PanelGeometry::kSingle, &KivoraWidget::vm1Clicked);
    dual_ = addToggle("voice-mode-dual", PanelGeometry::kDual, &KivoraWidget::vm2Clicked);
    split_ = addToggle("voice-mode-split", PanelGeometry::kSplit, &KivoraWidget::vmSClicked);
    for (PanelKey* button : {single_, dual_, split_}) {
        addCaption(button, kModeCaptionBaseline);
    }
    barLamp_ = addLamp("tempo-led-bar", PanelGeometry::kBarLamp, kBarBlinkMs);
    beatLamp_ = addLamp("tempo-led-beat", PanelGeometry::kBeatLamp, kBeatBlinkMs);
    recordView_ = addToggle("record-view", PanelGeometry::kRecordView, &KivoraWidget::onRecordView);
    tempo_ = addToggle("tempo", PanelGeometry::kTempo, &KivoraWidget::tempoClicked);
    metronome_ = addToggle("metronome", PanelGeometry::kMetronome, &KivoraWidget::onMetronomeSwitch);
    tap_ = addButton("tap", PanelGeometry::kTap, &KivoraWidget::tapClicked);
    tapLegend_ = new PanelLabel(PanelText::kLegend, this);
    tapLegend_->setGeometry(PanelGeometry::kTapLegend);
    tapLegend_->setAlignment(Qt::AlignRight);
    tapLegend_->setBaseline(kTapBaseline);
    recordTime_ = addReadOut("record-time", PanelGeometry::kRecordTime, PanelText::kBigFigure);
    recordTime_->setBaseline(kTimeBaseline);
    ShowFigure(recordTime_, RecordingTexts::Elapsed(0));
    record_ = addToggle("record", PanelGeometry::kRecord, &KivoraWidget::onRecord);
    stop_ = addButton("stop", PanelGeometry::kStop, &KivoraWidget::onStopRecording);
    octaveDown_ = addButton("octave-down", PanelGeometry::kOctaveDown, &KivoraWidget::octaveDownClicked);
    octaveValue_ = addReadOut("octave-value", PanelGeometry::kOctaveValue, PanelText::kOctaveFigure);
    octaveValue_->setBaseline(kOctaveBaseline);
    octaveUp_ = addButton("octave-up", PanelGeometry::kOctaveUp, &KivoraWidget::octaveUpClicked);
}

void KivoraWidget::createCentre() {
    display_ = new MainDisplay(this);
    display_->setObjectName("main-display");
    display_->setGeometry(PanelGeometry::kMainDisplay);
    const QClickableLabel* name1 = display_->nameArea(0);
    const QClickableLabel* name2 = display_->nameArea(1);
    connect(name1, qOverload<>(&QClickableLabel::clicked), this, &KivoraWidget::patch1NameClicked);
    connect(name2, qOverload<>(&QClickableLabel::clicked), this, &KivoraWidget::patch2NameClicked);
    connect(name1, qOverload<QPoint>(&QClickableLabel::rightClicked), this, &KivoraWidget::patch1Menu);
    connect(name2, qOverload<QPoint>(&QClickableLabel::rightClicked), this, &KivoraWidget::patch2Menu);

    patch1_ = addToggle("patch1", PanelGeometry::kPatch1, &KivoraWidget::patch1Clicked);
    patch2_ = addToggle("patch2", PanelGeometry::kPatch2, &KivoraWidget::patch2Clicked);
    transpose1_ = addToggle("transpose1", PanelGeometry::kTranspose1, &KivoraWidget::transpose1Clicked);
    transpose2_ = addToggle("transpose2", PanelGeometry::kTranspose2, &KivoraWidget::transpose2Clicked);
    volume1_ = addToggle("volume1", PanelGeometry::kVolume1, &KivoraWidget::volume1Clicked);
    volume2_ = addToggle("volume2", PanelGeometry::kVolume2, &KivoraWidget::volume2Clicked);
    for (PanelKey* button : {patch1_, patch2_, transpose1_, transpose2_, volume1_, volume2_}) {
        button->setCaptionStyle(PanelText::kParameter, kParameterBaseline);
    }
    tempo_->setCaptionStyle(PanelText::kBigFigure, kTempoBaseline);
    for (PanelKey* button : {patch1_, patch2_}) {
        button->setContextMenuPolicy(Qt::CustomContextMenu);
    }
    connect(patch1_, &QWidget::customContextMenuRequested, this, &KivoraWidget::patch1ButtonMenu);
    connect(patch2_, &QWidget::customContextMenuRequested, this, &KivoraWidget::patch2ButtonMenu);
}

void KivoraWidget::createValueColumn() {
    jog_ = new QJogDial(this);
    jog_->setObjectName("jog");
    jog_->setGeometry(PanelGeometry::kJog);
    jog_->setValue(static_cast<int>(jog_->maximum() * (kHalfTurn + kJogRest) / (2 * kHalfTurn)));
    controlKeys_->watch(jog_);
    jog_->installEventFilter(this);
    connect(jog_, &QJogDial::jogRight, this, &KivoraWidget::stepUpClicked);
    connect(jog_, &QJogDial::jogLeft, this, &KivoraWidget::stepDownClicked);
    minus_ = addButton("minus", PanelGeometry::kMinus, &KivoraWidget::stepDownClicked);
    plus_ = addButton("plus", PanelGeometry::kPlus, &KivoraWidget::stepUpClicked);
    minus_->setAutoRepeat(true);
    plus_->setAutoRepeat(true);
    loadPreset_ = addButton("preset-load", PanelGeometry::kLoadPreset, &KivoraWidget::loadPatchClicked);
    savePreset_ = addButton("preset-save", PanelGeometry::kSavePreset, &KivoraWidget::savePatchClicked);
    addCaption(loadPreset_, kCaptionBaseline);
    addCaption(savePreset_, kCaptionBaseline);
}

void KivoraWidget::createRightColumn() {
    arpeggioOn_ = addToggle("arpeggio-on", PanelGeometry::kArpeggioOn, &KivoraWidget::onArpeggiator);
    arpeggioView_ = addToggle("arpeggio-view", PanelGeometry::kArpeggioView, &KivoraWidget::onArpeggiatorView);
    const auto addArpeggiator = [this](const char* objectName, const QRect& place) {
        auto* pane = new arpeggiatorSettings(this);
        pane->setObjectName(objectName);
        pane->setGeometry(place);
        for (QWidget* control : pane->findChildren<QWidget*>()) {
            control->installEventFilter(this);
        }
        return pane;
    };
    arpeggiator1_ = addArpeggiator("arp1", PanelGeometry::kArpeggiator1);
    arpeggiator2_ = addArpeggiator("arp2", PanelGeometry::kArpeggiator2);
}

void KivoraWidget::createKeyboard() {
    hintBar_ = new QPianoPCKeyHelpBar(this);
    hintBar_->setObjectName("hint-bar");
    hintBar_->setGeometry(PanelGeometry::kHintBar);

    piano_ = new QPiano(this);
    piano_->setObjectName("piano");
    piano_->setGeometry(PanelGeometry::kPiano);
    piano_->SetKeys(pianoRange_.first, pianoRange_.count);
    piano_->setEnableCursor(true);
    piano_->setFocusPolicy(Qt::TabFocus);
    piano_->installEventFilter(this);
    hintBar_->setRange(piano_->GetFirstNote(), piano_->GetKeyCount());

    splitMark_ = new SplitMark(this);
    splitMark_->setObjectName("split-mark");
    splitMark_->setGeometry(PanelGeometry::kSplitMark);
    splitMark_->hide();
    controlKeys_->watch(splitMark_);
    splitMark_->installEventFilter(this);
    connect(splitMark_, &SplitMark::valueChanged, this, &KivoraWidget::splitMoved);
    centreHints();
    connect(piano_, qOverload<BYTE, BYTE>(&QPiano::keyPressed), this, &KivoraWidget::UIKeyPressed);
    connect(piano_, &QPiano::keyReleased, this, &KivoraWidget::UIKeyReleased);
    connect(piano_, &QPiano::keyAfterTouch, this, &KivoraWidget::UIAfterTouch);
}

void KivoraWidget::centreHints() {
    std::vector<double> centres(NK::Piano::kNoteCount);
    for (std::size_t note = 0; note < centres.size(); ++note) {
        centres[note] = piano_->x() - hintBar_->x() + piano_->keyRect(static_cast<BYTE>(note)).center().x();
    }
    hintBar_->setCentres(centres);
    std::vector<double> lefts;
    for (int note = piano_->GetFirstNote(); note < piano_->GetFirstNote() + piano_->GetKeyCount(); ++note) {
        lefts.push_back(piano_->x() - splitMark_->x() + piano_->keyRect(static_cast<BYTE>(note)).left());
    }
    splitMark_->setKeys(piano_->GetFirstNote(), std::move(lefts));
}

void KivoraWidget::orderFocus() {
    QWidget* last = this;
    const auto follow = [&last](QWidget* next) {
        setTabOrder(last, next);
        last = next;
    };
    for (QWidget* control : std::initializer_list<QWidget*>{
             single_,  dual_,       split_,    recordView_, tempo_,      tap_,        metronome_,  record_,
             stop_,    octaveDown_, octaveUp_, patch1_,     transpose1_, volume1_,    patch2_,     transpose2_,
             volume2_, jog_,        minus_,    plus_,       loadPreset_, savePreset_, arpeggioOn_, arpeggioView_}) {
        follow(control);
    }
    for (const arpeggiatorSettings* pane : {arpeggiator1_, arpeggiator2_}) {
        for (const char* name : kArpeggiatorControls) {
            follow(pane->findChild<QWidget*>(name));
        }
    }
    for (QWidget* control : std::initializer_list<QWidget*>{reset_, settings_, helpButton_, about_}) {
        follow(control);
    }
    for (QWidget* control : strip_->controls()) {
        follow(control);
    }
    for (QWidget* control : std::initializer_list<QWidget*>{splitMark_, piano_}) {
        follow(control);
    }
}

void KivoraWidget::setCaption(PanelKey* button, const QString& text) {
    button->setText(text);
    button->setAccessibleName(text);
}

void KivoraWidget::nameControls() {
    setAccessibleName(tr("Kivora LX front panel"));
    setCaption(reset_, tr("Reset"));
    setCaption(settings_, tr("Settings"));
    setCaption(helpButton_, tr("Help"));
    setCaption(about_, tr("About"));
    setCaption(single_, tr("Single"));
    setCaption(dual_, tr("Dual"));
    setCaption(split_, tr("Split"));
    setCaption(loadPreset_, tr("Load"));
    setCaption(savePreset_, tr("Save"));
    reset_->setToolTip(tr("Silence everything and reset the synthesizer"));
    single_->setToolTip(tr("One voice on all keys"));
    dual_->setToolTip(tr("Two voices on each key"));
    split_->setToolTip(
        tr("A bass voice below the split point, at first middle C, the main voice from it. An octave shift brings the "
           "bass "
           "to the computer keys."));
    PanelKey::ShareCaptionSize({reset_, settings_, helpButton_, about_});
    PanelKey::ShareCaptionSize({single_, dual_, split_});
    PanelKey::ShareCaptionSize({loadPreset_, savePreset_});
    loadPreset_->setAccessibleName(tr("Load preset"));
    savePreset_->setAccessibleName(tr("Save preset"));

    const auto name = [](QWidget* widget, const QString& text) {
        widget->setAccessibleName(text);
        widget->setToolTip(text);
    };
    name(recordView_, tr("Show the recorder"));
    name(tempo_, tr("Tempo"));
    name(metronome_, tr("Metronome"));
    name(tap_, tr("Tap the tempo"));
    tapLegend_->setText(tr("Tap", "legend of a key"));
    name(record_, tr("Record"));
    record_->setToolTip(RecordingTexts::Limits());
    name(stop_, tr("Stop recording"));
    recordTime_->setAccessibleName(tr("Recorded time"));
    name(octaveDown_, tr("Computer keys an octave down"));
    name(octaveUp_, tr("Computer keys an octave up"));
    octaveValue_->setAccessibleName(tr("Octave shift of the computer keys"));
    name(patch1_, tr("Patch of voice 1"));
    name(patch2_, tr("Patch of voice 2"));
    name(transpose1_, tr("Transposition of voice 1"));
    name(transpose2_, tr("Transposition of voice 2"));
    name(volume1_, tr("Volume of voice 1"));
    name(volume2_, tr("Volume of voice 2"));
    name(jog_, tr("Change the value"));
    name(minus_, tr("Decrease the value"));
    name(plus_, tr("Increase the value"));
    name(arpeggioOn_, tr("Arpeggio"));
    name(arpeggioView_, tr("Show the arpeggiators"));
    arpeggiator1_->setCaption(tr("Arpeggiator 1"), tr("Primary voice arpeggiator"));
    arpeggiator2_->setCaption(tr("Arpeggiator 2"), tr("Secondary voice arpeggiator"));
    piano_->setAccessibleName(tr("Piano"));
    hintBar_->setAccessibleName(tr("Computer keys that play the piano"));
    midiLamp_->setAccessibleName(tr("MIDI lamp"));
    barLamp_->setAccessibleName(tr("Bar lamp"));
    beatLamp_->setAccessibleName(tr("Beat lamp"));
}
