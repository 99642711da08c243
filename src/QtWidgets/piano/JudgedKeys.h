// The keys of a widget, told from the system's auto-repeat without waiting where that can be known.
#pragma once

#include <memory>
#include <optional>
#include <QKeyEvent>

#include "piano/CAutoRepeatFilter.h"
#include "QtWidgets/piano/ReleasedKeys.h"

/// A filter of repeats that asks whether the key of a release is up before the release has to wait. Of a repeat that is
/// read after its key went up the press is a repeat, and the release that follows ends nothing more. [gui]
template <class TEvent>
class JudgedKeys {
public:
    using EKeyVerdict = NK::Piano::EKeyVerdict;

    EKeyVerdict press(const QKeyEvent& press) {
        const quint32 key = press.nativeScanCode();
        if (released_ == nullptr) {
            released_ = std::make_unique<ReleasedKeys>();
        }
        released_->follow(press);
        if (filter_.IsLate(key, press.timestamp()) && released_->isDown(key)) {
            filter_.TakeAsStruck();
        }
        const bool isLate = filter_.IsLate(key, press.timestamp());
        const EKeyVerdict verdict = filter_.Press(key, press.timestamp(), press.isAutoRepeat());
        if (isLate) {
            ended_ = key;
        } else if (verdict == EKeyVerdict::kPlay && ended_ == key) {
            ended_.reset();
        }
        return verdict;
    }

    /// To be called with nothing waiting; `event` is what waits where the verdict says so.
    EKeyVerdict release(const QKeyEvent& release, const TEvent& event) {
        const quint32 key = release.nativeScanCode();
        if (released_ != nullptr) {
            released_->follow(release);
        }
        EKeyVerdict verdict = filter_.Release(key, release.timestamp(), release.isAutoRepeat(), event);
        const bool isEnded = ended_ == key;
        if (verdict == EKeyVerdict::kWait && (isEnded || (released_ != nullptr && released_->isUp(key)))) {
            filter_.TakeWaitingOfUp();
            verdict = EKeyVerdict::kPlay;
        }
        if (verdict == EKeyVerdict::kPlay && isEnded) {
            ended_.reset();
            return EKeyVerdict::kRepeat;
        }
        return verdict;
    }

    /// The release that waits, which is one now; nothing when none waits.
    std::optional<TEvent> takeWaiting() { return filter_.TakeWaiting(); }

private:
    NK::Piano::CAutoRepeatFilter<TEvent> filter_;
    std::unique_ptr<ReleasedKeys> released_;  ///< from the first press on
    std::optional<quint32> ended_;            ///< the key of a press that was a repeat's, read late
};
