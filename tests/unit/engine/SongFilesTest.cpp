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

/// What of a channel has a value: a key (0 while it is up, whatever it was struck with), a controller and so on.
struct Part {
    enum Kind { kKey, kKeyPressure, kController, kProgram, kPressure, kBend };
    int channel;
    Kind kind;
    int number;  ///< of the key or the controller
    friend auto operator<=>(const Part&, const Part&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Part& part) {
        return out << "channel " << part.channel << ", kind " << part.kind << ", number " << part.number;
    }
};

struct Heard {
    std::vector<Struck> struck;
    std::map<Part, std::map<std::int64_t, int>> values;  ///< those that stand when a millisecond is over
    std::int64_t endMs = 0;

    void Take(std::int64_t ms, const NK::MIDI::TMIDIMessage& message) {
        const int channel = message.channel - 1;
        switch (message.status) {
            case 0x80:
            case 0x90: {
                const int velocity = message.status == 0x90 ? message.data2 : 0;
                if (velocity > 0) {
                    struck.push_back({ms, channel, message.data1, velocity});
                }
                values[{channel, Part::kKey, message.data1}][ms] = velocity > 0 ? 1 : 0;
                break;
            }
            case 0xA0:
                if (IsDown(channel, message.data1)) {  // else it means nothing
                    values[{channel, Part::kKeyPressure, message.data1}][ms] = message.data2;
                }
                break;
            case 0xB0:
                TakeControl(ms, channel, message.data1, message.data2);
                break;
            case 0xC0:
                values[{channel, Part::kProgram, 0}][ms] = message.data1;
                break;
            case 0xD0:
                values[{channel, Part::kPressure, 0}][ms] = message.data1;
                break;
            default:
                values[{channel, Part::kBend, 0}][ms] = message.data2 * 128 + message.data1;
        }
    }

private:
    bool IsDown(int channel, int note) const {
        const auto key = values.find({channel, Part::kKey, note});
        return key != values.end() && key->second.rbegin()->second != 0;
    }
    void TakeControl(std::int64_t ms, int channel, int number, int value) {
        constexpr int kFirstMode = 120;
        constexpr int kReset = 121;
        constexpr int kLocal = 122;
        if (number < kFirstMode) {
            values[{channel, Part::kController, number}][ms] = value;
        } else if (number != kReset && number != kLocal) {  // ends all notes
            for (auto& [part, history] : values) {
                if (part.channel == channel && part.kind == Part::kKey) {
                    history[ms] = 0;
                }
            }
        }
    }
};

/// What midicsv lists, in the order of the ticks, at the millisecond by which it has come.
Heard List(const std::filesystem::path& file, const std::filesystem::path& folder) {
    static const std::map<std::string, std::uint8_t> kKinds{{"Note_off_c", 0x80},        {"Note_on_c", 0x90},
                                                            {"Poly_aftertouch_c", 0xA0}, {"Control_c", 0xB0},
                                                            {"Program_c", 0xC0},         {"Channel_aftertouch_c", 0xD0},
                                                            {"Pitch_bend_c", 0xE0}};
    const std::string textPath = (folder / "listed.csv").native();
    EXPECT_EQ(std::system(("midicsv '" + file.native() + "' '" + textPath + "'").c_str()), 0) << "midicsv is missing";
    std::ifstream text(textPath);
    std::multimap<std::int64_t, NK::MIDI::TMIDIMessage> messages;  // of one tick in the order of the tracks
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
        const auto kind = kKinds.find(type);
        if (type == "Header") {
            division = c;
        } else if (type == "Tempo") {
            tempi[tick] = a;
        } else if (kind != kKinds.end()) {
            const bool isBend = kind->second == 0xE0;
            messages.insert(
                {tick,
                 {kind->second, static_cast<std::uint8_t>(a + 1), static_cast<std::uint8_t>(isBend ? b % 128 : b),
                  static_cast<std::uint8_t>(isBend ? b / 128 : c)}});
        }
    }
    Heard listed;
    for (const auto& [tick, message] : messages) {
        std::int64_t time = 0;  // in the division's part of a microsecond
        for (auto tempo = tempi.begin(); tempo != tempi.end() && tempo->first < tick; ++tempo) {
            const std::int64_t end = std::next(tempo) == tempi.end() ? tick : std::min(std::next(tempo)->first, tick);
            time += (end - tempo->first) * tempo->second;
        }
        listed.Take((time / division + 999) / 1000, message);
    }
    return listed;
}

/// What the playback sends, and whether anything sounds at the end.
Heard Play(const std::filesystem::path& file, bool& leavesSounding) {
    EngineRig rig;
    rig.CreateOpen();
    Kivora::EngineControls controls(*rig.engine);
    Kivora::SongPlayer player(controls);
    SynthModel synth;
    Heard heard;
    rig.GetDevice(kSynth).keepsWritten = false;
    rig.GetDevice(kSynth).onWrite = [&](const LibMidi::MIDIEvent& event) {
        synth.Play(event);
        heard.Take(heard.endMs, {static_cast<std::uint8_t>(event.status & 0xF0),
                                 static_cast<std::uint8_t>((event.status & 0x0F) + 1), event.data1, event.data2});
    };
    player.Open(std::make_shared<const Kivora::Song>(*NK::MIDI::ReadSMFFile(NK::CString::FromUtf8(file.native()))));
    for (player.Play(); player.GetStatus().state == Kivora::SongPlayer::State::kPlaying; ++heard.endMs) {
        rig.Run(1);
    }
    leavesSounding = synth.IsSounding() || synth.IsPedalDown();
    return heard;
}

/// What is struck in one millisecond may come in any order, as chords do.
std::vector<Struck> Sort(std::vector<Struck> notes) {
    std::sort(notes.begin(), notes.end(), [](const Struck& a, const Struck& b) {
        return std::tuple(a.ms, a.channel, a.note, a.velocity) < std::tuple(b.ms, b.channel, b.note, b.velocity);
    });
    return notes;
}

/// Whatever is listed before the end, where everything is set back, stands by then in what was played.
void ExpectValuesAsListed(const Heard& played, const Heard& listed) {
    for (const auto& [part, history] : listed.values) {
        const auto its = played.values.find(part);
        for (const auto& [ms, value] : history) {
            if (ms >= played.endMs - 1) {
                break;
            }
            const bool isUp = part.kind == Part::kKey && value == 0;
            if (its == played.values.end() || its->second.begin()->first > ms) {
                ASSERT_TRUE(isUp) << part << " at " << ms << " ms";  // the end of what has not begun
                continue;
            }
            ASSERT_EQ(std::prev(its->second.upper_bound(ms))->second, value) << part << " at " << ms << " ms";
        }
    }
}

void ExpectAsListed(const std::filesystem::path& file, const std::filesystem::path& folder) {
    SCOPED_TRACE(file.native());
    bool leavesSounding = true;
    const Heard heard = Play(file, leavesSounding);
    const Heard read = List(file, folder);
    EXPECT_FALSE(leavesSounding);
    const std::vector<Struck> played = Sort(heard.struck);
    const std::vector<Struck> listed = Sort(read.struck);
    ASSERT_EQ(played.size(), listed.size());
    for (std::size_t i = 0; i < listed.size(); ++i) {
        ASSERT_EQ(played[i], listed[i]) << "note " << i;
    }
    ExpectValuesAsListed(heard, read);
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
