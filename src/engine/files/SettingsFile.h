// The settings file, which other programs use too, and which cannot always be read.
#pragma once

#include <functional>
#include <utility>

#include "nk/nk_file_failure.h"
#include "nk/nk_ini_file.h"
#include "nk/nk_string.h"

namespace Kivora {

/// Remembers what the file held when it was loaded, so that a save changes only what has been changed here since: what
/// another program has changed meanwhile stays. While the file cannot be read it is left alone, and what was changed is
/// saved beside it, with ".changes" added to its name; the next load that can read the file takes that over, and the
/// next save puts it where it belongs. While the file beside cannot be read it is left alone too, and each save tries
/// it again: it then counts as changed by another program. For one thread. [gui]
class SettingsFile {
public:
    enum class State {
        kGood,
        kAbsent,
        kDamaged,    ///< too large, or no configuration at all
        kUnreadable  ///< it is there, and the system does not give it
    };
    /// Writes all settings as they are now into the lines.
    using Writer = std::function<void(NK::CIniFile& lines)>;

    explicit SettingsFile(NK::CString path) : path_(std::move(path)) {}

    /// What the file holds, with what was saved beside it; nothing of a file that is damaged or cannot be read.
    NK::CIniFile Load();
    /// How the last Load() found the file, kAbsent before the first; and why it could not be read.
    State GetState() const { return state_; }
    const NK::FileFailure& GetFailure() const { return failure_; }
    /// After Load(), when it is in force: what is written now is what was loaded.
    void Remember(const Writer& write);

    /// Reads the file anew, writes, and saves. A damaged file is set aside first, see NK::SaveOverDamaged(), and so is
    /// a damaged one beside it; the new names are added to `setAside`, whatever the result. False when the file could
    /// not be saved; IsSavedBeside() tells whether what was changed is kept at least.
    bool Save(const Writer& write, NK::CStringArray& setAside);
    bool IsSavedBeside() const { return isSavedBeside_; }
    NK::CString GetPathBeside() const { return path_ + L".changes"; }

private:
    void ReadBeside();
    /// Before a save: what is wrong with the file beside is put right where that can be done.
    void MendBeside(NK::CStringArray& setAside);
    void SaveBeside(const Writer& write);

    const NK::CString path_;
    NK::CIniFile onDisk_;  ///< the file when it was last loaded or saved
    NK::CIniFile own_;     ///< the same with the settings of that moment in it, of the load while beside is unreadable
    State state_ = State::kAbsent;
    NK::FileFailure failure_;
    NK::CIniFile changes_;  ///< what is saved beside the file
    NK::CIniFile late_;     ///< of that what was read after the load, and is not in force here
    State stateBeside_ = State::kAbsent;
    bool isSavedBeside_ = false;
};

}  // namespace Kivora
