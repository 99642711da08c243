// How the user wants to see and hear of the panel; a file of its own in the user's folder. [owner]
#pragma once

#include "nk/nk_string.h"
#include "ui/parts/PianoRange.h"

enum class EContrast { kAsDesktop, kHigh, kUsual };

/// Plain values; a key that is missing or unreadable takes the default given here.
struct ViewSettings {
    static constexpr const wchar_t* kFileName = L"View.ini";
    static constexpr double kSmallestScale = 0.5;
    static constexpr double kLargestScale = 4.0;

    double scale = 1.0;  ///< of the panel, where its screen has the room; kSmallestScale..kLargestScale
    EContrast contrast = EContrast::kAsDesktop;
    bool quietWhilePlaying = false;            ///< screen readers are not told which keys are lit
    int pianoKeys = PianoRange::kDefaultKeys;  ///< one of PianoRange::kSizes
    bool showsWheels = false;                  ///< the strip of wheels and pedals beside the piano

    bool operator==(const ViewSettings&) const = default;

    /// The defaults where there is no such file or it cannot be read.
    static ViewSettings Read(const NK::CString& path);
    /// Leaves the other lines of the file alone. The piano's size and the strip are written where they are not the
    /// default or are there already. False, with the reason in NK::GetFileFailure(), when it cannot be written.
    bool Save(const NK::CString& path) const;
};
