// The client with its thread running.
#include <gtest/gtest.h>

#include <sys/eventfd.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

#include "libmidi/alsa/AlsaClient.h"
#include "libmidi/alsa/AlsaDeviceInPort.h"
#include "nk/nk_critical_section.h"
#include "nk/nk_thread_role.h"
#include "support/WaitUntil.h"
#include "unit/libmidi/alsa/FakeAlsaSeq.h"

namespace {

using namespace LibMidi;
using namespace LibMidiTest;

class AlsaClientThreads : public testing::Test {
protected:
    AlsaClientThreads() {
        api.descriptors = {descriptor};
        api.onEmpty = [this] {
            std::uint64_t count = 0;
            static_cast<void>(read(descriptor, &count, sizeof count));
        };
        api.Plug(20, "Keys", 0, "Keys", kSending);
    }
    ~AlsaClientThreads() override { close(descriptor); }

    void MakeReadable() const {
        const std::uint64_t one = 1;
        ASSERT_EQ(write(descriptor, &one, sizeof one), ssize_t{sizeof one});
    }
    void Send(int note) {
        api.Send({20, 0}, NoteOn(note));
        MakeReadable();
    }

    const int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    CFakeAlsaSeq api;
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

TEST_F(AlsaClientThreads, AKeyWakesTheThreadAndReachesTheListenerThere) {
    const auto client = std::make_shared<AlsaClient>(api);
    AlsaDeviceInPort port(client, L"Keys");
    port.SetPlace(snd_seq_addr_t{20, 0});
    CCountingListener listener;
    port.AddListener(&listener);
    ASSERT_EQ(port.Open(), kSuccess);
    Send(60);
    ASSERT_TRUE(listener.WaitFor(1));
    EXPECT_NE(listener.thread, std::this_thread::get_id());
    port.Close();
    port.RemoveListener(&listener);
}

TEST_F(AlsaClientThreads, ItEndsWhileNothingArrives) {
    for (int run = 0; run < 100; ++run) {
        const AlsaClient client(api);
        EXPECT_TRUE(client.Works());
    }
    EXPECT_EQ(api.opened, api.closed);
}

TEST_F(AlsaClientThreads, ItEndsUnderAFlood) {
    const std::pair<const CFakeAlsaSeq::Address, snd_seq_event_t> flood{{20, 0}, NoteOn(60)};
    api.flood = &flood;
    MakeReadable();
    for (int run = 0; run < 20; ++run) {
        const AlsaClient client(api);
    }
    EXPECT_EQ(api.opened, api.closed);
}

TEST_F(AlsaClientThreads, WithoutDescriptorsOrWithOneThatIsGoneNothingArrivesAnyMore) {
    for (const std::vector<int>& descriptors : {std::vector<int>{-2, 100000}, std::vector<int>(40, descriptor)}) {
        api.descriptors = descriptors;
        const AlsaClient client(api);
        EXPECT_TRUE(KivoraTest::WaitUntil([&] { return !client.Works(); }));
    }
}

/// Needs a lock for each batch, and gives up once its port is closing.
struct CLockingListener : MIDIPortDataListener {
    CLockingListener(MIDIInPort& inPort, CCriticalSection& section) : port(inPort), lock(section) {}
    void OnMIDIData(const MIDIEvent*, std::int32_t) override {
        ++calls;
        while (!lock.TryLock()) {
            if (port.IsClosing()) {
                ++givenUp;
                return;
            }
        }
        lock.Unlock();
    }
    MIDIInPort& port;
    CCriticalSection& lock;
    std::atomic<int> calls{0};
    std::atomic<int> givenUp{0};
};

TEST_F(AlsaClientThreads, ClosingUnderTheListenersLockNeverDeadlocks) {
    constexpr int kCycles = 300;
    const auto client = std::make_shared<AlsaClient>(api);
    AlsaDeviceInPort port(client, L"Keys");
    port.SetPlace(snd_seq_addr_t{20, 0});
    CCriticalSection lock(1, 2, 1);
    CLockingListener listener(port, lock);
    for (int cycle = 0; cycle < kCycles; ++cycle) {
        const CLockGuard guard(lock);
        ASSERT_EQ(port.Open(), kSuccess);
        port.AddListener(&listener);
        const int calls = listener.calls;
        Send(60);
        if (cycle % 4 == 0) {
            EXPECT_TRUE(KivoraTest::WaitUntil([&] { return listener.calls != calls; }));
        }
        if (cycle % 2 == 0) {
            port.RemoveListener(&listener);
            ASSERT_EQ(port.Close(), kSuccess);
        } else {
            ASSERT_EQ(port.Close(), kSuccess);
            port.RemoveListener(&listener);
        }
    }
    EXPECT_GT(listener.givenUp, 0);
}

#ifndef NDEBUG
TEST_F(AlsaClientThreads, TheThreadHasItsRole) {
    struct CListener : MIDIPortDataListener {
        void OnMIDIData(const MIDIEvent*, std::int32_t) override { role = NK::GetThreadRole(); }
        std::atomic<NK::ThreadRole> role{NK::ThreadRole::none};
    } listener;
    const auto client = std::make_shared<AlsaClient>(api);
    AlsaDeviceInPort port(client, L"Keys");
    port.SetPlace(snd_seq_addr_t{20, 0});
    port.AddListener(&listener);
    ASSERT_EQ(port.Open(), kSuccess);
    Send(60);
    EXPECT_TRUE(KivoraTest::WaitUntil([&] { return listener.role == NK::ThreadRole::input; }));
    EXPECT_EQ(listener.role, NK::ThreadRole::input);
    port.Close();
    port.RemoveListener(&listener);
}
#endif

}  // namespace
