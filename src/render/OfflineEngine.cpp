#include "render/OfflineEngine.h"

#include <algorithm>

#include "engine/CKivora.h"
#include "engine/EngineControls.h"
#include "libmidi/MIDIOutPortImpl.h"
#include "midi/MIDIControllers.h"
#include "nk/nk_random.h"
#include "render/SteppedPlayer.h"

namespace Kivora {

namespace {

using NK::MIDI::SMFEvent;
using NK::MIDI::TMIDIMessage;

constexpr const wchar_t* kPortName = L"Render";
constexpr std::uint32_t kRandomSeed = 1;
constexpr int kLongestEndMs = 60000;  ///< for what sounds with a duration after the last key is up

/// What is written here has been captured before.
class SilentPort : public LibMidi::MIDIOutPortImpl {
public:
    SilentPort() : MIDIPortImpl(0, kPortName, LibMidi::kOutput) {}
    ~SilentPort() override { SilentPort::Close(); }

protected:
    bool OpenDevice() override { return true; }
    void CloseDevice() override {}
    bool WriteEvent(const LibMidi::MIDIEvent&) override { return true; }
};

class SilentPorts : public LibMidi::MIDIPortsImpl {
public:
    SilentPorts() { ports_.Append(std::make_unique<SilentPort>()); }
    const LibMidi::MIDIPortContainer& GetPorts() const override { return ports_; }
    LibMidi::MIDIInPort* GetDefaultInput() const override { return nullptr; }
    LibMidi::MIDIOutPort* GetDefaultOutput() const override { return nullptr; }

private:
    LibMidi::MIDIPortContainerImpl ports_;
};

/// Whether a message would put another sound or volume in the place of the engine's own.
bool ChoosesSound(TMIDIMessage message) {
    namespace Controller = NK::MIDI::Controller;
    return message.status == TMIDIMessage::kProgramChange ||
           (message.status == TMIDIMessage::kControlChange &&
            (message.data1 == Controller::kBank || message.data1 == Controller::kVolume ||
             message.data1 == Controller::kBankLow));
}

}  // namespace

OfflineEngine::OfflineEngine(const NK::CString& userDataDir, const NK::CString& factoryPresetsDir)
    : clock_(std::make_unique<SteppedClock>()) {
    NK::SeedRandomGenerator(kRandomSeed);
    engine_ = std::make_unique<CKivora>(
        EngineDependencies{.backends = {[] { return std::make_unique<SilentPorts>(); }},
                           .createPlayer = [this] { return std::make_unique<SteppedPlayer>(*clock_); },
                           .userDataDir = userDataDir,
                           .factoryPresetsDir = factoryPresetsDir,
                           .wallClockMs = [this] { return clock_->GetTimeMs(); },
                           .sleeper = *clock_,
                           .runTickTimer = false});
    controls_ = std::make_unique<EngineControls>(*engine_);
    engine_->SetOutputPortByIndex(0);
}

OfflineEngine::~OfflineEngine() = default;

LibMidi::CaptureStore::View OfflineEngine::Play(const NK::MIDI::SMFContent& file) {
    controls_->StartRecording();
    engine_->RestartClock();
    for (const SMFEvent& event : file.events) {
        const std::int64_t ms = event.timeUs / 1000;
        if (ms > kLongestMs) {
            break;
        }
        StepTo(ms);
        if (!ChoosesSound(event.message)) {
            const LibMidi::MIDIEvent played = LibMidi::MIDIEvent::FromMessage(event.message, 0);
            engine_->OnMIDIData(&played, 1);
        }
    }
    StepTo(std::min(file.lengthUs / 1000, kLongestMs));
    engine_->ReleaseInputKeys();
    const std::shared_ptr<const LibMidi::MIDIPlayerQueue> sink = engine_->GetCapture();
    for (int ms = 0; ms < kLongestEndMs && sink->HasWork(); ++ms) {
        StepTo(playedMs_ + 1);
    }
    controls_->FallSilent();
    controls_->StopRecording();
    return sink->GetCaptured();
}

void OfflineEngine::StepTo(std::int64_t ms) {
    for (; playedMs_ < ms; ++playedMs_) {
        clock_->Sleep(1);
        engine_->OnTimer(0);
    }
}

}  // namespace Kivora
