// Listing, choosing, opening and closing the ports, and the order of the engine's life.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QMetaMethod>
#include <QTranslator>

#include <atomic>
#include <thread>

#include "support/WaitUntil.h"
#include "unit/engine/EngineRig.h"

using namespace KivoraTest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {
class Ports : public testing::Test {
protected:
    EngineRig rig;

    /// The text that `action` throws; empty for none.
    template <class Action>
    static std::wstring Thrown(Action action) {
        try {
            action();
        } catch (const NK::CException& exception) {
            return exception.GetMessage();
        }
        return {};
    }
    std::wstring ThrownByCreate() {
        return Thrown([this] { rig.Create(); });
    }
    static std::vector<std::wstring> Texts(const NK::CStringArray& names) {
        std::vector<std::wstring> texts;
        for (const NK::CString& name : names) {
            texts.emplace_back(name.View());
        }
        return texts;
    }
    /// The engine's default output among ports of these names.
    int FindDefault(const std::vector<const wchar_t*>& names) {
        rig.backend.devices.clear();
        for (const wchar_t* name : names) {
            rig.backend.Plug(name, LibMidi::kOutput);
        }
        return rig.Create().FindDefaultOutputPort();
    }
};
}  // namespace

TEST_F(Ports, ConstructionListsThePortsAndOpensNone) {
    Kivora::CKivora& engine = rig.Create();
    EXPECT_THAT(Texts(engine.GetOutputPortNames()), ElementsAre(kSynth, kOtherSynth));
    EXPECT_THAT(Texts(engine.GetInputPortNames()), ElementsAre(kKeyboard, kOtherKeyboard));
    EXPECT_EQ(engine.GetOutputPortIndex(), -1);
    EXPECT_EQ(engine.GetInputPortIndex(), -1);
    EXPECT_FALSE(engine.IsOutputReady());
    EXPECT_THAT(rig.log, IsEmpty());
    EXPECT_EQ(rig.time.GetSleptMs(), 0U) << "nothing sleeps at construction";
    EXPECT_NE(rig.player->timeSource, nullptr);
}

TEST_F(Ports, UnavailablePortsAreNotListed) {
    rig.backend.Plug(L"Broken", LibMidi::kOutput | LibMidi::kUnavailableFlag);
    EXPECT_THAT(Texts(rig.Create().GetOutputPortNames()), ElementsAre(kSynth, kOtherSynth));
}

TEST_F(Ports, APortOfBothKindsIsInBothLists) {
    rig.backend.Plug(L"Both", LibMidi::kInput | LibMidi::kOutput);
    Kivora::CKivora& engine = rig.Create();
    EXPECT_THAT(Texts(engine.GetOutputPortNames()), ElementsAre(kSynth, kOtherSynth, L"Both"));
    EXPECT_THAT(Texts(engine.GetInputPortNames()), ElementsAre(kKeyboard, kOtherKeyboard, L"Both"));
}

// The table of failures.

TEST_F(Ports, FailureNoPortFactory) {
    rig.backend.creation = FakeBackend::Creation::kNone;
    EXPECT_EQ(ThrownByCreate(), L"MIDI engine initalization failed (PortMIDI interface couldn't be created).");
    EXPECT_EQ(rig.player, nullptr);
}

TEST_F(Ports, FailureNoPortList) {
    rig.backend.creation = FakeBackend::Creation::kThrows;
    EXPECT_EQ(ThrownByCreate(), L"MIDI engine initalization failed (error listing MIDI ports).");
    EXPECT_EQ(rig.player, nullptr);
}

TEST_F(Ports, OneBackendThatFailsIsNoFailure) {
    FakeBackend broken;
    broken.creation = FakeBackend::Creation::kThrows;
    Kivora::EngineDependencies dependencies = rig.GetDependencies();
    dependencies.backends.insert(dependencies.backends.begin(), broken.GetCreator());
    const Kivora::CKivora engine(std::move(dependencies));
    EXPECT_THAT(Texts(engine.GetOutputPortNames()), ElementsAre(kSynth, kOtherSynth));
}

