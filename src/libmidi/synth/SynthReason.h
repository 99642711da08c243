// Why something does not sound.
#pragma once

#include <vector>

#include "nk/nk_string.h"

namespace LibMidi {

/// Words that are put into the user's language when they are told, which may be another one than when they were found.
/// Empty where there is nothing to tell. [any]
class SynthReason {
public:
    SynthReason() = default;
    /// A text of the catalogue's context "Synthesizer" (KIVORA_TR_NOOP), which outlives the reason.
    explicit SynthReason(const char* source);
    /// Words of others, and names, which are told as they are.
    static SynthReason AsItIs(const NK::CString& text);

    bool IsEmpty() const { return parts_.empty(); }
    NK::CString ToText() const;
    SynthReason& operator+=(const SynthReason& more);
    friend SynthReason operator+(SynthReason reason, const SynthReason& more) { return reason += more; }

private:
    struct Part {
        const char* source;  ///< null: the text as it is
        NK::CString text;
    };

    std::vector<Part> parts_;
};

}  // namespace LibMidi
