#include "libmidi/portmidi/DeviceWatch.h"

#include <algorithm>

namespace LibMidi {

using NK::Platform::SequencerAddress;
using NK::Platform::SequencerPort;

namespace {
bool Contains(const std::vector<SequencerAddress>& list, const SequencerAddress& address) {
    return std::find(list.begin(), list.end(), address) != list.end();
}
}  // namespace

DeviceWatch::DeviceWatch(SequencerLister lister, const std::optional<Ports>& atStart, std::string name, bool isInput,
                         std::size_t ordinal)
    : lister_(std::move(lister)), name_(std::move(name)), isInput_(isInput) {
    if (!atStart) {
        return;
    }
    for (const SequencerPort& port : *atStart) {
        if (IsOfDevice(port) && ordinal-- == 0) {
            place_ = port.address;
            return;
        }
    }
}

bool DeviceWatch::IsOfDevice(const SequencerPort& port) const {
    return port.name == name_ && (isInput_ ? port.sends : port.receives);
}

const SequencerPort* DeviceWatch::FindInPlace(const Ports& ports) const {
    const auto found = std::find_if(ports.begin(), ports.end(), [this](const SequencerPort& port) {
        return port.address == place_ && IsOfDevice(port);
    });
    return found == ports.end() ? nullptr : &*found;
}

DeviceWatch::Addresses DeviceWatch::FindOthers(const Ports& ports) const {
    Addresses others;
    for (const SequencerPort& port : ports) {
        if (IsOfDevice(port) && port.address != place_) {
            others.push_back(port.address);
        }
    }
    return others;
}

const DeviceWatch::Addresses& DeviceWatch::ConnectionsOf(const SequencerPort& port) const {
    return isInput_ ? port.listeners : port.senders;
}

DeviceWatch::Addresses DeviceWatch::GetConnections() const {
    const std::optional<Ports> ports = lister_();
    const SequencerPort* const device = ports ? FindInPlace(*ports) : nullptr;
    return device != nullptr ? ConnectionsOf(*device) : Addresses();
}

void DeviceWatch::BeforeOpening() {
    connections_ = GetConnections();
}

void DeviceWatch::AfterOpening() {
    Addresses now = GetConnections();
    std::erase_if(now, [this](const SequencerAddress& other) { return Contains(connections_, other); });
    connections_ = std::move(now);
    others_.reset();
}

DeviceWatch::Presence DeviceWatch::Look() {
    const std::optional<Ports> ports = place_ ? lister_() : std::nullopt;
    if (!ports) {
        return Presence::kUnknown;
    }
    const SequencerPort* const device = FindInPlace(*ports);
    if (device == nullptr) {
        const Addresses others = FindOthers(*ports);
        if (!others_) {
            others_ = others;
        }
        const bool hasCome = std::any_of(others.begin(), others.end(),
                                         [this](const SequencerAddress& other) { return !Contains(*others_, other); });
        return hasCome ? Presence::kElsewhere : Presence::kAway;
    }
    const bool isCut = !connections_.empty() &&
                       std::none_of(connections_.begin(), connections_.end(),
                                    [&](const SequencerAddress& own) { return Contains(ConnectionsOf(*device), own); });
    return others_ || isCut ? Presence::kReturned : Presence::kThere;
}

}  // namespace LibMidi
