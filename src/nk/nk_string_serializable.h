// A string that a file can hold. [owner]
#pragma once

#include "nk/nk_file.h"
#include "nk/nk_string.h"

namespace NK {

/// A string that writes itself to and reads itself from a file: the number of bytes (32 bits, high byte first), then
/// the text as UTF-8 without a terminator.
class CStringSerializable : public CString {
public:
    static constexpr std::uint32_t kLongest = 1U << 24;  ///< bytes; longer texts are neither written nor read

    using CString::CString;
    CStringSerializable() = default;
    explicit CStringSerializable(const CString& text) : CString(text) {}

    /// True when all of it was written.
    bool WriteTo(CFile& file) const;
    /// False, this unchanged, when the file ends early or the length is above the limit.
    bool ReadFrom(CFile& file);
};

}  // namespace NK
