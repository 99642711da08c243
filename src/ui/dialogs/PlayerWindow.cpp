#include "ui/dialogs/PlayerWindow.h"

#include <QAction>
#include <QEvent>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHideEvent>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>

#include "engine/CKivora.h"
#include "engine/EngineControls.h"
#include "engine/Song.h"
#include "nk/nk_directory.h"
#include "nk/nk_paths.h"
#include "nk/qt/nk_qt_string.h"
#include "ui/dialogs/MIDIFileNames.h"
#include "ui/dialogs/SongFile.h"
#include "ui/dialogs/SoundTexts.h"
#include "ui/parts/MessageBoxes.h"
#include "ui/parts/Mnemonics.h"
#include "ui/parts/PlayAlong.h"

using Kivora::SongPlayback;
using Kivora::SongPlayer;

namespace {

constexpr qint64 kUsPerStep = 100'000;  ///< of the slider
constexpr int kPageSteps = 50;
constexpr int kSliderWidth = 420;

/// Minutes and whole seconds.
QString Time(qint64 us) {
    const qint64 seconds = us / 1'000'000;
    return QString("%1:%2").arg(seconds / 60, 2, 10, QChar('0')).arg(seconds % 60, 2, 10, QChar('0'));
}

/// A line for what comes from outside, which is no markup.
QLabel* MakeLine(const char* name) {
    auto* const line = new QLabel;
    line->setObjectName(name);
    line->setTextFormat(Qt::PlainText);
    return line;
}

/// Leaves alone what is being typed.
void ShowValue(QSpinBox& box, int value) {
    const bool isEdited = box.cleanText() != box.locale().toString(box.value());
    if (box.value() != value && !isEdited) {
        box.setValue(value);
    }
}

}  // namespace

PlayerWindow::PlayerWindow(Kivora::EngineControls& controls, QWidget& panel)
    : FittedDialog(&panel),
      controls_(controls),
      player_(controls),
      title_(MakeLine("songTitle")),
      open_(addButton("songOpenBtn", &PlayerWindow::openAnother)),
      position_(new QSlider(Qt::Horizontal)),
      time_(MakeLine("songTime")),
      play_(addButton("songPlayBtn", &PlayerWindow::playOrPause)),
      stop_(addButton("songStopBtn", &PlayerWindow::stop)),
      loopBegin_(addButton("songLoopBeginBtn", &PlayerWindow::beginLoop)),
      loopEnd_(addButton("songLoopEndBtn", &PlayerWindow::endLoop)),
      loopOff_(addButton("songLoopOffBtn", &PlayerWindow::dropLoop)),
      loop_(MakeLine("songLoop")),
      tempo_(addSpin("songTempo", SongPlayback::kSlowestPercent, SongPlayback::kFastestPercent)),
      transposition_(addSpin("songTransposition", -SongPlayback::kMostTransposition, SongPlayback::kMostTransposition)),
      tempoLabel_(new QLabel),
      transpositionLabel_(new QLabel),
      notice_(MakeLine("songNotice")),
      close_(new QPushButton) {
    setObjectName("PlayerWindow");
    setModal(false);
    close_->setObjectName("songCloseBtn");
    close_->setAutoDefault(false);
    connect(close_, &QPushButton::clicked, this, &QDialog::close);
    position_->setObjectName("songPosition");
    position_->setMinimumWidth(kSliderWidth);
    position_->setPageStep(kPageSteps);
    position_->setTracking(false);
    connect(position_, &QSlider::sliderMoved, this, [this](int step) { showTime(step * kUsPerStep); });
    connect(position_, &QSlider::valueChanged, this, [this](int step) {
        takeTheSong();
        player_.Seek(step * kUsPerStep);
        look();
    });
    connect(tempo_, &QSpinBox::valueChanged, this, [this](int percent) {
        takeTheSong();
        player_.SetTempo(percent);
        look();
    });
    connect(transposition_, &QSpinBox::valueChanged, this, [this](int semitones) {
        takeTheSong();
        player_.SetTransposition(semitones);
        look();
    });
    tempo_->setSuffix(" %");
    tempoLabel_->setBuddy(tempo_);
    transpositionLabel_->setBuddy(transposition_);
    title_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);  // a file's name may be of any length
    notice_->setWordWrap(true);
    notice_->hide();
    layOut();
    play_->setCheckable(true);
    lookTimer_.setParent(this);
    connect(&lookTimer_, &QTimer::timeout, this, &PlayerWindow::look);
    new PlayAlong(*this, panel);
    retranslate();
}

