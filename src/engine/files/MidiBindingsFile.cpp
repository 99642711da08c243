#include "engine/files/MidiBindingsFile.h"

#include <utility>

#include "nk/nk_damaged_file.h"
#include "nk/nk_file_failure.h"

namespace Kivora {

namespace {
NK::CIniFile LinesOf(const MidiBindings& bindings) {
    NK::CIniFile file;
    bindings.Write(file);
    return file;
}

/// Does to others what has led from `before` to `after`.
void Repeat(const MidiBindings& before, const MidiBindings& after, MidiBindings& others) {
    for (const MidiBinding& former : before.GetAll()) {
        if (after.Find(former.device, former.control) == nullptr) {
            others.Unbind(former);
        }
    }
    for (const MidiBinding& binding : after.GetAll()) {
        const MidiBinding* const former = before.Find(binding.device, binding.control);
        if (former == nullptr || *former != binding) {
            others.Bind(binding);
        }
    }
}
}  // namespace

StoredBindings StoredBindings::Read(const NK::CString& path) {
    using LoadResult = NK::CIniFile::LoadResult;
    StoredBindings stored;
    NK::CIniFile file;
    file.Load(path);
    switch (file.GetLoadResult()) {
        case LoadResult::kAbsent:
            return stored;
        case LoadResult::kUnreadable:
            stored.state = State::kUnreadable;
            return stored;
        case LoadResult::kDamaged:
            stored.state = State::kDamaged;
            return stored;
        case LoadResult::kLoaded:
            break;
    }
    MidiBindings::Refused refused;
    stored.bindings = MidiBindings::Read(file, refused);
    stored.refused = refused.damaged + refused.unknown;
    if (file.IsConfiguration() && refused.damaged == 0) {
        stored.state = refused.unknown == 0 ? State::kWhole : State::kNewer;
        stored.lines = std::move(file);
    } else {
        stored.state = stored.bindings.IsEmpty() ? State::kDamaged : State::kPartly;
    }
    return stored;
}

bool WriteBindings(const MidiBindings& bindings, const NK::CString& path) {
    NK::ForgetFileFailure();
    return LinesOf(bindings).Save(path);
}

StoredBindings::State MidiBindingsFile::Load() {
    StoredBindings stored = StoredBindings::Read(path_);
    bindings_ = std::move(stored.bindings);
    inFile_ = bindings_;
    return stored.state;
}

bool MidiBindingsFile::Change(const std::function<void(MidiBindings&)>& change, NK::CString& setAside) {
    using State = StoredBindings::State;
    NK::ForgetFileFailure();
    StoredBindings stored = StoredBindings::Read(path_);
    const bool isUndamaged = stored.state == State::kWhole || stored.state == State::kNewer;
    if (isUndamaged || stored.state == State::kPartly) {
        const MidiBindings before = std::exchange(inFile_, std::move(stored.bindings));
        const MidiBindings inForce = std::exchange(bindings_, inFile_);
        Repeat(before, inForce, bindings_);
    }
    change(bindings_);
    setAside.Clear();
    bool isSaved = false;
    switch (stored.state) {
        case State::kUnreadable:
            break;
        case State::kPartly:
        case State::kDamaged: {
            NK::CIniFile file = LinesOf(bindings_);
            isSaved = NK::SaveOverDamaged(file, path_, setAside);
            break;
        }
        case State::kWhole:
        case State::kNewer:
        case State::kAbsent:
            bindings_.Write(stored.lines);
            isSaved = stored.lines.Save(path_);
            break;
    }
    if (isSaved) {
        inFile_ = bindings_;
    }
    return isSaved;
}

}  // namespace Kivora
