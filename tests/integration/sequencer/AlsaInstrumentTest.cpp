// The instrument as a citizen of the sequencer: other programs connect to it, keyboards come and go.
#include <gmock/gmock.h>
#include <QCoreApplication>

#include <memory>
#include <string>
#include <vector>

#include "engine/PortKeeper.h"
#include "integration/sequencer/RequireSequencer.h"
#include "libmidi/alsa/AlsaBackend.h"
#include "libmidi/MIDIPlayer.h"
#include "support/ChildProcess.h"

namespace {

using KivoraTest::CChildProcess;
using KivoraTest::CSequencerClient;
using KivoraTest::WaitUntil;

class AlsaInstrument : public testing::Test {
protected:
    void SetUp() override {
        KivoraTest::RequireSequencer();
        if (!KivoraTest::HasSequencer()) {
            return;
        }
        synth = std::make_unique<CSequencerClient>("Test synth", "Test keyboard");
        other = std::make_unique<CSequencerClient>("Other synth", "Other keyboard");
        engine = std::make_unique<Kivora::CKivora>(
            Kivora::EngineDependencies{.backends = {LibMidi::MakeAlsaBackend(std::make_shared<LibMidi::AlsaClient>())},
                                       .createPlayer = [] { return LibMidi::CreateMIDIPlayer(); }});
        controls = std::make_unique<Kivora::EngineControls>(*engine);
        keeper = std::make_unique<Kivora::PortKeeper>(*controls);
        QObject::connect(engine.get(), &Kivora::CKivora::DevicesChanged, keeper.get(),
                         &Kivora::PortKeeper::FollowDevices, Qt::QueuedConnection);
        QObject::connect(keeper.get(), &Kivora::PortKeeper::InputReturned, [this] { ++returns; });
        engine->SetSavedOutputPortName(L"Test synth");
        controls->OpenPorts();
        ASSERT_TRUE(engine->IsOutputReady());
        synth->Clear();
    }
    void TearDown() override {
        if (controls) {
            controls->Close();
        }
    }

    static bool Await(const std::function<bool()>& condition) {
        return WaitUntil([&] {
            QCoreApplication::processEvents();
            return condition();
        });
    }
    static void Connect(const char* sender, const char* receiver) {
        CChildProcess connect({"aconnect", sender, receiver});
        connect.Wait();
    }
    std::vector<std::string> GetNotes() const {
        std::vector<std::string> texts;
        for (const CSequencerClient::Note& note : synth->GetNotes()) {
            texts.push_back((note.on ? "on " : "off ") + std::to_string(note.note));
        }
        return texts;
    }

    std::unique_ptr<CSequencerClient> synth;
    std::unique_ptr<CSequencerClient> other;
    std::unique_ptr<Kivora::CKivora> engine;
    std::unique_ptr<Kivora::EngineControls> controls;
    std::unique_ptr<Kivora::PortKeeper> keeper;
    int returns = 0;
};

}  // namespace

TEST_F(AlsaInstrument, OnAFirstStartEveryKeyboardPlays) {
    EXPECT_EQ(engine->GetInputPortName(), L"All MIDI keyboards");
    synth->Send(0, 60, 100);
    ASSERT_TRUE(Await([&] { return synth->GetCount() >= 1; }));
    other->Send(0, 64, 100);
    ASSERT_TRUE(Await([&] { return synth->GetCount() >= 2; }));
    EXPECT_THAT(GetNotes(), testing::ElementsAre("on 60", "on 64"));
}

TEST_F(AlsaInstrument, AKeyboardThatAppearsWhileTheProgramRunsPlaysAtOnceAndIsListed) {
    CSequencerClient keyboard("New synth", "New keyboard");
    // Nothing but its own thread connects it.
    ASSERT_TRUE(WaitUntil([&] {
        keyboard.Send(0, 60, 100);
        return synth->GetCount() >= 1;
    }));
    EXPECT_EQ(GetNotes().front(), "on 60");
    EXPECT_TRUE(Await([&] { return engine->GetInputPortNames().Find(L"New keyboard") >= 0; }));
    EXPECT_TRUE(Await([&] { return engine->GetOutputPortNames().Find(L"New synth") >= 0; }));
}

TEST_F(AlsaInstrument, KeysOfAKeyboardThatIsPulledOutEndWithoutALook) {
    ASSERT_TRUE(engine->SetInputPortByName(L"Other keyboard"));
    other->Send(0, 60, 100);
    ASSERT_TRUE(WaitUntil([&] { return synth->GetCount() >= 1; }));
    other.reset();
    ASSERT_TRUE(WaitUntil([&] { return synth->GetCount() >= 2; })) << "and nobody has looked at any device";
    EXPECT_THAT(GetNotes(), testing::ElementsAre("on 60", "off 60"));
    EXPECT_TRUE(Await([&] { return engine->IsInputLost(); }));
    EXPECT_EQ(engine->GetInputPortNames().Find(L"Other keyboard"), -1);
    other = std::make_unique<CSequencerClient>("Other synth", "Other keyboard");
    ASSERT_TRUE(Await([&] { return !engine->IsInputLost(); }));
    EXPECT_EQ(returns, 1);
    other->Send(0, 62, 100);
    ASSERT_TRUE(WaitUntil([&] { return synth->GetCount() >= 3; }));
    EXPECT_THAT(GetNotes(), testing::ElementsAre("on 60", "off 60", "on 62"));
}

