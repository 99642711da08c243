#include "support/FatalLog.h"

#include <gtest/gtest.h>

#include <QtGlobal>

namespace {

using KivoraTest::CFatalLog;

TEST(FatalLog, HasQtsWarnings) {
    CFatalLog::Instance().Expect(L"Qt: a warning");
    qWarning("a warning of a test");
    EXPECT_EQ(CFatalLog::Instance().GetLines(), std::vector<std::wstring>{L"Qt: a warning of a test"});
}

TEST(FatalLog, LeavesOutWhatQtSaysOfThePlatform) {
    qWarning("This plugin does not support raise()");
    EXPECT_TRUE(CFatalLog::Instance().GetLines().empty());
}

}  // namespace
