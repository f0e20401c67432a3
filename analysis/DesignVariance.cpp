#include "analysis/DesignVariance.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvel {
namespace {

constexpr double kInfinite = std::numeric_limits<double>::infinity();
/// Of squares: the normal matrix of a design keeps about this before rounding takes over.
constexpr double kRank = 1e-12;

/// v^T R^-1 for an upper triangle R.
template <class Out>
void solveFromLeft(const Rows &triangle, const std::vector<double> &v, Out &out)
{
    for (size_t j = 0; j < v.size(); ++j) {
        double rest = v[j];
        for (size_t k = 0; k < j; ++k) {
            rest -= out[k] * triangle[k][j];
        }
        out[j] = rest / triangle[j][j];
    }
}

} // namespace

NonEquivDesign::NonEquivDesign(const RefValues &candidates, const Rows &directions)
    : m_unknowns(candidates.unknowns())
{
    const Rows basis = NonEquivFit(candidates).basis();
    const SmallQr qr(basis);
    m_regular = qr.isRegular();
    if (!m_regular) {
        return;
    }
    const Rows triangle = qr.triangle();
    for (const std::vector<double> &row : basis) {
        m_rows.emplace_back();
        solveFromLeft(triangle, row, m_rows.back());
    }
    for (const std::vector<double> &direction : directions) {
        std::vector<double> ofUnknowns(static_cast<size_t>(m_unknowns), 0.0);
        for (size_t i = 0; i < direction.size(); ++i) {
            ofUnknowns[i] = candidates.jumpShares[i] * direction[i];
        }
        m_directions.emplace_back();
        solveFromLeft(triangle, ofUnknowns, m_directions.back());
    }
}

double NonEquivDesign::variance(const Design &design) const
{
    const auto n = static_cast<size_t>(m_unknowns);
    double g[kMostUnknowns][kMostUnknowns] = {}; // lower triangle; becomes L
    for (int p = 0; p < design.count; ++p) {
        const Row &row = m_rows[static_cast<size_t>(design.at[static_cast<size_t>(p)])];
        for (size_t i = 0; i < n; ++i) {
            for (size_t j = 0; j <= i; ++j) {
                g[i][j] += row[i] * row[j];
            }
        }
    }
    double inverses[kMostUnknowns]; // of the diagonal of L
    for (size_t i = 0; i < n; ++i) {
        double pivot = g[i][i];
        for (size_t j = 0; j < i; ++j) {
            double rest = g[i][j];
            for (size_t k = 0; k < j; ++k) {
                rest -= g[i][k] * g[j][k];
            }
            g[i][j] = rest * inverses[j];
            pivot -= g[i][j] * g[i][j];
        }
        if (!(pivot > kRank * g[i][i])) {
            return kInfinite;
        }
        inverses[i] = 1.0 / std::sqrt(pivot);
    }
    double sum = 0.0;
    for (const Row &direction : m_directions) {
        double solved[kMostUnknowns];
        for (size_t i = 0; i < n; ++i) {
            double rest = direction[i];
            for (size_t k = 0; k < i; ++k) {
                rest -= g[i][k] * solved[k];
            }
            solved[i] = rest * inverses[i];
            sum += solved[i] * solved[i];
        }
    }
    return sum;
}

FourPointsDesign::FourPointsDesign(Method method, const RefValues &candidates, double a,
                                   double amount)
    : m_method(method), m_jumpRatio(candidates.jumpShares[0] / candidates.jumpShares[1]),
      m_jumpA(candidates.jumpShares[0] * candidates.jump),
      m_jumpB(candidates.jumpShares[1] * candidates.jump)
{
    const std::vector<double> &energies = candidates.energiesEv;
    const auto [low, high] = std::minmax_element(energies.begin(), energies.end());
    const double u = 2.0 / amount / (m_jumpRatio + 1.0);
    const double w = m_jumpRatio * u;
    for (size_t i = 0; i < energies.size(); ++i) {
        const double valueA = candidates.values[0][i];
        const double valueB = candidates.values[1][i];
        const double curve = a * valueA / w + (1.0 - a) * valueB / u;
        m_candidates.push_back({(energies[i] - *low) / (*high - *low), valueA, valueB, curve});
        m_largest = std::max(m_largest, std::fabs(curve));
    }
}

double FourPointsDesign::difference(int candidate) const
{
    const Candidate &c = m_candidates[static_cast<size_t>(candidate)];
    return std::fabs(c.a / m_jumpA - c.b / m_jumpB);
}

