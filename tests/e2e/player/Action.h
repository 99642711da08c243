// One deed of a player, as a value that is written down and read back.
#pragma once

#include <array>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Player {

/// With the numbers that each has. Presses of what is down and releases of what is up do nothing, so a list stays
/// playable whatever is left out of it.
enum class EAct {
    kKeyDown,     ///< key code of the X server
    kKeyUp,       ///< key code
    kMove,        ///< the pointer, to x and y in the panel's pixels
    kMoveOver,    ///< the pointer, over what is uppermost: thousandths of its width and height
    kButtonDown,  ///< button of the X server
    kButtonUp,    ///< button
    kGroup,       ///< the active one of the keyboard layouts, from 0
    kLayout,      ///< another set of keyboard layouts, by number
    kMIDI,        ///< a message of the MIDI keyboard: status, data 1, data 2
    kOverflow,    ///< the MIDI keyboard's buffer runs over
    kUnplug,      ///< number of a device
    kPlug,        ///< number of a device
    kFailWrite,   ///< the next write fails
    kLeave,       ///< the keyboard's focus goes to another program
    kReturn,      ///< and comes back
    kGrab,        ///< another program takes all keys, as for a global shortcut
    kUngrab,      ///< and lets them go
    kSong,        ///< a MIDI file is opened from the file manager: the program's player has it
    kFile,        ///< answers a dialog that asks for a file: 0 leaves it, 1 takes what it offers
    kMeet,        ///< until the program has taken what came before
    kRounds,      ///< as many rounds of its input
    kRest,        ///< lets go of everything; nothing may sound after
    kHome,        ///< lets go, and closes every dialog and menu
    kProve,       ///< where nothing is in the way: a key that is held sounds; 0 by mouse, 1 MIDI, 2 computer keys
    kEnd,         ///< the program's end with all that is held: 0 its window is closed, 1 SIGTERM, 2 the X server goes
};

struct TAction {
    EAct act = EAct::kMeet;
    std::array<int, 3> numbers{};

    bool operator==(const TAction&) const = default;
};

using CActions = std::vector<TAction>;

/// "key-down 52"
std::string ToText(const TAction& action);
/// The action that a line of that form tells, or none.
std::optional<TAction> ToAction(std::string_view line);

/// A line each; those that tell nothing, and empty ones, are left out.
CActions ReadActions(std::istream& lines);

std::ostream& operator<<(std::ostream& out, const TAction& action);

}  // namespace Player
