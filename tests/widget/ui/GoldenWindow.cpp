#include "widget/ui/GoldenWindow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <QDir>

namespace KivoraTest {

namespace {

/// In blocks of 4 x 4 pixels.
QImage Coarse(const QImage& picture) {
    return picture.convertToFormat(QImage::Format_RGB32)
        .scaled(picture.width() / 4, picture.height() / 4, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

}  // namespace

void ExpectLikeReviewed(const QImage& picture, const QString& name) {
    const QString file = name + (picture.devicePixelRatio() > 1 ? "@2x.png" : ".png");
    const QImage reference(QStringLiteral(KIVORA_GOLDEN_DIR "/") + file);
    int most = 0;
    double sum = 0;
    if (reference.size() == picture.size()) {
        const QImage a = Coarse(picture);
        const QImage b = Coarse(reference);
        for (int y = 0; y < a.height(); ++y) {
            for (int x = 0; x < a.width(); ++x) {
                const QRgb p = a.pixel(x, y);
                const QRgb q = b.pixel(x, y);
                const int off = std::max(
                    {std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)), std::abs(qBlue(p) - qBlue(q))});
                most = std::max(most, off);
                sum += off;
            }
        }
        sum /= a.width() * a.height();
    }
    if (reference.size() != picture.size() || most > 80 || sum > 0.7) {
        QDir().mkpath(QStringLiteral(KIVORA_GOLDEN_SIDE_DIR));
        picture.save(QStringLiteral(KIVORA_GOLDEN_SIDE_DIR "/") + file);
        ADD_FAILURE() << file.toStdString() << " differs, at most by " << most << ", on average by " << sum << "; see "
                      << KIVORA_GOLDEN_SIDE_DIR;
    }
}

}  // namespace KivoraTest
