#include "e2e/player/Action.h"

#include <algorithm>
#include <istream>
#include <iterator>
#include <ostream>
#include <sstream>

namespace Player {

namespace {

struct TName {
    EAct act;
    const char* name;
    std::size_t numberCount;
};

constexpr TName kNames[] = {
    {EAct::kKeyDown, "key-down", 1},
    {EAct::kKeyUp, "key-up", 1},
    {EAct::kMove, "move", 2},
    {EAct::kMoveOver, "move-over", 2},
    {EAct::kButtonDown, "button-down", 1},
    {EAct::kButtonUp, "button-up", 1},
    {EAct::kGroup, "group", 1},
    {EAct::kLayout, "layout", 1},
    {EAct::kMIDI, "midi", 3},
    {EAct::kOverflow, "overflow", 0},
    {EAct::kUnplug, "unplug", 1},
    {EAct::kPlug, "plug", 1},
    {EAct::kFailWrite, "fail-write", 0},
    {EAct::kLeave, "leave", 0},
    {EAct::kReturn, "return", 0},
    {EAct::kGrab, "grab", 0},
    {EAct::kUngrab, "ungrab", 0},
    {EAct::kSong, "song", 0},
    {EAct::kFile, "file", 1},
    {EAct::kMeet, "meet", 0},
    {EAct::kRounds, "rounds", 1},
    {EAct::kRest, "rest", 0},
    {EAct::kHome, "home", 0},
    {EAct::kProve, "prove", 1},
    {EAct::kEnd, "end", 1},
};

}  // namespace

std::string ToText(const TAction& action) {
    const auto* const found =
        std::find_if(std::begin(kNames), std::end(kNames), [&](const TName& name) { return name.act == action.act; });
    std::string text = found->name;
    for (std::size_t i = 0; i < found->numberCount; ++i) {
        text += " " + std::to_string(action.numbers[i]);
    }
    return text;
}

std::optional<TAction> ToAction(std::string_view line) {
    std::istringstream words{std::string(line)};
    std::string word;
    words >> word;
    const auto* const found =
        std::find_if(std::begin(kNames), std::end(kNames), [&](const TName& name) { return name.name == word; });
    if (found == std::end(kNames)) {
        return std::nullopt;
    }
    TAction action{found->act, {}};
    for (std::size_t i = 0; i < found->numberCount; ++i) {
        if (!(words >> action.numbers[i])) {
            return std::nullopt;
        }
    }
    return action;
}

CActions ReadActions(std::istream& lines) {
    CActions actions;
    for (std::string line; std::getline(lines, line);) {
        if (const std::optional<TAction> action = ToAction(line)) {
            actions.push_back(*action);
        }
    }
    return actions;
}

std::ostream& operator<<(std::ostream& out, const TAction& action) {
    return out << ToText(action);
}

}  // namespace Player