TEST_F(Ports, FailureNoPorts) {
    rig.backend.devices.clear();
    EXPECT_EQ(ThrownByCreate(), L"No MIDI ports found.");
    EXPECT_EQ(rig.player, nullptr);
}

TEST_F(Ports, WithoutPortsAndAPlayerAReScanFindsNothing) {
    Kivora::CKivora& engine = rig.Create();
    rig.backend.devices.clear();
    EXPECT_THROW(engine.InitMidi(), NK::CException);
    EXPECT_FALSE(engine.RescanPorts());
}

TEST_F(Ports, FailureNoPlayer) {
    rig.noPlayer = true;
    EXPECT_EQ(ThrownByCreate(), L"MIDI engine initalization failed (error creating MIDI player).");
}

TEST_F(Ports, FailureNullPortInTheList) {
    rig.backend.devices.insert(rig.backend.devices.begin() + 1, nullptr);
    EXPECT_EQ(ThrownByCreate(), L"MIDI engine initalization failed (NULL port address).");
}

TEST_F(Ports, FailureOfALaterInitLeavesTheListsFilledUpToTheNullPort) {
    Kivora::CKivora& engine = rig.Create();
    rig.backend.devices.insert(rig.backend.devices.begin() + 1, nullptr);
    EXPECT_EQ(Thrown([&] { engine.InitMidi(); }), L"MIDI engine initalization failed (NULL port address).");
    EXPECT_THAT(Texts(engine.GetOutputPortNames()), ElementsAre(kSynth));
    EXPECT_THAT(Texts(engine.GetInputPortNames()), IsEmpty());
    EXPECT_NE(rig.player, nullptr);
}

TEST_F(Ports, FailureNullOutputPortLeavesThePreviousOutputOpen) {
    Kivora::CKivora& engine = rig.CreateOpen();
    EXPECT_EQ(Thrown([&] { engine.SetOutputPort(nullptr); }), L"Attempt to set a NULL port as out.");
    EXPECT_TRUE(engine.IsOutputReady());
    EXPECT_TRUE(rig.GetDevice(kSynth).isOpen);
}

TEST_F(Ports, FailureOutputWillNotOpenLeavesNoOutputPort) {
    Kivora::CKivora& engine = rig.CreateOpen();
    rig.GetDevice(kOtherSynth).failsToOpen = true;
    EXPECT_EQ(Thrown([&] { engine.SetOutputPortByName(kOtherSynth); }), L"Failed to open output MIDI port.");
    EXPECT_FALSE(engine.IsOutputReady());
    EXPECT_FALSE(rig.GetDevice(kSynth).isOpen);
    EXPECT_EQ(engine.GetOutputPortIndex(), -1);
    EXPECT_EQ(rig.player->GetOutputCount(), 0U);
}

TEST_F(Ports, FailurePlayerWillNotStartLeavesThePortOpenAndAttached) {
    Kivora::CKivora& engine = rig.Create();
    rig.player->failsToStart = true;
    EXPECT_EQ(Thrown([&] { engine.SetOutputPortByName(kSynth); }), L"Failed to start MIDI player.");
    EXPECT_TRUE(rig.GetDevice(kSynth).isOpen);
    EXPECT_EQ(rig.player->GetOutputCount(), 1U);
    EXPECT_FALSE(rig.player->IsRunning());
    for (int i = 0; i < 100; ++i) {
        engine.PlayNoteOn(60, 100);
    }
    EXPECT_THROW(static_cast<void>(rig.player->GetSink()->TakeNext()), NK::CException) << "nothing piles up";
}

