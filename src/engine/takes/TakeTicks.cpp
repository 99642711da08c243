#include "engine/takes/TakeTicks.h"

#include <algorithm>
#include <cmath>

namespace Kivora {

namespace {

using Mark = TakeGrid::Mark;

constexpr std::int64_t kUsPerMinute = 60'000'000;
constexpr std::int64_t kLongestTick = 0xFFFFFF;  ///< as a file can say it: microseconds a beat

std::int64_t GetTickLength(const Mark& mark) {
    return (kUsPerMinute + mark.tempo / 2) / mark.tempo;
}

std::int64_t DivideRounded(std::int64_t number, std::int64_t by) {
    return (number + by / 2) / by;
}

/// Without those that are followed within half a beat by the beginning of a bar.
std::vector<Mark> Thin(const std::vector<Mark>& marks) {
    std::vector<Mark> kept;
    for (const Mark& mark : marks) {
        const auto isShort = [&mark](const Mark& last) {
            return (mark.timeMs - last.timeMs) * std::int64_t{1000} * 2 < GetTickLength(last);
        };
        while (mark.beginsBar && !kept.empty() && isShort(kept.back())) {
            kept.pop_back();
        }
        kept.push_back(mark);
    }
    return kept;
}

}  // namespace

TakeTicks::TakeTicks(const TakeGrid& grid, std::uint32_t firstNoteMs) {
    const std::vector<Mark> marks = Thin(grid.GetMarks());
    auto first = std::find_if(marks.rbegin(), marks.rend(), [firstNoteMs](const Mark& mark) {
                     return mark.timeMs <= firstNoteMs;
                 }).base();
    first -= first == marks.begin() ? 0 : 1;
    const double beatUs = static_cast<double>(kUsPerMinute) / first->tempo;
    const double sinceUs = 1000.0 * (static_cast<double>(firstNoteMs) - first->timeMs);
    const double bars = std::floor((first->beat + sinceUs / beatUs) / first->beatsPerBar);
    originUs_ = std::int64_t{first->timeMs} * 1000 + std::llround((bars * first->beatsPerBar - first->beat) * beatUs);
    pieces_.push_back({0, 0, GetTickLength(*first)});
    meters_.push_back({0, first->beatsPerBar});
    for (auto mark = first + 1; mark != marks.end(); ++mark) {
        if (mark->beginsBar) {
            BeginBar(*mark);
        } else {
            AddPiece(TickAt(ToTime(mark->timeMs)), GetTickLength(*mark));
        }
    }
}

std::int64_t TakeTicks::ToTime(std::uint32_t timeMs) const {
    return (std::int64_t{timeMs} * 1000 - originUs_) * kTicksPerBeat;
}

std::int64_t TakeTicks::TickAt(std::int64_t time) const {
    const auto later = std::upper_bound(pieces_.begin() + 1, pieces_.end(), time,
                                        [](std::int64_t sought, const Piece& piece) { return sought < piece.time; });
    const Piece& piece = *(later - 1);
    return piece.tick + DivideRounded(std::max<std::int64_t>(time - piece.time, 0), piece.tickLength);
}

void TakeTicks::AddPiece(std::int64_t tick, std::int64_t tickLength) {
    Piece& last = pieces_.back();
    if (tick <= last.tick) {
        last.tickLength = tickLength;
    } else if (tickLength != last.tickLength) {
        pieces_.push_back({tick, last.time + (tick - last.tick) * last.tickLength, tickLength});
    }
}

void TakeTicks::AddMeter(std::int64_t tick, std::int64_t beats) {
    const Meter meter{static_cast<std::int32_t>(tick), static_cast<int>(beats)};
    if (meters_.back().tick == meter.tick) {
        meters_.back() = meter;
    } else if (meters_.back().beatsPerBar != meter.beatsPerBar) {
        meters_.push_back(meter);
    }
}

void TakeTicks::BeginBar(const Mark& mark) {
    const std::int64_t time = ToTime(mark.timeMs);
    const Meter meter = meters_.back();
    std::int64_t beats = std::max<std::int64_t>(DivideRounded(TickAt(time) - meter.tick, kTicksPerBeat), 1);
    std::int64_t stretched = std::max(meter.tick + (beats - 1) * kTicksPerBeat, pieces_.back().tick);
    if (stretched >= meter.tick + beats * kTicksPerBeat) {
        ++beats;  // the tempo has changed right there
    }
    const std::int64_t end = meter.tick + beats * kTicksPerBeat;
    const Piece last = pieces_.back();
    const std::int64_t leftTime = time - (last.time + (stretched - last.tick) * last.tickLength);
    AddPiece(stretched, std::clamp<std::int64_t>(DivideRounded(leftTime, end - stretched), 1, kLongestTick));
    AddPiece(end, GetTickLength(mark));
    if (const std::int64_t rest = beats % meter.beatsPerBar; rest != 0) {
        AddMeter(end - rest * kTicksPerBeat, rest);
    }
    AddMeter(end, mark.beatsPerBar);
}

std::int32_t TakeTicks::GetTick(std::uint32_t timeMs) const {
    return static_cast<std::int32_t>(TickAt(ToTime(timeMs)));
}

std::vector<TakeTicks::Tempo> TakeTicks::GetTempi() const {
    std::vector<Tempo> tempi;
    for (const Piece& piece : pieces_) {
        tempi.push_back({static_cast<std::int32_t>(piece.tick), static_cast<std::uint32_t>(piece.tickLength)});
    }
    return tempi;
}

}  // namespace Kivora
