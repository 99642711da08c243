// From one preset to the next.
#pragma once

#include "nk/nk_string.h"

namespace Kivora {

class EngineControls;

/// Walks through the presets as they are listed by name, the factory's first, and round again. [gui]
class PresetSteps {
public:
    /// The controls are not owned.
    explicit PresetSteps(EngineControls& controls) : controls_(controls) {}

    /// Loads the one after the current preset, or before it for -1; the first or the last where none is current. One
    /// that cannot be loaded is passed over. False where none can be loaded.
    bool Step(int by);

private:
    EngineControls& controls_;
    NK::CString name_;  ///< what was loaded last here, which may bear the name of another one
    bool factory_ = false;
};

}  // namespace Kivora
