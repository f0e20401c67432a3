#include "analysis/PixelReport.h"

#include "analysis/FourPoints.h"
#include "analysis/FourPointsPrecision.h"
#include "analysis/NonEquivPrecision.h"
#include "analysis/PixelNoise.h"
#include "text/NumberText.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace orvel {
namespace {

constexpr double kNan = PixelReport::kNan;
constexpr int kCurveSteps = 400;
constexpr size_t kMostSpectrumPoints = 4000; ///< of all references, that a curve follows

using Images = std::vector<std::shared_ptr<const ImageData>>;
using Curve = std::function<double(double energyEv)>;

Quantity after(Quantity first, size_t k)
{
    return quantityAt(indexOf(first) + static_cast<int>(k));
}

/// Variances of the absorptions of one pixel, and what is said about them.
struct Noise {
    NoiseSource source;
    double sigma;                  ///< s where all energies share it
    std::vector<double> variances; ///< one a image
};

/// residual  root of the mean square over `points` points
Noise noiseOf(const ResultMaps &maps, const Images &images, qint64 i, double residual, int points,
              int freedom)
{
    const auto &known = maps.precision();
    Noise noise = {known ? known->noise : NoiseSource::Pixel, kNan, {}};
    if (noise.source == NoiseSource::Counts) {
        const PixelNoise counted(maps, images, {true, NoiseSource::Counts, 0.0}, points, freedom);
        noise.variances.resize(images.size());
        counted.variances(static_cast<size_t>(i), noise.variances.data());
        return noise;
    }
    if (noise.source != NoiseSource::Pixel) {
        noise.sigma = known->sigma;
    } else if (freedom > 0) {
        noise.sigma = residual * std::sqrt(static_cast<double>(points) / freedom);
    }
    noise.variances.assign(images.size(), noise.sigma * noise.sigma);
    return noise;
}

void tell(const Noise &noise, PixelReport &report)
{
    report.noise = noise.source;
    report.sigma = noise.sigma;
}

/// Fills energies and curves; valid  the references, whose ranges bound the curves.
void drawCurves(const std::vector<const ReferenceInput *> &valid, const Curve &fit,
                const Curve &background, PixelReport &report)
{
    std::vector<double> energies;
    for (const PixelReport::Point &point : report.points) {
        energies.push_back(point.energyEv);
    }
    const auto [least, most] = std::minmax_element(energies.begin(), energies.end());
    const double beside = 0.1 * (*most - *least);
    double low = *least - beside;
    double high = *most + beside;
    for (const ReferenceInput *reference : valid) {
        const AMutE &spectrum = reference->spectrum;
        low = std::max(low, spectrum.minE() - spectrum.dE());
        high = std::min(high, spectrum.maxE() - spectrum.dE());
    }
    if (!(low < high)) {
        return;
    }
    // Between their points spectra are straight lines, so with these a curve is exact.
    std::vector<double> corners;
    for (const ReferenceInput *reference : valid) {
        for (int i = 0; i < reference->spectrum.points().size(); ++i) {
            const double energyEv = reference->spectrum.effectiveEnergy(i);
            if (energyEv >= low && energyEv <= high) {
                corners.push_back(energyEv);
            }
        }
    }
    if (corners.size() <= kMostSpectrumPoints) {
        energies.insert(energies.end(), corners.begin(), corners.end());
    }
    const auto isBeside = [&](double energyEv) { return !(energyEv >= low && energyEv <= high); };
    energies.erase(std::remove_if(energies.begin(), energies.end(), isBeside), energies.end());
    for (int step = 0; step <= kCurveSteps; ++step) {
        energies.push_back(low + (high - low) * step / kCurveSteps);
    }
    energies.back() = high; // no rounding beyond the spectra
    std::sort(energies.begin(), energies.end());
    energies.erase(std::unique(energies.begin(), energies.end()), energies.end());
    report.energiesEv = energies;
    for (const double energyEv : energies) {
        report.fit.push_back(fit(energyEv));
        report.background.push_back(background(energyEv));
    }
}

void reportNonEquiv(const AnalysisInput &input, const Plan &plan, const ResultMaps &maps, qint64 i,
                    PixelReport &report)
{
    const RefValues references = gatherRefValues(input, plan);
    const auto valid = validReferences(input.references);
    const unsigned held = maps.isBounded() ? maps.heldReferences()[static_cast<size_t>(i)] : 0U;
    ResultVector result = {};
    for (int q = 0; q < kQuantities; ++q) {
        result[static_cast<size_t>(q)] = maps.at(quantityAt(q), i);
    }
    std::vector<double> x;
    for (size_t k = 0; k < references.references(); ++k) {
        const double amount = result[kReferenceRows + k];
        x.push_back((held >> k & 1U) != 0 ? 0.0
                                          : amount / (references.jumpShares[k] * references.jump));
    }
    const double c0 = maps.at(Quantity::Mut0, i);
    const double c1 = maps.at(Quantity::C1, i);
    const double c2 = maps.at(Quantity::C2, i);
    const bool isLinear = !references.victoreen;
    const Curve background = [=](double energyEv) {
        if (isLinear) {
            return c0 + c1 * energyEv;
        }
        const double lambda = AMutE::kHcEvAngstrom / energyEv;
        const double lambda3 = lambda * lambda * lambda;
        return c0 + c1 * lambda3 + c2 * lambda3 * lambda;
    };

    Images images;
    std::vector<double> y;
    double squares = 0.0;
    for (size_t e = 0; e < plan.used.size(); ++e) {
        const EnergyPointInput &used = input.points[plan.used[e]];
        images.push_back(used.map);
        PixelReport::Point point;
        point.energyEv = used.energyEv;
        point.measured = used.map->absorption(report.x, report.y);
        point.fitted = background(point.energyEv);
        for (size_t k = 0; k < x.size(); ++k) {
            point.fitted += x[k] * references.values[k][e];
        }
        point.residual = point.measured - point.fitted;
        squares += point.residual * point.residual;
        y.push_back(point.measured);
        report.points.push_back(point);
    }

    const NonEquivPrecision precision(references);
    const int points = precision.points();
    report.freedom = precision.freedom() + __builtin_popcount(held);
    if (maps.fills(Quantity::Residual)) {
        report.residual = maps.at(Quantity::Residual, i);
    } else {
        // Without bounds there is a sum that the rounding of the fit does not reach.
        report.residual = std::sqrt((held == 0 ? precision.residualSum(y) : squares) / points);
    }
    const Noise noise = noiseOf(maps, images, i, report.residual, points, report.freedom);
    tell(noise, report);
    for (size_t e = 0; e < images.size(); ++e) {
        report.points[e].sigma = std::sqrt(noise.variances[e]);
    }
    const FitSigmas sigmas = noise.source == NoiseSource::Counts
                                 ? precision.sigmas(result, noise.variances.data(), held)
                                 : precision.sigmas(result, noise.sigma, held);
    for (size_t k = 0; k < x.size(); ++k) {
        PixelReport::Reference reference;
        reference.row = references.rows[k];
        reference.valence = references.valences[k];
        reference.ratio = {result[k], sigmas.ratios[k]};
        reference.amount = {result[kReferenceRows + k], sigmas.amounts[k]};
        reference.isHeld = (held >> k & 1U) != 0;
        report.references.push_back(reference);
    }
    report.valence = {maps.at(Quantity::Valence, i), sigmas.valence};
    report.amount = {maps.at(Quantity::Amount, i), sigmas.amount};

    const int mode = input.method.subPostForRef ? AMutE::SubPost : AMutE::SubPre;
    const Curve fit = [&](double energyEv) {
        double value = background(energyEv);
        for (size_t k = 0; k < x.size(); ++k) {
            value += x[k] * valid[k]->spectrum.valueAtE(mode, energyEv);
        }
        return value;
    };
    drawCurves(valid, fit, background, report);
}

/// The model of a four-points solution.
struct FourPointsModel {
    std::function<double(double energyEv, double a, double b)> at; ///< from A and B at an energy
    Curve background;
    double perSum = 0.0; ///< 1 / g of the fitted line; 0: three points have none
};

FourPointsModel threePointsModel(const FourPointsPixels::Setup &s, const std::vector<double> &t,
                                 double a)
{
    const double t1 = t[0];
    const double step = t[1] - t1;
    const auto at = [=](double, double refA, double refB) {
        return t1 + step * (a * (refA - s.refA[0]) / (s.refA[1] - s.refA[0]) +
                            (1 - a) * (refB - s.refB[0]) / (s.refB[1] - s.refB[0]));
    };
    return {at, [=](double) { return t1; }, 0.0};
}

/// amount  t/ts = 2 / g
FourPointsModel lineModel(const FourPointsPixels::Setup &s, const std::vector<double> &t, double a,
                          double amount)
{
    // Both ways of solving leave  S - g T = c0 + c1 E  as the line of least squares, exact or not,
    // and m + k E = -(c0 + c1 E) / g. From the middle of the energies, which costs no digits.
    const double g = 2 / amount;
    double middle = 0.0;
    double mean = 0.0;
    for (int p = 0; p < s.points; ++p) {
        middle += s.energies[p] / s.points;
        mean += (s.refA[p] + s.refB[p] - g * t[static_cast<size_t>(p)]) / s.points;
    }
    double product = 0.0;
    double square = 0.0;
    for (int p = 0; p < s.points; ++p) {
        const double e = s.energies[p] - middle;
        product += e * (s.refA[p] + s.refB[p] - g * t[static_cast<size_t>(p)] - mean);
        square += e * e;
    }
    const double slope = product / square;
    const Curve background = [=](double energyEv) {
        return -(mean + slope * (energyEv - middle)) / g;
    };
    const double u = g / (s.jumpRatio + 1);
    const double w = s.jumpRatio * u;
    const auto at = [=](double energyEv, double refA, double refB) {
        return a * refA / w + (1 - a) * refB / u + background(energyEv);
    };
    return {at, background, 1 / g};
}

void reportFourPoints(const AnalysisInput &input, const Plan &plan, const ResultMaps &maps,
                      qint64 i, PixelReport &report)
{
    const FourPoints method(input, plan);
    const FourPointsPixels::Setup s = method.pixels().setup();
    Images images; // V behind the others
    for (const size_t p : plan.used) {
        if (static_cast<int>(p) != plan.vPoint) {
            images.push_back(input.points[p].map);
        }
    }
    images.push_back(input.points[static_cast<size_t>(plan.vPoint)].map);
    std::vector<double> t;
    for (const auto &image : images) {
        t.push_back(image->absorption(report.x, report.y));
    }
    const double a = maps.at(Quantity::Ratio1, i);
    const double amount = maps.at(Quantity::Amount, i);
    const FourPointsModel model =
        plan.method == Method::ThreePoints ? threePointsModel(s, t, a) : lineModel(s, t, a, amount);

    const FourPointsPrecision precision(plan.method, s);
    std::vector<const double *> values;
    values.reserve(t.size());
    for (const double &value : t) {
        values.push_back(&value);
    }
    report.freedom = precision.freedom();
    if (plan.method == Method::LeastSquares) {
        precision.residuals(values.data(), 1, &report.residual);
    }
    const Noise noise = noiseOf(maps, images, i, report.residual, s.points, report.freedom);
    tell(noise, report);
    std::vector<const double *> variances;
    variances.reserve(t.size());
    for (const double &variance : noise.variances) {
        variances.push_back(&variance);
    }
    PixelReport::Number ratio;
    ratio.value = a;
    report.valence.value = maps.at(Quantity::Valence, i);
    report.amount.value = amount;
    precision.sigmas(values.data(), variances.data(), 1,
                     {&ratio.sigma, &report.valence.sigma, &report.amount.sigma});

    const auto valid = validReferences(input.references);
    PixelReport::Reference reference;
    for (size_t k = 0; k < 2; ++k) {
        reference.row = valid[k]->row;
        reference.valence = valid[k]->valence;
        reference.ratio = {maps.at(after(Quantity::Ratio1, k), i), ratio.sigma};
        report.references.push_back(reference);
    }

    size_t next = 0;
    double squares = 0.0;
    for (const size_t p : plan.used) {
        PixelReport::Point point;
        point.isV = static_cast<int>(p) == plan.vPoint;
        const size_t e = point.isV ? images.size() - 1 : next++;
        const double refA = point.isV ? s.refAV : s.refA[e];
        const double refB = point.isV ? s.refBV : s.refB[e];
        point.energyEv = input.points[p].energyEv;
        point.measured = t[e];
        point.sigma = std::sqrt(noise.variances[e]);
        point.fitted = point.isV || plan.method == Method::ThreePoints
                           ? model.at(point.energyEv, refA, refB)
                           : (refA + refB) * model.perSum + model.background(point.energyEv);
        point.residual = point.measured - point.fitted;
        squares += point.residual * point.residual;
        report.points.push_back(point);
    }
    if (plan.method != Method::LeastSquares) { // an exact solution: what rounding leaves
        report.residual = std::sqrt(squares / static_cast<double>(t.size()));
    }

    const bool subPost = input.method.subPostForRef;
    const Curve fit = [&](double energyEv) {
        double refA = kNan;
        double refB = kNan;
        const bool reached = valid[0]->spectrum.valueMinusLine(energyEv, subPost, refA) &&
                             valid[1]->spectrum.valueMinusLine(energyEv, subPost, refB);
        return reached ? model.at(energyEv, refA, refB) : kNan;
    };
    drawCurves({valid[0], valid[1]}, fit, model.background, report);
}

// --- text ---------------------------------------------------------------------------------------

const char *nameOf(Method method)
{
    switch (method) {
    case Method::ThreePoints:
        return "ThreePoints";
    case Method::ExactFourPoints:
        return "ExactFourPoints";
    case Method::LeastSquares:
        return "LeastSquares";
    case Method::NonEquivLinear:
        return "NonEquivLinear";
    case Method::NonEquivVictoreen:
        return "NonEquivVictoreen";
    case Method::None:
        break;
    }
    return "None";
}

const char *nameOf(NoiseSource noise)
{
    switch (noise) {
    case NoiseSource::Pooled:
        return "Pooled";
    case NoiseSource::Pixel:
        return "Pixel";
    case NoiseSource::Given:
        return "Given";
    case NoiseSource::Counts:
        break;
    }
    return "Counts";
}

QByteArray textOf(double value)
{
    char text[kShortestTextSize];
    return QByteArray(text, writeShortest(value, text));
}

QByteArray pairOf(const PixelReport::Number &number)
{
    return textOf(number.value) + ',' + textOf(number.sigma);
}

} // namespace

