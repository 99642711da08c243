// Any bytes as the journal of a take: what was read stands in order, no more than the file has room for, and written
// anew it reads the same with nothing missing.
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "libmidi/CaptureFile.h"
#include "nk/nk_memory_file.h"

namespace {

using namespace LibMidi;

constexpr std::size_t kSmallestRecord = 8;  // of the first version

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

CaptureFileContent Read(const std::uint8_t* data, std::size_t size, std::vector<CapturedEvent>& events) {
    NK::CMemoryFile file(std::string_view(reinterpret_cast<const char*>(data), size));
    return ReadCaptureFile(file, [&events](const CapturedEvent& event) { events.push_back(event); });
}

bool IsSame(const CapturedEvent& a, const CapturedEvent& b) {
    return a.time == b.time && a.message == b.message;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<CapturedEvent> events;
    const CaptureFileContent content = Read(data, size, events);
    Require(content.isReadable);
    if (content.kind != CaptureFileKind::kCapture) {
        Require(events.empty() && content.missing == 0);
        return 0;
    }
    Require(content.startedAt.has_value() || content.isDamaged);
    Require((events.size() + content.missing) * kSmallestRecord <= size);
    Require(content.missing == 0 || content.isDamaged);

    std::vector<std::uint8_t> whole(kCaptureHeaderSize + (events.size() + 1) * kCaptureRecordSize);
    EncodeCaptureHeader(content.startedAt.value_or(0), whole.data());
    std::uint8_t* record = whole.data() + kCaptureHeaderSize;
    std::uint32_t previous = 0;
    std::uint32_t number = 0;
    for (const CapturedEvent& event : events) {
        Require(event.time >= previous && event.time <= content.endMs);
        previous = event.time;
        EncodeCapturedEvent(event, number++, record);
        record += kCaptureRecordSize;
    }
    EncodeCaptureMark(content.endMs, number, record);

    std::vector<CapturedEvent> again;
    const CaptureFileContent anew = Read(whole.data(), whole.size(), again);
    Require(anew.kind == CaptureFileKind::kCapture && !anew.isDamaged && anew.endMs == content.endMs);
    Require(events.size() == again.size());
    for (std::size_t i = 0; i < events.size(); ++i) {
        Require(IsSame(events[i], again[i]));
    }
    return 0;
}
