#include <gtest/gtest.h>

#include <vector>

#include "piano/CKeyboardStateBase.h"
#include "piano/CKeyboardStatePoll.h"

using namespace NK;
using namespace NK::Piano;
using NK::MIDI::TMIDIMessage;

namespace {

std::vector<int> Pressed(const CKeyboardStateBase& state) {
    std::vector<int> notes;
    for (std::uint8_t note = 0; note < CKeyboardStateBase::kNotes; ++note) {
        if (state.IsPressed(note)) {
            notes.push_back(note);
        }
    }
    return notes;
}

using Notes = std::vector<int>;

/// A state with the notes down and the changed flag cleared.
template <class State>
State WithKeys(std::initializer_list<std::uint8_t> notes) {
    State state;
    for (const std::uint8_t note : notes) {
        state.PressKey(note);
    }
    state.ResetChanged();
    return state;
}

template <class Action>
void ExpectInvalidNote(Action action) {
    try {
        action();
        FAIL() << "nothing thrown";
    } catch (const CException& e) {
        EXPECT_STREQ(e.GetMessage(), L"Invalid note number.");
    }
}

class CLoggingState : public CKeyboardStateBase {
public:
    std::vector<std::string> calls;
    bool ReleaseAll() override {
        calls.emplace_back("release all");
        return true;
    }
    void PressKey(std::uint8_t note) override { calls.push_back("press " + std::to_string(note)); }
    void ReleaseKey(std::uint8_t note) override { calls.push_back("release " + std::to_string(note)); }
};

}  // namespace

TEST(CKeyboardStateBase, AFreshStateIsUpAndReportsAChangeOnce) {
    CKeyboardStateBase state;
    EXPECT_EQ(Pressed(state), Notes{});
    EXPECT_TRUE(state.IsChanged());
    state.ResetChanged();
    EXPECT_FALSE(state.IsChanged());
}

TEST(CKeyboardStateBase, PressingAndReleasingChange) {
    auto state = WithKeys<CKeyboardStateBase>({});
    state.PressKey(0);
    EXPECT_TRUE(state.IsChanged());
    state.PressKey(127);
    EXPECT_EQ(Pressed(state), (Notes{0, 127}));
    state.ResetChanged();
    state.ReleaseKey(0);
    EXPECT_TRUE(state.IsChanged());
    EXPECT_EQ(Pressed(state), Notes{127});
}

TEST(CKeyboardStateBase, PressingADownKeyDoesNotChange) {
    auto state = WithKeys<CKeyboardStateBase>({60});
    state.PressKey(60);
    EXPECT_FALSE(state.IsChanged());
}

TEST(CKeyboardStateBase, ReleasingAnUpKeyDoesNotChange) {
    auto state = WithKeys<CKeyboardStateBase>({60});
    state.ReleaseKey(61);
    EXPECT_FALSE(state.IsChanged());
}

TEST(CKeyboardStateBase, ReleaseAllOnAnAllUpStateLeavesTheFlag) {
    auto state = WithKeys<CKeyboardStateBase>({});
    EXPECT_FALSE(state.ReleaseAll());
    EXPECT_FALSE(state.IsChanged());
    CKeyboardStateBase fresh;
    EXPECT_FALSE(fresh.ReleaseAll());
    EXPECT_TRUE(fresh.IsChanged());
}

TEST(CKeyboardStateBase, ReleaseAllWithOneKeyDownSetsTheFlag) {
    auto state = WithKeys<CKeyboardStateBase>({127});
    EXPECT_TRUE(state.ReleaseAll());
    EXPECT_TRUE(state.IsChanged());
    EXPECT_EQ(Pressed(state), Notes{});
}

TEST(CKeyboardStateBase, ANoteAbove127ThrowsAndChangesNothing) {
    auto state = WithKeys<CKeyboardStateBase>({60});
    ExpectInvalidNote([&] { state.PressKey(128); });
    ExpectInvalidNote([&] { state.ReleaseKey(255); });
    ExpectInvalidNote([&] { state.ProcessMessage({0x90, 1, 200, 1}); });
    EXPECT_EQ(Pressed(state), Notes{60});
    EXPECT_FALSE(state.IsChanged());
}

