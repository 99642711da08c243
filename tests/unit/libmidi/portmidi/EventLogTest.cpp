// The lines about single events, in a process that wants them.
#include <gtest/gtest.h>

#include <cstdlib>

#include "libmidi/portmidi/PortMIDIImpl.h"
#include "libmidi/portmidi/PortMIDIInPort.h"
#include "nk/nk_logger.h"
#include "support/FatalLog.h"
#include "support/VirtualTime.h"
#include "unit/libmidi/portmidi/FakePortMidi.h"

namespace {

using namespace LibMidi;
using KivoraTest::CFatalLog;
using LibMidiTest::CFakePortMidi;

const int kWanted = setenv("KIVORA_LOG", "1", 1);

class EventLog : public testing::Test {
protected:
    EventLog() { EXPECT_EQ(kWanted, 0); }

    CFakePortMidi api{{{"Keys", true, false}, {"Synth", false, true}}};
    KivoraTest::CVirtualTime time;
    PortMIDIImpl implementation{api, time, PortMIDIImpl::Threads::kByHand};
};

TEST_F(EventLog, AWrittenEventIsLoggedWithThePortsName) {
    MIDIOutPort* port = implementation.GetDefaultOutput();
    port->Open();
    CFatalLog::Instance().Expect(L"MIDI out Synth: 90 3C 50");
    const MIDIEvent event(0, 0x90, 60, 80);
    port->Write(&event, 1);
    EXPECT_EQ(CFatalLog::Instance().GetLines().size(), 1U);
}

TEST_F(EventLog, AnEventThatIsNotWrittenIsNotLogged) {
    MIDIOutPort* port = implementation.GetDefaultOutput();
    port->Open();
    api.goodWrites = 0;
    const MIDIEvent event(0, 0x90, 60, 80);
    EXPECT_EQ(port->Write(&event, 1), kDeviceError);
    EXPECT_TRUE(CFatalLog::Instance().GetLines().empty());
}

TEST_F(EventLog, AReceivedEventIsLoggedWithThePortsNameAndADroppedOneIsNot) {
    implementation.GetDefaultInput()->Open();
    CFatalLog::Instance().Expect(L"MIDI in Keys: B0 07 64");
    api.Receive(0, Pm_Message(0xF8, 0, 0));
    api.Receive(0, Pm_Message(0xB0, 7, 100));
    implementation.RunInputRound();
    implementation.RunInputRound();
    EXPECT_EQ(CFatalLog::Instance().GetLines().size(), 1U);
}

TEST_F(EventLog, ACorruptQueueIsLoggedWithThePortsName) {
    class CHugeQueuePort : public PortMIDIInPort {
    public:
        explicit CHugeQueuePort(PortMIDIImpl& set)
            : MIDIPortImpl(0, L"Huge", kInput), PortMIDIInPort(set, 0, L"Huge") {}

    protected:
        std::size_t GetQueueSize() const override { return kMaxQueueSize + 1; }
    };
    CHugeQueuePort port(implementation);
    port.Open();
    api.Receive(0, Pm_Message(0x90, 60, 80));
    CFatalLog::Instance().Expect(L"MIDI in Huge: 90 3C 50");
    CFatalLog::Instance().Expect(L"WARNING: MIDI input port thread - bogus queue size detected / Huge");
    port.ReceiveRound();
    port.DeliverRound();
    EXPECT_EQ(time.GetSleptMs(), 200U);
    port.Close();
}

}  // namespace
