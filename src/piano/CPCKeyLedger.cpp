#include "piano/CPCKeyLedger.h"

#include <algorithm>

namespace NK::Piano {

bool CPCKeyLedger::IsDown(std::uint64_t key) const noexcept {
    return std::any_of(held_.begin(), held_.end(), [key](const THeldKey& held) { return held.key == key; });
}

bool CPCKeyLedger::IsByPlace(std::uint64_t key) const noexcept {
    return std::any_of(held_.begin(), held_.end(),
                       [key](const THeldKey& held) { return held.key == key && held.byPlace; });
}

void CPCKeyLedger::Press(std::uint64_t key, std::uint8_t note, bool byPlace) {
    Release(key);
    held_.push_back({key, note, byPlace});
}

std::optional<std::uint8_t> CPCKeyLedger::Release(std::uint64_t key) {
    const auto held =
        std::find_if(held_.begin(), held_.end(), [key](const THeldKey& candidate) { return candidate.key == key; });
    if (held == held_.end()) {
        return std::nullopt;
    }
    const std::uint8_t note = held->note;
    held_.erase(held);
    return note;
}

std::vector<std::uint64_t> CPCKeyLedger::GetKeys() const {
    std::vector<std::uint64_t> keys;
    for (const THeldKey& held : held_) {
        keys.push_back(held.key);
    }
    return keys;
}

std::vector<std::uint8_t> CPCKeyLedger::EndNotes() {
    std::vector<std::uint8_t> notes;
    for (THeldKey& held : held_) {
        if (held.note != kNoNote) {
            notes.push_back(held.note);
            held.note = kNoNote;
        }
    }
    return notes;
}

}  // namespace NK::Piano
