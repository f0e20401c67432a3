#pragma once

#include "analysis/NonEquiv.h"
#include "analysis/NonNegativeFit.h"

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

namespace orvel {

/// Covariance, for noise of standard deviation 1, of the weighted coefficients  w_i x_i  of a
/// non-equivalent fit, and what follows for its results. For independent noise of standard
/// deviation s on every absorption, with S = sum w_j x_j, r_i = w_i x_i / S, D the covariance and
/// 1 a vector of ones:
///     var(r_i) = (s / S)^2 (D_ii - 2 r_i (D 1)_i + r_i^2 1^T D 1)
///     var(V)   = (s / S)^2 (v^T D v - 2 V v^T D 1 + V^2 1^T D 1)
///     var(t)   = s^2 J^2 1^T D 1,   var(amount_i) = s^2 J^2 D_ii
/// to first order in s / S (docs/numerics.md).
struct ShareCovariance {
    double diagonal[kReferenceRows] = {}; ///< D_ii
    double rowSum[kReferenceRows] = {};   ///< (D 1)_i
    double total = 0.0;                   ///< 1^T D 1
    double valenceSquare = 0.0;           ///< v^T D v
    double valenceSum = 0.0;              ///< v^T D 1
};

/// Derivatives of the weighted coefficients with respect to the absorptions.
struct ShareSensitivity {
    int references = 0;
    int points = 0;
    double of[kReferenceRows][kPointRows] = {}; ///< [reference][point]

    /// variances  of the absorption at each point
    ShareCovariance covariance(const double *variances, const double *valences) const;
};

/// Standard deviations of one fit; not-a-number where not determined.
struct FitSigmas {
    std::array<double, kReferenceRows> ratios;
    std::array<double, kReferenceRows> amounts;
    double valence;
    double amount;

    FitSigmas();
};

/// What noise of the absorptions does to a non-equivalent fit, free or bounded: depends on
/// references, energies and background alone. Where bounds hold coefficients at 0 the covariance
/// is that of the fit without them: the bounds themselves are taken for certain.
class NonEquivPrecision {
public:
    explicit NonEquivPrecision(const RefValues &references);

    bool isRegular() const { return m_regular; } ///< else nothing is determined
    int points() const { return m_points; }
    int freedom() const { return m_freedom; } ///< points - unknowns; below 0: underdetermined
    /// Condition number of the matrix of the normal equations, 2-norm, as it is solved.
    double condition() const { return m_condition; }

    /// held  set of references held at 0, see NonNegativeFit::bound
    const ShareSensitivity &sensitivity(unsigned held = 0) const { return m_sensitivities[held]; }
    const ShareCovariance &covariance(unsigned held = 0) const { return m_covariances[held]; }

    /// Residual sum of squares of the free fit to y, one value a point.
    double residualSum(const std::vector<double> &y) const;

    /// Standard deviations of a result of NonEquivFit::fit.
    /// sigma  s, of an absorption; not positive or not-a-number: nothing is determined
    FitSigmas sigmas(const ResultVector &result, double sigma, unsigned held = 0) const;
    /// The same from a variance at each point, as many as points.
    FitSigmas sigmas(const ResultVector &result, const double *variances, unsigned held = 0) const;

private:
    FitSigmas sigmasFrom(const ResultVector &result, const ShareCovariance &covariance,
                         double sigma) const;

    std::vector<double> m_valences;
    double m_jump;
    int m_points;
    int m_freedom;
    bool m_regular = false;
    double m_condition;
    Rows m_complement;
    std::array<ShareSensitivity, NonNegativeFit::kMostSets> m_sensitivities;
    std::array<ShareCovariance, NonNegativeFit::kMostSets> m_covariances;
};

/// Fills the planes SigmaRatio1 ... SigmaAmount of a non-equivalent map from its results, its
/// Residual plane and, for counted photons, the intensities of its images; and says in
/// ResultMaps::precision() what noise was found. The same numbers for any number of threads.
///
/// images  of the used points, in row order
void addNonEquivSigmas(ResultMaps &maps, const RefValues &references,
                       const std::vector<std::shared_ptr<const ImageData>> &images,
                       const PrecisionChoice &choice, const MapResources &resources);

} // namespace orvel
