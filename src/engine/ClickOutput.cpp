#include "engine/ClickOutput.h"

#include <utility>

#include "libmidi/MIDIPlayerQueue.h"
#include "midi/TMIDIMessage.h"

namespace Kivora {

namespace {
constexpr NK::MIDI::TMIDIMessage kReset{NK::MIDI::TMIDIMessage::kSystemReset, 0, 0, 0};
}

bool ClickOutput::Open(LibMidi::MIDIOutPort& port, std::unique_ptr<LibMidi::MIDIPlayer> player, NK::CTimeSource& time) {
    Close();
    if (!player || port.Open() != LibMidi::kSuccess) {
        return false;
    }
    player->SetTimeSource(&time);
    player->AttachOutput(&port);
    if (!player->Start()) {
        port.Close();
        return false;
    }
    sink_ = player->GetSink();
    player_ = std::move(player);
    port_ = &port;
    return true;
}

void ClickOutput::Close() {
    if (!player_) {
        return;
    }
    player_->Stop();
    sink_.reset();
    player_.reset();
    const auto reset = LibMidi::MIDIEvent::FromMessage(kReset, 0);
    port_->Write(&reset, 1);
    port_->Close();
    port_ = nullptr;
}

}  // namespace Kivora
