#include "analysis/LinearSystem.h"
#include "tests/Differential.h"
#include "tests/analysis/Exact.h"

#include <QtTest>

#include <algorithm>
#include <random>

// Every unknown of many random systems of integers lies within the bound that follows from the
// theory of rounding errors, derived in Exact.h. A bound is only worth something where it is
// narrow, so that is required as well.

using namespace orvel;
using exact::Real;
using exact::Table;

using Vector = std::vector<double>;

namespace {

Vector unknownsOf(const LinearSystem &system)
{
    Vector x;
    for (int k = 0; k < system.unknowns(); ++k) {
        x.push_back(system.unknown(k));
    }
    return x;
}

/// How results lie within their bounds.
struct Closeness {
    static constexpr double kNarrow = 1e-10;
    bool holds = true;
    Real used = 0;  ///< largest share of a bound that an error took
    int narrow = 0; ///< results of which every bound was a small part of the largest number
    int results = 0;

    void add(const Vector &found, const std::vector<Real> &expected,
             const std::vector<Real> &bounds)
    {
        Real largest = 0;
        Real widest = 0;
        for (size_t k = 0; k < found.size(); ++k) {
            const Real error = std::fabs(static_cast<Real>(found[k]) - expected[k]);
            holds = holds && error <= bounds[k]; // not so for not-a-numbers
            used = error > 0 ? std::fmax(used, error / bounds[k]) : used;
            largest = std::fmax(largest, std::fabs(expected[k]));
            widest = std::fmax(widest, bounds[k]);
        }
        narrow += widest < kNarrow * largest ? 1 : 0;
        ++results;
    }
    /// What is wrong. Nine in ten are to be narrow: random systems that are nearly singular do
    /// come up.
    QByteArray fault() const
    {
        const bool isGood = holds && results > 0 && 10 * narrow >= 9 * results;
        return isGood ? QByteArray()
                      : "used " + QByteArray::number(static_cast<double>(used)) + ", narrow " +
                            QByteArray::number(narrow) + " of " + QByteArray::number(results);
    }
};

} // namespace

class AccuracyTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void solvesIntegerSystems_data();
    void solvesIntegerSystems();
};

void AccuracyTest::initTestCase()
{
    if (std::numeric_limits<Real>::digits < 64) {
        QSKIP("long double is no longer than double here");
    }
}

void AccuracyTest::solvesIntegerSystems_data()
{
    QTest::addColumn<int>("unknowns");
    QTest::addColumn<int>("samples"); // none: a square system; otherwise its normal equations
    QTest::addColumn<int>("largest");
    for (int n = 1; n <= 7; ++n) {
        QTest::addRow("square, %d", n) << n << 0 << 99;
    }
    for (int n = 2; n <= 7; ++n) {
        QTest::addRow("normal equations, %d", n) << n << 8 << (n < 5 ? 60 : n < 7 ? 12 : 5);
    }
}

void AccuracyTest::solvesIntegerSystems()
{
    QFETCH(int, unknowns);
    QFETCH(int, samples);
    QFETCH(int, largest);
    const auto n = static_cast<size_t>(unknowns);
    std::mt19937_64 random(static_cast<quint64>(100 * unknowns + samples));
    std::uniform_int_distribution<int> digit(-largest, largest);
    LinearSystem system(unknowns);
    Closeness closeness;
    for (int round = randomCases(300); round > 0; --round) {
        system.clear();
        Table<exact::Integer> a(n, std::vector<exact::Integer>(n));
        std::vector<exact::Integer> b(n);
        for (size_t row = 0; row < static_cast<size_t>(samples == 0 ? unknowns : samples); ++row) {
            Vector phi(n);
            std::generate(phi.begin(), phi.end(), [&] { return digit(random); });
            const double y = digit(random);
            if (samples == 0) {
                std::copy(phi.begin(), phi.end(), &system.matrix(static_cast<int>(row), 0));
                system.rightSide(static_cast<int>(row)) = y;
                a[row].assign(phi.begin(), phi.end());
                b[row] = static_cast<exact::Integer>(y);
                continue;
            }
            system.addSample(phi.data(), y); // sums of small integers: exact
            for (size_t i = 0; i < n; ++i) {
                for (size_t j = 0; j < n; ++j) {
                    a[i][j] += static_cast<exact::Integer>(phi[i] * phi[j]);
                }
                b[i] += static_cast<exact::Integer>(phi[i] * y);
            }
        }
        const exact::Fractions truth = exact::solve(a, b);
        if (truth.denominator == 0) {
            continue;
        }
        system.solve();
        const auto denominator = static_cast<Real>(truth.denominator);
        std::vector<Real> expected(truth.x.begin(), truth.x.end());
        Table<Real> inverse;
        for (size_t i = 0; i < n; ++i) {
            expected[i] /= denominator;
            inverse.emplace_back(truth.inverse[i].begin(), truth.inverse[i].end());
            for (Real &element : inverse.back()) {
                element /= denominator;
            }
        }
        const Vector x = unknownsOf(system);
        closeness.add(x, expected,
                      exact::errorBounds(inverse, exact::eliminationResidual(system, x)));
    }
    QCOMPARE(closeness.fault(), QByteArray());
}

QTEST_GUILESS_MAIN(AccuracyTest)
#include "tst_accuracy.moc"
