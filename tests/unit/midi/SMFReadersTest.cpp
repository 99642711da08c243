// What the writer wrote, read by programs that are not ours.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <string>

#include "midi/SMFWriter.h"

using namespace NK;
using namespace NK::MIDI;

namespace {

/// Channel messages of every kind at growing times, the same at every run.
CArray<CMIDIMessageX> MakeTake() {
    std::mt19937 random(20);
    const auto draw = [&](unsigned limit) { return static_cast<std::uint8_t>(random() % limit); };
    CArray<CMIDIMessageX> events;
    std::int32_t time = 0;
    for (int i = 0; i < 500; ++i) {
        TMIDIMessage message{static_cast<std::uint8_t>(0x80 + 0x10 * draw(7)), static_cast<std::uint8_t>(1 + draw(16)),
                             draw(128), draw(128)};
        if (message.GetLength() < 3) {
            message.data2 = 0;
        }
        events.Push({message, time});
        time += i % 50 == 49 ? 20000 : draw(200);
    }
    return events;
}

class SMFReaders : public testing::Test {
protected:
    SMFReaders() { EXPECT_TRUE(WriteMIDIFile(CString::FromUtf8(midiPath_), events_, 120)); }
    ~SMFReaders() override {
        std::filesystem::remove(midiPath_);
        std::filesystem::remove(textPath_);
    }

    std::string Run(const std::string& command) const {
        const int result = std::system((command + " '" + midiPath_ + "' > '" + textPath_ + "'").c_str());
        EXPECT_EQ(result, 0) << command << " is missing or refused the file";
        std::ifstream stream(textPath_);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    const CArray<CMIDIMessageX> events_ = MakeTake();
    const std::string stem_ =
        testing::TempDir() + testing::UnitTest::GetInstance()->current_test_info()->name() + std::string("_take");
    const std::string midiPath_ = stem_ + ".mid";
    const std::string textPath_ = stem_ + ".txt";
};

}  // namespace

TEST_F(SMFReaders, MidicsvReadsEveryEvent) {
    std::ostringstream expected;
    expected << "0, 0, Header, 0, 1, 500\n1, 0, Start_track\n1, 0, Tempo, 500000\n";
    for (const CMIDIMessageX& event : events_) {
        const TMIDIMessage& message = event.message;
        const int channel = message.channel - 1;
        const int data1 = message.data1;
        const int data2 = message.data2;
        expected << "1, " << event.time << ", ";
        switch (message.status) {
            case 0x80:
                expected << "Note_off_c, " << channel << ", " << data1 << ", " << data2;
                break;
            case 0x90:
                expected << "Note_on_c, " << channel << ", " << data1 << ", " << data2;
                break;
            case 0xA0:
                expected << "Poly_aftertouch_c, " << channel << ", " << data1 << ", " << data2;
                break;
            case 0xB0:
                expected << "Control_c, " << channel << ", " << data1 << ", " << data2;
                break;
            case 0xC0:
                expected << "Program_c, " << channel << ", " << data1;
                break;
            case 0xD0:
                expected << "Channel_aftertouch_c, " << channel << ", " << data1;
                break;
            default:
                expected << "Pitch_bend_c, " << channel << ", " << data1 + 128 * data2;
                break;
        }
        expected << '\n';
    }
    expected << "1, " << events_[events_.GetSize() - 1].time << ", End_track\n0, 0, End_of_file\n";
    EXPECT_EQ(Run("midicsv"), expected.str());
}

TEST_F(SMFReaders, MidoReadsEveryEvent) {
    std::ostringstream expected;
    expected << "header 0 1 500\n0 tempo 500000\n";
    for (const CMIDIMessageX& event : events_) {
        const TMIDIMessage& message = event.message;
        expected << event.time << " 0x" << std::hex << int{message.status} << std::dec << ' ' << message.channel - 1
                 << ' ' << int{message.data1};
        if (message.GetLength() == 3) {
            expected << ' ' << int{message.data2};
        }
        expected << '\n';
    }
    expected << "end " << events_[events_.GetSize() - 1].time << '\n';
    EXPECT_EQ(Run(KIVORA_SMF_READER), expected.str());
}
