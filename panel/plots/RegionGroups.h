#pragma once

#include "analysis/BinCounts.h"
#include "analysis/Regions.h"
#include "display/MapPainter.h"

#include <QColor>

#include <vector>

class CColors;

namespace orvel {

/// What the plots show of one region.
struct RegionGroup {
    std::vector<PixelSpan> pixels;
    QColor colour;
    BinCounts shown; ///< of the quantity that the histogram shows
    BinCounts amounts;
};

/// Pixels and colours of the regions in a map of that size.
std::vector<RegionGroup> groupsOf(const std::vector<Region> &regions, int width, int height,
                                  const CColors &colours);

/// Counts values of some pixels in the boxes of `like`; pixels that `shown` hides are left out.
BinCounts countsOf(const std::vector<PixelSpan> &pixels, const MapValues &values,
                   const MapValues &shown, const BinCounts &like);

} // namespace orvel
