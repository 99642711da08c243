// The settings file beside other programs, while it cannot be read, and when it is none.
#include "engine/files/SettingsFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <future>
#include <string>
#include <vector>

#include "nk/nk_folder_lock.h"
#include "support/Files.h"
#include "unit/engine/EngineRig.h"

using namespace KivoraTest;
using namespace std::string_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

namespace {

using Kivora::SettingsFile;
using State = SettingsFile::State;

class SettingsBesideOthers : public testing::Test {
protected:
    SettingsBesideOthers() { Write("[Kivora]\nTempo=99\nVolume0=50\nInput=none\n[Other program]\nA=1\n"); }

    void Write(const std::string& bytes) { WriteFileBytes(path, bytes); }
    std::string Read() const { return ReadFileBytes(path); }
    std::string ReadChanges() const { return ReadFileBytes(changes); }
    /// Another program on the same file.
    Kivora::CKivora& CreateOther() {
        Kivora::EngineDependencies dependencies = otherRig.GetDependencies();
        dependencies.userDataDir = NK::CString::FromUtf8((rig.folder / "user").native());
        otherRig.engine = std::make_unique<Kivora::CKivora>(std::move(dependencies));
        return *otherRig.engine;
    }
    /// In the file's place something of which it is known that it is there, and no more.
    void MakeUnreadable() {
        std::filesystem::rename(path, hidden);
        std::filesystem::create_symlink("/proc/self/mem", path);
    }
    void MakeReadable() {
        std::filesystem::remove(path);
        std::filesystem::rename(hidden, path);
    }

    void MakeChangesUnreadable(const std::string& content) {
        WriteFileBytes(hiddenChanges, content);
        std::filesystem::create_symlink("/proc/self/mem", changes);
    }
    void MakeChangesReadable() {
        std::filesystem::remove(changes);
        std::filesystem::rename(hiddenChanges, changes);
    }
    /// Saves, and puts into `names` what was told to be set aside.
    bool Save(std::vector<std::string>& names) {
        const auto connection =
            QObject::connect(&engine, &Kivora::CKivora::DamagedFileSetAside,
                             [&names](const QString& name) { names.push_back(name.toStdString()); });
        const bool saved = engine.SaveSettings();
        QObject::disconnect(connection);
        return saved;
    }

