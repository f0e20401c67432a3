#include "analysis/NonEquivPrecision.h"

#include "analysis/PixelNoise.h"
#include "base/Parallel.h"
#include "base/Simd.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvel {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kLargest = std::numeric_limits<double>::max();

/// What a kernel needs: everything but the pixel.
struct SigmaSetup {
    ShareCovariance d;
    int references = 0;
    double valences[kReferenceRows] = {};
    double jump = 0.0;
    double sigma = 0.0;       ///< of all pixels; unless residuals are given
    double perResidual = 0.0; ///< s of a pixel over its Residual
};

/// planes of the map's results in, planes of standard deviations out; all from the same pixel on
struct SigmaPlanes {
    const double *ratios[kReferenceRows] = {};
    const double *amount = nullptr;
    const double *residual = nullptr; ///< null: one sigma for all
    double *sigmaRatios[kReferenceRows] = {};
    double *sigmaValence = nullptr;
    double *sigmaAmount = nullptr;
};

ORVEL_INLINE void sigmasBody(const SigmaSetup &setup, const SigmaPlanes &planes, std::size_t n)
{
    const int m = setup.references;
    const double amountFactor = setup.jump * __builtin_sqrt(setup.d.total);
    const Lanes zero = {};
    for (std::size_t i = 0; i < n; i += kLanes) {
        const std::size_t bytes = std::min<std::size_t>(kLanes, n - i) * sizeof(double);
        Lanes amount;
        loadLanes(planes.amount + i, bytes, amount);
        Lanes sigma = zero + setup.sigma;
        if (planes.residual != nullptr) {
            loadLanes(planes.residual + i, bytes, sigma);
            sigma *= setup.perResidual;
        }
        const Lanes size = amount < 0.0 ? -amount : amount;
        // no noise found, or no result: not determined
        sigma = ((sigma > zero) & (size <= kLargest)) ? sigma : zero + kNan;
        const Lanes sigmaAmount = sigma * amountFactor;
        const auto determined = size >= sigmaAmount * kLeastAmountInSigmas;
        // |s / S|, as S = t / J; a negative jump cannot turn the sign of a deviation
        Lanes factor = sigma * setup.jump / size;
        factor = factor < 0.0 ? -factor : factor;
        factor = determined ? factor : zero + kNan;
        Lanes valence = {};
        for (int k = 0; k < kReferenceRows; ++k) {
            if (k >= m) {
                continue;
            }
            Lanes r;
            loadLanes(planes.ratios[k] + i, bytes, r);
            valence += r * setup.valences[k];
            Lanes variance =
                setup.d.diagonal[k] + r * (r * setup.d.total - 2.0 * setup.d.rowSum[k]);
            variance = variance < 0.0 ? zero : variance; // rounding
            rootLanes(variance);
            storeLanes(factor * variance, bytes, planes.sigmaRatios[k] + i);
        }
        Lanes variance =
            setup.d.valenceSquare + valence * (valence * setup.d.total - 2.0 * setup.d.valenceSum);
        variance = variance < 0.0 ? zero : variance;
        rootLanes(variance);
        storeLanes(factor * variance, bytes, planes.sigmaValence + i);
        storeLanes(sigmaAmount, bytes, planes.sigmaAmount + i);
    }
}
ORVEL_KERNEL(sigmas, (const SigmaSetup &setup, const SigmaPlanes &planes, std::size_t n),
             (setup, planes, n))

SigmaPlanes planesFrom(SigmaPlanes planes, size_t first)
{
    for (int k = 0; k < kReferenceRows; ++k) {
        planes.ratios[k] += planes.ratios[k] != nullptr ? first : 0;
        planes.sigmaRatios[k] += planes.sigmaRatios[k] != nullptr ? first : 0;
    }
    planes.amount += first;
    planes.residual += planes.residual != nullptr ? first : 0;
    planes.sigmaValence += first;
    planes.sigmaAmount += first;
    return planes;
}

} // namespace

