// When a recording stops by itself, and how its length is shown. [gui]
#pragma once

#include <QString>

namespace RecordingTexts {

inline constexpr int kLongestIdleMs = 30000;
inline constexpr int kLongestMs = 3600000;

/// Why a recording of that length, with nothing recorded for that long, is stopped; empty while it may go on. Being
/// idle wins.
QString ReasonToStop(int timeMs, int idleMs);

/// Minutes modulo 100 and seconds, rounded to the nearest second.
QString Elapsed(int timeMs);

/// What a player should know before recording.
QString Limits();

}  // namespace RecordingTexts
