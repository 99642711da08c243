// The pop-up menu of the General MIDI programs.
#pragma once

#include <QMenu>

#include <optional>
#include <QBasicTimer>
#include <QStringList>

#include "QtWidgets/piano/PatchMenuLayout.h"

class QStyleOptionMenuItem;

/// The 128 programs in their sixteen families, then the drum kit. An action's data is its program, 0-based, and -1 for
/// the drum kit; the current program's action is checked. Shows all families and the programs of one of them, at first
/// that of the current program; a click or a rest of the pointer on a family shows that one's, and so do the keys: up
/// and down go from program to program, left and right from family to family. [gui]
class QGMPatchMenu : public QMenu {
    Q_OBJECT

public:
    static constexpr int kDrumKit = -1;

    /// The menu for voice slot `voice` (0..2) whose program is `currentProgram`.
    QGMPatchMenu(int voice, int currentProgram, QWidget* parent = nullptr);

    int voice() const { return voice_; }
    /// Names of programs in the interface's language, as they are at first, or in English.
    void setTranslated(bool translated);
    /// The sixteen names; families without one show the numbers of their programs.
    void setFamilies(const QStringList& names);
    /// What the menu is not to cover, in global coordinates.
    void setAvoided(const QRect& area) { avoided_ = area; }
    /// Shows the menu there, or beside what it is not to cover; the chosen program, or nothing when it was closed
    /// without a choice.
    std::optional<int> choose(const QPoint& globalPosition);

    int shownFamily() const { return family_; }
    QRect familyRect(int family) const { return layout_.Family(family); }
    /// Empty while another family is shown.
    QRect programRect(int program) const;

    QSize sizeHint() const override;

protected:
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void addProgram(const QString& label, int program, int currentProgram);
    QAction* actionOf(int program) const;
    /// Of the active action; the menu's own when there is none.
    int activeProgram() const;
    int programAt(const QPoint& point) const;
    int familyAt(const QPoint& point) const;
    void activate(int program);
    void trigger(int program);
    void showFamily(int family);
    void stepFamily(int step);
    void layOut();
    int widthOf(const QStyleOptionMenuItem& item, const QString& text) const;
    QStyleOptionMenuItem familyItem(int family) const;

    int voice_;
    int currentProgram_;
    QStringList families_;
    PatchMenuLayout layout_;
    QRect avoided_;
    QPoint wanted_;
    QPoint pointerAtOpening_;
    int family_ = 0;
    int pointed_ = -1;  ///< the family that is shown once the pointer has rested on it
    QBasicTimer rest_;
    bool pressed_ = false;
};