TEST_F(Ports, FailureNullInputPortLeavesNoInput) {
    Kivora::CKivora& engine = rig.Create();
    EXPECT_EQ(Thrown([&] { engine.SetInputPort(nullptr); }), L"NULL input port.") << "also when none is open";
    engine.SetInputPortByName(kKeyboard);
    EXPECT_EQ(Thrown([&] { engine.SetInputPort(nullptr); }), L"NULL input port.");
    EXPECT_EQ(engine.GetInputPortIndex(), -1);
    EXPECT_FALSE(rig.GetDevice(kKeyboard).isOpen);
}

TEST_F(Ports, FailureInputWillNotOpenNamesThePortAndLeavesNoInput) {
    Kivora::CKivora& engine = rig.Create();
    engine.SetInputPortByName(kKeyboard);
    rig.GetDevice(kOtherKeyboard).failsToOpen = true;
    EXPECT_EQ(Thrown([&] { engine.SetInputPortByName(kOtherKeyboard); }),
              L"Failed to open input MIDI port: Other keyboard");
    EXPECT_EQ(engine.GetInputPortIndex(), -1);
    EXPECT_FALSE(rig.GetDevice(kKeyboard).isOpen);
}

TEST_F(Ports, FailureNoDefaultOutputChangesNothing) {
    rig.backend.Unplug(kSynth);
    Kivora::CKivora& engine = rig.Create();
    EXPECT_EQ(Thrown([&] { static_cast<void>(engine.GetDefaultOutputPortName()); }),
              L"No default output MIDI port found.");
    EXPECT_FALSE(engine.IsOutputReady());
}

// Opening and closing.

TEST_F(Ports, OpeningAnOutputResetsItAndSendsThePatchesOnceMore) {
    Kivora::CKivora& engine = rig.Create();
    SignalLog shown(engine);
    shown.withMessages = true;
    EXPECT_TRUE(engine.SetOutputPortByName(kSynth));
    const std::vector<std::string> off{"b0 7b 00", "b1 7b 00", "b2 7b 00"};
    const std::vector<std::string> patches{"c0 00", "c1 28", "c2 20", "PatchChanged"};
    std::vector<std::string> expected;
    const auto append = [&expected](const std::vector<std::string>& texts) {
        expected.insert(expected.end(), texts.begin(), texts.end());
    };
    append(off);  // the old output's reset, of which there is none
    append({"ff", "SynthSet"});
    append(patches);
    append(off);
    append({"ff", "SynthSet"});
    append(patches);
    append({"b0 07 64", "b1 07 64", "b2 07 64", "SynthSet"});
    append(patches);
    EXPECT_THAT(shown.Take(), testing::ElementsAreArray(expected));
    EXPECT_EQ(engine.GetOutputPortName(), kSynth);
    EXPECT_EQ(engine.GetOutputPortIndex(), 0);
    EXPECT_TRUE(rig.player->IsRunning());
    EXPECT_EQ(rig.time.GetSleptMs() / 100, 3U) << "two resets of 150 ms and the sink's own waits";
}

TEST_F(Ports, SelectingTheSameOutputClosesAndReopensItAndResetsIt) {
    Kivora::CKivora& engine = rig.CreateOpen();
    rig.log.clear();
    EXPECT_TRUE(engine.SetOutputPortByIndex(0));
    EXPECT_THAT(rig.log, ElementsAre("output closed", "output opened"));
    EXPECT_EQ(rig.player->GetOutputCount(), 1U);
    EXPECT_THAT(rig.TakeWritten(), testing::Contains("ff").Times(2));
}

TEST_F(Ports, ChangingTheOutputSilencesTheOldOneAndPlaysOnTheNewOne) {
    Kivora::CKivora& engine = rig.CreateOpen();
    engine.PlayNoteOn(60, 100);
    EXPECT_TRUE(engine.SetOutputPortByName(kOtherSynth));
    EXPECT_THAT(rig.TakeWritten(kSynth), testing::IsSupersetOf({"90 3c 64", "b0 7b 00", "ff"}));
    rig.TakeWritten(kOtherSynth);
    engine.PlayNoteOn(62, 100);
    EXPECT_THAT(rig.TakeWritten(kOtherSynth), ElementsAre("90 3e 64"));
    EXPECT_THAT(rig.TakeWritten(kSynth), IsEmpty());
}

