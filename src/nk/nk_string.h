// The framework's wide string. [owner]
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "nk/nk_sortable_array.h"

namespace NK {

/// A wide string held in a CArray whose size counts the terminating zero: an empty string has size 1. A string that was
/// never given a text has no block yet, and a moved-from one is empty. Value semantics; not for use from several
/// threads at once. A null pointer stands for an empty text. Failed allocations throw CMemoryException.
class CString {
public:
    CString() noexcept = default;
    CString(const wchar_t* text);          // NOLINT(google-explicit-constructor): a text is a string
    CString(std::wstring_view text);       // NOLINT(google-explicit-constructor)
    explicit CString(const char* latin1);  ///< 8-bit text, Latin-1
    static CString FromLatin1(std::string_view text);
    static CString FromUtf8(std::string_view utf8);  ///< malformed sequences become U+FFFD
    /// Nothing when a sequence is malformed.
    static std::optional<CString> FromStrictUtf8(std::string_view utf8);

    const wchar_t* c_str() const noexcept { return chars_.IsEmpty() ? L"" : chars_.GetData(); }
    std::wstring_view View() const noexcept { return {c_str(), GetLength()}; }
    std::string ToUtf8() const;
    std::string ToLatin1() const;  ///< "?" for a character that Latin-1 lacks

    std::uint32_t GetLength() const noexcept { return GetSize() - 1; }  ///< characters, no terminator
    /// Characters with the terminator.
    std::uint32_t GetSize() const noexcept { return chars_.IsEmpty() ? 1 : chars_.GetSize(); }
    bool IsEmpty() const noexcept { return GetLength() == 0; }
    void Clear();

    /// Throws CArrayIndexException outside 0..length (the terminator can be read).
    wchar_t operator[](std::uint32_t index) const { return index == 0 && chars_.IsEmpty() ? L'\0' : chars_[index]; }

    CString& operator+=(std::wstring_view text);
    CString& operator+=(const CString& text) { return *this += text.View(); }
    CString& operator+=(const wchar_t* text) { return *this += ViewOf(text); }
    CString& operator+=(wchar_t character);
    friend CString operator+(CString left, std::wstring_view right) { return left += right; }
    friend CString operator+(CString left, const CString& right) { return left += right.View(); }
    friend CString operator+(CString left, const wchar_t* right) { return left += right; }
    friend CString operator+(const wchar_t* left, const CString& right) { return CString(left) += right.View(); }

    friend bool operator==(const CString& a, const CString& b) noexcept { return a.View() == b.View(); }
    friend bool operator==(const CString& a, const wchar_t* b) noexcept { return a.View() == ViewOf(b); }
    friend bool operator<(const CString& a, const CString& b) noexcept { return a.View() < b.View(); }

    /// Below, at or above 0 as this sorts before, equals or sorts after `other`, by code point.
    int Compare(const CString& other) const noexcept;
    /// The same with letter case ignored (simple Unicode case mapping of the C.UTF-8 locale, whatever the user's).
    int CompareNoCase(const CString& other) const noexcept { return CompareNoCase(View(), other.View()); }
    static int CompareNoCase(std::wstring_view a, std::wstring_view b) noexcept;

    std::int32_t Find(std::wstring_view text, std::uint32_t from = 0) const noexcept;  ///< index or -1
    std::int32_t FindLast(wchar_t character) const noexcept;                           ///< index or -1
    CString Mid(std::uint32_t from, std::uint32_t count = UINT32_MAX) const;           ///< cut to what is there
    CString Left(std::uint32_t count) const { return Mid(0, count); }
    CString Trimmed() const;  ///< without leading and trailing white space
    void Replace(wchar_t what, wchar_t with);

    /// printf-like as the C library's wide functions, with "." as the decimal separator in every locale: "%ls" is a
    /// wide text, "%s" a UTF-8 one. Empty when a text cannot be converted.
    static CString Format(const wchar_t* format, ...);

    /// Decimal, and lower-case hexadecimal without prefix.
    static CString FromInt(std::int64_t value);
    static CString FromHex(std::uint64_t value);
    /// The shortest text that reads back as the same double, "." as the decimal separator in every locale.
    static CString FromDouble(double value);
    /// As the C library's "%d", "%lx", "%f", "%lf" scan: leading blanks, a sign, trailing text ignored; "." in every
    /// locale. False, `out` unchanged, when no number stands there or a whole number does not fit. As in the C library
    /// "nan" and "inf" are floating-point numbers, and one that is too large (1e309) is read as infinity.
    bool ToInt(std::int32_t& out) const noexcept;
    bool ToHex(std::uint32_t& out) const noexcept;
    bool ToFloat(float& out) const noexcept;
    bool ToDouble(double& out) const noexcept;

    /// White space as the C.UTF-8 locale has it, whatever the user's.
    static bool IsWhiteSpace(wchar_t character) noexcept;

private:
    static std::wstring_view ViewOf(const wchar_t* text) noexcept {
        return text == nullptr ? std::wstring_view() : std::wstring_view(text);
    }
    /// Makes room for `length` characters and the terminator, which is written; exactly that much in a new block.
    wchar_t* SetLength(std::size_t length);
    /// Whether the text was well formed; if not, U+FFFD stands for what was not.
    bool Decode(std::string_view utf8);

    CArray<wchar_t> chars_;
};

/// One string per element.
class CStringArray : public CSortableArray<CString> {};

}  // namespace NK
