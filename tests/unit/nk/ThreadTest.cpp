#include "nk/nk_thread.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include "nk/nk_exception.h"
#include "support/WaitUntil.h"

namespace {

using KivoraTest::WaitUntil;

/// Waits politely until it is asked to stop.
class CPoliteThread : public NK::CThread {
public:
    using NK::CThread::CThread;
    using NK::CThread::GetName;
    using NK::CThread::SetDeleteOnExit;
    using NK::CThread::stopTimeoutMs_;
    ~CPoliteThread() override { WaitForExit(-1); }

    std::atomic<int> begun{0};
    std::atomic<int> ended{0};

protected:
    void Run() override {
        ++begun;
        while (SleepInterruptible(5, 1)) {
        }
        ++ended;
    }
};

/// Never sleeps, never calls the system, never looks at the stop request.
class CSpinningThread : public NK::CThread {
public:
    using NK::CThread::CThread;
    using NK::CThread::SetDeleteOnExit;

    std::atomic<std::uint64_t> turns{0};

    bool WaitForTurns(std::uint64_t more) const {
        const std::uint64_t before = turns;
        return WaitUntil([&] { return turns - before >= more; });
    }

protected:
    void Run() override {
        for (;;) {
            turns.fetch_add(1, std::memory_order_relaxed);
        }
    }
};

constexpr std::uint64_t kManyTurns = 200'000;

/// Whether `thread` stands still while another spinning thread makes many turns.
bool StandsStill(const CSpinningThread& thread) {
    CSpinningThread witness;
    witness.Start();
    const std::uint64_t before = thread.turns;
    const bool witnessed = witness.WaitForTurns(kManyTurns) && witness.WaitForTurns(kManyTurns);
    witness.Stop(0);
    return witnessed && thread.turns == before;
}

/// Runs whatever the test gives it.
class CScriptedThread : public NK::CThread {
public:
    explicit CScriptedThread(std::function<void(CScriptedThread&)> script) : script_(std::move(script)) {}
    ~CScriptedThread() override {
        WaitForExit(-1);
        if (destroyed != nullptr) {
            *destroyed = true;
        }
    }
    using NK::CThread::IsStopRequested;
    using NK::CThread::SetDeleteOnExit;
    using NK::CThread::SleepInterruptible;

