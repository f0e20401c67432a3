#include "analysis/NonEquivPixels.h"

#include "base/Simd.h"

#include <algorithm>
#include <cstring>

namespace orvel {
namespace {

template <int N>
ORVEL_INLINE void fitBody(const NonEquivPixels::Factors &f, const double *const *values,
                          std::size_t n, double *const *planes)
{
    constexpr int kBackground = indexOf(Quantity::Mut0);
    const int m = f.references;
    for (std::size_t i = 0; i < n; i += kLanes) {
        const std::size_t bytes = std::min<std::size_t>(kLanes, n - i) * sizeof(double);
        const bool whole = bytes == sizeof(Lanes);

        Lanes x[N] = {}; // right side, then forward, then the solution
        for (int e = 0; e < f.points; ++e) {
            Lanes y = {};
            whole ? std::memcpy(&y, values[e] + i, sizeof y)
                  : std::memcpy(&y, values[e] + i, bytes);
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
                whole ? std::memcpy(planes[q] + i, &results[q], sizeof(Lanes))
                      : std::memcpy(planes[q] + i, &results[q], bytes);
            }
        }
    }
}

#define ORVEL_FIT(N)                                                                               \
    ORVEL_INLINE void fit##N##Body(const NonEquivPixels::Factors &f, const double *const *values,  \
                                   std::size_t n, double *const *planes)                           \
    {                                                                                              \
        fitBody<N>(f, values, n, planes);                                                          \
    }                                                                                              \
    ORVEL_KERNEL(fit##N,                                                                           \
                 (const NonEquivPixels::Factors &f, const double *const *values, std::size_t n,    \
                  double *const *planes),                                                          \
                 (f, values, n, planes))
ORVEL_FIT(2)
ORVEL_FIT(3)
ORVEL_FIT(4)
ORVEL_FIT(5)
ORVEL_FIT(6)
ORVEL_FIT(7)
#undef ORVEL_FIT

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
}

void NonEquivPixels::fit(const double *const *values, std::size_t n, double *const *planes) const
{
    using Fit = void (*)(const Factors &, const double *const *, std::size_t, double *const *);
    static constexpr Fit kFits[] = {fit2, fit3, fit4, fit5, fit6, fit7};
    kFits[m_unknowns - 2](m_factors, values, n, planes);
}

} // namespace orvel
