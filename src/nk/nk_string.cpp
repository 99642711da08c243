#include "nk/nk_string.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdarg>
#include <cwchar>
#include <limits>
#include <utility>

#include "nk/platform/platform_locale.h"

namespace NK {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

void AppendUtf8(std::string& text, char32_t c) {
    if (c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) {
        c = kReplacement;
    }
    const auto add = [&text](char32_t byte) { text.push_back(static_cast<char>(static_cast<unsigned char>(byte))); };
    if (c < 0x80) {
        add(c);
    } else if (c < 0x800) {
        add(0xC0 | (c >> 6));
        add(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        add(0xE0 | (c >> 12));
        add(0x80 | ((c >> 6) & 0x3F));
        add(0x80 | (c & 0x3F));
    } else {
        add(0xF0 | (c >> 18));
        add(0x80 | ((c >> 12) & 0x3F));
        add(0x80 | ((c >> 6) & 0x3F));
        add(0x80 | (c & 0x3F));
    }
}

/// Decodes the sequence at `at` and moves past it; nothing for the longest well-begun part of a malformed one
/// (Unicode 15.0, table 3-7 and section 3.9).
std::optional<char32_t> DecodeUtf8(std::string_view text, std::size_t& at) {
    const auto first = static_cast<unsigned char>(text[at++]);
    if (first < 0x80) {
        return first;
    }
    int following = 0;
    char32_t value = 0;
    unsigned char lowest = 0x80;
    unsigned char highest = 0xBF;
    if (first >= 0xC2 && first <= 0xDF) {
        following = 1;
        value = first & 0x1FU;
    } else if (first >= 0xE0 && first <= 0xEF) {
        following = 2;
        value = first & 0x0FU;
        lowest = first == 0xE0 ? 0xA0 : 0x80;
        highest = first == 0xED ? 0x9F : 0xBF;
    } else if (first >= 0xF0 && first <= 0xF4) {
        following = 3;
        value = first & 0x07U;
        lowest = first == 0xF0 ? 0x90 : 0x80;
        highest = first == 0xF4 ? 0x8F : 0xBF;
    } else {
        return std::nullopt;
    }
    for (; following > 0; --following) {
        if (at == text.size()) {
            return std::nullopt;
        }
        const auto next = static_cast<unsigned char>(text[at]);
        if (next < lowest || next > highest) {
            return std::nullopt;
        }
        value = (value << 6) | (next & 0x3FU);
        lowest = 0x80;
        highest = 0xBF;
        ++at;
    }
    return value;
}

wchar_t FoldCase(wchar_t c) noexcept {
    if (c < 0x80) {
        return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + (L'a' - L'A')) : c;
    }
    return Platform::ToLower(c);
}

template <class T>
bool Scan(const CString& text, const wchar_t* format, T& out) noexcept {
    const Platform::CNeutralLocaleScope scope;
    T value{};
    if (std::swscanf(text.c_str(), format, &value) != 1) {
        return false;
    }
    out = value;
    return true;
}

template <class T, class... Arguments>
CString FromNumber(T value, Arguments... arguments) {
    char text[64];
    const auto result = std::to_chars(std::begin(text), std::end(text), value, arguments...);
    *result.ptr = '\0';
    return CString(text);
}

}  // namespace

CString::CString(const wchar_t* text) : CString(ViewOf(text)) {
}

CString::CString(std::wstring_view text) {
    if (!text.empty()) {
        std::copy(text.begin(), text.end(), SetLength(text.size()));
    }
}

CString::CString(const char* latin1)
    : CString(FromLatin1(latin1 == nullptr ? std::string_view() : std::string_view(latin1))) {
}

CString CString::FromLatin1(std::string_view text) {
    CString result;
    if (!text.empty()) {
        std::transform(text.begin(), text.end(), result.SetLength(text.size()),
                       [](char c) { return static_cast<wchar_t>(static_cast<unsigned char>(c)); });
    }
    return result;
}

CString CString::FromUtf8(std::string_view utf8) {
    CString result;
    result.Decode(utf8);
    return result;
}

std::optional<CString> CString::FromStrictUtf8(std::string_view utf8) {
    CString result;
    return result.Decode(utf8) ? std::optional<CString>(std::move(result)) : std::nullopt;
}

bool CString::Decode(std::string_view utf8) {
    if (utf8.empty()) {
        Clear();
        return true;
    }
    // No sequence is shorter than what it stands for, so the bytes are room enough.
    wchar_t* const out = SetLength(utf8.size());
    std::uint32_t length = 0;
    bool wellFormed = true;
    for (std::size_t at = 0; at < utf8.size();) {
        const std::optional<char32_t> character = DecodeUtf8(utf8, at);
        wellFormed = wellFormed && character;
        out[length++] = static_cast<wchar_t>(character.value_or(kReplacement));
    }
    SetLength(length);
    return wellFormed;
}

std::string CString::ToUtf8() const {
    std::string result;
    result.reserve(GetLength());
    for (const wchar_t c : View()) {
        AppendUtf8(result, static_cast<char32_t>(c));
    }
    return result;
}

