// An ALSA sequencer without the kernel: other clients made up by the test, and the calls that are to fail.
#pragma once

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "libmidi/alsa/AlsaSeqApi.h"

namespace LibMidiTest {

constexpr unsigned int kSending = SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ;
constexpr unsigned int kReceiving = SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE;

/// Thread-safe. The program is client 128; the system's client has its announcements.
class CFakeAlsaSeq : public LibMidi::AlsaSeqApi {
public:
    using Address = std::pair<int, int>;

    static constexpr int kOwnClient = 128;

    CFakeAlsaSeq() {
        Plug(SND_SEQ_CLIENT_SYSTEM, "System", SND_SEQ_PORT_SYSTEM_TIMER, "Timer", kSending);
        Plug(SND_SEQ_CLIENT_SYSTEM, "System", SND_SEQ_PORT_SYSTEM_ANNOUNCE, "Announce", kSending);
    }

    // The other clients.
    void Plug(int client, const std::string& clientName, int port, const std::string& portName,
              unsigned int capabilities) {
        const std::lock_guard guard(mutex_);
        clients_[client] = clientName;
        ports_[{client, port}] = {portName, capabilities};
    }
    void Unplug(int client) {
        const std::lock_guard guard(mutex_);
        clients_.erase(client);
        std::erase_if(ports_, [=](const auto& port) { return port.first.first == client; });
        std::erase_if(connections_, [=](const auto& connection) {
            return connection.first.first == client || connection.second.first == client;
        });
    }
    void Connect(Address sender, Address receiver) {
        const std::lock_guard guard(mutex_);
        connections_.insert({sender, receiver});
    }
    void Disconnect(Address sender, Address receiver) {
        const std::lock_guard guard(mutex_);
        connections_.erase({sender, receiver});
    }
    /// Reaches every port of ours that is connected from `sender`.
    void Send(Address sender, snd_seq_event_t event) {
        const std::lock_guard guard(mutex_);
        for (const auto& [from, to] : connections_) {
            if (from == sender && to.first == kOwnClient) {
                Arrive(sender, to, event);
            }
        }
    }
    /// Reaches the port without a connection.
    void SendTo(Address sender, Address receiver, snd_seq_event_t event) {
        const std::lock_guard guard(mutex_);
        Arrive(sender, receiver, event);
    }
    void Announce(snd_seq_event_type type, Address about) {
        snd_seq_event_t event{};
        event.type = static_cast<snd_seq_event_type_t>(type);
        event.data.addr = {static_cast<unsigned char>(about.first), static_cast<unsigned char>(about.second)};
        Send({SND_SEQ_CLIENT_SYSTEM, SND_SEQ_PORT_SYSTEM_ANNOUNCE}, event);
    }
    void AnnounceCut(Address sender, Address receiver) {
        snd_seq_event_t event{};
        event.type = SND_SEQ_EVENT_PORT_UNSUBSCRIBED;
        event.data.connect = {
            {static_cast<unsigned char>(sender.first), static_cast<unsigned char>(sender.second)},
            {static_cast<unsigned char>(receiver.first), static_cast<unsigned char>(receiver.second)}};
        Send({SND_SEQ_CLIENT_SYSTEM, SND_SEQ_PORT_SYSTEM_ANNOUNCE}, event);
    }
    /// The next reading fails so.
    void FailInput(int error) {
        const std::lock_guard guard(mutex_);
        input_.push_back({error, {}});
    }

    // What the program did.
    std::string GetClientName() const {
        const std::lock_guard guard(mutex_);
        const auto found = clients_.find(kOwnClient);
        return found == clients_.end() ? std::string() : found->second;
    }
    /// The numbers of the ports of ours with that name.
    std::vector<int> FindOwnPorts(const std::string& name) const {
        const std::lock_guard guard(mutex_);
        std::vector<int> numbers;
        for (const auto& [address, port] : ports_) {
            if (address.first == kOwnClient && port.name == name) {
                numbers.push_back(address.second);
            }
        }
        return numbers;
    }
    unsigned int GetCapabilities(int ownPort) const {
        const std::lock_guard guard(mutex_);
        return ports_.at({kOwnClient, ownPort}).capabilities;
    }
    std::size_t CountConnections() const {
        const std::lock_guard guard(mutex_);
        return connections_.size();
    }
    bool HasConnection(Address sender, Address receiver) const {
        const std::lock_guard guard(mutex_);
        return connections_.contains({sender, receiver});
    }
    std::vector<snd_seq_event_t> TakeSent() {
        const std::lock_guard guard(mutex_);
        return std::exchange(sent_, {});
    }

