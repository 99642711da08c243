#include "libmidi/synth/SynthErrors.h"

#include <string_view>
#include <utility>

#include "nk/nk_translation_mark.h"

namespace LibMidi {

namespace {

SynthReason WithDetail(const SynthReason& reason, std::string_view detail) {
    return detail.empty() ? reason
                          : reason + SynthReason::AsItIs(L" (" + NK::CString::FromUtf8(std::string(detail)) + L")");
}

}  // namespace

SynthReason ExplainSynthError(const std::string& message, const SynthReason& otherwise) {
    constexpr std::string_view kSystemReason = "error: ";
    const std::pair<std::string_view, SynthReason> meanings[] = {
        {"PulseAudio connection",
         SynthReason(KIVORA_TR_NOOP("Synthesizer", "The sound server does not run or refuses the connection."))},
        {"Jack server", SynthReason(KIVORA_TR_NOOP("Synthesizer", "No JACK server runs."))},
        {"used by another application",
         SynthReason(KIVORA_TR_NOOP("Synthesizer", "The sound card is used by another program."))},
        {"Failed to open the \"", SynthReason(KIVORA_TR_NOOP("Synthesizer", "The sound card cannot be opened."))},
        {"alsa-audio thread", SynthReason(KIVORA_TR_NOOP("Synthesizer", "The audio driver does not start."))},
    };
    for (const auto& [part, meaning] : meanings) {
        if (message.find(part) != std::string::npos) {
            const std::size_t reason = message.find(kSystemReason);
            return WithDetail(meaning, reason == std::string::npos
                                           ? std::string_view()
                                           : std::string_view(message).substr(reason + kSystemReason.size()));
        }
    }
    return WithDetail(otherwise, message);
}

}  // namespace LibMidi
