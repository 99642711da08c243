#include "nk/nk_logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

class CListLogger : public NK::CLogger {
public:
    ~CListLogger() override { NK::ResetCurrentLogger(this); }

    std::int64_t now = 0;
    std::vector<std::wstring> lines;

protected:
    void Output(const NK::CString& timestamp, const NK::CString& message) override {
        lines.emplace_back(std::wstring(timestamp.View()) + L"|" + std::wstring(message.View()));
    }
    std::int64_t GetNow() const override { return now; }
};

class Logger : public testing::Test {
protected:
    Logger() {
        setenv("TZ", "UTC", 1);
        tzset();
        NK::SetCurrentLogger(nullptr);
    }
    ~Logger() override { NK::SetCurrentLogger(nullptr); }

    static std::string CaptureConsole(const std::function<void()>& action) {
        testing::internal::CaptureStdout();
        action();
        return testing::internal::GetCapturedStdout();
    }
};

TEST_F(Logger, LogsToTheConsoleWithTheLongTimestampWhileNoLoggerIsSet) {
    const std::string text = CaptureConsole([] { NK::Log(L"no logger yet"); });
    EXPECT_THAT(text, testing::MatchesRegex("<[A-Z][a-z]+ [A-Z][a-z]+ [ 0-9]+ [0-9]+:[0-9]+:[0-9]+ [0-9]+> "
                                            "no logger yet\n"));
}

TEST_F(Logger, TheDefaultLoggerDoesNotBecomeCurrent) {
    NK::CLogger* const fallback = &NK::GetCurrentLogger();
    EXPECT_EQ(fallback, &NK::GetCurrentLogger());
    NK::CConsoleLogger other;
    NK::SetCurrentLogger(&other);
    EXPECT_EQ(&NK::GetCurrentLogger(), &other);
    NK::ResetCurrentLogger(fallback);
    EXPECT_EQ(&NK::GetCurrentLogger(), &other) << "only the current logger is reset";
    NK::ResetCurrentLogger(&other);
    EXPECT_EQ(&NK::GetCurrentLogger(), fallback);
}

TEST_F(Logger, LinesGoToTheConsoleAgainOnceTheCurrentLoggerIsDeleted) {
    auto logger = std::make_unique<CListLogger>();
    NK::SetCurrentLogger(logger.get());
    EXPECT_EQ(CaptureConsole([] { NK::Log("one"); }), "");
    EXPECT_EQ(logger->lines.size(), 1U);
    logger.reset();
    EXPECT_THAT(CaptureConsole([] { NK::Log("two"); }), testing::EndsWith("> two\n"));
}

TEST_F(Logger, TheBasesDestructorResetsTheCurrentLoggerToo) {
    class CDeafLogger : public NK::CLogger {
        void Output(const NK::CString&, const NK::CString&) override {}
    };
    {
        CDeafLogger logger;
        NK::SetCurrentLogger(&logger);
    }
    EXPECT_THAT(CaptureConsole([] { NK::Log("after"); }), testing::EndsWith("> after\n"));
}

TEST_F(Logger, TakesWideAndNarrowTexts) {
    CListLogger logger;
    NK::SetCurrentLogger(&logger);
    NK::Log(NK::CString(L"string"));
    NK::Log(L"wide");
    NK::Log("narrow \xE9");
    const std::wstring stamp = L"<Thu Jan  1 00:00:00 1970>|";
    EXPECT_EQ(logger.lines, (std::vector{stamp + L"string", stamp + L"wide", stamp + L"narrow \u00E9"}));
}

TEST_F(Logger, TheConsoleGetsUtf8) {
    const std::string text = CaptureConsole([] { NK::Log(L"\u041D\u043E\u0442\u0430 \U0001F3B9"); });
    EXPECT_THAT(text, testing::EndsWith("> \xD0\x9D\xD0\xBE\xD1\x82\xD0\xB0 \xF0\x9F\x8E\xB9\n"));
}

TEST_F(Logger, FormatsTheShortTimestamp) {
    CListLogger logger;
    EXPECT_FALSE(logger.IsShortTimestamp());
    logger.SetShortTimestamp(true);
    EXPECT_TRUE(logger.IsShortTimestamp());
    logger.now = 951'826'554;
    NK::CString text;
    logger.FormatTimestamp(text);
    EXPECT_EQ(text, L"<02/29 12:15:54>");
}

