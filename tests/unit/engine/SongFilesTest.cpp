// Whole files, played to their end and compared with what another reader lists.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "midi/reader/SMFReader.h"
#include "midi/SMFWriter.h"
#include "support/SynthModel.h"
#include "unit/engine/SongRig.h"

using namespace KivoraTest;

namespace {

struct Struck {
    std::int64_t ms;
    int channel;
    int note;
    int velocity;
    friend bool operator==(const Struck&, const Struck&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Struck& struck) {
        return out << struck.ms << " ms, channel " << struck.channel << ", note " << struck.note << ", "
                   << struck.velocity;
    }
};

/// The notes that midicsv lists, in the order of their ticks, at the millisecond by which they have come.
std::vector<Struck> List(const std::filesystem::path& file, const std::filesystem::path& folder) {
    const std::string textPath = (folder / "listed.csv").native();
    EXPECT_EQ(std::system(("midicsv '" + file.native() + "' '" + textPath + "'").c_str()), 0) << "midicsv is missing";
    std::ifstream text(textPath);
    std::multimap<std::int64_t, Struck> notes;  // of one tick in the order of the tracks
    std::map<std::int64_t, std::int64_t> tempi{{0, 500000}};
    std::int64_t division = 480;
    for (std::string line; std::getline(text, line);) {
        std::replace(line.begin(), line.end(), ',', ' ');
        std::istringstream words(line);
        std::int64_t track = 0;
        std::int64_t tick = 0;
        std::string type;
        std::int64_t a = 0;
        std::int64_t b = 0;
        std::int64_t c = 0;
        words >> track >> tick >> type >> a >> b >> c;
        if (type == "Header") {
            division = c;
        } else if (type == "Tempo") {
            tempi[tick] = a;
        } else if (type == "Note_on_c" && c > 0) {
            notes.insert({tick, {0, static_cast<int>(a), static_cast<int>(b), static_cast<int>(c)}});
        }
    }
    std::vector<Struck> listed;
    for (const auto& [tick, note] : notes) {
        std::int64_t time = 0;  // in the division's part of a microsecond
        for (auto tempo = tempi.begin(); tempo != tempi.end() && tempo->first < tick; ++tempo) {
            const std::int64_t end = std::next(tempo) == tempi.end() ? tick : std::min(std::next(tempo)->first, tick);
            time += (end - tempo->first) * tempo->second;
        }
        listed.push_back(note);
        listed.back().ms = (time / division + 999) / 1000;
    }
    return listed;
}

/// What the playback strikes, and whether anything sounds at the end.
std::vector<Struck> Play(const std::filesystem::path& file, bool& leavesSounding) {
    EngineRig rig;
    rig.CreateOpen();
    Kivora::EngineControls controls(*rig.engine);
    Kivora::SongPlayer player(controls);
    SynthModel synth;
    std::vector<Struck> struck;
    std::int64_t ms = 0;
    rig.GetDevice(kSynth).keepsWritten = false;
    rig.GetDevice(kSynth).onWrite = [&](const LibMidi::MIDIEvent& event) {
        synth.Play(event);
        if ((event.status & 0xF0) == 0x90 && event.data2 > 0) {
            struck.push_back({ms, event.status & 0x0F, event.data1, event.data2});
        }
    };
    player.Open(std::make_shared<const Kivora::Song>(*NK::MIDI::ReadSMFFile(NK::CString::FromUtf8(file.native()))));
    for (player.Play(); player.GetStatus().state == Kivora::SongPlayer::State::kPlaying; ++ms) {
        rig.Run(1);
    }
    leavesSounding = synth.IsSounding() || synth.IsPedalDown();
    return struck;
}

/// What is struck in one millisecond may come in any order, as chords do.
std::vector<Struck> Sort(std::vector<Struck> notes) {
    std::sort(notes.begin(), notes.end(), [](const Struck& a, const Struck& b) {
        return std::tuple(a.ms, a.channel, a.note, a.velocity) < std::tuple(b.ms, b.channel, b.note, b.velocity);
    });
    return notes;
}

void ExpectAsListed(const std::filesystem::path& file, const std::filesystem::path& folder) {
    SCOPED_TRACE(file.native());
    bool leavesSounding = true;
    const std::vector<Struck> played = Sort(Play(file, leavesSounding));
    const std::vector<Struck> listed = Sort(List(file, folder));
    EXPECT_FALSE(leavesSounding);
    ASSERT_EQ(played.size(), listed.size());
    for (std::size_t i = 0; i < listed.size(); ++i) {
        ASSERT_EQ(played[i], listed[i]) << "note " << i;
    }
}

}  // namespace

TEST(SongFiles, AFileWithAllThatMovesItsTimeIsPlayedAsAnotherReaderListsIt) {
    CTemporaryFolder folder;
    // Two tracks with running status, the tempo in the first: 480 ticks at 120, 70 and 181 beats a minute.
    std::string tempi("\0\377\121\3\7\241\40\203\140\377\121\3\15\24\67\217\0\377\121\3\5\16\263\0\377\57\0", 27);
    std::string notes;
    for (int i = 0; i < 120; ++i) {
        const char note = static_cast<char>(40 + i % 30);
        notes += i == 0 ? std::string("\0\220", 2) : std::string(1, static_cast<char>(i % 100));
        notes += {note, 100};
        notes += {61, note, 0};
    }
    notes += std::string("\0\377\57\0", 4);
    const auto chunk = [](const std::string& bytes) {
        const auto size = static_cast<std::uint32_t>(bytes.size());
        return "MTrk" + std::string{0, 0, static_cast<char>(size >> 8), static_cast<char>(size)} + bytes;
    };
    std::ofstream(folder / "file.mid", std::ios::binary)
        << std::string("MThd\0\0\0\6\0\1\0\2\1\340", 14) << chunk(tempi) << chunk(notes);
    ExpectAsListed(folder / "file.mid", folder / "");
}

/// For files of one's own: KIVORA_SONGS names a folder.
TEST(SongFiles, TheFilesOfAFolderArePlayedAsAnotherReaderListsThem) {
    const char* const songs = std::getenv("KIVORA_SONGS");
    if (songs == nullptr) {
        GTEST_SKIP() << "KIVORA_SONGS names no folder";
    }
    CTemporaryFolder folder;
    int count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(songs)) {
        if (entry.path().extension() == ".mid") {
            ++count;
            ExpectAsListed(entry.path(), folder / "");
        }
    }
    EXPECT_GT(count, 0);
}
