#pragma once

#include <QColor>
#include <QPolygonF>
#include <QString>

class ChCoord;
class QPainter;

namespace orvel {

/// The outline of a part of a map.
struct OutlinedShape {
    QPolygonF corners; ///< real coordinates
    QColor colour;
    QString label = QString(); ///< painted at the uppermost corner
    bool isSelected = false;   ///< corners are marked
    bool isOpen = false;       ///< still being drawn: dashes, not closed
};

/// Draws an outline between a black and a white line, so that it shows on any palette.
void drawOutline(QPainter &painter, const ChCoord &coord, const OutlinedShape &shape);

} // namespace orvel
