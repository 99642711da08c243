#include "libmidi/synth/SynthReasons.h"

#include <string_view>

#include "midi/TranslationMark.h"
#include "nk/nk_translate.h"

namespace LibMidi {

namespace {

struct Meaning {
    std::string_view part;  ///< of FluidSynth's message
    const char* text;
};

constexpr Meaning kMeanings[] = {
    {"PulseAudio connection",
     KIVORA_TR_NOOP("Synthesizer", "The sound server does not run or refuses the connection.")},
    {"Jack server", KIVORA_TR_NOOP("Synthesizer", "No JACK server runs.")},
    {"used by another application", KIVORA_TR_NOOP("Synthesizer", "The sound card is used by another program.")},
    {"Failed to open the \"", KIVORA_TR_NOOP("Synthesizer", "The sound card cannot be opened.")},
    {"alsa-audio thread", KIVORA_TR_NOOP("Synthesizer", "The audio driver does not start.")},
};

NK::CString WithDetail(const NK::CString& text, std::string_view detail) {
    return detail.empty() ? text : text + L" (" + NK::CString::FromUtf8(std::string(detail)) + L")";
}

}  // namespace

NK::CString ExplainSynthError(const std::string& message, const NK::CString& otherwise) {
    constexpr std::string_view kSystemReason = "error: ";
    for (const Meaning& meaning : kMeanings) {
        if (message.find(meaning.part) != std::string::npos) {
            const std::size_t reason = message.find(kSystemReason);
            return WithDetail(NK::Translate("Synthesizer", meaning.text),
                              reason == std::string::npos
                                  ? std::string_view()
                                  : std::string_view(message).substr(reason + kSystemReason.size()));
        }
    }
    return WithDetail(otherwise, message);
}

}  // namespace LibMidi
