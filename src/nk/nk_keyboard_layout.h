// The language of the active keyboard layout.
#pragma once

#include <cstdint>
#include <string_view>

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

/// The language of an XKB layout as the rules name it, for example "us" and "intl"; the variant may be empty, or stand
/// in brackets behind the layout. [any]
LanguageNumber GetLanguageOfLayout(std::string_view layout, std::string_view variant);

/// The character that a key symbol of X11 ("X Window System Protocol", appendix A) types; 0 for one that types none and
/// for 0. [any]
char32_t GetCharacterOfKeySymbol(std::uint32_t keySymbol) noexcept;

}  // namespace NK
