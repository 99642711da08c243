// Where FluidSynth's messages go: into the reasons that are shown, and into the log.
#pragma once

#include <cstdint>
#include <string>

namespace LibMidi {

/// While one lives, the first error that FluidSynth reports on the calling thread is kept, and none of them counts as a
/// failure of an audio thread. They nest; the innermost keeps the text.
class SynthLog {
public:
    SynthLog() noexcept;
    ~SynthLog();
    SynthLog(const SynthLog&) = delete;
    SynthLog& operator=(const SynthLog&) = delete;

    /// The first error so far, the one that those after it follow from; empty if there was none.
    const std::string& GetError() const noexcept { return error_; }

    /// Takes one message (UTF-8). All of them become lines of the log where lines about events are wanted. [any]
    static void Write(bool isError, const char* message);
    /// How many errors came on threads without a SynthLog, which are FluidSynth's audio threads: each of them ends its
    /// thread, so that no more sound comes. [any]
    static std::uint32_t GetAudioFailures() noexcept;

private:
    SynthLog* const outer_;
    std::string error_;
};

}  // namespace LibMidi
