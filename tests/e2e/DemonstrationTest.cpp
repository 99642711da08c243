// What the demonstration leaves behind on a machine without a display, a sound card and a MIDI device.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>

#include "support/Pitch.h"
#include "support/TemporaryFolder.h"
#include "support/TinySoundFont.h"
#include "support/WaveFile.h"

namespace {

constexpr double kMiddleC = 261.6256;
constexpr int kLimitMs = 120000;

/// The exit code of the program, -1 when it did not end by itself.
int RunProgram(const QStringList& arguments, const QProcessEnvironment& variables) {
    QProcess program;
    program.setProcessEnvironment(variables);
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    program.start(KIVORA_PROGRAM, arguments);
    if (!program.waitForFinished(kLimitMs)) {
        program.kill();
        program.waitForFinished(kLimitMs);
        return -1;
    }
    return program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1;
}

/// Of a machine with nothing but a sound font in the folder.
QProcessEnvironment Variables(const KivoraTest::CTemporaryFolder& folder) {
    const auto path = [&folder](const char* name) { return QString::fromStdString((folder / name).string()); };
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    for (const char* unwanted : {"KIVORA_AUDIO_DRIVER", "KIVORA_AUDIO_FILE", "WAYLAND_DISPLAY", "PULSE_SERVER"}) {
        variables.remove(unwanted);
    }
    variables.insert("QT_QPA_PLATFORM", "offscreen");
    variables.insert("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    variables.insert("HOME", path("home"));
    variables.insert("XDG_DATA_HOME", path("data"));
    variables.insert("KIVORA_SOUNDFONT", path("tiny.sf2"));
    return variables;
}

TEST(Demonstration, NobodyWaitsForAFifoInPlaceOfWhatItLeaves) {
    const KivoraTest::CTemporaryFolder folder;
    const auto path = [&folder](const char* name) { return QString::fromStdString((folder / name).string()); };
    std::filesystem::create_directory(folder / "out");
    ASSERT_EQ(mkfifo((folder / "out/demo.wav").c_str(), 0600), 0);
    KivoraTest::WriteBytes(folder / "tiny.sf2", KivoraTest::MakeTinySoundFont());
    EXPECT_EQ(RunProgram({"--demo", path("out")}, Variables(folder)), 1);
    std::filesystem::remove(folder / "out/demo.wav");
    ASSERT_EQ(mkfifo((folder / "out/demo.mid").c_str(), 0600), 0);
    EXPECT_EQ(RunProgram({"--demo", path("out")}, Variables(folder)), 1);
}

TEST(Demonstration, LeavesAPictureTheMidiFileAndItsSound) {
    const KivoraTest::CTemporaryFolder folder;
    const auto path = [&folder](const char* name) { return QString::fromStdString((folder / name).string()); };
    KivoraTest::WriteBytes(folder / "tiny.sf2", KivoraTest::MakeTinySoundFont());
    ASSERT_EQ(RunProgram({"--demo", path("out")}, Variables(folder)), 0);

    const QImage picture(path("out/screenshot.png"));
    EXPECT_GE(picture.width(), 1000);
    EXPECT_GE(picture.height(), 400);

    QFile file(path("out/demo.mid"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray midi = file.readAll();
    constexpr qsizetype kTrackBegin = 22;  // behind the header and the track's name and length
    EXPECT_TRUE(midi.startsWith("MThd"));
    const qsizetype firstNote = midi.indexOf('\x90', kTrackBegin);
    EXPECT_EQ(midi.mid(firstNote, 3), QByteArray("\x90\x3C\x50")) << "middle C at the normal level";
    EXPECT_TRUE(midi.endsWith(QByteArray("\xFF\x2F\0", 3)));

    const auto wave = KivoraTest::ReadWaveFile(folder / "out/demo.wav");
    const auto left = KivoraTest::GetSide(wave.samples, 0);
    const std::size_t onset = KivoraTest::FindOnset(left, 0.005F);
    const double pitch = KivoraTest::EstimatePitch(left, onset + 4800, 9600, wave.sampleRate);
    EXPECT_NEAR(KivoraTest::GetCents(pitch, kMiddleC), 0.0, 10.0) << pitch << " Hz, onset at " << onset;
}

}  // namespace
