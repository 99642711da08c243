#include "libmidi/synth/SoundFontFile.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>

#include "libmidi/MIDIPortContainer.h"
#include "libmidi/synth/OfflineRenderer.h"
#include "support/TemporaryFolder.h"
#include "support/TinySoundFont.h"

namespace {

using KivoraTest::CTemporaryFolder;
using KivoraTest::MakeTinySoundFont;
using KivoraTest::WriteBytes;
using LibMidi::CheckSoundFont;

constexpr const wchar_t* kUnreadable = L"The sound font cannot be read.";
constexpr const wchar_t* kNoFont = L"The file is no sound font.";
constexpr const wchar_t* kDamaged = L"The sound font is damaged.";

class SoundFontFileTest : public testing::Test {
protected:
    static NK::CString Check(const std::string& bytes) {
        std::istringstream stream(bytes);
        return CheckSoundFont(stream).ToText();
    }
    /// Loads what passed the check and plays it: whatever FluidSynth makes of it, nothing may crash.
    void Play(const std::string& bytes) {
        WriteBytes(path_, bytes);
        try {
            LibMidi::OfflineRenderer renderer(path_);
            renderer.Render({LibMidi::NoteEvent(0, 0, 60, 100, 0x90), LibMidi::NoteEvent(20, 0, 60, 0, 0x80)}, 30);
            ++played_;
        } catch (const LibMidi::CMIDIException&) {
            ++refused_;
        }
    }

    CTemporaryFolder folder_;
    const std::filesystem::path path_ = folder_ / "font.sf2";
    const std::string font_ = MakeTinySoundFont();
    int played_ = 0;
    int refused_ = 0;
};

TEST_F(SoundFontFileTest, AWholeFontIsAccepted) {
    EXPECT_EQ(Check(font_), L"");
    Play(font_);
    EXPECT_EQ(CheckSoundFont(path_).ToText(), L"");
    EXPECT_EQ(played_, 1);
}

TEST_F(SoundFontFileTest, AMissingFileAndAFolderCannotBeRead) {
    EXPECT_EQ(CheckSoundFont(folder_ / "missing.sf2").ToText(), kUnreadable);
    EXPECT_EQ(CheckSoundFont(folder_.GetPath()).ToText(), kUnreadable);
    EXPECT_EQ(CheckSoundFont("").ToText(), kUnreadable);
}

TEST_F(SoundFontFileTest, RandomBytesAreNoFont) {
    std::mt19937 random(1);
    for (std::size_t size : {0U, 1U, 7U, 11U, 12U, 100U, 100000U}) {
        std::string bytes(size, '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(random() & 0xFF);
        }
        EXPECT_EQ(Check(bytes), kNoFont) << size;
    }
}

TEST_F(SoundFontFileTest, RandomBytesBehindAFontsFirstLettersAreRefused) {
    std::mt19937 random(2);
    std::string bytes = font_;
    for (std::size_t at = 12; at < bytes.size(); ++at) {
        bytes[at] = static_cast<char>(random() & 0xFF);
    }
    EXPECT_EQ(Check(bytes), kDamaged);
}

TEST_F(SoundFontFileTest, AnotherRiffFormIsNoFont) {
    std::string bytes = font_;
    bytes.replace(8, 4, "WAVE");
    EXPECT_EQ(Check(bytes), kNoFont);
}

TEST_F(SoundFontFileTest, AFontCutAnywhereIsRefused) {
    for (std::size_t length = 0; length < font_.size(); ++length) {
        ASSERT_NE(Check(font_.substr(0, length)), L"") << length;
    }
}

TEST_F(SoundFontFileTest, AFontCutAnywhereWithItsOuterSizeMadeToFitIsRefused) {
    for (std::size_t length = 12; length < font_.size(); ++length) {
        std::string bytes = font_.substr(0, length);
        bytes.replace(4, 4, KivoraTest::TinySoundFontDetail::Number(static_cast<std::uint32_t>(length - 8), 4));
        ASSERT_EQ(Check(bytes), kDamaged) << length;
    }
}

TEST_F(SoundFontFileTest, ATableThatCountsPastItsNeighbourIsRefused) {
    std::string bytes = font_;
    const std::size_t bags = bytes.find("pbag") + 8;
    bytes.replace(bags + 4, 2, "\xFF\xFF");
    EXPECT_EQ(Check(bytes), kDamaged);
}

TEST_F(SoundFontFileTest, AReferenceToASampleOrInstrumentThatIsNotThereIsRefused) {
    for (const auto& [table, reference] : {std::pair("igen", 6), std::pair("pgen", 2)}) {
        std::string bytes = font_;
        bytes[bytes.find(table) + 8 + static_cast<std::size_t>(reference)] = 1;
        EXPECT_EQ(Check(bytes), kDamaged) << table;
    }
}

// Every byte outside the samples takes four other values; what still passes the check is loaded and played.
TEST_F(SoundFontFileTest, AFontWithAnyByteOfItsTablesChangedNeverCrashes) {
    std::mt19937 random(3);
    const std::size_t samples = font_.find("smpl") + 8;
    const std::size_t tables = font_.find("pdta") - 8;
    for (std::size_t at = 0; at < font_.size(); ++at) {
        if (at >= samples && at < tables) {
            continue;
        }
        std::vector<std::uint_fast32_t> values{0x00, 0x01, 0xFF};
        values.push_back(random() & 0xFF);
        for (const auto value : values) {
            std::string bytes = font_;
            bytes[at] = static_cast<char>(value);
            if (Check(bytes).IsEmpty()) {
                Play(bytes);
            }
        }
    }
    EXPECT_GT(played_, 100);
    RecordProperty("played", played_);
    RecordProperty("refused_by_fluidsynth", refused_);
}

TEST_F(SoundFontFileTest, AFontWithManyBytesChangedNeverCrashes) {
    std::mt19937 random(4);
    const std::size_t tables = font_.find("pdta") + 4;
    for (int round = 0; round < 1000; ++round) {
        std::string bytes = font_;
        for (auto count = 1 + random() % 6; count > 0; --count) {
            bytes[tables + random() % (bytes.size() - tables)] = static_cast<char>(random() & 0xFF);
        }
        if (Check(bytes).IsEmpty()) {
            Play(bytes);
        }
    }
    EXPECT_GT(played_, 100);
}

}  // namespace
