// The metronome that is heard.
#include "engine/CKivora.h"
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
        extras_->click.SetSettings(settings);
        if (settings.beatsPerBar != clock_.beatsPerBar) {
            clock_.beatsPerBar = settings.beatsPerBar;
            RestartClock();
        }
        UpdateClickOutput();
    }
    emit MetronomeChanged();
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
        extras_->click.BeginCountIn(clock_);
    }
}

bool CKivora::IsCountingIn() const {
    const CLockGuard guard(lock_);
    return extras_->click.IsCountingIn();
}

LibMidi::MIDIPlayerQueue* CKivora::GetClickQueue() {
    const bool isOnSink = extras_->click.GetSettings().sound == ClickSettings::Sound::kOutput ||
                          (outputPort_ != nullptr && outputPort_->GetName() == kSynthPort);
    return isOnSink ? sink_.get() : extras_->clickOutput.GetQueue();
}

void CKivora::UpdateClickOutput() {
    const bool isWanted = extras_->click.GetSettings().sound == ClickSettings::Sound::kSynth &&
                          (outputPort_ == nullptr || outputPort_->GetName() != kSynthPort);
    if (isWanted == extras_->clickOutput.IsOpen()) {
        return;
    }
    extras_->clickOutput.Close();
    const LibMidi::MIDIPortContainer* const ports = isWanted && factory_ ? factory_->GetPortList() : nullptr;
    if (LibMidi::MIDIOutPort* const port = ports != nullptr ? ports->FindOutputByName(kSynthPort) : nullptr) {
        extras_->clickOutput.Open(*port, dependencies_.createPlayer(), timeSource_);
    }
}

}  // namespace Kivora
