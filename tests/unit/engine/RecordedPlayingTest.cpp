// What is captured is what was played: the engine and the real player's rounds on a clock that the test moves.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "libmidi/MIDIPlayerImpl.h"
#include "support/TemporaryFolder.h"
#include "unit/engine/EngineRig.h"

using namespace KivoraTest;
using testing::ElementsAre;
using testing::Ge;
using testing::SizeIs;
using testing::UnorderedElementsAre;

namespace {

/// The player without its threads: the test calls its rounds.
class SteppedPlayer : public LibMidi::MIDIPlayerImpl {
public:
    explicit SteppedPlayer(CVirtualTime& time) : MIDIPlayerImpl(time), time_(time) {}

    void SetTimeSource(NK::CTimeSource*) override { MIDIPlayerImpl::SetTimeSource(&time_); }
    bool Start() override {
        BeginRounds();
        GetSink()->SetAccepting(true);
        running_ = true;
        return true;
    }
    void Stop() override { running_ = false; }
    bool IsRunning() const override { return running_; }

    void RunRound() {
        if (running_) {
            EXPECT_TRUE(RunPlayerRound());
        }
    }

private:
    CVirtualTime& time_;
    bool running_ = false;
};

struct Event {
    std::int64_t time;  ///< ms from the start of the recording
    std::string text;

    bool operator==(const Event&) const = default;
};

void PrintTo(const Event& event, std::ostream* out) {
    *out << event.time << ": " << event.text;
}

class RecordedPlaying : public testing::Test {
protected:
    RecordedPlaying() {
        rig.time.onSleep = [this](std::uint32_t) { RunRound(); };
        Kivora::EngineDependencies dependencies = rig.GetDependencies();
        dependencies.createPlayer = [this] {
            auto made = std::make_unique<SteppedPlayer>(rig.time);
            player = made.get();
            return made;
        };
        engine.emplace(dependencies);
        rig.GetDevice(kSynth).onWrite = [this](const LibMidi::MIDIEvent& event) {
            written.push_back({rig.time.GetTimeMs() - start, ToText(event)});
        };
        engine->SetOutputPortByName(kSynth);
        engine->SetInputPortByName(kKeyboard);
        for (int index = 0; index < Kivora::CKivora::kArpeggiatorCount; ++index) {
            engine->WithArpeggiator(index, [](NK::MIDI::CArpeggiator1& arpeggiator) {
                arpeggiator.SetNoteStep(48, 50);  // a sixteenth: 125 ms at 120 beats per minute
            });
        }
    }

    void RunRound() {
        if (player != nullptr) {
            player->RunRound();
        }
    }
    void Run(int milliseconds) {
        for (int i = 0; i < milliseconds; ++i) {
            rig.time.AdvanceMs(1);
            engine->OnTimer(0);
            RunRound();
        }
    }
    void StartRecording() {
        ASSERT_TRUE(engine->StartRecording());
        start = rig.time.GetTimeMs();
        written.clear();
        RunRound();
        engine->RestartClock();
    }
    /// Stops, and compares what was captured with what had reached the output by then.
    void ExpectCapturedAsWritten() {
        const std::vector<Event> expected = written;
        ASSERT_TRUE(engine->StopRecording());
        std::vector<Event> captured;
        engine->GetCapture()->VisitCaptured(0, [&captured](const LibMidi::CapturedEvent& event) {
            captured.push_back({event.time, ToText(LibMidi::MIDIEvent::FromMessage(event.message, 0))});
        });
        EXPECT_EQ(captured, expected);
    }
    /// The events whose text begins so.
    std::vector<Event> Find(const std::string& begin) const {
        std::vector<Event> found;
        std::copy_if(written.begin(), written.end(), std::back_inserter(found),
                     [&begin](const Event& event) { return event.text.starts_with(begin); });
        return found;
    }
    std::vector<std::string> GetTexts(std::int64_t from) const {
        std::vector<std::string> texts;
        for (const Event& event : written) {
            if (event.time >= from) {
                texts.push_back(event.text);
            }
        }
        return texts;
    }
    FakeInPort& GetKeyboard() { return rig.GetKeyboard(); }

    EngineRig rig;
    SteppedPlayer* player = nullptr;
    std::vector<Event> written;  ///< to the output
    std::int64_t start = 0;
    std::optional<Kivora::CKivora> engine;
};

/// Every step of the pattern lies on the grid of sixteenths, up to half a tick (1.3 ms) before, and its note ends after
/// half the step.
void ExpectOnTheGrid(const std::vector<Event>& ons, const std::vector<Event>& offs) {
    ASSERT_GE(ons.size(), 15U);
    ASSERT_GE(offs.size(), ons.size() - 1);
    for (std::size_t i = 0; i < ons.size(); ++i) {
        const std::int64_t grid = (ons[i].time + 2) / 125 * 125;
        EXPECT_LE(std::abs(ons[i].time - grid), 2) << i;
        if (i > 0) {
            EXPECT_NEAR(static_cast<double>(ons[i].time - ons[i - 1].time), 125, 2) << i;
        }
        if (i < offs.size()) {
            EXPECT_NEAR(static_cast<double>(offs[i].time - ons[i].time), 62, 1) << i;
        }
    }
}

}  // namespace

