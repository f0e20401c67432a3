#pragma once

#include "analysis/BinCounts.h"

#include <vector>

namespace orvel::gallery {

/// A made-up absorption spectrum: an edge that moves with the valence, a peak, some waves.
struct Curve {
    std::vector<double> x; ///< eV
    std::vector<double> y;
};
Curve spectrum(double valence);

/// Made-up maps of one sample, row by row from the bottom.
struct Sample {
    static constexpr int kWidth = 96;
    static constexpr int kHeight = 72;
    std::vector<double> valence;
    std::vector<double> thickness;
};
Sample makeSample();

BinCounts histogramOf(const std::vector<double> &values, double from, double to, int boxes);

} // namespace orvel::gallery
