#include "libmidi/synth/SynthLog.h"

#include <atomic>

#include "nk/nk_logger.h"

namespace LibMidi {

namespace {
thread_local SynthLog* current = nullptr;
std::atomic<std::uint32_t> audioFailures{0};
}  // namespace

SynthLog::SynthLog() noexcept : outer_(current) {
    current = this;
}

SynthLog::~SynthLog() {
    current = outer_;
}

void SynthLog::Write(bool isError, const char* message) {
    if (isError) {
        if (current == nullptr) {
            audioFailures.fetch_add(1, std::memory_order_acq_rel);
        } else if (current->error_.empty()) {
            current->error_ = message;
        }
    }
    if (NK::IsEventLogEnabled()) {
        NK::Log(L"FluidSynth: " + NK::CString::FromUtf8(message));
    }
}

std::uint32_t SynthLog::GetAudioFailures() noexcept {
    return audioFailures.load(std::memory_order_acquire);
}

}  // namespace LibMidi
