// Listeners that one thread calls while any thread adds and removes them.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <thread>
#include <vector>

#include "nk/nk_critical_section.h"
#include "nk/nk_sleep.h"

namespace LibMidi {

/// A list of listeners, not owned, in the order of their registration; duplicates are not checked. One thread at a
/// time calls them. A listener may remove any listener from inside its call, and delete itself after having removed
/// itself.
template <class Listener>
class ListenerList {
public:
    explicit ListenerList(NK::CSleeper& sleeper) : sleeper_(sleeper) {}

    /// [any]
    void Add(Listener* listener) {
        const CLockGuard guard(lock_);
        listeners_.push_back(listener);
    }

    /// [any]
    bool IsEmpty() const {
        const CLockGuard guard(lock_);
        return listeners_.empty();
    }

    /// Removes the first equal entry, if any. On return no call to the listener is in progress, unless this is called
    /// from inside that call. [any]
    void Remove(Listener* listener) {
        if (RemoveEntry(listener)) {
            ++waiting_;
            while (IsCalledElsewhere(listener)) {
                sleeper_.Sleep(1);
            }
            --waiting_;
        }
    }

    /// Whether a Remove() waits for a call to end. [any]
    bool IsRemoving() const { return waiting_.load() != 0; }

    /// Calls `call` with each listener in order, with no lock held. A listener added meanwhile is called too.
    template <class Call>
    void ForEach(const Call& call) {
        for (Listener* listener = Begin(); listener != nullptr; listener = Next()) {
            call(*listener);
        }
    }

private:
    /// Whether the caller has to wait for a call in progress.
    bool RemoveEntry(Listener* listener) {
        const CLockGuard guard(lock_);
        const auto entry = std::find(listeners_.begin(), listeners_.end(), listener);
        if (entry != listeners_.end()) {
            if (static_cast<std::size_t>(entry - listeners_.begin()) < next_) {
                --next_;
            }
            listeners_.erase(entry);
        }
        return current_ == listener && caller_ != std::this_thread::get_id();
    }

    bool IsCalledElsewhere(const Listener* listener) const {
        const CLockGuard guard(lock_);
        return current_ == listener;
    }

    Listener* Begin() {
        const CLockGuard guard(lock_);
        caller_ = std::this_thread::get_id();
        next_ = 0;
        return Take();
    }

    Listener* Next() {
        const CLockGuard guard(lock_);
        return Take();
    }

    Listener* Take() NK_REQUIRES(lock_) {
        current_ = next_ < listeners_.size() ? listeners_[next_++] : nullptr;
        return current_;
    }

    NK::CSleeper& sleeper_;
    mutable CCriticalSection lock_;
    std::vector<Listener*> listeners_ NK_GUARDED_BY(lock_);
    std::size_t next_ NK_GUARDED_BY(lock_) = 0;
    Listener* current_ NK_GUARDED_BY(lock_) = nullptr;  ///< the one whose call is in progress
    std::thread::id caller_ NK_GUARDED_BY(lock_);
    std::atomic<int> waiting_{0};
};

}  // namespace LibMidi
