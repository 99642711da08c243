// The front panel.
#pragma once

#include <functional>
#include <memory>
#include <QBasicTimer>
#include <QDateTime>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <set>

#include "piano/CPCKeyPlayer.h"
#include "QtWidgets/piano/PianoTypes.h"
#include "ui/dialogs/SoundDoctorTools.h"
#include "ui/HelpPages.h"
#include "ui/KeptText.h"
#include "ui/Notices.h"
#include "ui/PanelLegends.h"
#include "ui/PanelSkin.h"
#include "ui/ParameterEditor.h"
#include "ui/parts/KeyRepeats.h"
#include "ui/parts/PanelScale.h"
#include "ui/parts/ViewSettings.h"
#include "ui/WallpaperCache.h"

class ComputerKeys;
class FocusRing;
class MainDisplay;
class MIDIEventRelay;
class MidiRemote;
class PanelControlKeys;
class PanelKey;
class PanelLabel;
class PlayerWindow;
class QBlinkingLed;
class QJogDial;
class QAction;
class QActionGroup;
class QMenu;
class QPiano;
class QPianoPCKeyHelpBar;
class SplitMark;
class WheelStrip;
class arpeggiatorSettings;
struct PanelTextStyle;
struct TakeToSave;

namespace NK {
struct TPressedInput;
}

namespace Kivora {
class CKivora;
class EngineControls;
class PortKeeper;
class TakeJournal;
struct WaitingTake;
}  // namespace Kivora
namespace LibMidi {
class SynthControl;
}

/// Joins the controls, the piano, the computer keys and the displays to the engine. Without one the controls do nothing
/// and the display says so. A key, button or pedal that is held when the panel loses the keyboard, opens a menu or a
/// box, is hidden or closed is released. A shortcut acts once for a press, however long its key is held. [gui]
class KivoraWidget : public QWidget {
    Q_OBJECT

public:
    /// Whether the constructor opens the ports, or somebody calls openPorts() afterwards.
    enum class Ports { kOpen, kLeave };

    /// The controls are not owned and outlive the panel; null where there is no engine. Loads the settings. No box
    /// comes before the panel is shown.
    explicit KivoraWidget(Kivora::EngineControls* controls, QWidget* parent = nullptr, Ports ports = Ports::kOpen);
    ~KivoraWidget() override;

    QSize sizeHint() const override;

    /// Draws the whole panel at that scale, 1 at first: sizeHint() is what it takes then, and what it has to be given.
    void setPanelScale(double scale);
    /// Shows the card with the computer keys in the right pane.
    void showPCKeyCard();
    double panelScale() const { return scale_.Get(); }
    /// The scale that the user has chosen, which is kept for the next start. Whoever holds the panel gives it as much
    /// of that as there is room for.
    double wantedScale() const { return view_.scale; }
    void setWantedScale(double scale);
    /// Called when it has become another one; empty for nobody. No signal: the panel's slots are its first methods.
    void setWantedScaleListener(std::function<void()> listener) { wantedScaleListener_ = std::move(listener); }

    /// Ends what keys, the mouse and fingers hold on the panel, for when their releases will go elsewhere.
    void releaseHeld();
    /// Ends what is held by keys and the mouse that are up: their releases went elsewhere.
    void releaseAllBut(const NK::TPressedInput& down);
    /// Opens the ports, once; a box titled "MIDI Engine Error" says why one could not be opened, and does not come
    /// again at the next start for the same reasons. From then on the display says what does not sound or was lost, and
    /// what is back is opened again where that disturbs nothing.
    void openPorts();
    /// Where there is no engine: the box that says so, and its reason alone, in the language of the moment. `synth`,
    /// which may be null and is not owned, can be set up all the same; `engineWanted` is called when the user has been
    /// to the settings.
    void setEngineFailure(const QString& title, const QString& text, std::function<QString()> reason,
                          LibMidi::SynthControl* synth, std::function<void()> engineWanted = {});

    /// For the settings: what looks at the sound.
    void setSoundDoctor(SoundDoctorTools tools);

