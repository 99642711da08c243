#include "libmidi/MIDIPortContainer.h"

#include <utility>

namespace LibMidi {

namespace {

/// The first available port with the direction's flag that `accepts`; null if none.
template <class Port, class Predicate>
Port* FindPort(const MIDIPortContainer& ports, PortFlags direction, const Predicate& accepts) {
    for (MIDIPortIterator iterator(&ports); iterator.HasNext();) {
        MIDIPort* port = iterator.Next();
        if (port == nullptr) {
            continue;
        }
        const std::uint32_t flags = port->GetFlags();
        if ((flags & kUnavailableFlag) == 0 && (flags & direction) != 0 && accepts(*port, flags)) {
            if (auto* found = dynamic_cast<Port*>(port)) {
                return found;
            }
        }
    }
    return nullptr;
}

template <class Port>
Port* FindFirst(const MIDIPortContainer& ports, PortFlags direction, bool allowOpen) {
    return FindPort<Port>(ports, direction, [allowOpen](const MIDIPort&, std::uint32_t flags) {
        return allowOpen || (flags & kOpen) == 0;
    });
}

template <class Port>
Port* FindByName(const MIDIPortContainer& ports, PortFlags direction, const NK::CString& name) {
    Port* const named = FindPort<Port>(
        ports, direction, [&name](const MIDIPort& port, std::uint32_t) { return port.GetName().Compare(name) == 0; });
    return named != nullptr ? named : FindPort<Port>(ports, direction, [&name](const MIDIPort& port, std::uint32_t) {
        return port.HadName(name);
    });
}

}  // namespace

MIDIInPort* MIDIPortWalker::FindFirstInput(bool allowOpen) const {
    return FindFirst<MIDIInPort>(*this, kInput, allowOpen);
}

MIDIOutPort* MIDIPortWalker::FindFirstOutput(bool allowOpen) const {
    return FindFirst<MIDIOutPort>(*this, kOutput, allowOpen);
}

MIDIInPort* MIDIPortWalker::FindInputByName(const NK::CString& name) const {
    return FindByName<MIDIInPort>(*this, kInput, name);
}

MIDIOutPort* MIDIPortWalker::FindOutputByName(const NK::CString& name) const {
    return FindByName<MIDIOutPort>(*this, kOutput, name);
}

void MIDIPortWalker::CloseAll() {
    for (MIDIPortIterator iterator(this); iterator.HasNext();) {
        if (MIDIPort* port = iterator.Next()) {
            port->Close();
        }
    }
}

std::uint32_t MIDIPortContainerImpl::GetCount() const {
    return static_cast<std::uint32_t>(ports_.size());
}

MIDIPort* MIDIPortContainerImpl::GetPort(std::uint32_t index) const {
    return index < ports_.size() ? ports_[index].get() : nullptr;
}

void MIDIPortContainerImpl::Append(std::unique_ptr<MIDIPort> port) {
    ports_.push_back(std::move(port));
}

void MIDIPortContainerImpl::Clear() {
    ports_.clear();
}

MIDIPortIterator::MIDIPortIterator(const MIDIPortContainer* ports) : ports_(ports) {
    if (ports_ == nullptr) {
        throw CMIDIException(L"Null MIDI port list in port iterator");
    }
}

bool MIDIPortIterator::HasNext() const {
    return next_ < ports_->GetCount();
}

MIDIPort* MIDIPortIterator::Next() {
    return ports_->GetPort(next_++);
}

}  // namespace LibMidi
