// What each character of a US computer keyboard plays. [any]
#pragma once

#include <cstdint>

namespace NK::Piano {

/// One entry of the table.
struct TPCKeyEntry {
    static constexpr std::uint8_t kNone = 255;

    std::uint8_t note = kNone;  ///< before the octave shift; kNone plays nothing
    std::uint8_t row = kNone;   ///< 0 digits, 1 upper letters, 2 home row, 3 lower letters; kNone is no playing row
    std::uint8_t shifted = 0;   ///< 1 for characters typed with SHIFT

    friend bool operator==(const TPCKeyEntry&, const TPCKeyEntry&) = default;
};

/// The entry of a 7-bit character; an entry without a note outside 0..127.
const TPCKeyEntry& GetPCKeyEntry(int character) noexcept;

/// The entry that a key plays whose US character is given, or null outside 1..127. Without SHIFT a letter counts in
/// lower case, whatever Caps Lock says.
const TPCKeyEntry* FindPCKeyEntry(int character, bool shift) noexcept;

/// The character that plays the note without SHIFT: a digit before a letter (upper case) before the last of the other
/// characters; 0 when there is none. The octave shift is not applied.
char GetPCKeyHint(int note) noexcept;

}  // namespace NK::Piano