    /// Writes what is recorded, and what waits to be saved, to where the next start finds it.
    void keepTakes();
    /// Follows the active keyboard layout.
    ComputerKeys& computerKeys() { return *computerKeys_; }
    /// Its window of the player, which is made when it is first asked for. Only with an engine.
    PlayerWindow& player();
    /// What the user is told in boxes, from when the window is shown.
    Notices& notices() { return notices_; }
    /// Of a file that cannot be read, `why` and what it means; none with an empty `why`. A box tells it when it begins,
    /// the display's line at each start from then on, where a press brings the box. `name` tells the files apart.
    void tellUnreadable(const QString& name, const QString& why, const QString& text);

public slots:
    void loadLanguageFiles();
    void aboutClicked();
    void settingsClicked();
    void stepUpClicked();
    void stepDownClicked();
    void timerTick();
    void resetClicked();
    void helpClicked();
    void MIDIMessageSent(int packedMessage);
    void synthSet();
    /// Throws NK::CException "Invalid MIDI patch number." for a program above 127.
    void patchChanged();
    void presetChanged();
    void updateKeyNames();
    void updateKeyboardDisplay();
    void updateTempo();
    void updateStatusDisplay();
    void UIKeyPressed(BYTE note, BYTE velocity);
    void UIKeyReleased(BYTE note);
    void UIAfterTouch(BYTE note, BYTE pressure);
    void vm1Clicked();
    void vm2Clicked();
    void vmSClicked();
    void updateVoiceModeButtons();
    void updateKeyboardKeyLayout();
    void tempoClicked();
    void patch1Clicked();
    void patch2Clicked();
    void patch1Menu(QPoint position);
    void patch1ButtonMenu(QPoint position);
    void patch2Menu(QPoint position);
    void patch2ButtonMenu(QPoint position);
    void transpose1Clicked();
    void transpose2Clicked();
    void volume1Clicked();
    void volume2Clicked();
    void updateEditMode();
    void updateVoiceParameters();
    void patch1NameClicked();
    void patch2NameClicked();
    void savePatchClicked();
    void loadPatchClicked();
    void updateSkin();
    void updateLeftPane();
    void recordingStateChanged();
    void onRecord();
    void onStartRecording();
    void onStopRecording();
    void onRecordView();
    void updateRightPane();
    void onArpeggiator();
    void onArpeggiatorView();
    void arpeggiatingChanged();
    void onMetronomeSwitch();
    void updateMetronome();
    void onBar();
    void onBeat();
    void updateEffectWidgets();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private slots:
    void outputLost();
    void inputLost();
    void inputReturned();
    void updateNotices();
    void takesChanged();
    void takeNotKept();
    void fileSetAside(const QString& path);

private:
    // KivoraWidget_controls.cpp
    using Slot = void (KivoraWidget::*)();
    PanelKey* addButton(const char* objectName, const QRect& place, Slot slot);
    PanelKey* addToggle(const char* objectName, const QRect& place, Slot slot);
    QBlinkingLed* addLamp(const char* objectName, const QRect& place, int blinkMs);
    PanelLabel* addReadOut(const char* objectName, const QRect& place, const PanelTextStyle& style);
    void createHeader();
    void createLeftColumn();
    void createCentre();
    void createValueColumn();
    void createRightColumn();
    void createKeyboard();
    void centreHints();  ///< over the keys, which are not as wide as each other; the split mark follows them too
    void orderFocus();
    void nameControls();
    static void addCaption(PanelKey* button, double baseline);
    static void setCaption(PanelKey* button, const QString& text);

    // KivoraWidget_skin.cpp
    void composeSkin();
    void composeBackground();
    void dressControls();
    void tintControls();
    void skinChanged();
    QString wallpaperPath() const;

    // KivoraWidget_keys.cpp
    bool isPlayable() const;
    void carryOut(const NK::Piano::CPCKeyPlayer::CActions& actions);
    /// Ends what held computer keys have begun, for when their releases will go elsewhere.
    void releaseComputerKeys();
    /// Lets go of the buttons, dials and sliders that the mouse holds in `part`.
    void releaseControls(QWidget& part);
    void showPresets(bool saveMode);
    void setOctaveShift(int semitones);
    void octaveUpClicked();
    void octaveDownClicked();
    bool isBassOnComputerKeys() const;
    void offerOctaveShift();     ///< where no computer key plays the bass of a split
    void withdrawOctaveShift();  ///< once one does, there is no split, or nobody has taken it for a while

