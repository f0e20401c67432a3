#pragma once

#include "analysis/MTools.h"

#include <cstddef>
#include <vector>

namespace orvel {

/// One square system A x = b with the storage of its solution, mostly normal equations of a small
/// least-squares fit: unknowns of  min over x of sum over samples of (phi . x - y)^2.
///
/// Built once and used again for many right-hand sides or samples: nothing is allocated after
/// construction. Solved by MTools, so a singular system gives infinities and not-a-numbers.
class LinearSystem {
public:
    explicit LinearSystem(int unknowns);
    LinearSystem(const LinearSystem &) = delete;
    LinearSystem &operator=(const LinearSystem &) = delete;

    int unknowns() const { return m_unknowns; }

    void clear(); ///< A and b to zero

    double &matrix(int row, int column)
    {
        return m_matrix.rows[static_cast<std::size_t>(row)][column];
    }
    double &rightSide(int row) { return m_rightSide[static_cast<std::size_t>(row)]; }

    /// Adds one sample to the normal equations: A += phi phi^T, b += phi * y.
    /// phi  basis functions at the sample, as many as unknowns
    void addSample(const double *phi, double y);

    void solve();

    /// Decomposes the matrix alone, for many right-hand sides; row k below is its k-th pivot row,
    /// and stands for unknown k.
    void decompose();
    int pivotRow(int k) const { return m_permutation[static_cast<std::size_t>(k)]; }
    double lower(int k, int column) const
    {
        return m_lower.rows[static_cast<std::size_t>(pivotRow(k))][column];
    }
    double upper(int k, int column) const
    {
        return m_upper.rows[static_cast<std::size_t>(pivotRow(k))][column];
    }

    /// Unknown k of the last solve(), 0 <= k < unknowns().
    double unknown(int k) const
    {
        return m_solution[static_cast<std::size_t>(m_permutation[static_cast<std::size_t>(k)])];
    }

private:
    /// Row pointers into one block, the shape MTools works on.
    struct Matrix {
        explicit Matrix(int n);
        std::vector<double> values;
        std::vector<double *> rows;
    };

    MTools m_tools;
    int m_unknowns;
    Matrix m_matrix;
    Matrix m_lower;
    Matrix m_upper;
    std::vector<double> m_rightSide;
    std::vector<double> m_forward;
    std::vector<double> m_solution;
    std::vector<int> m_permutation;
};

} // namespace orvel
