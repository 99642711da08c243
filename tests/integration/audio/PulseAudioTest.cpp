// The built-in synthesizer through a PulseAudio server of the test's own, whose sink is recorded.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>

#include "libmidi/synth/SynthApi.h"
#include "libmidi/synth/SynthOutPort.h"
#include "support/ChildProcess.h"
#include "support/FatalLog.h"
#include "support/Pitch.h"
#include "support/TemporaryFolder.h"
#include "support/TinySoundFont.h"
#include "support/WaitUntil.h"

namespace {

namespace fs = std::filesystem;
using KivoraTest::CChildProcess;
using KivoraTest::CFatalLog;
using KivoraTest::CTemporaryFolder;
using KivoraTest::WaitUntil;
using namespace LibMidi;
using namespace std::chrono_literals;

constexpr double kMiddleC = 261.6256;
constexpr std::uintmax_t kBytesPerSecond = 48000 * 2 * 2;

bool IsInstalled(const std::string& program) {
    return std::system(("command -v " + program + " >/dev/null").c_str()) == 0;
}

std::string ReadOutput(const std::string& command) {
    std::string text;
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
    for (int letter = 0; pipe != nullptr && (letter = std::fgetc(pipe.get())) != EOF;) {
        text += static_cast<char>(letter);
    }
    return text;
}

class PulseAudioTest : public testing::Test {
protected:
    void SetUp() override {
        if (!IsInstalled("pulseaudio") || !IsInstalled("parec") || !IsInstalled("pactl")) {
            GTEST_SKIP() << "PulseAudio's server and its tools are not installed";
        }
        fs::permissions(folder_.GetPath(), fs::perms::owner_all);
        ::setenv("HOME", folder_.GetPath().c_str(), 1);
        ::setenv("XDG_RUNTIME_DIR", folder_.GetPath().c_str(), 1);
        ::setenv("PULSE_SERVER", ("unix:" + socket_.native()).c_str(), 1);
        PrepareAudioEnvironment();
        environment_ = SynthEnvironment::FromProcess();
        if (FindSoundFont(environment_).empty()) {
            KivoraTest::WriteBytes(folder_ / "tiny.sf2", KivoraTest::MakeTinySoundFont());
            environment_.soundFont = folder_ / "tiny.sf2";
        }
        environment_.audioDriver.clear();
        environment_.deviceFolder = folder_.GetPath();
        if (const auto drivers = Synthesizer(SystemSynthApi(), environment_, {}).GetAudioDrivers();
            std::find(drivers.begin(), drivers.end(), NK::CString(L"pulseaudio")) == drivers.end()) {
            GTEST_SKIP() << "this FluidSynth has no PulseAudio driver";
        }
    }
    void StartServer() {
        server_ = std::make_unique<CChildProcess>(std::vector<std::string>{
            "pulseaudio", "-n", "--daemonize=no", "--system=no", "--exit-idle-time=-1", "--use-pid-file=no",
            "--log-level=error", "-L", "module-null-sink sink_name=kivora rate=48000", "-L",
            "module-native-protocol-unix auth-anonymous=1 socket=" + socket_.native()});
        ASSERT_TRUE(WaitUntil([] { return std::system("pactl info >/dev/null 2>&1") == 0; }));
    }
    std::unique_ptr<SynthOutPort> MakePort(const Synthesizer::Limits& limits) {
        synthesizer_ = std::make_shared<Synthesizer>(SystemSynthApi(), environment_, limits);
        return std::make_unique<SynthOutPort>(synthesizer_);
    }

