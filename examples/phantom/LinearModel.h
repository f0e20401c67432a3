#pragma once

#include <cstddef>
#include <vector>

namespace orvel::phantom {

using Numbers = std::vector<long double>;

/// Error propagation through a linear least-squares problem  min over x of |M x - y|^2  whose data
/// are consistent (zero residual), in extended precision.
///
/// rows   M, one vector a measured value; more or as many rows as columns, full column rank
/// Cost   O(rows * columns^2 + columns^3) at construction.
class LinearModel {
public:
    explicit LinearModel(std::vector<Numbers> rows);

    /// h with  f.x = sum_i h_i y_i : how strongly each measured value enters the combination f of
    /// the solution. An error e_i of y_i moves f.x by at most sum |h_i| e_i.
    Numbers gains(const Numbers &f) const;

    /// Bound on the error of f.x when the normal equations are formed, decomposed and solved in
    /// double precision (unit roundoff u). With columns scaled to length one:
    ///   forming them    (m + 1) u   times  sum |x_j|  and  |y|       (m rows, n columns)
    ///   LU and solving  3 n u |L||U|,  |L||U| taken as n             (pivoting on a Gram matrix)
    /// all passed through |f G^-1|. First order in u.
    long double roundoff(const Numbers &f, const Numbers &x) const;

    /// Bound on the error of f.x from both: roundoff and an error of at most dataErrors[i] of y_i.
    double errorOf(const Numbers &f, const Numbers &x, const std::vector<double> &dataErrors) const;

private:
    Numbers scaledInverse(const Numbers &f) const; // f G^-1 of the scaled problem

    std::vector<Numbers> m_rows;    // columns scaled to length one
    Numbers m_lengths;              // of the columns as given
    std::vector<Numbers> m_inverse; // of the Gram matrix of m_rows
};

} // namespace orvel::phantom
