#pragma once

#include <vector>

namespace orvel {

/// [row][column]
using Rows = std::vector<std::vector<double>>;

/// Orthogonal factorisation A = Q R of a model matrix of a few columns, from which the precision of
/// a linear least-squares fit follows. Columns are scaled to length 1 first, so that columns of
/// very different sizes (spectra of order 1 beside cubes of wavelengths) cost no digits.
///
/// It serves what surrounds a fit, errors and design: the fits themselves keep to the normal
/// equations, whose numbers are established.
///
/// Householder reflections: Golub & Van Loan, Matrix Computations, 4th ed., sec. 5.2.1.
class SmallQr {
public:
    /// a  points x unknowns, finite or not, at least one column
    explicit SmallQr(const Rows &a);

    int points() const { return m_points; }
    int unknowns() const { return m_unknowns; }
    /// points - unknowns; may be negative.
    int freedom() const { return m_points - m_unknowns; }

    /// Whether all unknowns are determined: enough points, everything finite, and no column leaves
    /// less than 1e-10 of its length outside the span of the columns before it.
    bool isRegular() const { return m_regular; }

    // What follows needs isRegular().

    /// (A^T A)^-1, unknowns x unknowns.
    Rows normalInverse() const;
    /// (A^T A)^-1 A^T, unknowns x points: the fitted unknowns are this times the data.
    Rows pseudoInverse() const;
    /// Orthonormal vectors orthogonal to all columns, freedom() x points. The residual sum of
    /// squares of data y is the sum over these vectors z of (z . y)^2: a sum without cancellation,
    /// and for one degree of freedom a single product.
    Rows complement() const;
    /// The triangle R of the columns as given, unknowns x unknowns.
    Rows triangle() const;
    /// Least-squares unknowns of data y.
    std::vector<double> solve(const std::vector<double> &y) const;
    /// Condition number of A^T A in the 2-norm: the square of the ratio of A's largest singular
    /// value to its smallest one. The columns count as given, unscaled.
    double normalCondition() const;
    /// For a model whose first `background` columns stay free: H, the normal matrix of the other
    /// unknowns after those are eliminated. With them at their best, the residual sum of squares
    /// is its least value + (x - x*)^T H (x - x*).
    Rows reducedNormal(int background) const;
    /// And how those follow the others: c - c* = this times (x* - x), background x others.
    Rows backgroundShift(int background) const;

private:
    double r(int row, int column) const;              ///< of the scaled columns
    std::vector<double> orthogonal(int column) const; ///< column of Q, all points of them
    Rows triangleInverse() const;                     ///< of the scaled columns

    int m_points;
    int m_unknowns;
    bool m_regular = false;
    std::vector<double> m_lengths; ///< of the columns as given
    Rows m_columns;                ///< [column][point]: R above, reflections from the diagonal on
    std::vector<double> m_diagonal;
    std::vector<double> m_betas; ///< 2 / v^T v of each reflection
};

/// X of  A X = B  for a small symmetric positive definite A.
Rows solvePositive(Rows a, Rows b);

} // namespace orvel
