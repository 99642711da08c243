// Which controls of which MIDI keyboards do what on the panel. [owner]
#pragma once

#include <cstddef>
#include <vector>

#include "engine/values/MidiControl.h"
#include "engine/values/PanelFunction.h"
#include "nk/nk_ini_file.h"
#include "nk/nk_string.h"

namespace Kivora {

struct MidiBinding {
    NK::CString device;  ///< its name, as MidiBindings::KeepName() gives it
    MidiControl control;
    EPanelFunction function = EPanelFunction::kVolume1;
    bool latches = false;  ///< the button sends on and off in turn: each is a press

    bool operator==(const MidiBinding&) const = default;
};

/// Of a device each control has one function, and each function one control. Plain value.
class MidiBindings {
public:
    static constexpr std::size_t kMost = 1000;
    static constexpr std::uint32_t kLongestName = 200;  ///< of a device, in characters

    const std::vector<MidiBinding>& GetAll() const { return bindings_; }
    bool IsEmpty() const { return bindings_.empty(); }
    /// Null where the control is not bound.
    const MidiBinding* Find(const NK::CString& device, const MidiControl& control) const;

    /// In place of what the control did, and of what did this on the device. False, nothing changed, for what cannot be
    /// bound: a reserved control, a value to what is no controller, no name, more than kMost.
    bool Bind(MidiBinding binding);
    void Clear(EPanelFunction function);
    /// Nothing where the control has another function, or none.
    void Unbind(const MidiBinding& binding);
    void SetLatching(EPanelFunction function, bool latches);
    /// The others' devices are bound as there, as far as kMost allows; what is bound on other devices stays. How many
    /// were taken over.
    std::size_t TakeOver(const MidiBindings& others);

    bool operator==(const MidiBindings&) const = default;

    /// A device's name as a section of a file keeps it: one line, no blanks around, cut to kLongestName.
    static NK::CString KeepName(const NK::CString& name);

    /// Lines that were not read.
    struct Refused {
        std::size_t damaged = 0;  ///< not understood, or they cannot be bound beside those before them
        std::size_t unknown = 0;  ///< what they bind to is in words that mean nothing, as of a newer version
    };
    /// A section for each device, a key for each control.
    static MidiBindings Read(const NK::CIniFile& file, Refused& refused);
    /// Into what was read: comments, what means nothing here and what is bound as before stay where they are.
    void Write(NK::CIniFile& file) const;

private:
    /// Whether its control has a function, or its function a control, of the device.
    bool HasPlaceOf(const MidiBinding& binding) const;

    std::vector<MidiBinding> bindings_;
};

}  // namespace Kivora
