#include "libmidi/alsa/AlsaInPort.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "libmidi/alsa/AlsaEvents.h"
#include "libmidi/alsa/AlsaNames.h"

namespace LibMidi {

namespace {
constexpr std::size_t kMostSources = 255;
}  // namespace

AlsaInPort::AlsaInPort(std::shared_ptr<AlsaClient> client)
    : QueuedInPort(client->GetSleeper()), client_(std::move(client)) {
}

bool AlsaInPort::OnOpened() {
    BeginReceiving();
    senders_.clear();
    sources_.clear();
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
    senders_.push_back({address,
                        receiver,
                        client_->IsConnected(address, receiver),
                        FindOtherWay(address, receiver).has_value(),
                        false,
                        FindSource(address),
                        {}});
    return senders_.back();
}

std::uint8_t AlsaInPort::FindSource(snd_seq_addr_t address) {
    const auto isIts = [&](const Source& source) { return source.isInUse && source.address == address; };
    auto found = std::find_if(sources_.begin(), sources_.end(), isIts);
    if (found == sources_.end()) {
        found = std::find_if_not(sources_.begin(), sources_.end(), [](const Source& source) { return source.isInUse; });
        if (found != sources_.end()) {
            *found = {address, true, std::nullopt, 0};
        } else if (sources_.size() < kMostSources) {
            sources_.push_back({address, true, std::nullopt, 0});
            found = std::prev(sources_.end());
        } else {
            return 0;
        }
    }
    return static_cast<std::uint8_t>(std::distance(sources_.begin(), found) + 1);
}

const NK::CString& AlsaInPort::GetSourceName(std::uint8_t source) const {
    if (source == 0 || source > sources_.size()) {
        return GetName();
    }
    Source& asked = sources_[static_cast<std::size_t>(source) - 1];
    const unsigned int listing = listing_.load();
    if (!asked.name || asked.listing != listing) {
        asked.name = FindName(asked.address);
        asked.listing = listing;
    }
    return asked.name->IsEmpty() ? GetName() : *asked.name;
}

void AlsaInPort::SetSenderNames(std::vector<SenderName> names) {
    const CLockGuard guard(namesLock_);
    names_ = std::move(names);
    ++listing_;
}

NK::CString AlsaInPort::FindName(snd_seq_addr_t address) const {
    {
        const CLockGuard guard(namesLock_);
        const auto listed = std::find_if(names_.begin(), names_.end(),
                                         [address](const SenderName& name) { return name.address == address; });
        if (listed != names_.end()) {
            return listed->name;
        }
    }
    return AlsaNames::FindSender(*client_, address);
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
        VisitInputEvents(event, [this, &sender](const MIDIEvent& message) {
            sender.held.Follow(message.ToMessage());
            MIDIEvent sent = message;
            sent.source = sender.source;
            QueueEvent(sent);
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
    for (Sender& sender : senders_) {
        sender.isGone = !IsStillThere(sender.address, sender.receiver, sender.isConnected);
        if (sender.isGone) {
            EndHeld(sender);
        }
    }
    std::erase_if(senders_, [](const Sender& sender) { return sender.isGone; });
    for (Source& source : sources_) {
        source.isInUse = std::any_of(senders_.begin(), senders_.end(),
                                     [&](const Sender& sender) { return sender.address == source.address; });
    }
    FollowDevices();
    for (std::size_t index = 0; index < senders_.size(); ++index) {  // FindSender() adds to them
        const Sender& sender = senders_[index];
        senders_[index].isConnected = sender.isConnected || client_->IsConnected(sender.address, sender.receiver);
        const auto otherWay = FindOtherWay(sender.address, sender.receiver);
        if (!sender.isDouble && otherWay) {
            senders_[index].isDouble = true;
            const OpenSounds held = std::exchange(senders_[index].held, {});
            FindSender(sender.address, *otherWay).held.Add(held);  // its endings come that way
        }
    }
}

void AlsaInPort::EndHeld(Sender& sender) {
    const OpenSounds held = std::exchange(sender.held, {});
    held.VisitEnds([this, &sender](NK::MIDI::TMIDIMessage message) {
        MIDIEvent end = MIDIEvent::FromMessage(message, 0);
        end.source = sender.source;
        QueueEvent(end);
    });
}

void AlsaInPort::Deliver() {
    DeliverQueued();
}

}  // namespace LibMidi
