// What a saved recording holds.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "engine/takes/RecordedTrack.h"
#include "support/Files.h"
#include "support/FileSizeLimit.h"
#include "support/TemporaryFolder.h"
#include "unit/engine/EngineRig.h"

using namespace KivoraTest;
using NK::MIDI::CMIDIMessageX;
using NK::MIDI::TMIDIMessage;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

namespace {

std::vector<CMIDIMessageX> TrackOf(const LibMidi::CaptureStore::View& captured) {
    std::vector<CMIDIMessageX> track;
    Kivora::VisitRecordedTrack(captured, [&track](const CMIDIMessageX& event) { track.push_back(event); });
    return track;
}

std::vector<std::int32_t> TimesOf(const LibMidi::CaptureStore& captured) {
    std::vector<std::int32_t> times;
    for (const CMIDIMessageX& event : TrackOf(captured.GetView())) {
        times.push_back(event.time);
    }
    return times;
}

class SaveRecording : public testing::Test {
protected:
    NK::CString Path(const char* name) const { return NK::CString::FromUtf8((dir / name).string()); }
    std::string Bytes(const char* name) const { return ReadFileBytes(dir / name); }
    std::vector<CMIDIMessageX> Track() { return TrackOf(rig.player->GetSink()->GetCaptured()); }

    const CTemporaryFolder dir;
    EngineRig rig;
    Kivora::CKivora& engine = rig.CreateOpen();
};

}  // namespace

TEST_F(SaveRecording, FourTextsStandFirstWithoutATime) {
    engine.StartRecording();
    rig.RunPlayer();
    engine.StopRecording();
    const std::vector<CMIDIMessageX> track = Track();
    ASSERT_EQ(track.size(), 4U + 6U + 1U);
    EXPECT_EQ(track[0].GetText(), L"File created using Kivora LX 1.2");
    EXPECT_EQ(track[1].GetText(), L"https://brennholt.example/kivora/en/");
    EXPECT_EQ(track[2].GetText(), L"Copyright (C) 2010 Brennholt. All rights reserved.");
    EXPECT_EQ(track[3].GetText(), L"https://brennholt.example/kivora/ru/");
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(track[i].kind, CMIDIMessageX::kMeta);
        EXPECT_EQ(track[i].metaType, CMIDIMessageX::kText);
        EXPECT_EQ(track[i].time, -1);
    }
}

TEST_F(SaveRecording, AFirstNoteAfterFiveSecondsStandsAt100AndTheSetUpAt0) {
    engine.StartRecording();
    rig.RunPlayer();
    rig.Run(5000);
    engine.PlayNoteOn(60, 100);
    rig.RunPlayer();
    rig.Run(250);
    engine.PlayNoteOff(60);
    rig.RunPlayer();
    engine.StopRecording();
    const std::vector<CMIDIMessageX> track = Track();
    ASSERT_EQ(track.size(), 4U + 6U + 2U + 1U);
    for (std::size_t i = 0; i < 10; ++i) {
        EXPECT_EQ(track[i].time, 0) << i;
    }
    std::vector<std::uint32_t> setUp;  // messages of one round leave the queue in its heap's order
    for (std::uint32_t i = 4; i < 10; ++i) {
        setUp.push_back(track[i].message.ToWord());
    }
    const auto word = [](TMIDIMessage message) { return message.ToWord(); };
    EXPECT_THAT(setUp, UnorderedElementsAre(word({0xC0, 1, 0, 0}), word({0xC0, 2, 40, 0}), word({0xC0, 3, 32, 0}),
                                            word({0xB0, 1, 7, 100}), word({0xB0, 2, 7, 100}), word({0xB0, 3, 7, 100})));
    EXPECT_EQ(track[10].message, (TMIDIMessage{0x90, 1, 60, 100}));
    EXPECT_EQ(track[10].time, 100);
    EXPECT_EQ(track[11].message, (TMIDIMessage{0x80, 1, 60, 0}));
    EXPECT_EQ(track[11].time, 350);
}

TEST_F(SaveRecording, AllNotesOffClosesTheTrackAtTheLastEventsTime) {
    engine.StartRecording();
    rig.RunPlayer();
    engine.PlayNoteOn(60, 100);
    rig.RunPlayer();
    rig.Run(400);
    engine.SetSustain(true);
    rig.RunPlayer();
    engine.StopRecording();
    const std::vector<CMIDIMessageX> track = Track();
    const CMIDIMessageX& last = track[track.size() - 1];
    EXPECT_EQ(last.message, (TMIDIMessage{0xB0, 1, 123, 0}));
    EXPECT_EQ(last.time, 500);
}

TEST_F(SaveRecording, ATrackWithoutNotesKeepsItsTimes) {
    engine.StartRecording();
    rig.RunPlayer();
    rig.Run(700);
    engine.SetSustain(true);
    rig.RunPlayer();
    engine.StopRecording();
    const std::vector<CMIDIMessageX> track = Track();
    EXPECT_EQ(track[0].time, -1);
    EXPECT_EQ(track[track.size() - 1].time, 700);
}

TEST_F(SaveRecording, WithoutCapturedEventsNothingIsWritten) {
    EXPECT_FALSE(engine.SaveRecording(Path("take.mid")));
    EXPECT_TRUE(std::filesystem::is_empty(dir.GetPath()));
}

