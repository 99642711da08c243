#include "QtWidgets/piano/PatchMenuLayout.h"

#include <algorithm>

namespace {

constexpr int kGap = 9;  // between the families and what lies beside and below them

QPoint MovedInto(const QRect& room, const QPoint& point, const QSize& size) {
    return {std::max(room.left(), std::min(point.x(), room.left() + room.width() - size.width())),
            std::max(room.top(), std::min(point.y(), room.top() + room.height() - size.height()))};
}

}  // namespace

QSize PatchMenuLayout::Size() const {
    const QRect lowest = Favorites();
    return {Divider() + kGap / 2 + programWidth + margin, lowest.top() + lowest.height() + margin};
}

QRect PatchMenuLayout::Family(int family) const {
    const int rows = kFamilies / familyColumns;
    return {margin + family / rows * familyWidth, margin + family % rows * rowHeight, familyWidth, rowHeight};
}

QRect PatchMenuLayout::Program(int row) const {
    return {Divider() + kGap / 2, margin + row * rowHeight, programWidth, rowHeight};
}

QRect PatchMenuLayout::DrumKit() const {
    return {margin, margin + kFamilies / familyColumns * rowHeight + kGap, familyColumns * familyWidth, rowHeight};
}

QRect PatchMenuLayout::LastUsed() const {
    return {margin, DrumKit().top() + rowHeight, familyWidth, rowHeight};
}

QRect PatchMenuLayout::Favorites() const {
    const bool below = familyColumns == 1;
    return LastUsed().translated(below ? 0 : familyWidth, below ? rowHeight : 0);
}

QRect PatchMenuLayout::Search() const {
    return {Divider() + kGap / 2, DrumKit().top(), programWidth, rowHeight};
}

QRect PatchMenuLayout::Star(int row) const {
    const QRect program = Program(row);
    return {program.left() + program.width() - rowHeight, program.top(), rowHeight, rowHeight};
}

int PatchMenuLayout::Divider() const {
    return margin + familyColumns * familyWidth + kGap / 2;
}

QPoint PatchMenuLayout::Place(const QSize& size, const QPoint& wanted, const QRect& avoided, const QRect& room) {
    const QPoint usual = MovedInto(room, wanted, size);
    for (const QPoint& point :
         {usual, QPoint(wanted.x(), avoided.top() + avoided.height()),
          QPoint(avoided.left() + avoided.width(), wanted.y()), QPoint(avoided.left() - size.width(), wanted.y()),
          QPoint(wanted.x(), avoided.top() - size.height())}) {
        const QPoint inside = MovedInto(room, point, size);
        if (!QRect(inside, size).intersects(avoided)) {
            return inside;
        }
    }
    return usual;
}
