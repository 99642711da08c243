#include "libmidi/PortNames.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using LibMidi::FindFreeName;
using LibMidi::IsLoopBack;

std::wstring FreeNameAmong(const std::set<std::wstring>& taken, const wchar_t* given) {
    return std::wstring(
        FindFreeName(given, [&](const NK::CString& name) { return taken.contains(std::wstring(name.View())); }).View());
}

TEST(PortNames, ANameThatIsFreeIsGivenAsItIs) {
    EXPECT_EQ(FreeNameAmong({}, L"Keys"), L"Keys");
    EXPECT_EQ(FreeNameAmong({L"Keys (2)"}, L"Keys"), L"Keys");
}

TEST(PortNames, ATakenNameGetsTheFirstFreeNumber) {
    EXPECT_EQ(FreeNameAmong({L"Keys"}, L"Keys"), L"Keys (2)");
    EXPECT_EQ(FreeNameAmong({L"Keys", L"Keys (2)", L"Keys (4)"}, L"Keys"), L"Keys (3)");
}

TEST(PortNames, TheSequencersLoopBackIsKnownByItsName) {
    EXPECT_TRUE(IsLoopBack("Midi Through Port-0"));
    EXPECT_FALSE(IsLoopBack("My Midi Through"));
    EXPECT_FALSE(IsLoopBack(""));
}

}  // namespace
