#include "engine/EngineControls.h"
#include "engine/TakeJournal.h"

void Use(Kivora::EngineControls& controls) {
#ifdef KIVORA_MISTAKE
    controls.GetTakes()->Refuse(1);
#else
    controls.RefuseTake(controls.GetTakes()->GetLatest());
#endif
}
