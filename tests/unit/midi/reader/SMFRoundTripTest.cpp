// What the program's own writer writes.
#include <gtest/gtest.h>

#include <random>

#include "midi/reader/SMFReader.h"
#include "midi/SMFWriter.h"
#include "nk/nk_memory_file.h"

using namespace NK::MIDI;

TEST(SMFRoundTrip, AWrittenTakeReadsTheSame) {
    std::mt19937 random(7);
    const auto draw = [&](unsigned limit) { return static_cast<std::uint8_t>(random() % limit); };
    NK::CArray<CMIDIMessageX> written;
    std::int32_t time = 0;
    for (int i = 0; i < 2000; ++i) {
        TMIDIMessage message{static_cast<std::uint8_t>(0x80 + 0x10 * draw(7)), static_cast<std::uint8_t>(1 + draw(16)),
                             draw(128), draw(128)};
        if (message.GetLength() < 3) {
            message.data2 = 0;
        }
        time += i % 50 == 0 ? 20000 : draw(200);
        written.Push({message, time});
    }
    for (const int tempo : {0, 60, 120}) {
        NK::CMemoryFile file;
        ASSERT_TRUE(WriteMIDIStream(file, written, tempo));
        const SMFContent read = ReadSMF(file.GetContent());
        EXPECT_FALSE(read.damage);
        ASSERT_EQ(read.events.size(), written.GetSize());
        const std::int32_t start = written[0].time;
        for (std::uint32_t i = 0; i < written.GetSize(); ++i) {
            EXPECT_EQ(read.events[i].message, written[i].message);
            // The division is whole and a tick a millisecond, up to 1 in 500.
            EXPECT_EQ(read.events[i].timeUs, std::int64_t{1000} * (written[i].time - start)) << tempo;
        }
    }
}
