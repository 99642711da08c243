// Flood, tick, GUI and player at once, and ports that close under a flood.
#include <gtest/gtest.h>

#include <QCoreApplication>

#include <atomic>
#include <thread>

#include "engine/EngineControls.h"
#include "libmidi/MIDIPlayer.h"
#include "nk/nk_thread_role.h"
#include "support/SynthModel.h"
#include "support/WaitUntil.h"
#include "unit/engine/EngineRig.h"

using namespace KivoraTest;

namespace {

/// An engine with its own tick thread and the real player; only the ports are fakes.
class Threads : public testing::Test {
protected:
    Threads() {
        backend.Plug(kSynth, LibMidi::kOutput).keepsWritten = false;
        backend.Plug(kOtherSynth, LibMidi::kOutput).keepsWritten = false;
        backend.Plug(kKeyboard, LibMidi::kInput);
        backend.Plug(kOtherKeyboard, LibMidi::kInput);
        backend.defaultInput = kKeyboard;
        for (const auto& device : backend.devices) {
            device->onWrite = [this](const LibMidi::MIDIEvent& event) {
                synth.Play(event);
                lastsWritten += (event.status & 0xF0) == 0xB0 && event.data1 == kLast ? 1 : 0;
                ++written;
            };
        }
        Create();
    }
    ~Threads() override { StopFlood(); }

    void Create() {
        engine = std::make_unique<Kivora::CKivora>(Kivora::EngineDependencies{
            .backends = {backend.GetCreator()}, .createPlayer = [] { return LibMidi::CreateMIDIPlayer(); }});
        controls = std::make_unique<Kivora::EngineControls>(*engine);
        QObject::connect(engine.get(), &Kivora::CKivora::OnMIDIEvent, [this](int) { ++shown; });
        controls->OpenPorts();
    }
    /// Delivers to the port until StopFlood(), as the port's own thread does.
    void StartFlood(FakeInPort& port) {
        flood = std::thread([this, &port] {
            std::uint8_t note = 0;
            while (!stop) {
                note = static_cast<std::uint8_t>((note + 1) % 128);
                port.Deliver({{0, 0x90, note, 100}, {0, 0xB0, 1, note}, {0, 0xB0, 64, note}, {0, 0x80, note, 0}});
                ++delivered;
                std::this_thread::yield();
            }
        });
    }
    void StopFlood() {
        stop = true;
        if (flood.joinable()) {
            flood.join();
        }
        stop = false;
    }
    /// Waits until the flood has delivered that many batches more.
    void WaitForFlood(int batches) {
        const int until = delivered + batches;
        EXPECT_TRUE(WaitUntil([&] { return delivered >= until; }));
    }

    static constexpr std::uint8_t kLast = 20;  ///< a controller that is sent after everything else

    FakeBackend backend;
    SynthModel synth;  ///< of both outputs, of which one is open; written by the player's thread
    std::atomic<int> lastsWritten{0};
    std::atomic<int> written{0};
    std::atomic<int> shown{0};
    std::atomic<int> delivered{0};
    std::atomic<bool> stop{false};
    std::thread flood;
    std::unique_ptr<Kivora::CKivora> engine;
    std::unique_ptr<Kivora::EngineControls> controls;
};

}  // namespace

#ifndef NDEBUG
TEST_F(Threads, TheTickHasItsRole) {
    std::atomic<NK::ThreadRole> ticker{NK::ThreadRole::none};
    Kivora::CKivora ticking(Kivora::EngineDependencies{.backends = {backend.GetCreator()},
                                                       .createPlayer = [] { return LibMidi::CreateMIDIPlayer(); },
                                                       .wallClockMs =
                                                           [&ticker] {
                                                               ticker = NK::GetThreadRole();
                                                               return std::int64_t{0};
                                                           }});
    ticking.SetOutputPortByIndex(0);
    ticking.StartRecording();
    EXPECT_TRUE(WaitUntil([&] { return ticker == NK::ThreadRole::tick; }));
    EXPECT_EQ(NK::GetThreadRole(), NK::ThreadRole::none);
}

TEST_F(Threads, PortsAreTheGuiThreadsOnly) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(
        {
            NK_REGISTER_THREAD_ROLE(input);
            engine->CloseOutputPort();
        },
        "for the gui thread, called on the input thread");
}
#endif

TEST_F(Threads, FloodTickGuiAndPlayerLiveTogether) {
    engine->SetArpeggiating(true);
    engine->SetMetronome(true);
    StartFlood(*backend.GetIn(kKeyboard));
    for (int i = 0; i < 40; ++i) {
        engine->PlayNoteOn(static_cast<std::uint8_t>(40 + i), 100);
        controls->SetVoiceMode(i % 2 == 0, i % 3 == 0);
        controls->SetPatch(i % 5 == 0 ? -1 : i, i % 3);
        controls->SetArpeggiating(i % 2 == 0);
        engine->SetTempo(100 + i);
        controls->TransposeUp(i % 3);
        controls->SetSustain(i % 2 == 0);
        engine->onMetronomeTimer();
        engine->PlayNoteOff(static_cast<std::uint8_t>(40 + i));
        QCoreApplication::processEvents();
        WaitForFlood(1);
    }
    const int before = written;
    WaitForFlood(50);
    EXPECT_TRUE(WaitUntil([&] { return written != before; }));
    StopFlood();
    EXPECT_GT(shown, 0);
    EXPECT_FALSE(engine->IsOutputLost());
}

