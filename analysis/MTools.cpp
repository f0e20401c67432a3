#include "analysis/MTools.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdio>

namespace {

// Below every |x|, so that the first number met wins over "none found".
constexpr double kBelowEveryMagnitude = -1e300;

std::size_t sizeOf(int n)
{
    return n > 0 ? static_cast<std::size_t>(n) : 0;
}

/// As printf's "%g ", but with a decimal point whatever the locale.
void printNumber(double value)
{
    char text[32];
    const auto end =
        std::to_chars(text, text + sizeof text, value, std::chars_format::general, 6).ptr;
    std::printf("%.*s ", static_cast<int>(end - text), text);
}

void printHeader(const char *name)
{
    std::printf("# %s = \n# ", name);
}

void printRow(int n, const double *row)
{
    for (int j = 0; j < n; ++j) {
        printNumber(row[j]);
    }
    std::printf("\n# ");
}

} // namespace

double **MTools::newMatrix(int n) const
{
    auto **m = new double *[sizeOf(n)];
    for (int i = 0; i < n; ++i) {
        m[i] = newVector(n);
    }
    return m;
}

double *MTools::newVector(int n) const
{
    return new double[sizeOf(n)];
}

int *MTools::newIVector(int n) const
{
    return new int[sizeOf(n)];
}

void MTools::deleteMatrix(int n, double **m) const
{
    if (m != nullptr) {
        for (int i = 0; i < n; ++i) {
            deleteVector(n, m[i]);
        }
    }
    delete[] m;
}

void MTools::deleteVector(int, double *v) const
{
    delete[] v;
}

void MTools::deleteIVector(int, int *v) const
{
    delete[] v;
}

void MTools::clearMatrix(int n, double **m) const
{
    for (int i = 0; i < n; ++i) {
        clearVector(n, m[i]);
    }
}

void MTools::clearVector(int n, double *v) const
{
    std::fill_n(v, sizeOf(n), 0.0);
}

void MTools::clearIVector(int n, int *v) const
{
    std::fill_n(v, sizeOf(n), 0);
}

void MTools::setUnit(int n, double **m) const
{
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            m[i][j] = i == j ? 1.0 : 0.0;
        }
    }
}

void MTools::copyMatrix(int n, const double *const *from, double **to) const
{
    for (int i = 0; i < n; ++i) {
        copyVector(n, from[i], to[i]);
    }
}

void MTools::copyVector(int n, const double *from, double *to) const
{
    std::copy_n(from, sizeOf(n), to);
}

int MTools::hasNaN(int n, const double *const *m) const
{
    for (int i = 0; i < n; ++i) {
        if (hasNaN(n, m[i]) != 0) {
            return 1;
        }
    }
    return 0;
}

int MTools::hasNaN(int n, const double *v) const
{
    for (int i = 0; i < n; ++i) {
        if (std::isnan(v[i])) {
            return 1;
        }
    }
    return 0;
}

void MTools::mulMatVec(int n, const double *const *m, const double *x, double *y) const
{
    for (int i = 0; i < n; ++i) {
        double sum = 0.0;
        for (int j = 0; j < n; ++j) {
            sum += m[i][j] * x[j];
        }
        y[i] = sum;
    }
}

void MTools::mulMatrix(int n, const double *const *a, const double *const *b, double **c) const
{
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            double sum = 0.0;
            for (int k = 0; k < n; ++k) {
                sum += a[i][k] * b[k][i];
            }
            c[i][j] = sum;
        }
    }
}

