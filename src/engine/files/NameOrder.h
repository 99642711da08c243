// The order in which names are listed for a person. [any]
#pragma once

#include "nk/nk_string.h"

namespace Kivora {

/// Sorts as the interface's language (the default QLocale) does, letter case ignored; names that are the same to it
/// stand by code point. Where the locale is "C" the order of English is taken.
void SortByName(NK::CStringArray& names);

}  // namespace Kivora
