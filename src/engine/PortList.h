// The ports that there are, by name.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "libmidi/PortFactory.h"
#include "nk/nk_string.h"

namespace Kivora {

/// The ports of all backends, and the names of those that can be opened as they were listed last. Empty until Make().
/// Whoever owns one says what guards it. [gui]
class PortList {
public:
    enum class Made {
        kHasPorts,
        kNoPorts,
        kRefused,  ///< every backend failed, one of them with an exception
        kNothing   ///< every backend failed, and said no more; the list is empty
    };
    /// Destroys the former ports, of which none may be open, and makes every backend's; lists no names. `tell` is
    /// called when devices may have come or gone, on a backend's thread.
    Made Make(const std::vector<LibMidi::BackendCreator>& backends, std::function<void()> tell);
    /// Destroys the ports, and forgets the names.
    void Clear();

    /// Null before Make() and after Clear().
    LibMidi::PortFactory* GetFactory() const { return factory_.get(); }
    /// Null where there is no list.
    const LibMidi::MIDIPortContainer* GetPorts() const { return factory_ ? factory_->GetPortList() : nullptr; }
    /// Null where no port has that name.
    LibMidi::MIDIInPort* FindInput(const NK::CString& name) const;
    LibMidi::MIDIOutPort* FindOutput(const NK::CString& name) const;
    bool IsFixed(const LibMidi::MIDIPort* port) const { return factory_ && factory_->IsFixed(port); }
    bool StaysThroughRescan(const LibMidi::MIDIPort* port) const {
        return factory_ && factory_->StaysThroughRescan(port);
    }

    /// Lists the names anew, of the ports that are available. False at a port that is null: those behind it are left
    /// out.
    bool ListNames();
    const NK::CStringArray& GetInputNames() const { return inputs_; }
    const NK::CStringArray& GetOutputNames() const { return outputs_; }

private:
    std::unique_ptr<LibMidi::PortFactory> factory_;
    NK::CStringArray inputs_;
    NK::CStringArray outputs_;
};

}  // namespace Kivora
