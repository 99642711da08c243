// What the bound controls of MIDI keyboards do, and what they are kept from doing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "engine/SoftTakeover.h"
#include "engine/values/MidiBindings.h"
#include "libmidi/MIDIPort.h"

namespace Kivora {

/// Stands where messages of the input come in. What a bound control sends is taken out of the stream and waits for the
/// window's thread: of a knob the last value, of a button how often it was pressed. Everything else passes as it came.
/// The end of a note follows its beginning: it is taken out where that was, whatever has become of the binding
/// meanwhile, and passes where that has passed, or both have.
///
/// Guarded by the engine's lock, see CKivora::WithExtras().
class BoundControls {
public:
    /// False where nothing is bound, learned or held back: then there is nothing to do for any message. [any]
    bool IsActive() const { return isActive_; }
    /// Whether the message goes no further. `port` is the one that hands it on, null for none; `isHeard` says of a
    /// message about a note that its sender holds that note and has been heard. [input]
    bool Take(const LibMidi::MIDIEvent& event, const LibMidi::MIDIInPort* port, bool isHeard);
    /// Of every knob: it may have been moved where nobody was told of it. [any]
    void LetGo();

    // [gui]
    /// What is bound from now on.
    void SetBindings(const MidiBindings& bindings);
    /// Called with the engine's lock held when something waits, once until somebody has looked; empty for nobody. [any]
    void SetWake(std::function<void()> wake) { wake_ = std::move(wake); }

    /// What a function is to do once.
    struct Deed {
        EPanelFunction function;
        std::optional<int> position;  ///< of a knob, 0..127; nothing for a press
        std::size_t binding;          ///< which one, for Follow() and LetGo() until anything is bound otherwise
    };
    /// The panic goes before everything else; of a function that more than kMostPresses presses wait for the others are
    /// forgotten in pairs, so that what is switched ends as it should.
    std::optional<Deed> TakeNext();
    static constexpr int kMostPresses = 16;
    /// What the knob's value, now `current`, is to be set to; nothing while the knob has not caught it.
    std::optional<int> Follow(const Deed& knob, int current, int least, int greatest);
    /// The knob has moved and nothing followed.
    void LetGo(const Deed& knob);

    struct Learned {
        NK::CString device;
        std::optional<MidiControl> control;  ///< nothing for a pitch bend and a channel's pressure
        bool canBeBound;                     ///< else it was not taken out of the stream, and the learning goes on

        bool operator==(const Learned&) const = default;
    };
    /// The next control of a device that is moved or pressed is learned for the function. A controller that comes to
    /// rest at 0 lets go of something and is passed over, and so is what cannot set a value.
    void BeginLearning(EPanelFunction function);
    /// What has come; told once. What it sends is taken out of the stream until EndLearning(), if it can be bound.
    std::optional<Learned> TakeLearned();
    void EndLearning();

private:
    struct Live {
        explicit Live(const MidiBinding& bound) : binding(bound) {}

        MidiBinding binding;
        SoftTakeover takeover;
        int last = 0;                 ///< what came last of a controller, 0..127
        std::optional<int> position;  ///< that waits
        int presses = 0;              ///< that wait
    };
    struct Down {
        std::uint8_t source;
        MidiControl control;
        bool operator==(const Down&) const = default;
    };

    /// Who has sent a message. Its name is asked for only where something depends on it.
    struct Sender {
        const LibMidi::MIDIInPort* port;
        std::uint8_t source;
    };
    struct Name {
        NK::CString given;
        NK::CString kept;  ///< as bindings have it
    };

    /// As bindings have it.
    const NK::CString& NameOf(const Sender& sender);
    bool TakeNote(const LibMidi::MIDIEvent& event, const MidiControl& control, const Sender& sender, bool isHeard);
    bool TakeController(const LibMidi::MIDIEvent& event, const MidiControl& control, const Sender& sender);
    bool TakeWhatIsPressed(const MidiControl& control, const Sender& sender);
    /// Whether it is learned now, or was and waits.
    bool Learn(const MidiControl& control, const Sender& sender);
    void Tell(Learned learned);
    Live* Find(const MidiControl& control, const Sender& sender);
    void Press(Live& live);
    void MoveTo(Live& live, int position);
    void Wake();
    bool IsDown(const Down& down) const;
    void SetDown(const Down& down, bool isDown);
    void UpdateActive();

    bool isActive_ = false;
    std::vector<Live> live_;
    std::vector<Down> down_;   ///< what was taken out of the stream and has not come to rest
    std::vector<Name> names_;  ///< of those who have sent something that is bound or learned
    std::function<void()> wake_;
    bool isWoken_ = false;
    bool isTold_ = true;
    std::optional<EPanelFunction> learning_;
    std::optional<Learned> learned_;
};

}  // namespace Kivora
