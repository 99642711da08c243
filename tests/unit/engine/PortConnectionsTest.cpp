// The list of ports, and the two that are open.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "engine/InputConnection.h"
#include "engine/OutputConnection.h"
#include "engine/PortList.h"
#include "support/FakeBackend.h"
#include "support/FakePlayer.h"
#include "support/VirtualTime.h"

namespace {

using Kivora::InputConnection;
using Kivora::OutputConnection;
using Kivora::PortList;
using KivoraTest::FakeBackend;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<NK::CString> Names(const NK::CStringArray& names) {
    return {names.begin(), names.end()};
}

class ListedPorts : public testing::Test {
protected:
    ListedPorts() {
        backend.Plug(L"first", LibMidi::kOutput);
        backend.Plug(L"second", LibMidi::kOutput);
        backend.Plug(L"keys", LibMidi::kInput);
        backend.Plug(L"pads", LibMidi::kInput);
        Make();
    }
    PortList::Made Make() {
        const PortList::Made made = list.Make({backend.GetCreator()}, [] {});
        list.ListNames();
        return made;
    }

    FakeBackend backend;
    PortList list;
};

TEST_F(ListedPorts, AreListedByName) {
    EXPECT_THAT(Names(list.GetOutputNames()), ElementsAre(L"first", L"second"));
    EXPECT_THAT(Names(list.GetInputNames()), ElementsAre(L"keys", L"pads"));
    EXPECT_EQ(list.FindOutput(L"second"), backend.GetOut(L"second"));
    EXPECT_EQ(list.FindInput(L"pads"), backend.GetIn(L"pads"));
    EXPECT_EQ(list.FindInput(L"second"), nullptr);
}

TEST_F(ListedPorts, ThatAreNotAvailableHaveNoNameInTheList) {
    backend.Plug(L"busy", LibMidi::kOutput | LibMidi::kUnavailableFlag);
    EXPECT_EQ(Make(), PortList::Made::kHasPorts);
    EXPECT_THAT(Names(list.GetOutputNames()), ElementsAre(L"first", L"second"));
}

TEST_F(ListedPorts, OneThatIsNullEndsTheList) {
    backend.devices.insert(backend.devices.begin() + 1, nullptr);
    list.Make({backend.GetCreator()}, [] {});
    EXPECT_FALSE(list.ListNames());
    EXPECT_THAT(Names(list.GetOutputNames()), ElementsAre(L"first"));
}

TEST_F(ListedPorts, AListThatIsClearedHasNone) {
    list.Clear();
    EXPECT_EQ(list.GetFactory(), nullptr);
    EXPECT_EQ(list.FindOutput(L"first"), nullptr);
    EXPECT_FALSE(list.IsFixed(nullptr));
    EXPECT_THAT(Names(list.GetOutputNames()), IsEmpty());
    EXPECT_TRUE(list.ListNames());
}

TEST_F(ListedPorts, WhyThereAreNoneIsTold) {
    backend.devices.clear();
    EXPECT_EQ(Make(), PortList::Made::kNoPorts);
    backend.creation = FakeBackend::Creation::kNone;
    EXPECT_EQ(Make(), PortList::Made::kNothing);
    EXPECT_EQ(list.GetFactory(), nullptr);
    backend.creation = FakeBackend::Creation::kThrows;
    EXPECT_EQ(Make(), PortList::Made::kRefused);
    EXPECT_NE(list.GetFactory(), nullptr) << "its backends may work at the next look";
}

class Listener : public LibMidi::MIDIPortDataListener {
public:
    void OnMIDIData(const LibMidi::MIDIEvent*, std::int32_t count) override { heard += count; }
    void OnMIDIDataLost(std::uint32_t) override {}

    int heard = 0;
};

class TheInput : public ListedPorts {
protected:
    bool Open(const wchar_t* name) { return input.Open(*list.FindInput(name), listener, list); }

