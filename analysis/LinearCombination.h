#pragma once

#include "analysis/AnalysisInput.h"
#include "analysis/Checks.h"

#include <vector>

namespace orvel {

/// Linear combination fit of the target by the references, all normalised by both Victoreen lines
/// (AMutE::By2Victoreens), over the target's points in a range of energies:
///     y(E) = sum_k x_k R_k(E) + base
struct LcfResult {
    std::vector<double> ratios; ///< x_k / S of each valid reference, S = sum of the x_k
    std::vector<int> rows;      ///< their rows
    double valence = 0.0;       ///< sum of x_k valence_k: by the coefficients, not the ratios
    double base = 0.0;          ///< the constant, not divided by S
    AMutE curve;                ///< the fitted curve at the fitted points
};

/// plan  with run set, made from the same input. A singular system (equal references, fewer points
/// than unknowns) gives infinities or not-a-numbers.
LcfResult fitLinearCombination(const AnalysisInput &input, const LcfPlan &plan);

} // namespace orvel
