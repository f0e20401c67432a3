#include "display/MapPainter.h"

#include "base/Simd.h"
#include "display/ChCoord.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace orvel {
namespace {

constexpr QRgb kGridColour = qRgb(200, 200, 200);
constexpr int kLongestSide = 1 << 15;

/// Which map column (row) covers each screen column (row).
/// edge(i)  screen position of the edge between columns i - 1 and i, 0 <= i <= n; monotonic
/// It is found by bisection, so that a deep zoom into a long map costs what the screen is wide.
template <class Edge>
void fillOwners(int n, Edge edge, bool rising, std::vector<std::int32_t> &owners)
{
    const auto reached = [&](int i, int s) { return std::trunc(edge(i)) <= s; };
    for (int s = 0; s < static_cast<int>(owners.size()); ++s) {
        int low = 0; // rising: edges up to here are at or before s; else: from `high` on
        int high = n;
        while (high - low > 1) {
            const int middle = low + (high - low) / 2;
            if (reached(middle, s) == rising) {
                low = middle;
            } else {
                high = middle;
            }
        }
        const int near = rising ? low : high; // the edge that the pixel starts at
        const int far = rising ? high : low;
        const bool covers = reached(near, s) && std::trunc(edge(far)) > s &&
                            std::isfinite(edge(near)) && std::isfinite(edge(far));
        owners[static_cast<std::size_t>(s)] = covers ? low : -1;
    }
}

/// Calls draw(s) for each screen position of an edge within 0 .. size - 1.
template <class Edge, class Draw> void forEachEdge(int n, Edge edge, int size, Draw draw)
{
    for (int i = 0; i <= n; ++i) {
        const double s = std::trunc(edge(i));
        if (s >= 0.0 && s < size) {
            draw(static_cast<int>(s));
        }
    }
}

/// First and last screen position that grid lines across reach.
struct Extent {
    int first;
    int last;
};
template <class Edge> Extent extentOf(int n, Edge edge, int size)
{
    const double a = std::trunc(edge(0));
    const double b = std::trunc(edge(n));
    if (!std::isfinite(a) || !std::isfinite(b)) {
        return {0, -1};
    }
    return {static_cast<int>(std::clamp(std::min(a, b), 0.0, static_cast<double>(size))),
            static_cast<int>(std::clamp(std::max(a, b), -1.0, size - 1.0))};
}

/// Widens limits to n values; what is not comparable is left out.
ORVEL_INLINE void widenBody(const double *values, qint64 n, ValueLimits &limits)
{
    constexpr qint64 kRows = 4; // independent of each other, so that comparisons overlap
    Lanes low[kRows];
    Lanes high[kRows];
    for (qint64 r = 0; r < kRows; ++r) {
        for (int lane = 0; lane < kLanes; ++lane) {
            low[r][lane] = limits.low;
            high[r][lane] = limits.high;
        }
    }
    constexpr qint64 kStep = kRows * kLanes;
    qint64 i = 0;
    for (; i + kStep <= n; i += kStep) {
        for (qint64 r = 0; r < kRows; ++r) {
            Lanes value;
            std::memcpy(&value, values + i + r * kLanes, sizeof value);
            low[r] = value < low[r] ? value : low[r];
            high[r] = value > high[r] ? value : high[r];
        }
    }
    const auto take = [&limits](double least, double greatest) {
        limits.low = least < limits.low ? least : limits.low;
        limits.high = greatest > limits.high ? greatest : limits.high;
    };
    for (qint64 r = 0; r < kRows; ++r) {
        for (int lane = 0; lane < kLanes; ++lane) {
            take(low[r][lane], high[r][lane]);
        }
    }
    for (; i < n; ++i) {
        take(values[i], values[i]);
    }
}

ORVEL_KERNEL(widen, (const double *values, qint64 n, ValueLimits &limits), (values, n, limits))

} // namespace

bool MapValues::isSameAs(const MapValues &other) const
{
    return values == other.values && count == other.count && width == other.width &&
           height == other.height && sigma == other.sigma && sigmaLimit == other.sigmaLimit &&
           !owner.owner_before(other.owner) && !other.owner.owner_before(owner);
}

ValueLimits limitsOf(const MapValues &map)
{
    ValueLimits limits = {1e300, -1e300};
    const qint64 n = std::min(map.count, map.size());
    if (map.sigma != nullptr) {
        for (qint64 i = 0; i < n; ++i) {
            if (!map.isHidden(i)) {
                widen(map.values + i, 1, limits);
            }
        }
        return limits;
    }
    widen(map.values, n, limits);
    if (n < map.size()) { // the rest reads 0
        limits.low = std::min(limits.low, 0.0);
        limits.high = std::max(limits.high, 0.0);
    }
    return limits;
}

