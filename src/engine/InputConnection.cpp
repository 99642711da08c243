#include "engine/InputConnection.h"

namespace Kivora {

bool InputConnection::Open(LibMidi::MIDIInPort& port, LibMidi::MIDIPortDataListener& listener, const PortList& list) {
    if (port.Open() != LibMidi::kSuccess) {
        return false;
    }
    port_.store(&port);
    port.AddListener(&listener);
    name_ = port.GetName();
    index_ = list.GetInputNames().Find(name_);
    return true;
}

void InputConnection::Close(LibMidi::MIDIPortDataListener& listener) {
    if (LibMidi::MIDIInPort* const port = port_.load()) {
        port->RemoveListener(&listener);
        port->Close();
        port_.store(nullptr);
    }
    index_ = -1;
    isLost_ = false;
}

bool InputConnection::Reopen() {
    LibMidi::MIDIInPort* const port = port_.load();
    port->Close();
    isLost_ = port->Open() != LibMidi::kSuccess;
    return !isLost_;
}

void InputConnection::Follow(const PortList& list) {
    if (port_.load() != nullptr) {
        index_ = list.GetInputNames().Find(name_);
        return;
    }
    index_ = -1;
    if (const LibMidi::MIDIInPort* const meant = list.FindInput(name_)) {
        name_ = meant->GetName();
    }
}

}  // namespace Kivora
