// The patches and presets that were used last, and the favorites.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/EngineExtras.h"
#include "engine/values/PatchShelf.h"
#include "engine/values/RecentPresets.h"
#include "support/Files.h"
#include "unit/engine/EngineRig.h"

using namespace KivoraTest;
using Kivora::PatchShelf;
using Kivora::RecentPresets;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(PatchShelf, KeepsTheLastEightInTheirOrderAndEachOnce) {
    PatchShelf shelf;
    for (const int patch : {1, 2, 3, 4, 5, 6, 7, 8, 9, 3, -1, 128, -2}) {
        shelf.NoteUse(patch);
    }
    EXPECT_THAT(shelf.GetLastUsed(), ElementsAre(-1, 3, 9, 8, 7, 6, 5, 4));
}

TEST(PatchShelf, FavoritesStandInTheOrderOfTheirNumbers) {
    PatchShelf shelf;
    for (const int patch : {40, 3, -1, 40, 500}) {
        shelf.SetFavorite(patch, true);
    }
    EXPECT_THAT(shelf.GetFavorites(), ElementsAre(-1, 3, 40));
    shelf.SetFavorite(3, false);
    shelf.SetFavorite(4, false);
    EXPECT_THAT(shelf.GetFavorites(), ElementsAre(-1, 40));
}

TEST(PatchShelf, IsReadAndWrittenAndWhatIsNoPatchIsLeftOut) {
    NK::CIniFile file;
    PatchShelf().Write(file);
    EXPECT_EQ(file.GetSize(), 0U) << "nothing stands on it";
    PatchShelf shelf;
    shelf.NoteUse(5);
    shelf.NoteUse(-1);
    shelf.SetFavorite(7, true);
    shelf.Write(file);
    EXPECT_EQ(PatchShelf::Read(file), shelf);
    shelf.SetFavorite(7, false);
    shelf.Write(file);
    EXPECT_EQ(PatchShelf::Read(file), shelf);
    file.SelectSection(L"Kivora_Patches");
    file.SetString(L"LastUsed", L"4 999 4 -3 2 x 8 9y 99999999999999 7");
    file.SetString(L"Favorites", L"");
    EXPECT_THAT(PatchShelf::Read(file).GetLastUsed(), ElementsAre(4, 2, 8, 7));
    EXPECT_THAT(PatchShelf::Read(file).GetFavorites(), IsEmpty());
}

TEST(RecentPresets, KnowThePlaceOfEachByNameAndFolder) {
    RecentPresets recent;
    recent.Note(L"Choir", true);
    recent.Note(L"Choir", false);
    recent.Note(L"Organ", true);
    recent.Note(L"Choir", true);
    EXPECT_EQ(recent.GetPlace(L"Choir", true), 0U);
    EXPECT_EQ(recent.GetPlace(L"Organ", true), 1U);
    EXPECT_EQ(recent.GetPlace(L"Choir", false), 2U);
    EXPECT_EQ(recent.GetPlace(L"Organ", false), recent.GetCount());
    for (int i = 0; i < 200; ++i) {
        recent.Note(NK::CString::FromInt(i), false);
    }
    EXPECT_EQ(recent.GetCount(), RecentPresets::kMost);
}

TEST(RecentPresets, AreReadAndWritten) {
    NK::CIniFile file;
    RecentPresets().Write(file);
    EXPECT_EQ(file.GetSize(), 0U);
    RecentPresets recent;
    recent.Note(L"Хор", false);
    recent.Note(L"A=b; [c]", true);
    recent.sortsByUse = true;
    recent.Write(file);
    EXPECT_EQ(RecentPresets::Read(file), recent);
    recent.sortsByUse = false;
    recent.Write(file);
    EXPECT_EQ(RecentPresets::Read(file), recent);
}

TEST(Shelves, AreKeptWithTheSettings) {
    EngineRig rig;
    Kivora::CKivora& engine = rig.CreateOpen();
    const auto path = rig.folder / "user" / "Kivora.ini";
    ASSERT_TRUE(engine.SaveSettings());
    EXPECT_EQ(ReadFileBytes(path).find("Kivora_Patches"), std::string::npos);
    EXPECT_EQ(ReadFileBytes(path).find("Kivora_RecentPresets"), std::string::npos);
    engine.WithExtras([](Kivora::EngineExtras& extras) {
        extras.patches.SetFavorite(19, true);
        extras.presets.Note(L"Hall", true);
    });
    ASSERT_TRUE(engine.SaveSettings());
    engine.WithExtras([](Kivora::EngineExtras& extras) {
        extras.patches = {};
        extras.presets = {};
    });
    ASSERT_TRUE(engine.LoadSettings());
    engine.WithExtras([](Kivora::EngineExtras& extras) {
        EXPECT_THAT(extras.patches.GetFavorites(), ElementsAre(19));
        EXPECT_EQ(extras.presets.GetPlace(L"Hall", true), 0U);
    });
}