PixelReport reportPixel(const AnalysisInput &input, const ResultMaps &maps, int x, int y)
{
    PixelReport report;
    const Plan plan = checkMap(input);
    const bool isInside = x >= 0 && x < maps.width() && y >= 0 && y < maps.height();
    if (!isInside || plan.method == Method::None || plan.method != maps.method() ||
        input.points[plan.used.front()].map.get() != &maps.origin()) {
        return report;
    }
    const qint64 i = static_cast<qint64>(y) * maps.width() + x;
    report.method = plan.method;
    report.x = x;
    report.y = y;
    report.positionX = maps.origin().positionX(i);
    report.positionY = maps.origin().positionY(i);
    if (isNonEquiv(plan.method)) {
        reportNonEquiv(input, plan, maps, i, report);
    } else {
        reportFourPoints(input, plan, maps, i, report);
    }
    return report;
}

QByteArray csvOf(const PixelReport &report)
{
    QByteArray out = "# orvel pixel report V1.0\n";
    const auto say = [&out](const QByteArray &key, const QByteArray &value) {
        out += "# " + key + ',' + value + '\n';
    };
    say("method", nameOf(report.method));
    say("pixel", QByteArray::number(report.x) + ',' + QByteArray::number(report.y));
    say("position", textOf(report.positionX) + ',' + textOf(report.positionY));
    for (const PixelReport::Reference &reference : report.references) {
        const QByteArray row = QByteArray::number(reference.row + 1);
        say("ratio" + row, pairOf(reference.ratio));
        if (isNonEquiv(report.method)) {
            say("amount" + row, pairOf(reference.amount));
        }
        if (reference.isHeld) {
            say("held", row);
        }
    }
    say("valence", pairOf(report.valence));
    say("amount", pairOf(report.amount));
    say("noise", QByteArray(nameOf(report.noise)) + ',' + textOf(report.sigma));
    say("freedom", QByteArray::number(report.freedom));
    say("residual", textOf(report.residual));
    out += "kind,energy,measured,sigma,fitted,residual,background\n";
    for (const PixelReport::Point &point : report.points) {
        out += point.isV ? "V" : "point";
        for (const double value :
             {point.energyEv, point.measured, point.sigma, point.fitted, point.residual}) {
            out += ',' + textOf(value);
        }
        out += ",\n";
    }
    for (size_t i = 0; i < report.energiesEv.size(); ++i) {
        out += "curve," + textOf(report.energiesEv[i]) + ",,," + textOf(report.fit[i]) + ",," +
               textOf(report.background[i]) + '\n';
    }
    return out;
}

} // namespace orvel
