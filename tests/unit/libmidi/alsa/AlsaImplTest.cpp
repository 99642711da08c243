// What is listed, under which names, and how that follows the devices.
#include "libmidi/alsa/AlsaImpl.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "libmidi/alsa/AlsaBackend.h"
#include "unit/libmidi/alsa/AlsaRig.h"

namespace {

using namespace LibMidi;
using namespace LibMidiTest;
using testing::ElementsAre;

class AlsaImplTest : public testing::Test {
protected:
    void PlugThrough() { rig.api.Plug(14, "Midi Through", 0, "Midi Through Port-0", kSending | kReceiving); }
    std::vector<std::wstring> Names(PortFlags direction) const {
        std::vector<std::wstring> names;
        for (MIDIPortIterator iterator(&set->GetPorts()); iterator.HasNext();) {
            const MIDIPort* const port = iterator.Next();
            if ((port->GetFlags() & direction) != 0) {
                names.emplace_back(port->GetName().View());
            }
        }
        return names;
    }
    MIDIInPort* In(const wchar_t* name) const { return set->GetPorts().FindInputByName(name); }
    MIDIOutPort* Out(const wchar_t* name) const { return set->GetPorts().FindOutputByName(name); }

    CAlsaRig rig;
    std::unique_ptr<MIDIPortsImpl> set = MakeAlsaBackend(rig.client)();
};

TEST_F(AlsaImplTest, WithoutDevicesThereAreAllKeyboardsAndTheOtherPrograms) {
    EXPECT_THAT(Names(kInput), ElementsAre(L"All MIDI keyboards", L"Other programs (Kivora LX in)"));
    EXPECT_THAT(Names(kOutput), ElementsAre(L"Other programs (Kivora LX out)"));
    EXPECT_EQ(set->GetDefaultInput(), In(L"All MIDI keyboards"));
    EXPECT_EQ(set->GetDefaultOutput(), Out(L"Other programs (Kivora LX out)"));
    EXPECT_TRUE(set->StaysThroughRescan());
    EXPECT_FALSE(set->IsFixed());
}

TEST_F(AlsaImplTest, DevicesStandBetweenThemAndTheLoopBackLast) {
    PlugThrough();
    rig.Plug(20, "Keys");
    rig.api.Plug(129, "FLUID Synth (77)", 0, "Synth input port (77:0)", kReceiving);
    set->Update();
    EXPECT_THAT(Names(kInput), ElementsAre(L"All MIDI keyboards", L"Keys MIDI 1", L"Other programs (Kivora LX in)",
                                           L"Midi Through Port-0"));
    EXPECT_THAT(Names(kOutput), ElementsAre(L"Keys MIDI 1", L"FLUID Synth (77): Synth input port (77:0)",
                                            L"Other programs (Kivora LX out)", L"Midi Through Port-0"));
    EXPECT_EQ(set->GetDefaultOutput(), Out(L"Keys MIDI 1"));
    EXPECT_EQ(set->GetDefaultInput(), In(L"All MIDI keyboards"));
}

TEST_F(AlsaImplTest, TwoOfOneNameAreToldApartAndKeepTheirNamesWhileTheyAreThere) {
    rig.Plug(20, "Keys");
    rig.Plug(24, "Keys");
    set->Update();
    MIDIInPort* const second = In(L"Keys MIDI 1 (2)");
    ASSERT_NE(second, nullptr);
    ASSERT_EQ(second->Open(), kSuccess);
    rig.Unplug(20);
    set->Update();
    EXPECT_EQ(In(L"Keys MIDI 1"), nullptr);
    EXPECT_EQ(In(L"Keys MIDI 1 (2)"), second);
    EXPECT_EQ(second->LookAtDevice(), DeviceState::kWorks);
    rig.Plug(28, "Keys");
    set->Update();
    EXPECT_NE(In(L"Keys MIDI 1"), nullptr);
    EXPECT_EQ(In(L"Keys MIDI 1 (2)"), second);
}

/// Keeps what who has sent the last message is called.
struct CLastSender : MIDIPortDataListener {
    explicit CLastSender(MIDIInPort& heard) : port(heard) { port.AddListener(this); }
    ~CLastSender() override { port.RemoveListener(this); }
    void OnMIDIData(const MIDIEvent* events, std::int32_t count) override {
        name = port.GetSourceName(events[count - 1].source).ToUtf8();
    }