std::string CString::ToLatin1() const {
    std::string result;
    result.reserve(GetLength());
    for (const wchar_t c : View()) {
        result.push_back(c >= 0 && c <= 0xFF ? static_cast<char>(c) : '?');
    }
    return result;
}

wchar_t* CString::SetLength(std::size_t length) {
    if (length >= std::numeric_limits<std::uint32_t>::max()) {
        throw CMemoryException();
    }
    const auto size = static_cast<std::uint32_t>(length + 1);
    chars_.SetSize(size, true, size > chars_.GetCapacity() ? size : 0);
    wchar_t* const data = chars_.GetData();
    data[length] = L'\0';
    return data;
}

void CString::Clear() {
    if (!chars_.IsEmpty()) {
        SetLength(0);
    }
}

CString& CString::operator+=(std::wstring_view text) {
    const std::size_t oldLength = GetLength();
    const std::size_t newSize = oldLength + text.size() + 1;
    if (newSize <= chars_.GetCapacity()) {
        // The text may be a part of this string; it ends before what is written here.
        wchar_t* const data = SetLength(newSize - 1);
        std::copy(text.begin(), text.end(), data + oldLength);
        return *this;
    }
    // Half as much again, so that appending piece by piece stays linear.
    CString grown;
    grown.SetLength(newSize + newSize / 2);
    wchar_t* const data = grown.SetLength(newSize - 1);
    std::copy_n(c_str(), oldLength, data);
    std::copy(text.begin(), text.end(), data + oldLength);
    *this = std::move(grown);
    return *this;
}

CString& CString::operator+=(wchar_t character) {
    return *this += std::wstring_view(&character, 1);
}

int CString::Compare(const CString& other) const noexcept {
    return View().compare(other.View());
}

int CString::CompareNoCase(std::wstring_view a, std::wstring_view b) noexcept {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const wchar_t left = FoldCase(a[i]);
        const wchar_t right = FoldCase(b[i]);
        if (left != right) {
            return left < right ? -1 : 1;
        }
    }
    return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

std::int32_t CString::Find(std::wstring_view text, std::uint32_t from) const noexcept {
    const std::size_t at = View().find(text, from);
    return at == std::wstring_view::npos ? -1 : static_cast<std::int32_t>(at);
}

std::int32_t CString::FindLast(wchar_t character) const noexcept {
    const std::size_t at = View().rfind(character);
    return at == std::wstring_view::npos ? -1 : static_cast<std::int32_t>(at);
}

CString CString::Mid(std::uint32_t from, std::uint32_t count) const {
    return from >= GetLength() ? CString() : CString(View().substr(from, count));
}

CString CString::Trimmed() const {
    std::wstring_view text = View();
    while (!text.empty() && IsWhiteSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsWhiteSpace(text.back())) {
        text.remove_suffix(1);
    }
    return CString(text);
}

void CString::Replace(wchar_t what, wchar_t with) {
    if (!IsEmpty()) {
        std::replace(chars_.begin(), chars_.end() - 1, what, with);
    }
}

CString CString::Format(const wchar_t* format, ...) {
    constexpr std::size_t kLongest = 1U << 24;  // characters; the C library does not tell how many it needs
    const Platform::CNeutralLocaleScope scope;
    CString result;
    for (std::size_t room = 256; room <= kLongest; room *= 4) {
        wchar_t* const text = result.SetLength(room);
        std::va_list arguments;
        va_start(arguments, format);
        errno = 0;
        const int length = std::vswprintf(text, room + 1, format, arguments);
        va_end(arguments);
        if (length >= 0) {
            return CString(std::wstring_view(text, static_cast<std::size_t>(length)));
        }
        if (errno == EILSEQ) {
            break;
        }
    }
    return CString();
}

CString CString::FromInt(std::int64_t value) {
    return FromNumber(value);
}

CString CString::FromHex(std::uint64_t value) {
    return FromNumber(value, 16);
}

CString CString::FromDouble(double value) {
    return FromNumber(value);
}

bool CString::ToInt(std::int32_t& out) const noexcept {
    long long value = 0;
    if (!Scan(*this, L"%lld", value) || value < std::numeric_limits<std::int32_t>::min() ||
        value > std::numeric_limits<std::int32_t>::max()) {
        return false;
    }
    out = static_cast<std::int32_t>(value);
    return true;
}

bool CString::ToHex(std::uint32_t& out) const noexcept {
    unsigned long long value = 0;
    if (!Scan(*this, L"%llx", value) || value > std::numeric_limits<std::uint32_t>::max()) {
        return false;
    }
    out = static_cast<std::uint32_t>(value);
    return true;
}

bool CString::ToFloat(float& out) const noexcept {
    return Scan(*this, L"%f", out);
}

bool CString::ToDouble(double& out) const noexcept {
    return Scan(*this, L"%lf", out);
}

bool CString::IsWhiteSpace(wchar_t character) noexcept {
    if (character < 0x80) {
        return character == L' ' || (character >= L'\t' && character <= L'\r');
    }
    return Platform::IsWhiteSpace(character);
}

}  // namespace NK
