#include "analysis/NonNegativeFit.h"

#include "analysis/SmallQr.h"
#include "base/Simd.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace orvel {
namespace {

constexpr int kMost = kReferenceRows;
constexpr std::size_t kBlock = 256; ///< pixels worked on at once

/// One block of coefficients that are to be bounded.
struct Block {
    double x[kMost][kBlock];
    double held[kBlock]; ///< the set as a number: lanes compare and choose doubles
    double excess[kBlock];
};

template <int M>
ORVEL_INLINE void chooseFacesBody(const NonNegativeFit::Faces &faces, std::size_t n, Block &block)
{
    constexpr int kAll = (1 << M) - 1;
    for (std::size_t p = 0; p < n; p += kLanes) {
        Lanes x[M];
        for (int i = 0; i < M; ++i) {
            std::memcpy(&x[i], block.x[i] + p, sizeof x[i]);
        }
        const Lanes zero = {};
        Lanes best[M] = {};
        Lanes leastExcess = zero + std::numeric_limits<double>::infinity();
        Lanes bestSet = zero + static_cast<double>(kAll);
#pragma GCC unroll 16
        for (int held = kAll; held > 0; --held) { // all held: feasible whatever the rest
            const NonNegativeFit::Face &face = faces.of[static_cast<std::size_t>(held)];
            Lanes excess = {};
            Lanes solution[M] = {};
            Lanes least = {};
            for (int i = 0; i < M; ++i) {
                if ((held >> i & 1) != 0) {
                    for (int j = i; j < M; ++j) {
                        if ((held >> j & 1) != 0) {
                            excess += x[i] * x[j] * face.excess[i][j];
                        }
                    }
                    continue;
                }
                solution[i] = x[i];
                for (int j = 0; j < M; ++j) {
                    if ((held >> j & 1) != 0) {
                        solution[i] += face.shift[i][j] * x[j];
                    }
                }
                least = solution[i] < least ? solution[i] : least;
            }
            const auto better = (least >= zero) & (excess < leastExcess);
            leastExcess = better ? excess : leastExcess;
            bestSet = better ? zero + static_cast<double>(held) : bestSet;
            for (int i = 0; i < M; ++i) {
                best[i] = better ? solution[i] : best[i];
            }
        }
        for (int i = 0; i < M; ++i) {
            std::memcpy(block.x[i] + p, &best[i], sizeof best[i]);
        }
        std::memcpy(block.held + p, &bestSet, sizeof bestSet);
        std::memcpy(block.excess + p, &leastExcess, sizeof leastExcess);
    }
}

/// Marks pixels with a negative coefficient and none that is not finite by a 1.
template <int M>
ORVEL_INLINE void markNegativeBody(const double *const *x, std::size_t n, double *marks)
{
    const Lanes zero = {};
    for (std::size_t p = 0; p < n; p += kLanes) {
        const std::size_t bytes = std::min<std::size_t>(kLanes, n - p) * sizeof(double);
        Lanes least = {};
        Lanes sum = {}; // 0 unless something is not finite
        for (int i = 0; i < M; ++i) {
            Lanes value;
            loadLanes(x[i] + p, bytes, value);
            least = value < least ? value : least;
            sum += value * 0.0;
        }
        const Lanes mark = ((least < zero) & (sum == zero)) ? zero + 1.0 : zero;
        storeLanes(mark, bytes, marks + p);
    }
}

#define ORVEL_FACES(M)                                                                             \
    ORVEL_INLINE void chooseFaces##M##Body(const NonNegativeFit::Faces &faces, std::size_t n,      \
                                           Block &block)                                           \
    {                                                                                              \
        chooseFacesBody<M>(faces, n, block);                                                       \
    }                                                                                              \
    ORVEL_KERNEL(chooseFaces##M,                                                                   \
                 (const NonNegativeFit::Faces &faces, std::size_t n, Block &block),                \
                 (faces, n, block))                                                                \
    ORVEL_INLINE void markNegative##M##Body(const double *const *x, std::size_t n, double *marks)  \
    {                                                                                              \
        markNegativeBody<M>(x, n, marks);                                                          \
    }                                                                                              \
    ORVEL_KERNEL(markNegative##M, (const double *const *x, std::size_t n, double *marks),          \
                 (x, n, marks))
ORVEL_FACES(1)
ORVEL_FACES(2)
ORVEL_FACES(3)
ORVEL_FACES(4)
#undef ORVEL_FACES

