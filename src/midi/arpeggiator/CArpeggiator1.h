// The arpeggiator: plays held chords as patterns on the grid of the musical clock. [owner]
#pragma once

#include <bitset>
#include <functional>
#include <utility>

#include "midi/arpeggiator/ArpeggiatorSettings.h"
#include "midi/arpeggiator/CArpeggioNotes.h"
#include "midi/CMIDIProcessor.h"
#include "nk/nk_random.h"

namespace NK::MIDI {

/// Tracks the keys held on its input channel and plays one note of them at each grid step. While it is not bypassed it
/// takes over the notes and key pressures that it hears. Not for use from several threads at once: whoever shares one
/// holds the engine's lock for every call. Process() allocates nothing once warm.
class CArpeggiator1 : public CMIDIProcessor {
public:
    /// Results 0..32767, as NK::Random().
    using RandomFunction = std::function<int()>;

    explicit CArpeggiator1(RandomFunction random = &Random);

    /// Every setting to its default but the extension and the bypass, which stay; then Reset().
    void SetDefaults() override;
    void Reset() override;
    void SyncToTime(const MusicalClock* position) override;
    /// True.
    bool SaveSettings(CIniFile& section) override;
    /// Missing keys take their defaults. Everything is checked first: throws as the setters do, or
    /// CInvalidMIDIChannelException for a channel that is 0 or above 16, and then nothing has changed. True.
    bool LoadSettings(CIniFile& section) override;
    /// Never throws for what the messages hold: notes and velocities out of range are clamped. Notes are played through
    /// PlayNote() at time 0 with durations in clock units; an entry without a channel plays on channel 255.
    void Process(TMIDIMessage* messages, int count, const MusicalClock& position, CMIDIOutputBase& output) override;

    const ArpeggiatorSettings& GetSettings() const { return settings_; }
    int GetDirection() const { return settings_.direction; }
    int GetVelocityMode() const { return settings_.velocityMode; }
    int GetExtension() const { return settings_.extension; }
    int GetMultiplication() const { return settings_.multiplication; }
    int GetNoteStep() const { return settings_.noteStep; }
    double GetDurationPercent() const { return settings_.GetDurationPercent(); }
    bool GetRepeat() const { return settings_.repeat; }
    /// Whether it plays a note at the next step.
    bool IsPlaying() const { return !IsBypassed() && HasNotes(); }
    /// Whether steps go by: without notes Process() without messages changes nothing but the step that it stands at.
    bool HasNotes() const { return !notes_.IsEmpty(); }

    // These throw CInvalidParameterException and then, unless a line says otherwise, change nothing. All but
    // SetExtension() take effect on the note list at the next message.
    void SetDirection(int direction);        ///< 0..8, "Invalid arpeggiator direction."
    void SetVelocityMode(int velocityMode);  ///< 0..3, "Invalid arpeggiator velocity mode."
    /// 0..3, "Invalid arpeggiator range extension mode."; the pattern starts anew.
    void SetExtension(int extension);
    void SetMultiplication(int multiplication);  ///< 0..3, "Invalid arpeggiator multiplication mode."
    /// Ticks (192 to a quarter note), 1 or more, "Note step must be positive."; then the gate as SetDurationPercent():
    /// a refused one leaves the new step.
    void SetNoteStep(int step, double durationPercent);
    /// In percent of the step, "Note length cannot be negative."
    void SetDurationPercent(double percent);
    void SetRepeat(bool repeat) { settings_.repeat = repeat; }
    /// While it is on and the arpeggiator is not bypassed, the chord stays when its keys go up, until a key goes down
    /// while no other one is: that begins the next chord. Off, a chord whose keys are up ends.
    void SetLatch(bool latch);
    /// Ends what is latched; the keys that are down stay.
    void ReleaseLatched();
    /// Kept in 50..75: percent of two steps at which the second one stands; its notes are as much shorter.
    void SetSwing(int percent);

private:
    void TakeMessages(TMIDIMessage* messages, int count);
    void Take(const TMIDIMessage& message);
    /// Follows the key, and whether the chord takes no notice of it.
    bool LatchKey(const TMIDIMessage& message, bool isPress);
    void RestartPattern();
    /// The tick at which the present step began, and its length in steps.
    std::pair<int, double> FindStep(int tick) const;
    TMIDIMessage TakeNextNote();
    void Bounce(int count);
    int DrawIndex();
    void PlayStep(const TMIDIMessage& entry, double steps, const MusicalClock& position, CMIDIOutputBase& output) const;
    int GetDuration(double steps, const MusicalClock& position) const;

    ArpeggiatorSettings settings_;
    HeldChord chord_;
    std::bitset<Piano::CKeyboardStateBase::kNotes> down_;  ///< the keys, whatever the chord is
    CArpeggioNotes notes_;
    RandomFunction random_;
    int index_ = 0;  ///< into the notes; may lie outside until the next step
    bool movingUp_ = true;
    int lastStepTick_ = -1000000;
};

}  // namespace NK::MIDI
