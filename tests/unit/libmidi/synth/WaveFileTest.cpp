#include "libmidi/synth/WaveFile.h"

#include <gtest/gtest.h>

#include <vector>

#include "nk/nk_disk_file.h"
#include "nk/nk_memory_file.h"
#include "support/FaultyFile.h"
#include "support/TemporaryFolder.h"
#include "support/WaveFile.h"

namespace {

using LibMidi::WaveWriter;

TEST(WaveWriterTest, TheFileHoldsTheSamplesIn16Bits) {
    const KivoraTest::CTemporaryFolder folder;
    const std::vector<float> samples{0.0F, 1.0F, -1.0F, 0.5F, 7.0F, -7.0F};
    {
        NK::CDiskFile file(NK::CString::FromUtf8((folder / "x.wav").string()), NK::CDiskFile::kWrite);
        WaveWriter writer(file, 44100);
        ASSERT_TRUE(writer.Write({samples.begin(), samples.begin() + 2}));
        ASSERT_TRUE(writer.Write({samples.begin() + 2, samples.end()}));
        ASSERT_TRUE(writer.Finish());
    }
    const auto wave = KivoraTest::ReadWaveFile(folder / "x.wav");
    EXPECT_EQ(wave.sampleRate, 44100U);
    EXPECT_EQ(wave.channels, 2U);
    ASSERT_EQ(wave.samples.size(), samples.size());
    const float expected[] = {0.0F, 1.0F, -1.0F, 0.5F, 1.0F, -1.0F};
    for (std::size_t index = 0; index < samples.size(); ++index) {
        EXPECT_NEAR(wave.samples[index], expected[index], 1.0F / 16384.0F) << index;
    }
    EXPECT_EQ(std::filesystem::file_size(folder / "x.wav"), 44U + 12U);
}

TEST(WaveWriterTest, TheHeadTellsTheSizes) {
    NK::CMemoryFile file;
    WaveWriter writer(file, 48000);
    ASSERT_TRUE(writer.Write(std::vector<float>(200)));
    ASSERT_TRUE(writer.Finish());
    const std::string_view content = file.GetContent();
    ASSERT_EQ(content.size(), 444U);
    EXPECT_EQ(content.substr(4, 4), std::string_view("\xB4\x01\0\0", 4)) << "what follows it: 436";
    EXPECT_EQ(content.substr(40, 4), std::string_view("\x90\x01\0\0", 4)) << "400";
    EXPECT_EQ(file.GetPosition(), 444);
}

TEST(WaveWriterTest, WhatCannotBeWrittenEndsTheFile) {
    for (int failing = 1; failing <= 4; ++failing) {
        SCOPED_TRACE(failing);
        KivoraTest::CFaultyFile file;
        file.failingWrite = failing;
        WaveWriter writer(file, 48000);
        EXPECT_EQ(writer.Write({0.5F, 0.5F}), failing > 2);
        EXPECT_FALSE(writer.Finish());
        EXPECT_FALSE(writer.Write({0.5F, 0.5F}));
        EXPECT_EQ(file.GetWriteCount(), failing) << "nothing is tried after it";
    }
}

}  // namespace
