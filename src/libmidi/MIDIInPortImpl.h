// What the input ports of every backend share.
#pragma once

#include <atomic>
#include <cstdint>

#include "libmidi/ListenerList.h"
#include "libmidi/MIDIPortImpl.h"
#include "nk/nk_sleep.h"

namespace LibMidi {

/// An input port with its data listeners.
class MIDIInPortImpl : public virtual MIDIPortImpl, public MIDIInPort {
public:
    explicit MIDIInPortImpl(NK::CSleeper& sleeper) : listeners_(sleeper) {}

    void AddListener(MIDIPortDataListener* listener) final { listeners_.Add(listener); }
    void RemoveListener(MIDIPortDataListener* listener) final { listeners_.Remove(listener); }
    bool IsClosing() const final { return closing_.load() || listeners_.IsRemoving(); }
    std::uint32_t GetLostCount() const final { return lostCount_.load(std::memory_order_relaxed); }

protected:
    /// Calls every listener in list order. [input]
    void NotifyData(const MIDIEvent* events, std::int32_t count);
    void NotifyDataLost(std::uint32_t lostCount);

    void SetClosing(bool on) { closing_.store(on); }
    void SetLostCount(std::uint32_t count) { lostCount_.store(count, std::memory_order_relaxed); }

private:
    ListenerList<MIDIPortDataListener> listeners_;
    std::atomic<bool> closing_{false};
    std::atomic<std::uint32_t> lostCount_{0};
};

}  // namespace LibMidi
