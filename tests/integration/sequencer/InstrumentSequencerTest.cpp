// The whole instrument without its window, between other programs on the ALSA sequencer.
#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "engine/PortKeeper.h"
#include "integration/sequencer/RequireSequencer.h"
#include "libmidi/alsa/AlsaBackend.h"
#include "libmidi/MIDIPlayer.h"
#include "libmidi/portmidi/PortMIDIBackend.h"
#include "support/SequencerClient.h"

namespace {

using KivoraTest::CSequencerClient;
using KivoraTest::WaitUntil;
using Note = CSequencerClient::Note;

/// A name for the tests, and what makes the ports.
struct Backend {
    const char* name;
    LibMidi::BackendCreator (*make)();
};

class InstrumentSequencer : public testing::TestWithParam<Backend> {
protected:
    void SetUp() override {
        KivoraTest::RequireSequencer();
        if (!KivoraTest::HasSequencer()) {
            return;
        }
        client = std::make_unique<CSequencerClient>("Test synth", "Test keyboard");
        otherClient = std::make_unique<CSequencerClient>("Other synth", "Other keyboard");
        engine = std::make_unique<Kivora::CKivora>(Kivora::EngineDependencies{
            .backends = {GetParam().make()}, .createPlayer = [] { return LibMidi::CreateMIDIPlayer(); }});
        controls = std::make_unique<Kivora::EngineControls>(*engine);
        engine->SetSavedOutputPortName(L"Test synth");
        engine->SetSavedInputPortName(L"Test keyboard");
        controls->OpenPorts();
        ASSERT_TRUE(engine->IsOutputReady());
        ASSERT_GE(engine->GetInputPortIndex(), 0);
        client->Clear();
    }
    void TearDown() override {
        if (controls) {
            controls->Close();
        }
    }

    /// What arrived since the last Clear(), as "on 60", "off 60".
    std::vector<std::string> GetNotes() const {
        std::vector<std::string> texts;
        for (const Note& note : client->GetNotes()) {
            texts.push_back((note.on ? "on " : "off ") + std::to_string(note.note));
        }
        return texts;
    }

    /// The place of an output port in the engine's list; -1 when it is not there.
    int FindOutput(const wchar_t* name) const { return engine->GetOutputPortNames().Find(name); }
    /// The program with the open output ends, and the engine notices.
    void LoseOutput() {
        client.reset();
        ASSERT_TRUE(WaitUntil([&] {
            engine->PlayNoteOn(60, 100);
            return engine->IsOutputLost();
        }));
    }

    std::unique_ptr<CSequencerClient> client;
    std::unique_ptr<CSequencerClient> otherClient;
    std::unique_ptr<Kivora::CKivora> engine;
    std::unique_ptr<Kivora::EngineControls> controls;
};

LibMidi::BackendCreator MakeAlsa() {
    return LibMidi::MakeAlsaBackend(std::make_shared<LibMidi::AlsaClient>());
}

INSTANTIATE_TEST_SUITE_P(Backends, InstrumentSequencer,
                         testing::Values(Backend{"PortMidi", &LibMidi::PortMIDIBackend}, Backend{"Alsa", &MakeAlsa}),
                         [](const testing::TestParamInfo<Backend>& backend) {
                             return std::string(backend.param.name);
                         });

}  // namespace

TEST_P(InstrumentSequencer, AKeyOfAnotherProgramComesBackTransposed) {
    controls->TransposeUp(0);
    client->Send(0, 60, 127);
    ASSERT_TRUE(WaitUntil([&] { return client->GetCount() >= 1; }));
    client->Send(0, 60, 0);
    ASSERT_TRUE(WaitUntil([&] { return client->GetCount() >= 2; }));
    EXPECT_THAT(GetNotes(), testing::ElementsAre("on 61", "off 61"));
}

TEST_P(InstrumentSequencer, AHeldChordIsPlayedAsThePatternSaysUntilItIsReleased) {
    constexpr int kStep = 24;
    constexpr double kHalf = 50;
    constexpr std::uint8_t kChord[] = {60, 64, 67};
    controls->SetArpeggiating(true);
    controls->ChangeArpeggiator(0, [](NK::MIDI::CArpeggiator1& arpeggiator) { arpeggiator.SetNoteStep(kStep, kHalf); });
    for (const std::uint8_t note : kChord) {
        client->Send(0, note, 100);
    }
    // The first steps may see a part of the chord only.
    constexpr std::size_t kComplete = 16;
    ASSERT_TRUE(WaitUntil([&] { return client->GetCount() >= kComplete; }));
    for (const std::uint8_t note : kChord) {
        client->Send(0, note, 0);
    }
    ASSERT_TRUE(WaitUntil([&] {
        const std::vector<std::string> notes = GetNotes();
        return std::count_if(notes.begin(), notes.end(), [](const auto& text) { return text[1] == 'n'; }) * 2 ==
               static_cast<std::ptrdiff_t>(notes.size());
    }));
    std::vector<int> played;
    for (const Note& note : client->GetNotes()) {
        if (note.on) {
            played.push_back(note.note);
        }
    }
    ASSERT_GE(played.size(), 8U);
    for (std::size_t i = 3; i < 7; ++i) {
        const int next = played[i] == 60 ? 64 : played[i] == 64 ? 67 : 60;
        EXPECT_EQ(played[i + 1], next) << "step " << i;
    }
}

