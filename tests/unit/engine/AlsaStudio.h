// The devices of the sequencer's backend, over a made-up sequencer.
#pragma once

#include <cerrno>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "libmidi/alsa/AlsaBackend.h"
#include "libmidi/alsa/AlsaEvents.h"
#include "unit/engine/EngineRig.h"
#include "unit/engine/Studio.h"
#include "unit/libmidi/alsa/FakeAlsaSeq.h"

namespace KivoraTest {

/// The first input is all keyboards together.
class AlsaStudio : public Studio {
public:
    explicit AlsaStudio(EngineRig& rig) {
        Plug(kFirstSynth, "Software synthesizer", LibMidiTest::kReceiving);
        Plug(kFirstSynth + 1, "Other synthesizer", LibMidiTest::kReceiving);
        PlugKeyboards();
        api_.keepsSent = false;
        api_.onSent = [this](const snd_seq_event_t& event) {
            LibMidi::VisitInputEvents(
                event, [&](const LibMidi::MIDIEvent& message) { onWrite(ToSynth(event.dest.client), message); });
        };
        client_ = std::make_shared<LibMidi::AlsaClient>(api_, rig.time, LibMidi::AlsaClient::Threads::kByHand);
    }

    LibMidi::BackendCreator GetCreator() override { return LibMidi::MakeAlsaBackend(client_); }
    void SetFailsToWrite(std::size_t synth, bool fails) override {
        Studio::SetFailsToWrite(synth, fails);
        Refuse(api_.deaf, synth, fails);
    }
    void SetFailsToOpen(std::size_t synth, bool fails) override { Refuse(api_.shut, synth, fails); }
    int CountInputs() const override { return 3; }
    std::vector<int> GetKeyboards(int input) const override {
        return input == 0 ? std::vector{0, 1} : std::vector{input - 1};
    }
    void Play(int, int keyboard, const std::vector<LibMidi::MIDIEvent>& events) override {
        for (const LibMidi::MIDIEvent& event : events) {
            snd_seq_event_t sent{};
            if (LibMidi::FillEvent(event, sent)) {
                api_.Send({kFirstKeyboard + keyboard, 0}, sent);
            }
        }
        client_->RunInputRound();
    }
    void Lose(int) override {
        api_.FailInput(-ENOSPC);
        client_->RunInputRound();
    }
    bool Replug(const std::function<void()>& meanwhile) override {
        for (const int keyboard : {kFirstKeyboard, kFirstKeyboard + 1}) {
            api_.Unplug(keyboard);
            api_.Announce(SND_SEQ_EVENT_CLIENT_EXIT, {keyboard, 0});
        }
        client_->RunInputRound();
        meanwhile();
        PlugKeyboards();
        api_.Announce(SND_SEQ_EVENT_PORT_START, {kFirstKeyboard, 0});
        client_->RunInputRound();
        return true;
    }

private:
    static constexpr int kFirstSynth = 20;
    static constexpr int kFirstKeyboard = 24;

    static std::size_t ToSynth(int client) { return static_cast<std::size_t>(client - kFirstSynth); }

    void Plug(int client, const char* name, unsigned int capabilities) {
        api_.Plug(client, name, 0, name, capabilities);
    }
    void PlugKeyboards() {
        Plug(kFirstKeyboard, "Keyboard", LibMidiTest::kSending);
        Plug(kFirstKeyboard + 1, "Other keyboard", LibMidiTest::kSending);
    }
    static void Refuse(std::set<LibMidiTest::CFakeAlsaSeq::Address>& refusing, std::size_t synth, bool refuses) {
        const LibMidiTest::CFakeAlsaSeq::Address address{kFirstSynth + static_cast<int>(synth), 0};
        if (refuses) {
            refusing.insert(address);
        } else {
            refusing.erase(address);
        }
    }

    LibMidiTest::CFakeAlsaSeq api_;
    std::shared_ptr<LibMidi::AlsaClient> client_;
};

}  // namespace KivoraTest
