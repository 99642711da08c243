#include "nk/qt/QLogDispatcher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <QCoreApplication>
#include <QStringList>
#include <QThread>
#include <thread>
#include <vector>

#include "nk/qt/QLoggerEvent.h"

namespace {

class CListener : public QObject {
public:
    QStringList lines;
    QThread* thread = nullptr;

protected:
    void customEvent(QEvent* event) override {
        ASSERT_EQ(event->type(), 1005);
        lines += static_cast<NK::QLoggerEvent*>(event)->GetLine();
        thread = QThread::currentThread();
    }
};

class CFixedTimeDispatcher : public NK::QLogDispatcher {
public:
    CFixedTimeDispatcher() { SetShortTimestamp(true); }
    ~CFixedTimeDispatcher() override { NK::ResetCurrentLogger(this); }

protected:
    void FormatTimestamp(NK::CString& text) const override { text = L"<now>"; }
};

class LogDispatcher : public testing::Test {
protected:
    LogDispatcher() { NK::SetCurrentLogger(&dispatcher); }
    static void DeliverEvents() { QCoreApplication::sendPostedEvents(); }

    CFixedTimeDispatcher dispatcher;
};

TEST(LoggerEvent, IsType1005AndCarriesItsLineFromEveryKindOfText) {
    const NK::QLoggerEvent event(QStringLiteral("line"));
    EXPECT_EQ(event.type(), 1005);
    EXPECT_EQ(event.type(), QEvent::User + 5);
    EXPECT_EQ(event.GetLine(), "line");
    EXPECT_EQ(NK::QLoggerEvent(NK::CString(L"\u041D")).GetLine(), QString(QChar(0x41D)));
    EXPECT_EQ(NK::QLoggerEvent(L"wide \U0001F3B9").GetLine(), QString::fromUtf8("wide \xF0\x9F\x8E\xB9"));
    EXPECT_EQ(NK::QLoggerEvent("\xE9").GetLine(), QString(QChar(0xE9)));
}

TEST_F(LogDispatcher, PostsEachLineToEachListenerInOrder) {
    CListener first;
    CListener second;
    dispatcher.AddListener(&first);
    dispatcher.AddListener(&second);
    NK::Log(L"one");
    NK::Log(L"two");
    EXPECT_TRUE(first.lines.isEmpty()) << "lines travel by the event loop";
    DeliverEvents();
    EXPECT_EQ(first.lines, (QStringList{"<now> one", "<now> two"}));
    EXPECT_EQ(second.lines, first.lines);
}

TEST_F(LogDispatcher, DropsLinesWithoutAListener) {
    NK::Log(L"nobody");
    CListener late;
    dispatcher.AddListener(&late);
    DeliverEvents();
    EXPECT_TRUE(late.lines.isEmpty());
}

TEST_F(LogDispatcher, IgnoresNullAndASecondRegistration) {
    CListener listener;
    dispatcher.AddListener(nullptr);
    dispatcher.AddListener(&listener);
    dispatcher.AddListener(&listener);
    NK::Log(L"once");
    DeliverEvents();
    EXPECT_EQ(listener.lines, QStringList{"<now> once"});
}

TEST_F(LogDispatcher, PostsNothingMoreToARemovedListener) {
    CListener listener;
    dispatcher.AddListener(&listener);
    dispatcher.RemoveListener(&listener);
    NK::Log(L"gone");
    DeliverEvents();
    EXPECT_TRUE(listener.lines.isEmpty());
    dispatcher.AddListener(&listener);
    NK::Log(L"back");
    DeliverEvents();
    EXPECT_EQ(listener.lines, QStringList{"<now> back"});
}

TEST_F(LogDispatcher, ADestroyedListenerLeavesTheListAndCausesNoFault) {
    CListener rest;
    auto listener = std::make_unique<CListener>();
    dispatcher.AddListener(listener.get());
    dispatcher.AddListener(&rest);
    NK::Log(L"under way");
    listener.reset();
    NK::Log(L"after");
    DeliverEvents();
    EXPECT_EQ(rest.lines, (QStringList{"<now> under way", "<now> after"}));
}

TEST_F(LogDispatcher, LinesOfWorkerThreadsArriveOnTheListenersThread) {
    CListener listener;
    dispatcher.AddListener(&listener);
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([] {
            for (int line = 0; line < 100; ++line) {
                NK::Log(L"worker");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    DeliverEvents();
    EXPECT_EQ(listener.lines.size(), 300);
    EXPECT_EQ(listener.thread, QThread::currentThread());
}

TEST_F(LogDispatcher, ListenersComeAndGoWhileOthersLog) {
    // Keeps posting and delivering apart: Qt's own hand-over between threads is invisible to ThreadSanitizer.
    std::mutex delivery;
    std::atomic<bool> stop{false};
    std::atomic<int> written{0};
    std::thread worker([&] {
        while (!stop) {
            const std::lock_guard guard(delivery);
            NK::Log(L"line");
            ++written;
        }
    });
    qsizetype received = 0;
    for (int i = 0; i < 300 || received == 0; ++i) {
        CListener listener;
        dispatcher.AddListener(&listener);
        std::this_thread::yield();
        const std::lock_guard guard(delivery);
        DeliverEvents();
        received += listener.lines.size();
    }
    stop = true;
    worker.join();
    EXPECT_LE(received, written);
}

TEST(LogDispatcherInstance, IsOneAndBecomesCurrentWhenItIsCreated) {
    NK::QLogDispatcher* fromThread[2] = {nullptr, nullptr};
    std::thread first([&] { fromThread[0] = &NK::QLogDispatcher::Instance(); });
    std::thread second([&] { fromThread[1] = &NK::QLogDispatcher::Instance(); });
    first.join();
    second.join();
    EXPECT_EQ(fromThread[0], &NK::QLogDispatcher::Instance());
    EXPECT_EQ(fromThread[1], &NK::QLogDispatcher::Instance());
    EXPECT_EQ(&NK::GetCurrentLogger(), &NK::QLogDispatcher::Instance());
    NK::SetCurrentLogger(nullptr);
    NK::QLogDispatcher::Instance();
    EXPECT_NE(&NK::GetCurrentLogger(), &NK::QLogDispatcher::Instance());
}

}  // namespace
