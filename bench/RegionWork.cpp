#include "bench/RegionWork.h"

#include "analysis/RegionStatistics.h"
#include "bench/Random.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace orvel::bench {
namespace {

constexpr int kSide = 1002;

class RegionStatsWork : public Work {
public:
    void prepare(Inputs & /*inputs*/) override
    {
        Random random(11);
        for (size_t i = 0; i < size_t{kSide} * kSide; ++i) {
            // A map has borders and holes: some thousand pixels are no number.
            const double value = 2.0 + 0.3 * random.normal();
            m_plane.push_back(i % 251 == 0 ? std::nan("") : value);
        }
        m_region.corners = {{1, 1}, {kSide - 1, kSide - 1}};
    }

    void run() override
    {
        m_spans = pixelsOf(m_region, kSide, kSide);
        m_found = m_statistician.of(m_plane.data(), kSide, m_spans);
    }

    QString check() const override
    {
        std::vector<double> values;
        long double sum = 0.0;
        for (int y = 1; y < kSide - 1; ++y) {
            for (int x = 1; x < kSide - 1; ++x) {
                const double value =
                    m_plane[static_cast<size_t>(y) * kSide + static_cast<size_t>(x)];
                if (std::isfinite(value)) {
                    values.push_back(value);
                    sum += value;
                }
            }
        }
        const auto n = static_cast<long double>(values.size());
        const long double mean = sum / n;
        long double squares = 0.0;
        for (const double value : values) {
            squares += (value - mean) * (value - mean);
        }
        std::sort(values.begin(), values.end());
        const size_t half = values.size() / 2;
        const double median =
            values.size() % 2 != 0 ? values[half] : 0.5 * values[half - 1] + 0.5 * values[half];
        const double deviation = std::sqrt(static_cast<double>(squares / (n - 1)));
        const bool isRight = std::fabs(m_found.mean - static_cast<double>(mean)) < 1e-12 &&
                             std::fabs(m_found.deviation - deviation) < 1e-12 &&
                             m_found.median == median && m_found.pixels == 1000000 &&
                             m_found.finite == static_cast<qint64>(values.size());
        return isRight ? QString() : QStringLiteral("mean %1").arg(m_found.mean, 0, 'g', 17);
    }

private:
    std::vector<double> m_plane;
    Region m_region;
    RegionStatistician m_statistician;
    std::vector<PixelSpan> m_spans;
    RegionStatistics m_found;
};

} // namespace

std::unique_ptr<Work> makeRegionStats()
{
    return std::make_unique<RegionStatsWork>();
}

} // namespace orvel::bench
