#include "ui/parts/ViewSettings.h"

#include <algorithm>
#include <cmath>

#include "nk/nk_directory.h"
#include "nk/nk_ini_file.h"
#include "nk/nk_paths.h"

namespace {

constexpr const wchar_t* kSection = L"View";
constexpr const wchar_t* kSize = L"Size";
constexpr const wchar_t* kContrast = L"HighContrast";
constexpr const wchar_t* kQuiet = L"QuietWhilePlaying";
constexpr const wchar_t* kPianoKeys = L"PianoKeys";
constexpr const wchar_t* kWheels = L"Wheels";
constexpr double kPercent = 100.0;
constexpr int kAsDesktop = 2;  // of the key for the contrast; 0 and 1 are off and on

}  // namespace

ViewSettings ViewSettings::Read(const NK::CString& path) {
    ViewSettings settings;
    NK::CIniFile file;
    if (!file.Load(path) || !file.SelectSection(kSection)) {
        return settings;
    }
    double size = settings.scale * kPercent;
    if (file.GetDouble(kSize, size) && std::isfinite(size)) {
        settings.scale = std::clamp(size / kPercent, kSmallestScale, kLargestScale);
    }
    const int contrast = file.GetInt(kContrast, kAsDesktop);
    settings.contrast = contrast == 0 ? EContrast::kUsual : contrast == 1 ? EContrast::kHigh : EContrast::kAsDesktop;
    file.GetBool(kQuiet, settings.quietWhilePlaying);
    const int keys = file.GetInt(kPianoKeys, PianoRange::kDefaultKeys);
    settings.pianoKeys = PianoRange::IsSize(keys) ? keys : PianoRange::kDefaultKeys;
    file.GetBool(kWheels, settings.showsWheels);
    return settings;
}

bool ViewSettings::Save(const NK::CString& path) const {
    NK::CIniFile file;
    file.Load(path);
    file.SelectOrAddSection(kSection);
    file.SetDouble(kSize, scale * kPercent);
    file.SetInt(kContrast, contrast == EContrast::kAsDesktop ? kAsDesktop : contrast == EContrast::kHigh ? 1 : 0);
    file.SetInt(kQuiet, quietWhilePlaying ? 1 : 0);
    if (pianoKeys != PianoRange::kDefaultKeys || file.GetString(kPianoKeys)) {
        file.SetInt(kPianoKeys, pianoKeys);
    }
    if (showsWheels || file.GetString(kWheels)) {
        file.SetInt(kWheels, showsWheels ? 1 : 0);
    }
    return NK::CreateFolder(NK::GetFolderName(path)) && file.Save(path);
}
