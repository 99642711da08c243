#include "nk/nk_ini_file.h"

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstring>
#include <mutex>
#include <string>

#include "nk/nk_atomic_save.h"
#include "nk/nk_disk_file.h"
#include "nk/nk_file_failure.h"
#include "nk/platform/platform_files.h"

namespace NK {

namespace {

constexpr wchar_t kDelete = 0x7F;

/// A line of the file has no line end in it.
CString AsOneLine(CString text) {
    text.Replace(L'\n', L' ');
    text.Replace(L'\r', L' ');
    return text;
}

CString HeaderOf(const CString& name) {
    return AsOneLine(L"[" + name + L"]");
}

CString DecodeLine(std::string_view line) {
    std::optional<CString> text = CString::FromStrictUtf8(line);
    return text ? *std::move(text) : CString::FromLatin1(line);
}

bool IsComment(const CString& line) {
    return line[0] == L'\'' || line[0] == L'#' || line[0] == L';';
}

bool BeginsWith(const CString& line, const CString& key, bool caseSensitive) {
    if (line.GetLength() < key.GetLength()) {
        return false;
    }
    return caseSensitive ? line.View().starts_with(key.View())
                         : CString::CompareNoCase(line.View().substr(0, key.GetLength()), key.View()) == 0;
}

/// The decimal separator of the process's C library calls is "." from now on.
void SetNumericLocale() {
    static std::mutex mutex;
    const std::lock_guard guard(mutex);
    const char* const present = std::setlocale(LC_NUMERIC, nullptr);
    if (present == nullptr || std::strcmp(present, "C") != 0) {
        std::setlocale(LC_NUMERIC, "C");
    }
}

template <std::size_t kCount>
bool IsOneOf(const CString& text, const wchar_t* const (&words)[kCount]) {
    return std::any_of(std::begin(words), std::end(words),
                       [&text](const wchar_t* word) { return text.CompareNoCase(word) == 0; });
}

}  // namespace

bool CIniFile::Load(const CString& fileName) {
    // What stands if memory runs out.
    loadResult_ = LoadResult::kUnreadable;
    CDiskFile file(fileName, CDiskFile::kRead);
    if (!file.IsOpen()) {
        Clear();
        cursor_ = -1;
        loadResult_ = Platform::GetPathKind(fileName) == Platform::PathKind::kAbsent ? LoadResult::kAbsent
                                                                                     : LoadResult::kUnreadable;
        return false;
    }
    errno = 0;
    if (!Load(file)) {
        SetFileFailure(fileName, loadResult_ == LoadResult::kDamaged ? kErrorTooLarge : errno);
        return false;
    }
    fileName_ = fileName;
    return true;
}

bool CIniFile::Load(CFile& file) {
    Clear();
    cursor_ = -1;
    loadResult_ = LoadResult::kUnreadable;
    loadResult_ = ReadLines(file);
    return loadResult_ == LoadResult::kLoaded;
}

CIniFile::LoadResult CIniFile::ReadLines(CFile& file) {
    constexpr std::size_t kChunk = 64 * 1024;
    constexpr std::size_t kLimit = kMaxBytes;
    std::string text;
    for (;;) {
        const std::size_t at = text.size();
        const std::size_t wanted = std::min(kChunk, kLimit + 1 - at);
        text.resize(at + wanted);
        const std::size_t count = file.Read(text.data() + at, 1, wanted);
        text.resize(at + count);
        if (text.size() > kLimit) {
            return LoadResult::kDamaged;
        }
        if (count < wanted) {
            break;
        }
    }
    if (!file.IsEOF()) {
        return LoadResult::kUnreadable;
    }
    return SetLines(text) ? LoadResult::kLoaded : LoadResult::kDamaged;
}

bool CIniFile::SetLines(std::string_view text) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    while (text.starts_with(kByteOrderMark)) {
        text.remove_prefix(kByteOrderMark.size());
    }
    if (text.empty()) {
        return true;
    }
    auto count = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    if (text.back() != '\n') {
        ++count;
    }
    if (count > kMaxLines) {
        return false;
    }
    SetSize(static_cast<std::uint32_t>(count), false);
    for (CString& line : *this) {
        const std::size_t end = text.find('\n');
        std::string_view content = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        while (content.ends_with('\r')) {
            content.remove_suffix(1);
        }
        line = DecodeLine(content);
    }
    return true;
}

bool CIniFile::Save(const CString& fileName) {
    if (!SaveAtomically(fileName, [this](CFile& file) { return Write(file); })) {
        return false;
    }
    fileName_ = fileName;
    return true;
}

bool CIniFile::Write(CFile& file) const {
    std::int64_t left = kMaxBytes;
    return GetSize() <= kMaxLines && std::all_of(begin(), end(), [&file, &left](const CString& line) {
               const std::string text = line.ToUtf8() + '\n';
               left -= static_cast<std::int64_t>(text.size());
               return left >= 0 && file.Write(text.data(), 1, text.size()) == text.size();
           });
}

bool CIniFile::IsConfiguration() const {
    const auto isControl = [](wchar_t character) {
        return (character < L' ' && !CString::IsWhiteSpace(character)) || character == kDelete;
    };
    const auto isText = [&](const CString& line) {
        return std::none_of(line.View().begin(), line.View().end(), isControl);
    };
    const auto isHeader = [](const CString& line) {
        const std::wstring_view text = line.View();
        return text.starts_with(L'[') && text.ends_with(L']');
    };
    const auto isEmpty = [](const CString& line) { return line.Trimmed().IsEmpty() || IsComment(line); };
    return std::all_of(begin(), end(), isText) &&
           (std::any_of(begin(), end(), isHeader) || std::all_of(begin(), end(), isEmpty));
}

