// Configuration files of sections, keys and values. [owner]
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "nk/nk_file.h"
#include "nk/nk_string.h"

namespace NK {

/// A whole INI file in memory, one element per line without its line end, with a cursor on the header of the section
/// that the getters and setters work in. Not for use from several threads at once.
///
/// A header is a line that is exactly "[" + name + "]"; its keys follow up to the next line that begins with "[". A
/// line that begins with "'", "#" or ";" is a comment. A key line is the key, "=" with white space on either side, and
/// the value up to the line's end. All other lines are kept and ignored. While no section is selected the getters look
/// at the lines before the first header.
///
/// On disk: UTF-8 with LF. Reading accepts a byte-order mark and CR LF as well (no line ends in a carriage return), and
/// takes a line that is not UTF-8 as Latin-1, so that nothing is lost when the file is saved again.
class CIniFile : public CStringArray {
public:
    static constexpr std::int64_t kMaxBytes = 1024 * 1024;
    static constexpr std::uint32_t kMaxLines = 50000;

    enum class LoadResult {
        kLoaded,
        kAbsent,      ///< nothing stands at the path
        kUnreadable,  ///< it cannot be opened or read
        kDamaged      ///< more than kMaxBytes or kMaxLines; no more than that is read
    };

    /// Reads the file, with the cursor on no section, and remembers the name. False on failure: no lines then, the name
    /// as it was, and the reason in GetFileFailure().
    bool Load(const CString& fileName);
    /// The same from the file's present position on; the remembered name stays.
    bool Load(CFile& file);
    /// How the last Load() ended; kAbsent before the first.
    LoadResult GetLoadResult() const noexcept { return loadResult_; }

    /// Replaces the file as a whole (see SaveAtomically()) and remembers the name. On failure false: the file and the
    /// name are as they were. More than Load() would take is a failure.
    bool Save(const CString& fileName);
    /// Writes the lines at the file's present position; true when all of it was written, false at the limit of Load().
    bool Write(CFile& file) const;

    /// Whether the lines can be a configuration at all, in whatever program's: no control characters but white space,
    /// and a header, unless every line is blank or a comment. Zeros, pictures and UTF-16 are none.
    bool IsConfiguration() const;
    /// Calls with the section, the key and the value of each key line, in the order of the lines; the section is empty
    /// for those before the first header. Of equal keys of a section the getters know the first.
    void VisitKeys(
        const std::function<void(const CString& section, const CString& key, const CString& value)>& visit) const;

    /// The file last loaded or saved.
    const CString& GetFileName() const noexcept { return fileName_; }
    /// Index of the selected section's header, -1 for none.
    std::int32_t GetCursor() const noexcept { return cursor_; }

    /// Searches the header from the first line. Whether it was found; if not, no section is selected.
    bool SelectSection(const CString& name, bool caseSensitive = false);
    /// The same, but a section that is absent is added at the end, with an empty line before it.
    void SelectOrAddSection(const CString& name, bool caseSensitive = false);
    /// As SelectSection(), from the line after the cursor.
    bool FindNextSection(const CString& name, bool caseSensitive = false);

    /// The value's text, trailing white space included; nothing when the key is absent.
    std::optional<CString> GetString(const CString& key, bool caseSensitive = false) const;
    std::optional<CString> GetString(const CString& key, const wchar_t* defaultValue) const = delete;
    /// The default when the key is absent, empty or not a number. Numbers as CString::ToInt() and ToHex() scan them.
    std::int32_t GetInt(const CString& key, std::int32_t defaultValue, bool caseSensitive = false) const;
    std::uint32_t GetHex(const CString& key, std::uint32_t defaultValue, bool caseSensitive = false) const;
    /// As CString::ToFloat() and ToDouble() scan: "." in every locale, "nan" and "inf" are numbers, 1e309 is infinity;
    /// callers check the range. Leaves the C library's numeric category of the process at "C". `out` stays on failure.
    float GetFloat(const CString& key, float defaultValue, bool caseSensitive = false) const;
    bool GetDouble(const CString& key, double& out, bool caseSensitive = false) const;
    /// In any letter case and with blanks around: 1, y, yes, on, true, enable, enabled, else 0, n, no, off, false,
    /// disable, disabled, else a whole number, which is true unless 0. False, `out` unchanged, for all else.
    bool GetBool(const CString& key, bool& out, bool caseSensitive = false) const;

    /// Replaces the key's line, or inserts one directly under the header, so that new keys stand in the reverse order
    /// of their writing. A line feed or carriage return is written as a blank. Throws CException "Ini file cursor was
    /// not positioned before inserting a value." while no section is selected.
    void SetString(const CString& key, const CString& value, bool caseSensitive = false);
    void SetInt(const CString& key, std::int32_t value, bool caseSensitive = false);
    void SetUnsigned(const CString& key, std::uint32_t value, bool caseSensitive = false);
    /// Lower case, without prefix.
    void SetHex(const CString& key, std::uint32_t value, bool caseSensitive = false);
    /// As CString::FromDouble().
    void SetDouble(const CString& key, double value, bool caseSensitive = false);

    std::uint32_t GetGrowthStep() const override { return 64; }

private:
    struct KeyPlace {
        std::uint32_t line;
        std::uint32_t valueStart;  ///< index into the line
    };

    LoadResult ReadLines(CFile& file);
    bool SetLines(std::string_view text);
    bool FindHeader(const CString& name, std::uint32_t from, bool caseSensitive);
    std::optional<KeyPlace> FindKey(const CString& key, bool caseSensitive) const;

    std::int32_t cursor_ = -1;
    CString fileName_;
    LoadResult loadResult_ = LoadResult::kAbsent;
};

}  // namespace NK
