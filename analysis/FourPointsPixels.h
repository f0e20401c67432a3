#pragma once

#include "analysis/AnalysisInput.h"
#include "analysis/Checks.h"

#include <cstddef>

namespace orvel {

/// FourPoints::solve for many pixels: the same numbers to the bit, not-a-numbers at the same
/// places. Pixels lie side by side in vectors; the pivot search of the least-squares variant,
/// whose matrix holds the pixel's values, becomes a choice per lane.
class FourPointsPixels {
public:
    /// What all pixels share; points are those other than V, in row order.
    struct Setup {
        int points = 0; ///< at most kPointRows - 1
        double energies[kPointRows] = {};
        double refA[kPointRows] = {};
        double refB[kPointRows] = {};
        double energyV = 0.0;
        double refAV = 0.0;
        double refBV = 0.0;
        double jumpRatio = 0.0;
        double valenceA = 0.0;
        double valenceB = 0.0;
    };

    /// Where results go, a value a pixel.
    struct Planes {
        double *a = nullptr;
        double *valence = nullptr;
        double *amount = nullptr;
    };

    FourPointsPixels(Method method, const Setup &setup) : m_method(method), m_setup(setup) {}

    const Setup &setup() const { return m_setup; }

    /// values  [point][pixel] absorptions, those of V behind the others
    void solve(const double *const *values, std::size_t n, const Planes &planes) const;

private:
    Method m_method;
    Setup m_setup;
};

} // namespace orvel
