#include "engine/PortSelection.h"

namespace Kivora {

int FindByCandidates(const std::vector<NK::CString>& candidates, const NK::CStringArray& names) {
    for (const NK::CString& candidate : candidates) {
        for (std::uint32_t i = 0; i < names.GetSize(); ++i) {
            if (names[i].Find(candidate.View()) >= 0) {
                return static_cast<int>(i);
            }
        }
    }
    return -1;
}

}  // namespace Kivora
