// The runs of the built program that need no window, on a machine without a display, a sound card and a MIDI device.
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <filesystem>
#include <functional>

#include <QProcess>
#include <QProcessEnvironment>

#include "midi/reader/SMFReader.h"
#include "midi/SMFWriter.h"
#include "nk/qt/nk_qt_string.h"
#include "support/Files.h"
#include "support/SilentSocket.h"
#include "support/TemporaryFolder.h"
#include "support/TinySoundFont.h"
#include "support/WaveFile.h"

namespace {

using KivoraTest::ReadFileBytes;

constexpr int kLimitMs = 60000;

/// For a program that is started: the system gives it no real-time threads, whoever starts it.
void GiveUpRealtime() {
    const rlimit none{};
    setrlimit(RLIMIT_RTPRIO, &none);
    prctl(PR_CAPBSET_DROP, CAP_SYS_NICE, 0, 0, 0);  // refused to who has not got the right anyway
}

class ConsoleRun : public testing::Test {
protected:
    ConsoleRun() {
        variables_ = QProcessEnvironment::systemEnvironment();
        for (const char* unwanted : {"KIVORA_AUDIO_DRIVER", "KIVORA_AUDIO_FILE", "WAYLAND_DISPLAY", "PULSE_SERVER",
                                     "DISPLAY", "QT_QPA_PLATFORM", "LANGUAGE"}) {
            variables_.remove(unwanted);
        }
        variables_.insert("LC_ALL", "C.UTF-8");
        variables_.insert("DBUS_SESSION_BUS_ADDRESS", "disabled:");
        variables_.insert("HOME", GetPath("home"));
        variables_.insert("XDG_DATA_HOME", GetPath("data"));
        variables_.insert("KIVORA_SOUNDFONT", GetPath("tiny.sf2"));
        KivoraTest::WriteFileBytes(folder_ / "tiny.sf2", KivoraTest::MakeTinySoundFont());
        NK::CArray<NK::MIDI::CMIDIMessageX> events;
        for (std::uint8_t i = 0; i < 8; ++i) {
            events.Push({{0x90, 1, static_cast<std::uint8_t>(60 + i), 100}, 250 * i});
            events.Push({{0x80, 1, static_cast<std::uint8_t>(60 + i), 64}, 250 * i + 200});
        }
        EXPECT_TRUE(NK::MIDI::WriteMIDIFile(NK::FromQt(GetPath("in.mid")), events, 120));
    }

    QString GetPath(const char* name) const { return QString::fromStdString((folder_ / name).string()); }
    /// The exit code, -1 when it did not end by itself.
    int Run(const QStringList& arguments) {
        QProcess program;
        program.setProcessEnvironment(variables_);
        program.setChildProcessModifier(prepare_);
        program.start(KIVORA_PROGRAM, arguments);
        if (!program.waitForFinished(kLimitMs)) {
            program.kill();
            program.waitForFinished(kLimitMs);
            return -1;
        }
        output_ = program.readAllStandardOutput().toStdString();
        error_ = program.readAllStandardError().toStdString();
        return program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1;
    }
    int Render(const QString& from, const char* to, const QStringList& more = {}) {
        return Run(QStringList{"--render", from, GetPath(to)} + more);
    }

    KivoraTest::CTemporaryFolder folder_;
    QProcessEnvironment variables_;
    std::function<void()> prepare_;  ///< called in the process that becomes the program
    std::string output_;
    std::string error_;
};

}  // namespace

TEST_F(ConsoleRun, TellsItsVersionAndItsOptions) {
    EXPECT_EQ(Run({"--version"}), 0);
    EXPECT_EQ(output_.substr(0, 10), "Kivora LX ");
    EXPECT_EQ(Run({"--help"}), 0);
    EXPECT_NE(output_.find("--list-ports"), std::string::npos);
    EXPECT_EQ(Run({"--locale", "ru_RU", "--help"}), 0);
    EXPECT_NE(output_.find("Виртуальная MIDI-клавиатура"), std::string::npos) << output_;
}

