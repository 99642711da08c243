#include "engine/OutputConnection.h"

namespace Kivora {

bool OutputConnection::Open(LibMidi::MIDIOutPort& port, LibMidi::MIDIPlayer& player, const PortList& list) {
    if (port.Open() != LibMidi::kSuccess) {
        return false;
    }
    Attach(port, player);
    port_ = &port;
    name_ = port.GetName();
    index_ = list.GetOutputNames().Find(name_);
    return true;
}

void OutputConnection::Attach(LibMidi::MIDIOutPort& port, LibMidi::MIDIPlayer& player) {
    follower_.emplace(port);
    binding_ = player.AttachOutput(&*follower_);
}

void OutputConnection::Detach(LibMidi::MIDIPlayer& player) {
    if (binding_ >= 0) {
        player.DetachOutput(binding_);
    }
}

void OutputConnection::Close() {
    follower_.reset();
    if (port_ != nullptr) {
        port_->Close();
        port_ = nullptr;
    }
    binding_ = -1;
    index_ = -1;
    isLost_ = false;
}

void OutputConnection::Leave(LibMidi::MIDIPlayer& player) {
    Detach(player);
    port_->Close();
}

bool OutputConnection::Return(LibMidi::MIDIPlayer& player) {
    Attach(*port_, player);
    if (port_->Open() != LibMidi::kSuccess || !player.Start()) {
        return false;
    }
    isLost_ = false;
    return true;
}

void OutputConnection::Follow(const PortList& list) {
    if (port_ != nullptr) {
        index_ = list.GetOutputNames().Find(name_);
        return;
    }
    index_ = -1;
    if (const LibMidi::MIDIOutPort* const meant = list.FindOutput(name_)) {
        name_ = meant->GetName();
    }
}

void OutputConnection::Strand(bool isGone, bool isKept) {
    if (!follower_) {
        return;
    }
    const LibMidi::OpenSounds sounding = follower_->GetSounding();
    if (!isGone) {
        follower_->EndSounding();
    }
    if (sounding.IsAny() && (isKept || follower_->GetSounding().IsAny())) {
        stranded_ = sounding;
        strandedName_ = name_;
    }
}

LibMidi::MIDIOutPort* OutputConnection::FindStranded(const PortList& list) const {
    return HasStranded() ? list.FindOutput(strandedName_) : nullptr;
}

bool OutputConnection::EndStrandedOn(LibMidi::MIDIOutPort& port) const {
    if (port.Open() != LibMidi::kSuccess) {
        return false;
    }
    bool ended = true;
    stranded_.VisitEnds([&port, &ended](NK::MIDI::TMIDIMessage message) {
        const auto ending = LibMidi::MIDIEvent::FromMessage(message, 0);
        ended = port.Write(&ending, 1) == LibMidi::kSuccess && ended;
    });
    port.Close();
    return ended;
}

}  // namespace Kivora
