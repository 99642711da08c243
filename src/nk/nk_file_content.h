// Files as a whole.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "nk/nk_string.h"

namespace NK {

/// All bytes of a regular file; nothing, with the reason in GetFileFailure(), when it cannot be read or holds more than
/// `maxBytes`. Never waits for what is no regular file. [any]
std::optional<std::string> ReadFileContent(const CString& path, std::size_t maxBytes);

}  // namespace NK
