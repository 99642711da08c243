// The file that remembers the language chosen last.
#pragma once

#include "nk/nk_string.h"

namespace Kivora {

/// "Locale.ini" in the user's data folder. [any]
NK::CString GetLocaleFilePath();

/// How the file was found: kDamaged is one that is no configuration, kUnreadable one that is there and is not given.
enum class LocaleFileState { kGood, kAbsent, kDamaged, kUnreadable };
/// With the reason in NK::GetFileFailure() for one that cannot be read. [gui]
LocaleFileState GetLocaleFileState();

/// The code stored; empty when there is none. [gui]
NK::CString LoadLocaleCode();

/// Stores the code, other lines of the file are kept; creates the user's data folder first. A damaged file is kept
/// beside the new one with ".bad" added to its name; one that cannot be read is left as it is. False when it could not
/// be written, with the reason in NK::GetFileFailure(). [gui]
bool SaveLocaleCode(const NK::CString& code);

}  // namespace Kivora
