// The pop-up menu of the General MIDI programs.
#pragma once

#include <QMenu>

#include <optional>
#include <QBasicTimer>
#include <QStringList>
#include <vector>

#include "QtWidgets/piano/PatchMenuLayout.h"
#include "QtWidgets/piano/PatchSearch.h"

class QPainter;
class QStyleOptionMenuItem;

/// The 128 programs in their sixteen families, then the drum kit. An action's data is its program, 0-based, and
/// NK::MIDI::kDrumKit for the drum kit; the current program's action is checked. Shows all families and the programs of
/// one of them, at first that of the current program; a click or a rest of the pointer on a family shows that one's,
/// and so do the keys: up and down go from program to program, left and right from family to family. Two more lists are
/// like families: what was used last, and the favorites, which a click on a star or the key "*" adds to and takes from.
/// What is typed is searched for, in the place of a family. The accessible description tells how much is found, and
/// what has become a favorite. [gui]
class QGMPatchMenu : public QMenu {
    Q_OBJECT

public:
    /// The menu for voice slot `voice` (0..2) whose program is `currentProgram`.
    QGMPatchMenu(int voice, int currentProgram, QWidget* parent = nullptr);

    int voice() const { return voice_; }
    /// Names of programs in the interface's language, as they are at first, or in English.
    void setTranslated(bool translated);
    /// The sixteen names; families without one show the numbers of their programs.
    void setFamilies(const QStringList& names);
    /// The programs of the two lists, none at first.
    void setLastUsed(const std::vector<int>& programs) { lastUsed_ = programs; }
    void setFavorites(const std::vector<int>& programs) { favorites_ = programs; }
    /// As PatchSearch::setTexts(); the names of the actions at first.
    void setSearchTexts(const std::vector<QString>& texts) { search_.setTexts(texts); }
    /// What the menu is not to cover, in global coordinates.
    void setAvoided(const QRect& area) { avoided_ = area; }
    /// Shows the menu there, or beside what it is not to cover; the chosen program, or nothing when it was closed
    /// without a choice.
    std::optional<int> choose(const QPoint& globalPosition);

    int shownFamily() const {
        return list_;
    }  ///< 16 for what was used last, 17 for the favorites, 18 for what is found
    const QString& query() const { return query_; }
    /// The programs of what is shown, in their order.
    std::vector<int> shownPrograms() const;
    QRect familyRect(int family) const;
    /// Empty while it is not in sight.
    QRect programRect(int program) const;
    QRect starRect(int program) const;

    QSize sizeHint() const override;

signals:
    /// The keys have gone to this program: it is to be heard.
    void programAuditioned(int program);
    void favoriteChanged(int program, bool on);

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
    enum List : int { kLastUsed = PatchMenuLayout::kFamilies, kFavorites, kFound };

    void addProgram(const QString& label, int program, int currentProgram);
    QAction* actionOf(int program) const;
    /// Of the active action; the menu's own when there is none.
    int activeProgram() const;
    int rowOf(int program) const;  ///< -1 while it is not in sight
    std::optional<int> programAtRow(int row) const;
    int programAt(const QPoint& point) const;
    int familyAt(const QPoint& point) const;
    int starAt(const QPoint& point) const;
    bool isFamily() const { return list_ < PatchMenuLayout::kFamilies; }
    void activate(int program);
    void scrollTo(int program);
    void trigger(int program);
    void showFamily(int family);
    void stepFamily(int step);
    void stepProgram(int step);
    void goToEnd(bool last);
    void searchFor(const QString& query);
    bool editQuery(const QKeyEvent& event);
    void toggleFavorite(int program);
    bool hasNothingToTake() const;  ///< the list is empty, and the drum kit below it not active
    QString familyName(int family) const;
    void layOut();
    int widthOf(const QStyleOptionMenuItem& item, const QString& text) const;
    QStyleOptionMenuItem familyItem(int family) const;
    void paintSearch(QPainter& painter) const;
    void paintStar(QPainter& painter, int program) const;

    int voice_;
    int currentProgram_;
    QStringList families_;
    PatchMenuLayout layout_;
    PatchSearch search_;
    std::vector<int> lastUsed_;
    std::vector<int> favorites_;
    std::vector<int> found_;
    QString query_;
    QRect avoided_;
    QPoint wanted_;
    QPoint pointerAtOpening_;
    int list_ = 0;      ///< a family or a List
    int firstRow_ = 0;  ///< of a list that is longer than there are rows
    int pointed_ = -1;  ///< the family that is shown once the pointer has rested on it
    QBasicTimer rest_;
    bool pressed_ = false;
};
