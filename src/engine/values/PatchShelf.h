// The patches that a player reaches for. [owner]
#pragma once

#include <cstddef>
#include <vector>

#include "nk/nk_ini_file.h"

namespace Kivora {

/// The patches that were chosen last, the latest first, and the favorites, by number: -1 (the drum kit) and 0..127.
/// Others are left out. Plain value; whoever owns one says what guards it.
class PatchShelf {
public:
    static constexpr std::size_t kLastUsed = 8;

    const std::vector<int>& GetLastUsed() const { return lastUsed_; }
    const std::vector<int>& GetFavorites() const { return favorites_; }
    void NoteUse(int patch);
    void SetFavorite(int patch, bool on);

    bool operator==(const PatchShelf&) const = default;

    /// From and to a section of its own, which is added where something stands on the shelf.
    static PatchShelf Read(NK::CIniFile& file);
    void Write(NK::CIniFile& file) const;

private:
    std::vector<int> lastUsed_;
    std::vector<int> favorites_;
};

}  // namespace Kivora