TEST_F(ConsoleRun, WithoutADisplayThereIsASentenceAndNoWindow) {
    variables_.remove("XDG_RUNTIME_DIR");
    for (const QStringList& arguments : {QStringList{}, {"--preset", "Nope"}, {"/none.mid"}, {"--new"}}) {
        EXPECT_EQ(Run(arguments), 1);
        EXPECT_EQ(error_,
                  "kivora: No display is found that the instrument's window could be on: neither DISPLAY nor "
                  "WAYLAND_DISPLAY is set.\n");
        EXPECT_EQ(output_, "");
    }
    EXPECT_EQ(Run({"--locale", "ru_RU"}), 1);
    EXPECT_EQ(error_, "kivora: Не найден экран для окна инструмента: не заданы ни DISPLAY, ни WAYLAND_DISPLAY.\n");
}

TEST_F(ConsoleRun, WrongOptionsAreASentenceAndExitCode2) {
    EXPECT_EQ(Run({"--nonsense"}), 2);
    EXPECT_EQ(error_, "kivora: Unknown option 'nonsense'. kivora --help lists the options.\n");
    EXPECT_EQ(output_, "");
    EXPECT_EQ(Run({"--locale", "ru_RU", "--nonsense"}), 2);
    EXPECT_EQ(error_.find("Unknown"), std::string::npos) << error_;
}

TEST_F(ConsoleRun, AsksTheDesktopForARealTimeThreadThatTheSystemRefuses) {
    const KivoraTest::CSilentSocket systemBus;
    variables_.insert("DBUS_SYSTEM_BUS_ADDRESS", QString::fromStdString(systemBus.GetAddress()));
    prepare_ = &GiveUpRealtime;
    EXPECT_NE(Run({"--check"}), -1);
    EXPECT_TRUE(systemBus.HasVisitor());
}

TEST_F(ConsoleRun, ListsThePorts) {
    EXPECT_EQ(Run({"--list-ports"}), 0);
    EXPECT_NE(("\n" + output_).find("\nOutput: Software synthesizer\n"), std::string::npos) << output_;
}

TEST_F(ConsoleRun, AnotherSoundFontIsForTheRunAlone) {
    variables_.insert("KIVORA_SOUNDFONT", GetPath("none.sf2"));
    EXPECT_EQ(Run({"--list-ports", "--sound-font", GetPath("tiny.sf2")}), 0);
    EXPECT_NE(("\n" + output_).find("\nOutput: Software synthesizer\n"), std::string::npos) << output_;
    EXPECT_EQ(Render(GetPath("in.mid"), "out.wav", {"--sound-font", GetPath("tiny.sf2")}), 0) << error_;
    EXPECT_EQ(Render(GetPath("in.mid"), "other.wav"), 1);
    EXPECT_EQ(error_, "kivora: No sound font is found; --sound-font names one.\n");
    EXPECT_EQ(Run({"--list-ports", "--sound-font", GetPath("in.mid")}), 1);
    EXPECT_NE(error_.find("in.mid\" cannot be played"), std::string::npos) << error_;
}

TEST_F(ConsoleRun, TwoRendersAreTheSameToTheByte) {
    for (const char* target : {"a.wav", "b.wav", "a.mid", "b.mid"}) {
        ASSERT_EQ(Render(GetPath("in.mid"), target), 0) << error_;
        EXPECT_EQ(error_, "");
    }
    EXPECT_EQ(ReadFileBytes(folder_ / "a.wav"), ReadFileBytes(folder_ / "b.wav"));
    EXPECT_EQ(ReadFileBytes(folder_ / "a.mid"), ReadFileBytes(folder_ / "b.mid"));
    const auto wave = KivoraTest::ReadWaveFile(folder_ / "a.wav");
    EXPECT_GT(wave.samples.size(), 2U * 48000 * 2) << "two seconds and what dies away";
    const auto midi = NK::MIDI::ReadSMFFile(NK::FromQt(GetPath("a.mid")));
    ASSERT_TRUE(midi);
    EXPECT_FALSE(midi->damage);
    EXPECT_GE(midi->events.size(), 16U);
}

TEST_F(ConsoleRun, RendersWithAPreset) {
    ASSERT_EQ(Render(GetPath("in.mid"), "plain.mid"), 0);
    ASSERT_EQ(Render(GetPath("in.mid"), "preset.mid", {"--preset", "Arp - Crystal Drops"}), 0) << error_;
    EXPECT_NE(ReadFileBytes(folder_ / "plain.mid"), ReadFileBytes(folder_ / "preset.mid"));
    EXPECT_EQ(Render(GetPath("in.mid"), "none.mid", {"--preset", "None"}), 2);
    EXPECT_EQ(error_, "kivora: There is no preset \"None\".\n");
    EXPECT_FALSE(std::filesystem::exists(folder_ / "none.mid"));
}

