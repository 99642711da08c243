#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

TEST(IniCorpus, EveryDefectOnFileIsHandled) {
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(KIVORA_CORPUS_DIR "/ini")) {
        SCOPED_TRACE(entry.path().string());
        std::ifstream stream(entry.path(), std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
        // The entry point of the fuzzer aborts the program when something that must hold does not.
        EXPECT_EQ(LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()), 0);
        ++files;
    }
    EXPECT_GE(files, 25);
}

}  // namespace
