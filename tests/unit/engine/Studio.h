// Two synthesizers and two keyboards, as one backend offers them, for whoever plays at random.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <vector>

#include "libmidi/MIDIEvent.h"
#include "libmidi/PortFactory.h"

namespace KivoraTest {

/// The synthesizers are the first two of the engine's outputs; the keyboards are called kKeyboard and kOtherKeyboard.
/// For one thread.
class Studio {
public:
    static constexpr std::size_t kSynths = 2;
    static constexpr std::size_t kKeyboards = 2;

    virtual ~Studio() = default;
    virtual LibMidi::BackendCreator GetCreator() = 0;

    virtual void SetFailsToWrite(std::size_t synth, bool fails) { failsToWrite_[synth] = fails; }
    virtual void SetFailsToOpen(std::size_t synth, bool fails) { failsToOpen_[synth] = fails; }
    bool FailsToWrite(std::size_t synth) const { return failsToWrite_[synth]; }

    /// So many inputs of the engine's list may be chosen, from the first on.
    virtual int CountInputs() const { return 2; }
    /// The numbers of the keyboards that play as that input.
    virtual std::vector<int> GetKeyboards(int input) const { return {input}; }
    /// Is played on one of the keyboards of an input, which is open.
    virtual void Play(int input, int keyboard, const std::vector<LibMidi::MIDIEvent>& events) = 0;
    /// Something that the input's keyboards send is lost.
    virtual void Lose(int input) = 0;
    /// Pulls out all keyboards, with whatever they hold, and plugs them in again; the engine is called in between by
    /// `meanwhile`. False, and nothing is done, where the backend does not tell of it.
    virtual bool Replug(const std::function<void()>& meanwhile) {
        static_cast<void>(meanwhile);
        return false;
    }

    /// What has reached a synthesizer.
    std::function<void(std::size_t synth, const LibMidi::MIDIEvent& event)> onWrite;

protected:
    bool FailsToOpen(std::size_t synth) const { return failsToOpen_[synth]; }

private:
    std::array<bool, kSynths> failsToWrite_{};
    std::array<bool, kSynths> failsToOpen_{};
};

}  // namespace KivoraTest
