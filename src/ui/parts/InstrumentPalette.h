// The palette of dialogs, menus and boxes. [gui]
#pragma once

#include <QPalette>

namespace InstrumentPalette {

/// Every role of every group is set, so that nothing of a desktop's palette shows through.
QPalette Make();

/// The same with the lit figures of fields: line edits, combo boxes and spin boxes.
QPalette MakeForFields();

/// White on black, lit yellow, for a desktop that asks for high contrast.
QPalette MakeHighContrast();

/// Whether a desktop's palette is one of high contrast: black on white or white on black, nothing between.
bool IsHighContrast(const QPalette& palette);

}  // namespace InstrumentPalette