TEST_F(Ports, SelectingTheInputThatIsOpenDoesNothing) {
    Kivora::CKivora& engine = rig.Create();
    EXPECT_TRUE(engine.SetInputPortByName(kKeyboard));
    EXPECT_TRUE(engine.SetInputPortByName(kKeyboard));
    EXPECT_THAT(rig.log, ElementsAre("input opened"));
    EXPECT_EQ(engine.GetInputPortName(), kKeyboard);
    EXPECT_EQ(engine.GetInputPortIndex(), 0);
}

TEST_F(Ports, ClosingTheInputRemovesTheListenerBeforeThePortIsClosed) {
    Kivora::CKivora& engine = rig.Create();
    engine.SetInputPortByName(kKeyboard);
    SignalLog shown(engine);
    FakeInPort& port = rig.GetKeyboard();
    port.Deliver(0x90, 60, 100);
    EXPECT_EQ(shown.TakeMessages().size(), 1U);
    port.onClosing = [&port] { port.Deliver(0x90, 61, 100); };
    engine.CloseInputPort();
    EXPECT_THAT(shown.TakeMessages(), IsEmpty());
    EXPECT_EQ(engine.GetInputPortIndex(), -1);
    EXPECT_EQ(engine.GetInputPortName(), kKeyboard) << "stays the saved one";
}

TEST_F(Ports, AnIndexOutsideTheListGivesFalseAndChangesNothing) {
    Kivora::CKivora& engine = rig.CreateOpen();
    engine.SetInputPortByName(kKeyboard);
    rig.log.clear();
    EXPECT_FALSE(engine.SetOutputPortByIndex(-1));
    EXPECT_FALSE(engine.SetOutputPortByIndex(2));
    EXPECT_FALSE(engine.SetInputPortByIndex(-1));
    EXPECT_FALSE(engine.SetInputPortByIndex(2));
    EXPECT_FALSE(engine.SetOutputPortByName(L"none"));
    EXPECT_FALSE(engine.SetInputPortByName(L"none"));
    EXPECT_THAT(rig.log, IsEmpty());
    EXPECT_TRUE(engine.IsOutputReady());
    EXPECT_EQ(engine.GetOutputPortIndex(), 0);
    EXPECT_EQ(engine.GetInputPortIndex(), 0);
}

TEST_F(Ports, WithoutAPortListTheNamesAreFalse) {
    Kivora::CKivora& engine = rig.Create();
    engine.ShutdownMidi();
    EXPECT_FALSE(engine.SetOutputPortByName(kSynth));
    EXPECT_FALSE(engine.SetInputPortByName(kKeyboard));
    EXPECT_EQ(engine.FindDefaultOutputPort(), -1);
    EXPECT_THAT(Texts(engine.GetOutputPortNames()), IsEmpty());
}

// The search for the software synthesizer.

TEST_F(Ports, TheEarlierCandidateIsChosenWhateverTheOrderInTheList) {
    EXPECT_EQ(FindDefault({L"My Software synthesizer 1", L"Microsoft GS Wavetable Synth"}), 1);
    EXPECT_EQ(FindDefault({L"Microsoft GS Wavetable Synth", L"My Software synthesizer 1"}), 0);
}