    std::atomic<LibMidi::MIDIInPort*> port{nullptr};
    InputConnection input{port};
    Listener listener;
};

TEST_F(TheInput, IsHeardWhileItIsOpen) {
    EXPECT_TRUE(Open(L"pads"));
    EXPECT_EQ(port.load(), backend.GetIn(L"pads"));
    EXPECT_EQ(input.GetName(), L"pads");
    EXPECT_EQ(input.GetIndex(), 1);
    backend.GetIn(L"pads")->Deliver(0x90, 60, 100);
    EXPECT_EQ(listener.heard, 1);
    input.Close(listener);
    backend.GetIn(L"pads")->Deliver(0x80, 60, 0);
    EXPECT_EQ(listener.heard, 1);
    EXPECT_EQ(port.load(), nullptr);
    EXPECT_EQ(input.GetIndex(), -1);
    EXPECT_EQ(input.GetName(), L"pads") << "what is wanted stays";
}

TEST_F(TheInput, OneThatDoesNotOpenChangesNothing) {
    input.SetName(L"keys");
    backend.devices.back()->failsToOpen = true;
    EXPECT_FALSE(Open(L"pads"));
    EXPECT_EQ(port.load(), nullptr);
    EXPECT_EQ(input.GetName(), L"keys");
}

TEST_F(TheInput, ThatWasLostIsOpenedAgainOrStaysLost) {
    Open(L"pads");
    input.SetLost(true);
    backend.devices.back()->failsToOpen = true;
    EXPECT_FALSE(input.Reopen());
    EXPECT_TRUE(input.IsLost());
    EXPECT_EQ(port.load(), backend.GetIn(L"pads")) << "it is still the one that is open";
    backend.devices.back()->failsToOpen = false;
    EXPECT_TRUE(input.Reopen());
    EXPECT_FALSE(input.IsLost());
    backend.GetIn(L"pads")->Deliver(0x90, 60, 100);
    EXPECT_EQ(listener.heard, 1);
    input.SetLost(true);
    input.Close(listener);
    EXPECT_FALSE(input.IsLost());
}

TEST_F(TheInput, FollowsTheListByIndexAndAWantedOneByItsFormerName) {
    backend.follows = true;
    Open(L"pads");
    backend.Unplug(L"keys");
    list.GetFactory()->Update();
    list.ListNames();
    input.Follow(list);
    EXPECT_EQ(input.GetIndex(), 0);
    input.Close(listener);
    backend.devices.back()->formerName = L"old pads";
    input.SetName(L"old pads");
    input.Follow(list);
    EXPECT_EQ(input.GetName(), L"pads");
    EXPECT_EQ(input.GetIndex(), -1);
}

class TheOutput : public ListedPorts {
protected:
    TheOutput() { player.Start(); }
    ~TheOutput() override { output.Close(); }
    bool Open(const wchar_t* name) { return output.Open(*list.FindOutput(name), player, list); }
    KivoraTest::FakeDevice& Device(const std::wstring& name) {
        return **std::find_if(backend.devices.begin(), backend.devices.end(),
                              [&](const auto& device) { return device->name == name; });
    }
    void Play(std::uint8_t note) {
        player.GetSink()->SendMessage({NK::MIDI::TMIDIMessage::kNoteOn, 1, note, 100}, 0);
        player.RunRound();
    }
    void Unlist(const std::wstring& name) {
        backend.Unplug(name);
        Make();
    }

