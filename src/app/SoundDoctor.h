// Looks at everything that a note passes on its way to the ear.
#pragma once

#include <functional>
#include <memory>

#include "app/SystemVolume.h"
#include "libmidi/synth/Synthesizer.h"
#include "nk/platform/platform_sequencer.h"
#include "ui/dialogs/SoundFindings.h"

namespace Kivora {

class CKivora;

/// Needs no window. A look takes about a second for each audio system that plays, and opens and closes nothing of what
/// plays already. [gui]
class SoundDoctor {
public:
    /// What is asked of the system; a test answers in its place.
    struct System {
        std::function<SystemVolume()> askVolume;
        std::function<NK::Platform::SequencerAccess()> lookAtSequencer;
        std::function<bool()> hasRealtime;  ///< whether a thread of this process gets real-time scheduling
        std::function<void()> listen;       ///< waits as long as a test note is to be heard
    };

    /// Asks the system itself.
    explicit SoundDoctor(std::shared_ptr<LibMidi::Synthesizer> synthesizer);
    SoundDoctor(std::shared_ptr<LibMidi::Synthesizer> synthesizer, System system);

    /// `engine` is null where none could be created. Plays a short note on each audio system that takes it.
    SoundFindings Look(const CKivora* engine) const;

private:
    void LookAtSynth(SoundFindings& findings) const;
    void LookAtVolume(SoundFindings& findings) const;

    const std::shared_ptr<LibMidi::Synthesizer> synthesizer_;
    const System system_;
};

}  // namespace Kivora
