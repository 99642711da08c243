// A client on a made-up sequencer, and a listener that keeps what it is given.
#pragma once

#include <memory>
#include <vector>

#include "libmidi/alsa/AlsaClient.h"
#include "libmidi/MIDIPort.h"
#include "support/FakePorts.h"
#include "support/VirtualTime.h"
#include "unit/libmidi/alsa/FakeAlsaSeq.h"

namespace LibMidiTest {

struct CAlsaRig {
    CFakeAlsaSeq api;
    KivoraTest::CVirtualTime time;
    std::shared_ptr<LibMidi::AlsaClient> client;

    CAlsaRig() { Open(); }
    void Open() { client = std::make_shared<LibMidi::AlsaClient>(api, time, LibMidi::AlsaClient::Threads::kByHand); }

    CFakeAlsaSeq::Address GetPublicIn() const { return {CFakeAlsaSeq::kOwnClient, client->GetPublicReceiver().port}; }
    void Plug(int number, const std::string& name) {
        api.Plug(number, name, 0, name + " MIDI 1", kSending | kReceiving);
        api.Announce(SND_SEQ_EVENT_PORT_START, {number, 0});
        client->RunInputRound();
    }
    void Unplug(int number) {
        api.Unplug(number);
        api.Announce(SND_SEQ_EVENT_PORT_EXIT, {number, 0});
        client->RunInputRound();
    }
    void Send(int number, const snd_seq_event_t& event) {
        api.Send({number, 0}, event);
        client->RunInputRound();
    }
};

/// Keeps the batches; a loss is a batch of its own: {number of losses}.
struct CBatches : LibMidi::MIDIPortDataListener {
    using Batches = std::vector<std::vector<std::uint32_t>>;

    void OnMIDIData(const LibMidi::MIDIEvent* events, std::int32_t count) override {
        std::vector<std::uint32_t> batch;
        for (std::int32_t index = 0; index < count; ++index) {
            batch.push_back(KivoraTest::BytesOf(events[index]));
        }
        batches.push_back(batch);
    }
    void OnMIDIDataLost(std::uint32_t lostCount) override { batches.push_back({lostCount}); }
    Batches Take() { return std::exchange(batches, {}); }

    Batches batches;
};

}  // namespace LibMidiTest