TEST_F(Threads, WhatIsSentLastStandsAndWhatIsHeldSounds) {
    constexpr int kGestures = 500;
    FakeInPort& port = *backend.GetIn(kKeyboard);
    std::thread player([&port] {
        for (int i = 0; i < kGestures; ++i) {
            const auto program = static_cast<std::uint8_t>(i % 128);
            std::vector<LibMidi::MIDIEvent> gesture{
                {0, 0x80, 60, 0}, {0, 0x90, 60, 100}, {0, 0xB0, 0, program}, {0, 0xC0, program, 0}};
            for (int step = 4; step >= 0; --step) {
                const auto value = static_cast<std::uint8_t>(step);
                gesture.emplace_back(0U, std::uint8_t{0xE0}, value, static_cast<std::uint8_t>(64 + step));
                gesture.emplace_back(0U, std::uint8_t{0xB0}, std::uint8_t{1}, value);
                gesture.emplace_back(0U, std::uint8_t{0xB0}, std::uint8_t{64}, value);
            }
            port.Deliver(std::move(gesture));
        }
    });
    for (int i = 0; i < kGestures; ++i) {
        engine->PlayNoteOff(48);
        engine->PlayNoteOn(48, 100);
        i % 3 == 0 ? engine->VolumeUp(1) : engine->VolumeDown(1);
        controls->SetSustain(true);
        controls->SetSustain(false);
    }
    player.join();
    port.Deliver(0xB0, kLast, 1);
    EXPECT_TRUE(WaitUntil([&] { return lastsWritten >= 3; }));
    for (int channel = 0; channel < 3; ++channel) {
        const SynthModel::Controls& sent = synth.GetControls(channel);
        EXPECT_EQ(sent.wheel, 0x2000);
        EXPECT_EQ(sent.controller[1], 0);
        EXPECT_EQ(sent.controller[64], 0);
        EXPECT_EQ(sent.program, (kGestures - 1) % 128);
        EXPECT_EQ(sent.bank[0], sent.program);
    }
    EXPECT_EQ(synth.GetControls(1).controller[7], engine->GetVolume(1));
    EXPECT_TRUE(synth.IsPressed(0, 60));
    EXPECT_TRUE(synth.IsPressed(0, 48));
}

TEST_F(Threads, ClosingAndReopeningTheInputUnderAFloodNeverDeadlocks) {
    for (int i = 0; i < 20; ++i) {
        ASSERT_TRUE(engine->SetInputPortByName(kKeyboard));
        StartFlood(*backend.GetIn(kKeyboard));
        WaitForFlood(3);
        // Under the engine's lock, as every operation closes it.
        engine->WithLock([this] { engine->CloseInputPort(); });
        StopFlood();
    }
    EXPECT_EQ(engine->GetInputPortIndex(), -1);
}

TEST_F(Threads, ChangingTheOutputUnderAFloodNeverDeadlocks) {
    StartFlood(*backend.GetIn(kKeyboard));
    for (int i = 0; i < 4; ++i) {
        WaitForFlood(3);
        EXPECT_TRUE(controls->SetOutputPortByIndex(i % 2));
    }
    StopFlood();
    EXPECT_TRUE(engine->IsOutputReady());
}

TEST_F(Threads, QuittingUnderAFloodNeverDeadlocks) {
    for (int i = 0; i < 3; ++i) {
        // The port's thread ends with the port, so the flood ends when the port is about to be closed.
        FakeInPort& port = *backend.GetIn(kKeyboard);
        port.onClosing = [this] { StopFlood(); };
        StartFlood(port);
        WaitForFlood(5);
        controls->Close();
        controls.reset();
        engine.reset();
        Create();
    }
    EXPECT_TRUE(engine->IsOutputReady());
}

TEST_F(Threads, APulledOutOutputUnderAFloodIsToldOnceAndAnotherIsOpened) {
    std::atomic<int> told{0};
    QObject::connect(engine.get(), &Kivora::CKivora::OutputLost, [&told] { ++told; });
    FakeInPort& port = *backend.GetIn(kKeyboard);
    port.onClosing = [this] { StopFlood(); };
    StartFlood(port);
    WaitForFlood(5);
    backend.devices[0]->failsToWrite = true;
    EXPECT_TRUE(WaitUntil([&] { return told != 0; }));
    WaitForFlood(20);
    EXPECT_EQ(told, 1);
    EXPECT_TRUE(controls->SetOutputPortByIndex(1));
    StartFlood(*backend.GetIn(kKeyboard));
    const int before = written;
    EXPECT_TRUE(WaitUntil([&] { return written != before; }));
    StopFlood();
    EXPECT_EQ(told, 1);
}
