#include "engine/EngineControls.h"

void Use(Kivora::EngineControls& controls) {
#ifdef KIVORA_MISTAKE
    controls.GetEngine().WithExtras([](auto& extras) { extras.song.Stop(); });
#else
    if (controls.GetEngine().WithExtras([](auto& extras) { return extras.song.NeedsTick(); })) {
        controls.StopSong();
    }
#endif
}
