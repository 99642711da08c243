// The file that remembers the language chosen last.
#pragma once

#include "nk/nk_string.h"

namespace Kivora {

/// "Locale.ini" in the user's data folder.
NK::CString GetLocaleFilePath();

/// The code stored; empty when there is none. [gui]
NK::CString LoadLocaleCode();

/// Stores the code, other lines of the file are kept; creates the user's data folder first. A file that cannot be read
/// or is damaged is kept beside the new one with ".bad" added to its name. False when it could not be written. [gui]
bool SaveLocaleCode(const NK::CString& code);

}  // namespace Kivora
