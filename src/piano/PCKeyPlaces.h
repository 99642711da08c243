// Where the characters of a US computer keyboard lie, for playing by place. [any]
#pragma once

#include <cstdint>
#include <optional>

namespace NK::Piano {

/// How the note of a computer key is found.
enum class EPCKeyWay {
    kAutomatic,  ///< as typed where that plays what the places do or the layout is English, else by place
    kAsTyped,    ///< by the character that the key types
    kByPlace     ///< by the place of the key on the keyboard, whatever it types
};

/// A key that has no character of a US keyboard at its place.
inline constexpr char kExtraPlace = 0;

/// The character that a US keyboard types at that place without SHIFT. kExtraPlace for the keys that other keyboards
/// have among these and around the space bar; nothing for all other keys, the number pad's too, and for a scan code
/// that is not known. Scan codes are native, the same on X11 and Wayland.
std::optional<char> FindPCKeyPlace(std::uint32_t scanCode) noexcept;

/// The scan code of the place where a US keyboard types that character without SHIFT, letters in either case; 0 when
/// there is none.
std::uint32_t GetScanCodeOfPlace(char character) noexcept;

}  // namespace NK::Piano
