// The language of the user interface: which there are, which is in force, and the change from one to another.
#pragma once

#include <array>
#include <memory>
#include <QString>

#include "locale/LocaleFile.h"
#include "locale/LocalizedKeyMap.h"

class QTranslator;

namespace Kivora {

/// Language and country, "en_US".
inline constexpr std::array<const char*, 2> kSupportedLocales = {"en_US", "ru_RU"};
inline constexpr int kMaxLocaleCodeLength = 7;

/// The supported code for any locale code: the one with the same first 5 characters, else the last one with the same
/// first 2 (the language), else "en_US". [any]
QString MatchLocale(const QString& code);

/// The name of a locale's language for the user to choose: English in English, the others in the language in force;
/// "[Bad locale code]" for a language that is not supported. [gui]
QString LocaleDisplayName(const QString& code);

/// What distinguishes the file names of the language in force, "_ru"; empty where its catalogue names nothing. [gui]
QString LocaleSuffix();

/// The supported code in force; empty before the first SetLocale(). [gui]
const QString& GetCurrentLocale();

/// Takes the language of the code: installs Qt's catalogue and the program's, which makes the application send
/// QEvent::LanguageChange to every window, connects the leaves that know no Qt to them, lets numbers and dates be
/// written as in the language, and builds the localized key map anew. With `save` the code given becomes "Name" in the
/// section "Locale" of the user's "Locale.ini". Nothing at all happens when the supported code is in force already.
/// False only when the file could not be saved; the language is taken all the same. A catalogue that is missing leaves
/// its texts in English. The application object must exist. [gui]
bool SetLocale(const QString& code, bool save);

/// The program's catalogue of a supported language, whatever language is in force; null where there is none, as for the
/// language of the sources. [gui]
std::unique_ptr<QTranslator> LoadCatalogue(const QString& code);

/// The language for this run: the code in "Locale.ini", else the system's, which is then saved, unless the file is
/// there and cannot be read. How the file was found. Once at start-up, before the first window. [gui]
LocaleFileState InitLocale();

/// Of the language in force. [gui]
const CLocalizedKeyMap& GetLocalizedKeyMap();

}  // namespace Kivora
