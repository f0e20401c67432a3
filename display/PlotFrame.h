#pragma once

class ChCoord;
class QPainter;
class QString;

namespace orvel {

/// Whether a surface is too small for texts in rows of the usual kind: they are placed by their
/// real widths then, in one size.
bool isSmallPlot(const ChCoord &coord);

/// The frame of a plot and the numbers at the ends of its axes: ymax and ymin to its left, xmin
/// and xmax below, in general format, cut to five and six characters.
/// clearMargins  paints what a curve left outside the frame white first
void drawPlotFrame(QPainter &painter, const ChCoord &coord, bool clearMargins);

/// An axis title below the frame, and one along the left edge of the surface, read upwards. Empty
/// ones draw nothing.
void drawAxisTitles(QPainter &painter, const ChCoord &coord, const QString &xTitle,
                    const QString &yTitle);

} // namespace orvel