NonNegativeFit::Face faceOf(const Rows &h, unsigned held)
{
    std::vector<std::size_t> a;
    std::vector<std::size_t> f;
    for (std::size_t i = 0; i < h.size(); ++i) {
        ((held >> i & 1U) != 0 ? a : f).push_back(i);
    }
    const auto part = [&h](const std::vector<std::size_t> &rows,
                           const std::vector<std::size_t> &columns) {
        Rows result;
        for (const std::size_t i : rows) {
            result.emplace_back();
            for (const std::size_t j : columns) {
                result.back().push_back(h[i][j]);
            }
        }
        return result;
    };
    const Rows shift = solvePositive(part(f, f), part(f, a));
    NonNegativeFit::Face face;
    for (std::size_t i = 0; i < f.size(); ++i) {
        for (std::size_t j = 0; j < a.size(); ++j) {
            face.shift[f[i]][a[j]] = shift[i][j];
        }
    }
    for (const std::size_t i : a) {
        for (const std::size_t j : a) {
            double value = h[i][j];
            for (std::size_t k = 0; k < f.size(); ++k) {
                value -= h[i][f[k]] * face.shift[f[k]][j];
            }
            face.excess[std::min(i, j)][std::max(i, j)] += value;
        }
    }
    return face;
}

} // namespace

NonNegativeFit::NonNegativeFit(const RefValues &references) : m_unknowns(references.unknowns())
{
    const NonEquivFit fit(references);
    const std::size_t m = references.references();
    const auto background = static_cast<std::size_t>(m_unknowns) - m;
    m_faces.references = static_cast<int>(m);

    Rows backgroundFirst = fit.basis();
    for (std::vector<double> &row : backgroundFirst) {
        std::rotate(row.begin(), row.begin() + static_cast<std::ptrdiff_t>(m), row.end());
    }
    const SmallQr qr(backgroundFirst);
    m_regular = m > 0 && qr.isRegular();
    if (!m_regular) {
        return;
    }
    const Rows h = qr.reducedNormal(static_cast<int>(background));
    for (unsigned held = 0; held < 1U << m; ++held) {
        m_faces.of[held] = faceOf(h, held);
    }
    const Rows shift = qr.backgroundShift(static_cast<int>(background));
    for (std::size_t i = 0; i < background; ++i) {
        std::copy(shift[i].begin(), shift[i].end(), m_background[i]);
    }
}

Rows NonNegativeFit::projection(unsigned held) const
{
    const auto m = static_cast<std::size_t>(m_faces.references);
    Rows result(m, std::vector<double>(m, 0.0));
    for (std::size_t i = 0; i < m; ++i) {
        if ((held >> i & 1U) == 0) {
            result[i][i] = 1.0;
            for (std::size_t j = 0; j < m; ++j) {
                result[i][j] += m_faces.of[held].shift[i][j];
            }
        }
    }
    return result;
}

void NonNegativeFit::bound(double *const *x, std::size_t n, std::uint8_t *held,
                           double *excess) const
{
    using Choose = void (*)(const Faces &, std::size_t, Block &);
    using Mark = void (*)(const double *const *, std::size_t, double *);
    static constexpr Choose kChoose[] = {chooseFaces1, chooseFaces2, chooseFaces3, chooseFaces4};
    static constexpr Mark kMark[] = {markNegative1, markNegative2, markNegative3, markNegative4};
    std::fill(held, held + n, std::uint8_t{0});
    if (!m_regular) {
        std::fill(excess, excess + n, 0.0);
        return;
    }
    const auto m = static_cast<std::size_t>(m_faces.references);
    kMark[m - 1](x, n, excess);
    Block block = {};
    std::array<std::size_t, kBlock> pixels = {};
    std::size_t waiting = 0;
    const auto work = [&] {
        kChoose[m - 1](m_faces, waiting, block);
        for (std::size_t w = 0; w < waiting; ++w) {
            const std::size_t p = pixels[w];
            for (std::size_t b = m; b < static_cast<std::size_t>(m_unknowns); ++b) {
                double shift = 0.0;
                for (std::size_t i = 0; i < m; ++i) {
                    shift += m_background[b - m][i] * (x[i][p] - block.x[i][w]);
                }
                x[b][p] += shift;
            }
            for (std::size_t i = 0; i < m; ++i) {
                x[i][p] = block.x[i][w];
            }
            held[p] = static_cast<std::uint8_t>(block.held[w]);
            excess[p] = block.excess[w];
        }
        waiting = 0;
    };
    for (std::size_t p = 0; p < n; ++p) {
        if (excess[p] == 0.0) {
            continue;
        }
        for (std::size_t i = 0; i < m; ++i) {
            block.x[i][waiting] = x[i][p];
        }
        pixels[waiting++] = p;
        if (waiting == kBlock) {
            work();
        }
    }
    work();
}

} // namespace orvel
