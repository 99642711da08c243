#include "libmidi/synth/PeakLimiter.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using LibMidi::PeakLimiter;

constexpr float kRate = 48000.0F;

std::vector<float> Sine(float level, std::size_t frames) {
    std::vector<float> samples;
    for (std::size_t index = 0; index < frames; ++index) {
        samples.push_back(level * std::sin(0.05F * static_cast<float>(index)));
    }
    return samples;
}

TEST(PeakLimiter, WhatStaysBelowTheCeilingPassesUnchanged) {
    PeakLimiter limiter(kRate);
    auto left = Sine(0.9F, 4800);
    auto right = Sine(-0.3F, 4800);
    limiter.Process(left.data(), right.data(), left.size());
    EXPECT_EQ(left, Sine(0.9F, 4800));
    EXPECT_EQ(right, Sine(-0.3F, 4800));
}

TEST(PeakLimiter, NothingPassesTheCeiling) {
    PeakLimiter limiter(kRate);
    auto left = Sine(1.5F, 4800);
    auto right = Sine(6.0F, 4800);
    limiter.Process(left.data(), right.data(), left.size());
    float peak = 0.0F;
    for (std::size_t index = 0; index < left.size(); ++index) {
        peak = std::max({peak, std::abs(left[index]), std::abs(right[index])});
    }
    EXPECT_LE(peak, PeakLimiter::kCeiling * 1.000001F);
    EXPECT_GT(peak, 0.9F * PeakLimiter::kCeiling);
}

TEST(PeakLimiter, BothSidesAreTurnedDownAlike) {
    PeakLimiter limiter(kRate);
    float left = 0.5F;
    float right = 2.0F;
    limiter.Process(&left, &right, 1);
    EXPECT_FLOAT_EQ(left / right, 0.25F);
    EXPECT_FLOAT_EQ(right, PeakLimiter::kCeiling);
}

TEST(PeakLimiter, LetsGoAfterTheLoudPart) {
    PeakLimiter limiter(kRate);
    float left = 4.0F;
    float right = 0.0F;
    limiter.Process(&left, &right, 1);
    std::vector<float> quiet(48000, 0.5F);
    std::vector<float> silence(48000, 0.0F);
    limiter.Process(quiet.data(), silence.data(), quiet.size());
    EXPECT_LT(quiet.front(), 0.2F);
    EXPECT_EQ(quiet.back(), 0.5F);
}

}  // namespace
