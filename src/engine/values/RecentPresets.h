// Which presets were used last. [owner]
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "nk/nk_ini_file.h"
#include "nk/nk_string.h"

namespace Kivora {

/// The presets that were loaded or saved last, the latest first, and whether lists of presets are sorted by that. Plain
/// value; whoever owns one says what guards it.
class RecentPresets {
public:
    static constexpr std::size_t kMost = 100;

    void Note(const NK::CString& name, bool factory);
    /// Whoever steps through the presets passes many: one counts as used as soon as something is played with it.
    void Step(const NK::CString& name, bool factory) { stepped_ = Preset{name, factory}; }
    /// Another one has come in its place.
    void ForgetStepped() { stepped_.reset(); }
    /// A note has begun.
    void Play();
    /// 0 for the latest; GetCount() for one that is not known.
    std::size_t GetPlace(const NK::CString& name, bool factory) const;
    std::size_t GetCount() const { return presets_.size(); }

    bool sortsByUse = false;

    bool operator==(const RecentPresets&) const = default;

    /// From and to a section of its own, which is added where there is something to be kept.
    static RecentPresets Read(NK::CIniFile& file);
    void Write(NK::CIniFile& file) const;

private:
    struct Preset {
        NK::CString name;
        bool factory = false;

        bool operator==(const Preset&) const = default;
    };

    std::vector<Preset> presets_;
    std::optional<Preset> stepped_;
};

}  // namespace Kivora
