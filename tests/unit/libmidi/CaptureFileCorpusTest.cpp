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

/// The events and how many are missing; -1 for what is no whole header.
std::pair<int, int> CountEvents(const std::filesystem::path& path) {
    NK::CDiskFile file(NK::CString::FromUtf8(path.string()), NK::CDiskFile::kRead);
    int count = 0;
    const CaptureFileContent content = ReadCaptureFile(file, [&count](const CapturedEvent&) { ++count; });
    return content.kind == CaptureFileKind::kCapture ? std::pair(count, static_cast<int>(content.missing))
                                                     : std::pair(-1, 0);
}

TEST(CaptureFileCorpus, EveryDefectOnFileCostsOnlyWhatItHit) {
    std::map<std::string, std::pair<int, int>> counts;
    for (const auto& entry : std::filesystem::directory_iterator(KIVORA_CORPUS_DIR "/take_journal")) {
        SCOPED_TRACE(entry.path().string());
        std::ifstream stream(entry.path(), std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
        // The entry point of the fuzzer aborts the program when something that must hold does not.
        EXPECT_EQ(LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()), 0);
        counts[entry.path().filename()] = CountEvents(entry.path());
    }
    using Counts = std::map<std::string, std::pair<int, int>>;
    EXPECT_THAT(counts, testing::ContainerEq(Counts{
                            {"data_above_127", {4, 0}},
                            {"header_cut_short", {-1, 0}},
                            {"header_of_a_later_version", {-1, 0}},
                            {"latest_time", {3, 1}},
                            {"no_events", {0, 0}},
                            {"nothing", {-1, 0}},
                            {"record_cut_short", {2, 0}},
                            {"record_with_a_wrong_check", {2, 1}},
                            {"second_mark_at_the_end", {4, 0}},
                            {"second_mark_before_an_event", {1, 1}},
                            {"second_record_with_a_wrong_check", {2, 1}},
                            {"second_records_moved", {0, 2}},
                            {"second_status_without_its_bit", {1, 1}},
                            {"second_time_goes_back", {2, 1}},
                            {"second_time_too_late", {1, 1}},
                            {"second_unknown_kind", {1, 1}},
                            {"second_whole", {3, 0}},
                            {"second_wrong_header_check", {3, 0}},
                            {"second_wrong_tag", {3, 0}},
                            {"second_zeros_in_the_middle", {2, 1}},
                            {"status_without_its_bit", {3, 1}},
                            {"time_goes_back", {3, 1}},
                            {"zeros_at_the_end", {3, 0}},
                        }));
}

}  // namespace
