// Blurring of small pictures. [any]
#pragma once

class QImage;

/// Blurs with a Gaussian of the given standard deviations in pixels; what lies outside the picture is transparent.
/// The image is ARGB32, premultiplied.
void GaussianBlur(QImage& image, double deviationX, double deviationY);
