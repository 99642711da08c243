// Which key of a US keyboard a character of the user's keyboard lies on.
#pragma once

#include <cstdint>
#include <functional>
#include <map>

#include "nk/nk_string.h"

namespace Kivora {

/// Made from the translation catalogue of the user interface's language: the context "Localized Keyboard" tells what
/// each key of a US keyboard types there. [gui]
class CLocalizedKeyMap {
public:
    /// The translation of a one-character text.
    using CTranslate = std::function<NK::CString(const char* sourceText)>;

    /// Replaces what the map held. Only characters that lie on another key's place get an entry.
    void Build(const CTranslate& translate);
    /// The same with NK::Translate().
    void Build();

    /// The US character of a code point, or the code itself where the map has none.
    int Find(int code) const;
    std::size_t GetSize() const noexcept { return map_.size(); }

private:
    std::map<int, char> map_;
};

/// Whether the keyboard language, as a Windows language number, is neutral, the default or an English one. [any]
bool IsUSKeyboardLanguage(std::uint16_t language) noexcept;

/// The US keyboard's character of a Qt key code. Codes below 128 are looked up only with `translate` and while the
/// keyboard's language is not one of the above; all others always. [gui]
int KeyToCharacter(const CLocalizedKeyMap& map, int keyCode, bool translate, std::uint16_t language);

/// The same for a key that plays: with translation, and a letter typed without SHIFT taken in lower case first. [gui]
int PlayingKeyToCharacter(const CLocalizedKeyMap& map, int keyCode, bool shift, std::uint16_t language);

}  // namespace Kivora
