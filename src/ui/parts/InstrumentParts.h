// Parts of the instrument that dialogs and menus are made of, drawn as on the panel. [gui]
#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

/// Sizes in logical pixels.
namespace InstrumentParts {

enum class CapState { kUp, kHovered, kDown, kDisabled };

/// A key cap in its socket.
void DrawCap(QPainter& painter, const QRectF& socket, CapState state);
/// The lit bar in the upper part of a cap, which marks the key that Enter presses.
void DrawCapLamp(QPainter& painter, const QRectF& socket);
/// A pane of dark glass with its edge.
void DrawGlass(QPainter& painter, const QRectF& pane, const QColor& edge, double edgeWidth = 1.0);
/// A shallow milled plate.
void DrawPlate(QPainter& painter, const QRectF& plate);
/// Round what has the keyboard; drawn inside the area.
void DrawRing(QPainter& painter, const QRectF& area, double radius);

/// A tick, a dot and arrow heads, sized to fit the area.
void DrawTick(QPainter& painter, const QRectF& area, const QColor& color);
void DrawDot(QPainter& painter, const QRectF& area, const QColor& color);
void DrawChevron(QPainter& painter, const QRectF& area, Qt::ArrowType direction, const QColor& color);

}  // namespace InstrumentParts
