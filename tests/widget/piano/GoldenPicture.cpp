#include "GoldenPicture.h"

#include <QDir>

#include <algorithm>
#include <cstdlib>

namespace {
constexpr int kFarOff = 24;   // of 255, in one channel
constexpr int kSlightly = 6;  // of 255, in one channel
constexpr double kMostSlightlyOff = 0.005;

int DistanceOf(QRgb a, QRgb b) {
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
}
}  // namespace

QImage PictureOf(QWidget& widget, int ratio) {
    QImage picture(widget.size() * ratio, QImage::Format_RGB32);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::magenta);
    widget.render(&picture);
    return picture;
}

testing::AssertionResult LooksAlike(const QImage& picture, const QImage& reference, const std::vector<QRect>& texts) {
    if (picture.size() != reference.size()) {
        return testing::AssertionFailure() << "size " << picture.width() << " x " << picture.height();
    }
    const int ratio = qRound(picture.devicePixelRatio());
    int slightlyOff = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QPoint logical(x / ratio, y / ratio);
            if (std::any_of(texts.begin(), texts.end(), [&](const QRect& text) { return text.contains(logical); })) {
                continue;
            }
            const int distance = DistanceOf(picture.pixel(x, y), reference.pixel(x, y));
            if (distance > kFarOff) {
                return testing::AssertionFailure() << "off by " << distance << " at " << x << ", " << y;
            }
            slightlyOff += distance > kSlightly ? 1 : 0;
        }
    }
    if (slightlyOff > kMostSlightlyOff * picture.width() * picture.height()) {
        return testing::AssertionFailure() << slightlyOff << " pixels are off";
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult MatchesGolden(QWidget& widget, const QString& name, const std::vector<QRect>& texts) {
    testing::AssertionResult result = testing::AssertionSuccess();
    for (const int ratio : {1, 2}) {
        const QString file = name + (ratio == 1 ? ".png" : "@2x.png");
        const QImage picture = PictureOf(widget, ratio);
        QImage reference(QStringLiteral(KIVORA_GOLDEN_DIR "/") + file);
        reference.setDevicePixelRatio(ratio);
        const testing::AssertionResult alike = LooksAlike(picture, reference, texts);
        if (!alike) {
            QDir().mkpath(QStringLiteral(KIVORA_GOLDEN_SIDE_DIR));
            picture.save(QStringLiteral(KIVORA_GOLDEN_SIDE_DIR "/") + file);
            result = testing::AssertionFailure()
                     << file.toStdString() << ": " << alike.message() << "; see " << KIVORA_GOLDEN_SIDE_DIR;
        }
    }
    return result;
}
