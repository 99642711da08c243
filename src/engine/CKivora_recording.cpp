// The capture of what is played.
#include "engine/CKivora.h"
#include "engine/EngineExtras.h"
#include "engine/takes/RecordedTrack.h"
#include "nk/nk_thread_role.h"

namespace Kivora {

bool CKivora::StartRecording() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    if (!sink_ || sink_->IsCapturing()) {
        return false;
    }
    ResetSynth();
    SleepAndPlayOut(100);
    sink_->StartCapture();
    AdvanceClock();
    extras_->BeginGrid();
    extras_->GetGrid()->Add(0, clock_.Get(), false);
    SendPatches();
    SendVolumes();
    emit RecordingStateChanged();
    return true;
}

bool CKivora::StopRecording() {
    NK_ASSERT_THREAD_ROLE(gui);
    const Hold hold(*this);
    if (!sink_ || !sink_->IsCapturing()) {
        return false;
    }
    extras_->click.EndCountIn();
    sink_->StopCapture();
    SleepAndPlayOut(100);
    emit RecordingStateChanged();
    return true;
}

bool CKivora::IsRecording() const {
    const CLockGuard guard(lock_);
    return sink_ && sink_->IsCapturing();
}

int CKivora::GetRecordingTime() const {
    const CLockGuard guard(lock_);
    return sink_ ? static_cast<int>(sink_->GetCaptureTimeMs()) : 0;
}

int CKivora::GetIdleTime() const {
    const CLockGuard guard(lock_);
    return sink_ ? sink_->GetIdleTimeMs() : -1;
}

int CKivora::GetRecordedCount() const {
    const CLockGuard guard(lock_);
    return sink_ ? static_cast<int>(sink_->GetCapturedCount()) : 0;
}

std::shared_ptr<const LibMidi::MIDIPlayerQueue> CKivora::GetCapture() const {
    const CLockGuard guard(lock_);
    return sink_;
}

bool CKivora::SaveRecording(const NK::CString& path) {
    NK_ASSERT_THREAD_ROLE(gui);
    LibMidi::CaptureStore::View captured;
    {
        const Hold hold(*this);
        if (!sink_ || (sink_->IsCapturing() && !StopRecording())) {
            return false;
        }
        captured = sink_->GetCaptured();
    }
    if (!SaveRecordedTrack(captured, path)) {
        return false;
    }
    emit RecordingSaved();
    return true;
}

}  // namespace Kivora
