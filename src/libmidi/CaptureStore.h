// The store of captured events. [owner]
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>

#include "midi/TMIDIMessage.h"

namespace LibMidi {

/// An event as captured: milliseconds from the start of the capture, and the message.
struct CapturedEvent {
    std::uint32_t time;
    NK::MIDI::TMIDIMessage message;
};

/// A list of chunks: appending never copies or moves what is there. Takes 8 bytes an event and one chunk at most
/// beyond that. Not for use from several threads at once.
class CaptureStore {
    struct Chunk;

public:
    static constexpr std::uint32_t kChunkEvents = 4096;

    /// The events that were held when it was taken. It shares them, stays valid whatever becomes of the store, and may
    /// be visited on another thread while the store is appended to.
    class View {
    public:
        View() = default;  ///< of no events
        View(std::shared_ptr<const Chunk> first, std::uint32_t count) noexcept;
        std::uint32_t GetCount() const noexcept { return count_; }
        /// Calls `visit` for the events from..count-1 in order of appending.
        void Visit(std::uint32_t from, const std::function<void(const CapturedEvent&)>& visit) const;

    private:
        std::shared_ptr<const Chunk> first_;
        std::uint32_t count_ = 0;
    };

    void Append(const CapturedEvent& event);
    std::uint32_t GetCount() const noexcept { return count_; }
    View GetView() const noexcept { return {first_, count_}; }

private:
    struct Chunk {
        Chunk() = default;
        Chunk(const Chunk&) = delete;
        Chunk& operator=(const Chunk&) = delete;
        ~Chunk();

        std::array<CapturedEvent, kChunkEvents> events;
        std::shared_ptr<Chunk> next;
    };
    static_assert(sizeof(CapturedEvent) == 8);

    std::shared_ptr<Chunk> first_;
    std::shared_ptr<Chunk> last_;
    std::uint32_t count_ = 0;
};

}  // namespace LibMidi
