// The file of what is bound on MIDI keyboards.
#pragma once

#include <cstddef>
#include <functional>
#include <utility>

#include "engine/values/MidiBindings.h"
#include "nk/nk_string.h"

namespace Kivora {

/// What a file of bindings holds. Read() [any], the value [owner].
struct StoredBindings {
    enum class State {
        kWhole,
        kAbsent,
        kUnreadable,  ///< why tells NK::GetFileFailure()
        kNewer,       ///< `refused` of its lines name what this version does not know, the others are understood
        kPartly,      ///< `refused` of its lines are not understood, the others are
        kDamaged      ///< none are
    };

    static StoredBindings Read(const NK::CString& path);

    State state = State::kAbsent;
    MidiBindings bindings;
    std::size_t refused = 0;
    NK::CIniFile lines;  ///< as they stand in the file, of one that is whole or newer; else none
};

/// The program's own file. It is there once something was bound; what another program has bound meanwhile stays. [gui]
class MidiBindingsFile {
public:
    explicit MidiBindingsFile(NK::CString path) : path_(std::move(path)) {}

    /// How the file was found; what is whole in it is in force.
    StoredBindings::State Load();
    const MidiBindings& Get() const { return bindings_; }
    const NK::CString& GetPath() const { return path_; }

    /// Changes what the file holds now, to which is done again what could not be saved before. The result is in force,
    /// whether or not it could be saved; false when not, with the reason in NK::GetFileFailure(). In the file all lines
    /// stay but those that are bound otherwise. One that is damaged in any part is renamed before, see
    /// NK::SaveOverDamaged(): then `setAside` is its new name, else empty.
    bool Change(const std::function<void(MidiBindings& bindings)>& change, NK::CString& setAside);

private:
    const NK::CString path_;
    MidiBindings bindings_;
    MidiBindings inFile_;  ///< what the file held when it was last read or written; what differs could not be saved
};

/// False, with the reason in NK::GetFileFailure(), when the file is as it was. [any]
bool WriteBindings(const MidiBindings& bindings, const NK::CString& path);

}  // namespace Kivora
