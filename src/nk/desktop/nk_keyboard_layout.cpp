#include "nk/desktop/nk_keyboard_layout.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace NK {
namespace {

struct TLayout {
    std::string_view name;
    LanguageNumber language;
};

// Sorted by name.
constexpr TLayout kLayouts[] = {
    {"af", 0x048C}, {"al", 0x041C},  {"am", 0x042B}, {"ara", 0x0401},   {"at", 0x0C07}, {"au", 0x0C09}, {"az", 0x042C},
    {"ba", 0x141A}, {"bd", 0x0845},  {"be", 0x080C}, {"bg", 0x0402},    {"br", 0x0416}, {"bt", 0x0C51}, {"by", 0x0423},
    {"ca", 0x0C0C}, {"ch", 0x0807},  {"cn", 0x0804}, {"cz", 0x0405},    {"de", 0x0407}, {"dk", 0x0406}, {"ee", 0x0425},
    {"es", 0x0C0A}, {"et", 0x045E},  {"fi", 0x040B}, {"fo", 0x0438},    {"fr", 0x040C}, {"gb", 0x0809}, {"ge", 0x0437},
    {"gr", 0x0408}, {"hr", 0x041A},  {"hu", 0x040E}, {"id", 0x0421},    {"ie", 0x083C}, {"il", 0x040D}, {"in", 0x0439},
    {"iq", 0x0801}, {"ir", 0x0429},  {"is", 0x040F}, {"it", 0x0410},    {"jp", 0x0411}, {"kg", 0x0440}, {"kh", 0x0453},
    {"kr", 0x0412}, {"kz", 0x043F},  {"la", 0x0454}, {"latam", 0x080A}, {"lk", 0x045B}, {"lt", 0x0427}, {"lv", 0x0426},
    {"ma", 0x1801}, {"mao", 0x0481}, {"md", 0x0818}, {"me", 0x2C1A},    {"mk", 0x042F}, {"mn", 0x0450}, {"mt", 0x043A},
    {"mv", 0x0465}, {"my", 0x043E},  {"nl", 0x0413}, {"no", 0x0414},    {"np", 0x0461}, {"ph", 0x0464}, {"pk", 0x0420},
    {"pl", 0x0415}, {"pt", 0x0816},  {"ro", 0x0418}, {"rs", 0x281A},    {"ru", 0x0419}, {"se", 0x041D}, {"si", 0x0424},
    {"sk", 0x041B}, {"sy", 0x2801},  {"th", 0x041E}, {"tj", 0x0428},    {"tm", 0x0442}, {"tr", 0x041F}, {"tw", 0x0404},
    {"ua", 0x0422}, {"us", 0x0409},  {"uz", 0x0843}, {"vn", 0x042A},    {"za", 0x1C09},
};
static_assert(std::is_sorted(std::begin(kLayouts), std::end(kLayouts),
                             [](const TLayout& a, const TLayout& b) { return a.name < b.name; }));

struct TVariant {
    std::string_view layout;
    std::string_view variantStart;  ///< the beginning of the variant's name
    LanguageNumber language;
};

// Variants that are in another language than their layout.
constexpr TVariant kVariants[] = {
    {"by", "ru", 0x0419},   {"ca", "eng", 0x1009},     {"ca", "ike", 0x045D},   {"ch", "fr", 0x100C},
    {"cz", "rus", 0x0419},  {"de", "ro", 0x0418},      {"de", "ru", 0x0419},    {"de", "tr", 0x041F},
    {"es", "cat", 0x0403},  {"fr", "bre", 0x047E},     {"fr", "geo", 0x0437},   {"fr", "oci", 0x0482},
    {"ge", "ru", 0x0419},   {"in", "ben", 0x0445},     {"in", "eng", 0x4009},   {"in", "guj", 0x0447},
    {"in", "guru", 0x0446}, {"in", "kan", 0x044B},     {"in", "mal", 0x044C},   {"in", "mar", 0x044E},
    {"in", "ori", 0x0448},  {"in", "san", 0x044F},     {"in", "tam", 0x0449},   {"in", "tel", 0x044A},
    {"in", "urd", 0x0820},  {"kz", "rus", 0x0419},     {"lk", "us", 0x0409},    {"me", "cyrillic", 0x301A},
    {"pl", "ru", 0x0419},   {"rs", "latin", 0x241A},   {"ru", "bak", 0x046D},   {"ru", "chm", 0x0000},
    {"ru", "cv", 0x0000},   {"ru", "kom", 0x0000},     {"ru", "os", 0x0000},    {"ru", "sah", 0x0485},
    {"ru", "srp", 0x281A},  {"ru", "tt", 0x0444},      {"ru", "udm", 0x0000},   {"ru", "xal", 0x0000},
    {"se", "rus", 0x0419},  {"ua", "rstu_ru", 0x0419}, {"us", "chr", 0x045C},   {"us", "haw", 0x0475},
    {"us", "hbs", 0x0000},  {"us", "rus", 0x0419},     {"uz", "latin", 0x0443},
};

constexpr TKeyboardLayout::TKey kNoKey;

}  // namespace

const TKeyboardLayout::TKey& TKeyboardLayout::operator[](std::uint32_t scanCode) const noexcept {
    return scanCode < keys.size() ? keys[scanCode] : kNoKey;
}

bool TKeyboardLayout::TypesLatinLetters() const noexcept {
    return std::any_of(keys.begin(), keys.end(),
                       [](const TKey& key) { return key.character >= U'a' && key.character <= U'z'; });
}

bool TKeyboardLayout::HasLatinLettersBeside() const noexcept {
    return std::any_of(keys.begin(), keys.end(), [](const TKey& key) { return key.latin != 0; });
}

LanguageNumber GetLanguageOfLayout(std::string_view layout, std::string_view variant) {
    const std::size_t bracket = layout.find('(');
    if (bracket != std::string_view::npos) {
        variant = layout.substr(bracket + 1);
        variant = variant.substr(0, variant.find(')'));
        layout = layout.substr(0, bracket);
    }
    const auto* const special = std::find_if(std::begin(kVariants), std::end(kVariants), [&](const TVariant& entry) {
        return entry.layout == layout && variant.starts_with(entry.variantStart);
    });
    if (special != std::end(kVariants)) {
        return special->language;
    }
    const auto* const known =
        std::lower_bound(std::begin(kLayouts), std::end(kLayouts), layout,
                         [](const TLayout& entry, std::string_view name) { return entry.name < name; });
    return known != std::end(kLayouts) && known->name == layout ? known->language : kLanguageUnknown;
}

}  // namespace NK
