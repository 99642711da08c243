// A take on the bars and beats to which it was played.
#include "engine/takes/TakeTicks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "engine/EngineControls.h"
#include "engine/EngineExtras.h"
#include "engine/TakeJournal.h"
#include "engine/takes/PlayedGrid.h"
#include "engine/takes/PlayedPassages.h"
#include "engine/takes/RecordedTrack.h"
#include "midi/reader/SMFReader.h"
#include "support/Files.h"
#include "unit/engine/EngineRig.h"

using namespace KivoraTest;
using Kivora::TakeGrid;
using Kivora::TakeTicks;
using NK::MIDI::MusicalClock;

namespace {

MusicalClock Clock(int tempo, int beat = 0, int offset = 0, int beatsPerBar = 4) {
    MusicalClock clock;
    clock.tempo = tempo;
    clock.beat = beat;
    clock.offset = offset;
    clock.beatsPerBar = beatsPerBar;
    return clock;
}

std::vector<std::pair<int, int>> GetMeters(const TakeTicks& ticks) {
    std::vector<std::pair<int, int>> meters;
    for (const TakeTicks::Meter& meter : ticks.GetMeters()) {
        meters.emplace_back(meter.tick, meter.beatsPerBar);
    }
    return meters;
}

using Meters = std::vector<std::pair<int, int>>;

}  // namespace

TEST(TakeTicks, TheBarOfTheFirstNoteIsTheBeginning) {
    TakeGrid grid;
    grid.Add(0, Clock(120, 1, 250), false);  // one beat and a half are over: bars begin at 1250, 3250 ...
    const TakeTicks ticks(grid, 3500);
    EXPECT_EQ(ticks.GetTick(3250), 0);
    EXPECT_EQ(ticks.GetTick(3500), 480);
    EXPECT_EQ(ticks.GetTick(5250), 4 * 960);
    EXPECT_EQ(ticks.GetTick(100), 0) << "before the beginning";
    ASSERT_EQ(ticks.GetTempi().size(), 1U);
    EXPECT_EQ(ticks.GetTempi()[0].usPerBeat, 500000U);
    EXPECT_EQ(GetMeters(ticks), (Meters{{0, 4}}));
}

TEST(TakeTicks, ATempoThatChangesWithinABarGoesOnFromItsPlace) {
    TakeGrid grid;
    grid.Add(0, Clock(120), false);
    grid.Add(750, Clock(60, 1, 500), false);
    const TakeTicks ticks(grid, 0);
    EXPECT_EQ(ticks.GetTick(750), 1440);
    EXPECT_EQ(ticks.GetTick(1250), 1920);
    EXPECT_EQ(ticks.GetTick(3250), 4 * 960);
}

TEST(TakeTicks, ABarThatBeginsInTheMiddleOfOneEndsThatOneOnABeat) {
    TakeGrid grid;
    grid.Add(0, Clock(120), false);
    grid.Add(2000 + 1100, Clock(60), true);  // one bar and 2.2 beats
    const TakeTicks ticks(grid, 0);
    EXPECT_EQ(GetMeters(ticks), (Meters{{0, 4}, {4 * 960, 2}, {6 * 960, 4}}));
    EXPECT_EQ(ticks.GetTick(2000), 4 * 960);
    EXPECT_EQ(ticks.GetTick(2500), 5 * 960);
    EXPECT_EQ(ticks.GetTick(3100), 6 * 960);
    EXPECT_EQ(ticks.GetTick(4100), 7 * 960);
}

TEST(TakeTicks, AKnobThatIsTurnedIsOneChange) {
    TakeGrid grid;
    grid.Add(0, Clock(120), false);
    for (int i = 1; i <= 10; ++i) {
        grid.Add(static_cast<std::uint32_t>(1900 + 10 * i), Clock(120 + i), true);
    }
    const TakeTicks ticks(grid, 0);
    EXPECT_EQ(GetMeters(ticks), (Meters{{0, 4}}));
    EXPECT_EQ(ticks.GetTick(2000), 4 * 960);
    EXPECT_EQ(ticks.GetTempi().size(), 2U);
    EXPECT_EQ(ticks.GetTempi()[1].usPerBeat, 461538U);
}

