// Which way the notes of the computer keys are found in a keyboard layout. [any]
#pragma once

#include "locale/LocalizedKeyMap.h"
#include "nk/desktop/nk_keyboard_layout.h"
#include "piano/PCKeyPlaces.h"

namespace Kivora {

/// Whether each playing key types in that layout, by way of the map, what a US keyboard types at its place.
bool CoversLayout(const CLocalizedKeyMap& map, const NK::TKeyboardLayout& layout);

/// Whether keys are found by their places. `layout` is the active one, null while it is not known: then nothing but the
/// user's own choice makes it so.
bool IsPlayedByPlace(NK::Piano::EPCKeyWay way, const CLocalizedKeyMap& map, const NK::TKeyboardLayout* layout);

}  // namespace Kivora
