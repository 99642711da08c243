// A message box that comes by itself, while somebody may be playing.
#pragma once

#include <functional>
#include <memory>
#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include "ui/parts/KeyRepeats.h"

class QKeyEvent;

/// Governs a box that nobody asked for, so that nobody answers it by playing on:
/// - No button is its default. Space and Enter press the button that has the focus, which a button gets by Tab, an
///   arrow or a click, and by a press of their own: not while they are held on from before, nor by their repeats.
/// - A letter acts with ALT only. Escape and the close button decide nothing.
/// - In its first second no key and no click acts.
/// - It waits until no dialog is open, which would keep it from being answered and lie under it.
/// - It takes no keyboard from the panel where the system lets it. Where it gets it all the same, every key that means
///   nothing to it is passed on to the panel: notes go on, and begin, underneath.
/// [gui]
class UnaskedBox : public QObject {
    Q_OBJECT

public:
    static constexpr int kDeafMs = 1000;
    /// Gets the button that was chosen; NoButton when nothing was decided.
    using Answered = std::function<void(QMessageBox::StandardButton button)>;

    /// Shows the box, now or when the last dialog has closed, and returns at once. The box, which has a parent, goes
    /// when it is answered, or with its parent, and then nothing is called. The panel outlives it. Returns the box.
    static QMessageBox* show(std::unique_ptr<QMessageBox> box, QWidget& panel, Answered answered = {});
    /// Takes back a box that show() returned: it is not shown any more, goes, and nothing is called.
    static void withdraw(QMessageBox& box);
    /// Whether a box that show() returned was there to be read, and does not wait for a dialog.
    static bool hasCome(const QMessageBox& box);
    /// The same for a box that the program waits for: what is typed meanwhile reaches nobody else.
    static QMessageBox::StandardButton exec(QMessageBox& box);

    /// Whether such a box has the keyboard, and the panel what is passed on.
    static bool isActive();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    UnaskedBox(QMessageBox& box, QWidget* panel);

    static UnaskedBox* governorOf(const QWidget& box);
    void come();
    void dress();
    bool takesPress(QKeyEvent& event);
    bool takesRelease(QKeyEvent& event);
    void passOn(const QKeyEvent& event);

    QMessageBox& box_;  ///< the parent
    QPointer<QWidget> panel_;
    QTimer deaf_;  ///< runs while nothing acts
    KeyRepeats repeats_;
    bool spacePressed_ = false;  ///< on a button of the box
    bool comes_ = false;         ///< as soon as no dialog is open
};