void MTools::LUDecomp(int n, const double *const *a, double **l, double **u, int *perm) const
{
    for (int i = 0; i < n; ++i) {
        perm[i] = i;
    }
    copyMatrix(n, a, l);

    for (int k = 0; k < n; ++k) {
        double largest = kBelowEveryMagnitude;
        int chosen = k;
        for (int r = k; r < n; ++r) {
            const double magnitude = std::fabs(l[perm[r]][k]);
            if (magnitude > largest) { // never true for not-a-number; ties keep the earlier row
                largest = magnitude;
                chosen = r;
            }
        }
        std::swap(perm[k], perm[chosen]);

        const int p = perm[k];
        const double divisor = l[p][k] == 0.0 ? 1.0 : l[p][k];
        for (int r = k + 1; r < n; ++r) {
            const int q = perm[r];
            l[q][k] /= divisor;
            for (int j = k + 1; j < n; ++j) {
                l[q][j] -= l[p][j] * l[q][k];
            }
        }
    }

    for (int i = 0; i < n; ++i) {
        const int p = perm[i];
        for (int j = 0; j < n; ++j) {
            if (j < i) {
                u[p][j] = 0.0;
            } else {
                u[p][j] = l[p][j];
                l[p][j] = j == i ? 1.0 : 0.0;
            }
        }
    }
}

void MTools::forwardSubst(int n, const double *const *l, const double *b, double *y,
                          const int *perm) const
{
    copyVector(n, b, y);
    for (int k = 0; k + 1 < n; ++k) {
        const int p = perm[k];
        y[p] /= l[p][k];
        for (int r = k + 1; r < n; ++r) {
            const int q = perm[r];
            y[q] -= y[p] * l[q][k];
        }
    }
}

void MTools::backSubst(int n, const double *const *u, const double *y, double *x,
                       const int *perm) const
{
    if (n < 1) {
        return;
    }
    copyVector(n, y, x);
    for (int k = n - 1; k >= 0; --k) {
        const int p = perm[k];
        x[p] /= u[p][k];
        for (int r = k - 1; r >= 0; --r) {
            const int q = perm[r];
            x[q] -= x[p] * u[q][k];
        }
    }
}

int *MTools::eliminate(int n, double **a, double **b) const
{
    int *flags = newIVector(n);
    std::fill_n(flags, sizeOf(n), 1);
    for (int step = 0; step < n; ++step) {
        double largest = kBelowEveryMagnitude;
        int p = -1;
        for (int i = 0; i < n; ++i) {
            if (flags[i] == 0) {
                continue;
            }
            if (p < 0) {
                p = i; // stays chosen when no diagonal element qualifies
            }
            if (std::fabs(a[i][i]) > largest) {
                largest = std::fabs(a[i][i]);
                p = i;
            }
        }
        flags[p] = 0;
        const double divisor = a[p][p];
        if (divisor == 0.0) {
            continue;
        }
        for (int j = 0; j < n; ++j) {
            a[p][j] /= divisor;
            b[p][j] /= divisor;
        }
        for (int i = 0; i < n; ++i) {
            if (flags[i] == 0) {
                continue;
            }
            const double factor = a[i][p];
            for (int j = 0; j < n; ++j) {
                a[i][j] -= factor * a[p][j];
                b[i][j] -= factor * b[p][j];
            }
        }
    }
    return flags;
}

void MTools::printMatrix(int n, const char *name, const double *const *m) const
{
    if (n < 1) {
        return;
    }
    printHeader(name);
    for (int i = 0; i < n; ++i) {
        printRow(n, m[i]);
    }
    std::printf("\n");
}

void MTools::printPMatrix(int n, const char *name, const double *const *m, const int *perm) const
{
    if (n < 1) {
        return;
    }
    printHeader(name);
    for (int i = 0; i < n; ++i) {
        printRow(n, m[perm[i]]);
    }
    std::printf("\n");
}

void MTools::printVector(int n, const char *name, const double *v) const
{
    if (n < 1) {
        return;
    }
    printHeader(name);
    printRow(n, v);
    std::printf("\n");
}

void MTools::printIVector(int n, const char *name, const int *v) const
{
    if (n < 1) {
        return;
    }
    printHeader(name);
    for (int i = 0; i < n; ++i) {
        std::printf("%d ", v[i]);
    }
    std::printf("\n# \n");
}

void MTools::printPVector(int n, const char *name, const double *v, const int *perm) const
{
    if (n < 1) {
        return;
    }
    printHeader(name);
    for (int i = 0; i < n; ++i) {
        printNumber(v[perm[i]]);
    }
    std::printf("\n# \n");
}