    std::atomic<bool>* destroyed = nullptr;

protected:
    void Run() override {
        const auto script = script_;
        script(*this);
    }

private:
    std::function<void(CScriptedThread&)> script_;
};

TEST(Thread, RunsItsBodyAfterStartAndEndsOnRequest) {
    CPoliteThread thread;
    EXPECT_FALSE(thread.IsRunning());
    EXPECT_TRUE(thread.Start());
    ASSERT_TRUE(WaitUntil([&] { return thread.IsRunning(); }));
    EXPECT_TRUE(thread.Start()) << "running already";
    EXPECT_TRUE(thread.Resume());
    thread.RequestStop();
    ASSERT_TRUE(WaitUntil([&] { return !thread.IsRunning(); }));
    EXPECT_EQ(thread.begun, 1);
    EXPECT_EQ(thread.ended, 1);
}

TEST(Thread, StartsANewThreadAfterItHasFinishedButNotByStartOnce) {
    CPoliteThread thread;
    EXPECT_TRUE(thread.StartOnce());
    EXPECT_TRUE(thread.WaitForExit(-1));
    EXPECT_FALSE(thread.StartOnce());
    EXPECT_FALSE(thread.Resume());
    EXPECT_TRUE(thread.Start());
    EXPECT_TRUE(thread.WaitForExit(-1));
    EXPECT_EQ(thread.begun, 2);
    EXPECT_EQ(thread.ended, 2);
}

TEST(Thread, ResumeStartsAThreadThatWasNeverStarted) {
    CPoliteThread thread;
    EXPECT_TRUE(thread.Resume());
    EXPECT_TRUE(thread.WaitForExit(-1));
    EXPECT_EQ(thread.ended, 1);
}

TEST(Thread, WaitForExitOfAThreadThatWasNeverStartedIsTrue) {
    CPoliteThread thread;
    EXPECT_TRUE(thread.WaitForExit(-1));
    EXPECT_TRUE(thread.WaitForExit(5));
}

TEST(Thread, WaitForExitStraightAfterStartWaitsForTheBody) {
    for (int i = 0; i < 100; ++i) {
        CPoliteThread thread;
        ASSERT_TRUE(thread.Start());
        ASSERT_TRUE(thread.WaitForExit(-1));
        ASSERT_EQ(thread.ended, 1);
    }
}

TEST(Thread, WaitForExitWithATimeOutGivesUp) {
    std::atomic<bool> release{false};
    CScriptedThread thread([&](CScriptedThread&) { WaitUntil([&] { return release.load(); }); });
    ASSERT_TRUE(thread.Start());
    EXPECT_FALSE(thread.WaitForExit(1));
    EXPECT_TRUE(thread.IsRunning());
    release = true;
    EXPECT_TRUE(thread.WaitForExit(60'000));
}

TEST(Thread, WaitForExitRequestsTheStop) {
    CScriptedThread thread([](CScriptedThread& self) { WaitUntil([&] { return self.IsStopRequested(); }); });
    ASSERT_TRUE(thread.Start());
    EXPECT_TRUE(thread.WaitForExit(0)) << "below 1 is without limit";
}

TEST(Thread, WaitForExitOnItsOwnThreadOnlyRequestsTheStop) {
    std::atomic<int> result{-1};
    CScriptedThread thread([&](CScriptedThread& self) {
        const bool ended = self.WaitForExit(-1);
        result = (ended ? 2 : 0) + (self.IsStopRequested() ? 1 : 0);
    });
    ASSERT_TRUE(thread.Start());
    ASSERT_TRUE(WaitUntil([&] { return result >= 0; }));
    EXPECT_EQ(result, 1);
}

TEST(Thread, AThousandStartsAndStops) {
    for (int i = 0; i < 1000; ++i) {
        std::atomic<bool> ran{false};
        CScriptedThread thread([&](CScriptedThread&) { ran = true; });
        ASSERT_TRUE(thread.Start());
        ASSERT_TRUE(thread.Stop(60'000));
        ASSERT_TRUE(ran);
    }
}

TEST(Thread, StopCalledTwiceReturnsFalseTheSecondTimeAndStartIsRefusedForGood) {
    CPoliteThread thread;
    ASSERT_TRUE(thread.Start());
    EXPECT_TRUE(thread.Stop(60'000));
    EXPECT_EQ(thread.ended, 1);
    EXPECT_FALSE(thread.Stop(60'000));
    EXPECT_FALSE(thread.Start());
    EXPECT_FALSE(thread.StartOnce());
    EXPECT_FALSE(thread.Suspend());
    EXPECT_FALSE(thread.SetPriority(1, true));
}

TEST(Thread, StopBeforeTheStartIsTrueAndRefusesTheStart) {
    CPoliteThread thread;
    EXPECT_TRUE(thread.Stop(0));
    EXPECT_FALSE(thread.Start());
    EXPECT_FALSE(thread.Resume());
    EXPECT_EQ(thread.begun, 0);
}

TEST(Thread, StopZeroOnARunningThreadRequestsTheStopAndEndsItAtOnce) {
    CSpinningThread thread;
    ASSERT_TRUE(thread.Start());
    ASSERT_TRUE(thread.WaitForTurns(kManyTurns));
    EXPECT_TRUE(thread.Stop(0));
    EXPECT_FALSE(thread.IsRunning());
    EXPECT_TRUE(StandsStill(thread));
    EXPECT_FALSE(thread.Start());
    EXPECT_TRUE(thread.WaitForExit(-1));
}

TEST(Thread, StopEndsABodyThatIgnoresTheRequestAfterTheTimeOut) {
    CSpinningThread thread;
    ASSERT_TRUE(thread.Start());
    ASSERT_TRUE(thread.WaitForTurns(1));
    EXPECT_TRUE(thread.Stop(10));
    EXPECT_TRUE(StandsStill(thread));
}

TEST(Thread, StopEndsABodyThatSleeps) {
    std::atomic<bool> sleeping{false};
    std::atomic<bool> wokenUp{false};
    auto thread = std::make_unique<CScriptedThread>([&](CScriptedThread& self) {
        sleeping = true;
        self.SleepInterruptible(3'600'000, 3'600'000);
        wokenUp = true;
    });
    ASSERT_TRUE(thread->Start());
    ASSERT_TRUE(WaitUntil([&] { return sleeping.load(); }));
    EXPECT_TRUE(thread->Stop(0));
    thread.reset();
    EXPECT_FALSE(wokenUp);
}

TEST(Thread, StopLeavesTheHeapUsableWhenTheBodyAllocates) {
    mallopt(M_ARENA_MAX, 1);
    for (int i = 0; i < 50; ++i) {
        std::atomic<int> blocks{0};
        CScriptedThread thread([&](CScriptedThread&) {
            for (;;) {
                void* const block = std::malloc(static_cast<std::size_t>(100 + blocks % 5000));
                for (int turn = 0; turn < 2000; ++turn) {
                    blocks.fetch_add(turn % 2, std::memory_order_relaxed);
                }
                std::free(block);
            }
        });
        ASSERT_TRUE(thread.Start());
        ASSERT_TRUE(WaitUntil([&] { return blocks > 10'000; }));
        ASSERT_TRUE(thread.Stop(0));
        std::thread([] { std::free(std::malloc(3000)); }).join();
    }
}

class CThrowingThread : public CPoliteThread {
public:
    void RequestStop() override {
        CPoliteThread::RequestStop();
        if (thrower) {
            thrower();
        }
    }
    std::function<void()> thrower;
};

TEST(Thread, StopLetsNoExceptionOut) {
    const std::function<void()> throwers[] = {
        [] { throw NK::CException(L"framework"); },
        [] { throw std::runtime_error("standard"); },
        [] { throw 1; },
    };
    for (const auto& thrower : throwers) {
        CThrowingThread thread;
        thread.thrower = thrower;
        ASSERT_TRUE(thread.Start());
        EXPECT_FALSE(thread.Stop(10));
        thread.thrower = nullptr;
        EXPECT_TRUE(thread.WaitForExit(-1));
    }
}

TEST(Thread, StopFromItsOwnBodyEndsTheThreadInTheCall) {
    std::atomic<bool> reached{false};
    std::atomic<bool> passed{false};
    CScriptedThread thread([&](CScriptedThread& self) {
        reached = true;
        self.Stop(10'000);
        passed = true;
    });
    ASSERT_TRUE(thread.Start());
    ASSERT_TRUE(WaitUntil([&] { return reached && !thread.IsRunning(); }));
    EXPECT_FALSE(thread.Start());
    CSpinningThread witness;
    witness.Start();
    EXPECT_TRUE(witness.WaitForTurns(kManyTurns));
    witness.Stop(0);
    EXPECT_FALSE(passed);
}

TEST(Thread, TheDestructorStopsARunningThread) {
    std::atomic<bool> ended{false};
    class CNoWait : public NK::CThread {
    public:
        explicit CNoWait(std::atomic<bool>& ended) : ended_(ended) {}
        std::atomic<bool> begun{false};

    protected:
        void Run() override {
            // The object's own part is gone while the base waits: nothing of it is used after the first line.
            std::atomic<bool>& ended = ended_;
            begun = true;
            while (SleepInterruptible(1, 1)) {
            }
            ended = true;
        }

    private:
        std::atomic<bool>& ended_;
    };
    {
        CNoWait thread(ended);
        ASSERT_TRUE(thread.Start());
        ASSERT_TRUE(WaitUntil([&] { return thread.begun.load(); }));
    }
    EXPECT_TRUE(ended);
}

TEST(Thread, TheDestructorEndsASpinningThreadByForceAfterTheGrantedTime) {
    static std::atomic<std::uint64_t> turns{0};
    class CStubborn : public NK::CThread {
    public:
        CStubborn() { stopTimeoutMs_ = 20; }

    protected:
        void Run() override {
            for (;;) {
                ++turns;
            }
        }
    };
    {
        CStubborn thread;
        ASSERT_TRUE(thread.Start());
        ASSERT_TRUE(WaitUntil([] { return turns > 0; }));
    }
    const std::uint64_t after = turns;
    CSpinningThread witness;
    witness.Start();
    EXPECT_TRUE(witness.WaitForTurns(kManyTurns));
    witness.Stop(0);
    EXPECT_EQ(turns, after);
}

TEST(Thread, SuspendHoldsASpinningBodyAndResumeLetsItGoOn) {
    CSpinningThread thread;
    ASSERT_TRUE(thread.Start());
    ASSERT_TRUE(thread.WaitForTurns(1));
    for (int round = 0; round < 5; ++round) {
        ASSERT_TRUE(thread.Suspend());
        EXPECT_TRUE(thread.Suspend()) << "suspended already";
        EXPECT_TRUE(thread.IsRunning());
        EXPECT_TRUE(StandsStill(thread));
        ASSERT_TRUE(round % 2 == 0 ? thread.Resume() : thread.Start());
        ASSERT_TRUE(thread.WaitForTurns(1));
    }
    EXPECT_TRUE(thread.Stop(0));
}

TEST(Thread, StopEndsASuspendedThread) {
    CSpinningThread thread;
    ASSERT_TRUE(thread.Start());
    ASSERT_TRUE(thread.WaitForTurns(1));
    ASSERT_TRUE(thread.Suspend());
    EXPECT_TRUE(thread.Stop(0));
    EXPECT_FALSE(thread.IsRunning());
    EXPECT_FALSE(thread.Resume());
    EXPECT_TRUE(StandsStill(thread));
}

TEST(Thread, SuspendWithoutAThreadIsFalse) {
    CPoliteThread thread;
    EXPECT_FALSE(thread.Suspend());
    ASSERT_TRUE(thread.Start());
    ASSERT_TRUE(thread.WaitForExit(-1));
    EXPECT_FALSE(thread.Suspend());
}

TEST(Thread, SuspendOnItsOwnThreadReturnsWhenAnotherResumesIt) {
    constexpr int kRounds = 100;
    std::atomic<int> resumed{0};
    CScriptedThread thread([&](CScriptedThread& self) {
        for (int round = 0; round < kRounds; ++round) {
            resumed += self.Suspend() ? 1 : 1000;
        }
    });
    ASSERT_TRUE(thread.Start());
    // A resume that comes before the suspension has no effect, hence again and again.
    ASSERT_TRUE(WaitUntil([&] {
        thread.Resume();
        return resumed >= kRounds;
    }));
    EXPECT_EQ(resumed, kRounds);
}

TEST(Thread, IsSuspendedAndResumedManyTimesWhileItWorks) {
    CPoliteThread polite;
    CSpinningThread spinning;
    ASSERT_TRUE(polite.Start());
    ASSERT_TRUE(spinning.Start());
    ASSERT_TRUE(WaitUntil([&] { return polite.begun == 1; }) && spinning.WaitForTurns(1)) << "they work";
    for (int i = 0; i < 200; ++i) {
        ASSERT_TRUE(polite.Suspend());
        ASSERT_TRUE(spinning.Suspend());
        ASSERT_TRUE(polite.Resume());
        ASSERT_TRUE(spinning.Resume());
    }
    EXPECT_TRUE(spinning.WaitForTurns(1));
    EXPECT_TRUE(spinning.Stop(0));
    EXPECT_TRUE(polite.WaitForExit(-1));
    EXPECT_EQ(polite.ended, 1);
}

TEST(Thread, DeletesItselfWhenItsBodyEnds) {
    std::atomic<bool> destroyed{false};
    auto* const thread = new CScriptedThread([](CScriptedThread&) {});
    thread->destroyed = &destroyed;
    thread->SetDeleteOnExit(true);
    ASSERT_TRUE(thread->Start());
    EXPECT_TRUE(WaitUntil([&] { return destroyed.load(); }));
}

TEST(Thread, DeletesItselfWhenItIsEndedByForce) {
    std::atomic<bool> destroyed{false};
    std::atomic<bool> spinning{false};
    auto* const thread = new CScriptedThread([&](CScriptedThread&) {
        for (;;) {
            spinning = true;
        }
    });
    thread->destroyed = &destroyed;
    thread->SetDeleteOnExit(true);
    ASSERT_TRUE(thread->Start());
    ASSERT_TRUE(WaitUntil([&] { return spinning.load(); }));
    EXPECT_TRUE(thread->Stop(0));
    EXPECT_TRUE(destroyed) << "before Stop() returns";
}

TEST(Thread, DeletesItselfWhenAStopEndsItInTime) {
    for (int i = 0; i < 20; ++i) {
        std::atomic<bool> destroyed{false};
        auto* const thread = new CScriptedThread([](CScriptedThread& self) {
            while (self.SleepInterruptible(1, 1)) {
            }
        });
        thread->destroyed = &destroyed;
        thread->SetDeleteOnExit(true);
        ASSERT_TRUE(thread->Start());
        ASSERT_TRUE(thread->Stop(60'000));
        ASSERT_TRUE(WaitUntil([&] { return destroyed.load(); }));
    }
}

TEST(Thread, DeletesItselfWhenItStopsItself) {
    std::atomic<bool> destroyed{false};
    std::atomic<bool> passed{false};
    auto* const thread = new CScriptedThread([&](CScriptedThread& self) {
        self.Stop(0);
        passed = true;
    });
    thread->destroyed = &destroyed;
    thread->SetDeleteOnExit(true);
    ASSERT_TRUE(thread->Start());
    EXPECT_TRUE(WaitUntil([&] { return destroyed.load(); }));
    EXPECT_FALSE(passed);
}

TEST(Thread, ABodyMayDeleteItsObject) {
    std::atomic<bool> destroyed{false};
    std::atomic<bool> wentOn{false};
    auto* const thread = new CScriptedThread([&](CScriptedThread& self) {
        delete &self;
        wentOn = true;
    });
    thread->destroyed = &destroyed;
    ASSERT_TRUE(thread->Start());
    EXPECT_TRUE(WaitUntil([&] { return destroyed && wentOn; }));
}

TEST(Thread, KeepsAtMost31CharactersOfItsName) {
    CPoliteThread thread;
    EXPECT_EQ(thread.GetName(), L"[UnnamedThread]");
    thread.SetName(L"0123456789012345678901234567890");
    EXPECT_EQ(thread.GetName(), L"0123456789012345678901234567890");
    thread.SetName(L"01234567890123456789012345678901");
    EXPECT_EQ(thread.GetName(), L"0123456789012345678901234567890");
    thread.SetName(L"");
    EXPECT_EQ(thread.GetName(), L"");
    thread.SetName(nullptr);
    EXPECT_EQ(thread.GetName(), L"");
}

/// Tells its system thread number, so that a test can look at its scheduling.
class CNumberedThread : public CPoliteThread {
public:
    using CPoliteThread::CPoliteThread;
    ~CNumberedThread() override { WaitForExit(-1); }
    pid_t StartAndGetNumber() {
        Start();
        WaitUntil([this] { return number_ != 0; });
        return number_;
    }

protected:
    void Run() override {
        number_ = gettid();
        CPoliteThread::Run();
    }

private:
    std::atomic<pid_t> number_{0};
};

int NiceOf(pid_t number) {
    return getpriority(PRIO_PROCESS, static_cast<id_t>(number));
}

TEST(ThreadPriority, IsStoredBeforeTheStartAndAppliedAtIt) {
    CNumberedThread thread;
    EXPECT_FALSE(thread.SetPriority(3)) << "the level in force";
    EXPECT_TRUE(thread.SetPriority(1));
    EXPECT_FALSE(thread.SetPriority(1));
    EXPECT_TRUE(thread.SetPriority(1, true));
    EXPECT_EQ(NiceOf(thread.StartAndGetNumber()), 10);
}

TEST(ThreadPriority, TheLevelInForceIsRefusedWithoutASystemCallUnlessForced) {
    CNumberedThread thread;
    const pid_t number = thread.StartAndGetNumber();
    EXPECT_TRUE(thread.SetPriority(2));
    EXPECT_EQ(NiceOf(number), 5);
    ASSERT_EQ(setpriority(PRIO_PROCESS, static_cast<id_t>(number), 12), 0);
    EXPECT_FALSE(thread.SetPriority(2));
    EXPECT_EQ(NiceOf(number), 12);
    EXPECT_TRUE(thread.SetPriority(0));
    EXPECT_EQ(NiceOf(number), 19);
    EXPECT_TRUE(thread.SetPriority(0, true));
}

TEST(ThreadPriority, ReapplyDoesNothingWhileTheRequestIsInForce) {
    CNumberedThread thread;
    thread.StartAndGetNumber();
    EXPECT_FALSE(thread.ReapplyPriority());
    EXPECT_TRUE(thread.SetPriority(2));
    EXPECT_FALSE(thread.ReapplyPriority());
}

TEST(ThreadPriority, AnUnknownLevelMeansNormal) {
    CNumberedThread thread(true, 17);
    CNumberedThread normal;
    EXPECT_EQ(NiceOf(thread.StartAndGetNumber()), NiceOf(normal.StartAndGetNumber()));
    EXPECT_FALSE(thread.SetPriority(17));
}

TEST(ThreadPriority, ARefusalIsTheResultAndHarmsNothing) {
    const int level5 = NK::CThread::kLevelHighest;
    CNumberedThread thread(true, NK::CThread::kLevelTimeCritical);
    const pid_t number = thread.StartAndGetNumber();
    ASSERT_NE(number, 0) << "starts whether the level was granted or not";
    const bool granted = thread.SetPriority(level5);
    const int policy = sched_getscheduler(number) & ~SCHED_RESET_ON_FORK;
    EXPECT_EQ(policy == SCHED_RR, granted);
    if (granted) {
        sched_param parameters{};
        sched_getparam(number, &parameters);
        const int lower = parameters.sched_priority;
        EXPECT_TRUE(thread.SetPriority(NK::CThread::kLevelTimeCritical));
        sched_getparam(number, &parameters);
        EXPECT_GT(parameters.sched_priority, lower);
        EXPECT_TRUE(thread.SetPriority(NK::CThread::kLevelNormal));
        EXPECT_EQ(sched_getscheduler(number) & ~SCHED_RESET_ON_FORK, SCHED_OTHER);
    }
    EXPECT_TRUE(thread.WaitForExit(-1));
    EXPECT_EQ(thread.ended, 1);
}

TEST(ThreadPriority, AnyThreadMayGiveItselfALevelAndPassesItOn) {
    const int ofTheFirst = NiceOf(getpid());
    std::thread([] {
        ASSERT_TRUE(NK::CThread::SetCallersLevel(1));
        EXPECT_EQ(NiceOf(gettid()), 10);
        std::thread([] { EXPECT_EQ(NiceOf(gettid()), 10); }).join();
        const bool granted = NK::CThread::SetCallersLevel(NK::CThread::kLevelAboveNormal);
        EXPECT_EQ(NiceOf(gettid()), granted ? -5 : 10);
        if (granted) {
            CNumberedThread thread;
            EXPECT_EQ(NiceOf(thread.StartAndGetNumber()), 0) << "one of the framework has its own";
        }
    }).join();
    EXPECT_EQ(NiceOf(getpid()), ofTheFirst);
}

TEST(SleepInterruptible, SleepsTheFullTimeUnlessAStopIsRequested) {
    std::atomic<int> results{0};
    CScriptedThread thread([&](CScriptedThread& self) {
        const bool whole = self.SleepInterruptible(3, 1);
        const bool inOne = self.SleepInterruptible(1, 5);
        const bool nothing = self.SleepInterruptible(0, 5);
        self.RequestStop();
        const bool nothingStopped = self.SleepInterruptible(0, 5);
        const bool stopped = self.SleepInterruptible(3'600'000, 1);
        const bool inOneStopped = self.SleepInterruptible(1, 5);
        results = (whole ? 1 : 0) + (inOne ? 2 : 0) + (nothing ? 4 : 0) + (nothingStopped ? 8 : 0) +
                  (stopped ? 16 : 0) + (inOneStopped ? 32 : 0);
    });
    ASSERT_TRUE(thread.Start());
    ASSERT_TRUE(WaitUntil([&] { return results != 0; }));
    EXPECT_EQ(results, 15);
}

}  // namespace
