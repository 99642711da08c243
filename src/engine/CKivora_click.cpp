// The metronome that is heard.
#include <utility>

#include "engine/CKivora.h"
#include "engine/ClickOutput.h"
#include "engine/EngineExtras.h"
#include "nk/nk_thread_role.h"

namespace Kivora {

namespace {
/// The port of the built-in synthesizer, as it is listed.
constexpr const wchar_t* kSynthPort = L"Software synthesizer";
}  // namespace

ClickSettings CKivora::GetClick() const {
    const CLockGuard guard(lock_);
    return extras_->click.GetSettings();
}

void CKivora::SetClick(const ClickSettings& settings) {
    NK_ASSERT_THREAD_ROLE(gui);
    {
        const Hold hold(*this);
        StoreClick(settings);
    }
    emit MetronomeChanged();
    LookAtClick();
}

void CKivora::StoreClick(const ClickSettings& settings) {
    extras_->click.SetSettings(settings);
    if (clock_.SetBeatsPerBar(settings.beatsPerBar)) {
        RestartClock();
    }
}

std::optional<int> CKivora::Tap() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    return extras_->tap.Tap(dependencies_.wallClockMs());
}

void CKivora::BeginCountIn() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    if (extras_->click.GetSettings().countInBars > 0) {
        RestartClock();
        extras_->click.BeginCountIn(clock_.Get());
    }
}

int CKivora::GetCountIn() const {
    const CLockGuard guard(lock_);
    return extras_->click.GetCountIn(clock_.Get());
}

LibMidi::MIDIPlayerQueue* CKivora::GetClickQueue() {
    const bool isOnSink = extras_->click.GetSettings().sound == ClickSettings::Sound::kOutput ||
                          (output_.GetPort() != nullptr && output_.GetPort()->GetName() == kSynthPort);
    if (isOnSink) {
        return sink_.get();
    }
    return clickOutput_ ? clickOutput_->GetQueue() : nullptr;
}

LibMidi::MIDIOutPort* CKivora::FindClickPort() {
    LibMidi::MIDIOutPort* const port = ports_.FindOutput(kSynthPort);
    return port != FindWantedOutput() ? port : nullptr;
}

void CKivora::LookAtClick() {
    NK_ASSERT_THREAD_ROLE(gui);
    std::unique_ptr<ClickOutput> former;  // goes without the lock, as it waits for its device
    LibMidi::MIDIOutPort* port = nullptr;
    bool isWanted = false;
    bool plays = false;
    {
        const Hold hold(*this);
        std::unique_ptr<ClickOutput>& output = clickOutput_;
        port = FindClickPort();
        isWanted = extras_->click.GetSettings().sound == ClickSettings::Sound::kSynth;
        if (output && (!isWanted || &output->GetPort() != port)) {
            former = std::exchange(output, nullptr);
        }
        plays = output && !output->HasFailed();
    }
    former.reset();
    if (port == nullptr) {
        return;
    }
    if (!isWanted) {
        port->Close();  // nobody is to play through it: what was kept ready for that goes
        return;
    }
    // Without the lock: what these take is the system's matter, and only this thread opens and closes ports.
    const LibMidi::DeviceState state = port->LookAtDevice();
    const bool isThere = state == LibMidi::DeviceState::kWorks || state == LibMidi::DeviceState::kBack;
    if (!isThere || (plays && state == LibMidi::DeviceState::kWorks)) {
        return;
    }
    {
        const Hold hold(*this);
        former = std::move(clickOutput_);
    }
    former.reset();
    std::unique_ptr<ClickOutput> opened = ClickOutput::Open(*port, dependencies_.createPlayer(), timeSource_);
    const Hold hold(*this);
    clickOutput_ = std::move(opened);
}

void CKivora::CloseClickOn(const LibMidi::MIDIOutPort* port) {
    if (clickOutput_ && &clickOutput_->GetPort() == port) {
        clickOutput_.reset();
    }
}

}  // namespace Kivora
