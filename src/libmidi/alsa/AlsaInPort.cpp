#include "libmidi/alsa/AlsaInPort.h"

#include <algorithm>
#include <utility>

#include "libmidi/alsa/AlsaEvents.h"

namespace LibMidi {

AlsaInPort::AlsaInPort(std::shared_ptr<AlsaClient> client)
    : QueuedInPort(client->GetSleeper()), client_(std::move(client)) {
}

bool AlsaInPort::OnOpened() {
    BeginReceiving();
    senders_.clear();
    client_->AddReceiver(*this);
    FollowDevices();
    return true;
}

void AlsaInPort::OnClosing() {
    SetClosing(true);
    client_->RemoveReceiver(*this);
    ClearQueue();
}

AlsaInPort::Sender& AlsaInPort::FindSender(snd_seq_addr_t address, snd_seq_addr_t receiver) {
    const auto found = std::find_if(senders_.begin(), senders_.end(), [&](const Sender& sender) {
        return sender.address == address && sender.receiver == receiver;
    });
    if (found != senders_.end()) {
        return *found;
    }
    senders_.push_back({address, receiver, client_->IsConnected(address, receiver), ComesTwice(address, receiver), {}});
    return senders_.back();
}

void AlsaInPort::Take(const std::vector<snd_seq_event_t>& events) {
    for (const snd_seq_event_t& event : events) {
        if (!IsMeant(event.source, event.dest)) {
            continue;
        }
        Sender& sender = FindSender(event.source, event.dest);
        if (sender.isDouble) {
            continue;
        }
        OpenSounds& held = sender.held;
        VisitInputEvents(event, [this, &held](const MIDIEvent& message) {
            held.Follow(message.ToMessage());
            QueueEvent(message);
        });
    }
}

void AlsaInPort::TakeLoss() {
    QueueLoss();
    for (Sender& sender : senders_) {
        sender.held = {};  // who is told of the loss ends it all
    }
}

bool AlsaInPort::IsStillThere(snd_seq_addr_t sender, snd_seq_addr_t receiver, bool wasConnected) const {
    return client_->Works() && (wasConnected ? client_->IsConnected(sender, receiver) : client_->IsThere(sender));
}

void AlsaInPort::TakeNews() {
    std::erase_if(senders_, [this](const Sender& sender) {
        if (IsStillThere(sender.address, sender.receiver, sender.isConnected)) {
            return false;
        }
        sender.held.VisitEnds([this](NK::MIDI::TMIDIMessage end) { QueueEvent(MIDIEvent::FromMessage(end, 0)); });
        return true;
    });
    FollowDevices();
    for (Sender& sender : senders_) {
        sender.isConnected = sender.isConnected || client_->IsConnected(sender.address, sender.receiver);
        if (!sender.isDouble && ComesTwice(sender.address, sender.receiver)) {
            sender.isDouble = true;
            sender.held = {};  // its endings come the other way
        }
    }
}

void AlsaInPort::Deliver() {
    DeliverQueued();
}

}  // namespace LibMidi