    CTemporaryFolder folder_;
    const fs::path socket_ = folder_ / "native";
    SynthEnvironment environment_;
    const Synthesizer::Limits limits_{.driverStart = 60s, .fontLoad = 60s, .apply = 60s, .close = 60s};
    const NoteEvent note_{0, 0, 60, 100, 0x90};
    std::unique_ptr<CChildProcess> server_;
    std::shared_ptr<Synthesizer> synthesizer_;
};

TEST_F(PulseAudioTest, MiddleCIsHeardUnderTheProgramsName) {
    StartServer();
    const fs::path record = folder_ / "record.raw";
    CChildProcess recorder({"parec", "--device=kivora.monitor", "--format=s16le", "--rate=48000", "--channels=2",
                            "--latency-msec=20", "--raw", record.native()});
    const auto hasRecorded = [&](std::uintmax_t bytes) {
        return WaitUntil([&] {
            std::error_code error;
            const std::uintmax_t size = fs::file_size(record, error);
            return !error && size >= bytes;
        });
    };
    ASSERT_TRUE(hasRecorded(1));

    const auto port = MakePort(limits_);
    ASSERT_EQ(port->Open(), kSuccess);
    EXPECT_EQ(synthesizer_->GetActiveDriver(), "pulseaudio");
    EXPECT_NE(ReadOutput("pactl list sink-inputs").find("application.name = \"Kivora LX\""), std::string::npos);
    ASSERT_EQ(port->Write(&note_, 1), kSuccess);
    ASSERT_TRUE(hasRecorded(fs::file_size(record) + 5 * kBytesPerSecond));
    ASSERT_EQ(port->Close(), kSuccess);
    recorder.End();

    std::ifstream file(record, std::ios::binary);
    std::vector<float> left;
    char frame[4];
    while (file.read(frame, sizeof frame)) {
        const int value = static_cast<unsigned char>(frame[0]) | static_cast<signed char>(frame[1]) * 256;
        left.push_back(static_cast<float>(value) / 32768.0F);
    }
    const std::size_t onset = KivoraTest::FindOnset(left, 0.005F);
    const double pitch = KivoraTest::EstimatePitch(left, onset + 4800, 9600, 48000.0);
    EXPECT_NEAR(KivoraTest::GetCents(pitch, kMiddleC), 0.0, 10.0) << pitch << " Hz, onset at " << onset;
    EXPECT_LT(KivoraTest::GetPeak(left), 0.99F);
}

TEST_F(PulseAudioTest, WithoutAServerTheOpeningGives6AndTheReason) {
    CFatalLog::Instance().Expect(L"pulseaudio: The sound server does not run or refuses the connection.");
    const auto port = MakePort(limits_);
    EXPECT_EQ(port->Open(), kDeviceError);
    EXPECT_GE(port->GetLastError().Find(L"Connection refused"), 0) << port->GetLastError().ToUtf8();
}

TEST_F(PulseAudioTest, AServerThatHangsDoesNotHoldUpTheOpening) {
    CFatalLog::Instance().Expect(L"pulseaudio: The audio system does not answer.");
    StartServer();
    server_->Signal(SIGSTOP);
    auto limits = limits_;
    limits.driverStart = 200ms;
    limits.close = 200ms;
    const auto port = MakePort(limits);
    EXPECT_EQ(port->Open(), kDeviceError);
    EXPECT_EQ(port->Open(), kDeviceError);
    server_->Signal(SIGCONT);
    // The thread that hung comes back and frees what it holds; then the driver can be used again.
    EXPECT_TRUE(WaitUntil([&] { return port->Open() == kSuccess; }));
}

TEST_F(PulseAudioTest, AServerThatEndsFailsTheWriting) {
    StartServer();
    const auto port = MakePort(limits_);
    ASSERT_EQ(port->Open(), kSuccess);
    ASSERT_EQ(port->Write(&note_, 1), kSuccess);
    server_->End(SIGKILL);
    EXPECT_TRUE(WaitUntil([&] { return port->Write(&note_, 1) == kDeviceError; }));
    EXPECT_EQ(port->GetLastError(), L"The audio system has stopped.");
    EXPECT_EQ(port->Close(), kSuccess);
}

TEST_F(PulseAudioTest, AServerThatEndsIsNoticedAndSoundReturnsWithTheNextOne) {
    StartServer();
    const auto port = MakePort(limits_);
    ASSERT_EQ(port->Open(), kSuccess);
    EXPECT_EQ(port->LookAtDevice(), DeviceState::kWorks);
    server_->End(SIGKILL);
    EXPECT_TRUE(WaitUntil([&] { return port->LookAtDevice() == DeviceState::kLost; })) << "with nothing written";
    EXPECT_EQ(port->GetLastError(), L"The audio system has stopped.");
    for (int look = 0; look < 10; ++look) {
        EXPECT_EQ(port->LookAtDevice(), DeviceState::kLost);
    }
    fs::remove(socket_);
    StartServer();
    EXPECT_TRUE(WaitUntil([&] { return port->LookAtDevice() == DeviceState::kBack; }));
    ASSERT_EQ(port->Close(), kSuccess);
    ASSERT_EQ(port->Open(), kSuccess);
    EXPECT_EQ(port->LookAtDevice(), DeviceState::kWorks);
    EXPECT_EQ(port->Write(&note_, 1), kSuccess);
    EXPECT_NE(ReadOutput("pactl list sink-inputs").find("application.name = \"Kivora LX\""), std::string::npos);
    EXPECT_EQ(port->GetLastError(), L"");
}

TEST_F(PulseAudioTest, AServerThatStandsStillIsToldUntilItGoesOn) {
    StartServer();
    auto limits = limits_;
    limits.stall = 1s;
    const auto port = MakePort(limits);
    ASSERT_EQ(port->Open(), kSuccess);
    ASSERT_TRUE(WaitUntil([&] { return port->LookAtDevice() == DeviceState::kWorks; }));
    server_->Signal(SIGSTOP);
    EXPECT_TRUE(WaitUntil([&] { return port->LookAtDevice() == DeviceState::kStalled; }));
    EXPECT_EQ(port->Write(&note_, 1), kSuccess) << "it will be heard";
    server_->Signal(SIGCONT);
    EXPECT_TRUE(WaitUntil([&] { return port->LookAtDevice() == DeviceState::kWorks; }));
}

}  // namespace
