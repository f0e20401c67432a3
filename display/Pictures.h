#pragma once

#include "display/HistogramPainter.h"
#include "display/MapPainter.h"

#include <QImage>
#include <QRect>
#include <QString>

class ChCoord;

namespace orvel {

// Maps and histograms as pictures of their own, for reports and folders of results. All sizes are
// pixels; texts are drawn in the application's font and left out where none is installed.

struct MapPicture {
    QString title;
    MapValues map;
    ColourScale scale;
};

/// A map with square pixels below its title, beside its colour bar with round values and the
/// limits. Pixels that are no finite number are grey, and the line below the map counts them.
/// Small maps are magnified by a whole number to some 500 to 1000 pixels; larger ones are shown
/// pixel by pixel or reduced to 1000, leaving out what falls between. A map longer than a
/// thousand times its width is drawn wider than it is. Null when there is no memory.
QImage renderMap(const MapPicture &picture);

struct HistogramPicture {
    QString title;
    QString xTitle;
    QString yTitle;
    double low; ///< limits as entered: the centres of the first and the last box
    double high;
    HistogramBars bars;
    std::int32_t largest;   ///< of the counts
    std::int32_t underflow; ///< values beside the boxes
    std::int32_t overflow;
};

/// A histogram with frame and labels below its title; the line below says how many values lie
/// outside, if any.
QImage renderHistogram(const HistogramPicture &picture);

/// Width of the labels beside a bar [logical pixels].
inline constexpr int kBarLabels = 118;
/// A colour bar with its limits at the ends and round values between, where they have room; the
/// labels stand to its right, the outer ones half above and half below the box.
void drawLabelledBar(QPainter &painter, const QRect &box, const ColourScale &scale);

/// Room for the axes left of and below a map [logical pixels].
inline constexpr int kAxisLeft = 58;
inline constexpr int kAxisBottom = 38;
/// Round positions along the left and the lower edge of a map whose surface begins at the
/// painter's origin, and what they count: pixels of the map, from the lower left corner.
void drawMapAxes(QPainter &painter, const ChCoord &coord);

} // namespace orvel
