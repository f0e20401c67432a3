#pragma once

#include <QtGlobal>

#include <vector>

namespace orvel {

inline constexpr int kMostRegions = 14;  ///< the plot list has so many colours beside black
inline constexpr int kMostCorners = 256; ///< of one polygon
inline constexpr double kFarthest = 1e8; ///< coordinates beyond it are no place in any map

/// A place in a map, in pixels: pixel (i, j) covers i <= x < i + 1, j <= y < j + 1.
struct RegionPoint {
    double x = 0.0;
    double y = 0.0;
    bool operator==(const RegionPoint &) const = default;
};

/// A part of a map whose pixels are looked at together.
struct Region {
    enum class Shape { Rectangle, Polygon };

    Shape shape = Shape::Rectangle;
    int colour = 1; ///< index in the plot list, 1 to kMostRegions
    /// Rectangle: least and greatest corner, whole numbers, so that it holds whole pixels.
    /// Polygon: 3 to kMostCorners corners; it may cross itself.
    std::vector<RegionPoint> corners;

    bool isValid() const;
    bool operator==(const Region &) const = default;
};

/// Pixels begin <= x < end of one row.
struct PixelSpan {
    int row = 0;
    int begin = 0;
    int end = 0;
    bool operator==(const PixelSpan &) const = default;
};

/// The pixels of a map of width * height whose centres lie inside a region, by the even-odd rule:
/// spans by row, then from left to right, none empty, none overlapping. Two polygons that share an
/// edge share no pixel and leave none out. Cost O(height * corners).
/// An invalid region holds no pixel.
std::vector<PixelSpan> pixelsOf(const Region &region, int width, int height);

qint64 countOf(const std::vector<PixelSpan> &spans);

/// Whether a place lies inside, by the same rule.
bool contains(const Region &region, const RegionPoint &place);

} // namespace orvel
