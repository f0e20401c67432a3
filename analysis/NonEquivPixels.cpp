#include "analysis/NonEquivPixels.h"

#include "analysis/NonNegativeFit.h"
#include "analysis/SmallQr.h"
#include "base/Simd.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace orvel {
namespace {

template <int N>
ORVEL_INLINE void solveLanes(const NonEquivPixels::Factors &f, const double *const *values,
                             std::size_t i, std::size_t bytes, Lanes (&x)[N])
{
    for (int k = 0; k < N; ++k) {
        x[k] = Lanes{}; // right side, then forward, then the solution
    }
    for (int e = 0; e < f.points; ++e) {
        Lanes y;
        loadLanes(values[e] + i, bytes, y);
        for (int k = 0; k < N; ++k) {
            x[k] += f.basis[e][k] * y;
        }
    }
    for (int k = 0; k < N - 1; ++k) { // the diagonal of L is 1
        for (int r = k + 1; r < N; ++r) {
            x[r] -= x[k] * f.lower[r][k];
        }
    }
    for (int k = N - 1; k >= 0; --k) {
        x[k] /= f.upper[k][k];
        for (int r = k - 1; r >= 0; --r) {
            x[r] -= x[k] * f.upper[r][k];
        }
    }
}

/// Residual sum of squares of the free fit.
ORVEL_INLINE void sumResiduals(const NonEquivPixels::Factors &f, const double *const *values,
                               std::size_t i, std::size_t bytes, Lanes &sum)
{
    sum = Lanes{};
    for (int k = 0; k < f.freedom; ++k) {
        Lanes product = {};
        for (int e = 0; e < f.points; ++e) {
            Lanes y;
            loadLanes(values[e] + i, bytes, y);
            product += f.complement[k][e] * y;
        }
        sum += product * product;
    }
}

template <int N>
ORVEL_INLINE void storeResults(const NonEquivPixels::Factors &f, const Lanes (&x)[N], std::size_t i,
                               std::size_t bytes, double *const *planes)
{
    constexpr int kBackground = indexOf(Quantity::Mut0);
    const int m = f.references;
    Lanes results[kQuantities] = {};
    Lanes sum = {};
    for (int k = 0; k < std::min(N, kReferenceRows); ++k) {
        if (k < m) {
            results[k] = f.shares[k] * x[k];
            sum += results[k];
        }
    }
    const Lanes total = sum * f.jump;
    Lanes valence = {};
    for (int k = 0; k < kReferenceRows; ++k) {
        results[k] /= sum;
        if (k < m) {
            results[kReferenceRows + k] = results[k] * total;
            valence += results[k] * f.valences[k];
        }
    }
    for (int k = 0; k < N; ++k) {
        if (k >= m) {
            results[kBackground + k - m] = x[k];
        }
    }
    results[indexOf(Quantity::Valence)] = valence;
    results[indexOf(Quantity::Amount)] = total;
    for (int q = 0; q < kQuantities; ++q) {
        if (planes[q] != nullptr) {
            storeLanes(results[q], bytes, planes[q] + i);
        }
    }
}

ORVEL_INLINE void storeResidual(const NonEquivPixels::Factors &f, const Lanes &sum, std::size_t i,
                                std::size_t bytes, double *plane)
{
    Lanes residual = sum / static_cast<double>(f.points);
    rootLanes(residual);
    storeLanes(residual, bytes, plane + i);
}

template <int N>
ORVEL_INLINE void fitBody(const NonEquivPixels::Factors &f, const double *const *values,
                          std::size_t n, double *const *planes)
{
    double *const residual = planes[indexOf(Quantity::Residual)];
    for (std::size_t i = 0; i < n; i += kLanes) {
        const std::size_t bytes = std::min<std::size_t>(kLanes, n - i) * sizeof(double);
        Lanes x[N];
        solveLanes<N>(f, values, i, bytes, x);
        storeResults<N>(f, x, i, bytes, planes);
        if (residual != nullptr) {
            Lanes sum;
            sumResiduals(f, values, i, bytes, sum);
            storeResidual(f, sum, i, bytes, residual);
        }
    }
}

/// The two halves of fitBody, with the solution in between.
template <int N>
ORVEL_INLINE void solveBody(const NonEquivPixels::Factors &f, const double *const *values,
                            std::size_t n, double *const *solution)
{
    for (std::size_t i = 0; i < n; i += kLanes) {
        const std::size_t bytes = std::min<std::size_t>(kLanes, n - i) * sizeof(double);
        Lanes x[N];
        solveLanes<N>(f, values, i, bytes, x);
        for (int k = 0; k < N; ++k) {
            storeLanes(x[k], bytes, solution[k] + i);
        }
    }
}

/// excess  [pixel] to be added to the residual sum of squares
template <int N>
ORVEL_INLINE void finishBody(const NonEquivPixels::Factors &f, const double *const *values,
                             const double *const *solution, const double *excess, std::size_t n,
                             double *const *planes)
{
    double *const residual = planes[indexOf(Quantity::Residual)];
    for (std::size_t i = 0; i < n; i += kLanes) {
        const std::size_t bytes = std::min<std::size_t>(kLanes, n - i) * sizeof(double);
        Lanes x[N];
        for (int k = 0; k < N; ++k) {
            loadLanes(solution[k] + i, bytes, x[k]);
        }
        storeResults<N>(f, x, i, bytes, planes);
        if (residual != nullptr) {
            Lanes sum;
            Lanes more;
            sumResiduals(f, values, i, bytes, sum);
            loadLanes(excess + i, bytes, more);
            storeResidual(f, sum + more, i, bytes, residual);
        }
    }
}

#define ORVEL_NAMED_KERNEL(NAME, BODY, PARAMETERS, ARGUMENTS)                                      \
    ORVEL_INLINE void NAME##Body PARAMETERS                                                        \
    {                                                                                              \
        BODY ARGUMENTS;                                                                            \
    }                                                                                              \
    ORVEL_KERNEL(NAME, PARAMETERS, ARGUMENTS)
#define ORVEL_FIT(N)                                                                               \
    ORVEL_NAMED_KERNEL(fit##N, fitBody<N>,                                                         \
                       (const NonEquivPixels::Factors &f, const double *const *values,             \
                        std::size_t n, double *const *planes),                                     \
                       (f, values, n, planes))                                                     \
    ORVEL_NAMED_KERNEL(solve##N, solveBody<N>,                                                     \
                       (const NonEquivPixels::Factors &f, const double *const *values,             \
                        std::size_t n, double *const *solution),                                   \
                       (f, values, n, solution))                                                   \
    ORVEL_NAMED_KERNEL(finish##N, finishBody<N>,                                                   \
                       (const NonEquivPixels::Factors &f, const double *const *values,             \
                        const double *const *solution, const double *excess, std::size_t n,        \
                        double *const *planes),                                                    \
                       (f, values, solution, excess, n, planes))
ORVEL_FIT(2)
ORVEL_FIT(3)
ORVEL_FIT(4)
ORVEL_FIT(5)
ORVEL_FIT(6)
ORVEL_FIT(7)
#undef ORVEL_FIT
#undef ORVEL_NAMED_KERNEL

/// Pixels of a bounded fit between its two halves: small enough for the nearest cache.
constexpr std::size_t kBoundedBlock = 512;

} // namespace

