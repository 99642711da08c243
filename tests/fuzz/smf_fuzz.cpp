// Any bytes as a MIDI file: what was read stands in order, no more than the file has room for, and written anew it
// reads the same with no damage.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "midi/CMIDIMessageX.h"
#include "midi/reader/SMFReader.h"
#include "nk/nk_memory_file.h"

namespace {

using namespace NK::MIDI;

constexpr std::size_t kSmallestEvent = 2;
constexpr std::size_t kSmallestText = 4;
constexpr std::uint32_t kLongestDelta = 0x0FFFFFFF;

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

template <class List>
void RequireOrder(const List& list, const SMFContent& content) {
    std::uint32_t tick = 0;
    std::int64_t time = 0;
    for (const auto& entry : list) {
        Require(entry.tick >= tick && entry.timeUs >= time && entry.timeUs <= content.lengthUs);
        Require(entry.track < content.trackCount && entry.timeUs == content.tempoMap.GetTimeUs(entry.tick));
        tick = entry.tick;
        time = entry.timeUs;
    }
}

void WriteDelta(NK::CMemoryFile& track, std::uint32_t delta) {
    for (; delta > kLongestDelta; delta -= kLongestDelta) {
        WriteVariableLength(track, kLongestDelta);
        track.Write("\xFF\x01\0", 1, 3);
    }
    WriteVariableLength(track, delta);
}

std::string WriteAnew(const SMFContent& content) {
    NK::CMemoryFile track;
    std::uint32_t tick = 0;
    for (const SMFEvent& event : content.events) {
        WriteDelta(track, event.tick - tick);
        tick = event.tick;
        Require(event.message.Write(track));
    }
    NK::CMemoryFile file;
    NK::WriteTag(file, "MThd");
    file.Write("\0\0\0\6\0\0\0\1\1\xE0MTrk", 1, 14);
    NK::WriteUInt32(file, static_cast<std::uint32_t>(track.GetContent().size()));
    return std::string(file.GetContent()) + std::string(track.GetContent());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const SMFContent content = ReadSMF(std::string_view(reinterpret_cast<const char*>(data), size));
    Require(content.events.size() * kSmallestEvent + content.texts.size() * kSmallestText <= size);
    Require(!content.damage ||
            (content.damage->offset >= 0 && content.damage->offset <= static_cast<std::int64_t>(size)));
    Require(!content.damage || !Describe(*content.damage).IsEmpty());
    RequireOrder(content.events, content);
    RequireOrder(content.texts, content);

    const SMFContent again = ReadSMF(WriteAnew(content));
    Require(!again.damage && again.events.size() == content.events.size());
    for (std::size_t i = 0; i < content.events.size(); ++i) {
        Require(again.events[i].tick == content.events[i].tick);
        Require(again.events[i].message == content.events[i].message);
    }
    return 0;
}