TEST_F(RecordedPlaying, DualKeysOnBothChannelsTransposedAndScaled) {
    engine->SetDual(true);
    engine->TransposeUp(1);
    for (int i = 0; i < 10; ++i) {
        engine->VolumeDown(1);  // 100 - 30
    }
    StartRecording();
    Run(500);
    engine->PlayNoteOn(60, 100);
    Run(250);
    engine->PlayNoteOff(60);
    Run(50);
    EXPECT_THAT(GetTexts(400), ElementsAre("90 3c 64", "91 3d 46", "80 3c 00", "81 3d 00"));
    ExpectCapturedAsWritten();
}

TEST_F(RecordedPlaying, SplitKeysOnTheChannelsOfTheirVoices) {
    engine->SetSplit(true);
    StartRecording();
    Run(500);
    engine->PlayNoteOn(59, 100);
    Run(10);
    engine->PlayNoteOn(60, 100);
    Run(250);
    engine->PlayNoteOff(59);
    Run(10);
    engine->PlayNoteOff(60);
    Run(50);
    EXPECT_THAT(GetTexts(400), ElementsAre("92 3b 64", "90 3c 64", "82 3b 00", "80 3c 00"));
    ExpectCapturedAsWritten();
}

TEST_F(RecordedPlaying, ArpeggiosOnTheGridAndNotTheKeys) {
    engine->SetArpeggiating(true);
    StartRecording();
    for (const std::uint8_t note : std::initializer_list<std::uint8_t>{60, 64, 67}) {
        engine->PlayNoteOn(note, 100);
    }
    Run(2000);
    for (const std::uint8_t note : std::initializer_list<std::uint8_t>{60, 64, 67}) {
        engine->PlayNoteOff(note);
    }
    Run(300);
    ExpectOnTheGrid(Find("90"), Find("80"));
    EXPECT_THAT(Find("90 3c"), SizeIs(Ge(5)));
    EXPECT_THAT(Find("90 40"), SizeIs(Ge(5)));
    EXPECT_THAT(Find("90 43"), SizeIs(Ge(5)));
    EXPECT_EQ(Find("90").size(), Find("80").size());
    ExpectCapturedAsWritten();
}

TEST_F(RecordedPlaying, ArpeggiosOfBothVoicesInDual) {
    engine->SetArpeggiating(true);
    engine->SetDual(true);
    engine->TransposeUp(1);
    StartRecording();
    engine->PlayNoteOn(60, 100);
    Run(2000);
    ExpectOnTheGrid(Find("90 3c"), Find("80 3c"));
    ExpectOnTheGrid(Find("91 3d"), Find("81 3d"));
    ExpectCapturedAsWritten();
}

TEST_F(RecordedPlaying, ArpeggiosOfBothVoicesInSplit) {
    engine->SetArpeggiating(true);
    engine->SetSplit(true);
    StartRecording();
    engine->PlayNoteOn(40, 100);
    engine->PlayNoteOn(72, 100);
    Run(2000);
    ExpectOnTheGrid(Find("92 28"), Find("82 28"));
    ExpectOnTheGrid(Find("90 48"), Find("80 48"));
    ExpectCapturedAsWritten();
}

TEST_F(RecordedPlaying, AMixedArpeggioAndAKeyPlayedThroughABypassedOne) {
    engine->SetArpeggiating(true);
    engine->SetSplit(true);
    engine->WithArpeggiator(1, [](NK::MIDI::CArpeggiator1& arpeggiator) { arpeggiator.SetBypassed(true); });
    StartRecording();
    engine->PlayNoteOn(40, 100);
    engine->PlayNoteOn(72, 100);
    Run(2000);
    engine->PlayNoteOff(40);
    Run(10);
    EXPECT_THAT(Find("92"), SizeIs(1));
    EXPECT_THAT(Find("82"), SizeIs(1));
    ExpectOnTheGrid(Find("90 48"), Find("80 48"));
    ExpectCapturedAsWritten();
}

