#include "engine/files/PresetStore.h"

#include <algorithm>
#include <cwchar>
#include <string>
#include <string_view>
#include <utility>

#include "engine/files/NameOrder.h"
#include "nk/nk_damaged_file.h"
#include "nk/nk_directory.h"
#include "nk/nk_file_failure.h"
#include "nk/nk_paths.h"

namespace Kivora {

namespace {

/// Neither a control character of ISO/IEC 6429 (C0, DEL, C1) nor what is no character: half a surrogate pair, beyond
/// Unicode's end, or U+FFFD, which stands for what could not be decoded.
bool IsFitForName(wchar_t character) {
    const std::wint_t code = std::char_traits<wchar_t>::to_int_type(character);
    constexpr std::wint_t kPastC1 = 160;
    const bool isControl = code < 0x20 || (code >= 0x7F && code < kPastC1);
    return !isControl && (code < 0xD800 || code > 0xDFFF) && code != 0xFFFD && code <= 0x10FFFF;
}

bool IsName(std::wstring_view name) {
    return !name.empty() && name != L"." && name != L".." && std::all_of(name.begin(), name.end(), IsFitForName);
}

const NK::CString& CreateOnce(const NK::CString& folder, bool& asked) {
    if (!std::exchange(asked, true)) {
        // One that cannot be created shows when it is read or written.
        static_cast<void>(NK::CreateFolder(folder));
    }
    return folder;
}

}  // namespace

PresetStore::PresetStore(NK::CString userDataDir, NK::CString factoryPresetsDir)
    : userDataDir_(std::move(userDataDir)),
      userPresetsDir_(NK::JoinPath(NK::JoinPath(userDataDir_, L"Presets"), L"")),
      factoryPresetsDir_(std::move(factoryPresetsDir)) {
    factoryPresetsDir_ = NK::JoinPath(factoryPresetsDir_, L"");
}

NK::CString PresetStore::GetStoredName(const NK::CString& name) {
    if (!IsName(name.View())) {
        return {};
    }
    NK::CString stored = name;
    stored.Replace(L'/', L'_');
    stored.Replace(L'\\', L'_');
    return stored;
}

const NK::CString& PresetStore::GetUserDataDir() const {
    return CreateOnce(userDataDir_, userDataDirAsked_);
}

const NK::CString& PresetStore::GetPresetsDir(bool factory) const {
    return factory ? CreateOnce(factoryPresetsDir_, factoryPresetsDirAsked_)
                   : CreateOnce(userPresetsDir_, userPresetsDirAsked_);
}

NK::CString PresetStore::GetPath(const NK::CString& name, bool factory) const {
    const NK::CString stored = GetStoredName(name);
    return stored.IsEmpty() ? stored : GetPresetsDir(factory) + stored + L"." + kExtension;
}

void PresetStore::List(NK::CStringArray& names, bool factory) const {
    const std::wstring ending = std::wstring(L".") + kExtension;
    NK::CStringArray files;
    static_cast<void>(NK::ListFiles(GetPresetsDir(factory), files));
    names.SetSize(files.GetSize(), false);
    std::uint32_t count = 0;
    for (const NK::CString& file : files) {
        std::wstring_view name = file.View();
        if (!name.ends_with(ending)) {
            continue;
        }
        name.remove_suffix(ending.size());
        if (IsName(name) && name.find(L'\\') == std::wstring_view::npos) {
            names[count++] = name;
        }
    }
    names.SetSize(count);
    SortByName(names);
}

bool PresetStore::Exists(const NK::CString& name, bool factory) const {
    return NK::FileExists(GetPath(name, factory));
}

bool PresetStore::Read(const NK::CString& name, bool factory, NK::CIniFile& file) const {
    NK::ForgetFileFailure();
    return file.Load(GetPath(name, factory)) && file.SelectSection(kSection);
}

bool PresetStore::Save(const NK::CString& name, NK::CIniFile& file, NK::CString& setAside) {
    NK::ForgetFileFailure();
    const NK::CString path = GetPath(name, false);
    // The folder may have gone since it was first asked for.
    if (path.IsEmpty() || !NK::CreateFolder(userPresetsDir_)) {
        return false;
    }
    NK::CIniFile former;
    const bool damaged = Exists(name, false) && !Read(name, false, former) &&
                         former.GetLoadResult() != NK::CIniFile::LoadResult::kUnreadable;
    return damaged ? NK::SaveOverDamaged(file, path, setAside) : file.Save(path);
}

bool PresetStore::Delete(const NK::CString& name) {
    NK::ForgetFileFailure();
    return Exists(name, false) && NK::RemoveFile(GetPath(name, false));
}

}  // namespace Kivora
