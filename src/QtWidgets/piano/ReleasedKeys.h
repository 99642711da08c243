// Tells what a person does with a key from what the system repeats, without waiting for what comes next.
#pragma once

#include <cstdint>
#include <optional>
#include <QAbstractNativeEventFilter>
#include <QDeadlineTimer>
#include <QKeyEvent>

#include "piano/CAutoRepeatFilter.h"
#include "piano/CKeyHolds.h"

/// Under X a held key repeats as a release and a press, but the server knows it as down all the while: so a release
/// whose key is up is one of the player's, and so is one that comes before the server repeats anything. [gui]
class ReleasedKeys : QAbstractNativeEventFilter {
public:
    ReleasedKeys();

    /// To be told of each press and release of a key as it comes.
    void follow(const QKeyEvent& event);
    /// Of a release that is not marked as a repeat's, and that was followed. False also where nobody can be asked, and
    /// for kRestMs after an answer that has taken longer than kLongMs, as one of a server on another machine may: then
    /// the release is judged by what follows it.
    bool isUp(std::uint32_t scanCode);
    /// Of a press with the time stamp of the last release that is not marked as a repeat's: false also where it is not
    /// known.
    bool isDown(std::uint32_t scanCode);

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    bool isReleasedBeforeRepeats(std::uint32_t scanCode) const;
    /// Empty where nobody can be asked.
    std::optional<bool> askWhetherDown(std::uint32_t scanCode);

    static constexpr int kLongMs = NK::Piano::kRepeatSettleMs;  ///< as long as it would be waited for what follows
    static constexpr int kRestMs = 2'000;

    QDeadlineTimer rest_{0};
    NK::Piano::CKeyHolds holds_;
    /// The server's. Empty where it is not known, and after a release that came sooner and was followed by a press at
    /// once: repeats may come from another server then, whose delay is its own.
    std::optional<std::uint32_t> repeatDelayMs_;
};
