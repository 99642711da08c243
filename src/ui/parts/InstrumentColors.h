// The colours of dialogs, menus and boxes: the panel's dark body, key caps, glass and green figures.
#pragma once

#include <QColor>

namespace InstrumentColors {

inline constexpr QColor kBody(0x2E, 0x30, 0x2A);
inline constexpr QColor kText(0xEC, 0xED, 0xE6);
inline constexpr QColor kDimText(0xA3, 0xA5, 0x9A);  ///< disabled

inline constexpr QColor kGlass(0x0C, 0x11, 0x0E);  ///< lists and fields
inline constexpr QColor kGlassBetween(0x13, 0x19, 0x15);
inline constexpr QColor kFigures(0x53, 0xFF, 0x95);  ///< in fields; also what is lit
inline constexpr QColor kDimFigures(0x93, 0xB8, 0xA2);
inline constexpr QColor kHint(0x9B, 0xA7, 0x9F);  ///< stands where nothing has been entered
inline constexpr QColor kLitInk(0x04, 0x15, 0x0B);
inline constexpr QColor kDimLit(0x3A, 0x4A, 0x40);
inline constexpr QColor kDimLitInk(0xC4, 0xCC, 0xC1);
inline constexpr QColor kEdge(0x8A, 0x8D, 0x80);  ///< round fields, marks and what else has to be seen

inline constexpr QColor kCapTop(0x50, 0x51, 0x54);
inline constexpr QColor kCap(0x3E, 0x3F, 0x42);
inline constexpr QColor kCapBottom(0x2C, 0x2D, 0x2F);
inline constexpr QColor kCapText(0xF0, 0xF0, 0xEC);
inline constexpr QColor kDimCapText(0xB8, 0xB9, 0xB4);

inline constexpr QColor kMenu(0x17, 0x18, 0x1A);
inline constexpr QColor kRing(0xFF, 0xFF, 0xFF);  ///< round what has the keyboard
inline constexpr QColor kLink(0x8F, 0xF0, 0xB8);
inline constexpr QColor kVisitedLink(0xB7, 0xC9, 0xBE);
inline constexpr QColor kWarning(0xFF, 0xC4, 0x57);
inline constexpr QColor kFailure(0xFF, 0x6A, 0x5E);

}  // namespace InstrumentColors
