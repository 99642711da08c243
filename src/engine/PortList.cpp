#include "engine/PortList.h"

#include <utility>

#include "nk/nk_exception.h"

namespace Kivora {

namespace {
/// The creators, such that `threw` tells afterwards whether one of them ended with an exception.
std::vector<LibMidi::BackendCreator> Watch(const std::vector<LibMidi::BackendCreator>& backends,
                                           const std::shared_ptr<bool>& threw) {
    std::vector<LibMidi::BackendCreator> watched;
    watched.reserve(backends.size());
    for (const LibMidi::BackendCreator& create : backends) {
        watched.emplace_back([create, threw] {
            try {
                return create();
            } catch (const NK::CException&) {
                *threw = true;
                throw;
            }
        });
    }
    return watched;
}
}  // namespace

PortList::Made PortList::Make(const std::vector<LibMidi::BackendCreator>& backends, std::function<void()> tell) {
    const auto threw = std::make_shared<bool>(false);
    factory_ = std::make_unique<LibMidi::PortFactory>(Watch(backends, threw));
    factory_->TellOfDevices(std::move(tell));
    if (!factory_->Refresh()) {
        if (*threw) {
            return Made::kRefused;
        }
        factory_.reset();
        return Made::kNothing;
    }
    return factory_->HasPorts() ? Made::kHasPorts : Made::kNoPorts;
}

void PortList::Clear() {
    factory_.reset();
    inputs_.Clear();
    outputs_.Clear();
}

LibMidi::MIDIInPort* PortList::FindInput(const NK::CString& name) const {
    const LibMidi::MIDIPortContainer* const ports = GetPorts();
    return ports != nullptr ? ports->FindInputByName(name) : nullptr;
}

LibMidi::MIDIOutPort* PortList::FindOutput(const NK::CString& name) const {
    const LibMidi::MIDIPortContainer* const ports = GetPorts();
    return ports != nullptr ? ports->FindOutputByName(name) : nullptr;
}

bool PortList::ListNames() {
    inputs_.Clear();
    outputs_.Clear();
    const LibMidi::MIDIPortContainer* const ports = GetPorts();
    if (ports == nullptr) {
        return true;
    }
    for (LibMidi::MIDIPortIterator next(ports); next.HasNext();) {
        const LibMidi::MIDIPort* port = next.Next();
        if (port == nullptr) {
            return false;
        }
        const std::uint32_t flags = port->GetFlags();
        if ((flags & LibMidi::kUnavailableFlag) != 0) {
            continue;
        }
        if ((flags & LibMidi::kInput) != 0) {
            inputs_.Push(port->GetName());
        }
        if ((flags & LibMidi::kOutput) != 0) {
            outputs_.Push(port->GetName());
        }
    }
    return true;
}

}  // namespace Kivora
