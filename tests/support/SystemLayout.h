// Keyboard layouts of the system's own collection, by the names that setxkbmap takes.
#pragma once

#include <xkbcommon/xkbcommon.h>

#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

#include "nk/desktop/nk_keyboard_layout.h"

namespace KivoraTest {

/// The text of the keymap; several layouts are separated by commas. Throws for what the system does not have.
inline std::string SystemKeymap(const std::string& layout, const std::string& variant = {}) {
    const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS),
                                                                             &xkb_context_unref);
    const xkb_rule_names names{"evdev", "pc105", layout.c_str(), variant.c_str(), ""};
    const std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap(
        xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS), &xkb_keymap_unref);
    if (!keymap) {
        throw std::runtime_error("no layout " + layout + " " + variant);
    }
    const std::unique_ptr<char, decltype(&std::free)> text(
        xkb_keymap_get_as_string(keymap.get(), XKB_KEYMAP_FORMAT_TEXT_V1), &std::free);
    return text.get();
}

/// One layout, with the language by its names.
inline NK::TKeyboardLayout SystemLayout(const std::string& layout, const std::string& variant = {}) {
    NK::TKeyboardLayout read = NK::ReadKeyboardLayouts(SystemKeymap(layout, variant)).at(0);
    read.language = NK::GetLanguageOfLayout(layout, variant);
    return read;
}

}  // namespace KivoraTest
