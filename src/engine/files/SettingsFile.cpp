#include "engine/files/SettingsFile.h"

#include <map>
#include <memory>
#include <utility>

#include "nk/nk_damaged_file.h"
#include "nk/nk_directory.h"
#include "nk/nk_folder_lock.h"
#include "nk/nk_paths.h"

namespace Kivora {

namespace {

using NK::CIniFile;
using NK::CString;
using State = SettingsFile::State;

State ReadFile(CIniFile& file, const CString& path) {
    if (file.Load(path)) {
        return file.IsConfiguration() ? State::kGood : State::kDamaged;
    }
    switch (file.GetLoadResult()) {
        case CIniFile::LoadResult::kAbsent:
            return State::kAbsent;
        case CIniFile::LoadResult::kDamaged:
            return State::kDamaged;
        default:
            return State::kUnreadable;
    }
}

struct Key {
    CString section;
    CString name;
};

/// Letter case does not count, as in the file.
struct ComesBefore {
    bool operator()(const Key& a, const Key& b) const {
        const int sections = CString::CompareNoCase(a.section.View(), b.section.View());
        return sections != 0 ? sections < 0 : CString::CompareNoCase(a.name.View(), b.name.View()) < 0;
    }
};

using Values = std::map<Key, CString, ComesBefore>;

Values ValuesOf(const CIniFile& file) {
    Values values;
    file.VisitKeys([&values](const CString& section, const CString& key, const CString& value) {
        values.try_emplace({section, key}, value);
    });
    return values;
}

/// Whether the key has another value in `now`, or has come in.
bool HasChanged(const Values& former, const std::pair<const Key, CString>& now) {
    const auto found = former.find(now.first);
    return found == former.end() || found->second != now.second;
}

void SetValue(CIniFile& file, const std::pair<const Key, CString>& entry) {
    file.SelectOrAddSection(entry.first.section);
    file.SetString(entry.first.name, entry.second);
}

}  // namespace

CIniFile SettingsFile::Load() {
    CIniFile lines;
    state_ = ReadFile(lines, path_);
    failure_ = state_ == State::kUnreadable ? NK::GetFileFailure() : NK::FileFailure();
    if (state_ != State::kGood) {
        lines = CIniFile();
    }
    onDisk_ = lines;
    own_ = CIniFile();
    late_ = CIniFile();
    ReadBeside();
    for (const auto& entry : ValuesOf(changes_)) {
        SetValue(lines, entry);
    }
    return lines;
}

void SettingsFile::Remember(const Writer& write) {
    own_ = onDisk_;
    write(own_);
    // What an earlier run had to save beside the file counts as changed in this one.
    Values onDisk = ValuesOf(onDisk_);
    for (const auto& [key, value] : ValuesOf(changes_)) {
        SetValue(own_, {key, onDisk[key]});
    }
}

void SettingsFile::ReadBeside() {
    stateBeside_ = ReadFile(changes_, GetPathBeside());
    if (stateBeside_ != State::kGood) {
        changes_ = CIniFile();
    }
}

void SettingsFile::MendBeside(NK::CStringArray& setAside) {
    if (stateBeside_ == State::kUnreadable) {
        ReadBeside();
        late_ = changes_;
    }
    if (stateBeside_ == State::kDamaged) {
        const CString name = NK::SetFileAside(GetPathBeside());
        if (!name.IsEmpty()) {
            setAside.Push(name);
            stateBeside_ = State::kAbsent;
        }
    }
}

bool SettingsFile::Save(const Writer& write, NK::CStringArray& setAside) {
    // Where it cannot be had, a moment in which another program saves may lose one of the two's changes.
    const std::unique_ptr<NK::CFolderLock> lock = NK::CFolderLock::Take(NK::GetFolderName(path_));
    isSavedBeside_ = false;
    MendBeside(setAside);
    CIniFile file;
    const State state = ReadFile(file, path_);
    if (state == State::kUnreadable) {
        const NK::FileFailure failure = NK::GetFileFailure();
        SaveBeside(write);
        NK::SetFileFailure(failure.path, failure.error);
        return false;
    }
    const bool damaged = state == State::kDamaged;
    Values theirs = damaged ? Values() : ValuesOf(file);
    for (const auto& [key, value] : ValuesOf(late_)) {
        theirs.insert_or_assign(key, value);
    }
    if (damaged) {
        file = onDisk_;
    }
    write(file);
    CIniFile own = file;
    const Values base = ValuesOf(onDisk_);
    const Values formerOwn = ValuesOf(own_);
    const Values now = ValuesOf(own);
    for (const auto& entry : theirs) {
        const auto found = now.find(entry.first);
        const bool isChangedHere = found != now.end() && HasChanged(formerOwn, *found);
        if (HasChanged(base, entry) && !isChangedHere) {
            SetValue(file, entry);
        }
    }
    CString damagedName;
    if (!(damaged ? NK::SaveOverDamaged(file, path_, damagedName) : file.Save(path_))) {
        return false;
    }
    if (damaged) {
        setAside.Push(damagedName);
    }
    state_ = State::kGood;
    onDisk_ = own;
    late_ = CIniFile();
    // What has been changed since the load is newer than what an unreadable file beside may hold.
    if (stateBeside_ != State::kUnreadable) {
        own_ = std::move(own);
    }
    if (!changes_.IsEmpty() && NK::RemoveFile(GetPathBeside())) {
        changes_ = CIniFile();
    }
    return true;
}

void SettingsFile::SaveBeside(const Writer& write) {
    if (stateBeside_ == State::kUnreadable || stateBeside_ == State::kDamaged) {
        return;
    }
    CIniFile now = onDisk_;
    write(now);
    const Values own = ValuesOf(own_);
    for (const auto& entry : ValuesOf(now)) {
        if (HasChanged(own, entry)) {
            SetValue(changes_, entry);
        }
    }
    isSavedBeside_ = !changes_.IsEmpty() && changes_.Save(GetPathBeside());
}

}  // namespace Kivora
