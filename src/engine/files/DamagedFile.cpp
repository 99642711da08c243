#include "engine/files/DamagedFile.h"

#include "nk/nk_directory.h"

namespace Kivora {

namespace {

constexpr int kNames = 100;

bool IsTaken(const NK::CString& path) {
    return NK::FileExists(path) || NK::FolderExists(path);
}

/// Empty when all names are taken.
NK::CString FindFreeName(const NK::CString& path) {
    NK::CString name = path + L".bad";
    for (int number = 2; IsTaken(name); ++number) {
        if (number == kNames) {
            return {};
        }
        name = path + L".bad" + NK::CString::FromInt(number);
    }
    return name;
}

}  // namespace

NK::CString SetFileAside(const NK::CString& path) {
    const NK::CString name = FindFreeName(path);
    return !name.IsEmpty() && NK::RenameFile(path, name) ? name : NK::CString();
}

bool SaveOverDamaged(NK::CIniFile& file, const NK::CString& path, NK::CString& setAside) {
    setAside = SetFileAside(path);
    if (!setAside.IsEmpty()) {
        if (file.Save(path)) {
            return true;
        }
        static_cast<void>(NK::RenameFile(setAside, path));
    }
    setAside.Clear();
    return false;
}

}  // namespace Kivora
