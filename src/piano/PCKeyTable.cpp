#include "piano/PCKeyTable.h"

#include <array>
#include <cstddef>

namespace NK::Piano {
namespace {
constexpr std::size_t kCharacterCount = 128;
constexpr std::uint8_t kDigits = 0;
constexpr std::uint8_t kUpper = 1;
constexpr std::uint8_t kHome = 2;
constexpr std::uint8_t kLower = 3;
constexpr std::uint8_t kSilent = TPCKeyEntry::kNone;

struct TKey {
    char character;
    std::uint8_t note;
    std::uint8_t row;
};

// Letters stand here in lower case; their upper-case forms carry the shifted mark.
constexpr TKey kUnshiftedKeys[] = {
    {'z', 60, kLower},       {'s', 61, kHome},        {'x', 62, kLower},       {'d', 63, kHome},
    {'c', 64, kLower},       {'v', 65, kLower},       {'g', 66, kHome},        {'b', 67, kLower},
    {'h', 68, kHome},        {'n', 69, kLower},       {'j', 70, kHome},        {'m', 71, kLower},
    {',', 72, kLower},       {'l', 73, kHome},        {'.', 74, kLower},       {';', 75, kHome},
    {'/', 76, kLower},       {'q', 72, kUpper},       {'2', 73, kDigits},      {'w', 74, kUpper},
    {'3', 75, kDigits},      {'e', 76, kUpper},       {'r', 77, kUpper},       {'5', 78, kDigits},
    {'t', 79, kUpper},       {'6', 80, kDigits},      {'y', 81, kUpper},       {'7', 82, kDigits},
    {'u', 83, kUpper},       {'i', 84, kUpper},       {'9', 85, kDigits},      {'o', 86, kUpper},
    {'0', 87, kDigits},      {'p', 88, kUpper},       {'[', 89, kUpper},       {'=', 90, kDigits},
    {']', 91, kUpper},       {'a', kSilent, kHome},   {'f', kSilent, kHome},   {'k', kSilent, kHome},
    {'\'', kSilent, kHome},  {'1', kSilent, kDigits}, {'4', kSilent, kDigits}, {'8', kSilent, kDigits},
    {'-', kSilent, kDigits}, {'!', kSilent, kDigits}, {'$', kSilent, kDigits}, {'*', kSilent, kDigits},
    {'_', kSilent, kDigits}, {'`', kSilent, kDigits}, {'~', kSilent, kDigits},
};

// Both '@' and '"' are the 2 key with SHIFT: on a US and on a UK keyboard.
constexpr TKey kShiftedKeys[] = {
    {'<', 72, kLower},  {'>', 74, kLower},  {':', 75, kHome},   {'?', 76, kLower},  {'@', 73, kDigits},
    {'"', 73, kDigits}, {'#', 75, kDigits}, {'%', 78, kDigits}, {'^', 80, kDigits}, {'{', 89, kUpper},
    {'}', 91, kUpper},  {'+', 90, kDigits}, {'(', 85, kDigits}, {')', 87, kDigits}, {'&', 82, kDigits},
};

constexpr bool IsLower(int character) noexcept {
    return character >= 'a' && character <= 'z';
}
constexpr bool IsUpper(int character) noexcept {
    return character >= 'A' && character <= 'Z';
}
constexpr bool IsDigit(int character) noexcept {
    return character >= '0' && character <= '9';
}
constexpr int kToLower = 'a' - 'A';

constexpr std::array<TPCKeyEntry, kCharacterCount> MakeTable() {
    std::array<TPCKeyEntry, kCharacterCount> table{};
    for (const TKey& key : kUnshiftedKeys) {
        table[static_cast<unsigned char>(key.character)] = {key.note, key.row, 0};
        if (IsLower(key.character)) {
            table[static_cast<std::size_t>(key.character - kToLower)] = {key.note, key.row, 1};
        }
    }
    for (const TKey& key : kShiftedKeys) {
        table[static_cast<unsigned char>(key.character)] = {key.note, key.row, 1};
    }
    return table;
}

constexpr std::array<TPCKeyEntry, kCharacterCount> kTable = MakeTable();
constexpr TPCKeyEntry kNoEntry{};
}  // namespace

const TPCKeyEntry& GetPCKeyEntry(int character) noexcept {
    if (character < 0 || character >= static_cast<int>(kCharacterCount)) {
        return kNoEntry;
    }
    return kTable[static_cast<std::size_t>(character)];
}

const TPCKeyEntry* FindPCKeyEntry(int character, bool shift) noexcept {
    if (character < 1 || character >= static_cast<int>(kCharacterCount)) {
        return nullptr;
    }
    const bool toLower = !shift && IsUpper(character);
    return &GetPCKeyEntry(toLower ? character + kToLower : character);
}

char GetPCKeyHint(int note) noexcept {
    char hint = 0;
    for (int character = ' '; character < static_cast<int>(kCharacterCount); ++character) {
        const TPCKeyEntry& entry = GetPCKeyEntry(character);
        if (entry.note != note || entry.note == TPCKeyEntry::kNone || entry.shifted != 0) {
            continue;
        }
        if (IsDigit(character)) {
            return static_cast<char>(character);
        }
        if (IsLower(character)) {
            return static_cast<char>(character - kToLower);
        }
        hint = static_cast<char>(character);
    }
    return hint;
}

}  // namespace NK::Piano
