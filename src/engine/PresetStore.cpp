#include "engine/PresetStore.h"

#include <algorithm>
#include <utility>

#include "engine/DamagedFile.h"
#include "engine/NameOrder.h"
#include "nk/nk_directory.h"
#include "nk/nk_paths.h"

namespace Kivora {

namespace {

constexpr wchar_t kReplacement = L'\xFFFD';  // stands for what is no character

/// The control characters of ISO/IEC 6429: C0, DEL and C1.
bool IsControl(wchar_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

bool IsWellFormed(const NK::CString& name) {
    return name.View().find(kReplacement) == std::wstring_view::npos && NK::CString::FromUtf8(name.ToUtf8()) == name;
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
      factoryPresetsDir_(NK::JoinPath(factoryPresetsDir, L"")) {
}

NK::CString PresetStore::GetStoredName(const NK::CString& name) {
    const std::wstring_view text = name.View();
    if (text == L"." || text == L".." || std::any_of(text.begin(), text.end(), IsControl) || !IsWellFormed(name)) {
        return {};
    }
    NK::CString stored = name;
    stored.Replace(L'/', L'_');
    stored.Replace(L'\\', L'_');
    return stored;
}

const NK::CString& PresetStore::GetUserDataDir() {
    return CreateOnce(userDataDir_, userDataDirAsked_);
}

const NK::CString& PresetStore::GetPresetsDir(bool factory) {
    return factory ? CreateOnce(factoryPresetsDir_, factoryPresetsDirAsked_)
                   : CreateOnce(userPresetsDir_, userPresetsDirAsked_);
}

NK::CString PresetStore::GetPath(const NK::CString& name, bool factory) {
    const NK::CString stored = GetStoredName(name);
    return stored.IsEmpty() ? stored : GetPresetsDir(factory) + stored + L"." + kExtension;
}

void PresetStore::List(NK::CStringArray& names, bool factory) {
    names.Clear();
    NK::CStringArray files;
    static_cast<void>(NK::ListFiles(GetPresetsDir(factory), files));
    for (const NK::CString& file : files) {
        NK::CString name = NK::GetFileStem(file);
        if (NK::GetFileExtension(file) == kExtension && GetStoredName(name) == name) {
            names.Push(name);
        }
    }
    SortByName(names);
}

bool PresetStore::Exists(const NK::CString& name, bool factory) {
    return NK::FileExists(GetPath(name, factory));
}

bool PresetStore::Read(const NK::CString& name, bool factory, NK::CIniFile& file) {
    const NK::CString path = GetPath(name, factory);
    return NK::FileExists(path) && file.Load(path) && file.SelectSection(kSection);
}

bool PresetStore::Save(const NK::CString& name, NK::CIniFile& file, NK::CString& setAside) {
    const NK::CString path = GetPath(name, false);
    if (path.IsEmpty()) {
        return false;
    }
    // The folder may have gone since it was first asked for.
    static_cast<void>(NK::CreateFolder(userPresetsDir_));
    NK::CIniFile former;
    const bool damaged = Exists(name, false) && !Read(name, false, former) &&
                         former.GetLoadResult() != NK::CIniFile::LoadResult::kUnreadable;
    return damaged ? SaveOverDamaged(file, path, setAside) : file.Save(path);
}

bool PresetStore::Delete(const NK::CString& name) {
    return Exists(name, false) && NK::RemoveFile(GetPath(name, false));
}

}  // namespace Kivora
