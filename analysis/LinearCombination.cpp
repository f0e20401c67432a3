#include "analysis/LinearCombination.h"

#include "analysis/LinearSystem.h"
#include "analysis/PixelNoise.h"
#include "analysis/SmallQr.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace orvel {

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

/// One solution on a face: some coefficients held at 0, perhaps their sum at 1.
struct FaceFit {
    unsigned held = 0;
    std::vector<double> x; ///< of all references
    double excess = 0.0;   ///< over the least residual sum of squares
    Rows covariance;       ///< of all references, for noise of standard deviation 1
};

/// Least residual on a face.
/// h  normal matrix of the references without the base; free  x*, their free coefficients
FaceFit fitFace(const Rows &h, const std::vector<double> &free, unsigned held, bool sumToOne)
{
    const size_t m = free.size();
    std::vector<size_t> f;
    for (size_t i = 0; i < m; ++i) {
        if ((held >> i & 1U) == 0) {
            f.push_back(i);
        }
    }
    Rows matrix;
    Rows right; // columns: H x*, ones, unit vectors
    for (size_t row = 0; row < f.size(); ++row) {
        matrix.emplace_back();
        for (const size_t j : f) {
            matrix.back().push_back(h[f[row]][j]);
        }
        right.emplace_back(2 + f.size(), 0.0);
        for (size_t j = 0; j < m; ++j) {
            right.back()[0] += h[f[row]][j] * free[j];
        }
        right.back()[1] = 1.0;
        right.back()[2 + row] = 1.0;
    }
    const Rows solved = solvePositive(matrix, right);
    double sum = 0.0;
    double sumOfOnes = 0.0;
    for (const std::vector<double> &row : solved) {
        sum += row[0];
        sumOfOnes += row[1];
    }
    const double multiplier = sumToOne ? (1.0 - sum) / sumOfOnes : 0.0;

    FaceFit fit;
    fit.held = held;
    fit.x.assign(m, 0.0);
    fit.covariance.assign(m, std::vector<double>(m, 0.0));
    for (size_t i = 0; i < f.size(); ++i) {
        fit.x[f[i]] = solved[i][0] + multiplier * solved[i][1];
        for (size_t j = 0; j < f.size(); ++j) {
            fit.covariance[f[i]][f[j]] =
                solved[i][2 + j] - (sumToOne ? solved[i][1] * solved[j][1] / sumOfOnes : 0.0);
        }
    }
    for (size_t i = 0; i < m; ++i) {
        for (size_t j = 0; j < m; ++j) {
            fit.excess += (fit.x[i] - free[i]) * h[i][j] * (fit.x[j] - free[j]);
        }
    }
    return fit;
}

/// The face whose solution keeps the bounds with the least residual.
FaceFit fitBounds(const Rows &h, const std::vector<double> &free, LcfBounds bounds)
{
    const bool sumToOne = bounds == LcfBounds::SumToOne || bounds == LcfBounds::NonNegativeSumToOne;
    if (bounds == LcfBounds::Free || bounds == LcfBounds::SumToOne) {
        return fitFace(h, free, 0, sumToOne);
    }
    FaceFit best;
    best.excess = std::numeric_limits<double>::infinity();
    const unsigned all = (1U << free.size()) - 1U;
    for (unsigned held = 0; held <= (sumToOne ? all - 1U : all); ++held) {
        FaceFit fit = fitFace(h, free, held, sumToOne);
        const bool feasible =
            std::all_of(fit.x.begin(), fit.x.end(), [](double x) { return x >= 0.0; });
        if (feasible && fit.excess < best.excess) {
            best = std::move(fit);
        }
    }
    return best;
}

/// (base first, then the references)
Rows baseFirst(Rows basis)
{
    for (std::vector<double> &row : basis) {
        std::rotate(row.begin(), row.end() - 1, row.end());
    }
    return basis;
}

double total(const std::vector<double> &values)
{
    return std::accumulate(values.begin(), values.end(), 0.0);
}