TEST(TakeTicks, OtherMetersBeginWithTheirBar) {
    TakeGrid grid;
    grid.Add(0, Clock(120), false);
    grid.Add(2000, Clock(120, 0, 0, 3), true);
    const TakeTicks ticks(grid, 0);
    EXPECT_EQ(GetMeters(ticks), (Meters{{0, 4}, {4 * 960, 3}}));
    EXPECT_EQ(ticks.GetTick(3500), 7 * 960);
}

TEST(TakeTicks, NoEventIsMoreThanHalfATickFromWhereItWasPlayedWhateverTheClockDid) {
    std::mt19937 random(7);
    const auto draw = [&random](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
    CTemporaryFolder folder;
    const NK::CString path = NK::CString::FromUtf8((folder / "take.mid").native());
    for (int take = 0; take < 200; ++take) {
        TakeGrid grid;
        const int beats = 1 + draw(12);
        grid.Add(0, Clock(40 + draw(181), draw(beats), draw(200), beats), false);
        std::uint32_t now = 0;
        for (int change = draw(8); change > 0; --change) {
            now += static_cast<std::uint32_t>(draw(3) == 0 ? draw(20) : draw(4000));
            const bool begins = draw(3) != 0;
            grid.Add(now, Clock(40 + draw(181), 0, 0, begins ? 1 + draw(12) : beats), begins);
        }
        LibMidi::CaptureStore store;
        std::vector<std::uint32_t> times;
        std::uint32_t time = static_cast<std::uint32_t>(draw(2000));
        for (int i = 0; i < 200; ++i) {
            store.Append({time, {0x90, 1, static_cast<std::uint8_t>(i % 128), 100}});
            times.push_back(time);
            time += static_cast<std::uint32_t>(draw(200));
        }
        ASSERT_TRUE(Kivora::SaveTrackOnGrid(store.GetView(), grid, path));
        const auto content = NK::MIDI::ReadSMFFile(path);
        ASSERT_TRUE(content && !content->damage);
        ASSERT_EQ(content->tempoMap.GetTicksPerQuarter(), 960U);
        const auto tempi = content->tempoMap.GetChanges();
        // Of the ticks beside an event, of which a change of the tempo may make two kinds.
        const auto halfTickUs = [&tempi](std::uint32_t tick) {
            std::uint32_t usPerBeat = 0;
            for (const auto& tempo : tempi) {
                if (tempo.tick < tick || tempo.tick == 0) {
                    usPerBeat = tempo.tempo;
                } else if (tempo.tick == tick) {
                    usPerBeat = std::max(usPerBeat, tempo.tempo);
                }
            }
            return usPerBeat / 1920.0;
        };
        const auto& first = content->events[0];
        for (std::size_t i = 0; i < times.size(); ++i) {
            const auto& event = content->events[i];
            const std::int64_t playedUs = (std::int64_t{times[i]} - times[0]) * 1000;
            // Each of the two may be half a tick away, and the reader rounds down to a microsecond.
            ASSERT_LE(std::abs(static_cast<double>(event.timeUs - first.timeUs - playedUs)),
                      halfTickUs(event.tick) + halfTickUs(first.tick) + 2)
                << "take " << take << ", event " << i;
        }
    }
}

namespace {

class TakeOnGrid : public testing::Test {
protected:
    TakeOnGrid() {
        rig.CreateOpen();
        controls = std::make_unique<Kivora::EngineControls>(*rig.engine);
        journal = std::make_unique<Kivora::TakeJournal>(*rig.engine, path("takes"),
                                                        Kivora::TakeJournal::Settings{.runThread = false});
    }
    NK::CString path(const char* name) { return NK::CString::FromUtf8((rig.folder / name).native()); }
    void PlayFor(int ms) {
        rig.engine->PlayNoteOn(60, 100);
        rig.Run(ms);
        rig.engine->PlayNoteOff(60);
        rig.Run(1);
    }
    /// Its number.
    int RecordTwoTempi() {
        rig.engine->SetTempo(90);
        EXPECT_TRUE(controls->StartRecording());
        PlayFor(500);
        controls->TempoUp();
        PlayFor(2000);
        controls->StopRecording();
        return journal->GetLatest();
    }
    void StartAgain() {
        journal.reset();
        journal = std::make_unique<Kivora::TakeJournal>(*rig.engine, path("takes"),
                                                        Kivora::TakeJournal::Settings{.runThread = false});
    }
    std::filesystem::path FindGrid() const {
        for (const auto& entry : std::filesystem::directory_iterator(rig.folder / "takes")) {
            if (entry.path().extension() == ".kivgrid") {
                return entry.path();
            }
        }
        ADD_FAILURE() << "there is none";
        return {};
    }
    int CountFiles() const {
        const std::filesystem::directory_iterator files(rig.folder / "takes");
        return static_cast<int>(std::distance(begin(files), end(files)));
    }

    EngineRig rig;
    std::unique_ptr<Kivora::EngineControls> controls;
    std::unique_ptr<Kivora::TakeJournal> journal;
};

}  // namespace

TEST_F(TakeOnGrid, AnArpeggioLiesOnTheBeatsAlsoBehindATempoThatIsTurned) {
    rig.engine->SetTempo(90);
    rig.engine->WithArpeggiator(0, [](auto& arpeggiator) { arpeggiator.SetNoteStep(96, 24); });  // half a beat
    rig.engine->SetArpeggiating(true);
    ASSERT_TRUE(controls->StartRecording());
    rig.engine->RestartClock();
    rig.engine->PlayNoteOn(60, 100);
    rig.Run(5000);
    controls->TempoUp();  // goes on within its bar
    rig.Run(5000);
    rig.engine->PlayNoteOff(60);
    rig.Run(100);
    controls->StopRecording();
    const int id = journal->GetLatest();
    ASSERT_TRUE(journal->HasGrid(id));
    ASSERT_TRUE(journal->Save(id, path("take.mid"), true));
    const auto content = NK::MIDI::ReadSMFFile(path("take.mid"));
    ASSERT_TRUE(content && !content->damage);
    int notes = 0;
    for (const auto& event : content->events) {
        if (event.message.status == 0x90 && event.message.data2 > 0) {
            ++notes;
            const int off = (static_cast<int>(event.tick) + 240) % 480 - 240;
            EXPECT_LE(std::abs(off), 6) << "tick " << event.tick << ": 4 ms of the rig's rounds at most";
        }
    }
    EXPECT_GT(notes, 20);
    EXPECT_EQ(content->tempoMap.GetChanges().size(), 2U);
}

TEST_F(TakeOnGrid, AnArpeggioLiesOnTheBeatsBehindManyTaps) {
    rig.engine->SetTempo(90);
    rig.engine->WithArpeggiator(0, [](auto& arpeggiator) { arpeggiator.SetNoteStep(96, 24); });  // half a beat
    rig.engine->SetArpeggiating(true);
    ASSERT_TRUE(controls->StartRecording());
    rig.engine->RestartClock();
    rig.engine->PlayNoteOn(60, 100);
    std::mt19937 random(3);
    for (int tap = 0; tap < 300; ++tap) {
        rig.Run(100 + static_cast<int>(random() % 300));
        rig.engine->SetTempoInBar(80 + static_cast<int>(random() % 40));
    }
    rig.engine->PlayNoteOff(60);
    rig.Run(1000);
    controls->StopRecording();
    ASSERT_TRUE(journal->Save(journal->GetLatest(), path("take.mid"), true));
    const auto content = NK::MIDI::ReadSMFFile(path("take.mid"));
    ASSERT_TRUE(content && !content->damage);
    int notes = 0;
    for (const auto& event : content->events) {
        if (event.message.status == 0x90 && event.message.data2 > 0) {
            ++notes;
            const int off = (static_cast<int>(event.tick) + 240) % 480 - 240;
            EXPECT_LE(std::abs(off), 9) << "tick " << event.tick;
        }
    }
    EXPECT_GT(notes, 100);
}

TEST_F(TakeOnGrid, OffTheFileIsAsEver) {
    ASSERT_TRUE(controls->StartRecording());
    PlayFor(500);
    controls->StopRecording();
    const int id = journal->GetLatest();
    ASSERT_TRUE(Kivora::SaveRecordedTrack(journal->GetTake(id), path("ever.mid")));
    ASSERT_TRUE(journal->Save(id, path("take.mid")));
    const auto content = NK::MIDI::ReadSMFFile(path("take.mid"));
    EXPECT_EQ(content->tempoMap.GetTicksPerQuarter(), 500U);
    EXPECT_EQ(content->events.size(), NK::MIDI::ReadSMFFile(path("ever.mid"))->events.size());
}

TEST_F(TakeOnGrid, ATakeOfAnEarlierRunLiesOnTheGridAsItWouldHaveThen) {
    const int id = RecordTwoTempi();
    ASSERT_TRUE(Kivora::SaveRecordedTrack(journal->GetTake(id), path("ever.mid")));
    const auto grid =
        rig.engine->WithExtras([](const Kivora::EngineExtras& extras) { return extras.GetGrid()->Get(); });
    ASSERT_TRUE(Kivora::SaveTrackOnGrid(journal->GetTake(id), grid, path("then.mid")));
    RecordTwoTempi();
    journal->WriteOut();
    StartAgain();
    const auto waiting = journal->GetWaiting();
    ASSERT_EQ(waiting.size(), 2U);
    ASSERT_TRUE(journal->HasGrid(waiting[0].id));
    ASSERT_TRUE(journal->Save(waiting[0].id, path("take.mid"), true));
    EXPECT_EQ(ReadFileBytes(rig.folder / "take.mid"), ReadFileBytes(rig.folder / "then.mid"));
    EXPECT_EQ(NK::MIDI::ReadSMFFile(path("take.mid"))->tempoMap.GetTicksPerQuarter(), 960U);
    EXPECT_EQ(CountFiles(), 2) << "the other take's";
    ASSERT_TRUE(journal->Save(waiting[1].id, path("other.mid")));
    EXPECT_EQ(NK::MIDI::ReadSMFFile(path("other.mid"))->events.size(),
              NK::MIDI::ReadSMFFile(path("ever.mid"))->events.size());
    EXPECT_EQ(CountFiles(), 0);
}

TEST_F(TakeOnGrid, WithoutItsGridATakeOfAnEarlierRunIsSavedAsEver) {
    RecordTwoTempi();
    journal->WriteOut();
    const std::filesystem::path grid = FindGrid();
    const std::string whole = ReadFileBytes(grid);
    const auto isKnown = [this] {
        StartAgain();
        const auto waiting = journal->GetWaiting();
        return waiting.size() == 1 && journal->HasGrid(waiting[0].id);
    };
    EXPECT_TRUE(isKnown());
    for (std::size_t i = 0; i < whole.size(); ++i) {
        std::string damaged = whole;
        damaged[i] ^= 1;
        std::ofstream(grid, std::ios::binary) << damaged;
        EXPECT_FALSE(isKnown()) << "byte " << i;
        std::ofstream(grid, std::ios::binary) << whole.substr(0, i);
        EXPECT_FALSE(isKnown()) << "cut at " << i;
    }
    std::ofstream(grid, std::ios::binary) << whole;
    EXPECT_TRUE(isKnown());
    std::filesystem::remove(grid);
    EXPECT_FALSE(isKnown());
    ASSERT_TRUE(journal->Save(journal->GetWaiting()[0].id, path("take.mid"), true));
    EXPECT_EQ(NK::MIDI::ReadSMFFile(path("take.mid"))->tempoMap.GetTicksPerQuarter(), 500U);
}

TEST_F(TakeOnGrid, AGridWhoseJournalIsGoneIsRemoved) {
    RecordTwoTempi();
    journal->WriteOut();
    const std::filesystem::path grid = FindGrid();
    std::filesystem::path alone = grid;
    alone.replace_filename("take-1-1.kivgrid");
    std::filesystem::copy(grid, alone);
    StartAgain();
    EXPECT_TRUE(std::filesystem::exists(grid));
    EXPECT_FALSE(std::filesystem::exists(alone));
}

TEST_F(TakeOnGrid, WhatWasPlayedWithoutARecordingLiesOnTheBeatsToo) {
    rig.engine->SetTempo(90);
    rig.engine->WithArpeggiator(0, [](auto& arpeggiator) { arpeggiator.SetNoteStep(96, 24); });  // half a beat
    rig.engine->SetArpeggiating(true);
    rig.Run(777);
    rig.engine->PlayNoteOn(60, 100);
    rig.Run(5000);
    controls->TempoUp();
    rig.Run(5000);
    rig.engine->PlayNoteOff(60);
    rig.Run(100);
    const auto [history, grid] = rig.engine->WithExtras(
        [](const Kivora::EngineExtras& extras) { return std::pair(extras.GetPlayed(), extras.playedGrid); });
    using Kivora::PlayedPassages;
    const PlayedPassages played(history->Get(), grid);
    ASSERT_TRUE(played.Save(PlayedPassages::Range::kAll, path("as-ever.mid")));
    EXPECT_EQ(NK::MIDI::ReadSMFFile(path("as-ever.mid"))->tempoMap.GetTicksPerQuarter(), 500U);
    ASSERT_TRUE(played.Save(PlayedPassages::Range::kAll, path("played.mid"), true));
    const auto content = NK::MIDI::ReadSMFFile(path("played.mid"));
    ASSERT_TRUE(content && !content->damage);
    int notes = 0;
    for (const auto& event : content->events) {
        if (event.message.status == 0x90 && event.message.data2 > 0) {
            ++notes;
            const int off = (static_cast<int>(event.tick) + 240) % 480 - 240;
            EXPECT_LE(std::abs(off), 6) << "tick " << event.tick << ": 4 ms of the rig's rounds at most";
        }
    }
    EXPECT_GT(notes, 20);
    EXPECT_EQ(content->tempoMap.GetChanges().size(), 2U);
}

TEST(PlayedGrid, ATakeBeginsWhereItsTimeStandsInTheBar) {
    NK::MIDI::MusicalClock clock;  // 4/4, 500 ms a beat
    Kivora::PlayedGrid grid;
    EXPECT_TRUE(grid.GetFrom(0).IsEmpty());
    grid.Add(1000, clock, true);
    clock.tempo = 60;
    clock.beat = 1;
    clock.offset = 250;
    grid.Add(5250, clock, false);
    using Mark = Kivora::TakeGrid::Mark;
    using Marks = std::vector<Mark>;
    EXPECT_EQ(grid.GetFrom(2750).GetMarks(), (Marks{{0, 120, 4, 3.5, false}, {2500, 60, 4, 1.25, false}}));
    EXPECT_EQ(grid.GetFrom(5000).GetMarks(), (Marks{{0, 120, 4, 0.0, false}, {250, 60, 4, 1.25, false}}));
    EXPECT_EQ(grid.GetFrom(8000).GetMarks(), (Marks{{0, 60, 4, 0.0, false}}));
    EXPECT_EQ(grid.GetFrom(750).GetMarks()[0], (Mark{0, 120, 4, 3.5, false})) << "before all that is known";
    grid.Add(5250 + LibMidi::PlayedHistory::kKeptMs, clock, true);
    EXPECT_EQ(grid.GetFrom(5250).GetMarks().size(), 2U) << "what the history still holds";
    for (std::size_t i = 0; i < 2 * Kivora::PlayedGrid::kMostChanges; ++i) {
        grid.Add(10'000'000 + static_cast<std::int64_t>(i), clock, false);
    }
    EXPECT_EQ(grid.GetFrom(0).GetMarks().size(), Kivora::PlayedGrid::kMostChanges + 1);
}

TEST_F(TakeOnGrid, TheChoiceIsASettingThatIsWrittenOnlyWhereItIsWanted) {
    const auto choose = [this](bool on) {
        rig.engine->WithExtras([on](Kivora::EngineExtras& extras) { extras.savesTempo = on; });
    };
    const auto isChosen = [this] {
        return rig.engine->WithExtras([](const Kivora::EngineExtras& extras) { return extras.savesTempo; });
    };
    EXPECT_FALSE(isChosen());
    ASSERT_TRUE(rig.engine->SaveSettings());
    NK::CIniFile file;
    ASSERT_TRUE(file.Load(path("user/Kivora.ini")));
    EXPECT_FALSE(file.SelectSection(L"Kivora_Takes"));
    choose(true);
    ASSERT_TRUE(rig.engine->SaveSettings());
    choose(false);
    ASSERT_TRUE(rig.engine->LoadSettings());
    EXPECT_TRUE(isChosen());
}