TEST_F(AlsaInstrument, AProgramThatIsConnectedByAPatchbayHearsAKey) {
    const int programs = engine->GetOutputPortNames().Find(L"Other programs (Kivora LX out)");
    ASSERT_TRUE(controls->SetOutputPortByIndex(programs));
    Connect("Kivora LX:0", "Other synth:0");
    engine->PlayNoteOn(60, 100);
    ASSERT_TRUE(WaitUntil([&] { return other->GetCount() >= 1; }));
    EXPECT_EQ(other->GetNotes().back().note, 60);
    // The connection outlives another choice.
    ASSERT_TRUE(controls->SetOutputPortByIndex(engine->GetOutputPortNames().Find(L"Test synth")));
    ASSERT_TRUE(controls->RescanPorts());
    ASSERT_TRUE(controls->SetOutputPortByIndex(programs));
    other->Clear();
    engine->PlayNoteOn(62, 100);
    ASSERT_TRUE(WaitUntil([&] { return other->GetCount() >= 1; }));
    EXPECT_EQ(other->GetNotes().back().note, 62);
}

TEST_F(AlsaInstrument, AProgramThatIsConnectedByAPatchbayPlays) {
    ASSERT_TRUE(engine->SetInputPortByName(L"Other programs (Kivora LX in)"));
    other->Send(0, 60, 100);
    Connect("Other keyboard:0", "Kivora LX:1");
    other->Send(0, 62, 100);
    ASSERT_TRUE(WaitUntil([&] { return synth->GetCount() >= 1; }));
    EXPECT_THAT(GetNotes(), testing::ElementsAre("on 62"));
    other.reset();
    ASSERT_TRUE(WaitUntil([&] { return synth->GetCount() >= 2; }));
    EXPECT_THAT(GetNotes(), testing::ElementsAre("on 62", "off 62"));
}

TEST_F(AlsaInstrument, WhoCutsAllConnectionsEndsTheKeysOfProgramsAndCutsNoDevice) {
    ASSERT_TRUE(engine->SetInputPortByName(L"Other programs (Kivora LX in)"));
    Connect("Other keyboard:0", "Kivora LX:1");
    other->Send(0, 60, 100);
    ASSERT_TRUE(WaitUntil([&] { return synth->GetCount() >= 1; }));
    CChildProcess cut({"aconnect", "-x"});
    cut.Wait();
    ASSERT_TRUE(WaitUntil([&] { return synth->GetCount() >= 2; }));
    EXPECT_THAT(GetNotes(), testing::ElementsAre("on 60", "off 60"));
    ASSERT_TRUE(engine->SetInputPortByName(L"All MIDI keyboards"));
    synth->Clear();
    other->Send(0, 62, 100);
    ASSERT_TRUE(WaitUntil([&] { return synth->GetCount() >= 1; }));
    CChildProcess again({"aconnect", "-x"});
    again.Wait();
    other->Send(0, 64, 100);
    ASSERT_TRUE(WaitUntil([&] { return synth->GetCount() >= 2; })) << "keyboards are ours alone to connect";
    EXPECT_THAT(GetNotes(), testing::ElementsAre("on 62", "on 64"));
    EXPECT_FALSE(engine->IsOutputLost());
}

TEST_F(AlsaInstrument, AnOutputThatGoesIsToldAtOnceAndPlaysWhenItIsBack) {
    synth.reset();
    ASSERT_TRUE(Await([&] { return engine->IsOutputLost(); }));
    synth = std::make_unique<CSequencerClient>("Test synth", "Test keyboard");
    ASSERT_TRUE(Await([&] { return !engine->IsOutputLost(); }));
    engine->PlayNoteOn(62, 100);
    EXPECT_TRUE(WaitUntil([&] { return synth->GetCount() >= 1; }));
    EXPECT_THAT(GetNotes(), testing::ElementsAre("on 62"));
}

TEST_F(AlsaInstrument, APortThatIsSavedUnderPortMidisNameIsFound) {
    engine->SetSavedInputPortName(L"VirMIDI 1-0");
    engine->CloseInputPort();
    controls->OpenPorts();
    if (engine->GetInputPortIndex() < 0) {
        GTEST_SKIP() << "this machine has no virtual raw MIDI";
    }
    EXPECT_EQ(engine->GetInputPortName(), L"Virtual Raw MIDI 1-0: VirMIDI 1-0");
}
