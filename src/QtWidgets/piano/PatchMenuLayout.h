// Where the families and the programs of the patch menu lie, and where the menu opens. [owner]
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

/// Sixteen families in two columns, or in one where the screen is narrow; right of them the eight programs of one
/// list, and what is searched for; below the families the drum kit and the two lists that the player makes. Logical
/// pixels.
struct PatchMenuLayout {
    static constexpr int kFamilies = 16;
    static constexpr int kProgramsInFamily = 8;

    int rowHeight = 0;
    int familyWidth = 0;
    int programWidth = 0;
    int margin = 0;
    int familyColumns = 2;

    QSize Size() const;
    QRect Family(int family) const;
    /// The place of a program within its family.
    QRect Program(int row) const;
    QRect DrumKit() const;
    QRect LastUsed() const;
    QRect Favorites() const;
    QRect Search() const;
    /// Of the program at that place, at its right end.
    QRect Star(int row) const;
    /// Between the families and the programs.
    int Divider() const;

    /// The top left corner for a menu of that size: at the wanted point, else where it leaves the avoided area free,
    /// below it first; always inside the room, all in one system of coordinates.
    static QPoint Place(const QSize& size, const QPoint& wanted, const QRect& avoided, const QRect& room);
};
