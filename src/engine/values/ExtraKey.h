// Keys that a file has only where somebody wanted something else than the default. [any]
#pragma once

#include <cstdint>

#include "nk/nk_ini_file.h"

namespace Kivora {

struct ExtraKey {
    const wchar_t* section;
    const wchar_t* name;
    std::int32_t defaultValue;
};

/// The default where there is no such section or key. Moves the file's cursor.
inline std::int32_t ReadExtraInt(NK::CIniFile& file, const ExtraKey& key) {
    return file.SelectSection(key.section) ? file.GetInt(key.name, key.defaultValue) : key.defaultValue;
}

/// Adds section and key where the value is not the default; brings a key that is there up to date. Moves the file's
/// cursor.
inline void WriteExtraInt(NK::CIniFile& file, const ExtraKey& key, std::int32_t value) {
    const bool isThere = file.SelectSection(key.section) && file.GetString(key.name);
    if (value != key.defaultValue || isThere) {
        file.SelectOrAddSection(key.section);
        file.SetInt(key.name, value);
    }
}

}  // namespace Kivora
