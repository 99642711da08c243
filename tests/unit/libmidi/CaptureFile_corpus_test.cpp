#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "libmidi/CaptureFile.h"
#include "nk/nk_disk_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using namespace LibMidi;

/// -1 for what is no whole header.
int CountEvents(const std::filesystem::path& path) {
    NK::CDiskFile file(NK::CString::FromUtf8(path.string()), NK::CDiskFile::kRead);
    std::int64_t startedAt = 0;
    if (ReadCaptureHeader(file, startedAt) != CaptureFileKind::kCapture) {
        return -1;
    }
    int count = 0;
    ReadCapturedEvents(file, [&count](const CapturedEvent&) { ++count; });
    return count;
}

TEST(CaptureFileCorpus, EveryDefectOnFileGivesTheEventsBeforeIt) {
    std::map<std::string, int> counts;
    for (const auto& entry : std::filesystem::directory_iterator(KIVORA_CORPUS_DIR "/take_journal")) {
        SCOPED_TRACE(entry.path().string());
        std::ifstream stream(entry.path(), std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
        // The entry point of the fuzzer aborts the program when something that must hold does not.
        EXPECT_EQ(LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()), 0);
        counts[entry.path().filename()] = CountEvents(entry.path());
    }
    EXPECT_THAT(counts, testing::ContainerEq(std::map<std::string, int>{
                            {"data_above_127", 4},
                            {"header_cut_short", -1},
                            {"header_of_a_later_version", -1},
                            {"latest_time", 3},
                            {"no_events", 0},
                            {"nothing", -1},
                            {"record_cut_short", 2},
                            {"record_with_a_wrong_check", 2},
                            {"status_without_its_bit", 3},
                            {"time_goes_back", 3},
                            {"zeros_at_the_end", 3},
                        }));
}

}  // namespace