    KivoraTest::CVirtualTime time;
    KivoraTest::FakePlayer player{time, time};
    OutputConnection output;
};

TEST_F(TheOutput, IsPlayedToWhileItIsOpen) {
    EXPECT_TRUE(Open(L"second"));
    EXPECT_EQ(output.GetPort(), list.FindOutput(L"second"));
    EXPECT_EQ(output.GetIndex(), 1);
    Play(60);
    EXPECT_THAT(Device(L"second").TakeWritten(), ElementsAre("90 3c 64"));
    output.Detach(player);
    output.Close();
    Play(62);
    EXPECT_THAT(Device(L"second").TakeWritten(), testing::Not(testing::Contains("90 3e 64")));
    EXPECT_EQ(player.GetOutputCount(), 0U);
    EXPECT_EQ(output.GetPort(), nullptr);
    EXPECT_EQ(output.GetIndex(), -1);
    EXPECT_EQ(output.GetName(), L"second") << "what is wanted stays";
}

TEST_F(TheOutput, OneThatDoesNotOpenChangesNothing) {
    output.SetName(L"first");
    Device(L"second").failsToOpen = true;
    EXPECT_FALSE(Open(L"second"));
    EXPECT_EQ(output.GetPort(), nullptr);
    EXPECT_EQ(output.GetName(), L"first");
    EXPECT_EQ(player.GetOutputCount(), 0U);
}

TEST_F(TheOutput, ThatWasLostReturnsToThePlayer) {
    Open(L"second");
    output.Lose();
    EXPECT_TRUE(output.IsLost());
    player.Stop();
    output.Leave(player);
    EXPECT_FALSE(Device(L"second").isOpen);
    Device(L"second").failsToOpen = true;
    EXPECT_FALSE(output.Return(player));
    EXPECT_TRUE(output.IsLost());
    output.Leave(player);
    Device(L"second").failsToOpen = false;
    EXPECT_TRUE(output.Return(player));
    EXPECT_FALSE(output.IsLost());
    EXPECT_EQ(player.GetOutputCount(), 1U);
    Play(60);
    EXPECT_THAT(Device(L"second").TakeWritten(), testing::Contains("90 3c 64"));
    output.Detach(player);
}

TEST_F(TheOutput, WhatSoundsOnALostOneThatWorksIsEndedAtOnce) {
    Open(L"second");
    Play(60);
    Device(L"second").TakeWritten();
    output.Lose();
    output.Strand(false, false);
    EXPECT_THAT(Device(L"second").TakeWritten(), ElementsAre("80 3c 00"));
    EXPECT_FALSE(output.HasStranded());
}

TEST_F(TheOutput, WhatSoundsOnOneThatIsGoneIsStrandedUntilItIsEnded) {
    Open(L"second");
    Play(60);
    Device(L"second").TakeWritten();
    output.Lose();
    output.Strand(true, false);
    EXPECT_TRUE(output.HasStranded());
    EXPECT_THAT(Device(L"second").TakeWritten(), IsEmpty());
    EXPECT_EQ(output.FindStranded(list), list.FindOutput(L"second"));
    output.Detach(player);
    output.Close();
    Device(L"second").failsToWrite = true;
    EXPECT_FALSE(output.EndStrandedOn(*list.FindOutput(L"second")));
    Device(L"second").failsToWrite = false;
    EXPECT_TRUE(output.EndStrandedOn(*list.FindOutput(L"second")));
    EXPECT_THAT(Device(L"second").TakeWritten(), testing::Contains("80 3c 00"));
    EXPECT_FALSE(Device(L"second").isOpen);
    EXPECT_TRUE(output.HasStranded()) << "whoever has ended it says so";
    output.ForgetStranded();
    EXPECT_FALSE(output.HasStranded());
    EXPECT_EQ(output.FindStranded(list), nullptr);
}

TEST_F(TheOutput, WhatIsKeptIsStrandedThoughItWasEnded) {
    Open(L"second");
    Play(60);
    output.Lose();
    output.Strand(false, true);
    EXPECT_TRUE(output.HasStranded());
    int ends = 0;
    output.VisitStrandedEnds([&ends](NK::MIDI::TMIDIMessage ending) {
        EXPECT_EQ(ending.data1, 60);
        ++ends;
    });
    EXPECT_EQ(ends, 1);
}

TEST_F(TheOutput, WhatIsStrandedOnADeviceThatIsNotListedWaits) {
    Open(L"second");
    Play(60);
    output.Lose();
    output.Strand(true, false);
    output.Detach(player);
    output.Close();
    Unlist(L"second");
    EXPECT_TRUE(output.HasStranded());
    EXPECT_EQ(output.FindStranded(list), nullptr);
}

TEST_F(TheOutput, FollowsTheList) {
    output.SetName(L"old second");
    Device(L"second").formerName = L"old second";
    output.Follow(list);
    EXPECT_EQ(output.GetName(), L"second");
    EXPECT_EQ(output.GetIndex(), -1);
    backend.follows = true;
    Make();
    Open(L"second");
    backend.Unplug(L"first");
    list.GetFactory()->Update();
    list.ListNames();
    output.Follow(list);
    EXPECT_EQ(output.GetIndex(), 0);
    output.Detach(player);
}

}  // namespace
