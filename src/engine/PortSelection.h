// Choosing a port by parts of its name.
#pragma once

#include <vector>

#include "nk/nk_string.h"

namespace Kivora {

/// Index in `names` of the preferred port: for each candidate in turn the first name, in list order, that contains it
/// (case-sensitive); -1 when no candidate is part of any name. [any]
int FindByCandidates(const std::vector<NK::CString>& candidates, const NK::CStringArray& names);

}  // namespace Kivora
