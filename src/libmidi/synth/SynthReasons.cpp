#include "libmidi/synth/SynthReasons.h"

#include <string_view>
#include <utility>

#include "nk/nk_translate.h"

namespace LibMidi {

namespace {

NK::CString WithDetail(const NK::CString& text, std::string_view detail) {
    return detail.empty() ? text : text + L" (" + NK::CString::FromUtf8(std::string(detail)) + L")";
}

}  // namespace

NK::CString ExplainSynthError(const std::string& message, const NK::CString& otherwise) {
    constexpr std::string_view kSystemReason = "error: ";
    const std::pair<std::string_view, NK::CString> meanings[] = {
        {"PulseAudio connection",
         NK::Translate("Synthesizer", "The sound server does not run or refuses the connection.")},
        {"Jack server", NK::Translate("Synthesizer", "No JACK server runs.")},
        {"used by another application", NK::Translate("Synthesizer", "The sound card is used by another program.")},
        {"Failed to open the \"", NK::Translate("Synthesizer", "The sound card cannot be opened.")},
        {"alsa-audio thread", NK::Translate("Synthesizer", "The audio driver does not start.")},
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
