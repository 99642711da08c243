#include "piano/CPCKeyPlayer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "piano/PCKeyPlaces.h"
#include "piano/PCKeyTable.h"

namespace {
using NK::Piano::CPCKeyPlayer;
using NK::Piano::EVelocityLevel;
using NK::Piano::TPCKey;
using NK::Piano::TPCKeyAction;
using EKind = TPCKeyAction::EKind;
using CActions = CPCKeyPlayer::CActions;

constexpr std::uint32_t kScanZ = 52;
constexpr std::uint32_t kScan2 = 11;
constexpr std::uint32_t kScanQ = 24;
constexpr std::uint32_t kScanSpace = 65;

TPCKeyAction On(std::uint8_t note, EVelocityLevel level = EVelocityLevel::kNormal) {
    return {EKind::kNoteOn, note, level};
}
TPCKeyAction Off(std::uint8_t note) {
    return {EKind::kNoteOff, note};
}

class CPCKeyPlayerTest : public testing::Test {
protected:
    TPCKey Key(int code, std::uint32_t scanCode = 0) {
        TPCKey key;
        key.code = code;
        key.scanCode = scanCode;
        key.timeMs = scanCode != 0 ? ++now_ : 0;
        return key;
    }
    /// Found by its place, whatever it types.
    TPCKey At(char place, std::uint32_t scanCode, int code = 0x3B2) {
        TPCKey key = Key(code, scanCode);
        key.place = place;
        return key;
    }
    TPCKey Shifted(int code, std::uint32_t scanCode = 0) {
        TPCKey key = Key(code, scanCode);
        key.shift = true;
        return key;
    }
    TPCKey WithAlt(int code, std::uint32_t scanCode = 0) {
        TPCKey key = Key(code, scanCode);
        key.alt = true;
        return key;
    }

    CActions Press(const TPCKey& key) {
        CActions actions;
        handled_ = player_.Press(key, actions);
        return actions;
    }
    /// The release and what it makes when nothing follows.
    CActions Release(const TPCKey& key) {
        CActions actions;
        handled_ = player_.Release(key, actions);
        player_.Settle(actions);
        return actions;
    }
    CActions ReleaseUnsettled(const TPCKey& key) {
        CActions actions;
        player_.Release(key, actions);
        return actions;
    }
    CActions SetOctaveShift(int semitones) {
        CActions actions;
        player_.SetOctaveShift(semitones, actions);
        return actions;
    }
    CActions ReleaseAll() {
        CActions actions;
        player_.ReleaseAll(actions);
        return actions;
    }

