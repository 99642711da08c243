// The language of the keyboard layout that the user types with.
#pragma once

#include <memory>
#include <QLocale>

#include "nk/nk_keyboard_layout.h"

namespace Kivora {

/// As X names it; where there is no X display, as on Wayland, the input method's language; kLanguageUnknown where that
/// names none. [gui]
NK::LanguageNumber GetInputLanguage();

/// The layout that the keyboard types with; null where the window system does not tell. Waits for nothing as long as it
/// stays the same. [gui]
std::shared_ptr<const NK::TKeyboardLayout> GetInputLayout();

/// That of an English or a Russian keyboard by the locale's language, else that of its country's usual keyboard;
/// kLanguageUnknown for the "C" locale.
NK::LanguageNumber GetLanguageOfLocale(const QLocale& locale);

}  // namespace Kivora
