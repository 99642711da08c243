// Whether a device of PortMidi's is still there. [owner]
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "nk/platform/platform_sequencer.h"

namespace LibMidi {

/// Lists what is on the sequencer now; nothing where that is not to be known.
using SequencerLister = std::function<std::optional<std::vector<NK::Platform::SequencerPort>>()>;

/// Follows one device by the sequencer's own list: PortMidi lists devices only when it is started, and tells of none
/// that goes. For one thread.
class DeviceWatch {
public:
    enum class Presence {
        kUnknown,    ///< nobody can say
        kThere,      ///< as when it was opened
        kAway,       ///< gone
        kReturned,   ///< it was gone, and stands where it stood: it can be opened again
        kElsewhere,  ///< a device of its name has come that PortMidi does not know
    };

    using Ports = std::vector<NK::Platform::SequencerPort>;

    /// `atStart` is what was listed when PortMidi was started: the device is the `ordinal`th (from 0) of that name and
    /// direction there.
    DeviceWatch(SequencerLister lister, const std::optional<Ports>& atStart, std::string name, bool isInput,
                std::size_t ordinal);

    /// To be called before and after the device is opened. The connection that it has afterwards and did not have
    /// before is this program's: it goes with the device, however soon that comes back.
    void BeforeOpening();
    void AfterOpening();

    Presence Look();

private:
    using Addresses = std::vector<NK::Platform::SequencerAddress>;

    bool IsOfDevice(const NK::Platform::SequencerPort& port) const;
    const NK::Platform::SequencerPort* FindInPlace(const Ports& ports) const;
    Addresses FindOthers(const Ports& ports) const;
    const Addresses& ConnectionsOf(const NK::Platform::SequencerPort& port) const;
    Addresses GetConnections() const;

    const SequencerLister lister_;
    const std::string name_;
    const bool isInput_;
    std::optional<NK::Platform::SequencerAddress> place_;
    Addresses connections_;            ///< those of this program
    std::optional<Addresses> others_;  ///< of the same name when the device went; nothing while it is there
};

}  // namespace LibMidi
