#pragma once

#include "analysis/NonEquiv.h"
#include "analysis/SmallQr.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace orvel {

/// The non-equivalent fit with no reference's coefficient below zero and a free background, from
/// the free fit.
///
/// With x* the free coefficients of the m references, H the matrix of the normal equations after
/// the background is eliminated, the residual sum of squares is RSS* + (x - x*)^T H (x - x*). Its
/// least value over x >= 0 is the free minimum on one of the 2^m faces "these references are
/// held at 0". For the held set A and the others F that minimum is
///     x_F = x*_F + H_FF^-1 H_FA x*_A,   excess  x*_A^T (H_AA - H_AF H_FF^-1 H_FA) x*_A;
/// of the faces whose x_F has no negative element the one of least excess is the solution: the sum
/// is strictly convex, so it also meets the optimality conditions. With m at most 4 all faces are
/// tried, which is exact; their matrices depend on the references alone.
///
/// Lawson & Hanson, Solving Least Squares Problems (1974), ch. 23, for the conditions.
class NonNegativeFit {
public:
    static constexpr int kMostSets = 1 << kReferenceRows;

    explicit NonNegativeFit(const RefValues &references);

    /// Otherwise the free fit has no single solution, and fits are left as they are.
    bool isRegular() const { return m_regular; }

    /// x       [unknown][pixel] in: free coefficients and background; out: the bounded ones. Pixels
    ///         without a negative coefficient, or with one that is not finite, keep their bits.
    /// held    [pixel] out: bit i set where reference i is held at 0
    /// excess  [pixel] out: what the bounds add to the residual sum of squares
    void bound(double *const *x, std::size_t n, std::uint8_t *held, double *excess) const;

    /// Coefficients of a face from the free ones, references x references: rows of held
    /// references are zero.
    Rows projection(unsigned held) const;

    /// What a kernel needs of one face; index [i][j]: by reference.
    struct Face {
        double shift[kReferenceRows][kReferenceRows] = {};  ///< H_FF^-1 H_FA
        double excess[kReferenceRows][kReferenceRows] = {}; ///< of A, upper triangle, doubled
    };
    struct Faces {
        int references = 0;
        std::array<Face, kMostSets> of; ///< by the held set
    };

private:
    bool m_regular = false;
    int m_unknowns = 0;
    Faces m_faces;
    double m_background[3][kReferenceRows] = {}; ///< c - c* = this times x* - x
};

} // namespace orvel
