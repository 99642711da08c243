// Any bytes as an INI file: loading, every getter, and what must hold after a change and a second load.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "nk/nk_ini_file.h"
#include "nk/nk_memory_file.h"

namespace {

using namespace NK;

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void ReadEverything(CIniFile& ini, const CString& key) {
    for (const bool caseSensitive : {false, true}) {
        double number = 0;
        bool flag = false;
        static_cast<void>(ini.GetString(key, caseSensitive));
        static_cast<void>(ini.GetInt(key, 0, caseSensitive));
        static_cast<void>(ini.GetHex(key, 0, caseSensitive));
        static_cast<void>(ini.GetFloat(key, 0, caseSensitive));
        static_cast<void>(ini.GetDouble(key, number, caseSensitive));
        static_cast<void>(ini.GetBool(key, flag, caseSensitive));
    }
}

/// Reads each line's text before "=" as a key in each section, up to a number of lines that keeps this quick.
void ReadEverySection(CIniFile& ini) {
    constexpr std::uint32_t kLines = 8;
    for (std::uint32_t i = 0; i < ini.GetSize() && i < kLines; ++i) {
        const CString line = ini[i];
        const std::uint32_t length = line.GetLength();
        if (length >= 2 && line[0] == L'[' && line[length - 1] == L']' && line.Find(L"\r") < 0) {
            Require(ini.SelectSection(line.Mid(1, length - 2), true));
            Require(ini.GetCursor() <= static_cast<std::int32_t>(i));
        }
        ReadEverything(ini, line.Left(static_cast<std::uint32_t>(line.Find(L"="))));
        ReadEverything(ini, line);
    }
}

void RequireThatItSurvivesTheDisk(const CIniFile& ini) {
    CMemoryFile file;
    if (!ini.Write(file)) {
        return;  // above the limits
    }
    Require(file.SeekToStart());
    CIniFile again;
    Require(again.Load(file));
    Require(again.GetSize() == ini.GetSize());
    for (std::uint32_t i = 0; i < ini.GetSize(); ++i) {
        Require(again[i] == ini[i]);
    }
}

CString WithoutLeadingBlanks(const CString& text) {
    std::uint32_t at = 0;
    while (CString::IsWhiteSpace(text[at])) {
        ++at;
    }
    return text.Mid(at);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CMemoryFile file(std::string_view(reinterpret_cast<const char*>(data), size));
    CIniFile ini;
    if (!ini.Load(file)) {
        Require(ini.GetLoadResult() == CIniFile::LoadResult::kDamaged && ini.IsEmpty());
        return 0;
    }
    RequireThatItSurvivesTheDisk(ini);
    ReadEverySection(ini);

    CString value = ini.IsEmpty() ? CString() : ini[0];
    value.Replace(L'\r', L' ');
    ini.SelectOrAddSection(L"Fuzz");
    const std::uint32_t lines = ini.GetSize();
    ini.SetString(L"Key", value);
    Require(ini.GetSize() <= lines + 1);
    Require(ini.GetString(L"Key") == WithoutLeadingBlanks(value));
    RequireThatItSurvivesTheDisk(ini);
    return 0;
}
