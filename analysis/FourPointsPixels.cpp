#include "analysis/FourPointsPixels.h"

#include "base/Simd.h"

#include <algorithm>
#include <cstring>
#include <utility>

// Every operation below stands in the order of FourPoints.cpp and MTools.cpp; what is alike for
// all pixels is computed once, which gives the same numbers.

namespace orvel {
namespace {

using Setup = FourPointsPixels::Setup;
using Planes = FourPointsPixels::Planes;
using Masks = decltype(Lanes() < Lanes());

#define ORVEL_PIXELS(NAME)                                                                         \
    ORVEL_KERNEL(                                                                                  \
        NAME, (const Setup &s, const double *const *values, std::size_t n, const Planes &planes),  \
        (s, values, n, planes))

ORVEL_INLINE void storeResult(const Setup &s, const Lanes &a, const Lanes &amount, std::size_t i,
                              std::size_t bytes, const Planes &planes)
{
    const Lanes valence = a * s.valenceA + (1.0 - a) * s.valenceB;
    storeLanes(a, bytes, planes.a + i);
    storeLanes(valence, bytes, planes.valence + i);
    storeLanes(amount, bytes, planes.amount + i);
}

/// The fraction from the line T = S / g + m + k E.
ORVEL_INLINE void storeFromLine(const Setup &s, const Lanes &g, const Lanes &m, const Lanes &k,
                                const Lanes &atV, std::size_t i, std::size_t bytes,
                                const Planes &planes)
{
    const Lanes u = g / (s.jumpRatio + 1);
    const Lanes w = s.jumpRatio * g / (s.jumpRatio + 1);
    const Lanes a =
        ((m + k * s.energyV - atV) * (w * u) + s.refBV * w) / (s.refBV * w - u * s.refAV);
    const Lanes amount = 1.0 / (g * 0.5);
    storeResult(s, a, amount, i, bytes, planes);
}

ORVEL_INLINE void threePointsBody(const Setup &s, const double *const *values, std::size_t n,
                                  const Planes &planes)
{
    const double a1 = s.refA[0];
    const double a2 = s.refA[1];
    const double b1 = s.refB[0];
    const double b2 = s.refB[1];
    const double alpha = (s.refAV - a1) / (a2 - a1);
    const double beta = (s.refBV - b1) / (b2 - b1);
    const double mean = ((a2 - b1) + (a2 - a1)) * 0.5;
    for (std::size_t i = 0; i < n; i += kLanes) {
        const std::size_t bytes = std::min<std::size_t>(kLanes, n - i) * sizeof(double);
        Lanes t1;
        Lanes t2;
        Lanes tV;
        loadLanes(values[0] + i, bytes, t1);
        loadLanes(values[1] + i, bytes, t2);
        loadLanes(values[2] + i, bytes, tV);
        const Lanes dMut = t2 - t1;
        const Lanes tau = (tV - t1) / dMut;
        const Lanes a = (tau - beta) / (alpha - beta);
        const Lanes amount = dMut / mean;
        storeResult(s, a, amount, i, bytes, planes);
    }
}
ORVEL_PIXELS(threePoints)

ORVEL_INLINE void exactBody(const Setup &s, const double *const *values, std::size_t n,
                            const Planes &planes)
{
    const double e1 = s.energies[0];
    const double e2 = s.energies[1];
    const double e3 = s.energies[2];
    const double s1 = s.refA[0] + s.refB[0];
    const double s2 = s.refA[1] + s.refB[1];
    const double s3 = s.refA[2] + s.refB[2];
    const double qS = (e2 - e1) * s3 + (e1 - e3) * s2 + (e3 - e2) * s1;
    for (std::size_t i = 0; i < n; i += kLanes) {
        const std::size_t bytes = std::min<std::size_t>(kLanes, n - i) * sizeof(double);
        Lanes t1;
        Lanes t2;
        Lanes t3;
        Lanes tV;
        loadLanes(values[0] + i, bytes, t1);
        loadLanes(values[1] + i, bytes, t2);
        loadLanes(values[2] + i, bytes, t3);
        loadLanes(values[3] + i, bytes, tV);
        const Lanes qT = (e2 - e1) * t3 + (e1 - e3) * t2 + (e3 - e2) * t1;
        const Lanes g = qS / qT;
        const Lanes m =
            -((e1 * t2 - e2 * t1) * s3 + (e2 * s1 - e1 * s2) * t3 + e3 * t1 * s2 - e3 * s1 * t2) /
            qS;
        const Lanes k = ((t2 - t1) * s3 + t3 * (s1 - s2) + t1 * s2 - t2 * s1) / qS;
        storeFromLine(s, g, m, k, tV, i, bytes, planes);
    }
}
ORVEL_PIXELS(exact)

ORVEL_INLINE void magnitude(const Lanes &x, Lanes &out)
{
    out = x < 0.0 ? -x : x; // minus zero stays: no comparison tells it from zero
}

ORVEL_INLINE void swapWhere(const Masks &where, Lanes &x, Lanes &y)
{
    const Lanes before = x;
    x = where ? y : x;
    y = where ? before : y;
}

ORVEL_INLINE void leastSquaresBody(const Setup &s, const double *const *values, std::size_t n,
                                   const Planes &planes)
{
    constexpr double kBelowEveryMagnitude = -1e300;
    double sums[kPointRows] = {};
    double countSum = 0.0;
    double sumE = 0.0;
    double sumEE = 0.0;
    double sumS = 0.0;
    double sumES = 0.0;
    for (int p = 0; p < s.points; ++p) {
        const double e = s.energies[p];
        sums[p] = s.refA[p] + s.refB[p];
        countSum += 1.0;
        sumE += e;
        sumEE += e * e;
        sumS += sums[p];
        sumES += e * sums[p];
    }
    for (std::size_t i = 0; i < n; i += kLanes) {
        const std::size_t bytes = std::min<std::size_t>(kLanes, n - i) * sizeof(double);
        Lanes sumT = {};
        Lanes sumET = {};
        Lanes sumTT = {};
        Lanes sumTS = {};
        for (int p = 0; p < s.points; ++p) {
            Lanes t;
            loadLanes(values[p] + i, bytes, t);
            sumT += t;
            sumET += s.energies[p] * t;
            sumTT += t * t;
            sumTS += t * sums[p];
        }
        Lanes tV;
        loadLanes(values[s.points] + i, bytes, tV);

        // Rows in logical order: swapping a row here is swapping its number there.
        const Lanes zero = {};
        Lanes a[3][3] = {{zero + countSum, zero + sumE, sumT},
                         {zero + sumE, zero + sumEE, sumET},
                         {sumT, sumET, sumTT}};
        Lanes y[3] = {zero + sumS, zero + sumES, sumTS};
        for (int k = 0; k < 2; ++k) {
            Lanes largest;
            magnitude(a[k][k], largest);
            largest = largest > kBelowEveryMagnitude ? largest : zero + kBelowEveryMagnitude;
            Masks chosen[3] = {};
            for (int r = k + 1; r < 3; ++r) {
                Lanes size;
                magnitude(a[r][k], size);
                chosen[r] = size > largest;
                largest = chosen[r] ? size : largest;
                for (int earlier = k + 1; earlier < r; ++earlier) {
                    chosen[earlier] &= ~chosen[r];
                }
            }
            for (int r = k + 1; r < 3; ++r) {
                for (int j = 0; j < 3; ++j) { // multipliers to the left of k move along
                    swapWhere(chosen[r], a[k][j], a[r][j]);
                }
                swapWhere(chosen[r], y[k], y[r]);
            }
            const Lanes divisor = a[k][k] == 0.0 ? zero + 1.0 : a[k][k];
            for (int r = k + 1; r < 3; ++r) {
                a[r][k] /= divisor;
                for (int j = k + 1; j < 3; ++j) {
                    a[r][j] -= a[k][j] * a[r][k];
                }
            }
        }
        y[1] -= y[0] * a[1][0];
        y[2] -= y[0] * a[2][0];
        y[2] -= y[1] * a[2][1];
        y[2] /= a[2][2];
        y[1] -= y[2] * a[1][2];
        y[0] -= y[2] * a[0][2];
        y[1] /= a[1][1];
        y[0] -= y[1] * a[0][1];
        y[0] /= a[0][0];

        const Lanes m = -y[0] / y[2];
        const Lanes k = -y[1] / y[2];
        storeFromLine(s, y[2], m, k, tV, i, bytes, planes);
    }
}
ORVEL_PIXELS(leastSquares)

} // namespace

void FourPointsPixels::solve(const double *const *values, std::size_t n, const Planes &planes) const
{
    switch (m_method) {
    case Method::ThreePoints:
        threePoints(m_setup, values, n, planes);
        break;
    case Method::ExactFourPoints:
        exact(m_setup, values, n, planes);
        break;
    default:
        leastSquares(m_setup, values, n, planes);
        break;
    }
}

} // namespace orvel