TEST_F(Ports, EachCandidateIsPreferredToTheLaterOnes) {
    EXPECT_EQ(FindDefault({L"Software synthesizer", L"Microsoft GS Wavetable Synth", L"Microsoft synthesizer",
                           L"Microsoft Synthesizer", L"Программный синтезатор", L"Программный синтезатор звуковой"}),
              5);
    EXPECT_EQ(FindDefault({L"Software synthesizer", L"Microsoft GS Wavetable Synth", L"Microsoft synthesizer",
                           L"Microsoft Synthesizer", L"Программный синтезатор"}),
              4);
    EXPECT_EQ(FindDefault({L"Software synthesizer", L"Microsoft GS Wavetable Synth", L"Microsoft synthesizer",
                           L"Microsoft Synthesizer"}),
              3);
    EXPECT_EQ(FindDefault({L"Software synthesizer", L"Microsoft GS Wavetable Synth", L"Microsoft synthesizer"}), 2);
}

TEST_F(Ports, TextAroundMicrosoftSynthesizerStillMatches) {
    EXPECT_EQ(FindDefault({L"Other", L"1: Microsoft Synthesizer [out]"}), 1);
}

TEST_F(Ports, TheTranslatorsNameIsTriedLast) {
    class LocalName : public QTranslator {
    public:
        bool isEmpty() const override { return false; }
        QString translate(const char* context, const char* text, const char* comment, int) const override {
            const bool asked = QByteArray(context) == "Kivora::CKivora" &&
                               QByteArray(text) == "Microsoft Synthesizer" &&
                               QByteArray(comment) == "System software synthesizer name for the locale";
            return asked ? QString("Lokaler Klang") : QString();
        }
    };
    LocalName translator;
    QCoreApplication::installTranslator(&translator);
    EXPECT_EQ(FindDefault({L"Other", L"1: Lokaler Klang"}), 1);
    EXPECT_EQ(FindDefault({L"Lokaler Klang", L"Software synthesizer"}), 1);
    QCoreApplication::removeTranslator(&translator);
    EXPECT_EQ(FindDefault({L"Other", L"Lokaler Klang"}), -1);
}

TEST_F(Ports, CapitalsMatchNothingAndTheSystemsDefaultDecides) {
    EXPECT_EQ(FindDefault({L"Other", L"MICROSOFT SYNTHESIZER"}), -1);
    rig.backend.defaultOutput = L"Other";
    EXPECT_EQ(FindDefault({L"MICROSOFT SYNTHESIZER", L"Other"}), 1);
    EXPECT_EQ(rig.engine->GetDefaultOutputPortName(), L"Other");
}

// The start-up sequence.

TEST_F(Ports, WithNothingSavedTheDefaultOutputAndTheFirstInputAreOpened) {
    rig.backend.defaultInput = kOtherKeyboard;
    Kivora::CKivora& engine = rig.Create();
    engine.OpenPorts();
    EXPECT_EQ(engine.GetOutputPortName(), kSynth);
    EXPECT_EQ(engine.GetInputPortName(), kKeyboard) << "the first of the list, not the system's default";
    EXPECT_THAT(rig.log, ElementsAre("input opened", "output opened"));
}

TEST_F(Ports, WithoutADefaultInputOfTheSystemNoneIsOpened) {
    Kivora::CKivora& engine = rig.Create();
    engine.OpenPorts();
    EXPECT_EQ(engine.GetInputPortIndex(), -1);
}

TEST_F(Ports, SavedPortsAreOpenedByNameTheOutputFirst) {
    Kivora::CKivora& engine = rig.Create();
    engine.SetSavedOutputPortName(kOtherSynth);
    engine.SetSavedInputPortName(kOtherKeyboard);
    engine.OpenPorts();
    EXPECT_EQ(engine.GetOutputPortIndex(), 1);
    EXPECT_EQ(engine.GetInputPortIndex(), 1);
    EXPECT_THAT(rig.log, ElementsAre("output opened", "input opened"));
}

TEST_F(Ports, ASavedOutputThatIsNotThereOpensNone) {
    Kivora::CKivora& engine = rig.Create();
    engine.SetSavedOutputPortName(L"gone");
    engine.OpenPorts();
    EXPECT_FALSE(engine.IsOutputReady());
    EXPECT_EQ(engine.GetOutputPortName(), L"gone");
}

