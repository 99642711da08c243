// The player's threads: each wakes when there is something to do, and at no other time.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <thread>
#include <vector>

#include "libmidi/MIDIPlayer.h"
#include "libmidi/MIDIPlayerQueue.h"
#include "nk/nk_wakeup.h"
#include "support/CountingSleeper.h"
#include "support/FakePorts.h"
#include "support/WaitUntil.h"

namespace {

using namespace LibMidi;
using KivoraTest::CFakeOutPort;
using KivoraTest::WaitUntil;

class MIDIPlayerWakeups : public testing::Test {
protected:
    MIDIPlayerWakeups() {
        port.Open();
        player->SetTimeSource(&clock);
        player->AttachOutput(&port);
    }
    bool AreWritten(std::size_t events) {
        return WaitUntil([&] { return port.GetWritten().size() == events; });
    }

    KivoraTest::CCountingSleeper sleeper;
    NK::CSysTimeSource clock;
    CFakeOutPort port;
    std::unique_ptr<MIDIPlayer> player = CreateMIDIPlayer(sleeper);
    std::shared_ptr<MIDIPlayerQueue> queue = player->GetSink();
};

TEST_F(MIDIPlayerWakeups, AtRestNothingWakes) {
    player->Start();
    queue->SendMessage({0x90, 1, 60, 80}, 0);
    ASSERT_TRUE(AreWritten(1));
    // Two threads that have begun, and the one round; a few more for waits that end for no reason.
    constexpr int kFew = 8;
    NK::CWakeup nobody;
    for (int i = 0; i < 200; ++i) {
        nobody.WaitUntil(NK::CWakeup::NowNs() + 1'000'000);
    }
    EXPECT_LE(sleeper.waits, kFew);
}

TEST_F(MIDIPlayerWakeups, WhatIsHeldBackIsTakenByOneRound) {
    player->Start();
    int together = 0;
    for (int turn = 0; turn < 100; ++turn) {
        queue->HoldBack();
        queue->SendMessage({0x80, 1, 60, 0}, 0);
        const std::int64_t untilNs = NK::CWakeup::NowNs() + 200'000;
        while (NK::CWakeup::NowNs() < untilNs) {
        }
        queue->SendMessage({0x90, 1, 64, 80}, 0);
        queue->LetGo();
        ASSERT_TRUE(AreWritten(2));
        // One round writes by class, a note-off last.
        together += port.TakeWritten().front() == 0x904050 ? 1 : 0;
    }
    // The machine may be kept from this thread for a whole millisecond, though not always.
    EXPECT_GT(together, 10);
}

TEST_F(MIDIPlayerWakeups, AWriteThatFailsIsTold) {
    std::atomic<bool> told{false};
    EXPECT_TRUE(player->TellOfFailure([&] { told = player->HasWriteFailed(); }));
    player->Start();
    port.device.failsToWrite = true;
    queue->SendMessage({0x90, 1, 60, 80}, 0);
    EXPECT_TRUE(WaitUntil([&] { return told.load(); }));
}

TEST_F(MIDIPlayerWakeups, TheFirstListenerIsNotToldWhatWasWrittenBefore) {
    struct CListener : MIDIPlayerListener {
        void OnNotePlayed(const MIDIEvent& event) override { last = event.data1; }
        std::atomic<int> last{-1};
    } listener;
    player->Start();
    queue->SendMessage({0x90, 1, 60, 80}, 0);
    ASSERT_TRUE(AreWritten(1));
    player->AddListener(&listener);
    queue->SendMessage({0x90, 1, 61, 80}, 0);
    EXPECT_TRUE(WaitUntil([&] { return listener.last == 61; }));
    player->Stop();
    player->RemoveListener(&listener);
}

/// Sends numbered controllers in bursts, and after some bursts waits until the last has been written.
class CSender {
public:
    CSender(MIDIPlayerQueue& queue, int channel) : queue_(queue), channel_(static_cast<std::uint8_t>(channel)) {}

    bool Run(std::int64_t untilNs) {
        unsigned random = channel_ + 1U;
        while (NK::CWakeup::NowNs() < untilNs) {
            random = random * 1664525U + 1013904223U;
            for (unsigned count = 1 + (random >> 16) % 6; count > 0; --count) {
                queue_.SendMessage(
                    {0xB0, static_cast<std::uint8_t>(channel_ + 1), static_cast<std::uint8_t>(sent >> 7 & 0x7F),
                     static_cast<std::uint8_t>(sent & 0x7F)},
                    0);
                ++sent;
            }
            if ((random >> 20) % 4 != 0 && !WaitUntil([this] { return written == sent; })) {
                return false;
            }
        }
        return WaitUntil([this] { return written == sent; });
    }
    /// On the player's thread.
    void Note(std::uint32_t number) {
        wrong = wrong || number != (written & 0x3FFF);
        ++written;
    }

    std::uint32_t sent = 0;
    std::atomic<std::uint32_t> written{0};
    std::atomic<bool> wrong{false};

private:
    MIDIPlayerQueue& queue_;
    const std::uint8_t channel_;
};

/// Hands what is written to its sender.
class CSortingPort : public MIDIOutPortImpl {
public:
    explicit CSortingPort(std::vector<std::unique_ptr<CSender>>& senders)
        : MIDIPortImpl(0, NK::CString(L"sorting"), kOutput), senders_(senders) {}

protected:
    bool OpenDevice() override { return true; }
    void CloseDevice() override {}
    bool WriteEvent(const MIDIEvent& event) override {
        senders_.at(event.status & 0x0F)->Note(static_cast<std::uint32_t>(event.data1 << 7 | event.data2));
        return true;
    }

private:
    std::vector<std::unique_ptr<CSender>>& senders_;
};

/// KIVORA_QUEUE_SECONDS makes it last longer than its second.
TEST_F(MIDIPlayerWakeups, EveryEventOfFourThreadsIsWrittenOnceAndInOrder) {
    const char* const seconds = std::getenv("KIVORA_QUEUE_SECONDS");
    const std::int64_t untilNs =
        NK::CWakeup::NowNs() + (seconds == nullptr ? 1 : std::atoi(seconds)) * std::int64_t{1'000'000'000};
    queue->SetKeepsOrder(true);
    std::vector<std::unique_ptr<CSender>> senders;
    for (int channel = 0; channel < 4; ++channel) {
        senders.push_back(std::make_unique<CSender>(*queue, channel));
    }
    CSortingPort sorting(senders);
    sorting.Open();
    player->AttachOutput(&sorting);
    player->DetachOutput(0);
    player->Start();
    std::vector<std::thread> threads;
    std::atomic<int> complete{0};
    for (const auto& sender : senders) {
        threads.emplace_back([&complete, &sender, untilNs] { complete += sender->Run(untilNs) ? 1 : 0; });
    }
    // Holds that begin and end meanwhile keep nothing back for good.
    while (NK::CWakeup::NowNs() < untilNs) {
        queue->HoldBack();
        std::this_thread::yield();
        queue->LetGo();
        std::this_thread::yield();
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(complete, 4);
    player->Stop();
    for (const auto& sender : senders) {
        EXPECT_GT(sender->sent, 0U);
        EXPECT_EQ(sender->written, sender->sent);
        EXPECT_FALSE(sender->wrong);
    }
}

}  // namespace
