#include "engine/ClickOutput.h"

#include <utility>

#include "libmidi/MIDIPlayerQueue.h"
#include "midi/TMIDIMessage.h"

namespace Kivora {

namespace {
constexpr NK::MIDI::TMIDIMessage kReset{NK::MIDI::TMIDIMessage::kSystemReset, 0, 0, 0};
}

ClickOutput::ClickOutput(LibMidi::MIDIOutPort& port, std::unique_ptr<LibMidi::MIDIPlayer> player)
    : port_(port), player_(std::move(player)), sink_(player_->GetSink()) {
}

std::unique_ptr<ClickOutput> ClickOutput::Open(LibMidi::MIDIOutPort& port, std::unique_ptr<LibMidi::MIDIPlayer> player,
                                               NK::CTimeSource& time) {
    if (!player || port.Open() != LibMidi::kSuccess) {
        return nullptr;
    }
    player->SetTimeSource(&time);
    player->AttachOutput(&port);
    if (!player->Start()) {
        port.Close();
        return nullptr;
    }
    return std::unique_ptr<ClickOutput>(new ClickOutput(port, std::move(player)));
}

ClickOutput::~ClickOutput() {
    player_->Stop();
    sink_.reset();
    player_.reset();
    const auto reset = LibMidi::MIDIEvent::FromMessage(kReset, 0);
    port_.Write(&reset, 1);
    port_.Close();
}

}  // namespace Kivora
