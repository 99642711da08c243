// The devices of PortMidi's backend, over a made-up library.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "libmidi/portmidi/PortMIDIImpl.h"
#include "libmidi/portmidi/PortMIDIInPort.h"
#include "unit/engine/EngineRig.h"
#include "unit/engine/Studio.h"
#include "unit/libmidi/portmidi/FakePortMidi.h"

namespace KivoraTest {

class PortMidiStudio : public Studio {
public:
    explicit PortMidiStudio(EngineRig& rig) : rig_(rig) {
        api_.keepWritten = false;
        api_.onOpen = [this](PmDeviceID device) {
            return IsSynth(device) && FailsToOpen(ToSynth(device)) ? pmHostError : pmNoError;
        };
        api_.onWrite = [this](PmDeviceID device, PmMessage message) {
            if (FailsToWrite(ToSynth(device))) {
                return pmHostError;
            }
            onWrite(ToSynth(device), {0, static_cast<std::uint8_t>(Pm_MessageStatus(message)),
                                      static_cast<std::uint8_t>(Pm_MessageData1(message)),
                                      static_cast<std::uint8_t>(Pm_MessageData2(message))});
            return pmNoError;
        };
    }

    LibMidi::BackendCreator GetCreator() override {
        return [this] {
            auto made = std::make_unique<LibMidi::PortMIDIImpl>(
                api_, rig_.time, LibMidi::PortMIDIImpl::Threads::kByHand, [] { return std::nullopt; });
            ports_ = made.get();
            return made;
        };
    }
    void Play(int input, int, const std::vector<LibMidi::MIDIEvent>& events) override {
        for (const LibMidi::MIDIEvent& event : events) {
            api_.Receive(ToDevice(input), Pm_Message(event.status, event.data1, event.data2));
        }
        LetArrive(input);
    }
    void Lose(int input) override {
        api_.Receive(ToDevice(input), pmBufferOverflow);
        LetArrive(input);
    }

private:
    static constexpr std::size_t kFirstKeyboard = kSynths;

    static bool IsSynth(PmDeviceID device) { return static_cast<std::size_t>(device) < kSynths; }
    static std::size_t ToSynth(PmDeviceID device) { return static_cast<std::size_t>(device); }
    static std::size_t ToDevice(int input) { return kFirstKeyboard + static_cast<std::size_t>(input); }

    /// One message a round, as the input's timer reads them.
    void LetArrive(int input) {
        while (api_.GetUnread(ToDevice(input)) > 0) {
            ports_->RunInputRound();
        }
        const auto& ports = ports_->GetPorts();
        for (std::uint32_t i = 0; i < ports.GetCount(); ++i) {
            if (auto* const port = dynamic_cast<LibMidi::PortMIDIInPort*>(ports.GetPort(i))) {
                port->DeliverRound();
            }
        }
    }

    EngineRig& rig_;
    LibMidiTest::CFakePortMidi api_{{{"Software synthesizer", false, true},
                                     {"Other synthesizer", false, true},
                                     {"Keyboard", true, false},
                                     {"Other keyboard", true, false}}};
    LibMidi::PortMIDIImpl* ports_ = nullptr;  ///< the set that was made last
};

}  // namespace KivoraTest
