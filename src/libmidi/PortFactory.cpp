#include "libmidi/PortFactory.h"
#include "nk/nk_thread_role.h"

#include <algorithm>
#include <utility>

namespace LibMidi {

/// The ports of all sets in order.
class PortFactory::PortView : public MIDIPortWalker {
public:
    explicit PortView(const std::vector<std::unique_ptr<MIDIPortsImpl>>& sets) {
        for (const auto& set : sets) {
            if (set == nullptr) {
                continue;
            }
            for (MIDIPortIterator iterator(&set->GetPorts()); iterator.HasNext();) {
                ports_.push_back(iterator.Next());
            }
        }
    }

    std::uint32_t GetCount() const override { return static_cast<std::uint32_t>(ports_.size()); }
    MIDIPort* GetPort(std::uint32_t index) const override { return index < ports_.size() ? ports_[index] : nullptr; }

private:
    std::vector<MIDIPort*> ports_;
};

PortFactory::PortFactory(std::vector<BackendCreator> creators) : creators_(std::move(creators)) {
}

PortFactory::~PortFactory() = default;

bool PortFactory::Refresh() {
    NK_ASSERT_THREAD_ROLE(gui);
    Clear();
    return Build();
}

bool PortFactory::Rescan() {
    NK_ASSERT_THREAD_ROLE(gui);
    view_.reset();
    for (auto& set : sets_) {
        if (set != nullptr && !set->StaysThroughRescan()) {
            set.reset();
        } else if (set != nullptr) {
            set->Update();
        }
    }
    return Build();
}

void PortFactory::Update() {
    NK_ASSERT_THREAD_ROLE(gui);
    if (view_ == nullptr) {
        return;
    }
    for (const auto& set : sets_) {
        if (set != nullptr) {
            set->Update();
        }
    }
    view_ = std::make_unique<PortView>(sets_);
}

void PortFactory::TellOfDevices(std::function<void()> tell) {
    NK_ASSERT_THREAD_ROLE(gui);
    tell_ = std::move(tell);
    for (const auto& set : sets_) {
        if (set != nullptr) {
            set->TellOfDevices(tell_);
        }
    }
}

bool PortFactory::Build() {
    sets_.resize(creators_.size());
    for (std::size_t index = 0; index < creators_.size(); ++index) {
        if (sets_[index] != nullptr) {
            continue;
        }
        try {
            sets_[index] = creators_[index]();
            if (sets_[index] != nullptr && tell_) {
                sets_[index]->TellOfDevices(tell_);
            }
        } catch (const NK::CException&) {
            sets_[index].reset();
        }
    }
    if (std::all_of(sets_.begin(), sets_.end(), [](const auto& set) { return set == nullptr; })) {
        return false;
    }
    view_ = std::make_unique<PortView>(sets_);
    return true;
}

void PortFactory::Clear() {
    view_.reset();
    sets_.clear();
}

const MIDIPortContainer* PortFactory::GetPortList() const {
    return view_.get();
}

bool PortFactory::HasPorts() const {
    return view_ != nullptr && view_->GetCount() != 0;
}

const MIDIPortsImpl* PortFactory::FindSetOf(const MIDIPort* port) const {
    for (const auto& set : sets_) {
        if (set == nullptr || port == nullptr) {
            continue;
        }
        for (MIDIPortIterator iterator(&set->GetPorts()); iterator.HasNext();) {
            if (iterator.Next() == port) {
                return set.get();
            }
        }
    }
    return nullptr;
}

bool PortFactory::IsFixed(const MIDIPort* port) const {
    const MIDIPortsImpl* const set = FindSetOf(port);
    return set != nullptr && set->IsFixed();
}

bool PortFactory::StaysThroughRescan(const MIDIPort* port) const {
    const MIDIPortsImpl* const set = FindSetOf(port);
    return set != nullptr && set->StaysThroughRescan();
}

MIDIInPort* PortFactory::GetDefaultInput() const {
    for (const auto& set : sets_) {
        if (MIDIInPort* port = set != nullptr ? set->GetDefaultInput() : nullptr) {
            return port;
        }
    }
    return nullptr;
}

MIDIOutPort* PortFactory::GetDefaultOutput() const {
    for (const auto& set : sets_) {
        if (MIDIOutPort* port = set != nullptr ? set->GetDefaultOutput() : nullptr) {
            return port;
        }
    }
    return nullptr;
}

}  // namespace LibMidi
