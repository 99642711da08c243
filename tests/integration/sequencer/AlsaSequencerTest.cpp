// The sequencer's backend by itself, on the ALSA sequencer.
#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "integration/sequencer/RequireSequencer.h"
#include "libmidi/alsa/AlsaImpl.h"
#include "support/ChildProcess.h"

namespace {

using namespace LibMidi;
using KivoraTest::CChildProcess;
using KivoraTest::CSequencerClient;
using KivoraTest::WaitUntil;

/// Keeps what it is given, and can be held up.
class Listener : public MIDIPortDataListener {
public:
    void OnMIDIData(const MIDIEvent* events, std::int32_t count) override {
        const std::lock_guard gate(held);
        const std::lock_guard guard(mutex_);
        events_.insert(events_.end(), events, events + count);
        count_ = events_.size();
    }
    void OnMIDIDataLost(std::uint32_t lostCount) override { losses += lostCount; }

    std::size_t GetCount() const { return count_; }
    std::vector<MIDIEvent> GetEvents() const {
        const std::lock_guard guard(mutex_);
        return events_;
    }

    std::mutex held;
    std::atomic<std::uint32_t> losses{0};

private:
    mutable std::mutex mutex_;
    std::vector<MIDIEvent> events_;
    std::atomic<std::size_t> count_{0};
};

class AlsaSequencer : public testing::Test {
protected:
    void SetUp() override {
        KivoraTest::RequireSequencer();
        if (KivoraTest::HasSequencer()) {
            keyboard = std::make_unique<CSequencerClient>("Test synth", "Test keyboard");
            client = std::make_shared<AlsaClient>();
            ports = std::make_unique<AlsaImpl>(client);
        }
    }
    MIDIInPort* OpenInput(const wchar_t* name) {
        MIDIInPort* const port = ports->GetPorts().FindInputByName(name);
        if (port == nullptr || port->Open() != kSuccess) {
            return nullptr;
        }
        port->AddListener(&listener);
        return port;
    }
    void Close(MIDIInPort* port) {
        port->Close();
        port->RemoveListener(&listener);
    }
    std::vector<std::string> ListClients() const {
        std::vector<std::string> names;
        AlsaClient other;
        for (const AlsaListedPort& port : other.ListPorts()) {
            names.push_back(port.client);
        }
        return names;
    }

    std::unique_ptr<CSequencerClient> keyboard;
    std::shared_ptr<AlsaClient> client;
    std::unique_ptr<AlsaImpl> ports;
    Listener listener;
};

}  // namespace

TEST_F(AlsaSequencer, AFloodArrivesWholeAndInOrder) {
    constexpr std::size_t kMessagesASecond = 10000;
    constexpr std::size_t kAhead = 1000;  // the kernel's room is twice that
    const char* const seconds = std::getenv("KIVORA_FLOOD_SECONDS");
    const std::size_t messages = kMessagesASecond * (seconds != nullptr ? std::stoul(seconds) : 2);
    MIDIInPort* const port = OpenInput(L"Test keyboard");
    ASSERT_NE(port, nullptr);
    for (std::size_t sent = 0; sent < messages; sent += kAhead) {
        ASSERT_TRUE(WaitUntil([&] { return listener.GetCount() >= sent; }));
        for (std::size_t i = sent; i < sent + kAhead; ++i) {
            keyboard->Send(static_cast<std::uint8_t>(i >> 7 & 0xF), static_cast<std::uint8_t>(i & 0x7F), 100);
        }
    }
    ASSERT_TRUE(WaitUntil([&] { return listener.GetCount() >= messages; }));
    Close(port);
    const std::vector<MIDIEvent> events = listener.GetEvents();
    ASSERT_EQ(events.size(), messages);
    for (std::size_t i = 0; i < messages; ++i) {
        ASSERT_EQ(events[i].data1, i & 0x7F) << i;
        ASSERT_EQ(events[i].status, 0x90 | (i >> 7 & 0xF)) << i;
    }
    EXPECT_EQ(listener.losses, 0U);
}

TEST_F(AlsaSequencer, WhereTheKernelRunsOutOfRoomTheLossIsToldAndPlayingGoesOn) {
    MIDIInPort* const port = OpenInput(L"Test keyboard");
    ASSERT_NE(port, nullptr);
    {
        const std::lock_guard hold(listener.held);
        for (int i = 0; i < 20000; ++i) {
            keyboard->Send(0, 60, 100);
        }
    }
    EXPECT_TRUE(WaitUntil([&] { return listener.losses >= 1; }));
    EXPECT_EQ(port->GetLostCount(), listener.losses);
    const std::size_t before = listener.GetCount();
    EXPECT_TRUE(WaitUntil([&] {
        keyboard->Send(0, 62, 100);
        return listener.GetCount() > before;
    }));
    Close(port);
}

TEST_F(AlsaSequencer, EachInstanceHasItsNameAndPorts) {
    const std::size_t before = [&] {
        const auto names = ListClients();
        return static_cast<std::size_t>(std::count(names.begin(), names.end(), "Kivora LX"));
    }();
    EXPECT_EQ(before, 2U) << "what sends and what receives";
    auto second = std::make_unique<AlsaClient>();
    EXPECT_THAT(ListClients(), testing::Contains("Kivora LX (2)"));
    second.reset();
    EXPECT_THAT(ListClients(), testing::Not(testing::Contains("Kivora LX (2)")));
}

TEST_F(AlsaSequencer, WhoCutsAllConnectionsDoesNotCutTheOpenDevice) {
    MIDIInPort* const port = OpenInput(L"Test keyboard");
    ASSERT_NE(port, nullptr);
    CChildProcess cut({"aconnect", "-x"});
    cut.Wait();
    keyboard->Send(0, 60, 100);
    EXPECT_TRUE(WaitUntil([&] { return listener.GetCount() >= 1; }));
    EXPECT_EQ(port->LookAtDevice(), DeviceState::kWorks);
    Close(port);
}

TEST_F(AlsaSequencer, ADeviceThatHasGoneRefusesWhatIsWritten) {
    MIDIOutPort* const port = ports->GetPorts().FindOutputByName(L"Test synth");
    ASSERT_NE(port, nullptr);
    ASSERT_EQ(port->Open(), kSuccess);
    const MIDIEvent note(0, 0x90, 60, 100);
    EXPECT_EQ(port->Write(&note, 1), kSuccess);
    EXPECT_TRUE(WaitUntil([&] { return keyboard->GetCount() >= 1; }));
    keyboard.reset();
    EXPECT_EQ(port->Write(&note, 1), kDeviceError);
    EXPECT_EQ(port->LookAtDevice(), DeviceState::kLost);
    port->Close();
}
