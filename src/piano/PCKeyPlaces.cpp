#include "piano/PCKeyPlaces.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace NK::Piano {
namespace {

/// Places that follow each other.
struct TRow {
    std::uint32_t firstScanCode;
    std::string_view characters;
};

constexpr TRow kRows[] = {
    {10, "1234567890-="}, {24, "qwertyuiop[]"}, {38, "asdfghjkl;'"}, {49, "`"}, {51, "\\"}, {52, "zxcvbnm,./"},
};

constexpr std::uint32_t kExtraScanCodes[] = {
    93,   // Zenkaku/Hankaku
    94,   // between the left SHIFT and Z
    97,   // right of the slash: Japanese backslash, Brazilian slash
    98,   // Katakana
    99,   // Hiragana
    100,  // Henkan
    101,  // Hiragana/Katakana
    102,  // Muhenkan
    129,  // the Brazilian number pad's point
    130,  // Hangul
    131,  // Hanja
    132,  // Yen, left of Backspace
};

constexpr char ToLower(char character) noexcept {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

}  // namespace

std::optional<char> FindPCKeyPlace(std::uint32_t scanCode) noexcept {
    for (const TRow& row : kRows) {
        if (scanCode >= row.firstScanCode && scanCode - row.firstScanCode < row.characters.size()) {
            return row.characters[scanCode - row.firstScanCode];
        }
    }
    if (std::find(std::begin(kExtraScanCodes), std::end(kExtraScanCodes), scanCode) != std::end(kExtraScanCodes)) {
        return kExtraPlace;
    }
    return std::nullopt;
}

std::uint32_t GetScanCodeOfPlace(char character) noexcept {
    for (const TRow& row : kRows) {
        const std::size_t column = row.characters.find(ToLower(character));
        if (column != std::string_view::npos) {
            return row.firstScanCode + static_cast<std::uint32_t>(column);
        }
    }
    return 0;
}

}  // namespace NK::Piano
