#pragma once

#include "analysis/AnalysisInput.h"
#include "analysis/Checks.h"
#include "analysis/LinearSystem.h"
#include "analysis/ResultMaps.h"

#include <array>
#include <vector>

namespace orvel {

/// References, energies and background that curves are decomposed by; the same for all pixels.
struct RefValues {
    std::vector<double> energiesEv;          ///< of the used points, in row order
    std::vector<std::vector<double>> values; ///< [valid reference][point], minus a Victoreen line
    std::vector<double> jumpShares;          ///< w_i = J_i / J of each valid reference
    double jump = 0.0;                       ///< J, sum of the edge jumps J_i
    std::vector<double> valences;
    std::vector<int> rows; ///< reference rows of the valid references
    bool victoreen = true; ///< background c0 + c1 lambda^3 + c2 lambda^4; otherwise c0 + c1 E

    size_t references() const { return values.size(); }
    int unknowns() const { return static_cast<int>(references()) + (victoreen ? 3 : 2); }
};

/// Gathers from the spectra, in full precision.
RefValues gatherRefValues(const AnalysisInput &input, const Plan &plan);

/// Result of one fit, in the order of Quantity.
using ResultVector = std::array<double, kQuantities>;

/// Decomposes a curve y(E) into  sum_i x_i R_i(E) + background(E)  by linear least squares over
/// the used points (normal equations). From the x_i follow
///     ratio_i = w_i x_i / S,  S = sum_j w_j x_j
///     t = S J = sum_i J_i x_i       total edge jump of the curve
///     amount_i = ratio_i t,  valence = sum_i ratio_i valence_i
/// A singular system, or no valid reference, gives infinities or not-a-numbers.
class NonEquivFit {
public:
    explicit NonEquivFit(RefValues references);

    const RefValues &references() const { return m_references; }
    /// Basis functions at the used points, [point][unknown].
    const std::vector<std::vector<double>> &basis() const { return m_basis; }

    /// y  one value for each used point
    ResultVector fit(const std::vector<double> &y);

private:
    RefValues m_references;
    std::vector<std::vector<double>> m_basis; ///< [point][unknown]
    LinearSystem m_system;
};

/// The target's values at the used points, minus the line chosen for it.
std::vector<double> targetValues(const AnalysisInput &input, const Plan &plan);

/// The fit of every pixel.
ResultMaps nonEquivMap(const AnalysisInput &input, const Plan &plan,
                       const MapResources &resources = {});

} // namespace orvel
