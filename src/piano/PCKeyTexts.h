// The characters of the computer keyboard as texts for the translation catalogue. [any]
#pragma once

#include <array>

namespace NK::Piano {

inline constexpr char kLocalizedKeyboardContext[] = "Localized Keyboard";
inline constexpr char kKeyboardMapContext[] = "Keyboard map";
inline constexpr char kKeyboardMapComment[] = "Letter on the same key on localized keyboard";

/// One-character texts, a US keyboard's characters; the first character of each one's translation in the context
/// "Localized Keyboard" is what the same key with the same SHIFT types on the localized keyboard.
extern const std::array<const char*, 92> kLocalizedKeyboardSources;

/// The hint character as a text to translate in the context "Keyboard map" with the comment above, or null for a
/// character that is shown as itself.
const char* GetKeyboardMapSource(char hint) noexcept;

}  // namespace NK::Piano
