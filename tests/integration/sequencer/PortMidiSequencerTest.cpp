// The PortMidi backend and the player against other programs on the ALSA sequencer.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <mutex>
#include <string>
#include <vector>

#include "integration/sequencer/RequireSequencer.h"
#include "libmidi/MIDIPlayer.h"
#include "libmidi/MIDIPlayerQueue.h"
#include "libmidi/portmidi/PortMIDIImpl.h"
#include "support/ChildProcess.h"
#include "support/Files.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace LibMidi;
using KivoraTest::CChildProcess;
using KivoraTest::ReadFileBytes;
using KivoraTest::WaitUntil;
using testing::HasSubstr;

class Sequencer : public testing::Test {
protected:
    void SetUp() override { KivoraTest::RequireSequencer(); }
    std::string Path(const std::string& name) const { return (dir_ / name).string(); }
    /// A shell line, so that its output goes to a file.
    static std::vector<std::string> Shell(const std::string& line) { return {"sh", "-c", "exec " + line}; }
    static MIDIOutPort* FindOutput(const PortMIDIImpl& ports, const wchar_t* name) {
        return ports.GetPorts().FindOutputByName(NK::CString(name));
    }

private:
    const KivoraTest::CTemporaryFolder dir_;
};

class Listener : public MIDIPortDataListener {
public:
    void OnMIDIData(const MIDIEvent* events, std::int32_t count) override {
        const std::lock_guard guard(mutex_);
        events_.insert(events_.end(), events, events + count);
    }
    std::vector<MIDIEvent> GetEvents() const {
        const std::lock_guard guard(mutex_);
        return events_;
    }

private:
    mutable std::mutex mutex_;
    std::vector<MIDIEvent> events_;
};

}  // namespace

TEST_F(Sequencer, WhatThePlayerPlaysIsSeenByAnotherProgram) {
    const std::string seen = Path("seen");
    CChildProcess dump(Shell("aseqdump >" + seen + " 2>&1"));
    // PortMidi lists what is there when it starts, so it is started until the other program has its port.
    std::unique_ptr<PortMIDIImpl> ports;
    MIDIOutPort* output = nullptr;
    ASSERT_TRUE(WaitUntil([&] {
        ports.reset();
        ports = std::make_unique<PortMIDIImpl>();
        output = FindOutput(*ports, L"aseqdump");
        return output != nullptr;
    }));
    ASSERT_EQ(output->Open(), kSuccess);
    NK::CSysTimeSource clock;
    const std::unique_ptr<MIDIPlayer> player = CreateMIDIPlayer();
    player->SetTimeSource(&clock);
    const int binding = player->AttachOutput(output);
    ASSERT_TRUE(player->Start());
    player->GetSink()->PlayNote(0, 60, 100, 50, 0);
    const auto holds = [&](const char* text) { return ReadFileBytes(seen).find(text) != std::string::npos; };
    // The dump's own output may wait in its buffer until it ends.
    EXPECT_TRUE(WaitUntil([&] { return player->GetSink()->WaitUntilIdle(0); }));
    EXPECT_TRUE(WaitUntil([&] {
        player->GetSink()->PlayNote(0, 61, 1, 1, 0);
        return holds("Note off") || ReadFileBytes(seen).size() > 200;
    }));
    player->Stop();
    player->DetachOutput(binding);
    EXPECT_EQ(output->Close(), kSuccess);
    dump.End();
    const std::string text = ReadFileBytes(seen);
    EXPECT_THAT(text, testing::ContainsRegex("Note on +0, note 60, velocity 100"));
    EXPECT_THAT(text, testing::ContainsRegex("Note off +0, note 60"));
}

TEST_F(Sequencer, AFilePlayedByAnotherProgramReachesTheListener) {
    // Format 0, 96 ticks a quarter note: note 67 on and, a quarter note later, off.
    const std::string file = Path("a.mid");
    std::ofstream(file, std::ios::binary) << std::string(
        "MThd\0\0\0\6\0\0\0\1\0\140MTrk\0\0\0\14\0\220\103\144\140\200"
        "\103\0\0\377\57\0",
        34);
    PortMIDIImpl ports;
    MIDIInPort* input = ports.GetPorts().FindInputByName(NK::CString(L"Midi Through Port-0"));
    ASSERT_NE(input, nullptr);
    Listener listener;
    input->AddListener(&listener);
    ASSERT_EQ(input->Open(), kSuccess);
    CChildProcess play(Shell("aplaymidi -p 'Midi Through' " + file));
    EXPECT_TRUE(WaitUntil([&] { return listener.GetEvents().size() >= 2; }));
    EXPECT_EQ(input->Close(), kSuccess);
    input->RemoveListener(&listener);
    play.End();
    const std::vector<MIDIEvent> events = listener.GetEvents();
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].status, 0x90);
    EXPECT_EQ(events[0].data1, 67);
    EXPECT_EQ(events[0].data2, 100);
    EXPECT_EQ(events[1].status, 0x80);
    EXPECT_EQ(events[1].data1, 67);
}

TEST_F(Sequencer, DevicesAreListedAgainAndAgain) {
    for (int run = 0; run < 5; ++run) {
        const PortMIDIImpl ports;
        EXPECT_NE(FindOutput(ports, L"Midi Through Port-0"), nullptr);
    }
}
