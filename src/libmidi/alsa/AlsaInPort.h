// What the input ports on the ALSA sequencer share.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "libmidi/alsa/AlsaClient.h"
#include "libmidi/OpenSounds.h"
#include "libmidi/QueuedInPort.h"

namespace LibMidi {

/// Takes what is sent to one port of the client, and knows of each sender what it holds: when it goes, or is cut off,
/// its keys and pedals are ended by messages in its place. A note that two senders hold ends with the last of them. A
/// subclass says who is connected to the port.
class AlsaInPort : public QueuedInPort, private AlsaReceiver {
public:
    ~AlsaInPort() override = default;

    /// That of the sender as it would be listed, with a number behind it where several are called the same.
    const NK::CString& GetSourceName(std::uint8_t source) const final;

protected:
    explicit AlsaInPort(std::shared_ptr<AlsaClient> client);

    bool OnOpened() override;
    void OnClosing() override;

    /// Whether what `sender` sends to `receiver`, a port of ours, is for this port. [input]
    virtual bool IsMeant(snd_seq_addr_t sender, snd_seq_addr_t receiver) const = 0;
    /// Whether what `sender` sends to `receiver` comes to another port of this one too. [input]
    virtual bool ComesTwice(snd_seq_addr_t, snd_seq_addr_t) const { return false; }
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
    };

    void Take(const std::vector<snd_seq_event_t>& events) final;
    void TakeLoss() final;
    void TakeNews() final;
    void Deliver() final;

    /// Whether a message ends a note that a sender goes on holding, on the same channel.
    bool IsHeldOn(const MIDIEvent& end) const;
    void EndHeld(Sender& sender);
    Sender& FindSender(snd_seq_addr_t address, snd_seq_addr_t receiver);
    /// A number for events of that sender; 0 when there are too many.
    std::uint8_t FindSource(snd_seq_addr_t address);

    const std::shared_ptr<AlsaClient> client_;
    std::vector<Sender> senders_;  ///< that have sent something; of the input thread while the port is open
    /// By number less one; of the input thread too. Asking for a name remembers it.
    mutable std::vector<Source> sources_;
};

}  // namespace LibMidi