TEST_F(Ports, StartUpWithoutADefaultOutputThrowsAfterTheInputIsOpen) {
    rig.backend.Unplug(kSynth);
    rig.backend.defaultInput = kKeyboard;
    Kivora::CKivora& engine = rig.Create();
    EXPECT_EQ(Thrown([&] { engine.OpenPorts(); }), L"No default output MIDI port found.");
    EXPECT_EQ(engine.GetInputPortIndex(), 0);
}

// The order of the engine's life.

TEST_F(Ports, DestructionEndsThePlayerThenTheInputThenTheOutputThenThePorts) {
    Kivora::CKivora& engine = rig.CreateOpen();
    engine.SetInputPortByName(kKeyboard);
    rig.log.clear();
    const std::uint64_t before = rig.time.GetSleptMs();
    rig.engine.reset();
    EXPECT_THAT(rig.log, ElementsAre("player destroyed", "input closed", "output closed", "ports destroyed"));
    EXPECT_THAT(rig.TakeWritten(), IsEmpty()) << "the silence is for whoever closes the instrument";
    EXPECT_EQ(rig.time.GetSleptMs(), before);
}

TEST_F(Ports, ASecondInitClosesEverythingFirst) {
    Kivora::CKivora& engine = rig.CreateOpen();
    engine.SetInputPortByName(kKeyboard);
    rig.log.clear();
    engine.InitMidi();
    EXPECT_THAT(rig.log, ElementsAre("player destroyed", "input closed", "output closed", "ports destroyed"));
    EXPECT_FALSE(engine.IsOutputReady());
    EXPECT_THAT(Texts(engine.GetOutputPortNames()), ElementsAre(kSynth, kOtherSynth));
}

TEST_F(Ports, ShutdownEndsARecordingFirst) {
    Kivora::CKivora& engine = rig.CreateOpen();
    ASSERT_TRUE(engine.StartRecording());
    SignalLog shown(engine);
    engine.ShutdownMidi();
    EXPECT_THAT(shown.Take(), ElementsAre("RecordingStateChanged"));
}

TEST_F(Ports, TheSignalsAndSlotsStandInTheirOrder) {
    const QMetaObject& meta = Kivora::CKivora::staticMetaObject;
    std::vector<std::string> methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        methods.push_back(meta.method(i).methodSignature().toStdString());
    }
    EXPECT_THAT(methods, ElementsAre("OnMIDIEvent(int)", "SynthSet()", "PatchChanged()", "RecordingStateChanged()",
                                     "VoiceSettingsChanged()", "KeyTranslationSettingChanged()",
                                     "KeyboardDisplayChanged()", "PresetChanged()", "UISkinChanged()", "TempoChanged()",
                                     "MetronomeChanged()", "ArpeggiatingChanged()", "Bar()", "Beat()", "OutputLost()",
                                     "InputLost()", "RecordingSaved()", "DamagedFileSetAside(QString)",
                                     "DevicesChanged()", "ResetSynth()", "AllNotesOff()", "onMetronomeTimer()"));
}

TEST_F(Ports, TheTickThreadRunsOnlyFromTheEndOfConstructionToTheEndOfDestruction) {
    std::atomic<int> reads{0};
    Kivora::EngineDependencies dependencies = rig.GetDependencies();
    dependencies.runTickTimer = true;
    dependencies.wallClockMs = [&reads] { return static_cast<std::int64_t>(++reads); };
    {
        const Kivora::CKivora engine(std::move(dependencies));
        EXPECT_TRUE(WaitUntil([&] { return reads >= 5; }));
    }
    const int after = reads;
    std::this_thread::yield();
    EXPECT_EQ(reads, after);
}

TEST_F(Ports, AFailedConstructionEndsTheTickThread) {
    rig.noPlayer = true;
    Kivora::EngineDependencies dependencies = rig.GetDependencies();
    dependencies.runTickTimer = true;
    EXPECT_THROW(Kivora::CKivora engine(std::move(dependencies)), NK::CException);
}