    // KivoraWidget_voices.cpp
    void setEditMode(ParameterEditor::EMode mode);
    void setVoiceMode(bool dual, bool split);
    void splitMoved(int note);
    void showPatchMenu(int slot, const QWidget* widget, QPoint position);
    /// What the second voice's texts are about: its slot, or -1 without one.
    int shownSecondarySlot() const;

    // KivoraWidget_recording.cpp
    void stopAndSave();
    /// Asks where to, until the take is written or the user gives up.
    bool saveAs(const QDateTime& begun, const TakeToSave& take);
    void playLatestTake();
    void updateCountIn();
    void checkLimits();
    void askAfterStop(const QString& reason);

    // KivoraWidget_played.cpp
    /// Saves what was played and not recorded, as far as it is kept.
    void savePlayed();

    // KivoraWidget_takes.cpp
    /// Asks about the takes that wait, one after the other, while the panel goes on.
    void offerTakes();
    /// One question at a time; `id` is 0 where the take does not wait.
    void askAboutTake(int id, std::unique_ptr<QMessageBox> box,
                      std::function<void(QMessageBox::StandardButton)> answered);
    void withdrawTakeQuestion();
    std::unique_ptr<QMessageBox> makeOffer(const Kivora::WaitingTake& take);
    /// These two are false when the take waits on.
    bool answerOffer(int id, const QDateTime& begun, QMessageBox::StandardButton answer);
    bool saveTake(int id, const QDateTime& begun);
    /// It is not offered by itself any more in this run.
    void leaveForLater(int id);
    void tellLostJournals();
    void updateTakeNotice();
    /// On the MIDI lamp, once there are any.
    void showInputLosses();
    /// Asks about all that wait, and waits. False when the user wants to decide later.
    bool decideAboutTakes();
    bool isReadyToClose();

    // KivoraWidget_menu.cpp
    void createActions();
    void createVoiceActions();
    void createViewActions();
    QAction* addMenuAction(QMenu& menu, const QString& text, const QKeySequence& shortcut,
                           std::function<void()> action);
    /// An entry that is checked while `state` says so; of the entries of a choice one is.
    QAction* addMenuState(QMenu& menu, const QString& text, const QKeySequence& shortcut, std::function<void()> action,
                          std::function<bool()> state, QActionGroup* choice = nullptr);
    void createTimeActions();
    void tapClicked();
    void toggleLatch();
    bool isLatched() const;
    void chooseLanguage(const char* code);
    void showMenu(const QPoint& globalPosition);

    // KivoraWidget_strip.cpp
    void createStrip();
    void showStrip();
    void createStripMenu();
    // KivoraWidget_remote.cpp
    void createRemote();
    void toggleRecording();
    void bindPanel();  ///< opens the dialog

    // KivoraWidget_view.cpp
    void createSizeMenu();
    void createPianoMenu();
    void showPianoRange();
    void createAccessibilityMenu();
    void loadView();
    void changeView(const ViewSettings& view);
    void showView();
    NK::CString viewPath() const;
    void drawFrames(QPainter& painter) const;  ///< round the controls, where high contrast is wanted

    void connectEngine();
    void loadSettings();
    void tellAboutSettings();  // KivoraWidget_files.cpp
    WallpaperCache wallpaperCache() const;
    /// The path of which the user was told last that its picture cannot be shown; empty for none.
    KeptText wallpaperTold() const;
    QString cacheFolder() const;

    // KivoraWidget_ports.cpp
    /// What does not play, why, and what can be done about it; empty when all is well.
    QString explainPorts() const;
    bool isOutputWorking() const;

