#pragma once

#include <QtGlobal>

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

// Solutions to hold those of the toolkit against: exact ones of integer systems, ones of long
// doubles for the rest; and how far elimination in doubles may be from them.

namespace exact {

__extension__ using Integer = __int128;
using Real = long double;
template <class Number> using Table = std::vector<std::vector<Number>>; // [row][column]

/// a b - c d; the tests' numbers are chosen such that it fits.
inline Integer minorOf(Integer a, Integer b, Integer c, Integer d)
{
    Integer ab = 0;
    Integer cd = 0;
    Integer difference = 0;
    if (__builtin_mul_overflow(a, b, &ab) || __builtin_mul_overflow(c, d, &cd) ||
        __builtin_sub_overflow(ab, cd, &difference)) {
        qFatal("the test's own integers overflow");
    }
    return difference;
}

/// x and the inverse of A, as fractions of one denominator; a zero denominator: A is singular.
struct Fractions {
    Integer denominator = 0;
    std::vector<Integer> x;
    Table<Integer> inverse;
};

/// Fraction-free elimination of (A b 1) (Bareiss): all divisions by the pivot before leave no rest.
inline Fractions solve(const Table<Integer> &a, const std::vector<Integer> &b)
{
    const size_t n = b.size();
    Table<Integer> rows = a;
    for (size_t i = 0; i < n; ++i) {
        rows[i].push_back(b[i]);
        for (size_t j = 0; j < n; ++j) {
            rows[i].push_back(i == j ? 1 : 0);
        }
    }
    Integer before = 1;
    for (size_t k = 0; k < n; ++k) {
        size_t pivot = k;
        while (pivot < n && rows[pivot][k] == 0) {
            ++pivot;
        }
        if (pivot == n) {
            return {};
        }
        std::swap(rows[k], rows[pivot]);
        for (size_t i = 0; i < n; ++i) {
            if (i != k) {
                const Integer factor = rows[i][k];
                for (size_t j = 0; j < rows[i].size(); ++j) {
                    rows[i][j] = minorOf(rows[k][k], rows[i][j], factor, rows[k][j]) / before;
                }
            }
        }
        before = rows[k][k];
    }
    Fractions result;
    result.denominator = before;
    for (const auto &row : rows) {
        result.x.push_back(row[n]);
        result.inverse.emplace_back(row.begin() + static_cast<std::ptrdiff_t>(n) + 1, row.end());
    }
    return result;
}

/// gamma(n) = n u / (1 - n u): relative error of n roundings of doubles.
inline Real gamma(size_t n)
{
    const Real nu = static_cast<Real>(n) * std::numeric_limits<double>::epsilon() / 2;
    return nu / (1 - nu);
}

/// What elimination in doubles may add to |A x - b|, in the order of the rows of A, when it found x
/// by the factors L and U: |A x - b| <= gamma(3n) P^T |L| |U| |x|.
/// N. J. Higham, Accuracy and Stability of Numerical Algorithms, 2nd ed., theorem 9.4.
template <class System, class Vector>
std::vector<Real> eliminationResidual(const System &system, const Vector &x)
{
    const auto n = static_cast<size_t>(system.unknowns());
    std::vector<Real> residual(n);
    for (int i = 0; i < system.unknowns(); ++i) {
        for (int k = 0; k <= i; ++k) {
            for (int j = k; j < system.unknowns(); ++j) {
                residual[static_cast<size_t>(system.pivotRow(i))] +=
                    gamma(3 * n) * std::fabs(static_cast<Real>(system.lower(i, k))) *
                    std::fabs(static_cast<Real>(system.upper(k, j))) *
                    std::fabs(static_cast<Real>(x[static_cast<size_t>(j)]));
            }
        }
    }
    return residual;
}

/// Largest error of each unknown: |A^-1| residual. A hundredth is left to the inverse's own error
/// (it is known to some 64 bits less the digits that its condition costs).
inline std::vector<Real> errorBounds(const Table<Real> &inverse, const std::vector<Real> &residual)
{
    std::vector<Real> bounds;
    for (const auto &row : inverse) {
        Real sum = 0;
        for (size_t j = 0; j < row.size(); ++j) {
            sum += std::fabs(row[j]) * residual[j];
        }
        bounds.push_back(sum * Real(1.01));
    }
    return bounds;
}

} // namespace exact
