// Any texts as a catalogue's translations of the keyboard: every key finds a character of the keyboard or itself.
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>

#include "locale/LocalizedKeyMap.h"
#include "nk/nk_string.h"
#include "piano/PCKeyTexts.h"

namespace {

constexpr std::uint16_t kRussian = 0x0419;

bool IsOnKeyboard(int character) {
    for (const char* source : NK::Piano::kLocalizedKeyboardSources) {
        if (character == source[0]) {
            return true;
        }
    }
    return false;
}

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // A line for each key, in the keyboard's order; the keys behind the last line have none.
    std::string rest(reinterpret_cast<const char*>(data), size);
    Kivora::CLocalizedKeyMap map;
    map.Build([&rest](const char*) {
        const std::size_t end = rest.find('\n');
        const NK::CString line = NK::CString::FromUtf8(rest.substr(0, end));
        rest.erase(0, end == std::string::npos ? end : end + 1);
        return line;
    });
    Require(map.GetSize() <= std::size(NK::Piano::kLocalizedKeyboardSources));
    for (const int code : {-1, 0, static_cast<int>('z'), 0x042F, 0x10FFFF, 0x110000, 0x01000020}) {
        const int found = map.Find(code);
        Require(found == code || IsOnKeyboard(found));
        const int played = Kivora::PlayingKeyToCharacter(map, code, false, kRussian);
        Require(played == map.Find(played) || IsOnKeyboard(played));
    }
    return 0;
}