ShareCovariance ShareSensitivity::covariance(const double *variances, const double *valences) const
{
    ShareCovariance d;
    for (int i = 0; i < references; ++i) {
        for (int j = 0; j < references; ++j) {
            double element = 0.0;
            for (int e = 0; e < points; ++e) {
                element += of[i][e] * variances[e] * of[j][e];
            }
            if (i == j) {
                d.diagonal[i] = element;
            }
            d.rowSum[i] += element;
            d.valenceSquare += valences[i] * element * valences[j];
        }
        d.total += d.rowSum[i];
        d.valenceSum += valences[i] * d.rowSum[i];
    }
    return d;
}

FitSigmas::FitSigmas() : valence(kNan), amount(kNan)
{
    ratios.fill(kNan);
    amounts.fill(kNan);
}

NonEquivPrecision::NonEquivPrecision(const RefValues &references)
    : m_valences(references.valences), m_jump(references.jump),
      m_points(static_cast<int>(references.energiesEv.size())),
      m_freedom(m_points - references.unknowns()), m_condition(kNan)
{
    const SmallQr qr(NonEquivFit(references).basis());
    const NonNegativeFit bounds(references);
    m_regular = qr.isRegular() && bounds.isRegular();
    if (!m_regular) {
        return;
    }
    m_condition = qr.normalCondition();
    m_complement = qr.complement();
    const Rows inverse = qr.pseudoInverse();
    const size_t m = references.references();
    const std::vector<double> ones(references.energiesEv.size(), 1.0);
    for (unsigned held = 0; held < 1U << m; ++held) {
        const Rows projection = bounds.projection(held);
        ShareSensitivity &sensitivity = m_sensitivities[held];
        sensitivity.references = static_cast<int>(m);
        sensitivity.points = m_points;
        for (size_t i = 0; i < m; ++i) {
            for (size_t j = 0; j < m; ++j) {
                for (size_t e = 0; e < ones.size(); ++e) {
                    sensitivity.of[i][e] +=
                        references.jumpShares[i] * projection[i][j] * inverse[j][e];
                }
            }
        }
        m_covariances[held] = sensitivity.covariance(ones.data(), m_valences.data());
    }
}

double NonEquivPrecision::residualSum(const std::vector<double> &y) const
{
    double sum = m_regular ? 0.0 : kNan;
    for (const std::vector<double> &z : m_complement) {
        double product = 0.0;
        for (size_t e = 0; e < z.size(); ++e) {
            product += z[e] * y[e];
        }
        sum += product * product;
    }
    return sum;
}

FitSigmas NonEquivPrecision::sigmas(const ResultVector &result, double sigma, unsigned held) const
{
    if (!m_regular || !(sigma > 0.0)) {
        return {};
    }
    return sigmasFrom(result, m_covariances[held], sigma);
}

FitSigmas NonEquivPrecision::sigmas(const ResultVector &result, const double *variances,
                                    unsigned held) const
{
    if (!m_regular) {
        return {};
    }
    return sigmasFrom(result, m_sensitivities[held].covariance(variances, m_valences.data()), 1.0);
}

FitSigmas NonEquivPrecision::sigmasFrom(const ResultVector &result, const ShareCovariance &d,
                                        double sigma) const
{
    FitSigmas found;
    const auto at = [&result](Quantity quantity) {
        return result[static_cast<size_t>(indexOf(quantity))];
    };
    const double amount = at(Quantity::Amount);
    if (!std::isfinite(amount) || !(d.total > 0.0)) { // all held: 0 without an error of its own
        return found;
    }
    found.amount = sigma * std::fabs(m_jump) * std::sqrt(d.total);
    for (size_t i = 0; i < m_valences.size(); ++i) {
        found.amounts[i] = sigma * std::fabs(m_jump) * std::sqrt(d.diagonal[i]);
    }
    if (!(std::fabs(amount) >= kLeastAmountInSigmas * found.amount)) {
        return found;
    }
    const double factor = sigma * std::fabs(m_jump / amount);
    for (size_t i = 0; i < m_valences.size(); ++i) {
        const double r = result[i];
        found.ratios[i] =
            factor *
            std::sqrt(std::max(0.0, d.diagonal[i] + r * (r * d.total - 2.0 * d.rowSum[i])));
    }
    const double valence = at(Quantity::Valence);
    found.valence =
        factor * std::sqrt(std::max(0.0, d.valenceSquare +
                                             valence * (valence * d.total - 2.0 * d.valenceSum)));
    return found;
}