/// x  the coefficients; residuals  y - fit
LcfPrecision precisionOf(const AnalysisInput &input, const SmallQr &qr, const FaceFit &fit,
                         const std::vector<double> &valences, const std::vector<double> &y,
                         const std::vector<double> &residuals)
{
    const auto square = [](double sum, double value) { return sum + value * value; };
    const double rss = std::accumulate(residuals.begin(), residuals.end(), 0.0, square);
    LcfPrecision found;
    found.points = static_cast<int>(y.size());
    const bool sumToOne = input.method.lcfBounds == LcfBounds::SumToOne ||
                          input.method.lcfBounds == LcfBounds::NonNegativeSumToOne;
    found.freedom = qr.freedom() + __builtin_popcount(fit.held) + (sumToOne ? 1 : 0);
    found.rFactor = rss / std::accumulate(y.begin(), y.end(), 0.0, square);
    found.sigmaRatios.assign(valences.size(), kNan);
    if (!qr.isRegular()) {
        return found;
    }
    found.condition = qr.normalCondition();
    if (found.freedom > 0) {
        found.sigma = std::sqrt(rss / found.freedom);
        if (input.precision.noise == NoiseSource::Given && input.precision.givenSigma > 0.0) {
            const double given = input.precision.givenSigma / input.target.edgeJump();
            found.chiSquare = rss / (given * given * found.freedom);
        }
    }
    if (input.precision.noise == NoiseSource::Given) {
        found.sigma = input.precision.givenSigma > 0.0
                          ? input.precision.givenSigma / std::fabs(input.target.edgeJump())
                          : kNan;
    }
    const double s = found.sigma;
    std::vector<double> rowSums;
    double valenceVariance = 0.0;
    for (size_t i = 0; i < valences.size(); ++i) {
        rowSums.push_back(total(fit.covariance[i]));
        for (size_t j = 0; j < valences.size(); ++j) {
            valenceVariance += valences[i] * fit.covariance[i][j] * valences[j];
        }
    }
    const double all = total(rowSums);
    const double sum = total(fit.x);
    found.sigmaValence = s * std::sqrt(std::max(valenceVariance, 0.0));
    if (std::fabs(sum) >= kLeastAmountInSigmas * s * std::sqrt(std::max(all, 0.0))) {
        for (size_t i = 0; i < valences.size(); ++i) {
            const double r = fit.x[i] / sum;
            const double variance = fit.covariance[i][i] + r * (r * all - 2.0 * rowSums[i]);
            found.sigmaRatios[i] = s / std::fabs(sum) * std::sqrt(std::max(variance, 0.0));
        }
    }
    return found;
}

} // namespace

LcfPrecision::LcfPrecision()
    : sigmaValence(kNan), sigma(kNan), rFactor(kNan), condition(kNan), chiSquare(kNan)
{
}

LcfResult fitLinearCombination(const AnalysisInput &input, const LcfPlan &plan)
{
    const AMutE &target = input.target;
    const auto references = validReferences(input.references);
    const size_t m = references.size();

    Rows kept;               // the basis at each kept point: R_1 ... R_m, 1
    std::vector<double> y;   // the target there
    QVector<MutPoint> curve; // with the fitted value to be filled in
    LinearSystem system(static_cast<int>(m) + 1);
    system.clear();
    for (int i = 0; i < target.points().size(); ++i) {
        const double energyEv = target.effectiveEnergy(i);
        if (!(plan.lowEv <= energyEv && energyEv <= plan.highEv)) {
            continue;
        }
        std::vector<double> basis;
        basis.reserve(m + 1);
        for (const ReferenceInput *reference : references) {
            basis.push_back(reference->spectrum.valueAtE(AMutE::By2Victoreens, energyEv));
        }
        basis.push_back(1.0);
        y.push_back(target.valueAt(AMutE::By2Victoreens, i));
        system.addSample(basis.data(), y.back());
        kept.push_back(std::move(basis));
        curve.append({target.points()[i].angleDeg, energyEv, 0.0});
    }
    system.solve();

    LcfResult result;
    result.base = system.unknown(static_cast<int>(m));
    std::vector<double> x;
    std::vector<double> valences;
    for (size_t k = 0; k < m; ++k) {
        x.push_back(system.unknown(static_cast<int>(k)));
        valences.push_back(references[k]->valence);
        result.rows.push_back(references[k]->row);
    }
    const SmallQr qr(baseFirst(kept));
    FaceFit face;
    face.x = x;
    face.covariance.assign(m, std::vector<double>(m, kNan));
    const bool isFinite =
        std::all_of(x.begin(), x.end(), [](double value) { return std::isfinite(value); });
    if (qr.isRegular() && isFinite) {
        face = fitBounds(qr.reducedNormal(1), x, input.method.lcfBounds);
        if (input.method.lcfBounds == LcfBounds::Free) {
            face.x = x; // the same but for rounding
        }
        const Rows shift = qr.backgroundShift(1);
        for (size_t k = 0; k < m && input.method.lcfBounds != LcfBounds::Free; ++k) {
            result.base += shift[0][k] * (x[k] - face.x[k]);
        }
    }
    result.held = face.held;

    double sum = 0.0;
    for (size_t k = 0; k < m; ++k) {
        sum += face.x[k];
        result.valence += face.x[k] * valences[k];
    }
    std::vector<double> residuals;
    for (size_t i = 0; i < kept.size(); ++i) {
        double value = result.base;
        for (size_t k = 0; k < m; ++k) {
            value += face.x[k] * kept[i][k];
        }
        curve[static_cast<int>(i)].mut = value;
        residuals.push_back(y[i] - value);
    }
    result.precision = precisionOf(input, qr, face, valences, y, residuals);
    for (const double coefficient : face.x) {
        result.ratios.push_back(coefficient / sum);
    }
    result.curve.setPoints(curve);
    return result;
}

} // namespace orvel
