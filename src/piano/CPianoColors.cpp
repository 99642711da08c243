#include "piano/CPianoColors.h"

#include <array>
#include <cstddef>

namespace NK::Piano {
namespace {
using CColorTable = std::array<TKeyColor, 12>;

constexpr CColorTable kRainbow = {{
    {255, 0, 0, 0},    // C
    {0, 0, 0, 0},      // C#
    {255, 112, 0, 0},  // D
    {0, 0, 0, 0},      // D#
    {255, 255, 0, 0},  // E
    {0, 255, 0, 0},    // F
    {0, 0, 0, 0},      // F#
    {0, 165, 255, 0},  // G
    {0, 0, 0, 0},      // G#
    {0, 0, 255, 0},    // A
    {0, 0, 0, 0},      // A#
    {144, 0, 255, 0},  // B
}};

constexpr CColorTable kScriabin = {{
    {213, 0, 0, 0},      // C
    {72, 11, 255, 0},    // C#
    {255, 255, 64, 0},   // D
    {159, 0, 159, 0},    // D#
    {170, 255, 213, 0},  // E
    {159, 0, 28, 0},     // F
    {64, 159, 255, 0},   // F#
    {255, 175, 11, 0},   // G
    {159, 0, 213, 0},    // G#
    {117, 255, 117, 0},  // A
    {106, 0, 53, 0},     // A#
    {117, 231, 255, 0},  // B
}};

const TKeyColor* EntryOf(const CColorTable& table, int note) noexcept {
    return &table[static_cast<std::size_t>(note % 12)];
}
}  // namespace

const TKeyColor* CRainbowColors::GetNoteColor(int note) const noexcept {
    return EntryOf(kRainbow, note);
}

const TKeyColor* CScriabinColors::GetNoteColor(int note) const noexcept {
    return EntryOf(kScriabin, note);
}

const CPianoColors& GetRainbowColors() {
    static const CRainbowColors colors;
    return colors;
}

const CPianoColors& GetScriabinColors() {
    static const CScriabinColors colors;
    return colors;
}

}  // namespace NK::Piano