void addNonEquivSigmas(ResultMaps &maps, const RefValues &references,
                       const std::vector<std::shared_ptr<const ImageData>> &images,
                       const PrecisionChoice &choice, const MapResources &resources)
{
    const NonEquivPrecision precision(references);
    const auto m = static_cast<int>(references.references());
    const auto plane = [](Quantity first, int k) { return quantityAt(indexOf(first) + k); };

    const std::vector<size_t> unmeasured = unmeasuredPixels(maps, images);
    double *const residual = maps.plane(Quantity::Residual);
    if (!precision.isRegular()) {
        std::fill_n(residual, maps.size(), kNan);
    }
    for (const size_t i : unmeasured) {
        residual[i] = kNan;
    }
    const PixelNoise noise(maps, images, choice, precision.points(), precision.freedom());
    maps.setPrecision(noise.found());
    SigmaPlanes planes;
    for (int k = 0; k < m; ++k) {
        planes.ratios[k] = maps.plane(plane(Quantity::Ratio1, k));
        planes.sigmaRatios[k] = maps.addPlane(plane(Quantity::SigmaRatio1, k));
    }
    planes.amount = maps.plane(Quantity::Amount);
    planes.sigmaValence = maps.addPlane(Quantity::SigmaValence);
    planes.sigmaAmount = maps.addPlane(Quantity::SigmaAmount);

    SigmaSetup setup;
    setup.d = precision.covariance();
    setup.references = m;
    std::copy(references.valences.begin(), references.valences.end(), setup.valences);
    setup.jump = std::fabs(references.jump);
    setup.sigma = precision.isRegular() ? noise.found().sigma : kNan;
    if (choice.noise == NoiseSource::Pixel) {
        planes.residual = maps.plane(Quantity::Residual);
        setup.perResidual = precision.isRegular() ? noise.perResidual(0) : kNan;
    }

    const auto ownCovariance = [&](size_t i) {
        const unsigned held = maps.isBounded() ? maps.heldReferences()[i] : 0U;
        ResultVector result = {};
        for (int q = 0; q < kQuantities; ++q) {
            result[static_cast<size_t>(q)] = maps.at(quantityAt(q), static_cast<qint64>(i));
        }
        FitSigmas sigmas;
        if (choice.noise == NoiseSource::Counts) {
            double variances[kPointRows];
            noise.variances(i, variances);
            sigmas = precision.sigmas(result, variances, held);
        } else {
            sigmas = precision.sigmas(result, noise.sigma(i), held);
        }
        for (int k = 0; k < m; ++k) {
            planes.sigmaRatios[k][i] = sigmas.ratios[static_cast<size_t>(k)];
        }
        planes.sigmaValence[i] = sigmas.valence;
        planes.sigmaAmount[i] = sigmas.amount;
    };
    inParallel(static_cast<size_t>(maps.size()), resources.pixelsPerThread,
               threadsFor(resources.threads), [&](size_t begin, size_t end) {
                   if (choice.noise == NoiseSource::Counts) {
                       for (size_t i = begin; i < end; ++i) {
                           ownCovariance(i);
                       }
                       return;
                   }
                   sigmas(setup, planesFrom(planes, begin), end - begin);
                   for (size_t i = begin; i < end && maps.isBounded(); ++i) {
                       if (maps.heldReferences()[i] != 0) {
                           ownCovariance(i);
                       }
                   }
               });
    for (const size_t i : unmeasured) {
        for (int k = 0; k < m; ++k) {
            planes.sigmaRatios[k][i] = kNan;
        }
        planes.sigmaValence[i] = kNan;
        planes.sigmaAmount[i] = kNan;
    }
}

} // namespace orvel
