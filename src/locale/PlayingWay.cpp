#include "locale/PlayingWay.h"

#include "piano/PCKeyTable.h"

namespace Kivora {

using NK::Piano::EPCKeyWay;

bool CoversLayout(const CLocalizedKeyMap& map, const NK::TKeyboardLayout& layout) {
    for (std::uint32_t scanCode = 0; scanCode < layout.keys.size(); ++scanCode) {
        const char place = NK::Piano::FindPCKeyPlace(scanCode).value_or(NK::Piano::kExtraPlace);
        if (NK::Piano::GetPCKeyEntry(place).note == NK::Piano::TPCKeyEntry::kNone) {
            continue;
        }
        const NK::TKeyboardLayout::TKey& key = layout[scanCode];
        const int typed = PlayingKeyToCharacter(map, static_cast<int>(key.character), false, layout.language);
        if (key.isDead || typed != place) {
            return false;
        }
    }
    return true;
}

namespace {
/// Whether most of the keys that play type nothing: a program that sends keys of its own may bring a layout with only
/// those, and puts them where it likes.
bool LacksKeys(const NK::TKeyboardLayout& layout) {
    int playing = 0;
    int typing = 0;
    for (std::uint32_t scanCode = 0; scanCode < layout.keys.size(); ++scanCode) {
        const char place = NK::Piano::FindPCKeyPlace(scanCode).value_or(NK::Piano::kExtraPlace);
        if (NK::Piano::GetPCKeyEntry(place).note != NK::Piano::TPCKeyEntry::kNone) {
            ++playing;
            typing += layout[scanCode].character != 0 ? 1 : 0;
        }
    }
    return 2 * typing < playing;
}
}  // namespace

bool IsPlayedByPlace(EPCKeyWay way, const CLocalizedKeyMap& map, const NK::TKeyboardLayout* layout) {
    if (way != EPCKeyWay::kAutomatic) {
        return way == EPCKeyWay::kByPlace;
    }
    if (layout == nullptr || LacksKeys(*layout)) {
        return false;
    }
    const bool isEnglish = layout->language != NK::kLanguageUnknown && IsUSKeyboardLanguage(layout->language);
    return !isEnglish && !CoversLayout(map, *layout);
}

}  // namespace Kivora
