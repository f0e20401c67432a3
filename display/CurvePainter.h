#pragma once

#include <QColor>

#include <cstddef>

class ChCoord;
class QPainter;

namespace orvel {

/// A line through n points in data coordinates, clipped to the frame; points that are no finite
/// number part it. Of points that fall into one column of device pixels only the first, the
/// least, the greatest and the last are drawn: the picture of a long spectrum costs no more than
/// the surface is wide. One pixel thin and smoothed.
void drawCurve(QPainter &painter, const ChCoord &coord, const double *x, const double *y,
               std::size_t n, const QColor &colour);

} // namespace orvel
