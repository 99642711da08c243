// Carries displayed MIDI messages from any thread to the GUI thread without a queue that can grow.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <QObject>

#include "midi/TMIDIMessage.h"
#include "nk/nk_critical_section.h"

/// Keeps, between two visits of the GUI thread, only what is left to show: which notes changed and how, the last value
/// of each controller, whether the system was reset. However many messages come, one wake-up is posted.
class MIDIEventRelay : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// The message packed into an int, status lowest. Allocates nothing but the one posted wake-up. [any]
    void Put(int packedMessage);

signals:
    /// On the GUI thread, once a wake-up, in this order: a system reset, the notes changed since it from low to high
    /// but the one struck last at the end (a note that was struck and released meanwhile comes as both), a reset of the
    /// controllers, controllers since it by number, the pitch wheel, other messages as the last one.
    void MIDIMessageReady(int packedMessage);
    /// After the messages of one wake-up.
    void BatchDone();

private slots:
    /// The wake-up.
    void deliver();

private:
    struct Pending {
        bool reset = false;
        std::bitset<128> changed;                          ///< notes with a message since the last visit
        std::bitset<128> struck;                           ///< notes with a note-on among them
        std::array<NK::MIDI::TMIDIMessage, 128> strike{};  ///< the last note-on of each struck note
        std::array<NK::MIDI::TMIDIMessage, 128> last{};    ///< the last note message of each changed note
        std::size_t lastStruck = 0;                        ///< the note of the last note-on among them
        std::bitset<128> controllerChanged;
        std::array<NK::MIDI::TMIDIMessage, 128> controller{};
        NK::MIDI::TMIDIMessage wheel{};
        NK::MIDI::TMIDIMessage other{};
    };

    void DeliverNote(const Pending& taken, std::size_t note);

    CCriticalSection lock_;
    Pending pending_ NK_GUARDED_BY(lock_);
    bool posted_ NK_GUARDED_BY(lock_) = false;
};
