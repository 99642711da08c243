// The active keyboard layout: its language, and what its keys type.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace NK {

/// A language by its number in [MS-LCID], "Windows Language Code Identifier": 0x0409 English (United States), 0x0419
/// Russian, ...; 0x0000 when it is not known.
using LanguageNumber = std::uint16_t;

constexpr LanguageNumber kLanguageUnknown = 0x0000;
constexpr LanguageNumber kLanguageEnglishUs = 0x0409;
constexpr LanguageNumber kLanguageRussian = 0x0419;

/// The language of the layout that is active on the X display. Unknown without an X display and on Wayland. The first
/// call connects to the X server; later ones ask it only after it has told of a change of the layouts, and wait for
/// nothing otherwise. [any]
LanguageNumber GetKeyboardLanguage();

/// What a keyboard's keys type in one layout.
struct TKeyboardLayout {
    struct TKey {
        char32_t character = 0;  ///< without modifiers; of a dead key its accent; 0 for none
        char32_t shifted = 0;    ///< the same with SHIFT
        bool isDead = false;     ///< without modifiers it types nothing but waits for another key
        char latin = 0;          ///< a layout without Latin letters: that of the keyboard's first layout with one there

        friend bool operator==(const TKey&, const TKey&) = default;
    };

    LanguageNumber language = kLanguageUnknown;
    std::array<TKey, 256> keys{};  ///< by native scan code, of X11 and Wayland

    /// A key that types nothing for a scan code that is not in the layout.
    const TKey& operator[](std::uint32_t scanCode) const noexcept;
    /// Whether it types any of the letters a to z without modifiers.
    bool TypesLatinLetters() const noexcept;
    /// Whether it types none, and another layout of the keyboard does.
    bool HasLatinLettersBeside() const noexcept;

    friend bool operator==(const TKeyboardLayout&, const TKeyboardLayout&) = default;
};

/// The layout that is active on the X display; another object after a change only. Null without an X display, on
/// Wayland, and while the server's keymap cannot be compiled. It asks the server as GetKeyboardLanguage() does. [any]
std::shared_ptr<const TKeyboardLayout> GetKeyboardLayout();

/// What an event of the X display, an xcb_generic_event_t of any connection, tells of the layouts. [any]
enum class EKeyboardLayoutEvent { kNone, kOtherActive, kOtherLayouts };
EKeyboardLayoutEvent GetKeyboardLayoutEvent(const void* event);

/// Waits until what the X display has told before this call is read, so that GetKeyboardLayout() knows of it. [any]
void SyncKeyboardLayout();

/// The layouts of a keymap in XKB's text format, version 1, in their order; none when it cannot be compiled. Of the
/// languages it tells English and Russian only. [any]
std::vector<TKeyboardLayout> ReadKeyboardLayouts(const std::string& keymap);

/// The language of an XKB layout as the rules name it, for example "us" and "intl"; the variant may be empty, or stand
/// in brackets behind the layout. [any]
LanguageNumber GetLanguageOfLayout(std::string_view layout, std::string_view variant);

/// The character that a key symbol of X11 ("X Window System Protocol", appendix A) types; 0 for one that types none and
/// for 0. [any]
char32_t GetCharacterOfKeySymbol(std::uint32_t keySymbol) noexcept;

}  // namespace NK
