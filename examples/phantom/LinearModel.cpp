#include "LinearModel.h"

#include <cmath>
#include <limits>
#include <utility>

namespace orvel::phantom {

namespace {

/// Gauss-Jordan elimination with row pivoting.
std::vector<Numbers> inverseOf(std::vector<Numbers> a)
{
    const std::size_t n = a.size();
    for (std::size_t i = 0; i < n; ++i) {
        a[i].resize(2 * n, 0.0L);
        a[i][n + i] = 1.0L;
    }
    for (std::size_t k = 0; k < n; ++k) {
        std::size_t best = k;
        for (std::size_t r = k + 1; r < n; ++r) {
            if (std::abs(a[r][k]) > std::abs(a[best][k])) {
                best = r;
            }
        }
        std::swap(a[k], a[best]);
        const long double pivot = a[k][k];
        for (long double &value : a[k]) {
            value /= pivot;
        }
        for (std::size_t r = 0; r < n; ++r) {
            const long double factor = r == k ? 0.0L : a[r][k];
            for (std::size_t j = 0; j < 2 * n; ++j) {
                a[r][j] -= factor * a[k][j];
            }
        }
    }
    for (Numbers &row : a) {
        row.erase(row.begin(), row.begin() + static_cast<std::ptrdiff_t>(n));
    }
    return a;
}

} // namespace

LinearModel::LinearModel(std::vector<Numbers> rows)
    : m_rows(std::move(rows)), m_lengths(m_rows.front().size(), 0.0L)
{
    const std::size_t n = m_lengths.size();
    for (std::size_t j = 0; j < n; ++j) {
        for (const Numbers &row : m_rows) {
            m_lengths[j] = std::hypot(m_lengths[j], row[j]);
        }
        for (Numbers &row : m_rows) {
            row[j] /= m_lengths[j];
        }
    }
    std::vector<Numbers> gram(n, Numbers(n, 0.0L));
    for (const Numbers &row : m_rows) {
        for (std::size_t i = 0; i < n; ++i) {
            for (std::size_t j = 0; j < n; ++j) {
                gram[i][j] += row[i] * row[j];
            }
        }
    }
    m_inverse = inverseOf(std::move(gram));
}

Numbers LinearModel::scaledInverse(const Numbers &f) const
{
    Numbers product(f.size(), 0.0L);
    for (std::size_t i = 0; i < f.size(); ++i) {
        for (std::size_t j = 0; j < f.size(); ++j) {
            product[j] += f[i] / m_lengths[i] * m_inverse[i][j];
        }
    }
    return product;
}

Numbers LinearModel::gains(const Numbers &f) const
{
    const Numbers weights = scaledInverse(f);
    Numbers h;
    h.reserve(m_rows.size());
    for (const Numbers &row : m_rows) {
        long double sum = 0.0L;
        for (std::size_t j = 0; j < weights.size(); ++j) {
            sum += weights[j] * row[j];
        }
        h.push_back(sum);
    }
    return h;
}

long double LinearModel::roundoff(const Numbers &f, const Numbers &x) const
{
    constexpr long double kUnit = std::numeric_limits<double>::epsilon() / 2.0L;
    const auto m = static_cast<long double>(m_rows.size());
    const auto n = static_cast<long double>(m_lengths.size());
    long double solution = 0.0L;
    for (std::size_t j = 0; j < x.size(); ++j) {
        solution += std::abs(x[j]) * m_lengths[j];
    }
    long double data = 0.0L;
    for (const Numbers &row : m_rows) {
        long double y = 0.0L;
        for (std::size_t j = 0; j < x.size(); ++j) {
            y += row[j] * m_lengths[j] * x[j];
        }
        data = std::hypot(data, y);
    }
    long double through = 0.0L;
    for (const long double weight : scaledInverse(f)) {
        through += std::abs(weight);
    }
    return kUnit * ((m + 1.0L + 3.0L * n * n) * solution + (m + 1.0L) * data) * through;
}

double LinearModel::errorOf(const Numbers &f, const Numbers &x,
                            const std::vector<double> &dataErrors) const
{
    const Numbers h = gains(f);
    long double sum = roundoff(f, x);
    for (std::size_t i = 0; i < h.size(); ++i) {
        sum += std::abs(h[i]) * dataErrors[i];
    }
    return static_cast<double>(sum);
}

} // namespace orvel::phantom
