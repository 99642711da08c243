#include "engine/EngineControls.h"

void Use(Kivora::EngineControls& controls) {
#ifdef KIVORA_MISTAKE
    controls.GetEngine().SetPatch(5, 0);
#else
    controls.SetPatch(controls.GetEngine().GetPatch(1), 0);
#endif
}