    // LibMidi::AlsaSeqApi
    int Open(snd_seq_t** sequencer) override {
        if (openResult < 0) {
            return openResult;
        }
        *sequencer = reinterpret_cast<snd_seq_t*>(this);
        const std::lock_guard guard(mutex_);
        clients_[kOwnClient] = "Client-128";
        ++opened;
        return 0;
    }
    int Close(snd_seq_t*) override {
        Unplug(kOwnClient);
        ++closed;
        return 0;
    }
    int GetClientId(snd_seq_t*) override { return kOwnClient; }
    int SetClientName(snd_seq_t*, const char* name) override {
        const std::lock_guard guard(mutex_);
        clients_[kOwnClient] = name;
        if (rival != 0) {  // takes the same name in the same moment
            clients_[std::exchange(rival, 0)] = name;
        }
        return 0;
    }
    int SetInputBufferSize(snd_seq_t*, std::size_t size) override {
        bufferSize = size;
        return 0;
    }
    int SetClientPoolInput(snd_seq_t*, std::size_t size) override {
        poolSize = size;
        return 0;
    }
    std::vector<int> GetPollDescriptors(snd_seq_t*) override { return descriptors; }
    int CreateSimplePort(snd_seq_t*, const char* name, unsigned int capabilities, unsigned int type) override {
        const std::lock_guard guard(mutex_);
        if (createsLeft-- <= 0) {
            return -ENOMEM;
        }
        int port = 0;
        while (ports_.contains({kOwnClient, port})) {
            ++port;
        }
        ports_[{kOwnClient, port}] = {name, capabilities};
        lastType = type;
        return port;
    }
    int DeleteSimplePort(snd_seq_t*, int port) override {
        const std::lock_guard guard(mutex_);
        const Address own{kOwnClient, port};
        std::erase_if(connections_, [=](const auto& one) { return one.first == own || one.second == own; });
        return ports_.erase(own) == 1 ? 0 : -EINVAL;
    }
    int QueryNextClient(snd_seq_t*, LibMidi::AlsaClientInfo& info) override {
        const std::lock_guard guard(mutex_);
        const auto next = clients_.upper_bound(info.client);
        if (next == clients_.end()) {
            return -ENOENT;
        }
        info = {next->first, next->second};
        return 0;
    }
    int QueryNextPort(snd_seq_t*, int client, int port, LibMidi::AlsaPortInfo& info) override {
        const std::lock_guard guard(mutex_);
        const auto next = ports_.upper_bound({client, port});
        if (next == ports_.end() || next->first.first != client) {
            return -ENOENT;
        }
        info = ToInfo(next->first, next->second);
        return 0;
    }
    int GetAnyPortInfo(snd_seq_t*, snd_seq_addr_t address, LibMidi::AlsaPortInfo& info) override {
        const std::lock_guard guard(mutex_);
        const auto found = ports_.find(ToPair(address));
        if (found == ports_.end()) {
            return -ENOENT;
        }
        info = ToInfo(found->first, found->second);
        return 0;
    }
    int SubscribePort(snd_seq_t*, snd_seq_addr_t sender, snd_seq_addr_t receiver) override {
        const std::lock_guard guard(mutex_);
        if (shut.contains(ToPair(receiver))) {
            return -EBUSY;
        }
        if (subscribeResult < 0 || !ports_.contains(ToPair(sender)) || !ports_.contains(ToPair(receiver))) {
            return subscribeResult < 0 ? subscribeResult : -EINVAL;
        }
        return connections_.insert({ToPair(sender), ToPair(receiver)}).second ? 0 : -EBUSY;
    }
    int GetPortSubscription(snd_seq_t*, snd_seq_addr_t sender, snd_seq_addr_t receiver) override {
        return HasConnection(ToPair(sender), ToPair(receiver)) ? 0 : -ENOENT;
    }
    int EventInput(snd_seq_t*, snd_seq_event_t** event) override {
        const std::lock_guard guard(mutex_);
        if (flood) {
            flooded_ = flood->second;
            *event = &flooded_;
            return 0;
        }
        if (input_.empty()) {
            if (onEmpty) {
                onEmpty();
            }
            return -EAGAIN;
        }
        current_ = input_.front();
        input_.pop_front();
        *event = &current_.event;
        return current_.error;
    }
    int EventOutputDirect(snd_seq_t*, snd_seq_event_t* event) override {
        const std::lock_guard guard(mutex_);
        if (outputResult < 0) {
            return outputResult;
        }
        if (event->dest.client != SND_SEQ_ADDRESS_SUBSCRIBERS && !ports_.contains(ToPair(event->dest))) {
            return -ENOENT;
        }
        if (deaf.contains(ToPair(event->dest))) {
            return -EAGAIN;
        }
        if (keepsSent) {
            sent_.push_back(*event);
        }
        if (onSent) {
            onSent(*event);
        }
        return 28;
    }

