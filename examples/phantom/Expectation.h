#pragma once

#include "LinearModel.h"
#include "Samples.h"

#include <string_view>

namespace orvel::phantom {

/// A quantity as the method must find it, and how far the found one may lie from it. The bounds are
/// worst cases of first order, added up without regard to sign, from
///   - the digits of the files (kMapError, kSpectrumError),
///   - the lines fitted to a spectrum, carried from their fit range to the energy in question,
///   - the six significant digits in which row values of the four-points methods are kept,
///   - double-precision normal equations (LinearModel::roundoff).
/// The printing of the result itself is not included: see printError().
struct Expected {
    double value;
    double bound;
};

/// Half a unit of the last of `digits` significant digits of a value; 0 for 0.
double printError(double value, int digits);

enum class Method { NonEquivalent, ThreePoints, FourPoints };

/// What the session of the same name computes.
struct Plan {
    std::string_view name;
    Sample sample;
    Method method;
    std::vector<double>
        energiesEv; ///< used rows, ascending; without the V point unless NonEquivalent
    double vPointEv;
    std::vector<std::size_t> references; ///< compounds in use, in row order
    double lcfFromEv, lcfToEv;           ///< range of the linear combination fit, ends included
};

const std::vector<Plan> &plans();
const Plan *planNamed(std::string_view name); ///< null: no such plan

/// Where the sampled curve comes from: a map's pixel (background included) or the target spectrum
/// (its line before the edge already subtracted).
enum class Source { Pixel, Target };

/// Non-equivalent method. Model: sum_i x_i R_i + background, R_i = reference minus its line before
/// the edge, so x_i = amount ratio_i / J_i, amount_i = J_i x_i, t = sum_i amount_i.
class NonEquivalentExpectation {
public:
    explicit NonEquivalentExpectation(const Plan &plan);

    /// The thirteen result columns in file order: four ratios, four amounts, three background
    /// coefficients, valence, t. Unused references: 0 with bound 0.
    std::vector<Expected> of(const Mixture &truth, Source source) const;

private:
    const Plan &m_plan;
    BackgroundKind m_kind;
    LinearModel m_model;
};

/// Fraction of the first reference, valence, and the amount as the method defines it:
/// three points  the step between the two outer points over that of the mean reference,
/// four points   t/ts = 2 amount / (J_A + J_B).
/// The three-points method knows no sloping background: a slope k [1/eV] shifts the fraction by
///   k ((E_V - E_1) - s (E_2 - E_1)) / ((T_2 - T_1) (s_A - s_B)),
/// s, s_A, s_B being the mix's and the references' value at V on the scale 0 at E_1, 1 at E_2. The
/// expected values include this shift; `slopeShift` tells its size.
struct TwoReferenceResult {
    Expected fraction, valence, amount;
    double slopeShift; ///< of the fraction
};
TwoReferenceResult fourPointsExpectation(const Plan &plan, const Mixture &truth, Source source);
TwoReferenceResult threePointsExpectation(const Plan &plan, const Mixture &truth, Source source);

/// Linear combination fit of the target: ratios in row order, valence, base (0).
std::vector<Expected> lcfExpectation(const Plan &plan);

} // namespace orvel::phantom
