#include "analysis/FourPointsPrecision.h"

#include "analysis/PixelNoise.h"
#include "analysis/PixelRuns.h"
#include "base/Parallel.h"
#include "base/Simd.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace orvel {
namespace {

using Setup = FourPointsPixels::Setup;
using Planes = FourPointsPrecision::Planes;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

/// The fit of one pixel a lane, in coordinates that have their origin at V.
struct LineFit {
    Lanes inverse[3][3]; ///< M^-1
    Lanes c[3];
};

/// Energies from V in units of the widest distance: the matrix keeps its digits.
struct Distances {
    explicit Distances(const Setup &s)
    {
        for (int p = 0; p < s.points; ++p) {
            widest = std::max(widest, std::fabs(s.energies[p] - s.energyV));
        }
        for (int p = 0; p < s.points; ++p) {
            of[p] = (s.energies[p] - s.energyV) / widest;
            sums[p] = s.refA[p] + s.refB[p];
        }
    }
    double widest = 0.0;
    double of[kPointRows] = {};
    double sums[kPointRows] = {}; ///< S
};

ORVEL_INLINE void fitLine(const Setup &s, const Distances &d, const double *const *values,
                          std::size_t i, std::size_t bytes, LineFit &fit)
{
    Lanes m[3][3] = {};
    Lanes b[3] = {};
    Lanes tV;
    loadLanes(values[s.points] + i, bytes, tV);
    for (int p = 0; p < s.points; ++p) {
        Lanes t;
        loadLanes(values[p] + i, bytes, t);
        t -= tV;
        const double e = d.of[p];
        m[0][0] += 1.0;
        m[0][1] += e;
        m[0][2] += t;
        m[1][1] += e * e;
        m[1][2] += e * t;
        m[2][2] += t * t;
        b[0] += d.sums[p];
        b[1] += e * d.sums[p];
        b[2] += t * d.sums[p];
    }
    m[1][0] = m[0][1];
    m[2][0] = m[0][2];
    m[2][1] = m[1][2];
    for (int row = 0; row < 3; ++row) { // by cofactors; they carry their signs cyclically
        const int r1 = (row + 1) % 3;
        const int r2 = (row + 2) % 3;
        for (int column = 0; column < 3; ++column) {
            const int c1 = (column + 1) % 3;
            const int c2 = (column + 2) % 3;
            fit.inverse[column][row] = m[r1][c1] * m[r2][c2] - m[r1][c2] * m[r2][c1];
        }
    }
    const Lanes determinant =
        m[0][0] * fit.inverse[0][0] + m[0][1] * fit.inverse[1][0] + m[0][2] * fit.inverse[2][0];
    for (int row = 0; row < 3; ++row) {
        fit.c[row] = Lanes{};
        for (int column = 0; column < 3; ++column) {
            fit.inverse[row][column] /= determinant;
            fit.c[row] += fit.inverse[row][column] * b[column];
        }
    }
}

/// S - c . phi at one point; t  absorption there minus that of V.
ORVEL_INLINE void misfit(const Distances &d, const LineFit &fit, int p, const Lanes &t, Lanes &rho)
{
    rho = d.sums[p] - fit.c[0] - fit.c[1] * d.of[p] - fit.c[2] * t;
}

/// Derivative of coefficient k with respect to the absorption at one point.
ORVEL_INLINE void derivative(const Distances &d, const LineFit &fit, int k, int p, const Lanes &t,
                             const Lanes &rho, Lanes &out)
{
    const Lanes *const row = fit.inverse[k];
    out = row[2] * rho - fit.c[2] * (row[0] + row[1] * d.of[p] + row[2] * t);
}

ORVEL_INLINE void residualsOfBody(const Setup &s, const double *const *values, std::size_t n,
                                  double *out)
{
    const Distances d(s);
    for (std::size_t i = 0; i < n; i += kLanes) {
        const std::size_t bytes = std::min<std::size_t>(kLanes, n - i) * sizeof(double);
        LineFit fit;
        fitLine(s, d, values, i, bytes, fit);
        Lanes tV;
        loadLanes(values[s.points] + i, bytes, tV);
        Lanes sum = {};
        for (int p = 0; p < s.points; ++p) {
            Lanes t;
            Lanes rho;
            loadLanes(values[p] + i, bytes, t);
            misfit(d, fit, p, t - tV, rho);
            sum += rho * rho;
        }
        Lanes mean = sum / (fit.c[2] * fit.c[2] * static_cast<double>(s.points));
        rootLanes(mean);
        storeLanes(mean, bytes, out + i);
    }
}
ORVEL_KERNEL(residualsOf, (const Setup &s, const double *const *values, std::size_t n, double *out),
             (s, values, n, out))

ORVEL_INLINE void storeSigmas(const Setup &s, const Lanes &varianceA, const Lanes &varianceAmount,
                              const Lanes &amount, std::size_t i, std::size_t bytes,
                              const Planes &planes)
{
    Lanes deviationA = varianceA;
    Lanes deviationAmount = varianceAmount;
    rootLanes(deviationA);
    rootLanes(deviationAmount);
    const Lanes size = amount < 0.0 ? -amount : amount;
    const Lanes nan = Lanes{} + kNan;
    const Lanes sigmaA = size >= deviationAmount * kLeastAmountInSigmas ? deviationA : nan;
    storeLanes(sigmaA, bytes, planes.a + i);
    storeLanes(sigmaA * std::fabs(s.valenceA - s.valenceB), bytes, planes.valence + i);
    storeLanes(deviationAmount, bytes, planes.amount + i);
}

ORVEL_INLINE void threePointsBody(const Setup &s, const double *const *values,
                                  const double *const *variances, std::size_t n,
                                  const Planes &planes)
{
    const double alpha = (s.refAV - s.refA[0]) / (s.refA[1] - s.refA[0]);
    const double beta = (s.refBV - s.refB[0]) / (s.refB[1] - s.refB[0]);
    const double mean = ((s.refA[1] - s.refB[0]) + (s.refA[1] - s.refA[0])) * 0.5;
    for (std::size_t i = 0; i < n; i += kLanes) {
        const std::size_t bytes = std::min<std::size_t>(kLanes, n - i) * sizeof(double);
        Lanes t[3];
        Lanes variance[3];
        for (int p = 0; p < 3; ++p) {
            loadLanes(values[p] + i, bytes, t[p]);
            loadLanes(variances[p] + i, bytes, variance[p]);
        }
        const Lanes step = t[1] - t[0];
        const Lanes tau = (t[2] - t[0]) / step;
        const Lanes scale = 1.0 / (step * (alpha - beta)); // da / dT_V
        const Lanes d1 = (tau - 1.0) * scale;
        const Lanes d2 = tau * scale;
        const Lanes varianceA =
            d1 * d1 * variance[0] + d2 * d2 * variance[1] + scale * scale * variance[2];
        const Lanes varianceAmount = (variance[0] + variance[1]) / (mean * mean);
        storeSigmas(s, varianceA, varianceAmount, step / mean, i, bytes, planes);
    }
}

ORVEL_INLINE void linesBody(const Setup &s, const double *const *values,
                            const double *const *variances, std::size_t n, const Planes &planes)
{
    const Distances d(s);
    const double p0 = s.jumpRatio / ((s.jumpRatio + 1.0) * (s.jumpRatio * s.refBV - s.refAV)); // P
    for (std::size_t i = 0; i < n; i += kLanes) {
        const std::size_t bytes = std::min<std::size_t>(kLanes, n - i) * sizeof(double);
        LineFit fit;
        fitLine(s, d, values, i, bytes, fit);
        Lanes tV;
        Lanes varianceV;
        loadLanes(values[s.points] + i, bytes, tV);
        loadLanes(variances[s.points] + i, bytes, varianceV);
        const Lanes slope = fit.c[2];
        Lanes variance0 = slope * slope * varianceV; // of c0
        Lanes variance2 = {};                        // of c2
        for (int p = 0; p < s.points; ++p) {
            Lanes t;
            Lanes variance;
            Lanes rho;
            loadLanes(values[p] + i, bytes, t);
            loadLanes(variances[p] + i, bytes, variance);
            t -= tV;
            misfit(d, fit, p, t, rho);
            Lanes d0;
            Lanes d2;
            derivative(d, fit, 0, p, t, rho, d0);
            derivative(d, fit, 2, p, t, rho, d2);
            variance0 += d0 * d0 * variance;
            variance2 += d2 * d2 * variance;
        }
        const Lanes amount = 2.0 / slope;
        const Lanes factor = amount / slope; // |d(2 / c2) / dc2|, up to its sign
        storeSigmas(s, variance0 * (p0 * p0), variance2 * (factor * factor), amount, i, bytes,
                    planes);
    }
}

#define ORVEL_SIGMAS(NAME)                                                                         \
    ORVEL_KERNEL(NAME,                                                                             \
                 (const Setup &s, const double *const *values, const double *const *variances,     \
                  std::size_t n, const Planes &planes),                                            \
                 (s, values, variances, n, planes))
ORVEL_SIGMAS(threePoints)
ORVEL_SIGMAS(lines)
#undef ORVEL_SIGMAS

/// Pixels whose variances are laid out at once.
constexpr std::size_t kBlock = 512;

} // namespace

