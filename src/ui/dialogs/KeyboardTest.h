// The dialog that shows what the computer's keyboard reports at once.
#pragma once

#include <map>
#include <QBasicTimer>

#include "nk/desktop/nk_keyboard_layout.h"
#include "piano/CRolloverTest.h"
#include "QtWidgets/piano/JudgedKeys.h"
#include "ui/parts/FittedDialog.h"

class KeyboardFigure;
class QLabel;
class QPushButton;

/// Lights the keys that are down, asks for chords of three keys, and names those of which the keyboard drops one. Keys
/// outside the figure do what they do in any dialog. [gui]
class KeyboardTest : public FittedDialog {
    Q_OBJECT

public:
    /// The layout names the keys; null where it is not known: then they are a US keyboard's.
    explicit KeyboardTest(const NK::TKeyboardLayout* layout, QWidget* parent = nullptr);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    struct TRelease {
        quint32 key;
        quint64 timeMs;
    };

    void carryOutRelease();
    void retranslate();
    void showKeys();
    QString taskText() const;
    QString resultText() const;
    QString nameOf(const NK::Piano::CRolloverTest::CChord& chord) const;

    NK::Piano::CRolloverTest test_;
    JudgedKeys<TRelease> keys_;
    QBasicTimer settleTimer_;          ///< runs while a release waits to be judged
    std::map<quint32, QString> tops_;  ///< by native scan code
    KeyboardFigure* figure_;           // Qt's parent owns these
    QLabel* intro_;
    QLabel* count_;
    QLabel* task_;
    QLabel* result_;
    QPushButton* droppedButton_;
    QPushButton* againButton_;
    QPushButton* closeButton_;
};
