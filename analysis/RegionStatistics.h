#pragma once

#include "analysis/Regions.h"
#include "analysis/ResultMaps.h"
#include "base/Column.h"

#include <limits>
#include <vector>

namespace orvel {

/// What is said about one quantity in one region. Only finite pixels enter; what they do not
/// determine is not-a-number: everything without any, the deviation of a single one.
struct RegionStatistics {
    double mean = std::numeric_limits<double>::quiet_NaN();
    double deviation = std::numeric_limits<double>::quiet_NaN(); ///< of the pixels, n - 1
    double median = std::numeric_limits<double>::quiet_NaN(); ///< of an even number: middle of two
    qint64 finite = 0;
    qint64 pixels = 0;
};

/// Gathers and sums in a fixed order, on the calling thread: the same bits wherever it runs.
class RegionStatistician {
public:
    /// Statistics of the pixels of a region. `spans` lie within the maps.
    RegionStatistics of(const ResultMaps &maps, Quantity quantity,
                        const std::vector<PixelSpan> &spans);
    /// The same for a plane of `width` pixels a row.
    RegionStatistics of(const double *plane, int width, const std::vector<PixelSpan> &spans);

private:
    RegionStatistics summed(qint64 pixels, std::size_t finite);
    RegionStatistics summedScaled(qint64 pixels, std::size_t finite);

    Column m_values; ///< the finite ones; kept, so that a table allocates once
    Column m_middle;
};

/// Whether a quantity of the maps says something: its method fills it, and it belongs to one of the
/// references that take part and not to a term that the background lacks (their planes hold 0).
///
/// references  how many valid ones take part
bool isDetermined(const ResultMaps &maps, int references, Quantity quantity);

} // namespace orvel
