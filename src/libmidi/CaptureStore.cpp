#include "libmidi/CaptureStore.h"

#include <algorithm>
#include <utility>

namespace LibMidi {

// Unlinks the rest one by one, so that a long list does not end in as deep a recursion.
CaptureStore::Chunk::~Chunk() {
    std::shared_ptr<Chunk> rest = std::move(next);
    while (rest && rest.use_count() == 1) {
        std::shared_ptr<Chunk> following = std::move(rest->next);
        rest = std::move(following);
    }
}

void CaptureStore::Append(const CapturedEvent& event) {
    const std::uint32_t place = count_ % kChunkEvents;
    if (place == 0) {
        auto chunk = std::make_shared<Chunk>();
        (last_ ? last_->next : first_) = chunk;
        last_ = std::move(chunk);
    }
    last_->events[place] = event;
    ++count_;
}

CaptureStore::View::View(std::shared_ptr<const Chunk> first, std::uint32_t count) noexcept
    : first_(std::move(first)), count_(count) {
}

void CaptureStore::View::Visit(std::uint32_t from, const std::function<void(const CapturedEvent&)>& visit) const {
    const Chunk* chunk = first_.get();
    for (std::uint32_t left = count_; left != 0;) {
        const std::uint32_t held = std::min(left, kChunkEvents);
        for (std::uint32_t place = from; place < held; ++place) {
            visit(chunk->events[place]);
        }
        from -= std::min(from, held);
        left -= held;
        // The link of the last chunk is the appending thread's.
        if (left != 0) {
            chunk = chunk->next.get();
        }
    }
}

}  // namespace LibMidi
