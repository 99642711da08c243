// Finds out what is not down any more though no release was told of.
#pragma once

#include <functional>
#include <optional>
#include <QObject>
#include <QTimer>

#include "nk/desktop/nk_pressed_input.h"
#include "ui/parts/KeyRepeats.h"

/// From a press of any key or mouse button of the program until nothing is down, asks the window system every
/// `kPeriodMs` what is down. It tells of no release while the keyboard is elsewhere for a moment, with a notice that
/// flashes up or another program's shortcut. [gui]
class PressedInputWatch : public QObject {
    Q_OBJECT

public:
    static constexpr int kPeriodMs = 50;
    static constexpr int kAnswerMs = 5;  ///< how often it is looked whether the answer has come

    /// Where it asks; neither of the two waits.
    struct Source {
        std::function<void()> ask;
        /// Once, when it has come, what was down after the last `ask`.
        std::function<std::optional<NK::TPressedInput>()> takeAnswer;
    };

    /// After the application object, which has the object for a filter.
    explicit PressedInputWatch(Source source);

    /// Asks at once if anything may be down: the keyboard's focus has come back.
    void askNow();
    bool isWatching() const { return timer_.isActive(); }

signals:
    /// What is down; what is not is up by now. What was pressed since it was asked counts as down, and so do mouse
    /// buttons that a finger or a pen stands for.
    void pressed(const NK::TPressedInput& down);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void beginWatch();
    void tick();
    void ask();

    Source source_;
    QTimer timer_;
    KeyRepeats repeats_;  ///< of a key that is down, which ask for nothing new
    bool asking_ = false;
    std::optional<NK::TPressedInput> answer_;  ///< that has come and is not told yet
    NK::TPressedInput pressedSince_;           ///< it was asked: the answer may not know of it
    bool ofMouse_ = true;                      ///< the latest button, not of a finger or a pen
};