void FourPointsPrecision::residuals(const double *const *values, std::size_t n, double *out) const
{
    residualsOf(m_setup, values, n, out);
}

void FourPointsPrecision::sigmas(const double *const *values, const double *const *variances,
                                 std::size_t n, const Planes &planes) const
{
    if (m_method == Method::ThreePoints) {
        threePoints(m_setup, values, variances, n, planes);
    } else {
        lines(m_setup, values, variances, n, planes);
    }
}

void addFourPointsSigmas(ResultMaps &maps, const FourPointsPrecision &precision,
                         const std::vector<std::shared_ptr<const ImageData>> &images,
                         const PrecisionChoice &choice, const MapResources &resources)
{
    std::vector<const ImageData *> plain;
    plain.reserve(images.size());
    for (const auto &image : images) {
        plain.push_back(image.get());
    }
    const PixelRuns runs(std::move(plain), maps.width(), maps.height());
    const auto forAll = [&](auto work) {
        inParallel(runs.size(), resources.pixelsPerThread, threadsFor(resources.threads),
                   [&](size_t begin, size_t end) { runs.forEach(begin, end, work); });
    };

    const int points = static_cast<int>(images.size()) - 1; // V apart
    double *residual = nullptr;
    if (precision.freedom() > 0) {
        residual = maps.addPlane(Quantity::Residual);
        forAll([&](const double *const *values, size_t first, size_t n) {
            precision.residuals(values, n, residual + first);
        });
    }
    const std::vector<size_t> unmeasured = unmeasuredPixels(maps, images);
    for (const size_t i : unmeasured) {
        if (residual != nullptr) {
            residual[i] = kNan;
        }
    }
    const Planes planes = {maps.addPlane(Quantity::SigmaRatio1),
                           maps.addPlane(Quantity::SigmaValence),
                           maps.addPlane(Quantity::SigmaAmount)};
    const auto fill = [&](const PixelNoise &noise) {
        forAll([&](const double *const *values, size_t first, size_t n) {
            double variances[kPointRows][kBlock];
            const double *valuesAt[kPointRows];
            const double *variancesAt[kPointRows];
            for (size_t done = 0; done < n; done += kBlock) {
                const size_t count = std::min(kBlock, n - done);
                const size_t at = first + done;
                for (size_t e = 0; e < images.size(); ++e) {
                    valuesAt[e] = values[e] + done;
                    variancesAt[e] = variances[e];
                }
                for (size_t i = 0; i < count; ++i) {
                    double ofPixel[kPointRows];
                    noise.variances(at + i, ofPixel);
                    for (size_t e = 0; e < images.size(); ++e) {
                        variances[e][i] = ofPixel[e];
                    }
                }
                precision.sigmas(valuesAt, variancesAt, count,
                                 {planes.a + at, planes.valence + at, planes.amount + at});
            }
        });
    };

    // A residual of S over g: where there is no sample g is near 0, and such pixels, of which a map
    // may be full, would be all that the pooled noise follows. So those pixels are pooled whose
    // amount stands out from its own error.
    std::vector<bool> isPooled;
    if (choice.noise == NoiseSource::Pooled && residual != nullptr) {
        PrecisionChoice own = choice;
        own.noise = NoiseSource::Pixel;
        fill(PixelNoise(maps, images, own, points, precision.freedom()));
        const double *amount = maps.plane(Quantity::Amount);
        isPooled.resize(static_cast<size_t>(maps.size()));
        for (size_t i = 0; i < isPooled.size(); ++i) {
            isPooled[i] = std::fabs(amount[i]) >= kLeastAmountInSigmas * planes.amount[i];
        }
    }
    const PixelNoise noise(maps, images, choice, points, precision.freedom(), isPooled);
    maps.setPrecision(noise.found());
    fill(noise);
    for (const size_t i : unmeasured) {
        planes.a[i] = kNan;
        planes.valence[i] = kNan;
        planes.amount[i] = kNan;
    }
}

} // namespace orvel
