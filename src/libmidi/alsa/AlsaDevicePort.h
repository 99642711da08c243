// A port of another client, wherever it is just now.
#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>

#include "libmidi/alsa/AlsaClient.h"
#include "libmidi/MIDIPortImpl.h"

namespace LibMidi {

/// What the ports of a device share, in either direction. The device is known by its name: where it is, and whether,
/// changes while the port lives. [gui]
class AlsaDevicePort : public virtual MIDIPortImpl {
public:
    /// Nothing while the device is not there.
    void SetPlace(std::optional<snd_seq_addr_t> place) { place_ = place; }
    std::optional<snd_seq_addr_t> GetPlace() const { return place_; }
    /// The name without the number that tells it from another of that name.
    void SetGivenName(std::string name) { givenName_ = std::move(name); }
    const std::string& GetGivenName() const { return givenName_; }
    /// As the PortMidi backend lists it; empty where only a number could be different.
    void SetFormerName(NK::CString name) { formerName_ = std::move(name); }
    bool HadName(const NK::CString& name) const override {
        return !formerName_.IsEmpty() && formerName_.Compare(name) == 0;
    }

    bool WasOpened() const { return wasOpened_; }
    DeviceState LookAtDevice() override;

protected:
    explicit AlsaDevicePort(std::shared_ptr<AlsaClient> client) : client_(std::move(client)) {}

    bool OpenDevice() override NK_REQUIRES(deviceLock_);
    void CloseDevice() override NK_REQUIRES(deviceLock_);
    /// The two ends of the connection, of which `own` is ours.
    virtual std::optional<snd_seq_addr_t> CreateOwn() = 0;
    virtual bool Connect(snd_seq_addr_t own, snd_seq_addr_t device) = 0;
    virtual bool IsConnected(snd_seq_addr_t own, snd_seq_addr_t device) const = 0;

    AlsaClient& GetClient() const { return *client_; }
    /// Of the open port.
    snd_seq_addr_t GetOwn() const { return own_; }
    snd_seq_addr_t GetAddress() const { return device_; }
    void SetFailed() { hasFailed_ = true; }

private:
    const std::shared_ptr<AlsaClient> client_;
    std::string givenName_;
    NK::CString formerName_;
    std::optional<snd_seq_addr_t> place_;
    bool wasOpened_ = false;
    snd_seq_addr_t own_{};     ///< these two do not change while the port is open
    snd_seq_addr_t device_{};  ///< where it was at the opening
    std::atomic<bool> hasFailed_{false};
};

}  // namespace LibMidi
