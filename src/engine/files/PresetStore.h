// The files of the presets.
#pragma once

#include "nk/nk_ini_file.h"
#include "nk/nk_string.h"

namespace Kivora {

/// Knows the folders of the factory's and the user's presets and which file holds which preset. A folder is created
/// when it is first asked for. A preset's name never leads out of its folder: see GetStoredName(). Nothing here throws
/// for what stands on the disk; why Read(), Save() and Delete() were false tells NK::GetFileFailure(). For one thread.
/// [gui]
class PresetStore {
public:
    static constexpr const wchar_t* kSection = L"KivoraPreset";
    static constexpr const wchar_t* kExtension = L"kivoraLXPreset";

    /// Absolute paths, not created yet. The user's presets stand in the folder "Presets" of `userDataDir`.
    PresetStore(NK::CString userDataDir, NK::CString factoryPresetsDir);

    /// The name as it stands on the disk: each "/" and "\" is "_". Empty for a name that is refused: the empty one,
    /// ".",
    /// "..", and those with control characters or with what is no character.
    static NK::CString GetStoredName(const NK::CString& name);

    const NK::CString& GetUserDataDir() const;             ///< no "/" at the end
    const NK::CString& GetPresetsDir(bool factory) const;  ///< with a "/" at the end
    /// The names of the presets in one folder in the order of SortByName(); files that no name leads to are left out.
    void List(NK::CStringArray& names, bool factory) const;
    bool Exists(const NK::CString& name, bool factory) const;
    /// Reads the file and selects its section; false when there is none to be read.
    bool Read(const NK::CString& name, bool factory, NK::CIniFile& file) const;
    /// Saves into the user's folder, as NK::SaveOverDamaged() does where the file there is no preset.
    bool Save(const NK::CString& name, NK::CIniFile& file, NK::CString& setAside);
    /// Removes a preset of the user's; false when there is none.
    bool Delete(const NK::CString& name);

private:
    /// Empty for a name that is refused.
    NK::CString GetPath(const NK::CString& name, bool factory) const;

    NK::CString userDataDir_;
    NK::CString userPresetsDir_;
    NK::CString factoryPresetsDir_;
    mutable bool userDataDirAsked_ = false;  ///< these three: whether the folder was created by being asked for
    mutable bool userPresetsDirAsked_ = false;
    mutable bool factoryPresetsDirAsked_ = false;
};

}  // namespace Kivora
