// An arpeggiator with a clock and random numbers that the test moves, and an output that remembers.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <initializer_list>
#include <utility>
#include <vector>

#include "midi/arpeggiator/CArpeggiator1.h"

namespace KivoraTest {

struct PlayedNote {
    int channel;
    int note;
    int velocity;
    int duration;
    std::uint32_t time;
};

class CPlayedNotes : public NK::MIDI::CMIDIOutputBase {
public:
    std::vector<PlayedNote> played;

    void SendMessage(NK::MIDI::TMIDIMessage, std::uint32_t) override { ADD_FAILURE() << "a message was sent"; }
    void PlayNote(std::uint8_t channel, std::uint8_t note, std::uint8_t velocity, int duration,
                  std::uint32_t time) override {
        played.push_back({channel, note, velocity, duration, time});
    }
    std::vector<int> TakeNotes() {
        std::vector<int> notes;
        for (const PlayedNote& entry : std::exchange(played, {})) {
            notes.push_back(entry.note);
        }
        return notes;
    }
};

/// At tempo 120 with four quarters a bar: the default step of an eighth note is 250 ms.
class ArpeggiatorTest : public testing::Test {
protected:
    using Notes = std::vector<int>;
    using Message = NK::MIDI::TMIDIMessage;
    using Settings = NK::MIDI::ArpeggiatorSettings;

    /// The clock has run before the first key.
    ArpeggiatorTest() { RunTo(0); }

    void MoveClock(int ms) {
        clock.bar = ms / 2000;
        clock.beat = ms / 500 % 4;
        clock.offset = ms % 500;
        now = ms;
    }
    void RunTo(int ms) {
        MoveClock(ms);
        arpeggiator.Process(nullptr, 0, clock, output);
    }
    /// To the next eighth note; returns what it played.
    Notes Step() {
        RunTo(now / 250 * 250 + 250);
        return output.TakeNotes();
    }
    Notes Steps(std::size_t count) {
        Notes notes;
        for (std::size_t i = 0; i < count; ++i) {
            const Notes step = Step();
            EXPECT_EQ(step.size(), 1U);
            notes.insert(notes.end(), step.begin(), step.end());
        }
        return notes;
    }
    /// A batch at the present time; returns what the arpeggiator left of it.
    std::vector<Message> Send(std::vector<Message> messages) {
        arpeggiator.Process(messages.data(), static_cast<int>(messages.size()), clock, output);
        return messages;
    }
    void Press(int note, int velocity = 100, int channel = 1) {
        Send({{0x90, static_cast<std::uint8_t>(channel), static_cast<std::uint8_t>(note),
               static_cast<std::uint8_t>(velocity)}});
    }
    void Release(int note, int channel = 1) {
        Send({{0x80, static_cast<std::uint8_t>(channel), static_cast<std::uint8_t>(note), 64}});
    }
    /// Settings not named take their defaults.
    void Load(std::initializer_list<std::pair<const wchar_t*, const wchar_t*>> values) {
        NK::CIniFile ini;
        ini.SelectOrAddSection(L"Arpeggiator");
        for (const auto& [key, value] : values) {
            ini.SetString(key, value);
        }
        arpeggiator.LoadSettings(ini);
    }
    /// The next random numbers; 0 once they are used up.
    void Draw(std::initializer_list<int> numbers) { draws.assign(numbers); }

    std::deque<int> draws;
    int drawn = 0;
    int now = 0;
    NK::MIDI::MusicalClock clock;
    CPlayedNotes output;
    NK::MIDI::CArpeggiator1 arpeggiator{[this] {
        ++drawn;
        const int number = draws.empty() ? 0 : draws.front();
        if (!draws.empty()) {
            draws.pop_front();
        }
        return number;
    }};
};

}  // namespace KivoraTest
