#include "engine/EngineControls.h"

Kivora::TakeGrid Use(Kivora::EngineControls& controls) {
    return controls.GetEngine().WithExtras([](auto& extras) {
#ifdef KIVORA_MISTAKE
        extras.GetGrid()->Add(0, {}, true);
#endif
        return extras.GetGrid()->Get();
    });
}
