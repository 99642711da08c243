#include "e2e/player/ActionGenerator.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <numeric>

#include "e2e/player/PanelPlaces.h"
#include "e2e/standin/SharedDevices.h"

namespace Player {

namespace {

// Key codes of the X server.
constexpr int kEscape = 9;
constexpr int kMinus = 20;
constexpr int kEquals = 21;
constexpr int kTab = 23;
constexpr int kReturn = 36;
constexpr int kControl = 37;
constexpr int kShift = 50;
constexpr int kAlt = 64;
constexpr int kSpace = 65;
constexpr int kF1 = 67;
constexpr int kF10 = 76;
constexpr int kF11 = 95;
constexpr int kF12 = 96;
constexpr int kUp = 111;
constexpr int kLeft = 113;
constexpr int kRight = 114;
constexpr int kDown = 116;
constexpr int kMenu = 135;
constexpr int kLetterQ = 24;
constexpr int kLetterW = 25;
constexpr int kLetterR = 27;
constexpr int kLetterT = 28;
constexpr int kLetterO = 32;
constexpr int kLetterP = 33;
constexpr int kLetterS = 39;
constexpr int kLetterH = 43;
constexpr int kLetterJ = 44;
constexpr int kLetterL = 46;
constexpr int kLetterN = 57;

constexpr int FunctionKey(int number) {
    return number < 11 ? kF1 + number - 1 : number == 11 ? kF11 : kF12;
}

/// The keys of the four rows, silent ones among them.
constexpr std::array kPlayingKeys = {10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 24, 25, 26, 27,
                                     28, 29, 30, 31, 32, 33, 34, 35, 38, 39, 40, 41, 42, 43, 44, 45,
                                     46, 47, 48, 51, 52, 53, 54, 55, 56, 57, 58, 59, 60, 61, 94};
constexpr std::array kPedals = {64, 64, 66, 69};
constexpr std::array kPedalValues = {0, 0, 1, 40, 63, 64, 100, 127};
constexpr std::array kControllers = {1, 7, 10, 11, 0, 32, 91, 120, 121, 123};
/// The value less, more; the strip of wheels and pedals, the latch, the names of notes, a file's play and pause.
constexpr std::array kWithAlt = {kMinus, kEquals, kLetterW, kLetterL, kLetterN, kLetterP};
/// Of knobs and pads that may be learned; nothing else is played on them.
constexpr int kFirstKnob = 20;
constexpr int kFirstPad = 36;
constexpr int kKnobs = 4;
constexpr std::array kArrows = {kUp, kDown, kLeft, kRight};
constexpr int kMostKeys = 6;
constexpr int kLayoutSets = 4;
constexpr int kGroups = 4;

}  // namespace

int ActionGenerator::Below(int end) {
    return static_cast<int>(random_() % static_cast<std::uint32_t>(end));
}

bool ActionGenerator::Chance(int percent) {
    return Below(100) < percent;
}

template <class TList>
auto ActionGenerator::OneOf(const TList& list) {
    return list[static_cast<std::size_t>(Below(static_cast<int>(std::size(list))))];
}

void ActionGenerator::Add(EAct act, int first, int second, int third) {
    actions_.push_back({act, {first, second, third}});
}

void ActionGenerator::Tap(int code) {
    Add(EAct::kKeyDown, code);
    Add(EAct::kKeyUp, code);
}

void ActionGenerator::TapWith(int modifier, int code) {
    Add(EAct::kKeyDown, modifier);
    Tap(code);
    Add(EAct::kKeyUp, modifier);
}

void ActionGenerator::Click(int button) {
    Add(EAct::kButtonDown, button);
    Add(EAct::kButtonUp, button);
}

void ActionGenerator::MaybeMeet() {
    if (Chance(60)) {
        Add(EAct::kMeet);
    }
}

void ActionGenerator::MoveAKey() {
    const bool releases = !keys_.empty() && Chance(keys_.size() >= kMostKeys ? 100 : 50);
    if (releases) {
        const auto key = keys_.begin() + Below(static_cast<int>(keys_.size()));
        Add(EAct::kKeyUp, *key);
        keys_.erase(key);
    } else {
        const int key = OneOf(kPlayingKeys);
        Add(EAct::kKeyDown, key);
        if (std::find(keys_.begin(), keys_.end(), key) == keys_.end()) {
            keys_.push_back(key);
        }
    }
}

void ActionGenerator::Strum() {
    // Keys of which several play one note, struck and let go as fast as hands can.
    constexpr std::array kSharing = {59, 24, 46, 11, 60, 25, 47, 12, 61, 26};
    const int key = OneOf(kSharing);
    const int other = OneOf(kSharing);
    Add(EAct::kKeyDown, key);
    MaybeMeet();
    Add(EAct::kKeyUp, key);
    Add(EAct::kKeyDown, other);
    if (Chance(50)) {
        Add(EAct::kKeyUp, other);
        Add(EAct::kKeyDown, key);
    }
    MaybeMeet();
    Add(EAct::kKeyUp, other);
    Add(EAct::kKeyUp, key);
}

void ActionGenerator::PlayMIDIKey() {
    constexpr int kNoteOn = 0x90;
    constexpr int kNoteOff = 0x80;
    constexpr int kKeyPressure = 0xA0;
    const bool releases = !midiKeys_.empty() && Chance(midiKeys_.size() >= kMostKeys ? 100 : 50);
    if (releases) {
        const auto key = midiKeys_.begin() + Below(static_cast<int>(midiKeys_.size()));
        if (Chance(20)) {
            Add(EAct::kMIDI, kKeyPressure | key->first, key->second, Below(128));
        }
        if (Chance(50)) {
            Add(EAct::kMIDI, kNoteOff | key->first, key->second, Below(128));
        } else {
            Add(EAct::kMIDI, kNoteOn | key->first, key->second, 0);
        }
        midiKeys_.erase(key);
    } else {
        const std::pair key(Chance(80) ? 0 : Below(16), Chance(70) ? 48 + Below(30) : Below(128));
        Add(EAct::kMIDI, kNoteOn | key.first, key.second, 1 + Below(127));
        midiKeys_.push_back(key);
    }
}

void ActionGenerator::MoveAPedal() {
    constexpr int kController = 0xB0;
    Add(EAct::kMIDI, kController, OneOf(kPedals), OneOf(kPedalValues));
}

void ActionGenerator::TurnWheels() {
    constexpr int kController = 0xB0;
    constexpr int kChannelPressure = 0xD0;
    constexpr int kBend = 0xE0;
    switch (Below(4)) {
        case 0:
            for (int i = Below(8); i >= 0; --i) {
                Add(EAct::kMIDI, kBend, Below(128), Below(128));
            }
            Add(EAct::kMIDI, kBend, 0, 64);
            break;
        case 1:
            Add(EAct::kMIDI, kChannelPressure, Below(128), 0);
            break;
        default:
            Add(EAct::kMIDI, kController, OneOf(kControllers), Below(128));
            break;
    }
}

void ActionGenerator::ChangeProgram() {
    constexpr int kController = 0xB0;
    constexpr int kProgram = 0xC0;
    Add(EAct::kMIDI, kController, 0, Below(128));
    Add(EAct::kMIDI, kProgram, Below(128), 0);
}

void ActionGenerator::MoveSpace() {
    Add(Chance(50) ? EAct::kKeyDown : EAct::kKeyUp, kSpace);
}

void ActionGenerator::MoveAModifier() {
    Add(Chance(45) ? EAct::kKeyDown : EAct::kKeyUp, Chance(70) ? kShift : kControl);
}

void ActionGenerator::PlayPianoByMouse() {
    const auto onPiano = [this] {
        const TArea area = kPianoArea;
        Add(EAct::kMove, area.x + Below(area.width), area.y + Below(area.height));
    };
    switch (Below(4)) {
        case 0:
            Add(EAct::kButtonUp, 1);
            break;
        case 1:
            for (int i = Below(6); i >= 0; --i) {
                onPiano();
            }
            break;
        default:
            onPiano();
            Add(EAct::kButtonDown, Chance(85) ? 1 : 3);
            if (Chance(50)) {
                MaybeMeet();
                Add(EAct::kButtonUp, 1);
                Add(EAct::kButtonUp, 3);
            }
            break;
    }
}

void ActionGenerator::ClickAControl() {
    const auto [x, y] = OneOf(kControls);
    Add(EAct::kMove, x, y);
    Add(EAct::kButtonDown, 1);
    MaybeMeet();
    if (Chance(15)) {
        MoveAKey();
    }
    Add(EAct::kButtonUp, 1);
}

void ActionGenerator::DragAControl() {
    const TArea area = OneOf(kDragged);
    const auto within = [&] { Add(EAct::kMove, area.x + Below(area.width), area.y + Below(area.height)); };
    within();
    Add(EAct::kButtonDown, 1);
    for (int i = Below(8); i >= 0; --i) {
        within();
    }
    switch (Below(6)) {
        case 0:
            Tap(FunctionKey(1 + Below(12)));
            break;
        case 1:
            Add(EAct::kLeave);
            break;
        case 2:
            Click(3);
            break;
        default:
            break;
    }
    MaybeMeet();
    within();
    Add(EAct::kButtonUp, 1);
}

void ActionGenerator::TurnMouseWheel() {
    constexpr int kWheelUp = 4;
    const auto [x, y] = OneOf(kTurned);
    Add(EAct::kMove, x, y);
    const int direction = kWheelUp + Below(2);
    for (int i = Below(6); i >= 0; --i) {
        Click(direction);
    }
}

void ActionGenerator::PressAShortcut() {
    switch (Below(12)) {
        case 0:
            Tap(kTab);
            break;
        case 1:
            TapWith(kShift, kTab);
            break;
        case 2:
            Tap(kReturn);
            break;
        case 3:
        case 4:
            Tap(OneOf(kArrows));
            break;
        case 5:
            TapWith(kAlt, OneOf(kWithAlt));
            break;
        case 6:
            Tap(Chance(50) ? kEscape : kF12);
            break;
        default:
            Tap(FunctionKey(5 + Below(5)));
            break;
    }
}

void ActionGenerator::WorkADialog() {
    switch (Below(5)) {
        case 0:
            Tap(FunctionKey(2));
            break;
        case 1:
            Tap(FunctionKey(3));
            break;
        case 2:
            Tap(FunctionKey(4));
            break;
        case 3:
            Add(EAct::kMove, kAboutButton.x, kAboutButton.y);
            Click();
            break;
        default:
            Add(EAct::kMove, kSettingsButton.x, kSettingsButton.y);
            Click();
            break;
    }
    Add(EAct::kMeet);
    for (int i = Below(10); i >= 0; --i) {
        switch (Below(7)) {
            case 0:
                Tap(kTab);
                break;
            case 1:
                Tap(OneOf(kArrows));
                break;
            case 2:
                Tap(OneOf(kPlayingKeys));
                break;
            case 3:
                // Which quits where the dialog is gone.
                if (const int key = OneOf(kPlayingKeys); key != kLetterQ || end_ != EEnd::kNever) {
                    TapWith(kAlt, key);
                }
                break;
            case 4:
                Tap(kSpace);
                break;
            default:
                Add(EAct::kMoveOver, Below(1000), Below(1000));
                Add(EAct::kButtonDown, 1);
                if (Chance(80)) {
                    Add(EAct::kButtonUp, 1);
                }
                break;
        }
        MaybeMeet();
    }
    if (Chance(70)) {
        Tap(Chance(60) ? kEscape : kReturn);
        MaybeMeet();
    }
}

void ActionGenerator::TapTheTempo() {
    for (int i = Below(5); i >= 0; --i) {
        TapWith(kAlt, kLetterT);
        Add(EAct::kRounds, 1 + Below(30));
    }
}

void ActionGenerator::MoveTheSplit() {
    const auto onTheBar = [this] {
        Add(EAct::kMove, kSplitBar.x + Below(kSplitBar.width), kSplitBar.y + Below(kSplitBar.height));
    };
    Tap(FunctionKey(7));
    Add(EAct::kMeet);
    for (int i = Below(4); i >= 0; --i) {
        onTheBar();
        Add(EAct::kButtonDown, 1);
        if (Chance(50)) {
            Chance(50) ? MoveAKey() : PlayMIDIKey();
        }
        onTheBar();
        MaybeMeet();
        Add(EAct::kButtonUp, 1);
    }
}

void ActionGenerator::WorkTheSongPlayer() {
    switch (Below(4)) {
        case 0:
            TapWith(kAlt, kLetterH);
            break;
        case 1:
            TapWith(kAlt, kLetterO);
            break;
        default:
            Add(EAct::kSong);
            break;
    }
    Add(EAct::kMeet);
    for (int i = Below(12); i >= 0; --i) {
        switch (Below(9)) {
            case 0:
                Tap(kTab);
                break;
            case 1:
                Tap(Chance(50) ? kSpace : OneOf(kArrows));
                break;
            case 2:
                if (const int key = OneOf(kPlayingKeys); key != kLetterQ || end_ != EEnd::kNever) {
                    TapWith(kAlt, key);
                }
                break;
            case 3:
                Add(EAct::kMoveOver, Below(1000), Below(1000));
                Click();
                Add(EAct::kMeet);
                Add(EAct::kFile, 0);
                break;
            case 4:
                TapWith(kAlt, kLetterP);
                break;
            case 5:
                Tap(FunctionKey(Chance(50) ? 11 : 12));
                break;
            case 6:
                Add(EAct::kRounds, 1 + Below(100));
                break;
            default:
                Chance(50) ? MoveAKey() : PlayMIDIKey();
                break;
        }
        MaybeMeet();
    }
    if (Chance(50)) {
        Tap(kEscape);
        MaybeMeet();
    }
}

void ActionGenerator::LearnAControl() {
    constexpr int kController = 0xB0;
    constexpr int kPadOn = 0x99;
    constexpr int kPadOff = 0x89;
    constexpr int kUpToLearn = 5;  // from the menu's end: Quit, About, Help, the keyboard's test, and it
    const auto moveOne = [this] {
        if (Chance(50)) {
            Add(EAct::kMIDI, kController, kFirstKnob + Below(kKnobs), Below(128));
        } else {
            const int pad = kFirstPad + Below(kKnobs);
            Add(EAct::kMIDI, kPadOn, pad, 1 + Below(127));
            Add(EAct::kMIDI, kPadOff, pad, 0);
        }
    };
    if (Chance(60)) {
        Add(EAct::kHome);
        Tap(kF10);
        Add(EAct::kMeet);
        for (int i = 0; i < kUpToLearn; ++i) {
            Tap(kUp);
        }
        Tap(kReturn);
        Add(EAct::kMeet);
        for (int i = Below(4); i >= 0; --i) {
            for (int down = Below(12); down > 0; --down) {
                Tap(kDown);
            }
            Tap(kReturn);
            Add(EAct::kMeet);
            moveOne();
            Add(EAct::kRounds, 1 + Below(10));
        }
        // What is asked for by an armed dialog is no other hand's.
        Add(EAct::kHome);
    }
    for (int i = Below(6); i >= 0; --i) {
        moveOne();
        MaybeMeet();
    }
}

void ActionGenerator::SaveWhatWasPlayed() {
    TapWith(kAlt, kLetterJ);
    Add(EAct::kMeet);
    Add(EAct::kFile, Below(2));
    Add(EAct::kMeet);
}

void ActionGenerator::PressThroughADialog() {
    Tap(FunctionKey(Chance(50) ? 2 : 4));
    Add(EAct::kMeet);
    Add(EAct::kMoveOver, Below(1000), Below(1000));
    Add(EAct::kButtonDown, 1);
    MaybeMeet();
    Tap(kEscape);
    MaybeMeet();
    if (Chance(70)) {
        Add(EAct::kButtonUp, 1);
    }
    MaybeMeet();
    Add(EAct::kMove, kPianoArea.x + Below(kPianoArea.width), kPianoArea.y + Below(kPianoArea.height));
    Click();
}

void ActionGenerator::WorkAMenu() {
    // The last entry of the panel's quits.
    bool mayChoose = end_ != EEnd::kNever;
    switch (Below(4)) {
        case 0:
            Tap(Chance(50) ? kF10 : kMenu);
            break;
        case 1:
            Add(EAct::kMove, kBody.x, kBody.y);
            Click(3);
            break;
        default: {
            const auto [x, y] = OneOf(kPatchNames);
            Add(EAct::kMove, x, y);
            Click(3);
            mayChoose = true;
            break;
        }
    }
    Add(EAct::kMeet);
    for (int i = Below(8); i >= 0; --i) {
        if (Chance(70)) {
            Tap(OneOf(kArrows));
        } else {
            Add(EAct::kMoveOver, Below(1000), Below(1000));
        }
    }
    switch (mayChoose ? Below(4) : 3) {
        case 0:
            Tap(kReturn);
            break;
        case 1:
            Click();
            break;
        default:
            Tap(kEscape);
            break;
    }
    MaybeMeet();
}

void ActionGenerator::Arpeggiate() {
    if (Chance(50)) {
        Tap(FunctionKey(8));
    } else {
        Add(EAct::kMove, kArpeggioSwitch.x, kArpeggioSwitch.y);
        Click();
    }
    MaybeMeet();
    for (int i = Below(4); i >= 0; --i) {
        Chance(50) ? MoveAKey() : PlayMIDIKey();
    }
    Add(EAct::kRounds, 20 + Below(200));
}

void ActionGenerator::RecordATake() {
    Tap(kF11);
    MaybeMeet();
    for (int i = Below(6); i >= 0; --i) {
        Chance(50) ? MoveAKey() : PlayMIDIKey();
        MaybeMeet();
    }
    Tap(kF11);
    Add(EAct::kMeet);
    Add(EAct::kFile, Below(2));
    Add(EAct::kMeet);
    if (Chance(30)) {
        TapWith(kAlt, kLetterS);
        Add(EAct::kMeet);
        Add(EAct::kFile, Below(2));
    }
}

void ActionGenerator::Disturb() {
    const bool grabs = Chance(50);
    const auto held = keys_.size();
    if (held < 2) {
        MoveAKey();
    }
    if (Chance(30)) {
        Add(EAct::kKeyDown, kSpace);
    }
    MaybeMeet();
    Add(grabs ? EAct::kGrab : EAct::kLeave);
    if (Chance(40)) {
        Chance(50) ? Add(EAct::kRounds, 1 + Below(20)) : Add(EAct::kMeet);
    }
    for (int i = Below(4); i >= 0; --i) {
        MoveAKey();
    }
    if (Chance(40)) {
        Add(EAct::kKeyUp, kSpace);
    }
    if (Chance(30)) {
        Add(EAct::kButtonUp, 1);
    }
    if (Chance(30)) {
        Add(EAct::kRounds, 1 + Below(120));
    }
    if (grabs || Chance(80)) {
        Add(grabs ? EAct::kUngrab : EAct::kReturn);
    }
}

void ActionGenerator::SwitchLayout() {
    if (Chance(85)) {
        Add(EAct::kGroup, Below(kGroups));
    } else {
        Add(EAct::kLayout, Below(kLayoutSets));
    }
}

void ActionGenerator::PullAPlug() {
    const int device = Below(Standin::kDeviceCount);
    switch (Below(8)) {
        case 0:
            Add(EAct::kFailWrite);
            break;
        case 1:
            Add(EAct::kOverflow);
            return;
        default:
            Add(EAct::kUnplug, device);
            break;
    }
    for (int i = Below(4); i >= 0; --i) {
        Chance(50) ? MoveAKey() : PlayMIDIKey();
        MaybeMeet();
    }
    if (Chance(80)) {
        Add(EAct::kPlug, device);
    }
    if (Chance(80)) {
        LookForPorts();
    }
}

void ActionGenerator::LookForPorts() {
    for (int device = 0; device < Standin::kDeviceCount; ++device) {
        if (Chance(80)) {
            Add(EAct::kPlug, device);
        }
    }
    Add(EAct::kHome);
    Add(EAct::kGroup, 0);
    Tap(FunctionKey(4));
    Add(EAct::kMeet);
    if (Chance(70)) {
        TapWith(kAlt, kLetterR);
        Add(EAct::kMeet);
    }
    Tap(kReturn);
    Add(EAct::kMeet);
}

void ActionGenerator::Pause() {
    Add(EAct::kRounds, 1 + Below(Chance(80) ? 30 : 300));
}

std::size_t CountDeeds(const CActions& actions) {
    return static_cast<std::size_t>(std::count_if(actions.begin(), actions.end(), [](const TAction& action) {
        return action.act != EAct::kEnd && action.act != EAct::kMeet && action.act != EAct::kRounds &&
               action.act != EAct::kRest && action.act != EAct::kHome && action.act != EAct::kProve;
    }));
}

CActions ActionGenerator::Make(std::size_t count) {
    struct TWeighted {
        int weight;
        Phrase phrase;
    };
    static constexpr TWeighted kPhrases[] = {
        {240, &ActionGenerator::MoveAKey},
        {30, &ActionGenerator::Strum},
        {120, &ActionGenerator::PlayMIDIKey},
        {40, &ActionGenerator::MoveAPedal},
        {20, &ActionGenerator::TurnWheels},
        {8, &ActionGenerator::ChangeProgram},
        {40, &ActionGenerator::MoveSpace},
        {30, &ActionGenerator::MoveAModifier},
        {90, &ActionGenerator::PlayPianoByMouse},
        {60, &ActionGenerator::ClickAControl},
        {20, &ActionGenerator::DragAControl},
        {15, &ActionGenerator::TurnMouseWheel},
        {40, &ActionGenerator::PressAShortcut},
        {10, &ActionGenerator::WorkADialog},
        {10, &ActionGenerator::WorkAMenu},
        {6, &ActionGenerator::TapTheTempo},
        {6, &ActionGenerator::MoveTheSplit},
        {8, &ActionGenerator::WorkTheSongPlayer},
        {6, &ActionGenerator::LearnAControl},
        {2, &ActionGenerator::SaveWhatWasPlayed},
        {12, &ActionGenerator::Arpeggiate},
        {4, &ActionGenerator::RecordATake},
        {30, &ActionGenerator::Disturb},
        {6, &ActionGenerator::SwitchLayout},
        {8, &ActionGenerator::PullAPlug},
        {2, &ActionGenerator::LookForPorts},
        {20, &ActionGenerator::Pause},
    };
    const int total = std::accumulate(std::begin(kPhrases), std::end(kPhrases), 0,
                                      [](int sum, const TWeighted& phrase) { return sum + phrase.weight; });
    actions_.clear();
    while (CountDeeds(actions_) < count) {
        const std::size_t end = actions_.size() + 20 + static_cast<std::size_t>(Below(40));
        while (actions_.size() < end) {
            int left = Below(total);
            const auto* phrase = std::begin(kPhrases);
            for (; left >= phrase->weight; ++phrase) {
                left -= phrase->weight;
            }
            (this->*phrase->phrase)();
            MaybeMeet();
        }
        Add(EAct::kRest);
        keys_.clear();
        midiKeys_.clear();
        if (Chance(60)) {
            Add(EAct::kHome);
            Add(EAct::kRest);
            Add(EAct::kProve, Below(3));
            Add(EAct::kRest);
        }
    }
    // With something held.
    for (int i = Below(6); i >= 0; --i) {
        Chance(50) ? MoveAKey() : PlayMIDIKey();
    }
    MaybeMeet();
    if (end_ == EEnd::kSomehow) {
        Add(EAct::kEnd, Chance(60) ? 0 : 1 + Below(2));
    }
    return actions_;
}

}  // namespace Player
