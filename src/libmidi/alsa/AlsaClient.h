// The program as a client of the ALSA sequencer.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "libmidi/alsa/AlsaSeqApi.h"
#include "libmidi/ListenerList.h"
#include "nk/nk_sleep.h"

namespace LibMidi {

/// The input port's side of the thread that takes what arrives. In a round come what arrived and what was lost, in
/// order, then the news, then the delivery. [input]
class AlsaReceiver {
public:
    virtual ~AlsaReceiver() = default;
    /// For all ports of the client.
    virtual void Take(const std::vector<snd_seq_event_t>& events) = 0;
    /// The client's buffer ran over, and everything in it is lost.
    virtual void TakeLoss() = 0;
    /// Clients, ports or connections have come or gone.
    virtual void TakeNews() = 0;
    virtual void Deliver() = 0;
};

/// Is told that clients, ports or connections have come or gone. [input]
class AlsaWatcher {
public:
    virtual ~AlsaWatcher() = default;
    virtual void OnNews() = 0;
};

/// A port of another client that anybody may connect to.
struct AlsaListedPort {
    snd_seq_addr_t address{};
    std::string client;
    std::string port;
    bool sends = false;
    bool receives = false;
};

/// One client with two ports that other programs connect to and from, "Kivora LX out" and "Kivora LX in", for as long
/// as this exists. It is named "Kivora LX", a second instance's "Kivora LX (2)". The ports that are opened have a port
/// each that nobody else may connect. One thread waits for what arrives, and nothing is done while nothing does. [any]
class AlsaClient {
public:
    /// Whether the thread runs, or the rounds are called by hand.
    enum class Threads { kRun, kByHand };

    explicit AlsaClient(AlsaSeqApi& api = RealAlsaSeqApi(), NK::CSleeper& sleeper = NK::SystemSleeper(),
                        Threads threads = Threads::kRun);
    /// Nobody may be listening any more.
    ~AlsaClient();
    AlsaClient(const AlsaClient&) = delete;
    AlsaClient& operator=(const AlsaClient&) = delete;

    /// False where there is no sequencer; then nothing else works, and nothing is listed.
    bool IsOpen() const { return sequencer_ != nullptr; }
    /// False also after the sequencer has failed: nothing arrives any more.
    bool Works() const { return IsOpen() && !hasFailed_.load(); }
    NK::CSleeper& GetSleeper() const { return sleeper_; }

    /// What other clients show, in the sequencer's order; the system's own is left out.
    std::vector<AlsaListedPort> ListPorts() const;
    bool IsThere(snd_seq_addr_t address) const;

    /// A port of ours that receives, or sends, and that only we connect; nothing when that fails.
    std::optional<snd_seq_addr_t> CreateReceiver();
    std::optional<snd_seq_addr_t> CreateSender();
    void DeletePort(snd_seq_addr_t own);
    /// True also where such a connection is already.
    bool Connect(snd_seq_addr_t sender, snd_seq_addr_t receiver);
    bool IsConnected(snd_seq_addr_t sender, snd_seq_addr_t receiver) const;
    snd_seq_addr_t GetPublicSender() const { return publicSender_; }
    snd_seq_addr_t GetPublicReceiver() const { return publicReceiver_; }

    /// Sends at once, past all queues. False when the receiver does not take it.
    bool Send(snd_seq_event_t& event);

    /// On return from the removals no call is in progress, unless they are called from inside it.
    void AddReceiver(AlsaReceiver& receiver) { receivers_.Add(&receiver); }
    void RemoveReceiver(AlsaReceiver& receiver) { receivers_.Remove(&receiver); }
    void AddWatcher(AlsaWatcher& watcher) { watchers_.Add(&watcher); }
    void RemoveWatcher(AlsaWatcher& watcher) { watchers_.Remove(&watcher); }

    /// Takes what has arrived, up to a limit, and hands it on; whether there may be more. [input]
    bool RunInputRound();

private:
    class InputThread;

    void Open();
    void TakeName();
    bool IsNameTaken(const std::string& name, int highestClient) const;
    std::optional<snd_seq_addr_t> CreatePort(const char* name, unsigned int capabilities);
    void HandOver();
    bool IsNews(const snd_seq_event_t& event) const;
    void Fail();

    AlsaSeqApi& api_;
    NK::CSleeper& sleeper_;
    snd_seq_t* sequencer_ = nullptr;
    int id_ = -1;
    snd_seq_addr_t publicSender_{};
    snd_seq_addr_t publicReceiver_{};
    snd_seq_addr_t announcements_{};  ///< ours, connected from the system's
    std::atomic<bool> hasFailed_{false};
    ListenerList<AlsaReceiver> receivers_;
    ListenerList<AlsaWatcher> watchers_;
    std::vector<snd_seq_event_t> arrived_;  ///< of the thread that runs the rounds
    std::unique_ptr<InputThread> thread_;
};

inline bool operator==(snd_seq_addr_t one, snd_seq_addr_t other) {
    return one.client == other.client && one.port == other.port;
}

}  // namespace LibMidi
