#include "libmidi/PortFactory.h"

void Use() {
    LibMidi::PortFactory factory({});
#ifdef KIVORA_MISTAKE
    LibMidi::PortFactory copy(factory);
#endif
}
