#include "QtWidgets/piano/GaussianBlur.h"

#include <QImage>

#include <array>
#include <cmath>
#include <vector>

namespace {
constexpr double kReach = 3.0;  // standard deviations

std::vector<double> kernelOf(double deviation) {
    const int reach = static_cast<int>(std::ceil(kReach * deviation));
    std::vector<double> kernel(static_cast<std::size_t>(2 * reach + 1));
    double sum = 0.0;
    for (int i = -reach; i <= reach; ++i) {
        const double weight = std::exp(-0.5 * i * i / (deviation * deviation));
        kernel[static_cast<std::size_t>(i + reach)] = weight;
        sum += weight;
    }
    for (double& weight : kernel) {
        weight /= sum;
    }
    return kernel;
}

// Blurs `count` pixels that lie `step` apart.
void blurLine(QRgb* pixels, int count, std::ptrdiff_t step, const std::vector<double>& kernel,
              std::vector<QRgb>& scratch) {
    const int reach = static_cast<int>(kernel.size()) / 2;
    scratch.resize(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        std::array<double, 4> sums{};
        for (int k = -reach; k <= reach; ++k) {
            if (i + k < 0 || i + k >= count) {
                continue;
            }
            const QRgb pixel = pixels[(i + k) * step];
            const double weight = kernel[static_cast<std::size_t>(k + reach)];
            sums[0] += weight * qRed(pixel);
            sums[1] += weight * qGreen(pixel);
            sums[2] += weight * qBlue(pixel);
            sums[3] += weight * qAlpha(pixel);
        }
        scratch[static_cast<std::size_t>(i)] =
            qRgba(qRound(sums[0]), qRound(sums[1]), qRound(sums[2]), qRound(sums[3]));
    }
    for (int i = 0; i < count; ++i) {
        pixels[i * step] = scratch[static_cast<std::size_t>(i)];
    }
}
}  // namespace

void GaussianBlur(QImage& image, double deviationX, double deviationY) {
    std::vector<QRgb> scratch;
    auto* const pixels = reinterpret_cast<QRgb*>(image.bits());
    const std::ptrdiff_t stride = image.bytesPerLine() / static_cast<std::ptrdiff_t>(sizeof(QRgb));
    if (deviationX > 0.0) {
        const std::vector<double> kernel = kernelOf(deviationX);
        for (int y = 0; y < image.height(); ++y) {
            blurLine(pixels + y * stride, image.width(), 1, kernel, scratch);
        }
    }
    if (deviationY > 0.0) {
        const std::vector<double> kernel = kernelOf(deviationY);
        for (int x = 0; x < image.width(); ++x) {
            blurLine(pixels + x, image.height(), stride, kernel, scratch);
        }
    }
}
