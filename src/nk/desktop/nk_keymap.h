// XKB's compiled keymaps, read into the program's own terms. [any]
#pragma once

#include <xkbcommon/xkbcommon.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "nk/desktop/nk_keyboard_layout.h"

namespace NK {

template <auto Release>
struct TReleaser {
    template <class T>
    void operator()(T* object) const {
        Release(object);
    }
};
using XkbContextPointer = std::unique_ptr<xkb_context, TReleaser<&xkb_context_unref>>;
using XkbKeymapPointer = std::unique_ptr<xkb_keymap, TReleaser<&xkb_keymap_unref>>;
using XkbStatePointer = std::unique_ptr<xkb_state, TReleaser<&xkb_state_unref>>;

/// The character that a key symbol types, of a dead key its accent; 0 for none.
char32_t GetPrintedOf(std::uint32_t keySymbol);

/// What the keys type in each of the layouts, without the languages.
std::vector<TKeyboardLayout> ReadLayoutsOfKeymap(xkb_keymap* keymap);

}  // namespace NK
