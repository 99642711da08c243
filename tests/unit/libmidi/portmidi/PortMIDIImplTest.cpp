#include "libmidi/portmidi/PortMIDIImpl.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "libmidi/portmidi/PortMIDIInPort.h"
#include "libmidi/portmidi/PortMIDIOutPort.h"
#include "libmidi/portmidi/TickCounter.h"
#include "support/CountingSleeper.h"
#include "support/VirtualTime.h"
#include "support/WaitUntil.h"
#include "unit/libmidi/portmidi/FakePortMidi.h"

namespace {

using namespace LibMidi;
using LibMidiTest::CFakePortMidi;
using LibMidiTest::FakeDevice;

using Calls = std::vector<std::string>;

const std::vector<FakeDevice> kDevices{{"Synth", false, true}, {"Keys", true, false}, {"Keys", false, true}};

std::vector<std::wstring> NamesOf(const MIDIPortsImpl& set) {
    std::vector<std::wstring> names;
    for (MIDIPortIterator iterator(&set.GetPorts()); iterator.HasNext();) {
        names.emplace_back(iterator.Next()->GetName().View());
    }
    return names;
}

class PortMIDIImplTest : public testing::Test {
protected:
    std::unique_ptr<PortMIDIImpl> Make(PortMidiApi& api) {
        return std::make_unique<PortMIDIImpl>(api, time, PortMIDIImpl::Threads::kByHand);
    }
    KivoraTest::CVirtualTime time;
};

TEST_F(PortMIDIImplTest, EachDeviceBecomesAPortInTheOrderOfTheDevices) {
    CFakePortMidi api(kDevices);
    const auto set = Make(api);
    EXPECT_EQ(NamesOf(*set), (std::vector<std::wstring>{L"Synth", L"Keys", L"Keys"}));
    EXPECT_EQ(set->GetPorts().GetPort(0)->GetFlags(), std::uint32_t{kOutput});
    EXPECT_EQ(set->GetPorts().GetPort(1)->GetFlags(), std::uint32_t{kInput});
    EXPECT_EQ(set->GetPorts().GetPort(2)->GetFlags(), std::uint32_t{kOutput});
    EXPECT_NE(dynamic_cast<PortMIDIOutPort*>(set->GetPorts().GetPort(0)), nullptr);
    EXPECT_NE(dynamic_cast<PortMIDIInPort*>(set->GetPorts().GetPort(1)), nullptr);
    EXPECT_TRUE(api.opens.empty());
    EXPECT_FALSE(set->IsFixed());
}

TEST_F(PortMIDIImplTest, NamesAreUtf8) {
    CFakePortMidi api({{"\xD0\xA1\xD0\xB8\xD0\xBD\xD1\x82", false, true}});
    const auto set = Make(api);
    EXPECT_EQ(NamesOf(*set), (std::vector<std::wstring>{L"\x0421\x0438\x043D\x0442"}));
}

TEST_F(PortMIDIImplTest, DevicesOfOneNameAndDirectionAreToldApartByANumber) {
    CFakePortMidi api({{"Keys", true, false},
                       {"Keys", false, true},
                       {"Keys (2)", true, false},
                       {"Keys", true, false},
                       {"Keys", false, true}});
    const auto set = Make(api);
    EXPECT_EQ(NamesOf(*set), (std::vector<std::wstring>{L"Keys", L"Keys", L"Keys (2)", L"Keys (3)", L"Keys (2)"}));
    set->GetPorts().FindInputByName(L"Keys (3)")->Open();
    set->GetPorts().FindOutputByName(L"Keys (2)")->Open();
    EXPECT_EQ(api.opens.at(0).device, 3);
    EXPECT_EQ(api.opens.at(1).device, 4);
}

TEST_F(PortMIDIImplTest, ADeviceWithoutInformationOrDirectionIsLeftOut) {
    CFakePortMidi api({{"A", false, true}, {"B", false, true}, {"C", false, false}, {"D", true, false}});
    api.missingInfo = 1;
    const auto set = Make(api);
    EXPECT_EQ(NamesOf(*set), (std::vector<std::wstring>{L"A", L"D"}));
    set->GetDefaultInput()->Open();
    EXPECT_EQ(api.opens.at(0).device, 3);
}

TEST_F(PortMIDIImplTest, LoopBackPortsComeLastAndAreNoDefaultInput) {
    CFakePortMidi api({{"Midi Through Port-0", false, true},
                       {"Midi Through Port-0", true, false},
                       {"Keys", true, false},
                       {"Synth", false, true}});
    const auto set = Make(api);
    EXPECT_EQ(NamesOf(*set),
              (std::vector<std::wstring>{L"Keys", L"Synth", L"Midi Through Port-0", L"Midi Through Port-0"}));
    EXPECT_TRUE(set->GetDefaultInput()->GetName() == L"Keys");
    EXPECT_TRUE(set->GetDefaultOutput()->GetName() == L"Synth");
}

TEST_F(PortMIDIImplTest, WithLoopBackPortsAloneThereIsNoDefaultInput) {
    CFakePortMidi api({{"Midi Through Port-0", false, true}, {"Midi Through Port-0", true, false}});
    const auto set = Make(api);
    EXPECT_EQ(set->GetDefaultInput(), nullptr);
    ASSERT_NE(set->GetDefaultOutput(), nullptr);
    EXPECT_TRUE(set->GetDefaultOutput()->GetName() == L"Midi Through Port-0");
}

TEST_F(PortMIDIImplTest, AnOpenPortStaysTheDefault) {
    CFakePortMidi api(kDevices);
    const auto set = Make(api);
    MIDIOutPort* out = set->GetDefaultOutput();
    MIDIInPort* in = set->GetDefaultInput();
    out->Open();
    in->Open();
    EXPECT_EQ(set->GetDefaultOutput(), out);
    EXPECT_EQ(set->GetDefaultInput(), in);
}

TEST_F(PortMIDIImplTest, ALibraryThatCannotBeInitialisedHasNoPortsAndIsNotTerminated) {
    CFakePortMidi api(kDevices);
    api.initializeResult = pmHostError;
    {
        const auto set = Make(api);
        EXPECT_EQ(set->GetPorts().GetCount(), 0U);
        EXPECT_EQ(set->GetDefaultInput(), nullptr);
        EXPECT_EQ(set->GetDefaultOutput(), nullptr);
    }
    EXPECT_EQ(api.GetCalls(), (Calls{"Initialize"}));
}

TEST_F(PortMIDIImplTest, ShuttingDownClosesEveryOpenPortAndThenTerminates) {
    CFakePortMidi api(kDevices);
    {
        const auto set = Make(api);
        set->GetPorts().FindOutputByName(L"Keys")->Open();
        set->GetPorts().FindInputByName(L"Keys")->Open();
    }
    EXPECT_EQ(api.GetCalls(), (Calls{"Initialize", "OpenOutput 2", "OpenInput 1", "Close 1", "Close 2", "Terminate"}));
}

TEST_F(PortMIDIImplTest, ANewSetWorksAfterTheOldOneIsGone) {
    CFakePortMidi api(kDevices);
    Make(api).reset();
    const auto set = Make(api);
    EXPECT_EQ(set->GetPorts().GetCount(), 3U);
    EXPECT_EQ(api.GetCalls(), (Calls{"Initialize", "Terminate", "Initialize"}));
}

TEST_F(PortMIDIImplTest, EachRoundAdvancesTheTickCounterByOne) {
    CFakePortMidi api(kDevices);
    const auto set = Make(api);
    const std::uint32_t before = TickCounter::Get();
    set->RunInputRound();
    set->RunInputRound();
    EXPECT_EQ(TickCounter::Get(), before + 2);
    EXPECT_EQ(static_cast<std::uint32_t>(TickCounter::TimeProcedure(nullptr)), before + 2);
}

TEST_F(PortMIDIImplTest, ARoundPollsOpenInputsOnly) {
    CFakePortMidi api(kDevices);
    const auto set = Make(api);
    set->GetPorts().FindOutputByName(L"Synth")->Open();
    set->RunInputRound();
    EXPECT_EQ(api.polls, 0);
    set->GetDefaultInput()->Open();
    set->RunInputRound();
    EXPECT_EQ(api.polls, 1);
    set->GetDefaultInput()->Close();
    set->RunInputRound();
    EXPECT_EQ(api.polls, 1);
}

TEST_F(PortMIDIImplTest, WithThreadsTheTimerRunsWhileAnInputIsOpenAndRestsOtherwise) {
    CFakePortMidi api(kDevices);
    KivoraTest::CCountingSleeper sleeper;
    {
        const PortMIDIImpl set(api, sleeper);
        ASSERT_TRUE(KivoraTest::WaitUntil([&] { return sleeper.waits > 0; })) << "nothing is open yet";
        for (int turn = 0; turn < 3; ++turn) {
            ASSERT_EQ(set.GetDefaultInput()->Open(), kSuccess);
            const std::uint32_t before = TickCounter::Get();
            ASSERT_TRUE(KivoraTest::WaitUntil([before] { return TickCounter::Get() >= before + 3; }));
            const int waited = sleeper.waits;
            set.GetDefaultInput()->Close();
            ASSERT_TRUE(KivoraTest::WaitUntil([&] { return sleeper.waits > waited; })) << "after closing it rests";
        }
    }
    EXPECT_EQ(api.GetCalls().front(), "Initialize");
    EXPECT_EQ(api.GetCalls().back(), "Terminate");
}

}  // namespace
