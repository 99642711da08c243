#include "midi/arpeggiator/CArpeggiator1.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "nk/nk_rounding.h"

namespace NK::MIDI {

namespace {

constexpr int kNoStepYet = -10000000;
constexpr std::uint8_t kMaximumData = 127;
/// Clock units that a long note stays clear of its own next turn.
constexpr double kLongNoteGap = 101;

/// Toward zero and within the range of int; a NaN gives 0.
int Truncate(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    constexpr double kLowest = std::numeric_limits<int>::min();
    constexpr double kHighest = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(value, kLowest, kHighest));
}

int Round(double value) {
    return Truncate(value + kAlmostHalf);
}

}  // namespace

CArpeggiator1::CArpeggiator1(RandomFunction random) : random_(std::move(random)) {
    SetDefaults();
}

void CArpeggiator1::SetDefaults() {
    const int extension = settings_.extension;
    settings_ = ArpeggiatorSettings();
    settings_.extension = extension;
    chord_.ForgetFirstNote();
    chord_.ForgetLastNote();
    chord_.lastChannel = -1;
    Reset();
}

void CArpeggiator1::Reset() {
    SyncToTime(nullptr);
    chord_.keys.ReleaseAll();
    down_.reset();
    chord_.lastChannel = 0;
    RestartPattern();
    chord_.ForgetVelocities();
}

void CArpeggiator1::SyncToTime(const MusicalClock* position) {
    lastStepTick_ = position == nullptr ? kNoStepYet : position->ToTick();
}

bool CArpeggiator1::SaveSettings(CIniFile& section) {
    section.SetInt(L"Bypass", IsBypassed() ? 1 : 0);
    settings_.Save(section);
    return true;
}

bool CArpeggiator1::LoadSettings(CIniFile& section) {
    bool bypass = false;
    section.GetBool(L"Bypass", bypass);
    const ArpeggiatorSettings loaded = ArpeggiatorSettings::Load(section);
    loaded.Check();
    settings_ = loaded;
    SetBypassed(bypass);
    if (!settings_.latch) {
        ReleaseLatched();
    }
    RestartPattern();
    return true;
}

void CArpeggiator1::SetDirection(int direction) {
    ArpeggiatorSettings::CheckDirection(direction);
    settings_.direction = direction;
}

void CArpeggiator1::SetVelocityMode(int velocityMode) {
    ArpeggiatorSettings::CheckVelocityMode(velocityMode);
    settings_.velocityMode = velocityMode;
}

void CArpeggiator1::SetExtension(int extension) {
    ArpeggiatorSettings::CheckExtension(extension);
    settings_.extension = extension;
    RestartPattern();
}

void CArpeggiator1::SetMultiplication(int multiplication) {
    ArpeggiatorSettings::CheckMultiplication(multiplication);
    settings_.multiplication = multiplication;
}

void CArpeggiator1::SetNoteStep(int step, double durationPercent) {
    ArpeggiatorSettings::CheckNoteStep(step);
    settings_.noteStep = step;
    SetDurationPercent(durationPercent);
}

void CArpeggiator1::SetDurationPercent(double percent) {
    const double length = ArpeggiatorSettings::ToNoteLength(settings_.noteStep, percent);
    ArpeggiatorSettings::CheckNoteLength(length);
    settings_.noteLength = length;
}

void CArpeggiator1::SetLatch(bool latch) {
    settings_.latch = latch;
    if (!latch) {
        ReleaseLatched();
    }
}

void CArpeggiator1::ReleaseLatched() {
    bool isAny = false;
    for (std::size_t i = 0; i < down_.size(); ++i) {
        const auto note = static_cast<std::uint8_t>(i);
        if (!down_[i] && chord_.keys.IsPressed(note)) {
            chord_.keys.ReleaseKey(note);
            isAny = true;
        }
    }
    if (isAny) {
        notes_.Rebuild(settings_, chord_);
    }
}

void CArpeggiator1::SetSwing(int percent) {
    settings_.swing = std::clamp(percent, ArpeggiatorSettings::kStraight, ArpeggiatorSettings::kMostSwing);
}

void CArpeggiator1::Process(TMIDIMessage* messages, int count, const MusicalClock& position, CMIDIOutputBase& output) {
    if (count > 0) {
        TakeMessages(messages, count);
    }
    const int tick = position.ToTick();
    const auto [stepTick, steps] = FindStep(tick);
    if (notes_.IsEmpty()) {
        lastStepTick_ = stepTick;
        return;
    }
    if (stepTick <= lastStepTick_) {
        return;
    }
    const TMIDIMessage entry = TakeNextNote();
    if (!IsBypassed()) {
        PlayStep(entry, steps, position, output);
    }
    lastStepTick_ = stepTick;
}

std::pair<int, double> CArpeggiator1::FindStep(int tick) const {
    const int step = settings_.noteStep;
    if (settings_.swing == ArpeggiatorSettings::kStraight) {
        return {tick - tick % step, 1.0};
    }
    const std::int64_t both = std::int64_t{2} * step;
    const std::int64_t first = tick - tick % both;
    const std::int64_t second = first + both * settings_.swing / 100;
    const double length = settings_.swing * 2 / 100.0;
    return tick < second ? std::pair(static_cast<int>(first), length) : std::pair(static_cast<int>(second), 2 - length);
}