QPushButton* PlayerWindow::addButton(const char* name, void (PlayerWindow::*action)()) {
    auto* const button = new QPushButton;
    button->setObjectName(name);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [this, action] {
        if (isVisible()) {  // a button that its letter has pressed clicks a moment later
            (this->*action)();
        }
    });
    return button;
}

QSpinBox* PlayerWindow::addSpin(const char* name, int least, int greatest) {
    auto* const box = new QSpinBox;
    box->setObjectName(name);
    box->setRange(least, greatest);
    box->setKeyboardTracking(false);
    return box;
}

void PlayerWindow::layOut() {
    const auto row = [](std::initializer_list<QWidget*> parts) {
        auto* const made = new QHBoxLayout;
        for (QWidget* part : parts) {
            made->addWidget(part);
        }
        return made;
    };
    QHBoxLayout* const head = row({title_, open_});
    head->setStretch(0, 1);
    QHBoxLayout* const place = row({position_, time_});
    place->setStretch(0, 1);
    QHBoxLayout* const transport = row({play_, stop_});
    transport->addStretch();
    for (QWidget* part : std::initializer_list<QWidget*>{tempoLabel_, tempo_, transpositionLabel_, transposition_}) {
        transport->addWidget(part);
    }
    QHBoxLayout* const looping = row({loopBegin_, loopEnd_, loopOff_, loop_});
    looping->setStretch(3, 1);
    QHBoxLayout* const foot = row({notice_});
    foot->setStretch(0, 1);
    foot->addStretch();
    foot->addWidget(close_);
    auto* const all = new QVBoxLayout(this);
    for (QHBoxLayout* part : {head, place, transport, looping, foot}) {
        all->addLayout(part);
    }
}

void PlayerWindow::changeEvent(QEvent* event) {
    FittedDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
}

bool PlayerWindow::event(QEvent* event) {
    const bool handled = FittedDialog::event(event);
    if (event->type() == QEvent::WindowActivate) {
        look();
    }
    return handled;
}

void PlayerWindow::hideEvent(QHideEvent* event) {
    if (!event->spontaneous() && hasTheSong()) {
        stop();
    }
    FittedDialog::hideEvent(event);
}

void PlayerWindow::retranslate() {
    setWindowTitle(tr("Player"));
    open_->setText(tr("Open..."));
    stop_->setText(tr("Stop"));
    loopBegin_->setText(tr("Loop from Here"));
    loopEnd_->setText(tr("Loop to Here"));
    loopOff_->setText(tr("No Loop"));
    tempoLabel_->setText(tr("Tempo:"));
    transpositionLabel_->setText(tr("Transposition:"));
    transposition_->setToolTip(tr("In semitones; the percussion is not transposed"));
    position_->setAccessibleName(tr("Position"));
    time_->setAccessibleName(tr("Position and length"));
    close_->setText(tr("Close"));
    play_->setText(tr("Play"));
    play_->setToolTip(tr("Once more to pause"));
    AssignMnemonics(*this);
    look();
}

void PlayerWindow::setPanelActions(const QList<QAction*>& actions) {
    addActions(actions);
    for (const QAction* action : actions) {
        connect(action, &QAction::triggered, this, &PlayerWindow::look);  // it may have stopped what plays
    }
    AssignMnemonics(*this);
}

void PlayerWindow::openSong(const SongFile& file) {
    play_->setFocus();  // what is being typed is still for the former song
    song_ = file.song;
    player_.Open(song_);
    title_->setText(file.title);
    title_->setToolTip(file.title);
    damage_ = file.damage.isEmpty() ? QString() : file.damage + ' ' + tr("What is whole of it can be played.");
    say(damage_);
    come();
}

void PlayerWindow::present() {
    if (song_ || askForFile()) {
        come();
    }
}

void PlayerWindow::toggle() {
    isVisible() ? playOrPause() : present();
}

void PlayerWindow::openAnother() {
    askForFile();
}

void PlayerWindow::come() {
    look();
    show();
    raise();
    activateWindow();
    play_->setFocus();
}

