// Playing from the computer keyboard: from key events to notes, levels and commands.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "piano/CAutoRepeatFilter.h"
#include "piano/CPCKeyLedger.h"

namespace NK::Piano {

/// A press or release as the window system reports it.
struct TPCKey {
    static constexpr int kSpace = 0x20;
    static constexpr int kPlus = 0x2B;
    static constexpr int kMinus = 0x2D;
    static constexpr int kEqual = 0x3D;
    static constexpr int kUnderscore = 0x5F;
    static constexpr int kEscape = 0x01000000;
    static constexpr int kDelete = 0x01000007;

    int code = 0;                ///< Qt's key code
    std::uint32_t scanCode = 0;  ///< native; 0 is unknown
    std::uint64_t timeMs = 0;    ///< time stamp of the event; 0 is unknown
    bool shift = false;
    bool ctrl = false;
    bool alt = false;
    bool autoRepeat = false;  ///< the event's own flag
    /// Where the key is found by its place, see FindPCKeyPlace(); nothing where its character decides.
    std::optional<char> place;
};

/// The three velocities that the user sets.
enum class EVelocityLevel { kLow, kNormal, kHigh };

/// What is to be done.
struct TPCKeyAction {
    enum class EKind { kNoteOn, kNoteOff, kSustainOn, kSustainOff, kPanic, kPlus, kMinus };

    EKind kind;
    std::uint8_t note = 0;                           ///< kNoteOn, kNoteOff: 0..127
    EVelocityLevel level = EVelocityLevel::kNormal;  ///< kNoteOn

    friend bool operator==(const TPCKeyAction&, const TPCKeyAction&) = default;
};

/// Decides what the keys of the computer keyboard do. Each operation appends the actions to be carried out, in order.
///
/// A press plays the table's note of the key's character plus the octave shift, brought into 0..127 by whole octaves;
/// CTRL chooses the low level, else a shifted entry the high one. A release ends what its key began and sends the
/// note-off that the key's character and the octave shift of that moment make, where it differs. A key that is found by
/// its place plays the note of the US character there, at the high level with SHIFT; where one of press and release was
/// found by the place and the other by the character, what the press began ends and nothing else. Space is the sustain
/// pedal, Escape and Delete the panic. With ALT only the value keys act, repeats included; other repeats are ignored.
/// [gui]
class CPCKeyPlayer {
public:
    using CActions = std::vector<TPCKeyAction>;
    /// The US keyboard's character of a key code, or a value outside 1..127 for a key without one.
    using CCharacterOf = std::function<int(int code, bool shift)>;

    explicit CPCKeyPlayer(CCharacterOf characterOf);

    /// Whether Press() would take it for a repeat's of which SettleUp() carried out the release, unless TakeAsStruck()
    /// is called before, as the key is known to be down.
    bool MayBeLateRepeat(const TPCKey& key) const { return filter_.IsLate(key.scanCode, key.timeMs); }
    void TakeAsStruck() { filter_.TakeAsStruck(); }
    /// True when the key is one that acts, a repeat included; else it is another receiver's.
    bool Press(const TPCKey& key, CActions& actions);
    /// After it IsReleaseWaiting() may be true: then Settle() is due after kRepeatSettleMs.
    bool Release(const TPCKey& key, CActions& actions);
    bool IsReleaseWaiting() const noexcept { return filter_.IsWaiting(); }
    /// Carries out the release that waits, if any.
    void Settle(CActions& actions);
    /// The same where its key is known to be up.
    void SettleUp(CActions& actions);

    /// Semitones. A new value ends the notes of the keys that are down first.
    void SetOctaveShift(int semitones, CActions& actions);
    int GetOctaveShift() const noexcept { return octaveShift_; }

    /// Ends all that held keys have begun, the pedal included: for when their releases will go elsewhere.
    void ReleaseAll(CActions& actions);
    /// Ends what keys have begun that are not down any more, the pedal included: their releases went elsewhere. Keys
    /// with an unknown scan code are left alone. A release that comes late after all ends nothing more.
    void ReleaseAllBut(const std::function<bool(std::uint32_t scanCode)>& isDown, CActions& actions);

private:
    struct TNote {
        std::uint8_t note;
        bool shifted;
    };
    std::optional<TNote> NoteOf(const TPCKey& key) const;
    bool IsActing(const TPCKey& key) const;
    void CarryOutRelease(const TPCKey& key, CActions& actions);

    CCharacterOf characterOf_;
    int octaveShift_ = 0;
    std::optional<std::uint64_t> sustainKey_;  ///< that holds the pedal
    CAutoRepeatFilter<TPCKey> filter_;
    CPCKeyLedger ledger_;
    std::vector<std::uint64_t> letGo_;  ///< keys that ReleaseAllBut() ended, whose releases may still come
};

}  // namespace NK::Piano
