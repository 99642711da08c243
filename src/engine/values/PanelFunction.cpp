#include "engine/values/PanelFunction.h"

namespace Kivora {

namespace {
constexpr std::array<const wchar_t*, kPanelFunctions> kNames = {
    L"Volume1",   L"Volume2",    L"Tempo",        L"Patch1Up",     L"Patch1Down", L"Patch2Up",    L"Patch2Down",
    L"PresetUp",  L"PresetDown", L"Record",       L"Panic",        L"NextMode",   L"SingleVoice", L"DualVoices",
    L"SplitKeys", L"Arpeggio",   L"Arpeggiator1", L"Arpeggiator2", L"Latch"};
}

const wchar_t* GetFileName(EPanelFunction function) {
    return kNames[static_cast<std::size_t>(function)];
}

std::optional<EPanelFunction> FindPanelFunction(const NK::CString& fileName) {
    for (const EPanelFunction function : GetPanelFunctions()) {
        if (fileName.CompareNoCase(GetFileName(function)) == 0) {
            return function;
        }
    }
    return std::nullopt;
}

}  // namespace Kivora