bool PlayerWindow::askForFile() {
    NK::CString& folder = controls_.GetLastFolders().takes;
    const QString path = QFileDialog::getOpenFileName(
        isVisible() ? this : parentWidget(), tr("Play a MIDI File"),
        NK::ToQt(NK::FolderExists(folder) ? folder : controls_.GetEngine().GetUserDataDir()),
        MIDIFileNames::GetFilter(MIDIFileNames::kRead));
    if (path.isEmpty()) {
        return false;
    }
    QString failure;
    const std::optional<SongFile> file = SongFile::Read(path, failure);
    if (!file) {
        MessageBoxes::Show(isVisible() ? this : parentWidget(), QMessageBox::Warning, tr("Player"), failure);
        return false;
    }
    folder = NK::GetFolderName(NK::FromQt(path));
    openSong(*file);
    return true;
}

void PlayerWindow::playOrPause() {
    takeTheSong();
    if (player_.GetStatus().state == SongPlayer::State::kPlaying) {
        player_.Pause();
    } else if (song_) {
        say(player_.Play() ? damage_ : SoundTexts::NothingToHear());
    }
    look();
}

void PlayerWindow::stop() {
    takeTheSong();
    player_.Stop();
    look();
}

void PlayerWindow::beginLoop() {
    takeTheSong();
    const SongPlayer::Status status = player_.GetStatus();
    const qint64 end = status.loop && status.loop->endUs > status.positionUs ? status.loop->endUs : status.lengthUs;
    player_.SetLoop(SongPlayer::Loop{status.positionUs, end});
    look();
}

void PlayerWindow::endLoop() {
    takeTheSong();
    const SongPlayer::Status status = player_.GetStatus();
    const qint64 begin = status.loop && status.loop->beginUs < status.positionUs ? status.loop->beginUs : 0;
    player_.SetLoop(SongPlayer::Loop{begin, status.positionUs});
    if (const auto loop = player_.GetStatus().loop) {
        player_.Seek(loop->beginUs);  // playing on behind its end would leave it
    }
    look();
}

void PlayerWindow::dropLoop() {
    takeTheSong();
    player_.SetLoop(std::nullopt);
    look();
}

bool PlayerWindow::hasTheSong() const {
    return player_.GetSong() == song_;
}

void PlayerWindow::takeTheSong() {
    if (!hasTheSong()) {
        player_.OpenAgain(song_, shown_);
    }
}

void PlayerWindow::look() {
    if (hasTheSong()) {
        shown_ = player_.GetStatus();
    } else {
        shown_.state = SongPlayer::State::kStopped;
    }
    const bool isPlaying = shown_.state == SongPlayer::State::kPlaying;
    if (!position_->isSliderDown()) {
        const QSignalBlocker quiet(position_);
        position_->setRange(0, static_cast<int>(shown_.lengthUs / kUsPerStep));
        position_->setValue(static_cast<int>(shown_.positionUs / kUsPerStep));
        showTime(shown_.positionUs);
    }
    {
        const QSignalBlocker quietTempo(tempo_);
        const QSignalBlocker quietTransposition(transposition_);
        ShowValue(*tempo_, shown_.tempoPercent);
        ShowValue(*transposition_, shown_.transposition);
    }
    play_->setChecked(isPlaying);
    loop_->setText(shown_.loop
                       ? tr("%1 to %2", "times of a loop").arg(Time(shown_.loop->beginUs), Time(shown_.loop->endUs))
                       : QString());
    for (QWidget* part : std::initializer_list<QWidget*>{position_, play_, stop_, loopBegin_, loopEnd_}) {
        part->setEnabled(shown_.lengthUs > 0);
    }
    loopOff_->setEnabled(shown_.loop.has_value());
    if (isPlaying != lookTimer_.isActive()) {
        isPlaying ? lookTimer_.start(kLookMs) : lookTimer_.stop();
    }
}

void PlayerWindow::showTime(qint64 positionUs) {
    time_->setText(tr("%1 of %2", "position and length of a song").arg(Time(positionUs), Time(shown_.lengthUs)));
}

void PlayerWindow::say(const QString& sentence) {
    notice_->setText(sentence);
    notice_->setVisible(!sentence.isEmpty());
}
