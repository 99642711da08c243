// A short performance on the real road of a key, for a machine without a player.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <vector>

namespace Kivora {

class MainWindow;

/// Plays computer keys to the panel, records them, takes a screenshot with keys down, saves the MIDI file, quits the
/// event loop: with 0, or with 1 and a line on the standard error that says what failed. [gui]
class Demonstration : public QObject {
    Q_OBJECT

public:
    /// Creates the folder and sends the built-in synthesizer's sound to "demo.wav" in it, unless the environment names
    /// another audio driver. Before the engine is created.
    explicit Demonstration(const QString& dir);
    /// The window must be shown.
    void Start(MainWindow& window);

private:
    struct Step {
        int afterMs;     ///< since the step before
        char character;  ///< the computer key
        bool press;
    };

    void DirectSound();
    void WaitForFocus(int triesLeft);
    void Play(std::size_t step);
    void SendKey(const Step& step);
    void Finish();
    void Fail(const QString& reason);

    QString dir_;
    bool soundIsRefused_ = false;  ///< no file can be written where the sound belongs
    MainWindow* window_ = nullptr;
    QElapsedTimer clock_;
    std::vector<Step> steps_;
    std::size_t screenshotStep_ = 0;  ///< taken after this step
};

}  // namespace Kivora
