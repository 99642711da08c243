#include "support/FatalLog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>

#include "support/TestMain.h"

namespace KivoraTest {

CFatalLog& CFatalLog::Instance() {
    static CFatalLog log;
    return log;
}

void CFatalLog::Expect(const std::wstring& part) {
    const std::lock_guard guard(mutex_);
    expected_.push_back(part);
}

std::vector<std::wstring> CFatalLog::GetLines() const {
    const std::lock_guard guard(mutex_);
    return lines_;
}

void CFatalLog::BeginTest() {
    {
        const std::lock_guard guard(mutex_);
        lines_.clear();
        expected_.clear();
    }
    NK::SetCurrentLogger(this);
}

void CFatalLog::EndTest() {
    const std::lock_guard guard(mutex_);
    const auto holds = [](const std::wstring& line, const std::wstring& part) {
        return line.find(part) != std::wstring::npos;
    };
    for (const std::wstring& line : lines_) {
        if (std::none_of(expected_.begin(), expected_.end(), [&](const auto& part) { return holds(line, part); })) {
            ADD_FAILURE() << "unexpected log line: " << NK::CString(line).ToUtf8();
        }
    }
    for (const std::wstring& part : expected_) {
        if (std::none_of(lines_.begin(), lines_.end(), [&](const auto& line) { return holds(line, part); })) {
            ADD_FAILURE() << "expected log line did not come: " << NK::CString(part).ToUtf8();
        }
    }
}

void CFatalLog::Add(std::wstring line) {
    const std::lock_guard guard(mutex_);
    lines_.push_back(std::move(line));
}

void CFatalLog::Output(const NK::CString&, const NK::CString& message) {
    Add(std::wstring(message.View()));
}

namespace {
class CFatalLogWatch : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { CFatalLog::Instance().BeginTest(); }
    void OnTestEnd(const testing::TestInfo&) override { CFatalLog::Instance().EndTest(); }
};
}  // namespace

}  // namespace KivoraTest

int KivoraTestMain(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new KivoraTest::CFatalLogWatch);
    return RUN_ALL_TESTS();
}
