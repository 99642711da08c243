#include "engine/values/RecentPresets.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Kivora {

namespace {

constexpr const wchar_t* kSection = L"Kivora_RecentPresets";
constexpr const wchar_t* kSortsByUse = L"SortByUse";
constexpr const wchar_t* kFactory = L"F:";
constexpr const wchar_t* kUser = L"U:";
constexpr std::uint32_t kMarkLength = 2;

NK::CString KeyOf(std::size_t place) {
    return L"Used" + NK::CString::FromInt(static_cast<std::int64_t>(place));
}

}  // namespace

void RecentPresets::Note(const NK::CString& name, bool factory) {
    const Preset used{name, factory};
    std::erase(presets_, used);
    presets_.insert(presets_.begin(), used);
    presets_.resize(std::min(presets_.size(), kMost));
    stepped_.reset();
}

void RecentPresets::Play() {
    if (const std::optional<Preset> used = std::exchange(stepped_, std::nullopt)) {
        Note(used->name, used->factory);
    }
}

std::size_t RecentPresets::GetPlace(const NK::CString& name, bool factory) const {
    const auto found = std::find(presets_.begin(), presets_.end(), Preset{name, factory});
    return static_cast<std::size_t>(std::distance(presets_.begin(), found));
}

RecentPresets RecentPresets::Read(NK::CIniFile& file) {
    RecentPresets read;
    if (!file.SelectSection(kSection)) {
        return read;
    }
    file.GetBool(kSortsByUse, read.sortsByUse);
    for (std::size_t place = 0; place < kMost; ++place) {
        const std::optional<NK::CString> text = file.GetString(KeyOf(place));
        const NK::CString mark = text ? text->Left(kMarkLength) : NK::CString();
        if (mark == kFactory || mark == kUser) {
            read.presets_.push_back({text->Mid(kMarkLength), mark == kFactory});
        }
    }
    return read;
}

void RecentPresets::Write(NK::CIniFile& file) const {
    if (presets_.empty() && !sortsByUse && !file.SelectSection(kSection)) {
        return;
    }
    file.SelectOrAddSection(kSection);
    for (std::size_t place = 0; place < presets_.size(); ++place) {
        const Preset& preset = presets_[place];
        file.SetString(KeyOf(place), (preset.factory ? kFactory : kUser) + preset.name);
    }
    if (bool kept = false; sortsByUse || file.GetBool(kSortsByUse, kept)) {
        file.SetInt(kSortsByUse, sortsByUse ? 1 : 0);
    }
}

}  // namespace Kivora
