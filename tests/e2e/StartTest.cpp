// The first start, the end, and the manual, as a person meets them.
#include <gtest/gtest.h>

#include <algorithm>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>

#include "e2e/InstrumentProcess.h"
#include "support/FilePath.h"
#include "support/SilentSocket.h"
#include "support/WaitUntil.h"

namespace {

using KivoraTest::CTemporaryFolder;
using KivoraTest::FilePath;
using KivoraTest::FolderPath;
using KivoraTest::WaitUntil;

QString Read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// A program named xdg-open that writes down what it is asked to open, and the search path that finds it first.
class FakeDesktop {
public:
    FakeDesktop() {
        QFile opener(FilePath(dir_, "xdg-open"));
        if (opener.open(QIODevice::WriteOnly)) {
            opener.write(
                QString("#!/bin/sh\nprintf %s \"$1\" > '%1.part'\nmv '%1.part' '%1'\n").arg(Result()).toUtf8());
        }
        opener.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    QString PathVariable() const { return "PATH=" + FolderPath(dir_) + ":" + qEnvironmentVariable("PATH"); }
    /// What was opened last; waits for it.
    QString Opened() const {
        WaitUntil([this] { return QFile::exists(Result()); });
        return Read(Result());
    }

private:
    QString Result() const { return FilePath(dir_, "opened"); }

    CTemporaryFolder dir_;
};

TEST(Start, TakesTheSystemsLanguageAndRemembersIt) {
    InstrumentProcess instrument;
    instrument.MakeFirstStart();
    ASSERT_TRUE(instrument.Start({}, {"LANG=ru_RU.UTF-8", "LC_ALL=", "LANGUAGE="}));
    EXPECT_EQ(Read(instrument.GetDataDir() + "/data/Brennholt/Kivora/Locale.ini").trimmed(), "[Locale]\nName=ru_RU");
    EXPECT_EQ(instrument.Close(), 0);
}

TEST(Start, SettingsAreSavedWhenTheWindowCloses) {
    InstrumentProcess instrument;
    instrument.MakeFirstStart();
    ASSERT_TRUE(instrument.Start());
    const QString file = instrument.GetDataDir() + "/data/Brennholt/Kivora/Kivora.ini";
    EXPECT_FALSE(QFile::exists(file));
    EXPECT_EQ(instrument.Close(), 0);
    EXPECT_TRUE(Read(file).contains("\nTempo=120\n")) << Read(file).toStdString();
}

TEST(Start, BusesOfTheDesktopThatNeverAnswerKeepNoWindowAway) {
    for (const char* const words : {"", "OK 0123456789abcdef0123456789abcdef\r\n"}) {
        const KivoraTest::CSilentSocket bus(words);
        const QString address = "=" + QString::fromStdString(bus.GetAddress());
        InstrumentProcess instrument;
        ASSERT_TRUE(instrument.Start({}, {"DBUS_SESSION_BUS_ADDRESS" + address, "DBUS_SYSTEM_BUS_ADDRESS" + address,
                                          "AT_SPI_BUS_ADDRESS" + address}));
        EXPECT_EQ(instrument.Close(), 0);
    }
}

TEST(End, OnTheSystemsRequestSavesTheSettingsEndsTheNotesAndKeepsTheTake) {
    InstrumentProcess instrument;
    ASSERT_TRUE(instrument.Start());
    ASSERT_TRUE(instrument.Xdotool({"key", "F11"}));
    ASSERT_TRUE(instrument.Xdotool({"keydown", "z"}));
    ASSERT_TRUE(instrument.WaitForNoteMessages(1));
    EXPECT_EQ(instrument.Terminate(), 0);
    const std::vector<std::string> notes = instrument.GetNoteMessages();
    EXPECT_EQ(notes.front(), "90 3C 50");
    EXPECT_EQ(notes.back().substr(0, 5), "80 3C");
    const QDir folder(instrument.GetDataDir() + "/data/Brennholt/Kivora");
    EXPECT_TRUE(Read(folder.filePath("Kivora.ini")).contains("\nTempo=120\n"));
    EXPECT_EQ(QDir(folder.filePath("Takes")).entryList({"*.kivtake"}, QDir::Files).size(), 1);
}

TEST(End, OnTheSystemsRequestDoesNotWaitForADialog) {
    InstrumentProcess instrument;
    ASSERT_TRUE(instrument.Start());
    ASSERT_TRUE(instrument.Xdotool({"key", "F4"}));
    ASSERT_TRUE(instrument.WaitForDialog());
    EXPECT_EQ(instrument.Terminate(), 0);
    EXPECT_TRUE(QFile::exists(instrument.GetDataDir() + "/data/Brennholt/Kivora/Kivora.ini"));
}

TEST(Start, TheProgramThatRunsTakesTheFileThatTheDesktopOpens) {
    const CTemporaryFolder runtime;
    const QString before = qEnvironmentVariable("XDG_RUNTIME_DIR");
    qputenv("XDG_RUNTIME_DIR", FolderPath(runtime).toUtf8());  // of all programs that are started here
    InstrumentProcess instrument;
    ASSERT_TRUE(instrument.Start());
    const QString presets = QFileInfo(KIVORA_PROGRAM).path() + "/Presets/";
    const std::size_t known = instrument.GetMessages().size();
    bool isTaken = false;
    instrument.RunOnDisplay(KIVORA_PROGRAM, {presets + "Marimba Octaves.kivoraLXPreset"}, &isTaken);
    EXPECT_TRUE(isTaken) << "and ended with 0";
    EXPECT_TRUE(WaitUntil([&] {
        const std::vector<std::string> messages = instrument.GetMessages();
        return std::any_of(messages.begin() + static_cast<std::ptrdiff_t>(known), messages.end(),
                           [](const std::string& message) { return message.starts_with("C0 0C"); });
    })) << "the preset's sound";
    // With --new there is a second window, which a demand for the end closes.
    QProcess second;
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.insert("DISPLAY", instrument.GetDisplay());
    variables.insert("QT_QPA_PLATFORM", "xcb");
    variables.insert("HOME", FolderPath(runtime));
    variables.insert("XDG_DATA_HOME", FolderPath(runtime) + "/data");
    second.setProcessEnvironment(variables);
    second.setProcessChannelMode(QProcess::ForwardedChannels);
    second.start(KIVORA_PROGRAM, {"--new", presets + "Marimba Octaves.kivoraLXPreset"});
    EXPECT_TRUE(WaitUntil([&] {
        return instrument.RunOnDisplay("xdotool", {"search", "--onlyvisible", "--name", "^Kivora LX$"}).count('\n') ==
               2;
    }));
    second.terminate();
    EXPECT_TRUE(second.waitForFinished(InstrumentProcess::kLimitMs));
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_EQ(instrument.Close(), 0);
    EXPECT_TRUE(QDir(FolderPath(runtime) + "/kivora").isEmpty(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot));
    before.isEmpty() ? qunsetenv("XDG_RUNTIME_DIR") : qputenv("XDG_RUNTIME_DIR", before.toUtf8());
}

TEST(Start, F1OpensTheManualOfTheLanguage) {
    for (const char* locale : {"en_US", "ru_RU"}) {
        const FakeDesktop desktop;
        InstrumentProcess instrument;
        ASSERT_TRUE(instrument.Start({"--locale", locale}, {desktop.PathVariable()}));
        ASSERT_TRUE(instrument.Xdotool({"key", "F1"}));
        const QString manual = desktop.Opened();
        EXPECT_TRUE(manual.endsWith("/bin/Help/" + QString(locale).left(2) + "/index.html")) << manual.toStdString();
        EXPECT_TRUE(QFile::exists(manual));
        EXPECT_EQ(instrument.Close(), 0);
    }
}

}  // namespace
