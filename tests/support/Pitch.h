// What a recording sounds like: its pitch and its level.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace KivoraTest {

/// Highest absolute value.
inline float GetPeak(const std::vector<float>& samples) {
    float peak = 0.0F;
    for (const float sample : samples) {
        peak = std::max(peak, std::abs(sample));
    }
    return peak;
}

/// One side (0 left, 1 right) of samples that hold left and right in turn.
inline std::vector<float> GetSide(const std::vector<float>& samples, std::size_t side) {
    std::vector<float> result;
    for (std::size_t index = side; index < samples.size(); index += 2) {
        result.push_back(samples[index]);
    }
    return result;
}

/// Index of the first sample above the level, else the size.
inline std::size_t FindOnset(const std::vector<float>& samples, float level) {
    const auto found =
        std::find_if(samples.begin(), samples.end(), [level](float sample) { return std::abs(sample) > level; });
    return static_cast<std::size_t>(found - samples.begin());
}

/// The pitch in Hz of `length` samples from `begin`, between 50 and 1000 Hz, else 0: the first strong maximum of the
/// autocorrelation normalised by the energy of both parts, refined by a parabola through its neighbours.
inline double EstimatePitch(const std::vector<float>& samples, std::size_t begin, std::size_t length,
                            double sampleRate) {
    constexpr double kLowest = 50.0;
    constexpr double kHighest = 1000.0;
    constexpr double kStrong = 0.9;  // of the highest maximum
    const auto longest = static_cast<std::size_t>(sampleRate / kLowest);
    const auto shortest = static_cast<std::size_t>(sampleRate / kHighest);
    if (begin + length > samples.size() || length < 2 * longest) {
        return 0.0;
    }
    std::vector<double> correlation(longest + 2);
    for (std::size_t lag = shortest - 1; lag < correlation.size(); ++lag) {
        double product = 0.0;
        double energy = 1e-12;
        for (std::size_t index = begin; index + lag < begin + length; ++index) {
            const auto a = static_cast<double>(samples[index]);
            const auto b = static_cast<double>(samples[index + lag]);
            product += a * b;
            energy += a * a + b * b;
        }
        correlation[lag] = 2.0 * product / energy;
    }
    std::vector<std::size_t> maxima;
    double highest = 0.0;
    for (std::size_t lag = shortest; lag <= longest; ++lag) {
        if (correlation[lag] > correlation[lag - 1] && correlation[lag] >= correlation[lag + 1]) {
            maxima.push_back(lag);
            highest = std::max(highest, correlation[lag]);
        }
    }
    for (const std::size_t lag : maxima) {
        if (correlation[lag] >= kStrong * highest && highest > 0.0) {
            const double before = correlation[lag - 1];
            const double after = correlation[lag + 1];
            const double curve = before - 2.0 * correlation[lag] + after;
            const double shift = curve < 0.0 ? 0.5 * (before - after) / curve : 0.0;
            return sampleRate / (static_cast<double>(lag) + shift);
        }
    }
    return 0.0;
}

/// How far `frequency` lies above `reference`, in cents.
inline double GetCents(double frequency, double reference) {
    return 1200.0 * std::log2(frequency / reference);
}

}  // namespace KivoraTest
