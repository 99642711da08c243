// What the instrument offers beyond playing by its rules. [owner]
#pragma once

#include <memory>
#include <optional>

#include "engine/BoundControls.h"
#include "engine/Click.h"
#include "engine/HeardInput.h"
#include "engine/PedalHolders.h"
#include "engine/SongPlayback.h"
#include "engine/takes/PlayedGrid.h"
#include "engine/takes/RunningGrid.h"
#include "engine/TapTempo.h"
#include "engine/values/BendRange.h"
#include "engine/values/PatchShelf.h"
#include "engine/values/RecentPresets.h"
#include "engine/values/SteppedPatches.h"
#include "engine/values/VelocityCurve.h"
#include "nk/nk_ini_file.h"

namespace LibMidi {
class PlayedHistory;
}

namespace Kivora {

/// Each part is off, or out of the way, until the player wants it: then nothing is played, sent or saved otherwise than
/// without it. Guarded by the engine's lock, see CKivora::WithExtras(); what a pointer refers to says itself what
/// guards it.
struct EngineExtras {
    EngineExtras();
    ~EngineExtras();

    /// What was played last, from all players of the engine; never null. On, if the settings do not switch it off.
    std::shared_ptr<LibMidi::PlayedHistory> GetPlayed() { return played_; }
    std::shared_ptr<const LibMidi::PlayedHistory> GetPlayed() const { return played_; }
    /// Of the recording that runs, or ran last; never null, and each has its own.
    std::shared_ptr<RunningGrid> GetGrid() { return grid_; }
    std::shared_ptr<const RunningGrid> GetGrid() const { return grid_; }
    void BeginGrid() { grid_ = std::make_shared<RunningGrid>(); }
    bool KeepsPlayed() const;
    void KeepPlayed(bool on);
    /// A voice with that patch begins a note: a patch or preset that was stepped to is used from then on.
    void NotePlayed(int slot, int patch);

    SongPlayback song;  ///< what is played back; its commands stand in EngineControls and SongPlayer

    PlayedGrid playedGrid;    ///< of `played`
    bool savesTempo = false;  ///< whether takes are saved on the grid, where nothing else is chosen

    Click click;  ///< its settings are set by CKivora::SetClick()
    TapTempo tap;
    BoundControls controls;  ///< of the input port
    HeardInput heard;        ///< what they have let pass
    VelocityMap velocity;    ///< of the notes of the input port
    PedalHolders pedal;      ///< of the panel they are set by EngineControls
    PatchShelf patches;
    SteppedPatches stepped;                           ///< by EngineControls
    std::optional<NK::MIDI::TMIDIMessage> heardNote;  ///< of CKivora::HearNote()
    RecentPresets presets;
    BendRange bendRange;           ///< chosen by EngineControls::SetBendRange()
    bool heightIsVelocity = true;  ///< on the screen's piano; else its notes have the normal velocity

    /// From and to sections of their own in the settings file. A section is added, and a key written, where that is not
    /// the default or is there already.
    void ReadSettings(NK::CIniFile& file);
    void WriteSettings(NK::CIniFile& file) const;

private:
    const std::shared_ptr<LibMidi::PlayedHistory> played_;
    std::shared_ptr<RunningGrid> grid_ = std::make_shared<RunningGrid>();
};

}  // namespace Kivora