NonEquivPixels::NonEquivPixels(const RefValues &references) : m_unknowns(references.unknowns())
{
    const NonEquivFit fit(references);
    LinearSystem system(m_unknowns);
    system.clear();
    for (const std::vector<double> &basis : fit.basis()) {
        system.addSample(basis.data(), 0.0);
    }
    system.decompose();
    m_factors.points = static_cast<int>(references.energiesEv.size());
    m_factors.references = static_cast<int>(references.references());
    m_factors.jump = references.jump;
    std::copy(references.jumpShares.begin(), references.jumpShares.end(), m_factors.shares);
    std::copy(references.valences.begin(), references.valences.end(), m_factors.valences);
    for (int k = 0; k < m_unknowns; ++k) {
        const auto row = static_cast<std::size_t>(system.pivotRow(k));
        for (std::size_t e = 0; e < fit.basis().size(); ++e) {
            m_factors.basis[e][k] = fit.basis()[e][row];
        }
        for (int j = 0; j < m_unknowns; ++j) {
            m_factors.lower[k][j] = system.lower(k, j);
            m_factors.upper[k][j] = system.upper(k, j);
        }
    }
    const SmallQr qr(fit.basis());
    if (qr.isRegular()) {
        m_factors.freedom = qr.freedom();
        const Rows complement = qr.complement();
        for (std::size_t k = 0; k < complement.size(); ++k) {
            std::copy(complement[k].begin(), complement[k].end(), m_factors.complement[k]);
        }
    }
}