    MIDIInPort& port;
    std::string name;
};

TEST_F(AlsaImplTest, AmongAllAKeyboardIsCalledAsItIsListed) {
    rig.Plug(20, "Keys");
    rig.Plug(24, "Keys");
    set->Update();
    MIDIInPort& all = *In(L"All MIDI keyboards");
    MIDIInPort& second = *In(L"Keys MIDI 1 (2)");
    ASSERT_EQ(all.Open(), kSuccess);
    ASSERT_EQ(second.Open(), kSuccess);
    {
        CLastSender amongAll(all);
        CLastSender alone(second);
        rig.Send(24, NoteOn(60));
        EXPECT_EQ(amongAll.name, "Keys MIDI 1 (2)");
        EXPECT_EQ(alone.name, "Keys MIDI 1 (2)");
        rig.Unplug(20);
        set->Update();
        rig.Send(24, NoteOn(62));
        EXPECT_EQ(amongAll.name, "Keys MIDI 1 (2)") << "it keeps its name";
        EXPECT_EQ(alone.name, "Keys MIDI 1 (2)");
        rig.Plug(20, "Keys");
        rig.Send(20, NoteOn(60));
        set->Update();
        rig.Send(20, NoteOn(62));
        EXPECT_EQ(amongAll.name, "Keys MIDI 1");
    }
    all.Close();
    second.Close();
}

TEST_F(AlsaImplTest, ANumberThatADevicesOwnNameHasIsPassedOver) {
    rig.api.Plug(20, "Keys", 0, "Keys (2)", kSending);
    rig.api.Plug(21, "Keys", 0, "Keys", kSending);
    rig.api.Plug(22, "Keys", 0, "Keys", kSending);
    set->Update();
    EXPECT_THAT(Names(kInput), ElementsAre(L"All MIDI keyboards", L"Keys (2)", L"Keys", L"Keys (3)",
                                           L"Other programs (Kivora LX in)"));
}

TEST_F(AlsaImplTest, AnOpenDeviceThatIsPulledOutIsNotListedAndGetsItsPortAgain) {
    rig.Plug(20, "Keys");
    set->Update();
    MIDIInPort* const port = In(L"Keys MIDI 1");
    ASSERT_EQ(port->Open(), kSuccess);
    rig.Unplug(20);
    set->Update();
    EXPECT_EQ(In(L"Keys MIDI 1"), nullptr);
    EXPECT_EQ(port->LookAtDevice(), DeviceState::kLost);
    rig.Plug(33, "Keys");
    EXPECT_EQ(port->LookAtDevice(), DeviceState::kLost) << "nobody has looked for devices yet";
    set->Update();
    EXPECT_EQ(In(L"Keys MIDI 1"), port);
    EXPECT_EQ(port->LookAtDevice(), DeviceState::kBack);
    port->Close();
    EXPECT_EQ(port->Open(), kSuccess);
    EXPECT_EQ(port->LookAtDevice(), DeviceState::kWorks);
}

TEST_F(AlsaImplTest, AnotherDeviceInThePlaceOfOneIsNotTakenForIt) {
    rig.Plug(20, "Keys");
    set->Update();
    MIDIInPort* const keys = In(L"Keys MIDI 1");
    ASSERT_EQ(keys->Open(), kSuccess);
    rig.Unplug(20);
    rig.Plug(20, "Pads");
    set->Update();
    EXPECT_EQ(keys->LookAtDevice(), DeviceState::kLost);
    EXPECT_NE(In(L"Pads MIDI 1"), nullptr);
    EXPECT_EQ(In(L"Keys MIDI 1"), nullptr);
}

TEST_F(AlsaImplTest, APortIsFoundByTheNameThatPortMidiGivesIt) {
    rig.api.Plug(24, "Virtual Raw MIDI 1-0", 0, "VirMIDI 1-0", kSending | kReceiving);
    rig.api.Plug(25, "Pads", 0, "MIDI 1", kSending | kReceiving);
    rig.api.Plug(26, "Keys", 0, "MIDI 1", kSending | kReceiving);
    set->Update();
    EXPECT_EQ(In(L"VirMIDI 1-0"), In(L"Virtual Raw MIDI 1-0: VirMIDI 1-0"));
    EXPECT_EQ(Out(L"VirMIDI 1-0"), Out(L"Virtual Raw MIDI 1-0: VirMIDI 1-0"));
    EXPECT_EQ(In(L"MIDI 1"), In(L"Pads: MIDI 1"));
    EXPECT_EQ(In(L"MIDI 1 (2)"), In(L"Keys: MIDI 1"));
    EXPECT_NE(In(L"MIDI 1 (2)"), nullptr);
    EXPECT_EQ(In(L"MIDI 1 (3)"), nullptr);
}

TEST_F(AlsaImplTest, WhoeverWantsIsToldOfDevicesUntilTheSetEnds) {
    int told = 0;
    set->TellOfDevices([&told] { ++told; });
    rig.Plug(20, "Keys");
    EXPECT_EQ(told, 1);
    set->TellOfDevices([&told] { told += 10; });
    rig.Unplug(20);
    EXPECT_EQ(told, 11);
    set->TellOfDevices({});
    rig.Plug(20, "Keys");
    EXPECT_EQ(told, 11);
    set->TellOfDevices([&told] { ++told; });
    set.reset();
    rig.Unplug(20);
    EXPECT_EQ(told, 11);
}

TEST_F(AlsaImplTest, ManyThatComeAtOnceAreToldOnceUntilSomebodyLooks) {
    int told = 0;
    set->TellOfDevices([&told] { ++told; });
    rig.Plug(20, "Keys");
    rig.Plug(21, "More keys");
    rig.Unplug(20);
    EXPECT_EQ(told, 1);
    set->Update();
    rig.Unplug(21);
    EXPECT_EQ(told, 2);
}

TEST_F(AlsaImplTest, AfterAFailureAReScanMakesAnother) {
    EXPECT_TRUE(set->StaysThroughRescan());
    rig.api.FailInput(-ENODEV);
    rig.client->RunInputRound();
    EXPECT_FALSE(set->StaysThroughRescan());
}

TEST_F(AlsaImplTest, WhatOthersConnectOutlivesThePortSet) {
    rig.Plug(20, "Keys");
    rig.api.Connect({20, 0}, rig.GetPublicIn());
    set = MakeAlsaBackend(rig.client)();
    EXPECT_TRUE(rig.api.HasConnection({20, 0}, rig.GetPublicIn()));
    EXPECT_EQ(rig.api.opened, 1);
    set.reset();
    rig.client.reset();
    EXPECT_EQ(rig.api.closed, 1);
}

}  // namespace