    Kivora::EngineControls* controls_;
    const Kivora::CKivora* engine_;
    ParameterEditor editor_;
    std::unique_ptr<MIDIEventRelay> relay_;
    PanelSkin skin_;
    QPixmap background_;  ///< the skin's overlay with the legends
    QPixmap wallpaper_;
    QString wallpaperLoaded_;   ///< the stamp of its file when it was read
    QString wallpaperRefused_;  ///< the path whose failure the user was told last; empty for none
    NK::Piano::CPCKeyPlayer keys_;
    std::unique_ptr<ComputerKeys> computerKeys_;
    QBasicTimer keySettleTimer_;
    KeyRepeats keyRepeats_;
    QTimer panelTimer_;
    std::unique_ptr<Kivora::PortKeeper> keeper_;  ///< null until the ports are opened
    QTimer portTimer_;
    bool inputLossTold_ = false;              ///< since ports were chosen
    QTimer inputReturnTimer_;                 ///< runs while the return of the keyboard is told
    std::function<QString()> engineFailure_;  ///< null with an engine, and where nobody has told
    std::function<void()> engineWanted_;
    LibMidi::SynthControl* substituteSynth_ = nullptr;
    SoundDoctorTools doctor_;
    QTimer octaveOfferTimer_;
    HelpPages helpPages_;
    const Kivora::TakeJournal* takes_ = nullptr;  ///< null without an engine
    bool askingAboutTakes_ = false;               ///< in a dialog that the program waits for
    QPointer<QMessageBox> takeQuestion_;          ///< the one that is open while the panel goes on
    int takeAsked_ = 0;                           ///< what it is about
    std::set<int> takesForLater_;
    bool shownBefore_ = false;
    Notices notices_{this};
    std::vector<std::function<void()>> unreadable_;  ///< each tells in a box what the display's line stands for
    BYTE lastVelocity_ = 0;                          ///< 0: none yet
    bool sustainShown_ = false;
    LeftView leftView_ = LeftView::kMetronome;
    RightView rightView_ = RightView::kArpeggiator;

    // Qt's parent owns these.
    MainDisplay* display_ = nullptr;
    QPiano* piano_ = nullptr;
    QPianoPCKeyHelpBar* hintBar_ = nullptr;
    SplitMark* splitMark_ = nullptr;
    WheelStrip* strip_ = nullptr;
    QBlinkingLed* midiLamp_ = nullptr;
    QBlinkingLed* barLamp_ = nullptr;
    QBlinkingLed* beatLamp_ = nullptr;
    PanelKey* reset_ = nullptr;
    PanelKey* settings_ = nullptr;
    PanelKey* helpButton_ = nullptr;
    PanelKey* about_ = nullptr;
    PanelKey* single_ = nullptr;
    PanelKey* dual_ = nullptr;
    PanelKey* split_ = nullptr;
    PanelKey* recordView_ = nullptr;
    PanelKey* tempo_ = nullptr;
    PanelKey* metronome_ = nullptr;
    PanelKey* tap_ = nullptr;
    PanelLabel* tapLegend_ = nullptr;
    PanelLabel* recordTime_ = nullptr;
    PanelKey* record_ = nullptr;
    PanelKey* stop_ = nullptr;
    PanelKey* octaveDown_ = nullptr;
    PanelLabel* octaveValue_ = nullptr;
    PanelKey* octaveUp_ = nullptr;
    PanelKey* patch1_ = nullptr;
    PanelKey* patch2_ = nullptr;
    PanelKey* transpose1_ = nullptr;
    PanelKey* transpose2_ = nullptr;
    PanelKey* volume1_ = nullptr;
    PanelKey* volume2_ = nullptr;
    QJogDial* jog_ = nullptr;
    PanelKey* minus_ = nullptr;
    PanelKey* plus_ = nullptr;
    PanelKey* loadPreset_ = nullptr;
    PanelKey* savePreset_ = nullptr;
    PanelKey* arpeggioOn_ = nullptr;
    PanelKey* arpeggioView_ = nullptr;
    arpeggiatorSettings* arpeggiator1_ = nullptr;
    arpeggiatorSettings* arpeggiator2_ = nullptr;
    PanelControlKeys* controlKeys_ = nullptr;
    MidiRemote* remote_ = nullptr;  ///< null without an engine
    FocusRing* focusRing_ = nullptr;
    QMenu* menu_ = nullptr;

    PanelScale scale_;
    ViewSettings view_;
    PianoRange pianoRange_;  ///< what the piano shows
    std::function<void()> wantedScaleListener_;
};
