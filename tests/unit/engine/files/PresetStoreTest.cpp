#include "engine/files/PresetStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <set>
#include <string>
#include <vector>

#include "support/Files.h"
#include "support/FileSizeLimit.h"
#include "support/TemporaryFolder.h"

using namespace KivoraTest;
using Kivora::PresetStore;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// What happens in some folders, themselves and their files; not what happens in the folders inside them.
class CFolderWatch {
public:
    explicit CFolderWatch(const std::vector<std::filesystem::path>& folders) : watch_(inotify_init1(IN_NONBLOCK)) {
        for (const auto& folder : folders) {
            EXPECT_GE(inotify_add_watch(watch_, folder.c_str(), IN_ALL_EVENTS), 0) << folder;
        }
    }
    ~CFolderWatch() { close(watch_); }
    CFolderWatch(const CFolderWatch&) = delete;
    CFolderWatch& operator=(const CFolderWatch&) = delete;

    /// The names of what was touched, empty for the watched folder itself.
    std::set<std::string> GetTouched() const {
        std::set<std::string> names;
        alignas(inotify_event) std::array<char, 16384> events;
        for (ssize_t size = 0; (size = read(watch_, events.data(), events.size())) > 0;) {
            for (const char* at = events.data(); at < events.data() + size;) {
                const auto* const event = reinterpret_cast<const inotify_event*>(at);
                names.insert(event->len == 0 ? "" : event->name);
                at += sizeof(inotify_event) + event->len;
            }
        }
        return names;
    }

private:
    int watch_;
};

/// While it lives, and the tests run as root, the process has nobody's rights.
class CUnprivileged {
public:
    CUnprivileged() : wasRoot_(geteuid() == 0 && seteuid(65534) == 0) {}
    ~CUnprivileged() {
        if (wasRoot_) {
            EXPECT_EQ(seteuid(0), 0);
        }
    }
    CUnprivileged(const CUnprivileged&) = delete;
    CUnprivileged& operator=(const CUnprivileged&) = delete;

private:
    bool wasRoot_;
};

class PresetStoreTest : public testing::Test {
protected:
    // For who is nobody.
    PresetStoreTest() { std::filesystem::permissions(folder.GetPath(), std::filesystem::perms(0755)); }
    static NK::CString ToPath(const std::filesystem::path& path) { return NK::CString::FromUtf8(path.native()); }
    std::vector<std::string> List(bool ofFactory = false) {
        NK::CStringArray names;
        names.Push(L"is forgotten");
        store.List(names, ofFactory);
        std::vector<std::string> texts;
        for (const NK::CString& name : names) {
            texts.push_back(name.ToUtf8());
        }
        return texts;
    }
    static NK::CString Repeat(std::size_t count, wchar_t character) { return std::wstring(count, character).c_str(); }
    bool Save(const NK::CString& name, const wchar_t* value = L"1") {
        NK::CIniFile file;
        file.SelectOrAddSection(PresetStore::kSection);
        file.SetString(L"Key", value);
        return store.Save(name, file, setAside);
    }

    CTemporaryFolder folder;
    const std::filesystem::path user = folder / "deep/user";
    const std::filesystem::path userPresets = user / "Presets";
    const std::filesystem::path factory = folder / "bin/Presets";
    PresetStore store{ToPath(user), ToPath(factory)};
    NK::CString setAside;
};

}  // namespace

TEST_F(PresetStoreTest, TheFoldersAreCreatedWithTheirParentsWhenTheyAreAskedFor) {
    EXPECT_TRUE(TakeSnapshot(folder.GetPath()).empty());
    EXPECT_EQ(store.GetUserDataDir(), ToPath(user));
    EXPECT_TRUE(std::filesystem::is_directory(user));
    EXPECT_FALSE(std::filesystem::exists(userPresets));
    EXPECT_EQ(store.GetPresetsDir(false), ToPath(userPresets) + L"/");
    EXPECT_TRUE(std::filesystem::is_directory(userPresets));
    EXPECT_FALSE(std::filesystem::exists(factory));
    EXPECT_EQ(store.GetPresetsDir(true), ToPath(factory) + L"/");
    EXPECT_TRUE(std::filesystem::is_directory(factory));
}

