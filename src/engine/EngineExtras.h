// What the instrument offers beyond playing by its rules.
#pragma once

#include <functional>
#include <memory>

#include "engine/BoundControls.h"
#include "engine/Click.h"
#include "engine/ClickOutput.h"
#include "engine/HeardInput.h"
#include "engine/PedalHolders.h"
#include "engine/takes/TakeGrid.h"
#include "engine/TapTempo.h"
#include "engine/values/BendRange.h"
#include "engine/values/PatchShelf.h"
#include "engine/values/RecentPresets.h"
#include "engine/values/VelocityCurve.h"
#include "nk/nk_ini_file.h"

namespace LibMidi {
class PlayedHistory;
}

namespace Kivora {

class SongPlayback;

/// Each part is off, or out of the way, until the player wants it: then nothing is played, sent or saved otherwise than
/// without it. Guarded by the engine's lock, see CKivora::WithExtras(); what a pointer refers to says itself what
/// guards it.
struct EngineExtras {
    EngineExtras();
    ~EngineExtras();

    /// What was played last, from all players of the engine; never null. On, if the settings do not switch it off.
    const std::shared_ptr<LibMidi::PlayedHistory> played;
    bool KeepsPlayed() const;
    void KeepPlayed(bool on);

    /// What is played back; never null. Its commands stand in EngineControls and SongPlayer.
    const std::unique_ptr<SongPlayback> song;
    /// Called when it has ended by itself, with the engine's lock held, to send again what the player holds. [tick]
    std::function<void()> onSongEnd;

    TakeGrid grid;            ///< of the recording that runs, or ran last
    bool savesTempo = false;  ///< whether takes are saved on the grid, where nothing else is chosen

    Click click;  ///< its settings are set by CKivora::SetClick()
    /// While the click has the built-in synthesizer to itself, see CKivora::LookAtClick(); null otherwise.
    std::unique_ptr<ClickOutput> clickOutput;
    TapTempo tap;
    BoundControls controls;  ///< of the input port
    HeardInput heard;        ///< what they have let pass
    VelocityMap velocity;    ///< of the notes of the input port
    PedalHolders pedal;      ///< of the panel they are set by EngineControls
    PatchShelf patches;
    RecentPresets presets;
    BendRange bendRange;           ///< chosen by EngineControls::SetBendRange()
    bool heightIsVelocity = true;  ///< on the screen's piano; else its notes have the normal velocity

    /// From and to sections of their own in the settings file. A section is added, and a key written, where that is not
    /// the default or is there already.
    void ReadSettings(NK::CIniFile& file);
    void WriteSettings(NK::CIniFile& file) const;
};

}  // namespace Kivora
