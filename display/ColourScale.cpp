#include "display/ColourScale.h"

#include "analysis/ToInt32.h"
#include "base/Simd.h"
#include "display/ChCoord.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace orvel {
namespace {

constexpr int kSteps = 256;

/// The corners of the colour cube that each palette runs through.
struct Corners {
    int count;
    QRgb corner[4];
};
constexpr QRgb kBlack = qRgb(0, 0, 0);
constexpr QRgb kWhite = qRgb(255, 255, 255);
constexpr QRgb kRed = qRgb(255, 0, 0);
constexpr QRgb kGreen = qRgb(0, 255, 0);
constexpr QRgb kBlue = qRgb(0, 0, 255);
constexpr QRgb kYellow = qRgb(255, 255, 0);
constexpr QRgb kCyan = qRgb(0, 255, 255);
constexpr QRgb kMagenta = qRgb(255, 0, 255);
constexpr Corners kCorners[ColourScale::kTypes] = {
    {4, {kBlack, kRed, kYellow, kWhite}},   {4, {kBlack, kGreen, kCyan, kWhite}},
    {4, {kBlack, kBlue, kMagenta, kWhite}}, {3, {kRed, kGreen, kBlue, 0}},
    {3, {kRed, kBlue, kGreen, 0}},          {3, {kGreen, kRed, kBlue, 0}},
    {3, {kGreen, kBlue, kRed, 0}},          {3, {kBlue, kRed, kGreen, 0}},
    {3, {kBlue, kGreen, kRed, 0}},          {2, {kRed, kCyan, 0, 0}},
    {2, {kGreen, kMagenta, 0, 0}},          {2, {kBlue, kYellow, 0, 0}},
};

/// Every component runs up, runs down or stays.
QRgb between(QRgb from, QRgb to, int step)
{
    const auto component = [step](int a, int b) {
        return a == b ? a : b > a ? step : kSteps - 1 - step;
    };
    return qRgb(component(qRed(from), qRed(to)), component(qGreen(from), qGreen(to)),
                component(qBlue(from), qBlue(to)));
}

struct Mapping {
    double scale;
    double zMin;
    double bottom;
    std::int32_t last; ///< greatest index
    bool inverted;
};

/// Indices of n values next to each other.
ORVEL_INLINE void indicesBody(const Mapping &mapping, const double *values, int n,
                              std::int32_t *out)
{
    constexpr double kBeyond = 2147483648.0; // from here toInt32() gives its lowest number
    const auto last = static_cast<double>(mapping.last);
    const std::int32_t offset = mapping.inverted ? mapping.last : 0;
    const std::int32_t flip = mapping.inverted ? -1 : 0; // offset - k = offset + (~k + 1)
    for (int i = 0; i < n; ++i) {
        const double k = mapping.scale * (values[i] - mapping.zMin) + mapping.bottom;
        const double atMost = k < last ? k : last;
        const double inside = k > 0.0 && k < kBeyond ? atMost : 0.0;
        out[i] = offset + ((static_cast<std::int32_t>(inside) ^ flip) - flip);
    }
}

ORVEL_KERNEL(indices, (const Mapping &mapping, const double *values, int n, std::int32_t *out),
             (mapping, values, n, out))

int rowOf(double screenY)
{
    constexpr double kFar = 1e6;
    return static_cast<int>(std::clamp(std::isnan(screenY) ? kFar : screenY, -kFar, kFar));
}

} // namespace

void ColourScale::setType(int type)
{
    m_type = type >= 0 && type < kTypes ? type : 0;
    const Corners &corners = kCorners[m_type];
    m_palette.clear();
    for (int corner = 1; corner < corners.count; ++corner) {
        for (int step = 0; step < kSteps; ++step) {
            m_palette.push_back(between(corners.corner[corner - 1], corners.corner[corner], step));
        }
    }
    m_bottom = lowerIndex();
    m_top = upperIndex();
}

void ColourScale::setLimits(double zMin, double zMax)
{
    m_zMin = zMin;
    m_zMax = zMax;
}

void ColourScale::setStretch(double bottom, double top)
{
    m_bottom = bottom;
    m_top = top;
}

int ColourScale::indexOf(double value) const
{
    return std::clamp(toInt32(scale() * (value - m_zMin) + m_bottom), 0, size() - 1);
}

void ColourScale::coloursOf(const double *values, const std::int32_t *columns, int n,
                            QRgb *out) const
{
    const Mapping mapping = {scale(), m_zMin, m_bottom, size() - 1, m_isInverted};
    // Only the arithmetic between is done in vectors: their gather instructions are slower than
    // plain loads on many processors.
    constexpr int kBlock = 512;
    double block[kBlock];
    std::int32_t entries[kBlock];
    int begin = 0;
    for (; begin < n && columns[begin] < 0; ++begin) {
        out[begin] = kWhite;
    }
    for (; n > begin && columns[n - 1] < 0; --n) {
        out[n - 1] = kWhite;
    }
    for (; begin < n; begin += kBlock) {
        const int length = std::min(kBlock, n - begin);
        const std::int32_t *const column = columns + begin;
        for (int i = 0; i < length; ++i) {
            block[i] = values[column[i]];
        }
        indices(mapping, block, length, entries);
        for (int i = 0; i < length; ++i) {
            out[begin + i] = m_palette[static_cast<std::size_t>(entries[i])];
        }
    }
}

LimitLines drawColourBar(QPainter &painter, ChCoord &coord, const ColourScale &scale)
{
    coord.setRange(0.0, scale.bottom(), 1.0, scale.top());
    const int left = static_cast<int>(coord.areaX0());
    const int width = static_cast<int>(coord.areaX1() - coord.areaX0());
    const int height = static_cast<int>(coord.areaY0());
    const auto band = [&](double from, double to, QRgb colour) {
        const int top = std::min(rowOf(from), rowOf(to));
        painter.fillRect(left, top, width, std::abs(rowOf(to) - rowOf(from)), QColor(colour));
    };
    const double upper = coord.sy(scale.upperIndex());
    const double lower = coord.sy(ColourScale::lowerIndex());
    band(lower, coord.sy(scale.bottom()), kBlack);
    const int downwards = rowOf(coord.sdy(1.0) + 1.0); // when the range is turned round
    int below = rowOf(lower) + 1;
    for (int i = 0; i < scale.size(); ++i) {
        // At least a row each; on a tall bar up to the entry below, so that no gaps show.
        const int row = rowOf(coord.sy(i));
        painter.fillRect(left, row, width, std::max({1, below - row, downwards}),
                         QColor(scale.shownEntry(i)));
        below = row;
    }
    band(coord.sy(scale.top()), upper, kWhite);

    const auto line = [&](double position) {
        const int row = std::clamp(rowOf(position), 0, std::max(0, height - 1));
        painter.fillRect(left, row, width, 1, QColor(150, 255, 150));
        return row;
    };
    return {line(upper), line(lower)};
}

} // namespace orvel
