// Any keys in the keymap of a session: what is read of them are characters. The keymap is well written, as the library
// that reads its text is no part of this: it does not bear every text, and the toolkit has it read what the session
// says first.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <string_view>

#include "nk/desktop/nk_keyboard_layout.h"

namespace {

constexpr std::uint32_t kLastKeyCode = 0x3FF;
constexpr std::uint32_t kLastKeySymbol = 0x1FFFFFFF;
constexpr int kMaxKeys = 64;
constexpr int kMaxLayouts = 4;

/// The bytes of an input, four at a time with the lowest first; none where there are no more.
class Words {
public:
    Words(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

    bool IsEmpty() const { return rest_.empty(); }

    std::uint32_t Take() {
        std::array<unsigned char, 4> bytes{};
        const std::string_view taken = rest_.substr(0, bytes.size());
        std::memcpy(bytes.data(), taken.data(), taken.size());
        rest_.remove_prefix(taken.size());
        return bytes[0] | std::uint32_t{bytes[1]} << 8 | std::uint32_t{bytes[2]} << 16 | std::uint32_t{bytes[3]} << 24;
    }

private:
    std::string_view rest_;
};

/// The layouts' number and languages and the last key code, and then of each key the code and, for each layout, the
/// symbols without and with Shift.
std::string WriteKeymap(Words words) {
    const std::uint32_t shape = words.Take();
    const int layouts = 1 + static_cast<int>(shape % kMaxLayouts);
    const std::uint32_t last = (shape >> 8) & kLastKeyCode;
    std::ostringstream codes;
    std::ostringstream symbols;
    for (int layout = 0; layout < layouts; ++layout) {
        constexpr std::array kNames{"English (US)", "Russian", "Martian", ""};
        symbols << "name[Group" << layout + 1 << "] = \"" << kNames[(shape >> (24 + 2 * layout)) % kNames.size()]
                << "\";\n";
    }
    for (int key = 0; key < kMaxKeys && !words.IsEmpty(); ++key) {
        codes << "<K" << key << "> = " << words.Take() % (last + 1) << ";\n";
        symbols << "key <K" << key << "> {";
        for (int layout = 0; layout < layouts; ++layout) {
            symbols << (layout == 0 ? "" : ",") << " type[Group" << layout + 1 << "] = \"TWO_LEVEL\", symbols[Group"
                    << layout + 1 << "] = [ " << (words.Take() & kLastKeySymbol) << ", ";
            symbols << (words.Take() & kLastKeySymbol) << " ]";
        }
        symbols << " };\n";
    }
    std::ostringstream keymap;
    keymap << "xkb_keymap {\nxkb_keycodes { minimum = 0; maximum = " << last << ";\n"
           << codes.str() << "};\n"
           << "xkb_types { type \"TWO_LEVEL\" { modifiers = Shift; map[Shift] = Level2; "
              "level_name[Level1] = \"Base\"; level_name[Level2] = \"Shift\"; }; };\n"
           << "xkb_compatibility { };\nxkb_symbols {\n"
           << symbols.str() << "};\n};\n";
    return keymap.str();
}

/// None, or a character that is no surrogate and stands within Unicode.
bool IsCharacter(char32_t code) {
    return code < 0xD800 || (code > 0xDFFF && code <= 0x10FFFF);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const NK::TKeyboardLayout& layout : NK::ReadKeyboardLayouts(WriteKeymap({data, size}))) {
        for (const NK::TKeyboardLayout::TKey& key : layout.keys) {
            if (!IsCharacter(key.character) || !IsCharacter(key.shifted) ||
                (key.latin != 0 && (key.latin < 'a' || key.latin > 'z'))) {
                std::abort();
            }
        }
    }
    return 0;
}
