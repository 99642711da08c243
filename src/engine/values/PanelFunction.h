// What a control of a MIDI keyboard can do on the panel. [any]
#pragma once

#include <array>
#include <cstddef>
#include <optional>

#include "nk/nk_string.h"

namespace Kivora {

enum class EPanelFunction {
    kVolume1,
    kVolume2,
    kTempo,
    kPatch1Up,
    kPatch1Down,
    kPatch2Up,
    kPatch2Down,
    kPresetUp,
    kPresetDown,
    kRecord,  ///< begins a recording, or ends the one that runs
    kPanic,
    kNextVoiceMode,  ///< single, dual, split and round again
    kSingle,
    kDual,
    kSplit,
    kArpeggio,  ///< this and the next three: on or off
    kArpeggiator1,
    kArpeggiator2,
    kLatch
};

inline constexpr std::size_t kPanelFunctions = 19;

/// Whether it is set to a value, as by a knob; else it acts at each press, as of a button.
constexpr bool IsValue(EPanelFunction function) {
    return function == EPanelFunction::kVolume1 || function == EPanelFunction::kVolume2 ||
           function == EPanelFunction::kTempo;
}

/// All of them, in the order in which they are shown.
constexpr std::array<EPanelFunction, kPanelFunctions> GetPanelFunctions() {
    std::array<EPanelFunction, kPanelFunctions> functions{};
    for (std::size_t index = 0; index < kPanelFunctions; ++index) {
        functions[index] = static_cast<EPanelFunction>(index);
    }
    return functions;
}

/// Its name in files.
const wchar_t* GetFileName(EPanelFunction function);
/// In any letter case.
std::optional<EPanelFunction> FindPanelFunction(const NK::CString& fileName);

}  // namespace Kivora