TEST(CKeyboardStateBase, MessagesPressAndRelease) {
    auto state = WithKeys<CKeyboardStateBase>({});
    state.ProcessMessage({0x90, 5, 60, 1});
    state.ProcessMessage({0x90, 5, 64, 127});
    state.ProcessMessage({0x90, 9, 67, 90});
    EXPECT_EQ(Pressed(state), (Notes{60, 64, 67}));
    state.ProcessMessage({0x90, 5, 60, 0});
    EXPECT_EQ(Pressed(state), (Notes{64, 67}));
    state.ProcessMessage({0x80, 1, 64, 99});
    EXPECT_EQ(Pressed(state), Notes{67});
}

TEST(CKeyboardStateBase, OtherMessagesLeaveTheStateAlone) {
    auto state = WithKeys<CKeyboardStateBase>({60});
    for (const int number : {0x00, 0xA0, 0xB0, 0xC0, 0xD0, 0xE0, 0xF0, 0xF8, 0xFE}) {
        const auto status = static_cast<std::uint8_t>(number);
        state.ProcessMessage({status, 1, 60, 0});
        state.ProcessMessage({status, 1, 123, 100});
    }
    EXPECT_EQ(Pressed(state), Notes{60});
    EXPECT_FALSE(state.IsChanged());
}

TEST(CKeyboardStateBase, SystemResetReleasesEveryKey) {
    auto state = WithKeys<CKeyboardStateBase>({0, 60, 127});
    state.ProcessMessage({0xFF, 0, 0, 0});
    EXPECT_EQ(Pressed(state), Notes{});
    EXPECT_TRUE(state.IsChanged());
}

TEST(CKeyboardStateBase, MessagesGoThroughTheOverrides) {
    CLoggingState state;
    state.ProcessMessage({0x90, 1, 60, 1});
    state.ProcessMessage({0x90, 1, 61, 0});
    state.ProcessMessage({0x80, 1, 200, 1});
    state.ProcessMessage({0xFF, 0, 0, 0});
    EXPECT_EQ(state.calls, (std::vector<std::string>{"press 60", "release 61", "release 200", "release all"}));
}

TEST(CKeyboardStateBase, CopyAndAssignTakeStatesAndFlag) {
    const auto keys = WithKeys<CKeyboardStateBase>({60});
    const CKeyboardStateBase copy = keys;
    EXPECT_TRUE(copy.IsEqual(keys));
    EXPECT_FALSE(copy.IsChanged());
    CKeyboardStateBase assigned;
    assigned.PressKey(1);
    assigned.Assign(keys);
    EXPECT_EQ(Pressed(assigned), Notes{60});
    EXPECT_FALSE(assigned.IsChanged());
}

TEST(CKeyboardStateBase, EqualityIsOfTheStatesAlone) {
    auto a = WithKeys<CKeyboardStateBase>({60});
    CKeyboardStateBase b;
    EXPECT_FALSE(a.IsEqual(b));
    b.PressKey(60);
    EXPECT_NE(a.IsChanged(), b.IsChanged());
    EXPECT_TRUE(a.IsEqual(b));
}

TEST(CKeyboardStateBase, AProvisionalNoteIsNotEqualToADownOne) {
    auto a = WithKeys<CKeyboardStatePoll>({60});
    const CKeyboardStatePoll b = a;
    a.BeginPoll();
    EXPECT_FALSE(a.IsEqual(b));
}

TEST(CKeyboardStateBase, AssignCompareWithoutComparingReturnsTheOthersFlag) {
    CKeyboardStateBase state;
    EXPECT_FALSE(state.AssignCompare(WithKeys<CKeyboardStateBase>({60}), false));
    EXPECT_FALSE(state.IsChanged());
    EXPECT_EQ(Pressed(state), Notes{60});
    EXPECT_TRUE(state.AssignCompare(CKeyboardStateBase(), false));
    EXPECT_TRUE(state.IsChanged());
    EXPECT_EQ(Pressed(state), Notes{});
}

TEST(CKeyboardStateBase, AssignCompareTellsWhetherTheStatesWereEqual) {
    CKeyboardStateBase state;
    EXPECT_FALSE(state.AssignCompare(WithKeys<CKeyboardStateBase>({60}), true));
    EXPECT_TRUE(state.IsChanged());
    EXPECT_EQ(Pressed(state), Notes{60});
    EXPECT_TRUE(state.AssignCompare(WithKeys<CKeyboardStateBase>({60}), true));
    EXPECT_FALSE(state.IsChanged());
}

