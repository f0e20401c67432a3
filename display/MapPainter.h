#pragma once

#include "display/ColourScale.h"

#include <QImage>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

class ChCoord;
class QPainter;

namespace orvel {

/// The values of a map, row by row from the bottom, x fastest.
struct MapValues {
    const double *values = nullptr;
    qint64 count = 0; ///< pixels beyond show the colour of 0
    int width = 0;
    int height = 0;
    /// What keeps the values alive and unchanged. Two maps with the same owner and the same
    /// address are the same map.
    std::weak_ptr<const void> owner;
    /// Beside the values, or null: pixels where this exceeds the limit or is no number are hidden.
    const double *sigma = nullptr;
    double sigmaLimit = 0.0;

    double at(qint64 i) const { return i < count ? values[i] : 0.0; } ///< pixel i as it is shown
    bool isHidden(qint64 i) const { return sigma != nullptr && !(sigma[i] <= sigmaLimit); }

    bool isEmpty() const { return width <= 0 || height <= 0; }
    qint64 size() const { return static_cast<qint64>(width) * height; }
    bool isSameAs(const MapValues &other) const;
};

/// Least and greatest value of the pixels, not-a-numbers and hidden ones left out; 1e300 and -1e300
/// without any.
struct ValueLimits {
    double low;
    double high;
};
ValueLimits limitsOf(const MapValues &map);

/// Paints a map as coloured rectangles.
///
/// Pixel (i, j) of the map covers the screen from trunc(sx(i)) to trunc(sx(i + 1)) and from
/// trunc(sy(j + 1)) to trunc(sy(j)), upper ends left out, wherever those are numbers. With the
/// grid, lines of one pixel run along all these edges. Hidden pixels are white. The picture is
/// built by scan lines in logical pixels and kept until something it depends on changes: painting
/// again is one copy.
class MapPainter {
public:
    /// Paints white, and the map if there is one, over the whole area of `coord`.
    void paint(QPainter &painter, const ChCoord &coord, const MapValues &map,
               const ColourScale &scale, bool grid);
    /// Forgets the picture.
    void clear() { m_isValid = false; }

private:
    /// Everything the picture depends on.
    struct Key {
        int width = 0;
        int height = 0;
        std::array<double, 4> frame = {};
        std::array<double, 4> range = {};
        bool grid = false;
        ColourScale scale;
        bool operator==(const Key &) const = default;
    };

    void render(const ChCoord &coord, const MapValues &map, const ColourScale &scale, bool grid);
    void renderRow(const MapValues &map, int row, const ColourScale &scale, QRgb *out);

    bool m_isValid = false;
    Key m_key;
    MapValues m_map;
    QImage m_image;
    std::vector<std::int32_t> m_columns; ///< map column of each screen column; -1: none
    std::vector<std::int32_t> m_rows;
    std::vector<double> m_line; ///< a row that reaches beyond the values
};

} // namespace orvel