void NonEquivPixels::fit(const double *const *values, std::size_t n, double *const *planes) const
{
    using Fit = void (*)(const Factors &, const double *const *, std::size_t, double *const *);
    static constexpr Fit kFits[] = {fit2, fit3, fit4, fit5, fit6, fit7};
    kFits[m_unknowns - 2](m_factors, values, n, planes);
}

void NonEquivPixels::fitBounded(const double *const *values, std::size_t n,
                                const NonNegativeFit &bounds, double *const *planes,
                                std::uint8_t *held) const
{
    using Solve = void (*)(const Factors &, const double *const *, std::size_t, double *const *);
    using Finish = void (*)(const Factors &, const double *const *, const double *const *,
                            const double *, std::size_t, double *const *);
    static constexpr Solve kSolves[] = {solve2, solve3, solve4, solve5, solve6, solve7};
    static constexpr Finish kFinishes[] = {finish2, finish3, finish4, finish5, finish6, finish7};
    alignas(64) double scratch[kMostUnknowns + 1][kBoundedBlock];
    double *solution[kMostUnknowns];
    for (int k = 0; k < kMostUnknowns; ++k) {
        solution[k] = scratch[k];
    }
    double *const excess = scratch[kMostUnknowns];
    const auto allHeld = static_cast<std::uint8_t>((1U << m_factors.references) - 1U);
    const double *valuesAt[kPointRows];
    double *planesAt[kMapQuantities];
    for (std::size_t first = 0; first < n; first += kBoundedBlock) {
        const std::size_t count = std::min(kBoundedBlock, n - first);
        for (int e = 0; e < m_factors.points; ++e) {
            valuesAt[e] = values[e] + first;
        }
        for (int q = 0; q < kMapQuantities; ++q) {
            planesAt[q] = planes[q] != nullptr ? planes[q] + first : nullptr;
        }
        kSolves[m_unknowns - 2](m_factors, valuesAt, count, solution);
        bounds.bound(solution, count, held + first, excess);
        kFinishes[m_unknowns - 2](m_factors, valuesAt, solution, excess, count, planesAt);
        for (std::size_t i = 0; i < count; ++i) {
            if (held[first + i] == allHeld) { // nothing there: amounts of 0, not 0 / 0 times 0
                for (int k = 0; k < m_factors.references; ++k) {
                    double *amounts = planesAt[indexOf(Quantity::DMut1) + k];
                    if (amounts != nullptr) {
                        amounts[i] = 0.0;
                    }
                }
            }
        }
    }
}

ResultVector fitNonNegative(const RefValues &references, const std::vector<double> &y,
                            unsigned &held, double &residual)
{
    std::array<const double *, kPointRows> values = {};
    for (std::size_t e = 0; e < y.size(); ++e) {
        values[e] = &y[e];
    }
    ResultVector result = {};
    std::array<double *, kMapQuantities> planes = {};
    for (std::size_t q = 0; q < result.size(); ++q) {
        planes[q] = &result[q];
    }
    planes[indexOf(Quantity::Residual)] = &residual;
    std::uint8_t set = 0;
    NonEquivPixels(references)
        .fitBounded(values.data(), 1, NonNegativeFit(references), planes.data(), &set);
    held = set;
    return result;
}

} // namespace orvel