    std::uint64_t now_ = 1000;
    bool handled_ = false;
    CPCKeyPlayer player_{[](int code, bool) { return code; }};
};

TEST_F(CPCKeyPlayerTest, ZPlays60AtNormalWithShiftAtHighWithCtrlAtLow) {
    EXPECT_EQ(Press(Key('Z')), CActions{On(60)});
    EXPECT_TRUE(handled_);
    Release(Key('Z'));
    EXPECT_EQ(Press(Shifted('Z')), CActions{On(60, EVelocityLevel::kHigh)});
    Release(Shifted('Z'));
    TPCKey key = Key('Z');
    key.ctrl = true;
    EXPECT_EQ(Press(key), CActions{On(60, EVelocityLevel::kLow)});
}

TEST_F(CPCKeyPlayerTest, CtrlWinsOverShift) {
    TPCKey key = Shifted('Z');
    key.ctrl = true;
    EXPECT_EQ(Press(key), CActions{On(60, EVelocityLevel::kLow)});
}

TEST_F(CPCKeyPlayerTest, UpperCaseLetterWithoutShiftAsByCapsLockPlaysAtNormal) {
    EXPECT_EQ(Press(Key('Z')), CActions{On(60)});
}

TEST_F(CPCKeyPlayerTest, ShiftedMarkOfTheCharacterDecidesTheHighLevel) {
    EXPECT_EQ(Press(Shifted('@')), CActions{On(73, EVelocityLevel::kHigh)});
    EXPECT_EQ(Press(Shifted('"')), CActions{On(73, EVelocityLevel::kHigh)});
}

TEST_F(CPCKeyPlayerTest, NotesOutsideTheRangeWrapByOctaves) {
    SetOctaveShift(48);
    EXPECT_EQ(Press(Key(']')), CActions{On(127)});
    EXPECT_EQ(Release(Key(']')), CActions{Off(127)});
    SetOctaveShift(-72);
    EXPECT_EQ(Press(Key('Z')), CActions{On(0)});
}

TEST_F(CPCKeyPlayerTest, AltWithTheValueKeysActsEvenOnRepeats) {
    for (const int code : {int{'='}, int{'+'}}) {
        EXPECT_EQ(Press(WithAlt(code)), CActions{{EKind::kPlus}});
    }
    for (const int code : {int{'-'}, int{'_'}}) {
        EXPECT_EQ(Press(WithAlt(code)), CActions{{EKind::kMinus}});
    }
    TPCKey repeat = WithAlt('=');
    repeat.autoRepeat = true;
    EXPECT_EQ(Press(repeat), CActions{{EKind::kPlus}});
    EXPECT_TRUE(handled_);
}

TEST_F(CPCKeyPlayerTest, AltPlusRepeatsByTimeStampPairsToo) {
    EXPECT_EQ(Press(WithAlt('=', 21)), CActions{{EKind::kPlus}});
    TPCKey repeat = WithAlt('=', 21);
    EXPECT_EQ(ReleaseUnsettled(repeat), CActions{});
    EXPECT_EQ(Press(repeat), CActions{{EKind::kPlus}});
}

TEST_F(CPCKeyPlayerTest, WithAltNothingElseActs) {
    for (const int code : {int{'Z'}, TPCKey::kSpace, TPCKey::kEscape, TPCKey::kDelete}) {
        EXPECT_EQ(Press(WithAlt(code)), CActions{});
        EXPECT_FALSE(handled_);
    }
}

TEST_F(CPCKeyPlayerTest, AltHeldAtTheReleaseStillEndsTheNote) {
    Press(Key('Z', kScanZ));
    EXPECT_EQ(Release(WithAlt('Z', kScanZ)), CActions{Off(60)});
    EXPECT_EQ(Release(WithAlt('=', 21)), CActions{}) << "no note began";
}

TEST_F(CPCKeyPlayerTest, HoldingZPlaysItOnceWhenRepeatsAreFlagged) {
    CActions all = Press(Key('Z', kScanZ));
    for (int i = 0; i < 20; ++i) {
        TPCKey repeat = Key('Z', kScanZ);
        repeat.autoRepeat = true;
        for (const CActions& actions : {Release(repeat), Press(repeat)}) {
            all.insert(all.end(), actions.begin(), actions.end());
        }
        EXPECT_TRUE(handled_);
    }
    EXPECT_EQ(all, CActions{On(60)});
    EXPECT_EQ(Release(Key('Z', kScanZ)), CActions{Off(60)});
}

TEST_F(CPCKeyPlayerTest, HoldingZPlaysItOnceWhenRepeatsAreNotFlagged) {
    CActions all = Press(Key('Z', kScanZ));
    for (int i = 0; i < 20; ++i) {
        const TPCKey repeat = Key('Z', kScanZ);
        for (const CActions& actions : {ReleaseUnsettled(repeat), Press(repeat)}) {
            all.insert(all.end(), actions.begin(), actions.end());
        }
        EXPECT_FALSE(player_.IsReleaseWaiting());
    }
    EXPECT_EQ(all, CActions{On(60)});
    EXPECT_EQ(Release(Key('Z', kScanZ)), CActions{Off(60)});
}

TEST_F(CPCKeyPlayerTest, PressesRepeatedWithoutReleasesPlayOnce) {
    EXPECT_EQ(Press(Key('Z', kScanZ)), CActions{On(60)});
    EXPECT_EQ(Press(Key('Z', kScanZ)), CActions{});
    EXPECT_TRUE(handled_);
    EXPECT_EQ(Release(Key('Z', kScanZ)), CActions{Off(60)});
}

TEST_F(CPCKeyPlayerTest, ReleaseWaitsUntilItIsSettled) {
    Press(Key('Z', kScanZ));
    EXPECT_EQ(ReleaseUnsettled(Key('Z', kScanZ)), CActions{});
    EXPECT_TRUE(player_.IsReleaseWaiting());
    CActions actions;
    player_.Settle(actions);
    EXPECT_EQ(actions, CActions{Off(60)});
    EXPECT_FALSE(player_.IsReleaseWaiting());
}

TEST_F(CPCKeyPlayerTest, WaitingReleaseComesBeforeTheNextPressOrRelease) {
    Press(Key('Z', kScanZ));
    Press(Key('Q', kScanQ));
    ReleaseUnsettled(Key('Z', kScanZ));
    EXPECT_EQ(ReleaseUnsettled(Key('Q', kScanQ)), CActions{Off(60)});
    EXPECT_EQ(Press(Key('Q', kScanQ)), (CActions{Off(72), On(72)}));
}

TEST_F(CPCKeyPlayerTest, SpaceIsTheSustainPedal) {
    EXPECT_EQ(Press(Key(TPCKey::kSpace, kScanSpace)), CActions{{EKind::kSustainOn}});
    EXPECT_TRUE(handled_);
    const TPCKey repeat = Key(TPCKey::kSpace, kScanSpace);
    EXPECT_EQ(ReleaseUnsettled(repeat), CActions{});
    EXPECT_EQ(Press(repeat), CActions{});
    EXPECT_EQ(Release(Key(TPCKey::kSpace, kScanSpace)), CActions{{EKind::kSustainOff}});
}

TEST_F(CPCKeyPlayerTest, EscapeAndDeleteArePanic) {
    EXPECT_EQ(Press(Key(TPCKey::kEscape, 9)), CActions{{EKind::kPanic}});
    EXPECT_EQ(Press(Key(TPCKey::kDelete, 119)), CActions{{EKind::kPanic}});
    EXPECT_EQ(Release(Key(TPCKey::kEscape, 9)), CActions{});
    EXPECT_EQ(Press(Key(TPCKey::kEscape, 9)), CActions{{EKind::kPanic}}) << "released, so it acts again";
}

TEST_F(CPCKeyPlayerTest, KeysWithoutAnEntryAreNotHandled) {
    for (const int code : {int{'A'}, int{'1'}, int{'\\'}, 0x0416, 0x01000020, 0}) {
        EXPECT_EQ(Press(Key(code)), CActions{}) << code;
        EXPECT_FALSE(handled_) << code;
        EXPECT_EQ(Release(Key(code)), CActions{}) << code;
        EXPECT_FALSE(handled_) << code;
    }
}

TEST_F(CPCKeyPlayerTest, OctaveShiftEndsHeldNotesFirst) {
    Press(Key('Z', kScanZ));
    Press(Key('Q', kScanQ));
    EXPECT_EQ(SetOctaveShift(12), (CActions{Off(60), Off(72)}));
    EXPECT_EQ(player_.GetOctaveShift(), 12);
    EXPECT_EQ(Release(Key('Z', kScanZ)), CActions{Off(72)}) << "the shift in force at the release decides";
    EXPECT_EQ(SetOctaveShift(12), CActions{}) << "no change";
}

TEST_F(CPCKeyPlayerTest, KeyHeldOverAnOctaveShiftDoesNotSoundAgainWhileItRepeats) {
    Press(Key('Z', kScanZ));
    SetOctaveShift(12);
    const TPCKey repeat = Key('Z', kScanZ);
    EXPECT_EQ(ReleaseUnsettled(repeat), CActions{});
    EXPECT_EQ(Press(repeat), CActions{});
    Release(Key('Z', kScanZ));
    EXPECT_EQ(Press(Key('Z', kScanZ)), CActions{On(72)});
}

TEST_F(CPCKeyPlayerTest, ReleaseThatWaitsGoesByTheOctaveShiftOfItsTime) {
    Press(Key('Z', kScanZ));
    ReleaseUnsettled(Key('Z', kScanZ));
    EXPECT_EQ(SetOctaveShift(12), CActions{Off(60)});
}

TEST_F(CPCKeyPlayerTest, SpaceHeldOverAnOctaveShiftKeepsTheSustain) {
    Press(Key(TPCKey::kSpace, kScanSpace));
    EXPECT_EQ(SetOctaveShift(-12), CActions{});
    EXPECT_EQ(Release(Key(TPCKey::kSpace, kScanSpace)), CActions{{EKind::kSustainOff}});
}

TEST_F(CPCKeyPlayerTest, ReleasingAllEndsNotesAndSustainOnce) {
    Press(Key('Z', kScanZ));
    Press(Key(TPCKey::kSpace, kScanSpace));
    EXPECT_EQ(ReleaseAll(), (CActions{Off(60), {EKind::kSustainOff}}));
    EXPECT_EQ(ReleaseAll(), CActions{});
    EXPECT_EQ(Press(Key('Z', kScanZ)), CActions{On(60)}) << "its release went elsewhere";
}

TEST_F(CPCKeyPlayerTest, ReleaseEndsWhatThePressBeganAndSendsTheRulesOwnNoteOffToo) {
    // One key types "q" when pressed and "w" when released, as after a change of layout.
    Press(Key('Q', kScanQ));
    EXPECT_EQ(Release(Key('W', kScanQ)), (CActions{Off(72), Off(74)}));
}

TEST_F(CPCKeyPlayerTest, ReleaseWithoutAPressSendsTheRulesNoteOff) {
    EXPECT_EQ(Release(Key('Z', kScanZ)), CActions{Off(60)});
}

TEST_F(CPCKeyPlayerTest, KeysWithoutScanCodesAreToldApartByTheirCodes) {
    EXPECT_EQ(Press(Key('Z')), CActions{On(60)});
    EXPECT_EQ(Press(Key('X')), CActions{On(62)});
    EXPECT_EQ(Release(Key('Z')), CActions{Off(60)});
    EXPECT_EQ(Release(Key('X')), CActions{Off(62)});
}

/// All orders in which SHIFT, CTRL, the octave shift and one key can go on and off: whatever the order, every note
/// begun is ended and nothing sounds at the end.
class CPCKeyOrders : public testing::TestWithParam<std::pair<int, int>> {
protected:
    static EVelocityLevel ExpectedLevel(const TPCKey& key) {
        if (key.ctrl) {
            return EVelocityLevel::kLow;
        }
        const bool shifted = NK::Piano::FindPCKeyEntry(key.code, key.shift)->shifted != 0;
        return shifted ? EVelocityLevel::kHigh : EVelocityLevel::kNormal;
    }
};

TEST_P(CPCKeyOrders, NothingIsLeftSounding) {
    const auto [plainCode, shiftedCode] = GetParam();
    // 0, 1: SHIFT down, up. 2, 3: CTRL. 4, 5: octave shift up, back. 6, 7: the key.
    std::vector<int> order = {0, 1, 2, 3, 4, 5, 6, 7};
    int ordersSeen = 0;
    do {
        const auto at = [&](int step) { return std::find(order.begin(), order.end(), step) - order.begin(); };
        if (at(0) > at(1) || at(2) > at(3) || at(4) > at(5) || at(6) > at(7)) {
            continue;
        }
        ++ordersSeen;
        CPCKeyPlayer player([](int code, bool) { return code; });
        CActions actions;
        TPCKey key;
        key.scanCode = kScan2;
        std::string trace;
        for (const int step : order) {
            ++key.timeMs;
            key.code = key.shift ? shiftedCode : plainCode;
            trace += std::to_string(step);
            switch (step) {
                case 0:
                case 1:
                    key.shift = step == 0;
                    break;
                case 2:
                case 3:
                    key.ctrl = step == 2;
                    break;
                case 4:
                case 5:
                    player.SetOctaveShift(step == 4 ? 12 : 0, actions);
                    break;
                case 6:
                    player.Press(key, actions);
                    ASSERT_FALSE(actions.empty());
                    EXPECT_EQ(actions.back().kind, EKind::kNoteOn) << trace;
                    EXPECT_EQ(actions.back().level, ExpectedLevel(key)) << trace;
                    break;
                default:
                    player.Release(key, actions);
                    player.Settle(actions);
                    break;
            }
        }
        std::set<int> sounding;
        int notesOn = 0;
        for (const TPCKeyAction& action : actions) {
            if (action.kind == EKind::kNoteOn) {
                ++notesOn;
                sounding.insert(action.note);
            } else {
                sounding.erase(action.note);
            }
        }
        EXPECT_EQ(notesOn, 1) << trace;
        EXPECT_TRUE(sounding.empty()) << trace;
    } while (std::next_permutation(order.begin(), order.end()));
    EXPECT_EQ(ordersSeen, 2520);
}

INSTANTIATE_TEST_SUITE_P(Keys, CPCKeyOrders,
                         testing::Values(std::pair{'2', '@'}, std::pair{'2', '"'}, std::pair{'Z', 'Z'},
                                         std::pair{',', '<'}, std::pair{'7', '/'}));

TEST_F(CPCKeyPlayerTest, KeysWhoseReleasesWentElsewhereAreEndedAlone) {
    Press(Key('Z', kScanZ));
    Press(Key('Q', kScanQ));
    Press(Key(TPCKey::kSpace, kScanSpace));
    Press(Key('2'));
    CActions actions;
    player_.ReleaseAllBut([](std::uint32_t scanCode) { return scanCode == kScanQ; }, actions);
    EXPECT_EQ(actions, (CActions{Off(60), {EKind::kSustainOff}})) << "a key with an unknown scan code stays";
    actions.clear();
    player_.ReleaseAllBut([](std::uint32_t) { return false; }, actions);
    EXPECT_EQ(actions, CActions{Off(72)});
    EXPECT_EQ(Press(Key('Z', kScanZ)), CActions{On(60)}) << "it was up";
}

TEST_F(CPCKeyPlayerTest, AReleaseThatComesAfterTheKeyWasLetGoEndsNothingMore) {
    Press(Key('Z', kScanZ));
    CActions actions;
    player_.ReleaseAllBut([](std::uint32_t) { return false; }, actions);
    EXPECT_EQ(actions, CActions{Off(60)});
    EXPECT_EQ(Release(Key('Z', kScanZ)), CActions{});
    EXPECT_EQ(Press(Key('Z', kScanZ)), CActions{On(60)});
    EXPECT_EQ(Release(Key('Z', kScanZ)), CActions{Off(60)});
}

TEST_F(CPCKeyPlayerTest, ARepeatOfWhichOneHalfComesAfterTheKeyWasFoundUpPlaysNothing) {
    Press(Key('Z', kScanZ));
    const TPCKey repeat = Key('Z', kScanZ);
    CActions actions;
    player_.Release(repeat, actions);
    player_.SettleUp(actions);
    EXPECT_EQ(actions, CActions{Off(60)}) << "it is up, though the release was a repeat's";
    EXPECT_EQ(Press(repeat), CActions{});
    EXPECT_TRUE(handled_);
    EXPECT_EQ(Release(Key('Z', kScanZ)), CActions{}) << "another key may hold the note by now";
    EXPECT_EQ(Press(Key('Z', kScanZ)), CActions{On(60)});
    EXPECT_EQ(Release(Key('Z', kScanZ)), CActions{Off(60)});
}

TEST_F(CPCKeyPlayerTest, APressWithinTheMillisecondOfItsReleasePlaysWhereTheKeyIsKnownToBeDown) {
    Press(Key('Z', kScanZ));
    const TPCKey struckAgain = Key('Z', kScanZ);
    EXPECT_FALSE(player_.MayBeLateRepeat(struckAgain));
    CActions actions;
    player_.Release(struckAgain, actions);
    EXPECT_FALSE(player_.MayBeLateRepeat(struckAgain)) << "the release waits for it";
    player_.SettleUp(actions);
    EXPECT_EQ(actions, CActions{Off(60)});
    EXPECT_FALSE(player_.MayBeLateRepeat(Key('Z', kScanZ))) << "of another time";
    EXPECT_TRUE(player_.MayBeLateRepeat(struckAgain));
    player_.TakeAsStruck();
    EXPECT_EQ(Press(struckAgain), CActions{On(60)});
    EXPECT_EQ(Release(Key('Z', kScanZ)), CActions{Off(60)});
}

TEST_F(CPCKeyPlayerTest, AKeyThatWasFoundUpPlaysAtItsNextPress) {
    for (int turn = 0; turn < 3; ++turn) {
        EXPECT_EQ(Press(Key('Z', kScanZ)), CActions{On(60)});
        CActions actions;
        player_.Release(Key('Z', kScanZ), actions);
        player_.SettleUp(actions);
        EXPECT_EQ(actions, CActions{Off(60)});
    }
    EXPECT_EQ(Press(Key('Q', kScanQ)), CActions{On(72)});
}

TEST_F(CPCKeyPlayerTest, AReleaseThatComesAfterThePedalWasLetGoLiftsNothingMore) {
    const TPCKey space = Key(TPCKey::kSpace, kScanSpace);
    const CActions down = Press(space);
    CActions actions;
    player_.ReleaseAllBut([](std::uint32_t) { return false; }, actions);
    EXPECT_EQ(actions.size(), 1U);
    EXPECT_EQ(Release(space), CActions{}) << "another pedal may be down by now";
    EXPECT_EQ(Press(space), down);
    EXPECT_EQ(Release(space), actions);
}

TEST_F(CPCKeyPlayerTest, ByPlaceThePlacePlaysAndNotTheCharacter) {
    EXPECT_EQ(Press(At('z', kScanZ, 'Y')), CActions{On(60)});
    EXPECT_EQ(Release(At('z', kScanZ, 'Y')), CActions{Off(60)});
    TPCKey shifted = At('2', kScan2);
    shifted.shift = true;
    EXPECT_EQ(Press(shifted), (CActions{On(73, EVelocityLevel::kHigh)}));
    EXPECT_EQ(Release(At('2', kScan2)), CActions{Off(73)});
    TPCKey soft = At('q', kScanQ);
    soft.ctrl = true;
    EXPECT_EQ(Press(soft), (CActions{On(72, EVelocityLevel::kLow)}));
}

TEST_F(CPCKeyPlayerTest, AReleaseFoundAnotherWayEndsNothingWhereItsNoteHasEnded) {
    EXPECT_EQ(Press(Key('Z', kScanZ)), CActions{On(60)});
    CActions ended;
    player_.SetOctaveShift(12, ended);
    EXPECT_EQ(Release(At('z', kScanZ)), CActions{});
}

TEST_F(CPCKeyPlayerTest, ByPlaceAPlaceWithoutANoteIsLeftToOthersWhateverItTypes) {
    for (const char silent : {'a', 'f', '1', '\'', '`', NK::Piano::kExtraPlace}) {
        for (const bool shift : {false, true}) {
            TPCKey key = At(silent, 94, 'Z');
            key.shift = shift;
            EXPECT_EQ(Press(key), CActions{});
            EXPECT_FALSE(handled_);
            EXPECT_EQ(Release(key), CActions{});
            EXPECT_FALSE(handled_);
        }
    }
}

TEST_F(CPCKeyPlayerTest, ByPlaceSpaceAndEscapeAreTheSame) {
    EXPECT_EQ(Press(Key(TPCKey::kSpace, kScanSpace)), CActions{{EKind::kSustainOn}});
    EXPECT_EQ(Release(Key(TPCKey::kSpace, kScanSpace)), CActions{{EKind::kSustainOff}});
    EXPECT_EQ(Press(Key(TPCKey::kEscape, 9)), CActions{{EKind::kPanic}});
}

TEST_F(CPCKeyPlayerTest, AHeldKeyEndsWhatItBeganWhenTheWayChangesAndNothingElse) {
    Press(At('y', 29, 'Z'));
    Press(At('z', kScanZ, 'Y'));
    // As typed from now on, the two keys change places.
    EXPECT_EQ(Release(Key('Z', 29)), CActions{Off(81)}) << "60 is held by the other one";
    EXPECT_EQ(Release(Key('Y', kScanZ)), CActions{Off(60)});
    Press(Key('Z', 29));
    Press(Key('Y', kScanZ));
    // By place from now on.
    EXPECT_EQ(Release(At('y', 29, 'Z')), CActions{Off(60)});
    EXPECT_EQ(Release(At('z', kScanZ, 'Y')), CActions{Off(81)});
}

TEST_F(CPCKeyPlayerTest, FourKeysHeldOverAChangeOfTheLayoutAreAllEnded) {
    const char places[] = {'z', 'x', 'q', '['};
    const std::uint32_t scanCodes[] = {52, 53, 24, 34};
    const int typed[] = {'W', 'X', 'A', 0x01001252};  // the last a dead key
    std::multiset<std::uint8_t> sounding;
    const auto follow = [&](const CActions& actions) {
        for (const TPCKeyAction& action : actions) {
            if (action.kind == EKind::kNoteOn) {
                sounding.insert(action.note);
            } else {
                sounding.erase(action.note);
            }
        }
    };
    for (const bool startsByPlace : {false, true}) {
        for (int key = 0; key < 4; ++key) {
            follow(Press(startsByPlace ? At(places[key], scanCodes[key], typed[key])
                                       : Key(places[key] >= 'a' ? places[key] - 32 : places[key], scanCodes[key])));
        }
        EXPECT_EQ(sounding.size(), 4U);
        for (int key = 0; key < 4; ++key) {
            follow(
                Release(startsByPlace ? Key(typed[key], scanCodes[key]) : At(places[key], scanCodes[key], typed[key])));
            EXPECT_EQ(sounding.size(), 3U - static_cast<std::size_t>(key));
        }
    }
}

// Twelve keys at random on layouts that change meanwhile: what sounds is what is held, and nothing once all are up.
TEST_F(CPCKeyPlayerTest, HoweverTheLayoutChangesUnderHeldKeysEachEndsWhatItBegan) {
    constexpr char kPlaces[] = "zxcvbnqwerty";
    constexpr std::size_t kKeys = sizeof(kPlaces) - 1;
    std::mt19937 random(20);
    std::array<std::optional<std::uint8_t>, kKeys> begun;
    std::size_t layout = 0;  // by how many keys the letters are moved
    for (int step = 0; step < 20000; ++step) {
        const std::size_t key = random() % kKeys;
        if (random() % 8 == 0) {
            layout = random() % kKeys;
        }
        const int typed = std::toupper(kPlaces[(key + layout) % kKeys]);
        const std::uint32_t scanCode = NK::Piano::GetScanCodeOfPlace(kPlaces[key]);
        // Automatic: the first layout is as typed, all others are by place.
        const TPCKey event = layout == 0 ? Key(typed, scanCode) : At(kPlaces[key], scanCode, typed);
        now_ += 100;
        if (!begun[key]) {
            const CActions actions = Press(event);
            ASSERT_EQ(actions.size(), 1U) << step;
            ASSERT_EQ(actions[0].kind, EKind::kNoteOn) << step;
            begun[key] = actions[0].note;
        } else {
            ASSERT_EQ(Release(event), CActions{Off(*begun[key])}) << step;
            begun[key].reset();
        }
    }
    CActions rest;
    player_.ReleaseAll(rest);
    std::multiset<std::uint8_t> held;
    for (const auto& note : begun) {
        if (note) {
            held.insert(*note);
        }
    }
    for (const TPCKeyAction& action : rest) {
        EXPECT_EQ(held.erase(action.note), 1U);
    }
    EXPECT_TRUE(held.empty());
}

}  // namespace