TEST_F(ConsoleRun, ADamagedFileIsRefusedWithThePlaceOfTheDamage) {
    std::string bytes = ReadFileBytes(folder_ / "in.mid");
    KivoraTest::WriteFileBytes(folder_ / "cut.mid", bytes.substr(0, 60));
    EXPECT_EQ(Render(GetPath("cut.mid"), "out.wav"), 1);
    EXPECT_EQ(error_, "kivora: " + GetPath("cut.mid").toStdString() +
                          ": It is cut short: it ends at byte 60, inside a track.\n");
    EXPECT_EQ(Render(GetPath("cut.mid"), "out.wav", {"--locale", "ru_RU"}), 1);
    EXPECT_NE(error_.find("60"), std::string::npos);
    EXPECT_EQ(error_.find("cut short"), std::string::npos) << error_;
    EXPECT_FALSE(std::filesystem::exists(folder_ / "out.wav"));
}

TEST_F(ConsoleRun, WhatCannotBeReadOrWrittenIsTold) {
    const auto path = [this](const char* name) { return GetPath(name).toStdString(); };
    EXPECT_EQ(Render(GetPath("none.mid"), "out.wav"), 1);
    EXPECT_EQ(error_, "kivora: " + path("none.mid") + " cannot be read: No such file or directory.\n");
    EXPECT_EQ(Render(GetPath("data"), "out.wav"), 1);
    EXPECT_EQ(error_, "kivora: " + path("data") + " cannot be read: It is no regular file.\n");
    ASSERT_EQ(mkfifo((folder_ / "fifo").c_str(), 0600), 0);
    EXPECT_EQ(Render(GetPath("fifo"), "out.wav"), 1);
    EXPECT_EQ(error_, "kivora: " + path("fifo") + " cannot be read: It is no regular file.\n");
    EXPECT_EQ(Render(GetPath("in.mid"), "missing/out.wav"), 1);
    EXPECT_EQ(error_, "kivora: " + path("missing/out.wav") + " cannot be written: No such file or directory.\n");
    EXPECT_EQ(Render(GetPath("in.mid"), "in.mid"), 2);
    EXPECT_EQ(error_, "kivora: The file to write is the one to play.\n");
}

TEST_F(ConsoleRun, NothingButTheResultIsLeft) {
    ASSERT_EQ(Render(GetPath("in.mid"), "out.wav"), 0);
    std::vector<std::string> names;
    for (const auto& [name, content] : KivoraTest::TakeSnapshot(folder_.GetPath())) {
        if (content != "/") {
            names.push_back(name);
        }
    }
    EXPECT_EQ(names, (std::vector<std::string>{"data/Brennholt/Kivora/Locale.ini", "in.mid", "out.wav", "tiny.sf2"}));
}

TEST_F(ConsoleRun, ChecksWhetherAKeyWouldSound) {
    variables_.insert("KIVORA_AUDIO_DRIVER", "file");
    variables_.insert("KIVORA_AUDIO_FILE", GetPath("check.wav"));
    EXPECT_EQ(Run({"--check"}), 0);
    EXPECT_EQ(output_.find("[!!]"), std::string::npos) << output_;
    EXPECT_NE(output_.find("[ok] A key sounds: Software synthesizer.\n"), std::string::npos) << output_;
    EXPECT_NE(output_.find(GetPath("tiny.sf2").toStdString()), std::string::npos) << output_;
    EXPECT_GT(std::filesystem::file_size(folder_ / "check.wav"), 0U) << "the test note";
    EXPECT_EQ(Run({"--check", "--output", "USB Piano"}), 1);
    EXPECT_NE(output_.find("[!!] The chosen synthesizer, USB Piano, is not connected."), std::string::npos) << output_;
    variables_.insert("KIVORA_SOUNDFONT", GetPath("none.sf2"));
    EXPECT_EQ(Run({"--check", "--locale", "ru_RU"}), 1);
    EXPECT_NE(output_.find("[!!] Банк звуков не найден"), std::string::npos) << output_;
}
