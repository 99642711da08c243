#include "engine/values/PatchShelf.h"

#include <algorithm>
#include <charconv>
#include <sstream>
#include <string>
#include <system_error>

#include "engine/values/VoiceSlots.h"

namespace Kivora {

namespace {

constexpr const wchar_t* kSection = L"Kivora_Patches";
constexpr const wchar_t* kLastUsedKey = L"LastUsed";
constexpr const wchar_t* kFavoritesKey = L"Favorites";

bool IsPatch(int patch) {
    return patch >= VoiceSlots::kFirstPatch && patch <= VoiceSlots::kLastPatch;
}

std::vector<int> ReadPatches(const NK::CIniFile& section, const wchar_t* key) {
    std::vector<int> patches;
    if (const std::optional<NK::CString> text = section.GetString(key)) {
        std::istringstream words(text->ToUtf8());
        for (std::string word; words >> word;) {
            int patch = 0;
            const char* const end = word.data() + word.size();
            if (std::from_chars(word.data(), end, patch) == std::from_chars_result{end, std::errc()}) {
                patches.push_back(patch);
            }
        }
    }
    return patches;
}

void WritePatches(NK::CIniFile& section, const wchar_t* key, const std::vector<int>& patches) {
    NK::CString text;
    for (const int patch : patches) {
        text += (text.IsEmpty() ? NK::CString() : NK::CString(L" ")) + NK::CString::FromInt(patch);
    }
    if (!text.IsEmpty() || section.GetString(key)) {
        section.SetString(key, text);
    }
}

}  // namespace

void PatchShelf::NoteUse(int patch) {
    if (IsPatch(patch)) {
        std::erase(lastUsed_, patch);
        lastUsed_.insert(lastUsed_.begin(), patch);
        lastUsed_.resize(std::min(lastUsed_.size(), kLastUsed));
    }
}

void PatchShelf::SetFavorite(int patch, bool on) {
    std::erase(favorites_, patch);
    if (on && IsPatch(patch)) {
        favorites_.insert(std::upper_bound(favorites_.begin(), favorites_.end(), patch), patch);
    }
}

PatchShelf PatchShelf::Read(NK::CIniFile& file) {
    PatchShelf shelf;
    if (file.SelectSection(kSection)) {
        std::vector<int> used = ReadPatches(file, kLastUsedKey);
        std::for_each(used.rbegin(), used.rend(), [&shelf](int patch) { shelf.NoteUse(patch); });
        for (const int patch : ReadPatches(file, kFavoritesKey)) {
            shelf.SetFavorite(patch, true);
        }
    }
    return shelf;
}

void PatchShelf::Write(NK::CIniFile& file) const {
    if (*this == PatchShelf() && !file.SelectSection(kSection)) {
        return;
    }
    file.SelectOrAddSection(kSection);
    WritePatches(file, kLastUsedKey, lastUsed_);
    WritePatches(file, kFavoritesKey, favorites_);
}

}  // namespace Kivora
