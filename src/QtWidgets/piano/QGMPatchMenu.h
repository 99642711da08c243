// The pop-up menu of the General MIDI programs.
#pragma once

#include <QMenu>

#include <optional>

/// The 128 programs in their sixteen families, then the drum kit. An action's data is its program, 0-based, and -1 for
/// the drum kit; the current program's action is checked. [gui]
class QGMPatchMenu : public QMenu {
    Q_OBJECT

public:
    static constexpr int kDrumKit = -1;

    /// The menu for voice slot `voice` (0..2) whose program is `currentProgram`.
    QGMPatchMenu(int voice, int currentProgram, QWidget* parent = nullptr);

    int voice() const { return voice_; }
    /// Shows the menu; the chosen program, or nothing when it was closed without a choice.
    std::optional<int> choose(const QPoint& globalPosition);

private:
    void addProgram(const QString& label, int program, int currentProgram);

    int voice_;
};