TEST_F(SaveRecording, SavingWhileRecordingStopsTheRecordingFirst) {
    engine.StartRecording();
    engine.PlayNoteOn(60, 100);
    rig.RunPlayer();
    EXPECT_TRUE(engine.SaveRecording(Path("take.mid")));
    EXPECT_FALSE(engine.IsRecording());
    const std::string bytes = Bytes("take.mid");
    EXPECT_EQ(bytes.substr(0, 14), std::string("MThd\0\0\0\6\0\0\0\1\x01\xF4", 14));
    EXPECT_EQ(bytes.substr(bytes.size() - 4), std::string("\0\xFF\x2F\0", 4));
}

TEST_F(SaveRecording, AfterAFailedWriteTheTakeIsStillThereToSaveElsewhere) {
    engine.StartRecording();
    engine.PlayNoteOn(60, 100);
    rig.RunPlayer();
    engine.StopRecording();
    EXPECT_FALSE(engine.SaveRecording(Path("no such folder/take.mid")));
    EXPECT_TRUE(engine.SaveRecording(Path("take.mid")));
    EXPECT_FALSE(Bytes("take.mid").empty());
}

TEST_F(SaveRecording, ADiskThatIsFullAtAnyByteLeavesTheOldFileAndTheTake) {
    engine.StartRecording();
    rig.RunPlayer();
    engine.PlayNoteOn(60, 100);
    rig.RunPlayer();
    engine.StopRecording();
    ASSERT_TRUE(engine.SaveRecording(Path("whole.mid")));
    std::ofstream(dir / "take.mid") << "old";
    for (std::size_t room = 0; room < Bytes("whole.mid").size(); ++room) {
        const CFileSizeLimit limit(room);
        ASSERT_FALSE(engine.SaveRecording(Path("take.mid"))) << room;
        ASSERT_EQ(Bytes("take.mid"), "old") << room;
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.GetPath()), {}), 2) << "no temporary file is left";
    EXPECT_TRUE(engine.SaveRecording(Path("take.mid")));
    EXPECT_EQ(Bytes("take.mid"), Bytes("whole.mid"));
}

TEST_F(SaveRecording, AFirstNoteAtTheVeryStartStaysThereAndLaterEventsAreShifted) {
    LibMidi::CaptureStore captured;
    captured.Append({0, {0x90, 1, 60, 100}});
    captured.Append({40, {0x80, 1, 60, 0}});
    EXPECT_THAT(TimesOf(captured), ElementsAre(0, 0, 0, 0, 0, 140, 140));
}

TEST_F(SaveRecording, ANoteOffIsANoteAndSoIsANoteWithVelocityZero) {
    LibMidi::CaptureStore captured;
    captured.Append({500, {0xB0, 1, 1, 100}});
    captured.Append({1000, {0x80, 1, 60, 0}});
    captured.Append({1500, {0x90, 1, 60, 0}});
    EXPECT_THAT(TimesOf(captured), ElementsAre(0, 0, 0, 0, 0, 100, 600, 600));
}

TEST_F(SaveRecording, TheFirstNoteMovesLaterToo) {
    LibMidi::CaptureStore captured;
    captured.Append({10, {0x90, 1, 60, 100}});
    captured.Append({30, {0x80, 1, 60, 0}});
    EXPECT_THAT(TimesOf(captured), ElementsAre(0, 0, 0, 0, 100, 120, 120));
}

TEST_F(SaveRecording, SystemMessagesAreLeftOut) {
    LibMidi::CaptureStore captured;
    captured.Append({0, {0xF0, 0, 0x7E, 0x7F}});
    captured.Append({10, {0xF8, 0, 0, 0}});
    captured.Append({20, {0x90, 1, 60, 100}});
    captured.Append({30, {0xFE, 0, 0, 0}});
    captured.Append({40, {0xFF, 0, 0, 0}});
    const std::vector<CMIDIMessageX> track = TrackOf(captured.GetView());
    ASSERT_EQ(track.size(), 4U + 1U + 1U);
    EXPECT_EQ(track[4].message, (TMIDIMessage{0x90, 1, 60, 100}));
    EXPECT_EQ(track[5].time, 100) << "the last event in the track";
}

TEST_F(SaveRecording, TheFileIsTheGoldenOne) {
    LibMidi::CaptureStore captured;
    captured.Append({0, {0xC0, 1, 0, 0}});
    captured.Append({1, {0xB0, 1, 7, 100}});
    captured.Append({5000, {0x90, 1, 60, 96}});
    captured.Append({5250, {0x80, 1, 60, 0}});
    captured.Append({5250, {0xE0, 2, 0, 72}});
    captured.Append({5600, {0xF8, 0, 0, 0}});
    captured.Append({6000, {0xB0, 1, 64, 127}});
    ASSERT_TRUE(Kivora::SaveRecordedTrack(captured.GetView(), Path("take.mid")));
    const std::string golden = ReadFileBytes(KIVORA_GOLDEN_DIR "/smf/recorded_take.mid");
    ASSERT_FALSE(golden.empty());
    EXPECT_EQ(Bytes("take.mid"), golden);
}