void MapPainter::paint(QPainter &painter, const ChCoord &coord, const MapValues &map,
                       const ColourScale &scale, bool grid)
{
    const auto extent = [](double a, double b) {
        return static_cast<int>(std::clamp(std::fabs(b - a), 0.0, double(kLongestSide)));
    };
    const int width = extent(coord.areaX0(), coord.areaX1());
    const int height = extent(coord.areaY0(), coord.areaY1());
    if (map.isEmpty() || width == 0 || height == 0) {
        painter.fillRect(0, 0, width, height, Qt::white);
        return;
    }
    const Key key = {width,
                     height,
                     {coord.frameX0(), coord.frameX1(), coord.frameY0(), coord.frameY1()},
                     {coord.xMin(), coord.xMax(), coord.yMin(), coord.yMax()},
                     grid,
                     scale};
    if (!m_isValid || !(key == m_key) || !map.isSameAs(m_map)) {
        if (m_image.width() != width || m_image.height() != height) {
            m_image = QImage(width, height, QImage::Format_RGB32);
        }
        if (m_image.isNull()) {
            return; // no memory for it
        }
        render(coord, map, scale, grid);
        m_key = key;
        m_map = map;
        m_isValid = true;
    }
    painter.drawImage(0, 0, m_image);
}

void MapPainter::render(const ChCoord &coord, const MapValues &map, const ColourScale &scale,
                        bool grid)
{
    const auto xEdge = [&coord](int i) { return coord.sx(i); };
    const auto yEdge = [&coord](int j) { return coord.sy(j); };
    m_columns.resize(static_cast<std::size_t>(m_image.width()));
    m_rows.resize(static_cast<std::size_t>(m_image.height()));
    fillOwners(map.width, xEdge, coord.sdx(1.0) > 0.0, m_columns);
    fillOwners(map.height, yEdge, coord.sdy(1.0) > 0.0, m_rows);

    const auto lineBytes = static_cast<std::size_t>(m_image.width()) * sizeof(QRgb);
    uchar *const bits = m_image.bits();
    const auto line = [&](int y) {
        return reinterpret_cast<QRgb *>(bits + static_cast<qint64>(y) * m_image.bytesPerLine());
    };
    for (int y = 0; y < m_image.height(); ++y) {
        const std::int32_t row = m_rows[static_cast<std::size_t>(y)];
        if (y > 0 && row == m_rows[static_cast<std::size_t>(y - 1)]) {
            std::memcpy(line(y), line(y - 1), lineBytes);
        } else if (row < 0) {
            std::fill_n(line(y), m_image.width(), qRgb(255, 255, 255));
        } else {
            renderRow(map, row, scale, line(y));
        }
    }
    if (grid) {
        const Extent across = extentOf(map.width, xEdge, m_image.width());
        const Extent along = extentOf(map.height, yEdge, m_image.height());
        forEachEdge(map.width, xEdge, m_image.width(), [&](int x) {
            for (int y = along.first; y <= along.last; ++y) {
                line(y)[x] = kGridColour;
            }
        });
        forEachEdge(map.height, yEdge, m_image.height(), [&](int y) {
            for (int x = across.first; x <= across.last; ++x) {
                line(y)[x] = kGridColour;
            }
        });
    }
}

void MapPainter::renderRow(const MapValues &map, int row, const ColourScale &scale, QRgb *out)
{
    const qint64 begin = static_cast<qint64>(row) * map.width;
    const double *values = map.values + begin;
    if (begin + map.width > map.count) {
        const qint64 there = std::max<qint64>(0, map.count - begin);
        m_line.assign(static_cast<std::size_t>(map.width), 0.0);
        std::copy_n(map.values + std::min(begin, map.count), there, m_line.begin());
        values = m_line.data();
    }
    scale.coloursOf(values, m_columns.data(), m_image.width(), out);
    for (int x = 0; map.sigma != nullptr && x < m_image.width(); ++x) {
        const int column = m_columns[static_cast<std::size_t>(x)];
        if (column >= 0 && begin + column < map.count && map.isHidden(begin + column)) {
            out[x] = qRgb(255, 255, 255);
        }
    }
}

} // namespace orvel
