#include "analysis/SmallQr.h"

#include <algorithm>
#include <cmath>

namespace orvel {
namespace {

constexpr double kRankTolerance = 1e-10; ///< of a column of length 1
constexpr int kMostSweeps = 60;          ///< of rotations; about six are usual

double dot(const std::vector<double> &a, const std::vector<double> &b, size_t from = 0)
{
    double sum = 0.0;
    for (size_t i = from; i < a.size(); ++i) {
        sum += a[i] * b[i];
    }
    return sum;
}

/// Length without overflow or underflow on the way.
double lengthOf(const std::vector<double> &v)
{
    double largest = 0.0;
    for (const double x : v) {
        largest = std::max(largest, std::fabs(x));
    }
    if (!(largest > 0.0) || !std::isfinite(largest)) {
        return largest;
    }
    double sum = 0.0;
    for (const double x : v) {
        sum += (x / largest) * (x / largest);
    }
    return largest * std::sqrt(sum);
}

} // namespace

SmallQr::SmallQr(const Rows &a)
    : m_points(static_cast<int>(a.size())),
      m_unknowns(a.empty() ? 0 : static_cast<int>(a[0].size()))
{
    const auto n = a.size();
    const auto unknowns = static_cast<size_t>(m_unknowns);
    m_regular = m_unknowns > 0 && m_points >= m_unknowns;
    for (size_t k = 0; k < unknowns; ++k) {
        std::vector<double> column(n);
        for (size_t i = 0; i < n; ++i) {
            column[i] = a[i][k];
            m_regular = m_regular && std::isfinite(column[i]);
        }
        m_lengths.push_back(lengthOf(column));
        m_regular = m_regular && m_lengths.back() > 0.0;
        for (double &x : column) {
            x /= m_lengths.back();
        }
        m_columns.push_back(std::move(column));
    }
    for (size_t k = 0; k < unknowns && m_regular; ++k) {
        std::vector<double> &v = m_columns[k];
        const double length = std::sqrt(dot(v, v, k));
        if (!(length > kRankTolerance)) {
            m_regular = false;
            return;
        }
        const double diagonal = v[k] > 0.0 ? -length : length;
        v[k] -= diagonal;
        m_diagonal.push_back(diagonal);
        m_betas.push_back(2.0 / dot(v, v, k));
        for (size_t j = k + 1; j < unknowns; ++j) {
            std::vector<double> &other = m_columns[j];
            const double factor = m_betas[k] * dot(v, other, k);
            for (size_t i = k; i < n; ++i) {
                other[i] -= factor * v[i];
            }
        }
    }
}

double SmallQr::r(int row, int column) const
{
    return row == column ? m_diagonal[static_cast<size_t>(row)]
                         : m_columns[static_cast<size_t>(column)][static_cast<size_t>(row)];
}

std::vector<double> SmallQr::orthogonal(int column) const
{
    std::vector<double> q(static_cast<size_t>(m_points), 0.0);
    q[static_cast<size_t>(column)] = 1.0;
    for (size_t k = static_cast<size_t>(m_unknowns); k-- > 0;) {
        const std::vector<double> &v = m_columns[k];
        const double factor = m_betas[k] * dot(v, q, k);
        for (size_t i = k; i < q.size(); ++i) {
            q[i] -= factor * v[i];
        }
    }
    return q;
}

Rows SmallQr::triangleInverse() const
{
    const auto n = static_cast<size_t>(m_unknowns);
    Rows inverse(n, std::vector<double>(n, 0.0));
    for (int column = 0; column < m_unknowns; ++column) {
        const auto c = static_cast<size_t>(column);
        inverse[c][c] = 1.0 / r(column, column);
        for (int row = column - 1; row >= 0; --row) {
            double sum = 0.0;
            for (int k = row + 1; k <= column; ++k) {
                sum += r(row, k) * inverse[static_cast<size_t>(k)][c];
            }
            inverse[static_cast<size_t>(row)][c] = -sum / r(row, row);
        }
    }
    return inverse;
}

Rows SmallQr::normalInverse() const
{
    const Rows inverse = triangleInverse();
    const size_t n = inverse.size();
    Rows result(n, std::vector<double>(n, 0.0));
    for (size_t i = 0; i < n; ++i) {
        for (size_t j = 0; j < n; ++j) {
            result[i][j] = dot(inverse[i], inverse[j]) / (m_lengths[i] * m_lengths[j]);
        }
    }
    return result;
}

Rows SmallQr::pseudoInverse() const
{
    const Rows inverse = triangleInverse();
    const size_t n = inverse.size();
    Rows result(n, std::vector<double>(static_cast<size_t>(m_points), 0.0));
    for (size_t k = 0; k < n; ++k) {
        const std::vector<double> q = orthogonal(static_cast<int>(k));
        for (size_t i = 0; i <= k; ++i) {
            for (size_t point = 0; point < q.size(); ++point) {
                result[i][point] += inverse[i][k] * q[point] / m_lengths[i];
            }
        }
    }
    return result;
}

Rows SmallQr::complement() const
{
    Rows result;
    for (int k = m_unknowns; k < m_points; ++k) {
        result.push_back(orthogonal(k));
    }
    return result;
}

Rows SmallQr::triangle() const
{
    const auto n = static_cast<size_t>(m_unknowns);
    Rows result(n, std::vector<double>(n, 0.0));
    for (int i = 0; i < m_unknowns; ++i) {
        for (int j = i; j < m_unknowns; ++j) {
            result[static_cast<size_t>(i)][static_cast<size_t>(j)] =
                r(i, j) * m_lengths[static_cast<size_t>(j)];
        }
    }
    return result;
}

std::vector<double> SmallQr::solve(const std::vector<double> &y) const
{
    const Rows inverse = pseudoInverse();
    std::vector<double> x;
    x.reserve(inverse.size());
    for (const std::vector<double> &row : inverse) {
        x.push_back(dot(row, y));
    }
    return x;
}

Rows SmallQr::reducedNormal(int background) const
{
    const Rows all = triangle();
    const auto first = static_cast<size_t>(background);
    const size_t m = all.size() - first;
    Rows h(m, std::vector<double>(m, 0.0));
    for (size_t i = 0; i < m; ++i) {
        for (size_t j = 0; j < m; ++j) {
            for (size_t k = 0; k <= std::min(i, j); ++k) {
                h[i][j] += all[first + k][first + i] * all[first + k][first + j];
            }
        }
    }
    return h;
}

Rows SmallQr::backgroundShift(int background) const
{
    const Rows all = triangle(); // R11^-1 R12
    const auto first = static_cast<size_t>(background);
    const size_t m = all.size() - first;
    Rows shift(first, std::vector<double>(m, 0.0));
    for (size_t j = 0; j < m; ++j) {
        for (size_t i = first; i-- > 0;) {
            double value = all[i][first + j];
            for (size_t k = i + 1; k < first; ++k) {
                value -= all[i][k] * shift[k][j];
            }
            shift[i][j] = value / all[i][i];
        }
    }
    return shift;
}

double SmallQr::normalCondition() const
{
    // One-sided Jacobi rotations (Golub & Van Loan, sec. 8.6.3): the columns of R become
    // orthogonal, their lengths are then the singular values, small ones with all their digits.
    const Rows rows = triangle();
    const size_t n = rows.size();
    Rows u(n, std::vector<double>(n, 0.0)); // [column][row]
    for (size_t i = 0; i < n; ++i) {
        for (size_t j = 0; j < n; ++j) {
            u[j][i] = rows[i][j];
        }
    }
    for (int sweep = 0; sweep < kMostSweeps; ++sweep) {
        bool rotated = false;
        for (size_t p = 0; p + 1 < n; ++p) {
            for (size_t q = p + 1; q < n; ++q) {
                const double pp = dot(u[p], u[p]);
                const double qq = dot(u[q], u[q]);
                const double pq = dot(u[p], u[q]);
                if (!(std::fabs(pq) > 1e-15 * std::sqrt(pp * qq))) {
                    continue;
                }
                rotated = true;
                const double zeta = (qq - pp) / (2.0 * pq);
                const double t =
                    (zeta >= 0.0 ? 1.0 : -1.0) / (std::fabs(zeta) + std::sqrt(1.0 + zeta * zeta));
                const double c = 1.0 / std::sqrt(1.0 + t * t);
                for (size_t i = 0; i < n; ++i) {
                    const double before = u[p][i];
                    u[p][i] = c * before - c * t * u[q][i];
                    u[q][i] = c * t * before + c * u[q][i];
                }
            }
        }
        if (!rotated) {
            break;
        }
    }
    double least = lengthOf(u[0]);
    double largest = least;
    for (const std::vector<double> &column : u) {
        least = std::min(least, lengthOf(column));
        largest = std::max(largest, lengthOf(column));
    }
    return (largest / least) * (largest / least);
}

// Elimination without pivoting, which a positive definite matrix does not need.
Rows solvePositive(Rows a, Rows b)
{
    const size_t n = a.size();
    for (size_t k = 0; k < n; ++k) {
        for (size_t i = k + 1; i < n; ++i) {
            const double factor = a[i][k] / a[k][k];
            for (size_t j = k; j < n; ++j) {
                a[i][j] -= factor * a[k][j];
            }
            for (size_t j = 0; j < b[i].size(); ++j) {
                b[i][j] -= factor * b[k][j];
            }
        }
    }
    for (size_t k = n; k-- > 0;) {
        for (size_t j = 0; j < b[k].size(); ++j) {
            for (size_t i = k + 1; i < n; ++i) {
                b[k][j] -= a[k][i] * b[i][j];
            }
            b[k][j] /= a[k][k];
        }
    }
    return b;
}

} // namespace orvel
