#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "support/Files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

TEST(PresetCorpus, EveryDefectOnFileIsHandled) {
    int files = 0;
    for (const char* const folder : {KIVORA_CORPUS_DIR "/preset", KIVORA_CORPUS_DIR "/ini"}) {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            SCOPED_TRACE(entry.path().string());
            const std::string bytes = KivoraTest::ReadFileBytes(entry.path());
            // The entry point of the fuzzer aborts the program when something that must hold does not.
            EXPECT_EQ(LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()), 0);
            ++files;
        }
    }
    EXPECT_GE(files, 50);
}

}  // namespace
