#include "engine/values/Settings.h"

#include <algorithm>
#include <tuple>

#include "nk/qt/nk_qt_string.h"

namespace Kivora {

namespace {

constexpr const wchar_t* kTakes = L"Recordings";
constexpr const wchar_t* kWallpapers = L"Wallpapers";
constexpr std::uint32_t kColorBits = 0xFFFFFF;  // 8 bits each of red, green and blue

using NK::CIniFile;
using NK::CString;
using NK::Piano::EPCKeyWay;

std::uint32_t ToNumber(const QColor& color) {
    return color.rgb() & kColorBits;
}

// How a value of each type is saved. What cannot be read stays as it is.

void ReadValue(const CIniFile& section, const wchar_t* key, std::uint8_t& value) {
    value = static_cast<std::uint8_t>(section.GetInt(key, value));
}
void WriteValue(CIniFile& section, const wchar_t* key, std::uint8_t value) {
    section.SetInt(key, value);
}

void ReadValue(const CIniFile& section, const wchar_t* key, bool& value) {
    section.GetBool(key, value);
}
void WriteValue(CIniFile& section, const wchar_t* key, bool value) {
    section.SetInt(key, value ? 1 : 0);
}

void ReadValue(const CIniFile& section, const wchar_t* key, int& value) {
    value = section.GetInt(key, value);
}
void WriteValue(CIniFile& section, const wchar_t* key, int value) {
    section.SetInt(key, value);
}

/// As the file has it: 0 automatic, 1 as typed, 2 by place; any other number is the default.
void ReadValue(const CIniFile& section, const wchar_t* key, EPCKeyWay& value) {
    switch (section.GetInt(key, 0)) {
        case 1:
            value = EPCKeyWay::kAsTyped;
            break;
        case 2:
            value = EPCKeyWay::kByPlace;
            break;
        default:
            value = EPCKeyWay::kAutomatic;
    }
}
void WriteValue(CIniFile& section, const wchar_t* key, EPCKeyWay value) {
    if (value != EPCKeyWay::kAutomatic || section.GetString(key)) {
        section.SetInt(key, static_cast<int>(value));
    }
}

void ReadValue(const CIniFile& section, const wchar_t* key, QColor& value) {
    value = QColor::fromRgb(section.GetHex(key, ToNumber(value)) & kColorBits);
}
void WriteValue(CIniFile& section, const wchar_t* key, const QColor& value) {
    section.SetHex(key, ToNumber(value));
}

void ReadValue(const CIniFile& section, const wchar_t* key, QString& value) {
    value = NK::ToQt(section.GetString(key).value_or(CString()));
}
void WriteValue(CIniFile& section, const wchar_t* key, const QString& value) {
    section.SetString(key, NK::FromQt(value));
}

template <class Value>
struct Row {
    const wchar_t* key;
    Value Settings::*field;
    EShownIn shownIn;
    bool isAlwaysToldOf = false;  ///< when it was loaded, whether it differs or not
};
template <class Value>
Row(const wchar_t*, Value Settings::*, EShownIn, bool = false) -> Row<Value>;

/// The settings in the order in which they are saved.
constexpr std::tuple kRows{
    Row{L"VelocityLow", &Settings::velocityLow, EShownIn::kNothing},
    Row{L"VelocityNormal", &Settings::velocityNormal, EShownIn::kNothing},
    Row{L"VelocityHigh", &Settings::velocityHigh, EShownIn::kNothing},
    Row{L"TranslatePatchNames", &Settings::translatePatchNames, EShownIn::kPatchNames, true},
    Row{L"TranslateKeyNames", &Settings::translateKeyNames, EShownIn::kKeyNames, true},
    Row{L"ShowNoteNames", &Settings::showNoteNames, EShownIn::kKeyboard, true},
    Row{L"ComputerKeys", &Settings::pcKeyWay, EShownIn::kKeyNames},
    Row{L"KeyboardColoring", &Settings::keyboardColoring, EShownIn::kKeyboard, true},
    Row{L"UIColorRGB", &Settings::uiColor, EShownIn::kSkin},
    Row{L"UIDisplayColorRGB", &Settings::uiDisplayColor, EShownIn::kSkin},
    Row{L"UIDisplay2ColorRGB", &Settings::uiDisplay2Color, EShownIn::kSkin},
    Row{L"Wallpaper", &Settings::wallpaper, EShownIn::kSkin},
};

template <class Visit>
void VisitRows(const Visit& visit) {
    std::apply([&visit](const auto&... row) { (visit(row), ...); }, kRows);
}

template <class Counts>
std::vector<EShownIn> Compare(const Settings& former, const Settings& now, const Counts& counts) {
    std::vector<EShownIn> changes;
    VisitRows([&](const auto& row) {
        const bool differs = former.*row.field != now.*row.field;
        if (row.shownIn != EShownIn::kNothing && (differs || counts(row))) {
            changes.push_back(row.shownIn);
        }
    });
    std::stable_sort(changes.begin(), changes.end());
    return changes;
}

}  // namespace

Settings Settings::Read(const CIniFile& section) {
    Settings read;
    VisitRows([&](const auto& row) { ReadValue(section, row.key, read.*row.field); });
    return read;
}

void Settings::Write(CIniFile& section) const {
    VisitRows([&](const auto& row) { WriteValue(section, row.key, this->*row.field); });
}

std::vector<EShownIn> Settings::GetChanges(const Settings& former) const {
    return Compare(former, *this, [](const auto&) { return false; });
}

std::vector<EShownIn> Settings::GetLoaded(const Settings& former) const {
    return Compare(former, *this, [](const auto& row) { return row.isAlwaysToldOf; });
}

SavedPorts SavedPorts::Read(const CIniFile& section) {
    return {section.GetString(L"Input").value_or(CString()), section.GetString(L"Output").value_or(CString())};
}

void SavedPorts::Write(CIniFile& section) const {
    section.SetString(L"Input", input);
    section.SetString(L"Output", output);
}

LastFolders LastFolders::Read(NK::CIniFile& file) {
    if (!file.SelectSection(kSection)) {
        return {};
    }
    return {file.GetString(kTakes).value_or(NK::CString()), file.GetString(kWallpapers).value_or(NK::CString())};
}

void LastFolders::Write(NK::CIniFile& file) const {
    if (takes.IsEmpty() && wallpapers.IsEmpty()) {
        return;
    }
    file.SelectOrAddSection(kSection);
    file.SetString(kTakes, takes);
    file.SetString(kWallpapers, wallpapers);
}

}  // namespace Kivora
