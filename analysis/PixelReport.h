#pragma once

#include "analysis/AnalysisInput.h"
#include "analysis/Checks.h"
#include "analysis/ResultMaps.h"

#include <QByteArray>

#include <limits>
#include <vector>

namespace orvel {

/// How well one pixel of a map is described by its fit: what was measured, the fit and its
/// background as curves, residuals, results with standard deviations. Not-a-number stands for "not
/// determined".
struct PixelReport {
    static constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

    struct Number {
        double value = kNan;
        double sigma = kNan; ///< one standard deviation
    };

    struct Point {
        double energyEv = kNan;
        double measured = kNan; ///< absorption [1]
        double sigma = kNan;    ///< its standard deviation
        double fitted = kNan;
        double residual = kNan; ///< measured - fitted
        bool isV = false;       ///< the V point of a four-points method
    };

    /// A reference that takes part, in row order.
    struct Reference {
        int row = 0; ///< 0 to 3
        double valence = 0.0;
        Number ratio;
        Number amount;       ///< edge jump [1] by this reference; non-equivalent method only
        bool isHeld = false; ///< at 0, by a bound
    };

    Method method = Method::None; ///< None: there is no such report, and nothing below is set
    int x = 0;
    int y = 0;
    double positionX = 0.0; ///< of the pixel, unit of the image's file
    double positionY = 0.0;
    std::vector<Point> points; ///< the used ones, in row order
    std::vector<Reference> references;
    Number valence;
    Number amount; ///< total edge jump, dMut over the references' edge step, or t/ts

    /// Where s comes from. Pixel, that is from these residuals alone, also where the map has no
    /// standard deviations.
    NoiseSource noise = NoiseSource::Pixel;
    double sigma = kNan;    ///< s, of an absorption; not-a-number where it differs between energies
    int freedom = 0;        ///< points minus unknowns, a reference at a bound not being one
    double residual = kNan; ///< root of the mean squared residual (least squares: V apart)

    // Curves; energies ascend, the used ones among them.
    std::vector<double> energiesEv;
    std::vector<double> fit;
    std::vector<double> background;
};

/// The report on the pixel at column x, row y, 0 <= x < width, 0 <= y < height.
///
/// input  that the maps were computed from. A report is made from the maps' results and this
///        input's spectra and images; where the input plainly is another one (method, first
///        image) or the pixel lies outside, its method is None.
///
/// Non-equivalent: the fit is  sum_i x_i R_i(E) + background,  x_i = amount_i / J_i.
/// Three points, with T1, A1, B1 at P1 and likewise at P2:
///     T(E) = T1 + (T2 - T1) (a (A(E) - A1) / (A2 - A1) + (1 - a) (B(E) - B1) / (B2 - B1)),
/// background T1. Other four-points methods: the curve is the model of FourPoints, its background
/// m + k E. What is fitted at the points other than V is the line (A + B) / g + m + k E: there the
/// curve is beside the fitted values as far as A = r B does not hold.
///
/// Curves reach from the lowest to the highest used energy, a tenth of that wider both ways, as
/// far as all references have values: 400 steps, the used energies, and the references' own points
/// unless these are more than 4000. They follow the spectra; the four-points methods compute from
/// the rows' fields (six digits, editable), and so do the fitted values of points.
///
/// Cost: a few factorisations and some hundred look-ups in each spectrum.
PixelReport reportPixel(const AnalysisInput &input, const ResultMaps &maps, int x, int y);

/// The report as a text file, docs/formats.md describes it.
QByteArray csvOf(const PixelReport &report);

} // namespace orvel