// A device that is pulled out.

TEST_F(Ports, APulledOutOutputIsToldOnceAndLetsNothingPileUp) {
    Kivora::CKivora& engine = rig.CreateOpen();
    SignalLog shown(engine);
    rig.GetDevice(kSynth).failsToWrite = true;
    engine.PlayNoteOn(60, 100);
    rig.Run(5);
    EXPECT_THAT(shown.Take(), ElementsAre("OutputLost"));
    EXPECT_TRUE(engine.IsOutputLost());
    for (int i = 0; i < 1000; ++i) {
        engine.PlayNoteOn(60, 100);
        engine.SetSustain(true);
    }
    rig.Run(5);
    EXPECT_THAT(shown.Take(), IsEmpty());
    EXPECT_THROW(static_cast<void>(rig.player->GetSink()->TakeNext()), NK::CException);
}

TEST_F(Ports, AfterALossAnotherOutputCanBeOpenedAndHearsNothingOld) {
    Kivora::CKivora& engine = rig.CreateOpen();
    rig.GetDevice(kSynth).failsToWrite = true;
    engine.PlayNoteOn(60, 100);
    engine.PlayNoteOn(61, 100);
    rig.Run(2);
    EXPECT_TRUE(engine.SetOutputPortByName(kOtherSynth));
    EXPECT_FALSE(engine.IsOutputLost());
    EXPECT_THAT(rig.TakeWritten(kOtherSynth), testing::Not(testing::Contains("90 3d 64")));
    engine.PlayNoteOn(62, 100);
    EXPECT_THAT(rig.TakeWritten(kOtherSynth), ElementsAre("90 3e 64"));
}

TEST_F(Ports, ALossThatTheTickHasNotSeenYetLeavesNothingOldForTheNextOutput) {
    Kivora::CKivora& engine = rig.CreateOpen();
    rig.GetDevice(kSynth).failsToWrite = true;
    engine.PlayNoteOn(60, 100);
    rig.RunPlayer();
    engine.PlayNoteOn(61, 100);
    EXPECT_TRUE(engine.SetOutputPortByName(kOtherSynth));
    EXPECT_THAT(rig.TakeWritten(kOtherSynth), testing::Not(testing::Contains("90 3d 64")));
}

// The re-scan.

TEST_F(Ports, ARescanFindsNewDevicesAndKeepsTheOpenOnesByName) {
    Kivora::CKivora& engine = rig.CreateOpen();
    engine.SetInputPortByName(kOtherKeyboard);
    rig.backend.Unplug(kKeyboard);
    rig.backend.devices.insert(rig.backend.devices.begin(), std::make_shared<FakeDevice>(L"New", LibMidi::kOutput));
    EXPECT_TRUE(engine.RescanPorts());
    EXPECT_THAT(Texts(engine.GetOutputPortNames()), ElementsAre(L"New", kSynth, kOtherSynth));
    EXPECT_THAT(Texts(engine.GetInputPortNames()), ElementsAre(kOtherKeyboard));
    EXPECT_EQ(engine.GetOutputPortIndex(), 1);
    EXPECT_EQ(engine.GetInputPortIndex(), 0);
    EXPECT_TRUE(engine.IsOutputReady());
    rig.TakeWritten();
    engine.PlayNoteOn(60, 100);
    EXPECT_THAT(rig.TakeWritten(), ElementsAre("90 3c 64"));
    SignalLog shown(engine);
    rig.backend.GetIn(kOtherKeyboard)->Deliver(0x90, 61, 100);
    EXPECT_THAT(shown.TakeMessages(), ElementsAre("90 3d 64"));
}

