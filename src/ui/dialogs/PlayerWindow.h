// The window of the player.
#pragma once

#include <memory>
#include <QTimer>

#include "engine/SongPlayer.h"
#include "ui/parts/FittedDialog.h"

class QAction;
class QFormLayout;
class QLabel;
class QPushButton;
class QSlider;
class QSpinBox;
struct SongFile;

namespace Kivora {
class EngineControls;
}

/// Stands beside the panel, on which one plays on meanwhile. Nothing plays any more when it is closed; the song stays
/// for when it is shown again. It looks at the engine while a song plays and when it becomes active. [gui]
class PlayerWindow : public FittedDialog {
    Q_OBJECT

public:
    /// The controls are not owned; the panel, which gets the keys that mean nothing to the window, is the parent.
    PlayerWindow(Kivora::EngineControls& controls, QWidget& panel);

    /// What acts by its shortcut in this window too; those that go are left out by themselves.
    void setPanelActions(const QList<QAction*>& actions);
    /// Shows the window with a song that can be played now.
    void openSong(const SongFile& song);
    /// Shows the window; where there is no song yet the user is asked for a file first.
    void present();
    /// Plays or pauses the song, where the window is shown; shows it otherwise.
    void toggle();

protected:
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool event(QEvent* event) override;

private:
    static constexpr int kLookMs = 50;

    QPushButton* addButton(const char* name, void (PlayerWindow::*action)());
    QSpinBox* addSpin(const char* name, int least, int greatest);
    void layOut();
    void retranslate();
    void come();
    bool askForFile();
    void openAnother();
    void playOrPause();
    void stop();
    void beginLoop();
    void endLoop();
    void dropLoop();
    /// Shows how things stand with its song, and looks again while that plays.
    void look();
    /// False while the player has another song, such as a take that is heard.
    bool hasTheSong() const;
    /// Before anything is done with its song: that stands in the player as it was last shown.
    void takeTheSong();
    void showTime(qint64 positionUs);
    void say(const QString& sentence);

    Kivora::EngineControls& controls_;
    Kivora::SongPlayer player_;
    QTimer lookTimer_;
    std::shared_ptr<const Kivora::Song> song_;  ///< of this window; null for none
    Kivora::SongPlayer::Status shown_;          ///< how it stood when it was looked at last
    QString damage_;                            ///< what is said of the song's file

    // Qt's parent owns these.
    QLabel* title_;
    QPushButton* open_;
    QSlider* position_;
    QLabel* time_;
    QPushButton* play_;
    QPushButton* stop_;
    QPushButton* loopBegin_;
    QPushButton* loopEnd_;
    QPushButton* loopOff_;
    QLabel* loop_;
    QSpinBox* tempo_;
    QSpinBox* transposition_;
    QLabel* tempoLabel_;
    QLabel* transpositionLabel_;
    QLabel* notice_;
    QPushButton* close_;
};
