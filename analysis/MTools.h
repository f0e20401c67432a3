#pragma once

/// Dense linear algebra for square systems of a handful of unknowns (two to seven in practice).
///
/// The class has no state: every operation takes the size n first and works on storage that the
/// caller gets from the new... and gives back to the delete... operations. With n below 1 every
/// operation does nothing (newMatrix, newVector and newIVector give empty arrays).
///
/// Matrix        n row pointers, each row n doubles; element (i, j) is m[i][j]
/// Vector        n doubles
/// Index vector  n ints; perm of a decomposition: logical row k is the physical row perm[k]
///
/// Rows are never moved. The solution is stored the same way: unknown k is x[perm[k]], not x[k].
///
/// Nothing is checked. A singular matrix leaves an exact zero on U's diagonal, and the back
/// substitution turns it into infinities and not-a-numbers, which callers pass on.
class MTools {
public:
    double **newMatrix(int n) const; ///< contents undefined
    double *newVector(int n) const;  ///< contents undefined
    int *newIVector(int n) const;    ///< contents undefined
    void deleteMatrix(int n, double **m) const;
    void deleteVector(int n, double *v) const;
    void deleteIVector(int n, int *v) const;

    void clearMatrix(int n, double **m) const;
    void clearVector(int n, double *v) const;
    void clearIVector(int n, int *v) const;
    void setUnit(int n, double **m) const;
    void copyMatrix(int n, const double *const *from, double **to) const;
    void copyVector(int n, const double *from, double *to) const;

    int hasNaN(int n, const double *const *m) const; ///< 1 if any element is not a number, else 0
    int hasNaN(int n, const double *v) const;

    /// y = M x
    void mulMatVec(int n, const double *const *m, const double *x, double *y) const;
    /// C[i][j] = sum over k of A[i][k] B[k][i]: every row of C is constant. This is no matrix
    /// product; nothing of ours depends on one.
    void mulMatrix(int n, const double *const *a, const double *const *b, double **c) const;

    /// Doolittle decomposition with partial pivoting, P A = L U; A is left as it is.
    /// An exactly zero pivot divides by 1.0 instead: the zero stays on U's diagonal.
    /// Golub & Van Loan, Matrix Computations, 4th ed., sec. 3.4.
    void LUDecomp(int n, const double *const *a, double **l, double **u, int *perm) const;
    /// Solves L y = P b.
    void forwardSubst(int n, const double *const *l, const double *b, double *y,
                      const int *perm) const;
    /// Solves U x = y; unknown k is x[perm[k]].
    void backSubst(int n, const double *const *u, const double *y, double *x,
                   const int *perm) const;

    /// Forward elimination in place on A and the right-hand matrix B, pivoting on the largest
    /// diagonal element among the rows not yet used; gives a permuted triangular system.
    /// Returns the n row flags (0 = used as pivot), which the caller gives to deleteIVector.
    int *eliminate(int n, double **a, double **b) const;

    /// Diagnostic prints to standard output, as comment lines ("# ").
    void printMatrix(int n, const char *name, const double *const *m) const;
    void printPMatrix(int n, const char *name, const double *const *m, const int *perm) const;
    void printVector(int n, const char *name, const double *v) const;
    void printIVector(int n, const char *name, const int *v) const;
    void printPVector(int n, const char *name, const double *v, const int *perm) const;
};
