#include "libmidi/synth/SynthReason.h"

#include "nk/nk_translate.h"

namespace LibMidi {

SynthReason::SynthReason(const char* source) : parts_{{source, {}}} {
}

SynthReason SynthReason::AsItIs(const NK::CString& text) {
    SynthReason reason;
    if (!text.IsEmpty()) {
        reason.parts_.push_back({nullptr, text});
    }
    return reason;
}

NK::CString SynthReason::ToText() const {
    NK::CString text;
    for (const Part& part : parts_) {
        text += part.source != nullptr ? NK::Translate("Synthesizer", part.source) : part.text;
    }
    return text;
}

SynthReason& SynthReason::operator+=(const SynthReason& more) {
    parts_.insert(parts_.end(), more.parts_.begin(), more.parts_.end());
    return *this;
}

}  // namespace LibMidi