TEST_F(PresetStoreTest, TheFoldersHaveMode0755) {
    const mode_t mask = umask(0);
    store.GetPresetsDir(false);
    umask(mask);
    for (const auto& created : {user.parent_path(), user, userPresets}) {
        struct stat status {};
        ASSERT_EQ(stat(created.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777U, 0755U) << created;
    }
}

TEST_F(PresetStoreTest, AFolderIsRememberedForTheRestOfTheRun) {
    store.GetPresetsDir(false);
    std::filesystem::remove_all(user);
    EXPECT_EQ(store.GetPresetsDir(false), ToPath(userPresets) + L"/");
    EXPECT_FALSE(std::filesystem::exists(userPresets));
    EXPECT_THAT(List(), IsEmpty());
}

TEST_F(PresetStoreTest, SavingBringsAFolderBackThatHasGone) {
    store.GetPresetsDir(false);
    std::filesystem::remove_all(user);
    EXPECT_TRUE(Save(L"a"));
    EXPECT_THAT(List(), ElementsAre("a"));
}

TEST_F(PresetStoreTest, APresetNamedWithASlashIsStoredAndListedWithAnUnderscore) {
    EXPECT_TRUE(Save(L"a/b"));
    EXPECT_TRUE(std::filesystem::is_regular_file(userPresets / "a_b.kivoraLXPreset"));
    EXPECT_THAT(List(), ElementsAre("a_b"));
    EXPECT_TRUE(Save(L"c\\d"));
    EXPECT_THAT(List(), ElementsAre("a_b", "c_d"));
    EXPECT_TRUE(store.Exists(L"a/b", false));
    EXPECT_TRUE(store.Exists(L"a\\b", false));
    EXPECT_TRUE(store.Exists(L"a_b", false));
    EXPECT_TRUE(store.Delete(L"a\\b"));
    EXPECT_THAT(List(), ElementsAre("c_d"));
}

TEST_F(PresetStoreTest, NamesThatAreNoneAreRefused) {
    for (const wchar_t* const name : {L"", L".", L"..", L"a\nb", L"\t", L"a\x1B[31m", L"a\x7F", L"a\x85", L"a\xFFFD"}) {
        EXPECT_TRUE(PresetStore::GetStoredName(name).IsEmpty()) << NK::CString(name).ToUtf8();
        EXPECT_FALSE(Save(name));
        EXPECT_FALSE(store.Exists(name, false));
        EXPECT_FALSE(store.Delete(name));
    }
    EXPECT_FALSE(Save(std::wstring_view(L"a\0b", 3)));
    EXPECT_FALSE(Save(std::wstring_view(L"a\xD800", 2))) << "half a pair of surrogates";
    EXPECT_FALSE(std::filesystem::exists(userPresets));
}

TEST_F(PresetStoreTest, NamesThatOnlyLookOddAreTaken) {
    const std::vector<std::string> names = {" ", "...", "..a", ".a", "a.", "a.b.c", "a.kivoraLXPreset",
                                            "~", "con", "-rf"};
    for (const std::string& name : names) {
        EXPECT_EQ(PresetStore::GetStoredName(NK::CString::FromUtf8(name)).ToUtf8(), name);
        EXPECT_TRUE(Save(NK::CString::FromUtf8(name))) << name;
    }
    EXPECT_THAT(List(), testing::UnorderedElementsAreArray(names));
    for (const std::string& name : names) {
        EXPECT_TRUE(store.Delete(NK::CString::FromUtf8(name))) << name;
    }
    EXPECT_THAT(TakeSnapshot(userPresets), IsEmpty());
}

TEST_F(PresetStoreTest, ANameOf300BytesIsRefusedAndTheLongestThatTheDiskTakesIsNot) {
    const NK::CString longest = Repeat(255 - std::wstring_view(PresetStore::kExtension).size() - 1, L'n');
    EXPECT_TRUE(Save(longest));
    EXPECT_FALSE(Save(longest + L"n"));
    EXPECT_FALSE(Save(Repeat(300, L'n')));
    EXPECT_FALSE(Save(Repeat(150, L'я'))) << "300 bytes in UTF-8";
    EXPECT_FALSE(store.Exists(Repeat(300, L'n'), false));
    EXPECT_FALSE(store.Delete(Repeat(300, L'n')));
    EXPECT_EQ(TakeSnapshot(userPresets).size(), 1U);
}

TEST_F(PresetStoreTest, NamesInCyrillicAreKeptAndNamesThatDifferInCaseOnlyAreTwo) {
    EXPECT_TRUE(Save(L"Мой рояль", L"first"));
    EXPECT_TRUE(Save(L"мой рояль", L"second"));
    EXPECT_TRUE(std::filesystem::is_regular_file(userPresets / "Мой рояль.kivoraLXPreset"));
    NK::CIniFile file;
    ASSERT_TRUE(store.Read(L"Мой рояль", false, file));
    EXPECT_EQ(file.GetString(L"Key"), NK::CString(L"first"));
    ASSERT_TRUE(store.Read(L"мой рояль", false, file));
    EXPECT_EQ(file.GetString(L"Key"), NK::CString(L"second"));
    EXPECT_FALSE(store.Exists(L"МОЙ РОЯЛЬ", false));
    EXPECT_EQ(List().size(), 2U);
}

TEST_F(PresetStoreTest, NoNameTouchesAnythingOutsideTheFolder) {
    for (const char* const secret : {"secret.kivoraLXPreset", "deep/secret.kivoraLXPreset",
                                     "deep/user/secret.kivoraLXPreset", "other/secret.kivoraLXPreset"}) {
        WriteFileBytes(folder / secret, "[KivoraPreset]\n");
    }
    store.GetPresetsDir(false);
    store.GetPresetsDir(true);
    const auto before = TakeSnapshot(folder.GetPath());
    const CFolderWatch watch({folder.GetPath(), folder / "deep", folder / "other", folder / "bin", user});
    const NK::CString outside = ToPath(folder / "other/secret");
    for (const NK::CString& name :
         {NK::CString(L"../secret"), NK::CString(L"..\\secret"), NK::CString(L"../../secret"),
          NK::CString(L"../../../other/secret"), NK::CString(L"a/../../secret"), outside, NK::CString(L"/"),
          NK::CString(L"\\"), NK::CString(L"../.."), NK::CString(L"./secret"), NK::CString(L".."), NK::CString(L"."),
          NK::CString(std::wstring_view(L"..\0/secret", 10)), NK::CString(L"secret\n/../x"), NK::CString()}) {
        NK::CIniFile file;
        EXPECT_FALSE(store.Exists(name, false));
        EXPECT_FALSE(store.Exists(name, true));
        EXPECT_FALSE(store.Read(name, false, file));
        EXPECT_FALSE(store.Delete(name));
        if (Save(name)) {
            EXPECT_TRUE(store.Delete(name)) << name.ToUtf8();
        }
    }
    EXPECT_THAT(watch.GetTouched(), testing::IsSubsetOf({"Presets"}));
    EXPECT_TRUE(std::filesystem::remove(folder / "deep/user/secret.kivoraLXPreset"));
    EXPECT_THAT(watch.GetTouched(), testing::Contains("secret.kivoraLXPreset")) << "the watch itself";
    WriteFileBytes(folder / "deep/user/secret.kivoraLXPreset", "[KivoraPreset]\n");
    EXPECT_EQ(TakeSnapshot(folder.GetPath()), before);
}

TEST_F(PresetStoreTest, TheListHoldsThePresetsOfOneFolderAndNothingElse) {
    WriteFileBytes(factory / "Organ.kivoraLXPreset", "");
    WriteFileBytes(userPresets / "b.kivoraLXPreset", "");
    WriteFileBytes(userPresets / "a.kivoraLXPreset", "");
    for (const char* const other :
         {"a.ini", "a", "a.kivoralxpreset", "a.kivoraLXPreset.bad", ".kivoraLXPreset", "kivoraLXPreset",
          "back\\slash.kivoraLXPreset", "line\nfeed.kivoraLXPreset", "latin\xE9.kivoraLXPreset"}) {
        WriteFileBytes(userPresets / other, "");
    }
    std::filesystem::create_directory(userPresets / "folder.kivoraLXPreset");
    EXPECT_THAT(List(), ElementsAre("a", "b"));
    EXPECT_THAT(List(true), ElementsAre("Organ"));
    EXPECT_FALSE(store.Exists(L"folder", false));
    EXPECT_FALSE(store.Delete(L"folder"));
}

TEST_F(PresetStoreTest, AFolderThatIsNotThereGivesAnEmptyList) {
    WriteFileBytes(folder / "deep/user", "a file");
    EXPECT_THAT(List(), IsEmpty());
    EXPECT_FALSE(Save(L"a"));
    EXPECT_EQ(ReadFileBytes(user), "a file");
}

TEST_F(PresetStoreTest, AFactoryPresetIsNeitherDeletedNorOverwritten) {
    WriteFileBytes(factory / "Organ.kivoraLXPreset", "[KivoraPreset]\nKey=factory\n");
    EXPECT_FALSE(store.Delete(L"Organ"));
    EXPECT_TRUE(Save(L"Organ", L"user"));
    NK::CIniFile file;
    ASSERT_TRUE(store.Read(L"Organ", true, file));
    EXPECT_EQ(file.GetString(L"Key"), NK::CString(L"factory"));
    ASSERT_TRUE(store.Read(L"Organ", false, file));
    EXPECT_EQ(file.GetString(L"Key"), NK::CString(L"user"));
}

TEST_F(PresetStoreTest, AFileWithoutTheSectionIsNoPresetAndIsSetAsideBeforeItIsOverwritten) {
    const auto path = userPresets / "a.kivoraLXPreset";
    WriteFileBytes(path, "something else\n");
    NK::CIniFile file;
    EXPECT_FALSE(store.Read(L"a", false, file));
    EXPECT_TRUE(Save(L"a"));
    EXPECT_EQ(setAside, ToPath(path) + L".bad");
    EXPECT_EQ(ReadFileBytes(path.native() + ".bad"), "something else\n");
    EXPECT_TRUE(store.Read(L"a", false, file));
    EXPECT_THAT(List(), ElementsAre("a"));
    setAside.Clear();
    EXPECT_TRUE(Save(L"a", L"2"));
    EXPECT_TRUE(setAside.IsEmpty());
    EXPECT_EQ(TakeSnapshot(userPresets).size(), 2U);
}

TEST_F(PresetStoreTest, AnOversizedFileIsRefusedAndSetAsideBeforeItIsOverwritten) {
    const auto path = userPresets / "a.kivoraLXPreset";
    WriteFileBytes(path, "[KivoraPreset]\n");
    std::filesystem::resize_file(path, std::uintmax_t{1} << 30);  // a line of 1 GB
    NK::CIniFile file;
    EXPECT_FALSE(store.Read(L"a", false, file));
    EXPECT_TRUE(Save(L"a"));
    EXPECT_EQ(std::filesystem::file_size(path.native() + ".bad"), std::uintmax_t{1} << 30);
    EXPECT_TRUE(store.Read(L"a", false, file));
}

TEST_F(PresetStoreTest, AFullDiskLeavesTheOldFileAndReportsFalse) {
    ASSERT_TRUE(Save(L"a", L"old"));
    WriteFileBytes(userPresets / "damaged.kivoraLXPreset", "damaged");
    const auto before = TakeSnapshot(folder.GetPath());
    for (const rlim_t room : {0U, 1U, 20U}) {
        const CFileSizeLimit limit(room);
        EXPECT_FALSE(Save(L"a", L"new"));
        EXPECT_FALSE(Save(L"b", L"new"));
        EXPECT_FALSE(Save(L"damaged", L"new"));
        EXPECT_TRUE(setAside.IsEmpty());
    }
    EXPECT_EQ(TakeSnapshot(folder.GetPath()), before);
}

TEST_F(PresetStoreTest, AReadOnlyFolderLeavesTheOldFileAndReportsFalse) {
    ASSERT_TRUE(Save(L"a", L"old"));
    WriteFileBytes(userPresets / "damaged.kivoraLXPreset", "damaged");
    const auto before = TakeSnapshot(folder.GetPath());
    ASSERT_EQ(chmod(userPresets.c_str(), 0555), 0);
    {
        const CUnprivileged unprivileged;
        EXPECT_FALSE(Save(L"a", L"new"));
        EXPECT_FALSE(Save(L"b", L"new"));
        EXPECT_FALSE(Save(L"damaged", L"new"));
        EXPECT_FALSE(store.Delete(L"a"));
        EXPECT_TRUE(store.Exists(L"a", false));
        NK::CIniFile file;
        EXPECT_TRUE(store.Read(L"a", false, file));
    }
    EXPECT_EQ(TakeSnapshot(folder.GetPath()), before);
    ASSERT_EQ(chmod(userPresets.c_str(), 0755), 0);
}

TEST_F(PresetStoreTest, AFileThatMayNotBeReadIsLeftAlone) {
    ASSERT_TRUE(Save(L"a", L"old"));
    const auto path = userPresets / "a.kivoraLXPreset";
    const auto before = TakeSnapshot(folder.GetPath());
    ASSERT_EQ(chmod(path.c_str(), 0), 0);
    ASSERT_EQ(chmod(userPresets.c_str(), 0777), 0);
    {
        const CUnprivileged unprivileged;
        EXPECT_FALSE(Save(L"a", L"new"));
        EXPECT_TRUE(setAside.IsEmpty());
    }
    ASSERT_EQ(chmod(path.c_str(), 0644), 0);
    EXPECT_EQ(TakeSnapshot(folder.GetPath()), before);
}
