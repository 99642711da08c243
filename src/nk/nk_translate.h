// The hook through which texts reach the translation catalogue. [any]
#pragma once

#include "nk/nk_string.h"

namespace NK {

/// Context, source text and disambiguation comment (may be null), all UTF-8; returns the text to show.
using TranslateFunction = CString (*)(const char* context, const char* sourceText, const char* comment);

/// Installs the translation; null restores the identity. Set once at start-up, before other threads run.
void SetTranslateFunction(TranslateFunction function);
/// The source text itself while no translation is installed.
CString Translate(const char* context, const char* sourceText, const char* comment = nullptr);

}  // namespace NK
