#include "engine/values/VelocityCurve.h"

#include <algorithm>
#include <cmath>

#include "engine/values/ExtraKey.h"

namespace Kivora {

namespace {

constexpr const wchar_t* kSection = L"Kivora_VelocityCurve";
constexpr double kSoftPower = 0.6;
constexpr double kHardPower = 1.7;

constexpr ExtraKey kShape{kSection, L"Shape", 0};
constexpr ExtraKey kFixed{kSection, L"Fixed", VelocityCurve{}.fixed};
constexpr ExtraKey kLeast{kSection, L"Least", VelocityCurve{}.least};
constexpr ExtraKey kGreatest{kSection, L"Greatest", VelocityCurve{}.greatest};
constexpr ExtraKey kFirstY{kSection, L"FirstY", VelocityCurve{}.firstY};
constexpr ExtraKey kMiddleX{kSection, L"MiddleX", VelocityCurve{}.middleX};
constexpr ExtraKey kMiddleY{kSection, L"MiddleY", VelocityCurve{}.middleY};
constexpr ExtraKey kLastY{kSection, L"LastY", VelocityCurve{}.lastY};

constexpr double kSpan = VelocityCurve::kHighest - VelocityCurve::kLowest;

int Clamp(int velocity) {
    return std::clamp(velocity, VelocityCurve::kLowest, VelocityCurve::kHighest);
}

double Between(double x, double x0, double y0, double x1, double y1) {
    return y0 + (y1 - y0) * (x - x0) / (x1 - x0);
}

}  // namespace

std::uint8_t VelocityCurve::Apply(std::uint8_t velocity) const {
    if (velocity == 0) {
        return 0;
    }
    const double x = Clamp(velocity);
    const double touch = (x - kLowest) / kSpan;
    double result = x;
    switch (shape) {
        case Shape::kLinear:
            break;
        case Shape::kSoft:
            result = kLowest + kSpan * std::pow(touch, kSoftPower);
            break;
        case Shape::kHard:
            result = kLowest + kSpan * std::pow(touch, kHardPower);
            break;
        case Shape::kFixed:
            return static_cast<std::uint8_t>(Clamp(fixed));
        case Shape::kDrawn:
            result = x < middleX ? Between(x, kLowest, firstY, middleX, middleY)
                                 : Between(x, middleX, middleY, kHighest, lastY);
            break;
    }
    const double within = Between(result, kLowest, least, kHighest, greatest);
    return static_cast<std::uint8_t>(Clamp(static_cast<int>(std::lround(within))));
}

VelocityCurve VelocityCurve::Kept() const {
    VelocityCurve kept = *this;
    const int number = static_cast<int>(shape);
    kept.shape = number >= 0 && number < kShapes ? shape : Shape::kLinear;
    for (int* value : {&kept.fixed, &kept.least, &kept.greatest, &kept.firstY, &kept.middleY, &kept.lastY}) {
        *value = Clamp(*value);
    }
    kept.greatest = std::max(kept.greatest, kept.least);
    kept.middleX = std::clamp(kept.middleX, kLowest + 1, kHighest - 1);
    return kept;
}

VelocityCurve VelocityCurve::Read(NK::CIniFile& file) {
    VelocityCurve read;
    read.shape = static_cast<Shape>(ReadExtraInt(file, kShape));
    read.fixed = ReadExtraInt(file, kFixed);
    read.least = ReadExtraInt(file, kLeast);
    read.greatest = ReadExtraInt(file, kGreatest);
    read.firstY = ReadExtraInt(file, kFirstY);
    read.middleX = ReadExtraInt(file, kMiddleX);
    read.middleY = ReadExtraInt(file, kMiddleY);
    read.lastY = ReadExtraInt(file, kLastY);
    return read.Kept();
}

void VelocityCurve::Write(NK::CIniFile& file) const {
    WriteExtraInt(file, kShape, static_cast<int>(shape));
    WriteExtraInt(file, kFixed, fixed);
    WriteExtraInt(file, kLeast, least);
    WriteExtraInt(file, kGreatest, greatest);
    WriteExtraInt(file, kFirstY, firstY);
    WriteExtraInt(file, kMiddleX, middleX);
    WriteExtraInt(file, kMiddleY, middleY);
    WriteExtraInt(file, kLastY, lastY);
}

void VelocityMap::SetCurve(const VelocityCurve& curve) {
    curve_ = curve.Kept();
    for (std::size_t velocity = 0; velocity < table_.size(); ++velocity) {
        table_[velocity] = curve_.Apply(static_cast<std::uint8_t>(velocity));
    }
    touches_ = {};
}

std::uint8_t VelocityMap::Play(std::uint8_t velocity) {
    if (velocity == 0) {
        return 0;
    }
    const std::uint8_t out = table_[std::min<std::uint8_t>(velocity, VelocityCurve::kHighest)];
    touches_[count_++ % kRemembered] = {velocity, out};
    return out;
}

}  // namespace Kivora