TEST(CKeyboardStatePoll, AFreshStateIsUpAndChangedAndHasNothingToRelease) {
    CKeyboardStatePoll state;
    EXPECT_TRUE(state.IsChanged());
    state.ResetChanged();
    state.EndPoll();
    EXPECT_FALSE(state.IsChanged());
}

TEST(CKeyboardStatePoll, AProvisionalKeyCountsAsPressedAndPressingItChanges) {
    auto state = WithKeys<CKeyboardStatePoll>({60});
    state.BeginPoll();
    EXPECT_FALSE(state.IsChanged());
    EXPECT_TRUE(state.IsPressed(60));
    state.PressKey(60);
    EXPECT_TRUE(state.IsChanged());
}

TEST(CKeyboardStatePoll, BeginPollClearsTheChangedFlag) {
    CKeyboardStatePoll state;
    state.BeginPoll();
    EXPECT_FALSE(state.IsChanged());
}

TEST(CKeyboardStatePoll, ACycleKeepsWhatIsStillDownAndReleasesTheRest) {
    auto state = WithKeys<CKeyboardStatePoll>({60, 64});
    state.BeginPoll();
    state.PressKey(64);
    state.PressKey(67);
    state.EndPoll();
    EXPECT_EQ(Pressed(state), (Notes{64, 67}));
    EXPECT_TRUE(state.IsChanged());
}

TEST(CKeyboardStatePoll, ACycleWithAKeyThatStaysDownEndsChanged) {
    auto state = WithKeys<CKeyboardStatePoll>({60});
    state.BeginPoll();
    state.PressKey(60);
    state.EndPoll();
    EXPECT_EQ(Pressed(state), Notes{60});
    EXPECT_TRUE(state.IsChanged());
}

TEST(CKeyboardStatePoll, ACycleWithoutReportsReleasesEveryKey) {
    auto state = WithKeys<CKeyboardStatePoll>({0, 60, 127});
    state.BeginPoll();
    state.EndPoll();
    EXPECT_EQ(Pressed(state), Notes{});
    EXPECT_TRUE(state.IsChanged());
}

TEST(CKeyboardStatePoll, AnEmptyCycleChangesNothing) {
    auto state = WithKeys<CKeyboardStatePoll>({});
    state.BeginPoll();
    state.EndPoll();
    EXPECT_FALSE(state.IsChanged());
}

TEST(CKeyboardStatePoll, EndPollWithoutACycleReleasesNothing) {
    auto state = WithKeys<CKeyboardStatePoll>({60});
    state.EndPoll();
    EXPECT_EQ(Pressed(state), Notes{60});
    // Provisional notes that came by comparing copies bring no cycle with them.
    auto source = WithKeys<CKeyboardStatePoll>({62});
    source.BeginPoll();
    state.AssignCompare(source, true);
    state.EndPoll();
    EXPECT_EQ(Pressed(state), Notes{62});
}

TEST(CKeyboardStatePoll, ReleaseAllWithKeysDownEndsTheCycle) {
    auto state = WithKeys<CKeyboardStatePoll>({60});
    state.BeginPoll();
    EXPECT_TRUE(state.ReleaseAll());
    EXPECT_TRUE(state.IsChanged());
    state.ResetChanged();
    state.EndPoll();
    EXPECT_FALSE(state.IsChanged());
}

TEST(CKeyboardStatePoll, ReleaseAllOnAnAllUpStateReturnsTheFlagAndKeepsIt) {
    auto state = WithKeys<CKeyboardStatePoll>({});
    EXPECT_FALSE(state.ReleaseAll());
    EXPECT_FALSE(state.IsChanged());
    CKeyboardStatePoll fresh;
    EXPECT_TRUE(fresh.ReleaseAll());
    EXPECT_TRUE(fresh.IsChanged());
}

TEST(CKeyboardStatePoll, CopyAndAssignTakeTheCycleAlong) {
    auto state = WithKeys<CKeyboardStatePoll>({60});
    state.BeginPoll();
    CKeyboardStatePoll copy = state;
    copy.EndPoll();
    EXPECT_EQ(Pressed(copy), Notes{});
    CKeyboardStatePoll assigned;
    assigned.Assign(state);
    assigned.EndPoll();
    EXPECT_EQ(Pressed(assigned), Notes{});
}
