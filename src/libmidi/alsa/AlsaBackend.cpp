#include "libmidi/alsa/AlsaBackend.h"

#include <utility>

#include "libmidi/alsa/AlsaImpl.h"

namespace LibMidi {

BackendCreator MakeAlsaBackend(std::shared_ptr<AlsaClient> client) {
    return [client = std::move(client)] { return std::make_unique<AlsaImpl>(client); };
}

}  // namespace LibMidi
