#pragma once

#include "analysis/FourPoints.h"
#include "analysis/ResultMaps.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace orvel {

/// What noise of the absorptions does to a four-points solution, to first order. All points carry
/// noise, V included; references are taken for certain.
///
/// Three points: a and the edge step are differentiated by hand. Four points, exact or by least
/// squares: the fit is  S = c0 + c1 (E - E_V) + c2 (T - T_V), so that with r the jump ratio and
/// P = r / ((r + 1) (r B_V - A_V))
///     a = r B_V / (r B_V - A_V) - P c0,   t/ts = 2 / c2.
/// The noise sits in the regressor T: with M the normal matrix, phi_i = (1, E_i - E_V, T_i - T_V)
/// and rho_i = S_i - phi_i . c,
///     dc / dT_i = M^-1 (e_3 rho_i - c2 phi_i),   dc0 / dT_V = c2,   dc2 / dT_V = 0.
/// docs/numerics.md derives them.
class FourPointsPrecision {
public:
    FourPointsPrecision(Method method, const FourPointsPixels::Setup &setup)
        : m_method(method), m_setup(setup)
    {
    }

    /// Degrees of freedom of the line: 0 for three and for exact four points.
    int freedom() const { return m_method == Method::LeastSquares ? m_setup.points - 3 : 0; }

    /// Root of the mean squared difference between absorptions and fitted line, over the points
    /// other than V. Least squares only.
    void residuals(const double *const *values, std::size_t n, double *out) const;

    struct Planes {
        double *a = nullptr;
        double *valence = nullptr;
        double *amount = nullptr;
    };

    /// Standard deviations; not-a-number where a variance is, and for a and valence where the
    /// amount is within three of its own standard deviations from 0.
    /// values     [point][pixel] absorptions, those of V behind the others
    /// variances  [point][pixel] of the absorptions, likewise
    void sigmas(const double *const *values, const double *const *variances, std::size_t n,
                const Planes &planes) const;

private:
    Method m_method;
    FourPointsPixels::Setup m_setup;
};

/// Fills the planes SigmaRatio1, SigmaValence and SigmaAmount of a four-points map, and Residual
/// where there is one; and says in ResultMaps::precision() what noise was found. The same numbers
/// for any number of threads.
///
/// images  of the used points, in row order, V behind the others
void addFourPointsSigmas(ResultMaps &maps, const FourPointsPrecision &precision,
                         const std::vector<std::shared_ptr<const ImageData>> &images,
                         const PrecisionChoice &choice, const MapResources &resources);

} // namespace orvel
