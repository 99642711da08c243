#include "nk/nk_damaged_file.h"

#include "nk/nk_directory.h"

namespace NK {

namespace {

constexpr int kNames = 100;

bool IsTaken(const CString& path) {
    return FileExists(path) || FolderExists(path);
}

/// Empty when all names are taken.
CString FindFreeName(const CString& path) {
    CString name = path + L".bad";
    for (int number = 2; IsTaken(name); ++number) {
        if (number == kNames) {
            return {};
        }
        name = path + L".bad" + CString::FromInt(number);
    }
    return name;
}

}  // namespace

CString SetFileAside(const CString& path) {
    const CString name = FindFreeName(path);
    return !name.IsEmpty() && RenameFile(path, name) ? name : CString();
}

bool SaveOverDamaged(CIniFile& file, const CString& path, CString& setAside) {
    setAside = SetFileAside(path);
    if (!setAside.IsEmpty()) {
        if (file.Save(path)) {
            return true;
        }
        static_cast<void>(RenameFile(setAside, path));
    }
    setAside.Clear();
    return false;
}

}  // namespace NK
