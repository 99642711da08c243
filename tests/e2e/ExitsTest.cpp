// The program's last moment, whoever ends it: what sounds is ended, what was changed and what was played is kept.
#include <gtest/gtest.h>
#include <signal.h>

#include <QDir>
#include <QFile>

#include "e2e/InstrumentProcess.h"
#include "e2e/Sounding.h"
#include "support/WaitUntil.h"

using KivoraTest::WaitUntil;

namespace {

struct TExit {
    const char* name;
    int (*end)(InstrumentProcess& instrument);  ///< returns the program's exit code
    int exitCode;
};

template <int (InstrumentProcess::*operation)()>
int By(InstrumentProcess& instrument) {
    return (instrument.*operation)();
}

template <int number>
int BySignal(InstrumentProcess& instrument) {
    instrument.Signal(number);
    return instrument.WaitForExitCode();
}

/// Nobody is asked anything on these ways.
constexpr TExit kUnasked[] = {
    {"SIGTERM", &BySignal<SIGTERM>, 0},
    {"SIGINT", &BySignal<SIGINT>, 0},
    {"SIGHUP", &BySignal<SIGHUP>, 0},
    {"TheSessionsEnd", &By<&InstrumentProcess::EndSession>, 0},
    {"TheSessionsSuddenEnd", &By<&InstrumentProcess::BreakSession>, 0},
    {"KillingTheServer", &By<&InstrumentProcess::KillServer>, 1},
    {"CuttingItsConnection", &By<&InstrumentProcess::KillClient>, 1},
};
constexpr TExit kAnyExit[] = {{"ClosingTheWindow", &By<&InstrumentProcess::Close>, 0}};

class Exits : public testing::TestWithParam<TExit> {
protected:
    void SetUp() override {
        instrument.UseSessionManager();
        ASSERT_TRUE(instrument.Start());
    }
    /// A key, the pedal and the mouse are held; the settings were changed before.
    void EndWhilePlaying() {
        ASSERT_TRUE(instrument.Xdotool({"key", "alt+n"}));
        ASSERT_TRUE(instrument.Xdotool({"keydown", "space", "keydown", "z", "mousemove", "--window",
                                        instrument.GetWindow(), "30", "480", "mousedown", "1"}));
        ASSERT_TRUE(WaitUntil([&] { return SoundingAfter(instrument.GetMessages()).size() == 5; }));
        EXPECT_EQ(GetParam().end(instrument), GetParam().exitCode);
        const std::set<std::string> sounding = SoundingAfter(instrument.GetMessages());
        EXPECT_TRUE(sounding.empty()) << *sounding.begin() << " hangs";
        QFile settings(Folder().filePath("Kivora.ini"));
        ASSERT_TRUE(settings.open(QIODevice::ReadOnly));
        EXPECT_TRUE(settings.readAll().contains("\nShowNoteNames=1\n"));
    }
    QDir Folder() const { return {instrument.GetDataDir() + "/data/Brennholt/Kivora"}; }

    InstrumentProcess instrument;
};

TEST_P(Exits, EndWhatSoundsAndSaveTheSettings) {
    EndWhilePlaying();
}

using UnaskedExits = Exits;

TEST_P(UnaskedExits, KeepTheTake) {
    ASSERT_TRUE(instrument.Xdotool({"key", "F11"}));
    EndWhilePlaying();
    EXPECT_EQ(QDir(Folder().filePath("Takes")).entryList({"*.kivtake"}, QDir::Files).size(), 1);
}

TEST_P(UnaskedExits, LeaveADialogUnanswered) {
    ASSERT_TRUE(instrument.Xdotool({"key", "alt+n", "F4"}));
    ASSERT_TRUE(instrument.WaitForDialog());
    EXPECT_EQ(GetParam().end(instrument), GetParam().exitCode);
    EXPECT_TRUE(QFile::exists(Folder().filePath("Kivora.ini")));
}

constexpr auto kName = [](const testing::TestParamInfo<TExit>& test) { return std::string(test.param.name); };
INSTANTIATE_TEST_SUITE_P(Unasked, Exits, testing::ValuesIn(kUnasked), kName);
INSTANTIATE_TEST_SUITE_P(Asked, Exits, testing::ValuesIn(kAnyExit), kName);
INSTANTIATE_TEST_SUITE_P(Unasked, UnaskedExits, testing::ValuesIn(kUnasked), kName);

TEST(OutputLost, LinesThatNobodyReadsEndNothing) {
    InstrumentProcess instrument;
    instrument.BreakOutput();
    ASSERT_TRUE(instrument.Start({}, {"KIVORA_LOG=1"}));
    ASSERT_TRUE(instrument.Xdotool({"key", "alt+n", "z", "x"}));
    ASSERT_TRUE(instrument.WaitForNoteMessages(4));
    EXPECT_EQ(instrument.Close(), 0);
    EXPECT_TRUE(QFile::exists(instrument.GetDataDir() + "/data/Brennholt/Kivora/Kivora.ini"));
}

}  // namespace
