#pragma once

#include "analysis/AnalysisInput.h"
#include "analysis/Checks.h"
#include "analysis/FourPointsPixels.h"
#include "analysis/LinearSystem.h"
#include "analysis/ResultMaps.h"

#include <vector>

namespace orvel {

/// Values of a curve at the used points: the target's fields or one pixel of every image.
struct PointValues {
    std::vector<double> atPoints; ///< at P1, P2, ...: all used points but the V point, in row order
    double atV = 0.0;
};

/// What one four-points solution gives.
struct FourPointsResult {
    double a = 0.0;      ///< fraction of reference A [1]
    double amount = 0.0; ///< three points: edge step over the references' mean; else t/ts [1]
};

/// Fraction of two references A and B in a curve T from its values at a few energies, at one of
/// which (V) the references differ most; at the others they look alike but for their thickness.
///
/// A and B are the first two used references. With r = jump(A) / jump(B), u = g / (r + 1) and
/// w = r u the model is
///     T(E) = a A(E) / w + (1 - a) B(E) / u + m + k E,
/// which at the points other than V, where A = r B, is T = (A + B) / g + m + k E: that line is
/// solved for g, m, k, and the value at V then gives a. t/ts = 2 / g.
///
/// Divisions are not guarded: equal references or flat curves give infinities or not-a-numbers.
class FourPoints {
public:
    /// Gathers energies and reference values once, through the rows' fields (six digits).
    /// plan  of the three four-points methods, made from the same input
    FourPoints(const AnalysisInput &input, const Plan &plan);

    /// Curve values from the target's fields.
    PointValues targetValues(const AnalysisInput &input) const;

    FourPointsResult solve(const PointValues &values);

    /// a VA + (1 - a) VB
    double valenceOf(double a) const { return a * m_valenceA + (1 - a) * m_valenceB; }

    /// The same numbers for the solution of many pixels.
    FourPointsPixels pixels() const;

    /// Rows of references A and B.
    int rowA() const { return m_rowA; }
    int rowB() const { return m_rowB; }

private:
    /// Line T = S / g + m + k E through the points other than V.
    struct Line {
        double g;
        double m;
        double k;
    };

    FourPointsResult threePoints(const PointValues &values) const;
    Line exactLine(const PointValues &values) const;
    Line leastSquaresLine(const PointValues &values);
    FourPointsResult fromLine(const Line &line, double atV) const;

    Method m_method;
    std::vector<size_t> m_points; ///< indices into the input, V left out
    size_t m_vPoint;
    std::vector<double> m_energies;
    PointValues m_a;
    PointValues m_b;
    double m_energyV = 0.0;
    double m_jumpRatio = 0.0;
    double m_valenceA = 0.0;
    double m_valenceB = 0.0;
    int m_rowA = 0;
    int m_rowB = 0;
    LinearSystem m_system{3};
};

/// The same per pixel: fills Ratio1, Valence and Amount.
ResultMaps fourPointsMap(const AnalysisInput &input, const Plan &plan,
                         const MapResources &resources = {});

} // namespace orvel
