// The grid of a take on disk. [any]
#pragma once

#include "engine/takes/TakeGrid.h"
#include "nk/nk_string.h"

namespace Kivora {

// Text: the line "KivGrid1", a line for each mark with its time in milliseconds, its tempo, the beats of a bar, where
// the bar stands and 1 where it begins one, else 0; at the end the CRC-32 of all these lines in 8 hexadecimal digits.

/// In place: a part of a file is none, see below. False when it could not be written.
bool WriteGrid(const TakeGrid& grid, const NK::CString& path);
/// Empty where there is none, and where it is not whole or means nothing to this version.
TakeGrid ReadGrid(const NK::CString& path);

}  // namespace Kivora