TEST_F(Ports, AFixedBackendsOpenOutputIsNotTouchedByARescan) {
    FakeBackend synth;
    synth.fixed = true;
    synth.log = [this](const std::string& line) { rig.log.push_back("synth: " + line); };
    FakeDevice& device = synth.Plug(L"Built in", LibMidi::kOutput);
    Kivora::EngineDependencies dependencies = rig.GetDependencies();
    dependencies.backends.push_back(synth.GetCreator());
    rig.engine = std::make_unique<Kivora::CKivora>(std::move(dependencies));
    rig.engine->SetOutputPortByName(L"Built in");
    rig.RunPlayer();
    device.TakeWritten();
    rig.log.clear();
    rig.backend.Plug(L"New", LibMidi::kOutput);
    EXPECT_TRUE(rig.engine->RescanPorts());
    EXPECT_THAT(rig.log, ElementsAre("ports destroyed"));
    EXPECT_EQ(synth.created, 1);
    EXPECT_EQ(rig.engine->GetOutputPortIndex(), 3) << "its place in the longer list";
    rig.RunPlayer();
    EXPECT_THAT(device.TakeWritten(), IsEmpty());
    rig.engine->PlayNoteOn(60, 100);
    rig.RunPlayer();
    EXPECT_THAT(device.TakeWritten(), ElementsAre("90 3c 64"));
    rig.engine.reset();
}

TEST_F(Ports, ARePluggedDeviceIsFoundByNameAtTheNextRescan) {
    Kivora::CKivora& engine = rig.CreateOpen();
    engine.SetInputPortByName(kKeyboard);
    rig.GetDevice(kSynth).failsToWrite = true;
    engine.PlayNoteOn(60, 100);
    rig.Run(2);
    rig.backend.Unplug(kSynth);
    rig.backend.Unplug(kKeyboard);
    EXPECT_TRUE(engine.RescanPorts());
    EXPECT_FALSE(engine.IsOutputReady());
    EXPECT_EQ(engine.GetInputPortIndex(), -1);
    rig.backend.Plug(kSynth, LibMidi::kOutput);
    rig.backend.Plug(kKeyboard, LibMidi::kInput);
    EXPECT_TRUE(engine.RescanPorts());
    EXPECT_TRUE(engine.IsOutputReady());
    EXPECT_FALSE(engine.IsOutputLost());
    EXPECT_EQ(engine.GetInputPortIndex(), 1);
}

TEST_F(Ports, ARescanThatFindsNothingLeavesTheEngineWithEmptyLists) {
    Kivora::CKivora& engine = rig.CreateOpen();
    rig.backend.devices.clear();
    EXPECT_FALSE(engine.RescanPorts());
    EXPECT_THAT(Texts(engine.GetOutputPortNames()), IsEmpty());
    engine.PlayNoteOn(60, 100);
    rig.backend.creation = FakeBackend::Creation::kNone;
    EXPECT_FALSE(engine.RescanPorts());
    rig.backend.creation = FakeBackend::Creation::kWorks;
    rig.backend.Plug(kSynth, LibMidi::kOutput);
    EXPECT_TRUE(engine.RescanPorts());
    EXPECT_TRUE(engine.IsOutputReady());
}

TEST_F(Ports, ARescanIsRefusedWhileRecording) {
    Kivora::CKivora& engine = rig.CreateOpen();
    ASSERT_TRUE(engine.StartRecording());
    rig.log.clear();
    EXPECT_FALSE(engine.RescanPorts());
    EXPECT_THAT(rig.log, IsEmpty());
    EXPECT_TRUE(engine.IsRecording());
}

TEST_F(Ports, ARescanOpensTheInputEvenWhenTheOutputFails) {
    Kivora::CKivora& engine = rig.CreateOpen();
    engine.SetInputPortByName(kKeyboard);
    rig.GetDevice(kSynth).failsToOpen = true;
    EXPECT_EQ(Thrown([&] { engine.RescanPorts(); }), L"Failed to open output MIDI port.");
    EXPECT_EQ(engine.GetInputPortIndex(), 0);
}
