// Any bytes as the journal of a take: what was read stands in order, and encodes to the bytes that it was read from.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "libmidi/CaptureFile.h"
#include "nk/nk_memory_file.h"

namespace {

using namespace LibMidi;

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    NK::CMemoryFile file(std::string_view(reinterpret_cast<const char*>(data), size));
    std::int64_t startedAt = 0;
    if (ReadCaptureHeader(file, startedAt) != CaptureFileKind::kCapture) {
        return 0;
    }
    Require(size >= kCaptureHeaderSize);
    std::uint8_t header[kCaptureHeaderSize];
    EncodeCaptureHeader(startedAt, header);
    Require(std::memcmp(header, data, sizeof(header)) == 0);

    CaptureStore store;
    std::uint32_t previous = 0;
    std::size_t offset = kCaptureHeaderSize;
    ReadCapturedEvents(file, [&](const CapturedEvent& event) {
        Require(event.time >= previous && offset + kCaptureRecordSize <= size);
        previous = event.time;
        std::uint8_t record[kCaptureRecordSize];
        EncodeCapturedEvent(event, record);
        Require(std::memcmp(record, data + offset, sizeof(record)) == 0);
        offset += kCaptureRecordSize;
        store.Append(event);
    });
    Require(store.GetCount() == (offset - kCaptureHeaderSize) / kCaptureRecordSize);
    return 0;
}
