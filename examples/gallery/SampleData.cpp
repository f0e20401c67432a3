#include "examples/gallery/SampleData.h"

#include <cmath>
#include <random>

namespace orvel::gallery {

Curve spectrum(double valence)
{
    Curve curve;
    const double edge = 7118.0 + 4.0 * (valence - 2.0);
    for (double energy = 7080.0; energy <= 7260.0; energy += 0.25) {
        const double e = energy - edge;
        const double step = std::atan(e / 1.5) / 3.14159265 + 0.5;
        const double peak = (0.3 + 0.1 * valence) * std::exp(-0.02 * (e - 6) * (e - 6));
        const double waves = 0.08 * std::sin(0.9 * std::sqrt(std::fabs(e))) * step;
        curve.x.push_back(energy);
        curve.y.push_back(step + peak + waves);
    }
    return curve;
}

Sample makeSample()
{
    constexpr struct {
        double x, y, radius, valence;
    } grains[] = {{24, 20, 15, 2.1}, {62, 26, 20, 2.9}, {40, 54, 14, 2.5}, {82, 58, 12, 3.0}};
    std::mt19937 random(1); // its numbers are the same everywhere; those of distributions are not
    const auto noise = [&random] { return static_cast<double>(random()) / 4294967296.0 - 0.5; };
    Sample sample;
    for (int j = 0; j < Sample::kHeight; ++j) {
        for (int i = 0; i < Sample::kWidth; ++i) {
            double amount = 0.05;
            double charge = 0.05 * 2.4;
            for (const auto &grain : grains) {
                const double d = std::hypot(i - grain.x, j - grain.y) / grain.radius;
                const double part = std::exp(-d * d * d * d);
                amount += part;
                charge += part * grain.valence;
            }
            sample.valence.push_back(charge / amount + 0.1 * (noise() + noise()));
            sample.thickness.push_back(amount + 0.1 * noise());
        }
    }
    return sample;
}

BinCounts histogramOf(const std::vector<double> &values, double from, double to, int boxes)
{
    BinCounts counts;
    counts.setUp({from, to, boxes, false});
    counts.count(values.data(), values.size());
    return counts;
}

} // namespace orvel::gallery