TEST_F(Logger, FormatsTheLongTimestampWithoutTheLineEnd) {
    CListLogger logger;
    logger.now = 951'826'554;
    NK::CString text;
    logger.FormatTimestamp(text);
    EXPECT_EQ(text, L"<Tue Feb 29 12:15:54 2000>");
}

TEST_F(Logger, SaysSoWhenTheLocalTimeCannotBeHad) {
    CListLogger logger;
    logger.now = std::numeric_limits<std::int64_t>::max();
    NK::CString text;
    logger.FormatTimestamp(text);
    EXPECT_EQ(text, L"<>");
    logger.SetShortTimestamp(true);
    logger.FormatTimestamp(text);
    EXPECT_EQ(text, L"NULL \"tm\"");
}

class CEchoingLogger : public CListLogger {
protected:
    void Output(const NK::CString& timestamp, const NK::CString& message) override {
        CListLogger::Output(timestamp, message);
        if (lines.size() == 1) {
            NK::Log(L"from inside");
            NK::SetCurrentLogger(nullptr);
        }
    }
};

TEST_F(Logger, AnOutputMayLogAndReplaceTheLogger) {
    CEchoingLogger logger;
    NK::SetCurrentLogger(&logger);
    NK::Log(L"outer");
    EXPECT_EQ(logger.lines.size(), 2U);
    EXPECT_NE(&NK::GetCurrentLogger(), &logger);
}

TEST_F(Logger, SerialisesTheLinesOfSeveralThreads) {
    CListLogger logger;
    NK::SetCurrentLogger(&logger);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([] {
            for (int line = 0; line < 500; ++line) {
                NK::Log(L"line");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(logger.lines.size(), 2000U);
}

TEST_F(Logger, IsReplacedAndDestroyedWhileOthersLog) {
    CListLogger rest;
    NK::SetCurrentLogger(&rest);
    std::atomic<bool> stop{false};
    std::atomic<int> written{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&] {
            while (!stop) {
                NK::GetCurrentLogger();
                NK::Log(L"line");
                ++written;
            }
        });
    }
    std::size_t seen = 0;
    for (int i = 0; i < 300 || written < 300; ++i) {
        CListLogger logger;
        NK::SetCurrentLogger(&logger);
        logger.SetShortTimestamp(true);
        std::this_thread::yield();
        NK::SetCurrentLogger(&rest);
        seen += logger.lines.size();
    }
    stop = true;
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(seen + rest.lines.size(), static_cast<std::size_t>(written));
}

TEST_F(Logger, AConsoleLoggerIsDestroyedWhileOthersLog) {
    CListLogger rest;
    std::atomic<bool> stop{false};
    std::atomic<int> written{0};
    CaptureConsole([&] {
        NK::SetCurrentLogger(&rest);
        std::vector<std::thread> threads;
        for (int i = 0; i < 3; ++i) {
            threads.emplace_back([&] {
                while (!stop) {
                    NK::Log(L"line");
                    ++written;
                }
            });
        }
        for (int i = 0; i < 300 || written < 300; ++i) {
            {
                NK::CConsoleLogger logger;
                NK::SetCurrentLogger(&logger);
                std::this_thread::yield();
            }
            NK::SetCurrentLogger(&rest);
        }
        stop = true;
        for (std::thread& thread : threads) {
            thread.join();
        }
    });
    EXPECT_LE(rest.lines.size(), static_cast<std::size_t>(written));
}

TEST_F(Logger, EventLinesAreOffUnlessAskedFor) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            unsetenv("KIVORA_LOG");
            std::exit(NK::IsEventLogEnabled() ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
    EXPECT_EXIT(
        {
            setenv("KIVORA_LOG", "1", 1);
            const bool first = NK::IsEventLogEnabled();
            setenv("KIVORA_LOG", "0", 1);
            std::exit(first && NK::IsEventLogEnabled() ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
    EXPECT_EXIT(
        {
            setenv("KIVORA_LOG", "yes", 1);
            std::exit(NK::IsEventLogEnabled() ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace
