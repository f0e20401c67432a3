#pragma once

#include "analysis/Checks.h"
#include "analysis/NonEquiv.h"
#include "analysis/SmallQr.h"

#include <array>
#include <vector>

namespace orvel {

/// Energies chosen among candidates, by their numbers; of the four-points methods V comes first.
struct Design {
    int count = 0; ///< at most kPointRows
    std::array<int, kPointRows> at = {};
};

// What a search asks for a hundred thousand times: variances for noise of standard deviation 1,
// without allocation. They equal those of NonEquivPrecision and FourPointsPrecision up to rounding.

/// Variances of linear combinations of the weighted coefficients  w_i x_i  of a non-equivalent fit.
///
/// With the model matrix of all candidates A = Q R, a design's rows of Q (as R^-T times those of A)
/// have the normal matrix G; a combination d of the coefficients is d^T R^-1 of the coefficients
/// of Q and its variance |L^-1 R^-T d|^2 with G = L L^T. So G has the condition of the choice, not
/// that of spectra beside cubes of wavelengths.
class NonEquivDesign {
public:
    /// candidates  values at all candidate energies
    /// directions  [combination][reference], one to kReferenceRows combinations
    NonEquivDesign(const RefValues &candidates, const Rows &directions);

    /// Whether all candidates together determine the fit; otherwise no design does.
    bool isRegular() const { return m_regular; }
    /// Sum of the combinations' variances; infinite where the design does not determine the fit: a
    /// column leaves less than 1e-6 of its length beside those before it.
    double variance(const Design &design) const;

private:
    static constexpr int kMostUnknowns = kReferenceRows + 3;
    using Row = std::array<double, kMostUnknowns>;

    bool m_regular = false;
    int m_unknowns;
    std::vector<Row> m_rows; ///< Q, [candidate][unknown]
    std::vector<Row> m_directions;
};

/// Variances of a four-points solution for the curve  T = a A / w + (1 - a) B / u,  with jump ratio
/// r, u = g / (r + 1), w = r u and g = 2 / amount (analysis/FourPoints.h).
///
/// With psi_i = (1, E_i - mean E, T_i - mean T) at the points other than V, M = sum psi psi^T, l
/// the same at V, c the fitted S = c . psi, rho_i = S_i - c . psi_i and
/// P = r / ((r + 1) (r B_V - A_V)):
///     da/dT_i = -P (k_3 rho_i - c_2 k . psi_i),  k = M^-1 l;   da/dT_V = -P c_2.
/// M is a number and a 2 x 2 block.
class FourPointsDesign {
public:
    struct Variances {
        double a;      ///< infinite where not determined
        double amount; ///< of three points or t/ts
    };

    /// method      one of the three
    /// candidates  values at all candidate energies; the first two references are A and B
    FourPointsDesign(Method method, const RefValues &candidates, double a, double amount);

    Variances variances(const Design &design) const;
    /// |A / jump(A) - B / jump(B)|: what should be 0 at all points but V.
    double difference(int candidate) const;
    /// Whether the references are alike where the method takes them as equal: their differences at
    /// the points other than V are within `within`, and so is what remains of the differences
    /// beside a line in E (three points: a constant), relative to what remains of the spectra.
    /// Without the latter, energies on the foot of one reference's edge would seem excellent:
    /// nothing but that foot remains, and the method takes all it finds for that reference.
    bool isAlike(const Design &design, double within) const;

private:
    Variances threePoints(const Design &design) const;
    Variances line(const Design &design) const;

    struct Candidate {
        double energy; ///< scaled
        double a;
        double b;
        double curve; ///< T
    };
    Method m_method;
    double m_jumpRatio;
    double m_jumpA;
    double m_jumpB;
    double m_largest = 0.0; ///< of |T|
    std::vector<Candidate> m_candidates;
};

} // namespace orvel
