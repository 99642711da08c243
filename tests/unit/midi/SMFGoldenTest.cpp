// The writer against files whose bytes were worked out by hand; each stands beside its derivation.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "midi/SMFWriter.h"
#include "nk/nk_memory_file.h"

using namespace NK;
using namespace NK::MIDI;

namespace {

std::string ReadFile(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    EXPECT_TRUE(stream.is_open()) << path;
    return {std::istreambuf_iterator<char>(stream), {}};
}

void ExpectGolden(const std::string& name, const CArray<CMIDIMessageX>& events, int tempo) {
    CMemoryFile file;
    ASSERT_TRUE(WriteMIDIStream(file, events, tempo));
    const std::string written(file.GetContent());
    if (written != ReadFile(std::string(KIVORA_GOLDEN_DIR "/") + name + ".mid")) {
        const std::string side = std::string(KIVORA_GOLDEN_OUTPUT_DIR "/") + name + ".actual.mid";
        std::ofstream(side, std::ios::binary) << written;
        ADD_FAILURE() << name << ".mid differs; what was written is in " << side;
    }
}

}  // namespace

TEST(SMFGolden, EmptyTakeWithoutTempo) {
    ExpectGolden("empty_take_without_tempo", {}, 0);
}

TEST(SMFGolden, PlayedTake) {
    CArray<CMIDIMessageX> events;
    events.Push({{0xC0, 1, 0, 0}, 0});
    events.Push({{0xB0, 1, 7, 127}, 0});
    events.Push({{0x90, 1, 60, 96}, 0});
    events.Push({{0x90, 10, 36, 127}, 127});
    events.Push({{0xB0, 1, 64, 127}, 120});
    events.Push({{0xFF, 0, 0, 0}, 130});
    events.Push({{0xE0, 2, 0, 64}, 255});
    events.Push({{0xD0, 16, 80, 0}, 255});
    events.Push({{0xA0, 1, 60, 70}, 16638});
    events.Push({{0x80, 10, 36, 0}, 33022});
    events.Push({{0x80, 1, 60, 64}, 3600000});
    ExpectGolden("played_take", events, 120);
}

TEST(SMFGolden, MetaEventsAndSysEx) {
    CArray<CMIDIMessageX> events;
    CMIDIMessageX event;
    event.SetText(CMIDIMessageX::kTrackName, "Kivora", -1);
    events.Push(event);
    event.SetTimeSignature(3, 2, 24, 8, 0);
    events.Push(event);
    event.SetKeySignature(-3, 1, 0);
    events.Push(event);
    const std::uint8_t gmOn[] = {0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7};
    event.SetSysEx(gmOn, sizeof(gmOn), 10);
    events.Push(event);
    events.Push(CMIDIMessageX());
    events.Push({{0x90, 1, 72, 1}, 20});
    event.SetSequencerSpecific(2, gmOn + 1, 148);
    events.Push(event);
    ExpectGolden("meta_events_and_sysex", events, 7);
}
