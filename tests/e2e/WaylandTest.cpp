// The computer keys under a Wayland compositor, which runs in a window of a virtual X server and takes its keyboard.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <QDir>
#include <QFile>
#include <QLibraryInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <string>
#include <vector>

#include "e2e/InstrumentProcess.h"

namespace {

class OnWayland : public testing::Test {
protected:
    void SetUp() override {
        if (QStandardPaths::findExecutable("weston").isEmpty() ||
            QDir(QLibraryInfo::path(QLibraryInfo::PluginsPath) + "/platforms").entryList({"*wayland*"}).isEmpty()) {
            GTEST_SKIP() << "needs weston and Qt's platform plugin for Wayland";
        }
        QFile::setPermissions(dir_.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QFile settings(dir_.filePath("weston.ini"));
        ASSERT_TRUE(settings.open(QIODevice::WriteOnly));
        settings.write("[core]\nidle-time=0\n");
        settings.close();
        server_.start("Xvfb", {"-displayfd", "1", "-screen", "0", "1400x800x24", "-nolisten", "tcp", "-noreset"});
        ASSERT_TRUE(server_.waitForReadyRead(InstrumentProcess::kLimitMs));
        display_ = ":" + QString::fromLatin1(server_.readLine().trimmed());
    }
    void TearDown() override {
        for (QProcess* const process : {&program_, &compositor_, &server_}) {
            if (process->state() != QProcess::NotRunning) {
                process->terminate();
                EXPECT_TRUE(process->waitForFinished(InstrumentProcess::kLimitMs));
            }
        }
    }

    QProcessEnvironment Variables() const {
        QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
        variables.insert("XDG_RUNTIME_DIR", dir_.path());
        variables.insert("DISPLAY", display_);
        variables.remove("WAYLAND_DISPLAY");
        return variables;
    }
    bool Run(const QString& program, const QStringList& arguments, QByteArray* printed = nullptr) {
        QProcess process;
        process.setProcessEnvironment(Variables());
        process.start(program, arguments);
        const bool finished = process.waitForFinished(InstrumentProcess::kLimitMs);
        if (printed != nullptr) {
            *printed = process.readAllStandardOutput();
        }
        return finished && process.exitCode() == 0;
    }
    /// With the compositor's window and the program's in front.
    void Start(const QString& layout) {
        ASSERT_TRUE(Run("setxkbmap", {layout}));
        compositor_.setProcessEnvironment(Variables());
        compositor_.setStandardErrorFile(QProcess::nullDevice());
        compositor_.setStandardOutputFile(QProcess::nullDevice());
        compositor_.start("weston",
                          {"--backend=x11-backend.so", "--shell=kiosk-shell.so", "--use-pixman", "--width=1366",
                           "--height=768", "--socket=kivora-test", "--config=" + dir_.filePath("weston.ini")});
        ASSERT_TRUE(WaitFor([this] { return QFile::exists(dir_.filePath("kivora-test")); }));
        QProcessEnvironment variables = Variables();
        variables.remove("DISPLAY");
        variables.insert("WAYLAND_DISPLAY", "kivora-test");
        variables.insert("QT_QPA_PLATFORM", "wayland");
        variables.insert("DBUS_SESSION_BUS_ADDRESS", "disabled:");
        variables.insert("XDG_DATA_HOME", dir_.filePath("data"));
        variables.insert("HOME", dir_.path());
        variables.insert("LANG", "C.UTF-8");
        variables.insert("LD_LIBRARY_PATH", KIVORA_STANDIN_DIR);
        variables.insert("KIVORA_STANDIN_LOG", dir_.filePath("midi.log"));
        program_.setProcessEnvironment(variables);
        program_.setProcessChannelMode(QProcess::ForwardedChannels);
        program_.start(KIVORA_PROGRAM, {"--locale", "en_US"});
        ASSERT_TRUE(WaitFor([this] { return !Messages("C2").empty(); })) << "the program opened no output";
        QByteArray windows;
        ASSERT_TRUE(Run("xdotool", {"search", "--onlyvisible", "--name", ".*"}, &windows));
        ASSERT_TRUE(Run("xdotool", {"windowfocus", windows.trimmed().split('\n').last()}));
        ASSERT_TRUE(Run("xdotool", {"mousemove", "640", "20", "click", "1"}));  // the window gets the keyboard
        // Which takes its time; what was played on the way is out before the last key.
        ASSERT_TRUE(WaitFor([this] { return Run("xdotool", {"key", "53"}) && !Messages("80 3E").empty(); }));
        ASSERT_TRUE(Run("xdotool", {"key", "54"}));
        ASSERT_TRUE(WaitFor([this] { return !Messages("80 40").empty(); }));
        first_ = Messages("").size();
    }
    std::vector<std::string> Messages(const std::string& start) const {
        std::vector<std::string> messages;
        std::ifstream log(dir_.filePath("midi.log").toStdString());
        for (std::string line; std::getline(log, line);) {
            const bool isNote = line.starts_with("90") || line.starts_with("80");
            if (start.empty() ? isNote : line.starts_with(start)) {
                messages.push_back(line.substr(0, 8));
            }
        }
        return messages;
    }
    /// What the key plays.
    std::vector<std::string> Play(int key) {
        EXPECT_TRUE(Run("xdotool", {"key", QString::number(key)}));
        EXPECT_TRUE(WaitFor([this] { return Messages("").size() >= first_ + 2; })) << "key " << key;
        const std::vector<std::string> all = Messages("");
        const std::vector<std::string> played(all.begin() + static_cast<std::ptrdiff_t>(first_), all.end());
        first_ = all.size();
        return played;
    }

    QTemporaryDir dir_;
    QString display_;
    QProcess server_;
    QProcess compositor_;
    QProcess program_;
    std::size_t first_ = 0;
};

TEST_F(OnWayland, AFrenchKeyboardPlaysByPlace) {
    using testing::ElementsAre;
    ASSERT_NO_FATAL_FAILURE(Start("fr"));
    EXPECT_THAT(Play(52), ElementsAre("90 3C 50", "80 3C 00")) << "W";
    EXPECT_THAT(Play(24), ElementsAre("90 48 50", "80 48 00")) << "A";
    EXPECT_THAT(Play(11), ElementsAre("90 49 50", "80 49 00")) << "e with an acute";
    EXPECT_THAT(Play(34), ElementsAre("90 59 50", "80 59 00")) << "a dead circumflex";
    ASSERT_TRUE(Run("xdotool", {"key", "94"}));
    EXPECT_THAT(Play(60), ElementsAre("90 4A 50", "80 4A 00")) << "the key left of W played nothing";
}

}  // namespace
