#include "libmidi/alsa/AlsaInPort.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "libmidi/alsa/AlsaEvents.h"
#include "libmidi/alsa/AlsaNames.h"

namespace LibMidi {

namespace {

constexpr std::size_t kMostSources = 255;

/// Which note a message ends, if it ends one.
struct NoteEnd {
    static NoteEnd Of(NK::MIDI::TMIDIMessage message) {
        using NK::MIDI::TMIDIMessage;
        const bool ends =
            message.status == TMIDIMessage::kNoteOff || (message.status == TMIDIMessage::kNoteOn && message.data2 == 0);
        return {ends, message.channel, message.data1};
    }
    friend bool operator==(const NoteEnd&, const NoteEnd&) = default;

    bool isOne;
    std::uint8_t channel;
    std::uint8_t note;
};

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
                        ComesTwice(address, receiver),
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
            *found = {address, true, std::nullopt};
        } else if (sources_.size() < kMostSources) {
            sources_.push_back({address, true, std::nullopt});
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
    if (!asked.name) {
        asked.name = AlsaNames::FindSender(*client_, asked.address);
    }
    return asked.name->IsEmpty() ? GetName() : *asked.name;
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
            if (!IsHeldOn(message)) {
                MIDIEvent sent = message;
                sent.source = sender.source;
                QueueEvent(sent);
            }
        });
    }
}

bool AlsaInPort::IsHeldOn(const MIDIEvent& end) const {
    const NoteEnd note = NoteEnd::Of(end.ToMessage());
    if (!note.isOne || senders_.size() < 2) {
        return false;
    }
    return std::any_of(senders_.begin(), senders_.end(), [&note](const Sender& sender) {
        bool holds = false;
        sender.held.VisitEnds([&](NK::MIDI::TMIDIMessage held) { holds = holds || NoteEnd::Of(held) == note; });
        return holds;
    });
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
    for (Sender& sender : senders_) {
        sender.isConnected = sender.isConnected || client_->IsConnected(sender.address, sender.receiver);
        if (!sender.isDouble && ComesTwice(sender.address, sender.receiver)) {
            sender.isDouble = true;
            sender.held = {};  // its endings come the other way
        }
    }
}

void AlsaInPort::EndHeld(Sender& sender) {
    const OpenSounds held = std::exchange(sender.held, {});
    held.VisitEnds([this, &sender](NK::MIDI::TMIDIMessage message) {
        MIDIEvent end = MIDIEvent::FromMessage(message, 0);
        end.source = sender.source;
        if (!IsHeldOn(end)) {
            QueueEvent(end);
        }
    });
}

void AlsaInPort::Deliver() {
    DeliverQueued();
}

}  // namespace LibMidi