void CArpeggiator1::TakeMessages(TMIDIMessage* messages, int count) {
    chord_.keys.ResetChanged();
    if (notes_.IsEmpty()) {
        chord_.ForgetFirstNote();
    }
    bool changed = false;
    for (TMIDIMessage* message = messages; message != messages + count; ++message) {
        const bool isHeard = message->status == TMIDIMessage::kNoteOff || message->status == TMIDIMessage::kNoteOn ||
                             message->status == TMIDIMessage::kKeyPressure;
        if (!isHeard || (settings_.inChannel >= 1 && message->channel != settings_.inChannel)) {
            continue;
        }
        changed = true;
        Take(*message);
        if (!IsBypassed()) {
            *message = TMIDIMessage();
        }
    }
    if (changed) {
        notes_.Rebuild(settings_, chord_);
    }
}

void CArpeggiator1::Take(const TMIDIMessage& message) {
    const bool isPressure = message.status == TMIDIMessage::kKeyPressure;
    const bool isPress = message.status == TMIDIMessage::kNoteOn && message.data2 > 0;
    TMIDIMessage clamped = message;
    clamped.data1 = std::min(message.data1, kMaximumData);
    if (isPress || isPressure) {
        clamped.data2 = std::clamp<std::uint8_t>(message.data2, 1, kMaximumData);
    }
    chord_.lastChannel = message.channel;
    if (LatchKey(clamped, isPress)) {
        return;
    }
    chord_.keys.ProcessMessage(clamped);
    if (isPress || isPressure) {
        chord_.velocities[clamped.data1] = clamped.data2;
        chord_.lastVelocity = clamped.data2;
    }
    if (isPress) {
        chord_.lastNote = clamped.data1;
        if (chord_.firstVelocity == HeldChord::kNoVelocity && notes_.IsEmpty()) {
            chord_.firstNote = clamped.data1;
            chord_.firstVelocity = clamped.data2;
        }
    }
}

bool CArpeggiator1::LatchKey(const TMIDIMessage& message, bool isPress) {
    if (message.status == TMIDIMessage::kKeyPressure) {
        return false;
    }
    const bool latches = settings_.latch && !IsBypassed();
    if (latches && isPress && down_.none()) {
        chord_.keys.ReleaseAll();
        chord_.ForgetFirstNote();
        notes_.Rebuild(settings_, chord_);
    }
    down_.set(message.data1, isPress);
    return latches && !isPress;
}

void CArpeggiator1::RestartPattern() {
    notes_.Rebuild(settings_, chord_);
    switch (settings_.direction) {
        case ArpeggiatorSettings::kDown:
        case ArpeggiatorSettings::kDownUp:
            index_ = notes_.GetSize() - 1;
            break;
        case ArpeggiatorSettings::kRandom:
            index_ = DrawIndex();
            break;
        default:
            index_ = 0;
            break;
    }
    movingUp_ = settings_.direction != ArpeggiatorSettings::kDownUp;
}

TMIDIMessage CArpeggiator1::TakeNextNote() {
    const int count = notes_.GetSize();
    index_ = std::clamp(index_, 0, count - 1);
    const TMIDIMessage entry = notes_[index_];
    switch (settings_.direction) {
        case ArpeggiatorSettings::kUp:
            index_ = index_ + 1 < count ? index_ + 1 : 0;
            break;
        case ArpeggiatorSettings::kDown:
            index_ = index_ > 0 ? index_ - 1 : count - 1;
            break;
        case ArpeggiatorSettings::kUpDown:
        case ArpeggiatorSettings::kDownUp:
            Bounce(count);
            break;
        case ArpeggiatorSettings::kRandom:
            index_ = DrawIndex();
            break;
        default:
            index_ = 0;
            break;
    }
    return entry;
}

void CArpeggiator1::Bounce(int count) {
    const bool atEnd = movingUp_ ? index_ >= count - 1 : index_ < 1;
    if (atEnd) {
        movingUp_ = !movingUp_;
        if (settings_.repeat) {
            return;
        }
    }
    index_ += movingUp_ ? 1 : -1;
}

int CArpeggiator1::DrawIndex() {
    const int last = notes_.GetSize() - 1;
    const int drawn = Round(random_() * last / static_cast<double>(kRandomMax));
    return std::clamp(drawn, 0, std::max(last, 0));
}

void CArpeggiator1::PlayStep(const TMIDIMessage& entry, double steps, const MusicalClock& position,
                             CMIDIOutputBase& output) const {
    const auto channel = static_cast<std::uint8_t>(entry.channel - 1);
    const int duration = GetDuration(steps, position);
    const auto play = [&](int note) {
        output.PlayNote(channel, static_cast<std::uint8_t>(note), entry.data2, duration, 0);
    };
    play(entry.data1);
    ForEachOctaveCopy(settings_.multiplication, entry.data1, play);
}

int CArpeggiator1::GetDuration(double steps, const MusicalClock& position) const {
    const double beatLength = position.BeatLength();
    const double quartersPerBeat = 4.0 / position.beatUnit;
    const double unitLength = beatLength / (quartersPerBeat * 32);
    const double tickLength = beatLength / (quartersPerBeat * MusicalClock::kTicksPerQuarter);
    const int length = Round(std::ceil(unitLength * settings_.noteLength * steps));
    // Of an odd number of steps one is as long as this one, and the others make pairs.
    const double cycleSteps = notes_.GetSize() % 2 == 0 ? notes_.GetSize() : notes_.GetSize() - 1 + steps;
    const double cycle = std::floor(tickLength * settings_.noteStep * cycleSteps);
    int cap = Round(cycle * 0.98);
    if (length > kLongNoteGap && cycle > kLongNoteGap && cap >= cycle - kLongNoteGap) {
        cap = Truncate(cycle - kLongNoteGap);
    }
    return std::min(length, cap);
}

}  // namespace NK::MIDI
