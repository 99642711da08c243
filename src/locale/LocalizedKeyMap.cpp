#include "locale/LocalizedKeyMap.h"

#include <QChar>

#include <algorithm>
#include <array>

#include "nk/nk_translate.h"
#include "piano/PCKeyTexts.h"

namespace Kivora {
namespace {
constexpr int kSevenBits = 128;

int ToLower(int keyCode) {
    // Codes of keys that type nothing lie above Unicode.
    return keyCode > 0 && keyCode <= QChar::LastValidCodePoint
               ? static_cast<int>(QChar::toLower(static_cast<char32_t>(keyCode)))
               : keyCode;
}
}  // namespace

void CLocalizedKeyMap::Build(const CTranslate& translate) {
    map_.clear();
    for (const char* source : NK::Piano::kLocalizedKeyboardSources) {
        const NK::CString translation = translate(source);
        if (!translation.IsEmpty() && translation[0] != static_cast<wchar_t>(source[0])) {
            map_[static_cast<int>(translation[0])] = source[0];
        }
    }
}

void CLocalizedKeyMap::Build() {
    Build([](const char* sourceText) { return NK::Translate(NK::Piano::kLocalizedKeyboardContext, sourceText); });
}

int CLocalizedKeyMap::Find(int code) const {
    const auto entry = map_.find(code);
    return entry != map_.end() ? entry->second : code;
}

bool IsUSKeyboardLanguage(std::uint16_t language) noexcept {
    static constexpr std::array<std::uint16_t, 17> kLanguages = {
        0x0000, 0x0400, 0x0800, 0x0409, 0x0809, 0x0C09, 0x1009, 0x1409, 0x1809,
        0x1C09, 0x2009, 0x2409, 0x2809, 0x2C09, 0x3009, 0x3409, 0x007F,
    };
    return std::find(kLanguages.begin(), kLanguages.end(), language) != kLanguages.end();
}

int KeyToCharacter(const CLocalizedKeyMap& map, int keyCode, bool translate, std::uint16_t language) {
    if (keyCode < kSevenBits && (!translate || IsUSKeyboardLanguage(language))) {
        return keyCode;
    }
    return map.Find(keyCode);
}

int PlayingKeyToCharacter(const CLocalizedKeyMap& map, int keyCode, bool shift, std::uint16_t language) {
    return KeyToCharacter(map, shift ? keyCode : ToLower(keyCode), true, language);
}

}  // namespace Kivora
