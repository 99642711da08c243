// What the input ports on the ALSA sequencer share.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "libmidi/alsa/AlsaClient.h"
#include "libmidi/OpenSounds.h"
#include "libmidi/QueuedInPort.h"
#include "nk/nk_critical_section.h"

namespace LibMidi {

/// Takes what is sent to one port of the client, and knows of each sender what it holds: when it goes, or is cut off,
/// its keys and pedals are ended by messages in its place. What each of several senders holds is told apart by the
/// events' source. A subclass says who is connected to the port.
class AlsaInPort : public QueuedInPort, private AlsaReceiver {
public:
    ~AlsaInPort() override = default;

    struct SenderName {
        snd_seq_addr_t address{};
        NK::CString name;
    };

    /// The names under which senders are listed now. [gui]
    void SetSenderNames(std::vector<SenderName> names);
    /// That of the sender as it is listed; where nobody has listed it yet, as it would be, with a number behind it
    /// where several are called the same.
    const NK::CString& GetSourceName(std::uint8_t source) const override;

protected:
    explicit AlsaInPort(std::shared_ptr<AlsaClient> client);

    bool OnOpened() override;
    void OnClosing() override;

    /// Whether what `sender` sends to `receiver`, a port of ours, is for this port. [input]
    virtual bool IsMeant(snd_seq_addr_t sender, snd_seq_addr_t receiver) const = 0;
    /// The other port of this one to which comes too what `sender` sends to `receiver`. [input]
    virtual std::optional<snd_seq_addr_t> FindOtherWay(snd_seq_addr_t /*sender*/, snd_seq_addr_t /*receiver*/) const {
        return std::nullopt;
    }
    /// Whether what has sent to `receiver` is still connected as it was. [input]
    bool IsStillThere(snd_seq_addr_t sender, snd_seq_addr_t receiver, bool wasConnected) const;
    /// Devices have come or gone; called once when the port is opened. [gui] [input]
    virtual void FollowDevices() {}

    AlsaClient& GetClient() const { return *client_; }

private:
    struct Sender {
        snd_seq_addr_t address;
        snd_seq_addr_t receiver;
        bool isConnected;  ///< else it sends without a connection
        bool isDouble;     ///< and what comes this way is passed over
        bool isGone;
        std::uint8_t source;
        OpenSounds held;
    };
    struct Source {
        snd_seq_addr_t address{};
        bool isInUse = false;
        std::optional<NK::CString> name;  ///< once somebody has asked; empty for one that is not listed
        unsigned int listing = 0;         ///< in which it was called so
    };

    void Take(const std::vector<snd_seq_event_t>& events) final;
    void TakeLoss() final;
    void TakeNews() final;
    void Deliver() final;

    void EndHeld(Sender& sender);
    Sender& FindSender(snd_seq_addr_t address, snd_seq_addr_t receiver);
    /// A number for events of that sender; 0 when there are too many.
    std::uint8_t FindSource(snd_seq_addr_t address);
    NK::CString FindName(snd_seq_addr_t address) const;

    const std::shared_ptr<AlsaClient> client_;
    std::vector<Sender> senders_;  ///< that have sent something; of the input thread while the port is open
    /// By number less one; of the input thread too. Asking for a name remembers it.
    mutable std::vector<Source> sources_;
    mutable CCriticalSection namesLock_;
    std::vector<SenderName> names_ NK_GUARDED_BY(namesLock_);
    std::atomic<unsigned int> listing_{0};  ///< how often the names were set
};

}  // namespace LibMidi
