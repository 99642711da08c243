// What each held key of the computer keyboard has begun.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace NK::Piano {

/// Remembers by physical key which note its press began, so that its release ends that note whatever SHIFT, the layout
/// or the octave shift did meanwhile. A key may be down without a note. [gui]
class CPCKeyLedger {
public:
    static constexpr std::uint8_t kNoNote = 255;

    /// The native scan code; the key code where the scan code is unknown (0).
    static constexpr std::uint64_t KeyId(std::uint32_t scanCode, int keyCode) noexcept {
        constexpr std::uint64_t kByKeyCode = std::uint64_t{1} << 32;
        return scanCode != 0 ? scanCode : kByKeyCode | static_cast<std::uint32_t>(keyCode);
    }

    bool IsDown(std::uint64_t key) const noexcept;
    /// Whether the note of a key that is down was found by its place.
    bool IsByPlace(std::uint64_t key) const noexcept;
    /// Replaces what the key began before.
    void Press(std::uint64_t key, std::uint8_t note, bool byPlace = false);
    /// The key's note (kNoNote without one), or nothing when the key is not down.
    std::optional<std::uint8_t> Release(std::uint64_t key);
    /// The notes begun and not ended, in the order of their presses; the keys stay down without a note.
    std::vector<std::uint8_t> EndNotes();
    std::vector<std::uint64_t> GetKeys() const;  ///< that are down
    void Clear() noexcept { held_.clear(); }

private:
    struct THeldKey {
        std::uint64_t key;
        std::uint8_t note;
        bool byPlace;
    };
    std::vector<THeldKey> held_;
};

}  // namespace NK::Piano
