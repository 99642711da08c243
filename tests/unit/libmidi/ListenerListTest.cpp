#include "libmidi/ListenerList.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace {

using LibMidi::ListenerList;

struct CListener {
    std::function<void()> onCall;
};

struct CSetup {
    ListenerList<CListener> list{NK::SystemSleeper()};
    std::vector<int> called;

    void Add(CListener& listener, int number) {
        listener.onCall = [this, number] { called.push_back(number); };
        list.Add(&listener);
    }
    std::vector<int> Call() {
        called.clear();
        list.ForEach([](CListener& listener) { listener.onCall(); });
        return called;
    }
};

TEST(ListenerList, ListenersAreCalledInTheOrderOfRegistration) {
    CSetup setup;
    CListener a;
    CListener b;
    CListener c;
    setup.Add(a, 1);
    setup.Add(b, 2);
    setup.Add(c, 3);
    EXPECT_EQ(setup.Call(), (std::vector{1, 2, 3}));
}

TEST(ListenerList, ADuplicateIsCalledTwiceAndRemovedOnceAtATime) {
    CSetup setup;
    CListener a;
    CListener b;
    setup.Add(a, 1);
    setup.Add(b, 2);
    setup.list.Add(&a);
    EXPECT_EQ(setup.Call(), (std::vector{1, 2, 1}));
    setup.list.Remove(&a);
    EXPECT_EQ(setup.Call(), (std::vector{2, 1}));
    setup.list.Remove(&a);
    EXPECT_EQ(setup.Call(), (std::vector{2}));
}

TEST(ListenerList, RemovingAListenerThatIsNotThereDoesNothing) {
    CSetup setup;
    CListener a;
    CListener stranger;
    setup.Add(a, 1);
    setup.list.Remove(&stranger);
    EXPECT_EQ(setup.Call(), (std::vector{1}));
}

TEST(ListenerList, AListenerThatDeletesItselfIsSafeAndTheOthersAreCalledOnce) {
    CSetup setup;
    CListener a;
    CListener c;
    auto* self = new CListener;
    setup.Add(a, 1);
    setup.list.Add(self);
    setup.Add(c, 3);
    self->onCall = [&setup, self] {
        setup.called.push_back(2);
        setup.list.Remove(self);
        CSetup& kept = setup;
        delete self;
        kept.called.push_back(20);
    };
    EXPECT_EQ(setup.Call(), (std::vector{1, 2, 20, 3}));
    EXPECT_EQ(setup.Call(), (std::vector{1, 3}));
}

TEST(ListenerList, AListenerMayRemoveAnEarlierAndALaterOne) {
    CSetup setup;
    CListener a;
    CListener b;
    CListener c;
    CListener d;
    setup.Add(a, 1);
    setup.Add(b, 2);
    setup.Add(c, 3);
    setup.Add(d, 4);
    b.onCall = [&] {
        setup.called.push_back(2);
        setup.list.Remove(&a);
        setup.list.Remove(&c);
    };
    EXPECT_EQ(setup.Call(), (std::vector{1, 2, 4}));
}

TEST(ListenerList, AListenerAddedFromACallIsCalledInTheSamePass) {
    CSetup setup;
    CListener a;
    CListener b;
    b.onCall = [&setup] { setup.called.push_back(2); };
    a.onCall = [&] {
        setup.called.push_back(1);
        if (setup.called.size() == 1) {
            setup.list.Add(&b);
        }
    };
    setup.list.Add(&a);
    EXPECT_EQ(setup.Call(), (std::vector{1, 2}));
}

TEST(ListenerList, NoLockIsHeldDuringACall) {
    CSetup setup;
    CListener a;
    CListener other;
    a.onCall = [&] {
        std::thread([&] { setup.list.Add(&other); }).join();
        std::thread([&] { setup.list.Remove(&other); }).join();
    };
    setup.list.Add(&a);
    setup.Call();
    EXPECT_FALSE(setup.list.IsRemoving());
}

TEST(ListenerList, RemovingFromAnotherThreadWaitsForTheCallInProgress) {
    CSetup setup;
    CListener a;
    std::atomic<bool> inCall{false};
    std::atomic<bool> callEnded{false};
    a.onCall = [&] {
        inCall = true;
        inCall.notify_all();
        EXPECT_TRUE(KivoraTest::WaitUntil([&] { return setup.list.IsRemoving(); }));
        callEnded = true;
    };
    setup.list.Add(&a);
    std::thread caller([&] { setup.list.ForEach([](CListener& listener) { listener.onCall(); }); });
    inCall.wait(false);
    setup.list.Remove(&a);
    EXPECT_TRUE(callEnded);
    EXPECT_FALSE(setup.list.IsRemoving());
    caller.join();
}

TEST(ListenerList, ListenersMayComeAndGoWhileOthersAreCalled) {
    CSetup setup;
    CListener lasting;
    std::atomic<int> calls{0};
    std::atomic<int> callsAfterRemoval{0};
    lasting.onCall = [&] { ++calls; };
    setup.list.Add(&lasting);
    std::atomic<bool> stop{false};
    std::thread caller([&] {
        while (!stop) {
            setup.list.ForEach([](CListener& listener) { listener.onCall(); });
        }
    });
    for (int round = 0; round < 500; ++round) {
        std::atomic<bool> isRemoved{false};
        CListener listener;
        listener.onCall = [&] { callsAfterRemoval += isRemoved ? 1 : 0; };
        setup.list.Add(&listener);
        setup.list.Remove(&listener);
        isRemoved = true;
        for (const int before = calls; calls == before;) {
            std::this_thread::yield();
        }
    }
    stop = true;
    caller.join();
    EXPECT_EQ(callsAfterRemoval, 0);
}

}  // namespace