bool FourPointsDesign::isAlike(const Design &design, double within) const
{
    const int n = design.count - 1;
    double mean[3] = {}; // of energy, difference, mean spectrum
    double values[kPointRows][3];
    for (int i = 0; i < n; ++i) {
        const Candidate &c =
            m_candidates[static_cast<size_t>(design.at[static_cast<size_t>(i) + 1])];
        values[i][0] = m_method == Method::ThreePoints ? 0.0 : c.energy;
        values[i][1] = c.a / m_jumpA - c.b / m_jumpB;
        values[i][2] = 0.5 * (c.a / m_jumpA + c.b / m_jumpB);
        if (!(std::fabs(values[i][1]) <= within)) {
            return false;
        }
        for (int k = 0; k < 3; ++k) {
            mean[k] += values[i][k] / n;
        }
    }
    double sums[3][3] = {};
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < 3; ++j) {
            for (int k = 0; k <= j; ++k) {
                sums[j][k] += (values[i][j] - mean[j]) * (values[i][k] - mean[k]);
            }
        }
    }
    const auto remains = [&sums](int k) {
        const double along = sums[0][0] > 0.0 ? sums[k][0] * sums[k][0] / sums[0][0] : 0.0;
        return sums[k][k] - along;
    };
    return remains(1) <= within * within * remains(2);
}

FourPointsDesign::Variances FourPointsDesign::variances(const Design &design) const
{
    const Variances found = m_method == Method::ThreePoints ? threePoints(design) : line(design);
    return std::isfinite(found.a) ? found : Variances{kInfinite, kInfinite};
}

FourPointsDesign::Variances FourPointsDesign::threePoints(const Design &design) const
{
    const Candidate &v = m_candidates[static_cast<size_t>(design.at[0])];
    const Candidate &p1 = m_candidates[static_cast<size_t>(design.at[1])];
    const Candidate &p2 = m_candidates[static_cast<size_t>(design.at[2])];
    const double alpha = (v.a - p1.a) / (p2.a - p1.a);
    const double beta = (v.b - p1.b) / (p2.b - p1.b);
    const double step = p2.curve - p1.curve;
    // Steps and differences that are rounding alone would pass for tiny ones.
    if (!(std::fabs(step) > 1e-10 * m_largest) ||
        !(std::fabs(alpha - beta) > 1e-10 * (std::fabs(alpha) + std::fabs(beta)))) {
        return {kInfinite, kInfinite};
    }
    const double tau = (v.curve - p1.curve) / step;
    const double scale = 1.0 / (step * (alpha - beta)); // da / dT_V
    const double mean = ((p2.a - p1.b) + (p2.a - p1.a)) * 0.5;
    return {scale * scale * (1.0 + tau * tau + (tau - 1.0) * (tau - 1.0)), 2.0 / (mean * mean)};
}

FourPointsDesign::Variances FourPointsDesign::line(const Design &design) const
{
    const int n = design.count - 1;
    const Candidate *points[kPointRows];
    double meanE = 0.0;
    double meanT = 0.0;
    double meanS = 0.0;
    for (int i = 0; i < n; ++i) {
        points[i] = &m_candidates[static_cast<size_t>(design.at[static_cast<size_t>(i) + 1])];
        meanE += points[i]->energy / n;
        meanT += points[i]->curve / n;
        meanS += (points[i]->a + points[i]->b) / n;
    }
    double ee = 0.0;
    double et = 0.0;
    double tt = 0.0;
    double es = 0.0;
    double ts = 0.0;
    for (int i = 0; i < n; ++i) {
        const double e = points[i]->energy - meanE;
        const double t = points[i]->curve - meanT;
        const double s = points[i]->a + points[i]->b - meanS;
        ee += e * e;
        et += e * t;
        tt += t * t;
        es += e * s;
        ts += t * s;
    }
    const double determinant = ee * tt - et * et;
    const Candidate &v = m_candidates[static_cast<size_t>(design.at[0])];
    const double contrast = m_jumpRatio * v.b - v.a;
    if (!(determinant > kRank * ee * tt) || !(tt > 1e-20 * m_largest * m_largest) ||
        !(std::fabs(contrast) > 1e-10 * (std::fabs(v.a) + std::fabs(v.b)))) {
        return {kInfinite, kInfinite};
    }
    const double c1 = (tt * es - et * ts) / determinant;
    const double c2 = (ee * ts - et * es) / determinant;
    const double toE = v.energy - meanE;
    const double toT = v.curve - meanT;
    const double k[] = {1.0 / n, (tt * toE - et * toT) / determinant,
                        (ee * toT - et * toE) / determinant};
    const double m[] = {-et / determinant, ee / determinant}; // the same of c_2 alone
    double square0 = c2 * c2;                                 // V
    double square2 = 0.0;
    for (int i = 0; i < n; ++i) {
        const double e = points[i]->energy - meanE;
        const double t = points[i]->curve - meanT;
        const double rho = points[i]->a + points[i]->b - meanS - c1 * e - c2 * t;
        const double d0 = k[2] * rho - c2 * (k[0] + k[1] * e + k[2] * t);
        const double d2 = m[1] * rho - c2 * (m[0] * e + m[1] * t);
        square0 += d0 * d0;
        square2 += d2 * d2;
    }
    const double p = m_jumpRatio / ((m_jumpRatio + 1.0) * contrast);
    const double factor = 2.0 / (c2 * c2);
    return {p * p * square0, factor * factor * square2};
}

} // namespace orvel
