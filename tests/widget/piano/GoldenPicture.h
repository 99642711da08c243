// Comparing widgets with reviewed pictures.
#pragma once

#include <gtest/gtest.h>
#include <QImage>
#include <QRect>
#include <QString>
#include <QWidget>

#include <vector>

/// Draws the widget at a number of device pixels a logical pixel.
QImage PictureOf(QWidget& widget, int ratio);

/// Whether two pictures look alike: the same size, no channel of a pixel far off, and few of them off at all. Areas in
/// logical pixels that hold text are left out, since fonts differ between machines.
testing::AssertionResult LooksAlike(const QImage& picture, const QImage& reference, const std::vector<QRect>& texts);

/// Compares the widget at 1x and 2x with the reviewed pictures `name`.png and `name`@2x.png. Where one differs or is
/// missing, the actual picture is written beside the build, never over the reference.
testing::AssertionResult MatchesGolden(QWidget& widget, const QString& name, const std::vector<QRect>& texts = {});
