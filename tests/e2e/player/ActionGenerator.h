// What random hands do: actions by a seed, over every surface of the instrument.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include "e2e/player/Action.h"

namespace Player {

/// The same seed and length give the same actions, but for compilers that evaluate arguments in another order. It knows
/// what it holds down, and nothing of what the program made of it.
class ActionGenerator {
public:
    enum class EEnd {
        kSomehow,  ///< the last action ends the program, and others may
        kNever     ///< no action quits
    };
    explicit ActionGenerator(std::uint32_t seed, EEnd end = EEnd::kSomehow) : end_(end), random_(seed) {}

    /// At least `count` actions, waits not counted.
    CActions Make(std::size_t count);

private:
    using Phrase = void (ActionGenerator::*)();

    int Below(int end);
    bool Chance(int percent);
    template <class TList>
    auto OneOf(const TList& list);
    void Add(EAct act, int first = 0, int second = 0, int third = 0);
    void Tap(int code);
    void TapWith(int modifier, int code);
    void Click(int button = 1);
    void MaybeMeet();

    void MoveAKey();
    void PlayMIDIKey();
    void MoveAPedal();
    void TurnWheels();
    void ChangeProgram();
    void MoveSpace();
    void MoveAModifier();
    void PlayPianoByMouse();
    void ClickAControl();
    void DragAControl();
    void TurnMouseWheel();
    void PressAShortcut();
    void WorkADialog();
    void PressThroughADialog();
    void TapTheTempo();
    void MoveTheSplit();
    void WorkTheSongPlayer();
    void LearnAControl();
    void SaveWhatWasPlayed();
    void WorkAMenu();
    void Arpeggiate();
    void RecordATake();
    void Disturb();
    void SwitchLayout();
    void PullAPlug();
    void LookForPorts();
    void Strum();
    void Pause();

    EEnd end_;
    std::mt19937 random_;
    CActions actions_;
    std::vector<int> keys_;
    std::vector<std::pair<int, int>> midiKeys_;  ///< channel and note
};

/// How many of them are a player's, neither waits nor looks.
std::size_t CountDeeds(const CActions& actions);

}  // namespace Player
