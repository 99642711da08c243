#include "engine/CKivora.h"

#include <utility>

#include "engine/ClickOutput.h"
#include "engine/EngineExtras.h"
#include "engine/EngineFailure.h"
#include "engine/SongPlayback.h"
#include "nk/nk_steady_clock.h"
#include "nk/nk_thread_role.h"

namespace Kivora {

namespace {
/// Until settings are loaded.
Settings GetFirstSettings() {
    Settings settings;
    settings.uiColor = {192, 192, 192};
    settings.uiDisplayColor = {200, 200, 255};
    settings.uiDisplay2Color = {200, 255, 200};
    return settings;
}
}  // namespace

CKivora::CKivora(EngineDependencies dependencies)
    : dependencies_(std::move(dependencies)),
      settings_(GetFirstSettings()),
      timeSource_(&NK::GetSteadyNowNs),
      extras_(std::make_unique<EngineExtras>()) {
    if (dependencies_.runTickTimer) {
        tickTimer_.emplace(this, 0, kTickPeriodMs, false, NK::CThread::kLevelTimeCritical);
        tickTimer_->SetName(L"tick");
    }
    extras_->song.SetShow([this](NK::MIDI::TMIDIMessage message) { Show(message); });
    InitMidi();
    connect(&indicatorTimer_, &QTimer::timeout, this, &CKivora::onMetronomeTimer);
    SetUIColor(GetDefaultUIColor());
    RestartClock();
    const Hold hold(*this);
    hasBegun_ = true;
}

CKivora::~CKivora() {
    NK_ASSERT_THREAD_ROLE(gui);
    {
        const Hold hold(*this);
        closed_ = true;
    }
    ShutdownMidi();
    tickTimer_.reset();  // a tick in progress needs the members
}

void CKivora::BeginHold() {
    if (++holds_ == 1 && sink_) {
        sink_->HoldBack();
    }
}

void CKivora::EndHold() {
    if (holds_ == 1) {
        ParkOrRunTicks();
        if (sink_) {
            sink_->LetGo();
        }
    }
    --holds_;
    lock_.Unlock();
}

void CKivora::Fail(const char* source, const QString& name) {
    throw EngineFailure(source, name);
}

}  // namespace Kivora
