#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "midi/reader/SMFReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using namespace NK::MIDI;

/// The events and where the damage stands; -1 for none.
using Found = std::pair<int, std::int64_t>;

TEST(SMFCorpus, EveryDefectOnFileCostsOnlyWhatItHit) {
    std::map<std::string, Found> found;
    for (const auto& entry : std::filesystem::directory_iterator(KIVORA_CORPUS_DIR "/smf")) {
        SCOPED_TRACE(entry.path().string());
        std::ifstream stream(entry.path(), std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
        // The entry point of the fuzzer aborts the program when something that must hold does not.
        EXPECT_EQ(LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()), 0);
        const SMFContent content = ReadSMF(bytes);
        found[entry.path().filename()] = {static_cast<int>(content.events.size()),
                                          content.damage ? content.damage->offset : -1};
    }
    EXPECT_THAT(found, testing::ContainerEq(std::map<std::string, Found>{
                           {"division_of_film_frames", {2, -1}},
                           {"division_of_nothing", {0, 12}},
                           {"event_beyond_its_track", {3, 37}},
                           {"file_cut_short", {1, 28}},
                           {"format_of_sequences", {0, 8}},
                           {"length_of_four_gigabytes", {2, 34}},
                           {"no_tracks", {0, 14}},
                           {"nothing", {0, 0}},
                           {"quantity_too_long", {1, 26}},
                           {"running_status", {4, -1}},
                           {"status_of_the_wire", {1, 27}},
                           {"system_exclusive_of_four_gigabytes", {1, 32}},
                           {"tempo_of_nothing", {2, 26}},
                           {"text_of_every_kind", {1, -1}},
                           {"track_count_of_nothing", {2, -1}},
                           {"whole", {4, -1}},
                       }));
}

}  // namespace
