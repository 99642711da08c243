#include "app/DeviceBackend.h"

#include <cstdlib>
#include <memory>
#include <string_view>

#include "libmidi/alsa/AlsaBackend.h"
#include "libmidi/portmidi/PortMIDIBackend.h"

namespace Kivora {

namespace {

bool IsPortMidiWanted() {
    const char* const wanted = std::getenv("KIVORA_MIDI");
    return wanted != nullptr && std::string_view(wanted) == "portmidi";
}

}  // namespace

LibMidi::BackendCreator MakeDeviceBackend() {
    if (IsPortMidiWanted()) {
        return LibMidi::PortMIDIBackend();
    }
    return [client = std::make_shared<std::shared_ptr<LibMidi::AlsaClient>>()] {
        if (*client == nullptr || !(*client)->Works()) {
            *client = std::make_shared<LibMidi::AlsaClient>();
        }
        return (*client)->Works() ? LibMidi::MakeAlsaBackend(*client)() : LibMidi::PortMIDIBackend()();
    };
}

}  // namespace Kivora
