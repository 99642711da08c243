// The language of the keyboard layout that the user types with.
#pragma once

#include <QLocale>

#include "nk/nk_keyboard_layout.h"

namespace Kivora {

/// As X names it; where there is no X display, as on Wayland, the input method's language; kLanguageUnknown where that
/// names none. [gui]
NK::LanguageNumber GetInputLanguage();

/// That of an English or a Russian keyboard by the locale's language, else that of its country's usual keyboard;
/// kLanguageUnknown for the "C" locale.
NK::LanguageNumber GetLanguageOfLocale(const QLocale& locale);

}  // namespace Kivora
