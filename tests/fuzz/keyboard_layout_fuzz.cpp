// Any text as the keymap of a session: what is read of it are characters.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "nk/desktop/nk_keyboard_layout.h"

namespace {

/// None, or a character that is no surrogate and stands within Unicode.
bool IsCharacter(char32_t code) {
    return code < 0xD800 || (code > 0xDFFF && code <= 0x10FFFF);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" const char* __lsan_default_suppressions();

/// The library's parser keeps what it had read of a keymap that it refuses.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libxkbcommon.so";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string keymap(reinterpret_cast<const char*>(data), size);
    for (const NK::TKeyboardLayout& layout : NK::ReadKeyboardLayouts(keymap)) {
        for (const NK::TKeyboardLayout::TKey& key : layout.keys) {
            if (!IsCharacter(key.character) || !IsCharacter(key.shifted) ||
                (key.latin != 0 && (key.latin < 'a' || key.latin > 'z'))) {
                std::abort();
            }
        }
    }
    return 0;
}
