#include "libmidi/synth/SynthDriverTrials.h"

#include "libmidi/synth/Synthesizer.h"
#include "libmidi/synth/SynthSession.h"
#include "nk/nk_thread_role.h"

namespace LibMidi {

SynthDriverTrials Synthesizer::TryDrivers(const std::function<void()>& listen) {
    NK_ASSERT_THREAD_ROLE(gui);
    EndSession(testSession_);
    const std::string active = activeDriver_;
    const bool isForced = !GetForcedDriver(settings_).empty();
    SynthDriverTrials trials;
    for (const std::string& driver : GetCandidates()) {
        SynthReason reason;
        if (session_ != nullptr && driver == active) {
            reason = session_->GetReason();
            if (reason.IsEmpty()) {
                session_->PlayTestNote(false);
                listen();
            }
        } else if (std::unique_ptr<SynthSession> session = TryDriver(driver, isForced, reason)) {
            session->PlayTestNote(false);
            listen();
            EndSession(session);
        }
        trials.push_back({driver, reason.ToText()});
    }
    activeDriver_ = active;
    return trials;
}

}  // namespace LibMidi