    int openResult = 0;
    int createsLeft = 1000;
    int subscribeResult = 0;
    int outputResult = 0;
    std::set<Address> shut;  ///< ports that nobody may connect to
    std::set<Address> deaf;  ///< ports that take nothing
    bool keepsSent = true;
    std::function<void(const snd_seq_event_t&)> onSent;  ///< on the sending thread
    int rival = 0;                                       ///< a client that takes our name when we do
    std::vector<int> descriptors;                        ///< for the thread; the test's
    std::function<void()> onEmpty;                       ///< on the reading thread, when nothing has arrived
    std::atomic<int> opened{0};
    std::atomic<int> closed{0};
    std::size_t poolSize = 0;
    std::size_t bufferSize = 0;
    unsigned int lastType = 0;
    /// Such an event from there whenever one is asked for.
    const std::pair<const Address, snd_seq_event_t>* flood = nullptr;

private:
    struct Port {
        std::string name;
        unsigned int capabilities = 0;
    };
    struct Arrived {
        int error = 0;
        snd_seq_event_t event{};
    };

    static Address ToPair(snd_seq_addr_t address) { return {address.client, address.port}; }
    static snd_seq_addr_t ToAddress(Address address) {
        return {static_cast<unsigned char>(address.first), static_cast<unsigned char>(address.second)};
    }
    static LibMidi::AlsaPortInfo ToInfo(Address address, const Port& port) {
        return {ToAddress(address), port.name, port.capabilities, 0};
    }
    void Arrive(Address sender, Address receiver, snd_seq_event_t event) {
        event.source = ToAddress(sender);
        event.dest = ToAddress(receiver);
        input_.push_back({0, event});
    }

    mutable std::mutex mutex_;
    std::map<int, std::string> clients_;
    std::map<Address, Port> ports_;
    std::set<std::pair<Address, Address>> connections_;
    std::deque<Arrived> input_;
    Arrived current_;
    snd_seq_event_t flooded_{};
    std::vector<snd_seq_event_t> sent_;
};

inline snd_seq_event_t NoteOn(int note, int velocity = 100) {
    snd_seq_event_t event{};
    event.type = SND_SEQ_EVENT_NOTEON;
    event.data.note = {0, static_cast<unsigned char>(note), static_cast<unsigned char>(velocity), 0, 0};
    return event;
}

inline snd_seq_event_t Pedal(int value) {
    snd_seq_event_t event{};
    event.type = SND_SEQ_EVENT_CONTROLLER;
    event.data.control = {0, {}, 64, value};
    return event;
}

}  // namespace LibMidiTest
