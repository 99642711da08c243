#include "piano/CRolloverTest.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "piano/PCKeyPlaces.h"

namespace NK::Piano {
namespace {
// Triads of the lower manual, of the upper one, and of both hands.
constexpr std::string_view kChords[] = {
    "zcb", "xvn", "vn,", "bm.", "n,/", "zdb", "qet", "wry", "ryi", "tuo", "zbe", "xbr",
};
}  // namespace

CRolloverTest::CRolloverTest() = default;

std::size_t CRolloverTest::GetChordCount() const noexcept {
    return std::size(kChords);
}

CRolloverTest::CChord CRolloverTest::GetChord() const noexcept {
    CChord chord{};
    if (!IsFinished()) {
        std::transform(kChords[number_].begin(), kChords[number_].end(), chord.begin(), &GetScanCodeOfPlace);
    }
    return chord;
}

bool CRolloverTest::IsDown(std::uint32_t key) const noexcept {
    return std::find(down_.begin(), down_.end(), key) != down_.end();
}

bool CRolloverTest::IsOfChord(std::uint32_t key) const noexcept {
    const CChord chord = GetChord();
    return std::find(chord.begin(), chord.end(), key) != chord.end();
}

std::size_t CRolloverTest::CountChordDown() const noexcept {
    const CChord chord = GetChord();
    return static_cast<std::size_t>(
        std::count_if(chord.begin(), chord.end(), [this](std::uint32_t key) { return IsDown(key); }));
}

bool CRolloverTest::IsWholeChordDown() const noexcept {
    return CountChordDown() == CChord().size();
}

bool CRolloverTest::CanBeDropped() const noexcept {
    return !decided_ && CountChordDown() == CChord().size() - 1;
}

bool CRolloverTest::IsOneReport(std::uint64_t earlierMs, std::uint64_t laterMs) noexcept {
    return earlierMs != 0 && laterMs >= earlierMs && laterMs - earlierMs <= kReportMs;
}

void CRolloverTest::Press(std::uint32_t key, std::uint64_t timeMs) {
    if (IsDown(key)) {
        return;
    }
    down_.push_back(key);
    most_ = std::max(most_, down_.size());
    if (decided_ || !IsOfChord(key)) {
        return;
    }
    pressed_ = {key, timeMs};
    const bool tookAnothersPlace = released_.key != key && IsOneReport(released_.timeMs, timeMs);
    if (tookAnothersPlace && CountChordDown() == CChord().size() - 1) {
        Decide(key);
    }
}

void CRolloverTest::Release(std::uint32_t key, std::uint64_t timeMs) {
    const bool wasWhole = IsWholeChordDown();
    std::erase(down_, key);
    if (!decided_ && IsOfChord(key)) {
        released_ = {key, timeMs};
        if (wasWhole) {
            Decide(pressed_.key != key && IsOneReport(pressed_.timeMs, timeMs) ? pressed_.key : 0);
        }
    }
    if (decided_ && down_.empty()) {
        decided_ = false;
        ++number_;
        released_ = pressed_ = {};
    }
}

void CRolloverTest::ReleaseAll() {
    down_.clear();
    decided_ = false;
    released_ = pressed_ = {};
}

void CRolloverTest::StartAgain() {
    number_ = 0;
    most_ = down_.size();
    decided_ = false;
    dropped_.clear();
    released_ = pressed_ = {};
}

void CRolloverTest::TellDropped() {
    if (!CanBeDropped()) {
        return;
    }
    const CChord chord = GetChord();
    Decide(*std::find_if(chord.begin(), chord.end(), [this](std::uint32_t key) { return !IsDown(key); }));
}

void CRolloverTest::Decide(std::uint32_t droppedKey) {
    decided_ = true;
    if (droppedKey != 0) {
        dropped_.push_back({GetChord(), droppedKey});
    }
}

}  // namespace NK::Piano
