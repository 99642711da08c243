#include "piano/PCKeyTexts.h"

#include "nk/nk_translation_mark.h"

namespace NK::Piano {

const std::array<const char*, 92> kLocalizedKeyboardSources = {
    KIVORA_TR_NOOP("Localized Keyboard", "1"),  KIVORA_TR_NOOP("Localized Keyboard", "2"),
    KIVORA_TR_NOOP("Localized Keyboard", "3"),  KIVORA_TR_NOOP("Localized Keyboard", "4"),
    KIVORA_TR_NOOP("Localized Keyboard", "5"),  KIVORA_TR_NOOP("Localized Keyboard", "6"),
    KIVORA_TR_NOOP("Localized Keyboard", "7"),  KIVORA_TR_NOOP("Localized Keyboard", "8"),
    KIVORA_TR_NOOP("Localized Keyboard", "9"),  KIVORA_TR_NOOP("Localized Keyboard", "0"),
    KIVORA_TR_NOOP("Localized Keyboard", "-"),  KIVORA_TR_NOOP("Localized Keyboard", "="),
    KIVORA_TR_NOOP("Localized Keyboard", "!"),  KIVORA_TR_NOOP("Localized Keyboard", "@"),
    KIVORA_TR_NOOP("Localized Keyboard", "#"),  KIVORA_TR_NOOP("Localized Keyboard", "$"),
    KIVORA_TR_NOOP("Localized Keyboard", "%"),  KIVORA_TR_NOOP("Localized Keyboard", "^"),
    KIVORA_TR_NOOP("Localized Keyboard", "&"),  KIVORA_TR_NOOP("Localized Keyboard", "*"),
    KIVORA_TR_NOOP("Localized Keyboard", "("),  KIVORA_TR_NOOP("Localized Keyboard", ")"),
    KIVORA_TR_NOOP("Localized Keyboard", "_"),  KIVORA_TR_NOOP("Localized Keyboard", "+"),
    KIVORA_TR_NOOP("Localized Keyboard", "["),  KIVORA_TR_NOOP("Localized Keyboard", "{"),
    KIVORA_TR_NOOP("Localized Keyboard", "]"),  KIVORA_TR_NOOP("Localized Keyboard", "}"),
    KIVORA_TR_NOOP("Localized Keyboard", ";"),  KIVORA_TR_NOOP("Localized Keyboard", ":"),
    KIVORA_TR_NOOP("Localized Keyboard", "'"),  KIVORA_TR_NOOP("Localized Keyboard", "\""),
    KIVORA_TR_NOOP("Localized Keyboard", "\\"), KIVORA_TR_NOOP("Localized Keyboard", "|"),
    KIVORA_TR_NOOP("Localized Keyboard", ","),  KIVORA_TR_NOOP("Localized Keyboard", "<"),
    KIVORA_TR_NOOP("Localized Keyboard", "."),  KIVORA_TR_NOOP("Localized Keyboard", ">"),
    KIVORA_TR_NOOP("Localized Keyboard", "/"),  KIVORA_TR_NOOP("Localized Keyboard", "?"),
    KIVORA_TR_NOOP("Localized Keyboard", "a"),  KIVORA_TR_NOOP("Localized Keyboard", "b"),
    KIVORA_TR_NOOP("Localized Keyboard", "c"),  KIVORA_TR_NOOP("Localized Keyboard", "d"),
    KIVORA_TR_NOOP("Localized Keyboard", "e"),  KIVORA_TR_NOOP("Localized Keyboard", "f"),
    KIVORA_TR_NOOP("Localized Keyboard", "g"),  KIVORA_TR_NOOP("Localized Keyboard", "h"),
    KIVORA_TR_NOOP("Localized Keyboard", "i"),  KIVORA_TR_NOOP("Localized Keyboard", "j"),
    KIVORA_TR_NOOP("Localized Keyboard", "k"),  KIVORA_TR_NOOP("Localized Keyboard", "l"),
    KIVORA_TR_NOOP("Localized Keyboard", "m"),  KIVORA_TR_NOOP("Localized Keyboard", "n"),
    KIVORA_TR_NOOP("Localized Keyboard", "o"),  KIVORA_TR_NOOP("Localized Keyboard", "p"),
    KIVORA_TR_NOOP("Localized Keyboard", "q"),  KIVORA_TR_NOOP("Localized Keyboard", "r"),
    KIVORA_TR_NOOP("Localized Keyboard", "s"),  KIVORA_TR_NOOP("Localized Keyboard", "t"),
    KIVORA_TR_NOOP("Localized Keyboard", "u"),  KIVORA_TR_NOOP("Localized Keyboard", "v"),
    KIVORA_TR_NOOP("Localized Keyboard", "w"),  KIVORA_TR_NOOP("Localized Keyboard", "x"),
    KIVORA_TR_NOOP("Localized Keyboard", "y"),  KIVORA_TR_NOOP("Localized Keyboard", "z"),
    KIVORA_TR_NOOP("Localized Keyboard", "A"),  KIVORA_TR_NOOP("Localized Keyboard", "B"),
    KIVORA_TR_NOOP("Localized Keyboard", "C"),  KIVORA_TR_NOOP("Localized Keyboard", "D"),
    KIVORA_TR_NOOP("Localized Keyboard", "E"),  KIVORA_TR_NOOP("Localized Keyboard", "F"),
    KIVORA_TR_NOOP("Localized Keyboard", "G"),  KIVORA_TR_NOOP("Localized Keyboard", "H"),
    KIVORA_TR_NOOP("Localized Keyboard", "I"),  KIVORA_TR_NOOP("Localized Keyboard", "J"),
    KIVORA_TR_NOOP("Localized Keyboard", "K"),  KIVORA_TR_NOOP("Localized Keyboard", "L"),
    KIVORA_TR_NOOP("Localized Keyboard", "M"),  KIVORA_TR_NOOP("Localized Keyboard", "N"),
    KIVORA_TR_NOOP("Localized Keyboard", "O"),  KIVORA_TR_NOOP("Localized Keyboard", "P"),
    KIVORA_TR_NOOP("Localized Keyboard", "Q"),  KIVORA_TR_NOOP("Localized Keyboard", "R"),
    KIVORA_TR_NOOP("Localized Keyboard", "S"),  KIVORA_TR_NOOP("Localized Keyboard", "T"),
    KIVORA_TR_NOOP("Localized Keyboard", "U"),  KIVORA_TR_NOOP("Localized Keyboard", "V"),
    KIVORA_TR_NOOP("Localized Keyboard", "W"),  KIVORA_TR_NOOP("Localized Keyboard", "X"),
    KIVORA_TR_NOOP("Localized Keyboard", "Y"),  KIVORA_TR_NOOP("Localized Keyboard", "Z"),
};

namespace {
struct THint {
    const char* text;
    const char* comment;
};

constexpr THint kHints[] = {
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "A", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "B", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "C", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "D", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "E", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "F", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "G", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "H", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "I", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "J", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "K", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "L", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "M", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "N", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "O", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "P", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "Q", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "R", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "S", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "T", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "U", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "V", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "W", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "X", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "Y", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "Z", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "'", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", ",", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", ".", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "/", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", ":", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "[", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "\\", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "]", "Letter on the same key on localized keyboard"),
    KIVORA_TR_NOOP_COMMENT("Keyboard map", "`", "Letter on the same key on localized keyboard"),
};
}  // namespace

const char* GetKeyboardMapSource(char hint) noexcept {
    for (const THint& candidate : kHints) {
        if (candidate.text[0] == hint) {
            return candidate.text;
        }
    }
    return nullptr;
}

}  // namespace NK::Piano
