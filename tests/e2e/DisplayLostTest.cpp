// The program's last moment when its display goes, and when nobody reads what it prints.
#include <gtest/gtest.h>

#include <functional>
#include <QDir>
#include <QFile>

#include "e2e/InstrumentProcess.h"
#include "e2e/Sounding.h"
#include "support/WaitUntil.h"

namespace {

using KivoraTest::WaitUntil;

class DisplayLost : public testing::TestWithParam<int (InstrumentProcess::*)()> {
protected:
    void SetUp() override { ASSERT_TRUE(instrument.Start()); }
    /// The display goes while a key, the pedal and the mouse are held; the settings were changed before.
    void LoseWhilePlaying() {
        ASSERT_TRUE(instrument.Xdotool({"key", "alt+n"}));
        ASSERT_TRUE(instrument.Xdotool({"keydown", "space", "keydown", "z", "mousemove", "--window",
                                        instrument.GetWindow(), "30", "480", "mousedown", "1"}));
        ASSERT_TRUE(WaitUntil([&] { return SoundingAfter(instrument.GetMessages()).size() == 5; }));
        EXPECT_EQ((instrument.*GetParam())(), 1);
        const std::set<std::string> sounding = SoundingAfter(instrument.GetMessages());
        EXPECT_TRUE(sounding.empty()) << *sounding.begin() << " hangs";
        QFile settings(Folder().filePath("Kivora.ini"));
        ASSERT_TRUE(settings.open(QIODevice::ReadOnly));
        EXPECT_TRUE(settings.readAll().contains("\nShowNoteNames=1\n"));
    }
    QDir Folder() const { return {instrument.GetDataDir() + "/data/Brennholt/Kivora"}; }

    InstrumentProcess instrument;
};

TEST_P(DisplayLost, EndsWhatSoundsAndSavesTheSettings) {
    LoseWhilePlaying();
}

TEST_P(DisplayLost, KeepsTheTake) {
    ASSERT_TRUE(instrument.Xdotool({"key", "F11"}));
    LoseWhilePlaying();
    EXPECT_EQ(QDir(Folder().filePath("Takes")).entryList({"*.kivtake"}, QDir::Files).size(), 1);
}

TEST_P(DisplayLost, WithADialogOpen) {
    ASSERT_TRUE(instrument.Xdotool({"key", "alt+n", "F4"}));
    ASSERT_TRUE(instrument.WaitForDialog());
    EXPECT_EQ((instrument.*GetParam())(), 1);
    EXPECT_TRUE(QFile::exists(Folder().filePath("Kivora.ini")));
}

TEST(OutputLost, LinesThatNobodyReadsEndNothing) {
    InstrumentProcess instrument;
    instrument.BreakOutput();
    ASSERT_TRUE(instrument.Start({}, {"KIVORA_LOG=1"}));
    ASSERT_TRUE(instrument.Xdotool({"key", "alt+n", "z", "x"}));
    ASSERT_TRUE(instrument.WaitForNoteMessages(4));
    EXPECT_EQ(instrument.Close(), 0);
    EXPECT_TRUE(QFile::exists(instrument.GetDataDir() + "/data/Brennholt/Kivora/Kivora.ini"));
}

INSTANTIATE_TEST_SUITE_P(All, DisplayLost,
                         testing::Values(&InstrumentProcess::KillServer, &InstrumentProcess::KillClient),
                         [](const auto& test) { return test.index == 0 ? "Server" : "Client"; });

}  // namespace
