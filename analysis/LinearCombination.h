#pragma once

#include "analysis/AnalysisInput.h"
#include "analysis/Checks.h"

#include <vector>

namespace orvel {

/// What the residuals of a linear combination fit tell. Noise is taken as independent and equal at
/// all points, the references as certain; s is in normalised units, where an edge jump is 1.
/// Not-a-number where not determined.
struct LcfPrecision {
    LcfPrecision();

    std::vector<double> sigmaRatios; ///< one standard deviation of each ratio
    double sigmaValence;             ///< of the valence, which goes by the coefficients
    double sigma;                    ///< s, from the residuals or as given
    int points = 0;
    int freedom = 0;  ///< points minus unknowns, constraints counted
    double rFactor;   ///< sum of (y - fit)^2 over sum of y^2
    double condition; ///< of the normal matrix, 2-norm
    double chiSquare; ///< reduced, for a given s of an absorption
};

/// Linear combination fit of the target by the references, all normalised by both Victoreen lines
/// (AMutE::By2Victoreens), over the target's points in a range of energies:
///     y(E) = sum_k x_k R_k(E) + base
///
/// With bounds (LcfBounds) the residual sum of squares is least over x_k >= 0, over S = 1, or over
/// both; the base stays free. Every set of references held at 0 is tried, which is exact.
struct LcfResult {
    std::vector<double> ratios; ///< x_k / S of each valid reference, S = sum of the x_k
    std::vector<int> rows;      ///< their rows
    double valence = 0.0;       ///< sum of x_k valence_k: by the coefficients, not the ratios
    double base = 0.0;          ///< the constant, not divided by S
    AMutE curve;                ///< the fitted curve at the fitted points

    unsigned held = 0; ///< references that bounds hold at 0, bit k for x_k
    LcfPrecision precision;
};

/// plan  with run set, made from the same input. A singular system (equal references, fewer points
/// than unknowns) gives infinities or not-a-numbers.
LcfResult fitLinearCombination(const AnalysisInput &input, const LcfPlan &plan);

} // namespace orvel
