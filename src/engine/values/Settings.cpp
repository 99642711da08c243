#include "engine/values/Settings.h"

#include "nk/qt/nk_qt_string.h"

namespace Kivora {

namespace {

constexpr const wchar_t* kTakes = L"Recordings";
constexpr const wchar_t* kWallpapers = L"Wallpapers";
constexpr std::uint32_t kColorBits = 0xFFFFFF;  // 8 bits each of red, green and blue

std::uint32_t ToNumber(const QColor& color) {
    return color.rgb() & kColorBits;
}

QColor ReadColor(const NK::CIniFile& section, const wchar_t* key, const QColor& defaultColor) {
    return QColor::fromRgb(section.GetHex(key, ToNumber(defaultColor)) & kColorBits);
}

std::uint8_t ReadByte(const NK::CIniFile& section, const wchar_t* key, std::uint8_t defaultValue) {
    return static_cast<std::uint8_t>(section.GetInt(key, defaultValue));
}

using NK::Piano::EPCKeyWay;

constexpr const wchar_t* kPCKeyWay = L"ComputerKeys";

/// As the file has it: 0 automatic, 1 as typed, 2 by place; any other number is the default.
EPCKeyWay ReadPCKeyWay(const NK::CIniFile& section) {
    switch (section.GetInt(kPCKeyWay, 0)) {
        case 1:
            return EPCKeyWay::kAsTyped;
        case 2:
            return EPCKeyWay::kByPlace;
        default:
            return EPCKeyWay::kAutomatic;
    }
}

void WritePCKeyWay(NK::CIniFile& section, EPCKeyWay way) {
    if (way != EPCKeyWay::kAutomatic || section.GetString(kPCKeyWay)) {
        section.SetInt(kPCKeyWay, static_cast<int>(way));
    }
}

}  // namespace

Settings Settings::Read(const NK::CIniFile& section) {
    Settings read;
    read.input = section.GetString(L"Input").value_or(NK::CString());
    read.output = section.GetString(L"Output").value_or(NK::CString());
    read.velocityLow = ReadByte(section, L"VelocityLow", read.velocityLow);
    read.velocityNormal = ReadByte(section, L"VelocityNormal", read.velocityNormal);
    read.velocityHigh = ReadByte(section, L"VelocityHigh", read.velocityHigh);
    section.GetBool(L"TranslatePatchNames", read.translatePatchNames);
    section.GetBool(L"TranslateKeyNames", read.translateKeyNames);
    section.GetBool(L"ShowNoteNames", read.showNoteNames);
    read.pcKeyWay = ReadPCKeyWay(section);
    read.keyboardColoring = section.GetInt(L"KeyboardColoring", read.keyboardColoring);
    read.uiColor = ReadColor(section, L"UIColorRGB", read.uiColor);
    read.uiDisplayColor = ReadColor(section, L"UIDisplayColorRGB", read.uiDisplayColor);
    read.uiDisplay2Color = ReadColor(section, L"UIDisplay2ColorRGB", read.uiDisplay2Color);
    read.wallpaper = NK::ToQt(section.GetString(L"Wallpaper").value_or(NK::CString()));
    return read;
}

void Settings::Write(NK::CIniFile& section) const {
    section.SetString(L"Input", input);
    section.SetString(L"Output", output);
    section.SetInt(L"VelocityLow", velocityLow);
    section.SetInt(L"VelocityNormal", velocityNormal);
    section.SetInt(L"VelocityHigh", velocityHigh);
    section.SetInt(L"TranslatePatchNames", translatePatchNames ? 1 : 0);
    section.SetInt(L"TranslateKeyNames", translateKeyNames ? 1 : 0);
    section.SetInt(L"ShowNoteNames", showNoteNames ? 1 : 0);
    WritePCKeyWay(section, pcKeyWay);
    section.SetInt(L"KeyboardColoring", keyboardColoring);
    section.SetHex(L"UIColorRGB", ToNumber(uiColor));
    section.SetHex(L"UIDisplayColorRGB", ToNumber(uiDisplayColor));
    section.SetHex(L"UIDisplay2ColorRGB", ToNumber(uiDisplay2Color));
    section.SetString(L"Wallpaper", NK::FromQt(wallpaper));
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