TEST_P(InstrumentSequencer, InPlaceOfAnOutputThatHasGoneAnotherOnePlays) {
    LoseOutput();
    ASSERT_TRUE(controls->SetOutputPortByIndex(FindOutput(L"Other synth")));
    engine->PlayNoteOn(62, 100);
    EXPECT_TRUE(WaitUntil([&] { return otherClient->GetCount() >= 1 || engine->IsOutputLost(); }));
    EXPECT_FALSE(engine->IsOutputLost());
    ASSERT_EQ(otherClient->GetCount(), 1U);
    EXPECT_EQ(otherClient->GetNotes()[0].note, 62);
    EXPECT_EQ(FindOutput(L"Test synth"), -1);
}

TEST_P(InstrumentSequencer, AnOutputThatComesBackIsFoundByName) {
    LoseOutput();
    client = std::make_unique<CSequencerClient>("Test synth", "Test keyboard");
    ASSERT_TRUE(controls->RescanPorts());
    ASSERT_TRUE(engine->IsOutputReady());
    EXPECT_FALSE(engine->IsOutputLost());
    // What PortMidi could not send to the old one may have come first.
    const auto hasArrived = [this](const char* text) {
        const std::vector<std::string> notes = GetNotes();
        return std::find(notes.begin(), notes.end(), text) != notes.end();
    };
    engine->PlayNoteOn(62, 100);
    EXPECT_TRUE(WaitUntil([&] { return hasArrived("on 62"); }));
    client->Send(0, 64, 100);
    EXPECT_TRUE(WaitUntil([&] { return hasArrived("on 64"); }));
}

TEST_P(InstrumentSequencer, AKeyboardThatIsPulledOutEndsWhatItHeldAndPlaysAgainWhenItIsBack) {
    Kivora::PortKeeper keeper(*controls);
    ASSERT_TRUE(engine->SetInputPortByName(L"Other keyboard"));
    otherClient->Send(0, 60, 100);
    ASSERT_TRUE(WaitUntil([&] { return client->GetCount() >= 1; }));
    keeper.Look();
    EXPECT_FALSE(engine->IsInputLost());
    otherClient.reset();
    keeper.Look();
    EXPECT_TRUE(engine->IsInputLost());
    ASSERT_TRUE(WaitUntil([&] { return client->GetCount() >= 2; }));
    EXPECT_EQ(GetNotes()[1], "off 60");
    otherClient = std::make_unique<CSequencerClient>("Other synth", "Other keyboard");
    keeper.FollowDevices();
    EXPECT_FALSE(engine->IsInputLost());
    otherClient->Send(0, 62, 100);
    EXPECT_TRUE(WaitUntil([&] { return GetNotes().back() == "on 62"; })) << "whoever ended the key besides the look";
}

TEST_P(InstrumentSequencer, AKeyboardWhosePlugWobblesBetweenTwoLooksLeavesNothingHeld) {
    Kivora::PortKeeper keeper(*controls);
    ASSERT_TRUE(engine->SetInputPortByName(L"Other keyboard"));
    otherClient->Send(0, 60, 100);
    ASSERT_TRUE(WaitUntil([&] { return client->GetCount() >= 1; }));
    otherClient.reset();
    otherClient = std::make_unique<CSequencerClient>("Other synth", "Other keyboard");
    keeper.FollowDevices();
    ASSERT_TRUE(WaitUntil([&] { return client->GetCount() >= 2; }));
    EXPECT_EQ(GetNotes()[1], "off 60");
    otherClient->Send(0, 62, 100);
    EXPECT_TRUE(WaitUntil([&] { return GetNotes().back() == "on 62"; }));
}

TEST_P(InstrumentSequencer, AnOutputThatHasGoneIsNoticedWithoutANoteAndPlaysWhenItIsBack) {
    Kivora::PortKeeper keeper(*controls);
    keeper.Look();
    ASSERT_FALSE(engine->IsOutputLost());
    client.reset();
    keeper.Look();
    EXPECT_TRUE(engine->IsOutputLost());
    client = std::make_unique<CSequencerClient>("Test synth", "Test keyboard");
    keeper.FollowDevices();
    EXPECT_FALSE(engine->IsOutputLost());
    engine->PlayNoteOn(62, 100);
    EXPECT_TRUE(WaitUntil([&] {
        const std::vector<std::string> notes = GetNotes();
        return std::find(notes.begin(), notes.end(), "on 62") != notes.end();
    }));
}
