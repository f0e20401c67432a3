#include "analysis/MTools.h"

#include <QtTest>

#include <cmath>

namespace {

/// Storage of one test system, through the toolkit's own operations.
struct Storage {
    explicit Storage(int size)
        : n(size), a(tools.newMatrix(n)), l(tools.newMatrix(n)), u(tools.newMatrix(n)),
          b(tools.newVector(n)), y(tools.newVector(n)), x(tools.newVector(n)),
          perm(tools.newIVector(n))
    {
    }
    ~Storage()
    {
        for (double **matrix : {a, l, u}) {
            tools.deleteMatrix(n, matrix);
        }
        for (double *vector : {b, y, x}) {
            tools.deleteVector(n, vector);
        }
        tools.deleteIVector(n, perm);
    }
    Q_DISABLE_COPY(Storage)

    void set(std::initializer_list<double> rows, std::initializer_list<double> rightSide = {})
    {
        int k = 0;
        for (const double value : rows) {
            a[k / n][k % n] = value;
            ++k;
        }
        std::copy(rightSide.begin(), rightSide.end(), b);
    }
    void solve()
    {
        tools.LUDecomp(n, a, l, u, perm);
        tools.forwardSubst(n, l, b, y, perm);
        tools.backSubst(n, u, y, x, perm);
    }
    double unknown(int k) const { return x[perm[k]]; }
    QVector<double> rows(const double *const *matrix) const
    {
        QVector<double> values;
        for (int k = 0; k < n * n; ++k) {
            values += matrix[k / n][k % n];
        }
        return values;
    }

    MTools tools;
    int n;
    double **a;
    double **l;
    double **u;
    double *b;
    double *y;
    double *x;
    int *perm;
};

} // namespace

class MToolsTest : public QObject {
    Q_OBJECT

private slots:
    void decompositionKeepsRowsInPlace();
    void pivotTiesKeepTheEarlierRowAndNaNNeverWins();
    void singularSystemsGiveNonFiniteUnknowns();
    void eliminates();
};

void MToolsTest::decompositionKeepsRowsInPlace()
{
    Storage s(2);
    s.set({1, 2, 4, 3}, {5, 10}); // x0 = 1, x1 = 2
    s.solve();
    // Row 1 has the larger pivot: multiplier 1/4, remainder 2 - 3/4.
    QVERIFY(s.perm[0] == 1 && s.perm[1] == 0);
    using Numbers = QVector<double>;
    QCOMPARE(s.rows(s.l), (Numbers{0.25, 1, 1, 0}));
    QCOMPARE(s.rows(s.u), (Numbers{0, 1.25, 4, 3}));
    QCOMPARE((Numbers{s.unknown(0), s.unknown(1)}), (Numbers{1, 2}));
    QCOMPARE((Numbers{s.x[0], s.x[1]}), (Numbers{2, 1})); // as they lie in memory
    QCOMPARE(s.a[0][1], 2.0);                             // A is left as it is
}

void MToolsTest::pivotTiesKeepTheEarlierRowAndNaNNeverWins()
{
    const auto firstPivot = [](int n, std::initializer_list<double> rows) {
        Storage s(n);
        s.set(rows, {0, 0});
        s.solve();
        return s.perm[0];
    };
    QCOMPARE(firstPivot(2, {-3, 1, 3, 1}), 0);
    QCOMPARE(firstPivot(3, {1, 0, 0, qQNaN(), 1, 0, 2, 0, 1}), 2);
    QCOMPARE(firstPivot(2, {qQNaN(), 1, qQNaN(), 1}), 0);
}

void MToolsTest::singularSystemsGiveNonFiniteUnknowns()
{
    Storage s(2);
    s.set({1, 0, 2, 0}, {1, 1}); // the second column is zero
    s.solve();
    // y = (1/2, 1); x1 = (1/2) / 0; x0 = (1 - inf * 0) / 2
    QCOMPARE(s.unknown(1), qInf());
    QVERIFY(std::isnan(s.unknown(0)));

    Storage zero(2);
    zero.set({0, 0, 0, 0}, {0, 1}); // the zero pivot divides by 1 on the way
    zero.solve();
    QCOMPARE(zero.l[1][0], 0.0);
    QVERIFY(!std::isfinite(zero.unknown(0)) && !std::isfinite(zero.unknown(1)));
}

void MToolsTest::eliminates()
{
    Storage s(2);
    s.tools.setUnit(2, s.u);
    s.set({2, 1, 1, 3});
    int *flags = s.tools.eliminate(2, s.a, s.u);
    // Row 1 first (3 > 2): (1/3, 1); row 0 minus it: (5/3, 0), then divided.
    QVERIFY(flags[0] == 0 && flags[1] == 0);
    const auto isNear = [](double found, double expected) {
        return std::fabs(found - expected) < 1e-15;
    };
    const double a[] = {1, 0, 1.0 / 3, 1};
    const double b[] = {0.6, -0.2, 0, 1.0 / 3};
    const QVector<double> left = s.rows(s.a);
    const QVector<double> right = s.rows(s.u);
    QVERIFY(std::equal(left.begin(), left.end(), a, isNear));
    QVERIFY(std::equal(right.begin(), right.end(), b, isNear));
    s.tools.deleteIVector(2, flags);
    s.set({0, 7, qQNaN(), qQNaN()}); // row 1 never qualifies, row 0 has a zero diagonal
    flags = s.tools.eliminate(2, s.a, s.u);
    QVERIFY(flags[0] == 0 && flags[1] == 0);
    QCOMPARE(s.a[0][1], 7.0); // not divided
    s.tools.deleteIVector(2, flags);
}

QTEST_GUILESS_MAIN(MToolsTest)
#include "tst_mtools.moc"
