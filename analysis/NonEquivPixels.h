#pragma once

#include "analysis/NonEquiv.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace orvel {

class NonNegativeFit;

/// NonEquivFit::fit for many pixels: the same numbers to the bit, not-a-numbers at the same
/// places. The matrix of the normal equations is the same for all pixels, so it is decomposed
/// once; its columns are put into the order of the pivots once; pixels lie side by side in
/// vectors, and every pixel's operations keep their order.
class NonEquivPixels {
public:
    static constexpr int kMostUnknowns = kReferenceRows + 3;

    /// At most kMostUnknowns unknowns and kPointRows points.
    explicit NonEquivPixels(const RefValues &references);

    /// values  [point][pixel] absorptions
    /// n       number of pixels
    /// planes  [quantity][pixel] results up to Residual; a null plane is left out
    void fit(const double *const *values, std::size_t n, double *const *planes) const;

    /// The same with bounds. Pixels that touch none get the same bits as by fit().
    /// held  [pixel] out: see NonNegativeFit::bound
    void fitBounded(const double *const *values, std::size_t n, const NonNegativeFit &bounds,
                    double *const *planes, std::uint8_t *held) const;

    /// What a kernel needs, in the order of the pivots: row k is the k-th pivot row.
    struct Factors {
        int points = 0;
        int references = 0;
        double basis[kPointRows][kMostUnknowns] = {}; ///< [point][k]
        double lower[kMostUnknowns][kMostUnknowns] = {};
        double upper[kMostUnknowns][kMostUnknowns] = {};
        double shares[kReferenceRows] = {};
        double valences[kReferenceRows] = {};
        double jump = 0.0;
        int freedom = 0; ///< number of vectors that span what no fit reaches
        double complement[kPointRows][kPointRows] = {}; ///< [vector][point]
    };

private:
    Factors m_factors;
    int m_unknowns;
};

/// A single fit with bounds: one pixel of fitBounded.
/// held      out: references held at 0
/// residual  out: root of the mean squared residual
ResultVector fitNonNegative(const RefValues &references, const std::vector<double> &y,
                            unsigned &held, double &residual);

} // namespace orvel
