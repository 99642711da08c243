// Pictures of whole windows, compared with reviewed ones.
#pragma once

#include <QImage>
#include <QString>

namespace KivoraTest {

/// Fails the test where the picture differs from the reviewed one of that name by more than the fonts' rasterisation
/// may; what came out is then written beside the build.
void ExpectLikeReviewed(const QImage& picture, const QString& name);

}  // namespace KivoraTest
