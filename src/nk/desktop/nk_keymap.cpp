#include "nk/desktop/nk_keymap.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace NK {
namespace {

struct TAccent {
    xkb_keysym_t deadKey;
    char32_t character;
};

constexpr TAccent kAccents[] = {
    {XKB_KEY_dead_grave, U'`'},
    {XKB_KEY_dead_acute, U'\u00B4'},
    {XKB_KEY_dead_circumflex, U'^'},
    {XKB_KEY_dead_tilde, U'~'},
    {XKB_KEY_dead_macron, U'\u00AF'},
    {XKB_KEY_dead_breve, U'\u02D8'},
    {XKB_KEY_dead_abovedot, U'\u02D9'},
    {XKB_KEY_dead_diaeresis, U'\u00A8'},
    {XKB_KEY_dead_abovering, U'\u02DA'},
    {XKB_KEY_dead_doubleacute, U'\u02DD'},
    {XKB_KEY_dead_caron, U'\u02C7'},
    {XKB_KEY_dead_cedilla, U'\u00B8'},
    {XKB_KEY_dead_ogonek, U'\u02DB'},
    {XKB_KEY_dead_iota, U'\u037A'},
    {XKB_KEY_dead_voiced_sound, U'\u309B'},
    {XKB_KEY_dead_semivoiced_sound, U'\u309C'},
    {XKB_KEY_dead_belowdot, U'\u0323'},
    {XKB_KEY_dead_hook, U'\u0309'},
    {XKB_KEY_dead_horn, U'\u031B'},
    {XKB_KEY_dead_stroke, U'/'},
    {XKB_KEY_dead_abovecomma, U'\u1FBF'},
    {XKB_KEY_dead_abovereversedcomma, U'\u1FFE'},
    {XKB_KEY_dead_doublegrave, U'\u02F5'},
    {XKB_KEY_dead_belowring, U'\u02F3'},
    {XKB_KEY_dead_belowmacron, U'\u02CD'},
    {XKB_KEY_dead_belowcircumflex, U'\uA788'},
    {XKB_KEY_dead_belowtilde, U'\u02F7'},
    {XKB_KEY_dead_belowbreve, U'\u032E'},
    {XKB_KEY_dead_belowdiaeresis, U'\u0324'},
    {XKB_KEY_dead_invertedbreve, U'\u0311'},
    {XKB_KEY_dead_belowcomma, U'\u0326'},
    {XKB_KEY_dead_currency, U'\u00A4'},
    {XKB_KEY_dead_greek, U'\u03BC'},
};

/// A character that a key can print: no control code, and none of the halves that stand for one together.
bool IsPrinted(char32_t character) {
    const bool isControl = character < 0x20 || (character >= 0x7F && character <= 0x9F);
    const bool isHalf = character >= 0xD800 && character <= 0xDFFF;
    return !isControl && !isHalf;
}

struct TSymbol {
    char32_t character = 0;
    bool isDead = false;
};

TSymbol ReadSymbol(xkb_keysym_t symbol) {
    const auto* const accent = std::find_if(std::begin(kAccents), std::end(kAccents),
                                            [symbol](const TAccent& entry) { return entry.deadKey == symbol; });
    if (accent != std::end(kAccents)) {
        return {accent->character, true};
    }
    const char32_t character = xkb_keysym_to_utf32(symbol);
    return {IsPrinted(character) ? character : 0, false};
}

/// English and Russian as the rules' descriptions begin, for example "English (US)"; else unknown.
LanguageNumber GetLanguageOfDescription(std::string_view description) {
    if (description.starts_with("English")) {
        return kLanguageEnglishUs;
    }
    return description.starts_with("Russian") ? kLanguageRussian : kLanguageUnknown;
}

/// As toolkits find shortcuts: each key by itself, in the order of the layouts.
void FindLatinLettersBeside(std::vector<TKeyboardLayout>& layouts) {
    for (TKeyboardLayout& layout : layouts) {
        if (layout.TypesLatinLetters()) {
            continue;
        }
        for (std::size_t code = 0; code < layout.keys.size(); ++code) {
            for (const TKeyboardLayout& other : layouts) {
                const char32_t character = other.keys[code].character;
                if (character >= U'a' && character <= U'z') {
                    layout.keys[code].latin = static_cast<char>(character);
                    break;
                }
            }
        }
    }
}

}  // namespace

char32_t GetPrintedOf(std::uint32_t keySymbol) {
    return ReadSymbol(keySymbol).character;
}

std::vector<TKeyboardLayout> ReadLayoutsOfKeymap(xkb_keymap* keymap) {
    const XkbStatePointer state(xkb_state_new(keymap));
    if (!state) {
        return {};
    }
    const xkb_mod_index_t shift = xkb_keymap_mod_get_index(keymap, XKB_MOD_NAME_SHIFT);
    const xkb_mod_mask_t shiftMask = shift != XKB_MOD_INVALID ? xkb_mod_mask_t{1} << shift : 0;
    std::vector<TKeyboardLayout> layouts(xkb_keymap_num_layouts(keymap));
    for (xkb_layout_index_t number = 0; number < layouts.size(); ++number) {
        auto& keys = layouts[number].keys;
        const auto last = std::min(xkb_keymap_max_keycode(keymap), static_cast<xkb_keycode_t>(keys.size() - 1));
        xkb_state_update_mask(state.get(), 0, 0, 0, 0, 0, number);
        for (xkb_keycode_t code = xkb_keymap_min_keycode(keymap); code <= last; ++code) {
            const TSymbol symbol = ReadSymbol(xkb_state_key_get_one_sym(state.get(), code));
            keys[code].character = symbol.character;
            keys[code].isDead = symbol.isDead;
        }
        xkb_state_update_mask(state.get(), shiftMask, 0, 0, 0, 0, number);
        for (xkb_keycode_t code = xkb_keymap_min_keycode(keymap); code <= last; ++code) {
            keys[code].shifted = ReadSymbol(xkb_state_key_get_one_sym(state.get(), code)).character;
        }
    }
    FindLatinLettersBeside(layouts);
    return layouts;
}

std::vector<TKeyboardLayout> ReadKeyboardLayouts(const std::string& keymap) {
    const XkbContextPointer context(xkb_context_new(
        static_cast<xkb_context_flags>(XKB_CONTEXT_NO_DEFAULT_INCLUDES | XKB_CONTEXT_NO_ENVIRONMENT_NAMES)));
    if (!context) {
        return {};
    }
    xkb_context_set_log_level(context.get(), XKB_LOG_LEVEL_CRITICAL);  // a refusal is a result
    const XkbKeymapPointer compiled(xkb_keymap_new_from_string(context.get(), keymap.c_str(), XKB_KEYMAP_FORMAT_TEXT_V1,
                                                               XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!compiled) {
        return {};
    }
    std::vector<TKeyboardLayout> layouts = ReadLayoutsOfKeymap(compiled.get());
    for (xkb_layout_index_t number = 0; number < layouts.size(); ++number) {
        const char* const name = xkb_keymap_layout_get_name(compiled.get(), number);
        layouts[number].language = GetLanguageOfDescription(name != nullptr ? name : "");
    }
    return layouts;
}

}  // namespace NK