    EngineRig rig;
    EngineRig otherRig;
    const std::filesystem::path path = rig.folder / "user/Kivora.ini";
    const std::filesystem::path changes = rig.folder / "user/Kivora.ini.changes";
    const std::filesystem::path hidden = rig.folder / "hidden.ini";
    const std::filesystem::path hiddenChanges = rig.folder / "hidden.changes";
    Kivora::CKivora& engine = rig.Create();
};

TEST_F(SettingsBesideOthers, EachProgramSavesWhatItChangedItself) {
    Kivora::CKivora& other = CreateOther();
    ASSERT_TRUE(engine.LoadSettings());
    ASSERT_TRUE(other.LoadSettings());
    other.SetTempo(150);
    ASSERT_TRUE(other.SaveSettings());
    engine.VolumeUp(0);
    for (int save = 0; save < 3; ++save) {
        ASSERT_TRUE(engine.SaveSettings());
        EXPECT_THAT(Read(), HasSubstr("\nTempo=150\n"));
        EXPECT_THAT(Read(), HasSubstr("\nVolume0=53\n"));
        EXPECT_THAT(Read(), HasSubstr("[Other program]\nA=1\n"));
    }
    engine.SetTempo(60);
    ASSERT_TRUE(engine.SaveSettings());
    EXPECT_THAT(Read(), HasSubstr("\nTempo=60\n")) << "changed here last";
    ASSERT_TRUE(other.SaveSettings());
    EXPECT_THAT(Read(), HasSubstr("\nTempo=60\n"));
    EXPECT_THAT(Read(), HasSubstr("\nVolume0=53\n"));
}

TEST_F(SettingsBesideOthers, AProgramThatIsSavingIsWaitedFor) {
    SettingsFile file(NK::CString::FromUtf8(path.native()));
    file.Load();
    file.Remember([](NK::CIniFile&) {});
    auto theirs = NK::CFolderLock::Take(NK::CString::FromUtf8(path.parent_path().native()));
    ASSERT_TRUE(theirs);
    auto saved = std::async(std::launch::async, [&file] {
        NK::CStringArray setAside;
        return file.Save(
            [](NK::CIniFile& lines) {
                lines.SelectOrAddSection(L"Kivora");
                lines.SetString(L"Volume0", L"60");
            },
            setAside);
    });
    Write("[Kivora]\nTempo=150\nVolume0=50\n");
    theirs.reset();
    EXPECT_TRUE(saved.get());
    EXPECT_THAT(Read(), HasSubstr("Tempo=150\n"));
    EXPECT_THAT(Read(), HasSubstr("Volume0=60\n"));
}

TEST_F(SettingsBesideOthers, WhatNobodyElseChangedIsWrittenAsItIsInForce) {
    Write("[Kivora]\nVolume0=300\n");
    ASSERT_TRUE(engine.LoadSettings());
    ASSERT_TRUE(engine.SaveSettings());
    EXPECT_THAT(Read(), HasSubstr("\nVolume0=127\n"));
}

TEST_F(SettingsBesideOthers, AFileThatCannotBeReadForAMomentIsNotLost) {
    MakeUnreadable();
    EXPECT_FALSE(engine.LoadSettings());
    EXPECT_EQ(engine.GetSettingsFile().GetState(), State::kUnreadable);
    EXPECT_EQ(engine.GetSettingsFile().GetFailure().error, EIO);
    EXPECT_EQ(engine.GetSettingsFile().GetFailure().path.ToUtf8(), path.native());
    EXPECT_EQ(engine.GetTempo(), 120);
    engine.VolumeUp(0);
    MakeReadable();
    EXPECT_TRUE(engine.SaveSettings());
    EXPECT_THAT(Read(), HasSubstr("\nTempo=99\n"));
    EXPECT_THAT(Read(), HasSubstr("\nInput=none\n"));
    EXPECT_THAT(Read(), HasSubstr("\nVolume0=103\n"));
    EXPECT_FALSE(std::filesystem::exists(changes));
}

TEST_F(SettingsBesideOthers, WhatIsChangedMeanwhileIsKeptBesideUntilItCanBeRead) {
    const std::string whole = Read();
    MakeUnreadable();
    engine.LoadSettings();
    EXPECT_FALSE(engine.SaveSettings()) << "nothing was changed";
    EXPECT_FALSE(std::filesystem::exists(changes));
    EXPECT_FALSE(engine.GetSettingsFile().IsSavedBeside());
    engine.VolumeUp(0);
    EXPECT_FALSE(engine.SaveSettings());
    EXPECT_TRUE(engine.GetSettingsFile().IsSavedBeside());
    EXPECT_EQ(NK::GetFileFailure().error, EIO);
    EXPECT_EQ(ReadChanges(), "[Kivora]\nVolume0=103\n");
    EXPECT_TRUE(std::filesystem::is_symlink(path)) << "left as it is";

    // A second run that cannot read it either.
    Kivora::CKivora& other = CreateOther();
    EXPECT_FALSE(other.LoadSettings());
    EXPECT_EQ(other.GetVolume(0), 103);
    other.SetTempo(60);
    EXPECT_FALSE(other.SaveSettings());
    EXPECT_THAT(ReadChanges(), HasSubstr("Volume0=103\n"));
    EXPECT_THAT(ReadChanges(), HasSubstr("Tempo=60\n"));

    MakeReadable();
    EXPECT_EQ(Read(), whole);
    Kivora::CKivora& third = CreateOther();
    EXPECT_TRUE(third.LoadSettings());
    EXPECT_EQ(third.GetVolume(0), 103);
    EXPECT_EQ(third.GetTempo(), 60);
    EXPECT_TRUE(std::filesystem::exists(changes)) << "until they are where they belong";
    EXPECT_TRUE(third.SaveSettings());
    EXPECT_THAT(Read(), HasSubstr("\nTempo=60\n"));
    EXPECT_THAT(Read(), HasSubstr("\nVolume0=103\n"));
    EXPECT_THAT(Read(), HasSubstr("\nInput=none\n"));
    EXPECT_FALSE(std::filesystem::exists(changes));
}

TEST_F(SettingsBesideOthers, WhatAnEarlierRunKeptBesideCountsEvenIfOnlyTheEndCanReadTheFile) {
    MakeUnreadable();
    WriteFileBytes(changes, "[Kivora]\nVolume0=103\n");
    EXPECT_FALSE(engine.LoadSettings());
    EXPECT_EQ(engine.GetVolume(0), 103);
    MakeReadable();
    EXPECT_TRUE(engine.SaveSettings());
    EXPECT_THAT(Read(), HasSubstr("\nVolume0=103\n"));
    EXPECT_THAT(Read(), HasSubstr("\nTempo=99\n"));
}

TEST_F(SettingsBesideOthers, WhatIsKeptBesideIsAddedToWhenOnlyTheEndCanReadIt) {
    MakeUnreadable();
    MakeChangesUnreadable("[Kivora]\nVolume0=103\nTempo=150\n");
    engine.LoadSettings();
    engine.SetTempo(60);
    EXPECT_FALSE(engine.SaveSettings());
    EXPECT_FALSE(engine.GetSettingsFile().IsSavedBeside());
    EXPECT_TRUE(std::filesystem::is_symlink(changes)) << "left as it is";
    EXPECT_EQ(NK::GetFileFailure().path.ToUtf8(), path.native());
    MakeChangesReadable();
    EXPECT_FALSE(engine.SaveSettings());
    EXPECT_TRUE(engine.GetSettingsFile().IsSavedBeside());
    EXPECT_THAT(ReadChanges(), HasSubstr("Volume0=103\n"));
    EXPECT_THAT(ReadChanges(), HasSubstr("Tempo=60\n")) << "changed last";
    MakeReadable();
    EXPECT_TRUE(engine.SaveSettings());
    EXPECT_THAT(Read(), HasSubstr("\nVolume0=103\n"));
    EXPECT_THAT(Read(), HasSubstr("\nTempo=60\n"));
    EXPECT_THAT(Read(), HasSubstr("\nInput=none\n"));
    EXPECT_FALSE(std::filesystem::exists(changes));
}

TEST_F(SettingsBesideOthers, WhatIsKeptBesideComesIntoTheFileWhenOnlyASaveCanReadIt) {
    MakeChangesUnreadable("[Kivora]\nVolume0=103\nTempo=150\n");
    EXPECT_TRUE(engine.LoadSettings());
    engine.SetTempo(60);
    EXPECT_TRUE(engine.SaveSettings());
    EXPECT_THAT(Read(), HasSubstr("\nVolume0=50\n"));
    EXPECT_TRUE(std::filesystem::is_symlink(changes)) << "left as it is";
    MakeChangesReadable();
    for (int save = 0; save < 2; ++save) {
        EXPECT_TRUE(engine.SaveSettings());
        EXPECT_THAT(Read(), HasSubstr("\nVolume0=103\n"));
        EXPECT_THAT(Read(), HasSubstr("\nTempo=60\n")) << "changed last";
        EXPECT_FALSE(std::filesystem::exists(changes));
    }
}

TEST_F(SettingsBesideOthers, WhatIsKeptBesideIsSetAsideWhenItIsNoConfiguration) {
    const std::string zeros(4096, '\0');
    WriteFileBytes(changes, zeros);
    EXPECT_TRUE(engine.LoadSettings());
    EXPECT_EQ(ReadChanges(), zeros);
    std::vector<std::string> names;
    EXPECT_TRUE(Save(names));
    EXPECT_THAT(names, ElementsAre(changes.native() + ".bad"));
    EXPECT_EQ(ReadFileBytes(changes.native() + ".bad"), zeros);
    EXPECT_FALSE(std::filesystem::exists(changes));
    names.clear();
    EXPECT_TRUE(Save(names));
    EXPECT_THAT(names, IsEmpty()) << "told once";
}

TEST_F(SettingsBesideOthers, WhatIsKeptBesideIsSetAsideBeforeMoreIsKept) {
    WriteFileBytes(changes, "no configuration");
    MakeUnreadable();
    engine.LoadSettings();
    engine.SetTempo(60);
    std::vector<std::string> names;
    EXPECT_FALSE(Save(names));
    EXPECT_THAT(names, ElementsAre(changes.native() + ".bad"));
    EXPECT_EQ(ReadFileBytes(changes.native() + ".bad"), "no configuration");
    EXPECT_EQ(ReadChanges(), "[Kivora]\nTempo=60\n");
}

TEST_F(SettingsBesideOthers, BothFilesAreSetAsideWhenBothAreDamaged) {
    Write("no configuration");
    WriteFileBytes(changes, "none either");
    EXPECT_FALSE(engine.LoadSettings());
    std::vector<std::string> names;
    EXPECT_TRUE(Save(names));
    EXPECT_THAT(names, UnorderedElementsAre(path.native() + ".bad", changes.native() + ".bad"));
}

TEST_F(SettingsBesideOthers, AFileThatCannotBeReadAtTheEndIsLeftAsWell) {
    ASSERT_TRUE(engine.LoadSettings());
    engine.SetTempo(60);
    MakeUnreadable();
    EXPECT_FALSE(engine.SaveSettings());
    EXPECT_EQ(ReadChanges(), "[Kivora]\nTempo=60\n");
}

TEST_F(SettingsBesideOthers, NobodyWaitsForAFifoInItsPlace) {
    std::filesystem::remove(path);
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    ASSERT_EQ(mkfifo(changes.c_str(), 0600), 0);
    EXPECT_FALSE(engine.LoadSettings());
    EXPECT_EQ(engine.GetSettingsFile().GetFailure().error, NK::kErrorNoRegularFile);
    engine.SetTempo(60);
    EXPECT_FALSE(engine.SaveSettings());
    EXPECT_TRUE(std::filesystem::is_fifo(path));
    EXPECT_TRUE(std::filesystem::is_fifo(changes));
}

TEST_F(SettingsBesideOthers, WhatIsNoConfigurationIsSetAside) {
    const std::string zeros(4096, '\0');
    const std::string utf16 = "\xFF\xFE[\0K\0i\0v\0o\0r\0a\0]\0\r\0\n\0T\0e\0m\0p\0o\0=\0\x39\0\x39\0\r\0\n\0"s;
    const std::string picture = "\x89PNG\r\n\x1A\n\0\0\0\rIHDR[Kivora]\nTempo=99\n"s;
    for (const std::string& content : {zeros, utf16, picture, std::string("<html>\n<body></body></html>\n"),
                                       std::string("{ \"Tempo\": 99 }\n"), std::string("[Kivora]\nTempo=9\x01\n")}) {
        SCOPED_TRACE(testing::PrintToString(content.substr(0, 20)));
        Write(content);
        EXPECT_FALSE(engine.LoadSettings());
        EXPECT_TRUE(engine.AreSettingsDamaged());
        EXPECT_EQ(engine.GetTempo(), 120);
        QString setAside;
        const auto connection = QObject::connect(&engine, &Kivora::CKivora::DamagedFileSetAside,
                                                 [&](const QString& kept) { setAside = kept; });
        EXPECT_TRUE(engine.SaveSettings());
        QObject::disconnect(connection);
        EXPECT_THAT(Read(), Not(HasSubstr("\x01")));
        EXPECT_EQ(Read().substr(0, 9), "[Kivora]\n");
        ASSERT_NE(setAside, QString());
        EXPECT_EQ(ReadFileBytes(setAside.toStdString()), content);
    }
}

TEST_F(SettingsBesideOthers, CommentsAndOtherSectionsAreAConfiguration) {
    for (const std::string content :
         {"", "\n \n", "; by hand\n# and\n' so\n", "stray line\n[Other]\nA=1\n", "\xEF\xBB\xBF[Kivora]\r\nTempo=99\r\n",
          "[Kivora]\nInput=\xCC\xE8\xE4\xE8\n", "[Kivora]\nInput=a\tb\n"}) {
        SCOPED_TRACE(content);
        Write(content);
        engine.LoadSettings();
        EXPECT_FALSE(engine.AreSettingsDamaged());
    }
}

}  // namespace
