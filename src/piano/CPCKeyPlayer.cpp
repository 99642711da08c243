#include "piano/CPCKeyPlayer.h"

#include <utility>

#include "midi/MIDINotes.h"
#include "piano/PCKeyTable.h"

namespace NK::Piano {
namespace {
using EKind = TPCKeyAction::EKind;

std::optional<EKind> ValueActionOf(int code) noexcept {
    switch (code) {
        case TPCKey::kMinus:
        case TPCKey::kUnderscore:
            return EKind::kMinus;
        case TPCKey::kEqual:
        case TPCKey::kPlus:
            return EKind::kPlus;
        default:
            return std::nullopt;
    }
}

bool IsPanic(int code) noexcept {
    return code == TPCKey::kEscape || code == TPCKey::kDelete;
}

std::uint64_t IdOf(const TPCKey& key) noexcept {
    return CPCKeyLedger::KeyId(key.scanCode, key.code);
}
}  // namespace

CPCKeyPlayer::CPCKeyPlayer(CCharacterOf characterOf) : characterOf_(std::move(characterOf)) {
}

bool CPCKeyPlayer::Press(const TPCKey& key, CActions& actions) {
    if (filter_.IsLate(key.scanCode, key.timeMs)) {
        letGo_.push_back(IdOf(key));
    }
    const bool isRepeat = filter_.Press(key.scanCode, key.timeMs, key.autoRepeat) == EKeyVerdict::kRepeat;
    Settle(actions);

    if (key.alt) {
        const std::optional<EKind> action = ValueActionOf(key.code);
        if (action) {
            actions.push_back({*action});
        }
        return action.has_value();
    }
    // A key that is down already repeats without releases in between, which some servers send.
    if (isRepeat || (key.scanCode != 0 && ledger_.IsDown(IdOf(key)))) {
        return IsActing(key);
    }
    if (key.code == TPCKey::kSpace) {
        std::erase(letGo_, IdOf(key));
        ledger_.Press(IdOf(key), CPCKeyLedger::kNoNote);
        sustainKey_ = IdOf(key);
        actions.push_back({EKind::kSustainOn});
        return true;
    }
    if (IsPanic(key.code)) {
        ledger_.Press(IdOf(key), CPCKeyLedger::kNoNote);
        actions.push_back({EKind::kPanic});
        return true;
    }
    const std::optional<TNote> note = NoteOf(key);
    if (!note) {
        return false;
    }
    std::erase(letGo_, IdOf(key));
    const auto previous = ledger_.Release(IdOf(key));
    if (previous && *previous != CPCKeyLedger::kNoNote && *previous != note->note) {
        actions.push_back({EKind::kNoteOff, *previous});
    }
    ledger_.Press(IdOf(key), note->note, key.place.has_value());
    EVelocityLevel level = note->shifted ? EVelocityLevel::kHigh : EVelocityLevel::kNormal;
    if (key.ctrl) {
        level = EVelocityLevel::kLow;
    }
    actions.push_back({EKind::kNoteOn, note->note, level});
    return true;
}

bool CPCKeyPlayer::Release(const TPCKey& key, CActions& actions) {
    // A release that waits belongs before this one, whatever this one turns out to be.
    Settle(actions);
    switch (filter_.Release(key.scanCode, key.timeMs, key.autoRepeat, key)) {
        case EKeyVerdict::kRepeat:
        case EKeyVerdict::kWait:
            break;
        case EKeyVerdict::kPlay:
            CarryOutRelease(key, actions);
            break;
    }
    return IsActing(key);
}

void CPCKeyPlayer::Settle(CActions& actions) {
    if (const std::optional<TPCKey> key = filter_.TakeWaiting()) {
        CarryOutRelease(*key, actions);
    }
}

void CPCKeyPlayer::SettleUp(CActions& actions) {
    if (const std::optional<TPCKey> key = filter_.TakeWaitingOfUp()) {
        CarryOutRelease(*key, actions);
    }
}

void CPCKeyPlayer::SetOctaveShift(int semitones, CActions& actions) {
    if (semitones == octaveShift_) {
        return;
    }
    Settle(actions);
    for (const std::uint8_t note : ledger_.EndNotes()) {
        actions.push_back({EKind::kNoteOff, note});
    }
    octaveShift_ = semitones;
}

void CPCKeyPlayer::ReleaseAll(CActions& actions) {
    Settle(actions);
    for (const std::uint8_t note : ledger_.EndNotes()) {
        actions.push_back({EKind::kNoteOff, note});
    }
    ledger_.Clear();
    if (std::exchange(sustainKey_, std::nullopt)) {
        actions.push_back({EKind::kSustainOff});
    }
}

void CPCKeyPlayer::ReleaseAllBut(const std::function<bool(std::uint32_t scanCode)>& isDown, CActions& actions) {
    for (const std::uint64_t id : ledger_.GetKeys()) {
        const auto scanCode = static_cast<std::uint32_t>(id);
        if (id != CPCKeyLedger::KeyId(scanCode, 0) || isDown(scanCode)) {
            continue;
        }
        const auto begun = ledger_.Release(id);
        if (begun && *begun != CPCKeyLedger::kNoNote) {
            actions.push_back({EKind::kNoteOff, *begun});
            letGo_.push_back(id);
        }
        if (sustainKey_ == id) {
            sustainKey_.reset();
            actions.push_back({EKind::kSustainOff});
            letGo_.push_back(id);
        }
    }
}

std::optional<CPCKeyPlayer::TNote> CPCKeyPlayer::NoteOf(const TPCKey& key) const {
    const TPCKeyEntry* entry =
        key.place ? &GetPCKeyEntry(*key.place) : FindPCKeyEntry(characterOf_(key.code, key.shift), key.shift);
    if (entry == nullptr || entry->note == TPCKeyEntry::kNone) {
        return std::nullopt;
    }
    return TNote{MIDI::FoldNote(entry->note + octaveShift_), key.place ? key.shift : entry->shifted != 0};
}

bool CPCKeyPlayer::IsActing(const TPCKey& key) const {
    return key.code == TPCKey::kSpace || IsPanic(key.code) || NoteOf(key).has_value();
}

void CPCKeyPlayer::CarryOutRelease(const TPCKey& key, CActions& actions) {
    if (std::erase(letGo_, IdOf(key)) != 0) {
        return;
    }
    const bool otherWay = ledger_.IsByPlace(IdOf(key)) != key.place.has_value();
    const auto begun = ledger_.Release(IdOf(key));
    const bool endsNote = begun && *begun != CPCKeyLedger::kNoNote;
    if (endsNote) {
        actions.push_back({EKind::kNoteOff, *begun});
    }
    if (key.code == TPCKey::kSpace) {
        sustainKey_.reset();
        actions.push_back({EKind::kSustainOff});
        return;
    }
    if (begun && otherWay) {
        return;
    }
    const std::optional<TNote> note = key.alt ? std::nullopt : NoteOf(key);
    if (note && begun != note->note) {
        actions.push_back({EKind::kNoteOff, note->note});
    }
}

}  // namespace NK::Piano
