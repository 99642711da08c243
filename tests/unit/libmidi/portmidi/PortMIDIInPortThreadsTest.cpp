// Input ports with their threads running.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "libmidi/portmidi/PortMIDIImpl.h"
#include "libmidi/portmidi/PortMIDIInPort.h"
#include "nk/nk_critical_section.h"
#include "nk/nk_thread_role.h"
#include "support/FatalLog.h"
#include "support/WaitUntil.h"
#include "unit/libmidi/portmidi/FakePortMidi.h"

namespace {

using namespace LibMidi;
using LibMidiTest::CFakePortMidi;

class PortMIDIInPortThreads : public testing::Test {
protected:
    CFakePortMidi api{{{"Keys", true, false}, {"Other", true, false}}};
    PortMIDIImpl implementation{api, NK::SystemSleeper()};
    MIDIInPort* port = implementation.GetPorts().FindInputByName(L"Keys");
};

struct CCountingListener : MIDIPortDataListener {
    void OnMIDIData(const MIDIEvent* events, std::int32_t count) override {
        const std::lock_guard guard(mutex);
        thread = std::this_thread::get_id();
        received.insert(received.end(), events, events + count);
        changed.notify_all();
    }
    bool WaitFor(std::size_t count) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, std::chrono::seconds(60), [&] { return received.size() >= count; });
    }
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<MIDIEvent> received;
    std::thread::id thread;
};

TEST_F(PortMIDIInPortThreads, AnEventReachesTheListenerOnTheOtherThread) {
    CCountingListener listener;
    port->AddListener(&listener);
    ASSERT_EQ(port->Open(), kSuccess);
    api.Receive(0, Pm_Message(0x93, 60, 80));
    ASSERT_TRUE(listener.WaitFor(1));
    EXPECT_EQ(listener.received[0].status, 0x93);
    EXPECT_NE(listener.thread, std::this_thread::get_id());
    port->Close();
    port->RemoveListener(&listener);
}

TEST_F(PortMIDIInPortThreads, EveryMessageOfAFloodArrivesInOrder) {
    constexpr int kMessages = 1600;
    CCountingListener listener;
    port->AddListener(&listener);
    for (int message = 0; message < kMessages; ++message) {
        api.Receive(0, Pm_Message(0xB0, message & 0x7F, message >> 7));
    }
    port->Open();
    ASSERT_TRUE(listener.WaitFor(kMessages));
    port->Close();
    for (int message = 0; message < kMessages; ++message) {
        ASSERT_EQ(listener.received[static_cast<std::size_t>(message)].data1, message & 0x7F);
        ASSERT_EQ(listener.received[static_cast<std::size_t>(message)].data2, message >> 7);
    }
    port->RemoveListener(&listener);
}

TEST_F(PortMIDIInPortThreads, AThreadWithoutAPortSaysSoAndEnds) {
    KivoraTest::CFatalLog::Instance().Expect(L"WARNING: MIDI input port thread: NULL port address.");
    PortMIDIInPort::InPortThread thread(nullptr, &implementation);
    ASSERT_TRUE(thread.Begin());
    thread.End();
}

TEST_F(PortMIDIInPortThreads, AThreadWithoutAnImplementationSaysSoAndEnds) {
    KivoraTest::CFatalLog::Instance().Expect(L"WARNING: MIDI input port thread: NULL port implementation address.");
    PortMIDIInPort other(implementation, 1, L"Other");
    PortMIDIInPort::InPortThread thread(&other, nullptr);
    ASSERT_TRUE(thread.Begin());
    thread.End();
}

/// Needs a lock for each batch, and gives up once its port is closing.
struct CLockingListener : MIDIPortDataListener {
    CLockingListener(MIDIInPort& inPort, CCriticalSection& section) : port(inPort), lock(section) {}
    void OnMIDIData(const MIDIEvent*, std::int32_t) override {
        while (!lock.TryLock()) {
            if (port.IsClosing()) {
                ++givenUp;
                return;
            }
        }
        ++batches;
        lock.Unlock();
    }
    MIDIInPort& port;
    CCriticalSection& lock;
    std::atomic<int> batches{0};
    std::atomic<int> givenUp{0};
};

TEST_F(PortMIDIInPortThreads, ClosingUnderTheListenersLockNeverDeadlocks) {
    constexpr int kCycles = 1000;
    CCriticalSection lock(1, 2, 1);
    CLockingListener listener(*port, lock);
    api.flood = true;
    for (int cycle = 0; cycle < kCycles; ++cycle) {
        const CLockGuard guard(lock);
        ASSERT_EQ(port->Open(), kSuccess);
        port->AddListener(&listener);
        if (cycle % 4 == 0) {
            // Until the listener waits for the lock that is held here, or has just given up.
            const int polls = api.GetFlooded();
            EXPECT_TRUE(KivoraTest::WaitUntil([&] { return api.GetFlooded() >= polls + 3; }));
        }
        if (cycle % 2 == 0) {
            port->RemoveListener(&listener);
            ASSERT_EQ(port->Close(), kSuccess);
        } else {
            ASSERT_EQ(port->Close(), kSuccess);
            port->RemoveListener(&listener);
        }
    }
    EXPECT_EQ(listener.batches, 0);
    EXPECT_GT(listener.givenUp, 0);
    EXPECT_EQ(api.GetOpenStreams(), 0U);
}

TEST_F(PortMIDIInPortThreads, QuittingUnderAFloodClosesEverything) {
    CFakePortMidi flooded({{"A", true, false}, {"B", true, false}});
    flooded.flood = true;
    CCountingListener listener;
    {
        PortMIDIImpl set(flooded, NK::SystemSleeper());
        for (MIDIPortIterator iterator(&set.GetPorts()); iterator.HasNext();) {
            auto* input = dynamic_cast<MIDIInPort*>(iterator.Next());
            input->AddListener(&listener);
            input->Open();
        }
        ASSERT_TRUE(listener.WaitFor(20));
    }
    EXPECT_EQ(flooded.GetOpenStreams(), 0U);
    EXPECT_EQ(flooded.GetCalls().back(), "Terminate");
}

#ifndef NDEBUG
TEST_F(PortMIDIInPortThreads, TheThreadsHaveTheirRoles) {
    struct CListener : MIDIPortDataListener {
        void OnMIDIData(const MIDIEvent*, std::int32_t) override { role = NK::GetThreadRole(); }
        std::atomic<NK::ThreadRole> role{NK::ThreadRole::none};
    } listener;
    std::atomic<NK::ThreadRole> reader{NK::ThreadRole::none};
    api.onRead = [&] { reader = NK::GetThreadRole(); };
    port->AddListener(&listener);
    ASSERT_EQ(port->Open(), kSuccess);
    api.Receive(0, Pm_Message(0x90, 60, 80));
    EXPECT_TRUE(KivoraTest::WaitUntil([&] { return listener.role == NK::ThreadRole::input; }));
    EXPECT_EQ(listener.role, NK::ThreadRole::input);
    EXPECT_EQ(reader, NK::ThreadRole::inputTimer);
    port->Close();
    port->RemoveListener(&listener);
}
#endif

}  // namespace
