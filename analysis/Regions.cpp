#include "analysis/Regions.h"

#include <algorithm>
#include <cmath>

namespace orvel {
namespace {

/// Corners of the outline, one after the other.
std::vector<RegionPoint> outlineOf(const Region &region)
{
    if (region.shape == Region::Shape::Polygon) {
        return region.corners;
    }
    const RegionPoint &a = region.corners[0];
    const RegionPoint &b = region.corners[1];
    return {a, {b.x, a.y}, b, {a.x, b.y}};
}

/// Where the horizontal line at y crosses the outline, ascending. An edge holds its lower end and
/// not its upper one, so that a corner on the line counts once, or twice at a tip.
void crossingsAt(double y, const std::vector<RegionPoint> &outline, std::vector<double> &crossings)
{
    crossings.clear();
    RegionPoint previous = outline.back();
    for (const RegionPoint &corner : outline) {
        if ((previous.y <= y) != (corner.y <= y)) {
            // From the lower end, whichever way round: neighbours get the same bits.
            const RegionPoint &low = previous.y < corner.y ? previous : corner;
            const RegionPoint &high = previous.y < corner.y ? corner : previous;
            crossings.push_back(low.x + (y - low.y) / (high.y - low.y) * (high.x - low.x));
        }
        previous = corner;
    }
    std::sort(crossings.begin(), crossings.end());
}

/// First pixel whose centre is not left of x, from 0 to width.
int firstPixelAt(double x, int width)
{
    return static_cast<int>(std::clamp(std::ceil(x - 0.5), 0.0, static_cast<double>(width)));
}

} // namespace

bool Region::isValid() const
{
    const auto isPlace = [](const RegionPoint &corner) { // false also for not-a-numbers
        return std::fabs(corner.x) <= kFarthest && std::fabs(corner.y) <= kFarthest;
    };
    if (colour < 1 || colour > kMostRegions ||
        !std::all_of(corners.begin(), corners.end(), isPlace)) {
        return false;
    }
    if (shape == Shape::Polygon) {
        return corners.size() >= 3 && corners.size() <= kMostCorners;
    }
    const auto isWhole = [](const RegionPoint &corner) {
        return corner.x == std::floor(corner.x) && corner.y == std::floor(corner.y);
    };
    return corners.size() == 2 && isWhole(corners[0]) && isWhole(corners[1]) &&
           corners[0].x < corners[1].x && corners[0].y < corners[1].y;
}

std::vector<PixelSpan> pixelsOf(const Region &region, int width, int height)
{
    std::vector<PixelSpan> spans;
    if (!region.isValid() || width <= 0 || height <= 0) {
        return spans;
    }
    const std::vector<RegionPoint> outline = outlineOf(region);
    const auto [lowest, highest] =
        std::minmax_element(outline.begin(), outline.end(),
                            [](const RegionPoint &a, const RegionPoint &b) { return a.y < b.y; });
    std::vector<double> crossings;
    const int beyond = firstPixelAt(highest->y, height);
    for (int row = firstPixelAt(lowest->y, height); row < beyond; ++row) {
        crossingsAt(row + 0.5, outline, crossings);
        for (size_t i = 0; i + 1 < crossings.size(); i += 2) {
            const PixelSpan span = {row, firstPixelAt(crossings[i], width),
                                    firstPixelAt(crossings[i + 1], width)};
            if (span.begin < span.end) {
                spans.push_back(span);
            }
        }
    }
    return spans;
}

qint64 countOf(const std::vector<PixelSpan> &spans)
{
    qint64 pixels = 0;
    for (const PixelSpan &span : spans) {
        pixels += span.end - span.begin;
    }
    return pixels;
}

bool contains(const Region &region, const RegionPoint &place)
{
    if (!region.isValid()) {
        return false;
    }
    std::vector<double> crossings;
    crossingsAt(place.y, outlineOf(region), crossings);
    const auto right = std::upper_bound(crossings.begin(), crossings.end(), place.x);
    return (crossings.end() - right) % 2 != 0;
}

} // namespace orvel
