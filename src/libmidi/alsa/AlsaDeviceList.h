// The ports of the devices of one direction, by names that stay.
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "libmidi/alsa/AlsaNames.h"
#include "libmidi/PortNames.h"

namespace LibMidi {

/// A device keeps its port and its name as long as it is there, whatever comes and goes beside it. The second one of a
/// name gets the name with " (2)" behind it, and so on; one that comes back gets the port that it had, unless another
/// one has taken its name meanwhile. A port that has been open once lives as long as the list. [gui]
template <class Port>
class AlsaDeviceList {
public:
    explicit AlsaDeviceList(std::shared_ptr<AlsaClient> client) : client_(std::move(client)) {}

    /// `listed` is what is there now, in order.
    void Update(const std::vector<AlsaListedPort>& listed) {
        present_.clear();
        for (const auto& port : ports_) {
            const auto isIt = [&](const AlsaListedPort& device) {
                return port->GetPlace() && *port->GetPlace() == device.address &&
                       port->GetGivenName() == AlsaNames::Compose(device);
            };
            if (std::none_of(listed.begin(), listed.end(), isIt)) {
                port->SetPlace(std::nullopt);
            }
        }
        for (const AlsaListedPort& device : listed) {
            present_.push_back(&FindOrMake(device));
        }
        std::erase_if(ports_, [](const auto& port) { return !port->GetPlace() && !port->WasOpened(); });
        NameAsFormerly(listed);
    }

    /// Those that are there, in the order in which they were listed.
    const std::vector<Port*>& GetPresent() const { return present_; }

private:
    Port* FindAt(snd_seq_addr_t address) const {
        const auto found = std::find_if(ports_.begin(), ports_.end(), [&](const auto& port) {
            return port->GetPlace() && *port->GetPlace() == address;
        });
        return found == ports_.end() ? nullptr : found->get();
    }

    Port* FindNamed(const NK::CString& name) const {
        const auto found = std::find_if(ports_.begin(), ports_.end(),
                                        [&](const auto& port) { return port->GetName().Compare(name) == 0; });
        return found == ports_.end() ? nullptr : found->get();
    }

    Port& FindOrMake(const AlsaListedPort& device) {
        if (Port* const there = FindAt(device.address)) {
            return *there;
        }
        const std::string given = AlsaNames::Compose(device);
        const NK::CString name = FindFreeName(NK::CString::FromUtf8(given.c_str()), [this](const NK::CString& free) {
            const Port* const other = FindNamed(free);
            return other != nullptr && other->GetPlace();
        });
        Port* port = FindNamed(name);
        if (port == nullptr) {
            ports_.push_back(std::make_unique<Port>(client_, name));
            port = ports_.back().get();
        }
        port->SetPlace(device.address);
        port->SetGivenName(given);
        return *port;
    }

    void NameAsFormerly(const std::vector<AlsaListedPort>& listed) {
        std::vector<NK::CString> names;
        for (std::size_t index = 0; index < listed.size(); ++index) {
            const NK::CString own = NK::CString::FromUtf8(listed[index].port.c_str());
            names.push_back(FindFreeName(own, [&names](const NK::CString& free) {
                return std::any_of(names.begin(), names.end(),
                                   [&free](const NK::CString& name) { return name.Compare(free) == 0; });
            }));
            const bool isTheSame = present_[index]->GetGivenName() == listed[index].port;
            present_[index]->SetFormerName(isTheSame ? NK::CString() : names.back());
        }
    }

    std::shared_ptr<AlsaClient> client_;
    std::vector<std::unique_ptr<Port>> ports_;
    std::vector<Port*> present_;
};

}  // namespace LibMidi
