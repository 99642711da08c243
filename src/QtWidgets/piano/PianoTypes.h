// Types in the properties and signals of the piano. [owner]
#pragma once

#include <QMetaType>
#include <QString>

#include <array>
#include <cstdint>

/// Note numbers and velocities.
using BYTE = std::uint8_t;

/// A small text for each of the 128 notes.
struct TNoteText {
    std::array<QString, 128> texts;

    friend bool operator==(const TNoteText& a, const TNoteText& b) { return a.texts == b.texts; }
};
Q_DECLARE_METATYPE(TNoteText)
