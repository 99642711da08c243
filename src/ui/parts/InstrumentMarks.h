// The marks in message boxes and in the file dialog. [gui]
#pragma once

#include <QIcon>
#include <QStyle>

namespace InstrumentMarks {

/// The instrument's own mark in place of a style's icon, sharp at any size; a null icon for those that it has none for.
QIcon Find(QStyle::StandardPixmap icon);

}  // namespace InstrumentMarks
