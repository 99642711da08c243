// The factory that joins the port sets of all backends.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "libmidi/MIDIPortContainer.h"

namespace LibMidi {

/// The port set of one backend: owns its ports and whatever the backend needs while they exist. [gui]
class MIDIPortsImpl {
public:
    virtual ~MIDIPortsImpl() = default;
    virtual const MIDIPortContainer& GetPorts() const = 0;
    /// The backend's default ports, or null.
    virtual MIDIInPort* GetDefaultInput() const = 0;
    virtual MIDIOutPort* GetDefaultOutput() const = 0;
    /// Whether its ports never come and go, so that PortFactory::Rescan() leaves the set and its open ports as they
    /// are.
    virtual bool IsFixed() const { return false; }
    /// Whether PortFactory::Rescan() leaves the set and its open ports as they are, and has the set look itself.
    virtual bool StaysThroughRescan() const { return IsFixed(); }
    /// Looks for devices and brings the list up to date. A port that has been open once lives on, listed or not.
    virtual void Update() {}
    /// `tell` is to be called when devices may have come or gone, on a thread of the backend's; nobody is told by an
    /// empty one. On return no call of the former one is in progress.
    virtual void TellOfDevices(std::function<void()> tell) { static_cast<void>(tell); }
};

/// Makes a backend's port set afresh; null, or an exception of the framework's family, when the backend cannot work.
using BackendCreator = std::function<std::unique_ptr<MIDIPortsImpl>()>;

/// Owns the backends' port sets; destroying it destroys every one. [gui]
class PortFactory {
public:
    /// The creators in the order in which their ports are listed.
    explicit PortFactory(std::vector<BackendCreator> creators);
    ~PortFactory();
    PortFactory(const PortFactory&) = delete;
    PortFactory& operator=(const PortFactory&) = delete;

    /// Destroys the old port sets and makes every backend's anew. False when every backend failed.
    bool Refresh();
    /// Looks for devices again: as Refresh(), but sets that stay are updated only.
    bool Rescan();
    /// Looks for devices where that touches no port that is open.
    void Update();
    /// What the sets call, now and when they are made anew, see MIDIPortsImpl::TellOfDevices().
    void TellOfDevices(std::function<void()> tell);
    /// Destroys the port sets.
    void Clear();
    /// All ports of all backends in order, not owned by the list; null before Refresh() or when it failed. Lives until
    /// the next Refresh(), Rescan(), Update() or Clear().
    const MIDIPortContainer* GetPortList() const;
    bool HasPorts() const;
    /// Whether `port` belongs to a fixed set, so that it lives on through Rescan(). Null belongs to none.
    bool IsFixed(const MIDIPort* port) const;
    /// The same of a set that stays through Rescan(), fixed or not.
    bool StaysThroughRescan(const MIDIPort* port) const;
    /// The first backend's that has one, else null.
    MIDIInPort* GetDefaultInput() const;
    MIDIOutPort* GetDefaultOutput() const;

private:
    class PortView;
    bool Build();
    const MIDIPortsImpl* FindSetOf(const MIDIPort* port) const;

    std::vector<BackendCreator> creators_;
    std::function<void()> tell_;
    std::vector<std::unique_ptr<MIDIPortsImpl>> sets_;  ///< one a creator, null where the backend failed
    std::unique_ptr<PortView> view_;
};

}  // namespace LibMidi
