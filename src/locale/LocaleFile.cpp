#include "locale/LocaleFile.h"

#include "nk/nk_damaged_file.h"
#include "nk/nk_directory.h"
#include "nk/nk_ini_file.h"
#include "nk/nk_paths.h"

namespace Kivora {
namespace {

constexpr wchar_t kSection[] = L"Locale";
constexpr wchar_t kKey[] = L"Name";

NK::CString GetUserDataDir() {
    return NK::ComposeUserDataDir(L"Brennholt", L"Kivora");
}

LocaleFileState Read(NK::CIniFile& file) {
    using Result = NK::CIniFile::LoadResult;
    if (file.Load(GetLocaleFilePath())) {
        return file.IsConfiguration() ? LocaleFileState::kGood : LocaleFileState::kDamaged;
    }
    return file.GetLoadResult() == Result::kAbsent    ? LocaleFileState::kAbsent
           : file.GetLoadResult() == Result::kDamaged ? LocaleFileState::kDamaged
                                                      : LocaleFileState::kUnreadable;
}

}  // namespace

NK::CString GetLocaleFilePath() {
    return NK::JoinPath(GetUserDataDir(), L"Locale.ini");
}

LocaleFileState GetLocaleFileState() {
    NK::CIniFile file;
    return Read(file);
}

NK::CString LoadLocaleCode() {
    NK::CIniFile file;
    if (Read(file) != LocaleFileState::kGood || !file.SelectSection(kSection)) {
        return {};
    }
    return file.GetString(kKey).value_or(NK::CString());
}

bool SaveLocaleCode(const NK::CString& code) {
    const NK::CString path = GetLocaleFilePath();
    if (!NK::CreateFolder(GetUserDataDir())) {
        return false;
    }
    NK::CIniFile file;
    const LocaleFileState state = Read(file);
    if (state == LocaleFileState::kUnreadable) {
        return false;
    }
    const bool isDamaged = state == LocaleFileState::kDamaged;
    if (isDamaged) {
        file = NK::CIniFile();
    }
    file.SelectOrAddSection(kSection);
    file.SetString(kKey, code);
    NK::CString setAside;
    return isDamaged ? NK::SaveOverDamaged(file, path, setAside) : file.Save(path);
}

}  // namespace Kivora
