#include "locale/LocaleFile.h"

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

}  // namespace

NK::CString GetLocaleFilePath() {
    return NK::JoinPath(GetUserDataDir(), L"Locale.ini");
}

NK::CString LoadLocaleCode() {
    NK::CIniFile file;
    if (!file.Load(GetLocaleFilePath()) || !file.SelectSection(kSection)) {
        return {};
    }
    return file.GetString(kKey).value_or(NK::CString());
}

bool SaveLocaleCode(const NK::CString& code) {
    using Result = NK::CIniFile::LoadResult;
    const NK::CString path = GetLocaleFilePath();
    if (!NK::CreateFolder(GetUserDataDir())) {
        return false;
    }
    NK::CIniFile file;
    file.Load(path);
    if (file.GetLoadResult() == Result::kUnreadable || file.GetLoadResult() == Result::kDamaged) {
        NK::RenameFile(path, path + L".bad");
    }
    file.SelectOrAddSection(kSection);
    file.SetString(kKey, code);
    return file.Save(path);
}

}  // namespace Kivora