void CIniFile::VisitKeys(
    const std::function<void(const CString& section, const CString& key, const CString& value)>& visit) const {
    CString section;
    for (const CString& line : *this) {
        const std::wstring_view text = line.View();
        const std::size_t equals = text.find(L'=');
        if (text.starts_with(L'[')) {
            section = text.ends_with(L']') ? CString(text.substr(1, text.size() - 2)) : CString();
        } else if (equals != std::wstring_view::npos && !IsComment(line)) {
            const std::wstring_view value = text.substr(equals + 1);
            const auto start = std::find_if_not(value.begin(), value.end(), CString::IsWhiteSpace);
            visit(section, CString(text.substr(0, equals)).Trimmed(),
                  CString(value.substr(static_cast<std::size_t>(start - value.begin()))));
        }
    }
}

bool CIniFile::FindHeader(const CString& name, std::uint32_t from, bool caseSensitive) {
    const CString header = HeaderOf(name);
    for (std::uint32_t i = from; i < GetSize(); ++i) {
        const CString& line = (*this)[i];
        if (caseSensitive ? line == header : line.CompareNoCase(header) == 0) {
            cursor_ = static_cast<std::int32_t>(i);
            return true;
        }
    }
    cursor_ = -1;
    return false;
}

bool CIniFile::SelectSection(const CString& name, bool caseSensitive) {
    return FindHeader(name, 0, caseSensitive);
}

bool CIniFile::FindNextSection(const CString& name, bool caseSensitive) {
    return FindHeader(name, static_cast<std::uint32_t>(cursor_ + 1), caseSensitive);
}

void CIniFile::SelectOrAddSection(const CString& name, bool caseSensitive) {
    if (SelectSection(name, caseSensitive)) {
        return;
    }
    const CString header = HeaderOf(name);
    if (!IsEmpty() && !Last().IsEmpty()) {
        Push(CString());
    }
    Push(header);
    cursor_ = static_cast<std::int32_t>(GetSize()) - 1;
}

std::optional<CIniFile::KeyPlace> CIniFile::FindKey(const CString& key, bool caseSensitive) const {
    for (std::uint32_t i = static_cast<std::uint32_t>(cursor_ + 1); i < GetSize(); ++i) {
        const CString& line = (*this)[i];
        if (IsComment(line)) {
            continue;
        }
        if (line[0] == L'[') {
            break;
        }
        if (!BeginsWith(line, key, caseSensitive)) {
            continue;
        }
        std::uint32_t at = key.GetLength();
        while (CString::IsWhiteSpace(line[at])) {
            ++at;
        }
        if (line[at] != L'=') {
            continue;
        }
        ++at;
        while (CString::IsWhiteSpace(line[at])) {
            ++at;
        }
        return KeyPlace{i, at};
    }
    return std::nullopt;
}

std::optional<CString> CIniFile::GetString(const CString& key, bool caseSensitive) const {
    const std::optional<KeyPlace> place = FindKey(key, caseSensitive);
    return place ? std::optional<CString>((*this)[place->line].Mid(place->valueStart)) : std::nullopt;
}

std::int32_t CIniFile::GetInt(const CString& key, std::int32_t defaultValue, bool caseSensitive) const {
    std::int32_t value = defaultValue;
    GetString(key, caseSensitive).value_or(CString()).ToInt(value);
    return value;
}

std::uint32_t CIniFile::GetHex(const CString& key, std::uint32_t defaultValue, bool caseSensitive) const {
    std::uint32_t value = defaultValue;
    GetString(key, caseSensitive).value_or(CString()).ToHex(value);
    return value;
}

float CIniFile::GetFloat(const CString& key, float defaultValue, bool caseSensitive) const {
    SetNumericLocale();
    float value = defaultValue;
    GetString(key, caseSensitive).value_or(CString()).ToFloat(value);
    return value;
}

bool CIniFile::GetDouble(const CString& key, double& out, bool caseSensitive) const {
    SetNumericLocale();
    return GetString(key, caseSensitive).value_or(CString()).ToDouble(out);
}

bool CIniFile::GetBool(const CString& key, bool& out, bool caseSensitive) const {
    const CString value = GetString(key, caseSensitive).value_or(CString()).Trimmed();
    if (IsOneOf(value, {L"1", L"y", L"yes", L"on", L"true", L"enable", L"enabled"})) {
        out = true;
        return true;
    }
    if (IsOneOf(value, {L"0", L"n", L"no", L"off", L"false", L"disable", L"disabled"})) {
        out = false;
        return true;
    }
    std::int32_t number = 0;
    if (!value.ToInt(number)) {
        return false;
    }
    out = number != 0;
    return true;
}

void CIniFile::SetString(const CString& key, const CString& value, bool caseSensitive) {
    if (cursor_ < 0) {
        throw CException(L"Ini file cursor was not positioned before inserting a value.");
    }
    CString line = AsOneLine(key + L"=" + value);
    if (const std::optional<KeyPlace> place = FindKey(key, caseSensitive)) {
        (*this)[place->line] = std::move(line);
    } else {
        Insert(static_cast<std::uint32_t>(cursor_ + 1), line);
    }
}

void CIniFile::SetInt(const CString& key, std::int32_t value, bool caseSensitive) {
    SetString(key, CString::FromInt(value), caseSensitive);
}

void CIniFile::SetUnsigned(const CString& key, std::uint32_t value, bool caseSensitive) {
    SetString(key, CString::FromInt(value), caseSensitive);
}

void CIniFile::SetHex(const CString& key, std::uint32_t value, bool caseSensitive) {
    SetString(key, CString::FromHex(value), caseSensitive);
}

void CIniFile::SetDouble(const CString& key, double value, bool caseSensitive) {
    SetString(key, CString::FromDouble(value), caseSensitive);
}

}  // namespace NK