TEST_F(RecordedPlaying, PressureBendAndControllersFromOutside) {
    engine->SetDual(true);
    StartRecording();
    Run(500);
    GetKeyboard().Deliver(0x95, 60, 100);
    Run(10);
    GetKeyboard().Deliver(0xA5, 60, 50);
    Run(10);
    GetKeyboard().Deliver(0xD5, 80);
    Run(10);
    GetKeyboard().Deliver(0xE5, 0, 72);
    Run(10);
    GetKeyboard().Deliver(0xB5, 1, 90);
    Run(10);
    GetKeyboard().Deliver(0xC5, 12);
    Run(10);
    GetKeyboard().Deliver(0x95, 60, 0);
    Run(10);
    EXPECT_THAT(GetTexts(400), UnorderedElementsAre("90 3c 64", "91 3c 64", "a0 3c 32", "a1 3c 32", "d0 50", "d1 50",
                                                    "d2 50", "e0 00 48", "e1 00 48", "e2 00 48", "b0 01 5a", "b1 01 5a",
                                                    "b2 01 5a", "c0 0c", "c1 0c", "c2 0c", "80 3c 00", "81 3c 00"));
    ExpectCapturedAsWritten();
}

TEST_F(RecordedPlaying, AWholeTakeIsReadByMidicsvWithEveryTickExact) {
    engine->SetArpeggiating(true);
    engine->SetSplit(true);
    engine->SetDual(true);
    StartRecording();
    Run(5000);
    for (int bar = 0; bar < 3; ++bar) {
        const auto bass = static_cast<std::uint8_t>(36 + bar);
        GetKeyboard().Deliver(0x90, bass, 100);
        engine->PlayPcKey(64, 1);
        engine->PlayPcKey(67, 2);
        for (int i = 0; i < 100; ++i) {
            Run(7);
            GetKeyboard().Deliver(0xE0, static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(64 + i % 60));
            GetKeyboard().Deliver(0xF8, 0);
            Run(7);
            GetKeyboard().Deliver(0xB0, 11, static_cast<std::uint8_t>(i));
            GetKeyboard().Deliver(0xD0, static_cast<std::uint8_t>(i));
        }
        GetKeyboard().Deliver(0x80, bass, 64);
        engine->PlayNoteOff(64);
        engine->PlayNoteOff(67);
        engine->SetSustain(bar % 2 == 0);
        Run(611);
    }
    ASSERT_TRUE(engine->StopRecording());
    const CTemporaryFolder folder;
    const std::string path = folder / "take.mid";
    ASSERT_TRUE(engine->SaveRecording(NK::CString::FromUtf8(path)));

    // From what reached the output, as midicsv prints it.
    const auto firstNote = std::find_if(written.begin(), written.end(), [](const Event& event) {
        return event.text.starts_with('9') || event.text.starts_with('8');
    });
    ASSERT_NE(firstNote, written.end());
    ASSERT_GT(firstNote->time, 5000);
    const std::int64_t shift = 100 - firstNote->time;
    std::vector<std::string> expected;
    std::int64_t tick = 0;
    for (auto event = written.begin(); event != written.end(); ++event) {
        static const std::vector<std::string> kNames{"Note_off_c",  "Note_on_c", "Poly_aftertouch_c",
                                                     "Control_c",   "Program_c", "Channel_aftertouch_c",
                                                     "Pitch_bend_c"};
        std::istringstream text(event->text);
        int status = 0;
        int data1 = 0;
        int data2 = 0;
        text >> std::hex >> status >> data1;
        const bool hasTwo = static_cast<bool>(text >> data2);
        if (status >= 0xF0) {
            continue;
        }
        tick = event < firstNote ? 0 : event->time + shift;
        std::ostringstream line;
        line << "1, " << tick << ", " << kNames[static_cast<std::size_t>((status >> 4) - 8)] << ", " << (status & 15)
             << ", ";
        if (status >> 4 == 0xE) {
            line << data1 + 128 * data2;
        } else if (hasTwo) {
            line << data1 << ", " << data2;
        } else {
            line << data1;
        }
        expected.push_back(line.str());
    }
    expected.push_back("1, " + std::to_string(tick) + ", Control_c, 0, 123, 0");
    expected.push_back("1, " + std::to_string(tick) + ", End_track");

    const std::string textPath = folder / "take.csv";
    ASSERT_EQ(std::system(("midicsv '" + path + "' > '" + textPath + "'").c_str()), 0) << "midicsv is missing";
    std::ifstream csv(textPath);
    std::vector<std::string> read;
    for (std::string line; std::getline(csv, line);) {
        read.push_back(line);
    }
    const std::vector<std::string> head{
        "0, 0, Header, 0, 1, 500",
        "1, 0, Start_track",
        "1, 0, Tempo, 500000",
        R"(1, 0, Text_t, "File created using Kivora LX 1.2")",
        R"(1, 0, Text_t, "https://brennholt.example/kivora/en/")",
        R"(1, 0, Text_t, "Copyright (C) 2010 Brennholt. All rights reserved.")",
        R"(1, 0, Text_t, "https://brennholt.example/kivora/ru/")",
    };
    expected.insert(expected.begin(), head.begin(), head.end());
    expected.emplace_back("0, 0, End_of_file");
    EXPECT_GT(expected.size(), 1000U);
    EXPECT_EQ(read, expected);
}
