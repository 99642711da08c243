// A knob and a pad of a MIDI keyboard are learned by the built program and work it.
#include <gtest/gtest.h>

#include <filesystem>
#include <QFile>
#include <QStringList>

#include "e2e/InstrumentProcess.h"
#include "e2e/player/LentDevices.h"
#include "support/FilePath.h"
#include "support/WaitUntil.h"

namespace {

using KivoraTest::CTemporaryFolder;
using KivoraTest::FilePath;
using KivoraTest::WaitUntil;

constexpr int kPanicRow = 10;

class Learn : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(instrument.Start({},
                                     {"KIVORA_STANDIN_DEVICES=" + FilePath(dir, "devices"), "KIVORA_AUDIO_DRIVER=none"},
                                     [this] { return devices.IsAnyOutputReached(); }));
        ASSERT_TRUE(WaitUntil([this] { return devices.IsReached(Standin::kInput); }));
    }
    void Play(std::uint32_t status, std::uint32_t data1, std::uint32_t data2) {
        devices.Play(status | data1 << 8U | data2 << 16U);
    }
    bool Key(const QStringList& keys) { return instrument.Xdotool(QStringList{"key"} + keys); }
    void OpenDialog() {
        // In the menu, from its end: Quit, About, Help, the keyboard's test, and it.
        ASSERT_TRUE(Key({"F10", "Up", "Up", "Up", "Up", "Up", "Return"}));
        ASSERT_TRUE(instrument.WaitForDialog());
    }
    void CloseDialog() {
        ASSERT_TRUE(Key({"Escape"}));
        ASSERT_TRUE(instrument.FocusAlone());
    }
    /// Since the mark.
    std::string Written() const { return devices.GetLastWritten(devices.GetWrittenCount() - mark); }
    void Mark() { mark = devices.GetWrittenCount(); }
    bool WasWritten(const std::string& message) const { return Written().find(message) != std::string::npos; }
    std::string Bindings() const {
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(instrument.GetDataDir().toStdString() + "/data")) {
            if (entry.path().filename() == "MidiBindings.ini") {
                QFile file(QString::fromStdString(entry.path().native()));
                return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : "";
            }
        }
        return {};
    }
    bool IsBound(const std::string& line) const { return Bindings().find(line) != std::string::npos; }

    std::uint32_t mark = 0;
    CTemporaryFolder dir;
    Player::LentDevices devices{(dir / "devices").native()};
    InstrumentProcess instrument;
};

}  // namespace

TEST_F(Learn, AKnobMovesTheVolumeAndAPadIsThePanicInAnyDialog) {
    OpenDialog();
    ASSERT_TRUE(Key({"Return"}));
    // Again until it is heard: the dialog listens when it has got the key.
    ASSERT_TRUE(WaitUntil([this] {
        Play(0xB0, 21, 40);
        return IsBound("Controller 21 on channel 1=Volume1");
    }));
    ASSERT_TRUE(Key(QStringList(kPanicRow, "Down") + QStringList{"Return"}));
    ASSERT_TRUE(WaitUntil([this] {
        Play(0x99, 36, 100);
        Play(0x89, 36, 0);
        return IsBound("Note 36 on channel 10=Panic");
    }));
    EXPECT_TRUE(IsBound("[Stand-in keyboard]"));
    CloseDialog();

    Mark();
    Play(0xB0, 21, 90);
    Play(0x90, 60, 100);
    ASSERT_TRUE(WaitUntil([this] { return WasWritten("90 3C 64"); }));
    // A key of the computer's comes to the window after the knob.
    ASSERT_TRUE(Key({"x"}));
    ASSERT_TRUE(WaitUntil([this] { return WasWritten("80 3E 00"); }));
    Play(0xB0, 21, 110);
    ASSERT_TRUE(WaitUntil([this] { return WasWritten("B0 07 6E"); }));
    EXPECT_FALSE(WasWritten("B0 07 5A")) << "the knob had not passed the volume yet";

    EXPECT_FALSE(WasWritten("B0 15")) << "a knob that is bound is not heard";
    Mark();
    ASSERT_TRUE(Key({"F2"}));
    ASSERT_TRUE(instrument.WaitForDialog());
    Play(0xB0, 21, 120);
    Play(0x99, 36, 100);
    ASSERT_TRUE(WaitUntil([this] { return WasWritten("FF 00 00"); })) << Written();
    Play(0x89, 36, 0);
    CloseDialog();
    EXPECT_FALSE(WasWritten("B0 07 78")) << "the panel was blocked";
    Play(0x80, 60, 0);
    Play(0x90, 62, 100);
    Play(0x80, 62, 0);
    ASSERT_TRUE(WaitUntil([this] { return WasWritten("80 3E"); }));
    EXPECT_FALSE(WasWritten("90 24")) << "nor is a pad";
    EXPECT_EQ(instrument.Close(), 0);
}
