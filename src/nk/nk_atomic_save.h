// Saving that never leaves a half-written file.
#pragma once

#include <functional>

#include "nk/nk_file.h"
#include "nk/nk_string.h"

namespace NK {

/// Writes a file for the user: the writer fills a temporary file in the target's folder, which is flushed to disk and
/// then takes the target's name by a rename. True once the target holds all of it. On any failure (the writer's false
/// or exception, a write that the system cut short, a full disk, a missing folder, a target that is no file) the
/// temporary file is removed, the old target is as it was and GetFileFailure() tells why. A target that is a link is
/// written where the link leads. The first save into a folder in a run removes the temporary files that killed programs
/// have left there a day ago or before. Different targets may be saved by different threads at once. [any]
bool SaveAtomically(const CString& path, const std::function<bool(CFile& file)>& write);

/// The same for a writer that opens its file by name: it gets the path of an existing, empty temporary file.
bool SaveAtomicallyByName(const CString& path, const std::function<bool(const CString& temporaryPath)>& write);

}  // namespace NK
