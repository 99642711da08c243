#include "app/FileOpening.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "engine/CKivora.h"
#include "engine/EngineControls.h"
#include "engine/Song.h"
#include "locale/Locale.h"
#include "midi/SMFWriter.h"
#include "support/Files.h"
#include "ui/dialogs/SongFile.h"
#include "unit/engine/EngineRig.h"

namespace {

using namespace KivoraTest;

class FileOpening : public testing::Test {
protected:
    FileOpening() {
        Kivora::SetLocale("en_US", false);
        engine_.SetPatch(11, 0);
        EXPECT_TRUE(engine_.SavePreset(L"Mine"));
        engine_.SetPatch(3, 0);
    }
    std::string GetPath(const std::string& name) const { return (rig_.folder / name).string(); }
    /// What is told; nothing was loaded then.
    std::string Open(const std::string& name) {
        played_.reset();
        const std::string failure =
            Kivora::OpenFile(&controls_, QString::fromStdString(GetPath(name)), [this](const SongFile& song) {
                played_ = song;
            }).toStdString();
        EXPECT_EQ(engine_.GetPatch(0), failure.empty() && !played_ ? 11 : 3) << name;
        return failure;
    }

    EngineRig rig_;
    Kivora::CKivora& engine_ = rig_.Create();
    Kivora::EngineControls controls_{engine_};
    std::optional<SongFile> played_;
};

const std::string kPreset = "user/Presets/Mine.kivoraLXPreset";

}  // namespace

TEST_F(FileOpening, LoadsAPresetOfAnyName) {
    EXPECT_EQ(Open(kPreset), "");
    EXPECT_EQ(engine_.GetPresetName(), L"Mine");
    engine_.SetPatch(3, 0);
    std::filesystem::copy_file(GetPath(kPreset), GetPath("sent.txt"));
    EXPECT_EQ(Open("sent.txt"), "");
    EXPECT_EQ(engine_.GetPresetName(), L"sent");
}

TEST_F(FileOpening, WhatCannotBeAPresetIsToldWithItsNameAndTheReason) {
    EXPECT_EQ(Open("none"), "The preset " + GetPath("none") + " cannot be read: No such file or directory.");
    EXPECT_EQ(Open("user"), "The preset " + GetPath("user") + " cannot be read: It is no regular file.");
    ASSERT_EQ(mkfifo(GetPath("fifo").c_str(), 0600), 0);
    EXPECT_EQ(Open("fifo"), "The preset " + GetPath("fifo") + " cannot be read: It is no regular file.");
    WriteFileBytes(GetPath("huge"), std::string(std::size_t{2} * 1024 * 1024, '\n'));
    EXPECT_EQ(Open("huge"), "The preset " + GetPath("huge") + " cannot be read: It is too large.");
    WriteFileBytes(GetPath("picture"), std::string("\x89PNG\0\0\0", 7));
    EXPECT_EQ(Open("picture"), GetPath("picture") + " is no preset.");
    WriteFileBytes(GetPath("empty"), "");
    EXPECT_EQ(Open("empty"), GetPath("empty") + " is no preset.");
}

TEST_F(FileOpening, AMIDIFileIsPlayedOrRefusedWithWords) {
    NK::CArray<NK::MIDI::CMIDIMessageX> events;
    events.Push({{0x90, 1, 60, 100}, 0});
    events.Push({{0x80, 1, 60, 64}, 500});
    ASSERT_TRUE(NK::MIDI::WriteMIDIFile(NK::CString::FromUtf8(GetPath("a.mid")), events, 120));
    EXPECT_EQ(Open("a.mid"), "");
    ASSERT_TRUE(played_);
    EXPECT_EQ(played_->song->GetEvents().size(), 2U);
    EXPECT_EQ(played_->title, "a.mid");
    EXPECT_EQ(played_->damage, "");
    for (const char* name : {"b.MIDI", "c.kar"}) {
        std::filesystem::copy_file(GetPath("a.mid"), GetPath(name));
        EXPECT_EQ(Open(name), "");
        EXPECT_TRUE(played_);
    }
    const std::string whole = ReadFileBytes(GetPath("a.mid"));
    WriteFileBytes(GetPath("damaged.mid"), whole.substr(0, whole.size() - 7));
    EXPECT_EQ(Open("damaged.mid"), "");
    ASSERT_TRUE(played_) << "what is whole is played";
    EXPECT_EQ(played_->song->GetEvents().size(), 1U);
    EXPECT_NE(played_->damage, "");
    WriteFileBytes(GetPath("cut.mid"), whole.substr(0, 26));
    EXPECT_EQ(Open("cut.mid"), GetPath("cut.mid") + ": It is cut short: it ends at byte 26, inside a track.");
    std::string otherFormat = whole;
    otherFormat[9] = 2;
    WriteFileBytes(GetPath("format2.mid"), otherFormat);
    EXPECT_EQ(Open("format2.mid"),
              GetPath("format2.mid") + ": It is a MIDI file of a kind that cannot be played (byte 8).");
    ASSERT_TRUE(NK::MIDI::WriteMIDIFile(NK::CString::FromUtf8(GetPath("empty.mid")), nullptr, 0, 120));
    EXPECT_EQ(Open("empty.mid"), GetPath("empty.mid") + " holds nothing that can be played.");
    EXPECT_EQ(Open("none.mid"), GetPath("none.mid") + " cannot be read: No such file or directory.");
    std::filesystem::create_directory(GetPath("folder.mid"));
    EXPECT_EQ(Open("folder.mid"), GetPath("folder.mid") + " cannot be read: It is no regular file.");
    ASSERT_EQ(mkfifo(GetPath("fifo.mid").c_str(), 0600), 0);
    EXPECT_EQ(Open("fifo.mid"), GetPath("fifo.mid") + " cannot be read: It is no regular file.");
    std::filesystem::resize_file(GetPath("b.MIDI"), std::uintmax_t{1} << 32);
    EXPECT_EQ(Open("b.MIDI"), GetPath("b.MIDI") + " cannot be read: It is too large.");
}

TEST_F(FileOpening, AnUnreadableFileIsTold) {
    WriteFileBytes(GetPath("closed"), "x");
    ASSERT_EQ(chmod(GetPath("closed").c_str(), 0), 0);
    const std::string told = Open("closed");
    // Who may read everything finds no preset in it.
    EXPECT_TRUE(told == "The preset " + GetPath("closed") + " cannot be read: Permission denied." ||
                told == GetPath("closed") + " is no preset.")
        << told;
}

TEST_F(FileOpening, WithoutAnEngineThatIsTold) {
    for (const QString path : {"/a/b", "/a/none.mid"}) {
        EXPECT_EQ(Kivora::OpenFile(nullptr, path, [](const SongFile&) {}),
                  path + " cannot be opened, as the instrument could not be started.");
    }
}
