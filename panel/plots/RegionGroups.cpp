#include "panel/plots/RegionGroups.h"

#include "display/CColors.h"

namespace orvel {

std::vector<RegionGroup> groupsOf(const std::vector<Region> &regions, int width, int height,
                                  const CColors &colours)
{
    std::vector<RegionGroup> groups;
    for (const Region &region : regions) {
        groups.push_back({pixelsOf(region, width, height), colours.colour(region.colour), {}, {}});
    }
    return groups;
}

BinCounts countsOf(const std::vector<PixelSpan> &pixels, const MapValues &values,
                   const MapValues &shown, const BinCounts &like)
{
    BinCounts counts = like;
    counts.clear();
    for (const PixelSpan &span : pixels) {
        const qint64 row = static_cast<qint64>(span.row) * values.width;
        if (row + span.end > values.count) { // also without any values
            break;
        }
        for (qint64 i = row + span.begin; i < row + span.end; ++i) {
            if (!shown.isHidden(i)) {
                counts.count(values.values[i]);
            }
        }
    }
    return counts;
}

} // namespace orvel
