// The player with its threads running.
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "libmidi/MIDIPlayer.h"
#include "libmidi/MIDIPlayerQueue.h"
#include "nk/nk_thread_role.h"
#include "support/FakePorts.h"
#include "support/VirtualTime.h"
#include "support/WaitUntil.h"

namespace {

using namespace LibMidi;
using KivoraTest::BytesOf;
using KivoraTest::CFakeOutPort;
using KivoraTest::WaitUntil;

class MIDIPlayerThreads : public testing::Test {
protected:
    MIDIPlayerThreads() {
        port.Open();
        player->SetTimeSource(&clock);
        player->AttachOutput(&port);
    }

    NK::CSysTimeSource clock;
    CFakeOutPort port;
    std::unique_ptr<MIDIPlayer> player = CreateMIDIPlayer();
    std::shared_ptr<MIDIPlayerQueue> queue = player->GetSink();
};

TEST_F(MIDIPlayerThreads, WithoutATimeSourceItDoesNotStart) {
    const std::unique_ptr<MIDIPlayer> bare = CreateMIDIPlayer();
    EXPECT_FALSE(bare->Start());
    EXPECT_FALSE(bare->IsRunning());
}

TEST_F(MIDIPlayerThreads, ItRunsBetweenStartAndStopAndStartsAgain) {
    EXPECT_FALSE(player->IsRunning());
    for (int run = 0; run < 3; ++run) {
        ASSERT_TRUE(player->Start());
        EXPECT_TRUE(player->Start());
        EXPECT_TRUE(player->IsRunning());
        queue->PlayNote(0, 60, 80, 5, 0);
        EXPECT_TRUE(WaitUntil([&] { return port.GetWritten().size() == 2; }));
        EXPECT_EQ(port.TakeWritten(), (std::vector<std::uint32_t>{0x903C50, 0x803C00}));
        player->Stop();
        EXPECT_FALSE(player->IsRunning());
        player->Stop();
    }
    EXPECT_FALSE(player->HasWriteFailed());
}

TEST_F(MIDIPlayerThreads, WhatIsQueuedWhileItStandsIsWrittenOnceItRuns) {
    queue->SendMessage({0x90, 1, 60, 80}, 0);
    player->Start();
    EXPECT_TRUE(WaitUntil([&] { return port.GetWritten().size() == 1; }));
}

TEST_F(MIDIPlayerThreads, AFailedWriteEndsItAndMemoryDoesNotGrow) {
    player->Start();
    port.device.failsToWrite = true;
    queue->SendMessage({0x90, 1, 60, 80}, 0);
    ASSERT_TRUE(WaitUntil([&] { return !player->IsRunning(); }));
    EXPECT_TRUE(player->HasWriteFailed());
    EXPECT_FALSE(queue->HasWork());
    queue->SendMessage({0x90, 1, 60, 80}, 0);
    EXPECT_FALSE(queue->HasWork());
    port.device.failsToWrite = false;
    ASSERT_TRUE(player->Start());
    EXPECT_FALSE(player->HasWriteFailed());
    EXPECT_TRUE(player->IsRunning());
    queue->SendMessage({0x90, 1, 62, 80}, 0);
    EXPECT_TRUE(WaitUntil([&] { return port.GetWritten().size() == 1; }));
}

TEST_F(MIDIPlayerThreads, ItMayBeDestroyedWhileItRuns) {
    player->Start();
    queue->PlayNote(0, 60, 80, 100000, 0);
    player.reset();
    EXPECT_FALSE(queue->HasWork());
}

TEST_F(MIDIPlayerThreads, ItMayBeStoppedRightAfterTheStart) {
    for (int run = 0; run < 50; ++run) {
        ASSERT_TRUE(player->Start());
        player->Stop();
    }
}

TEST_F(MIDIPlayerThreads, ListenersAreCalledOnAThreadOfTheirOwn) {
    struct CListener : MIDIPlayerListener {
        void OnNotePlayed(const MIDIEvent&) override {
            const std::lock_guard guard(mutex);
            thread = std::this_thread::get_id();
            ++calls;
            changed.notify_all();
        }
        std::mutex mutex;
        std::condition_variable changed;
        std::thread::id thread;
        int calls = 0;
    } listener;
    std::thread::id writer;
    port.device.onWriting = [&] { writer = std::this_thread::get_id(); };
    player->AddListener(&listener);
    player->Start();
    queue->SendMessage({0x90, 1, 60, 80}, 0);
    {
        std::unique_lock lock(listener.mutex);
        ASSERT_TRUE(listener.changed.wait_for(lock, std::chrono::seconds(30), [&] { return listener.calls == 1; }));
        EXPECT_NE(listener.thread, std::this_thread::get_id());
    }
    player->Stop();
    EXPECT_NE(listener.thread, writer);
    EXPECT_NE(writer, std::this_thread::get_id());
    player->RemoveListener(&listener);
}

TEST_F(MIDIPlayerThreads, DetachingWaitsForTheRoundInProgress) {
    CFakeOutPort other(L"other");
    other.Open();
    const int binding = player->AttachOutput(&other);
    std::atomic<bool> writing{false};
    std::atomic<bool> written{false};
    other.device.onWriting = [&] {
        writing = true;
        writing.notify_all();
        NK::SystemSleeper().Sleep(20);
        written = true;
    };
    player->Start();
    queue->Queue(SynthEventBase(CtrlEvent(0, 0, 1, 1), 1));
    writing.wait(false);
    player->DetachOutput(binding);
    EXPECT_TRUE(written);
}

TEST_F(MIDIPlayerThreads, AStopBetweenTwoOfAllPortsLeavesTheRestOut) {
    CFakeOutPort other(L"other");
    other.Open();
    player->AttachOutput(&other);
    std::atomic<bool> writing{false};
    std::thread stopper;
    port.device.onWriting = [&] {
        stopper = std::thread([&] { player->Stop(); });
        WaitUntil([&] { return !player->IsRunning(); });
        writing = true;
    };
    player->Start();
    queue->Queue(SynthEventBase(CtrlEvent(0, 0, 1, 1), kAllPorts));
    ASSERT_TRUE(WaitUntil([&] { return writing.load(); }));
    stopper.join();
    EXPECT_EQ(port.GetWritten().size(), 1U);
    EXPECT_TRUE(other.GetWritten().empty());
}

#ifndef NDEBUG
TEST_F(MIDIPlayerThreads, TheThreadsHaveTheirRoles) {
    struct CListener : MIDIPlayerListener {
        void OnNotePlayed(const MIDIEvent&) override { role = NK::GetThreadRole(); }
        std::atomic<NK::ThreadRole> role{NK::ThreadRole::none};
    } listener;
    std::atomic<NK::ThreadRole> writer{NK::ThreadRole::none};
    port.device.onWriting = [&] { writer = NK::GetThreadRole(); };
    player->AddListener(&listener);
    player->Start();
    queue->SendMessage({0x90, 1, 60, 80}, 0);
    EXPECT_TRUE(WaitUntil([&] { return listener.role == NK::ThreadRole::events; }));
    EXPECT_EQ(writer, NK::ThreadRole::player);
    player->Stop();
    player->RemoveListener(&listener);
}
#endif

}  // namespace
