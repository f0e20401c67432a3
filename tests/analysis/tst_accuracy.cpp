#include "analysis/LinearSystem.h"
#include "analysis/NonEquiv.h"
#include "tests/Differential.h"
#include "tests/TestTable.h"
#include "tests/analysis/Exact.h"
#include "tests/analysis/Inputs.h"

#include <QtTest>

#include <algorithm>
#include <numeric>
#include <random>

// Every unknown of many random systems lies within the bound that follows from the theory of
// rounding errors, derived in Exact.h. A bound is only worth something where it is narrow, so that
// is required as well wherever a row says that its systems are well posed.

using namespace orvel;
using exact::Real;
using exact::Table;

using Vector = std::vector<double>;
Q_DECLARE_METATYPE(Vector)

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
    bool holds = true;
    Real used = 0;  ///< largest share of a bound that an error took
    int narrow = 0; ///< results of which every bound was a small part of the largest number
    int results = 0;

    void add(const Vector &found, const std::vector<Real> &expected,
             const std::vector<Real> &bounds, double width)
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
        narrow += widest < width * largest ? 1 : 0;
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

Table<Real> realTable(const Table<double> &values)
{
    Table<Real> table;
    for (const auto &row : values) {
        table.emplace_back(row.begin(), row.end());
    }
    return table;
}

/// The normal equations of samples, solved by the toolkit and by orthogonal columns.
struct Fit {
    Table<Real> phi;
    std::vector<Real> y;
    exact::LeastSquares expected;
    LinearSystem system;

    Fit(const Table<double> &basis, const Vector &values)
        : phi(realTable(basis)), y(values.begin(), values.end()), expected(phi, y),
          system(static_cast<int>(basis[0].size()))
    {
        system.clear();
        for (size_t i = 0; i < basis.size(); ++i) {
            system.addSample(basis[i].data(), values[i]);
        }
        system.solve();
    }
    Table<Real> normalMatrix() const
    {
        Table<Real> matrix(phi[0].size(), std::vector<Real>(phi[0].size()));
        for (const auto &row : phi) {
            for (size_t i = 0; i < row.size(); ++i) {
                for (size_t j = 0; j < row.size(); ++j) {
                    matrix[i][j] += row[i] * row[j];
                }
            }
        }
        return matrix;
    }
    /// How far each unknown of the toolkit may be from the expected one.
    std::vector<Real> bounds() const
    {
        const Vector x = unknownsOf(system);
        std::vector<Real> residual = exact::eliminationResidual(system, x);
        exact::addSummingResidual(phi, y, x, residual);
        return exact::errorBounds(expected.normalInverse, residual);
    }
};

/// Reference i at an energy: a step of one, the more shifted the higher the valence, with a white
/// line; behind it absorption falls as the cube of the wavelength.
double shapeAt(double fromEdge, double edgeEv, int i)
{
    const double from = fromEdge - 3 - 2.5 * i;
    return std::pow(edgeEv / (edgeEv + fromEdge), 3) *
           (0.5 + std::atan(from / 1.5) / 3.141592653589793 +
            (0.3 + 0.25 * i) * std::exp(-from * from / (18 + 6 * i)));
}

} // namespace

class AccuracyTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void solvesIntegerSystems_data();
    void solvesIntegerSystems();
    void decomposesCurves_data();
    void decomposesCurves();
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
                      exact::errorBounds(inverse, exact::eliminationResidual(system, x)), 1e-10);
    }
    QCOMPARE(closeness.fault(), QByteArray());
}

void AccuracyTest::decomposesCurves_data()
{
    // fromEdge: eV
    const TestTable<double, Vector, bool, int> table("edgeEv", "fromEdge", "victoreen",
                                                     "references");

    const Vector tight = {-3, -1, 1, 3, 5, 7, 9, 11};
    const Vector xanes = {-3, 2, 7, 12, 17, 22, 27, 32};
    const Vector near = {-3, 2, 7, 12, 17, 27, 67, 167};
    const Vector few = {-3, 7, 17, 67, 167}; // as many as unknowns
    const Vector wide = {-200, -100, -13, 7, 17, 27, 200, 500};
    const Vector widest = {-533, -313, -33, 7, 17, 27, 367, 967};
    const auto row = [](double edgeEv, const Vector &fromEdge, bool victoreen, int references) {
        QTest::addRow("%d from %g to %g eV, %s, %d", static_cast<int>(fromEdge.size()),
                      edgeEv + fromEdge.front(), edgeEv + fromEdge.back(),
                      victoreen ? "Vic." : "Linear", references)
            << edgeEv << fromEdge << victoreen << references;
    };
    for (const Vector &fromEdge : {tight, xanes, near, wide, widest}) {
        row(8333, fromEdge, true, 2);
        row(8333, fromEdge, false, 2);
    }
    row(8333, few, true, 2);
    for (const int references : {1, 3, 4}) {
        row(8333, near, true, references);
        row(8333, wide, true, references);
        row(8333, wide, false, references);
    }
    for (const double edgeEv : {4966.0, 7112.0, 20000.0}) {
        row(edgeEv, near, true, 2);
    }
}

void AccuracyTest::decomposesCurves()
{
    QFETCH(double, edgeEv);
    QFETCH(Vector, fromEdge);
    QFETCH(bool, victoreen);
    QFETCH(int, references);
    const auto m = static_cast<size_t>(references);
    const Vector jumps = {1.0, 0.92, 1.08, 0.97};
    RefValues values;
    values.victoreen = victoreen;
    values.jump = std::accumulate(jumps.begin(), jumps.begin() + references, 0.0);
    for (const double from : fromEdge) {
        values.energiesEv.push_back(edgeEv + from);
    }
    std::vector<Real> weights; // w_i J, which makes amounts of the unknowns
    for (size_t i = 0; i < m; ++i) {
        values.valences.push_back(static_cast<double>(i));
        values.rows.push_back(static_cast<int>(i));
        values.jumpShares.push_back(jumps[i] / values.jump);
        weights.push_back(static_cast<Real>(values.jumpShares[i]) * values.jump);
        values.values.emplace_back();
        for (const double from : fromEdge) {
            values.values[i].push_back(jumps[i] * shapeAt(from, edgeEv, static_cast<int>(i)));
        }
    }
    NonEquivFit curveFit(values);
    const Table<double> &basis = curveFit.basis();

    std::mt19937_64 random(5);
    std::uniform_real_distribution<double> part(0.1, 1);
    std::normal_distribution<double> noise(0, 1e-3);
    Closeness closeness;
    Real worstTotal = 0;
    Real worstValence = 0;
    for (int round = randomCases(300); round > 0; --round) {
        Vector mixture;
        for (size_t i = 0; i < m; ++i) {
            mixture.push_back(part(random));
        }
        Vector y;
        for (size_t point = 0; point < basis.size(); ++point) {
            y.push_back(0.3 * std::pow(edgeEv / values.energiesEv[point], 3) + noise(random));
            for (size_t i = 0; i < m; ++i) {
                y.back() += mixture[i] * basis[point][i];
            }
        }
        const Fit fit(basis, y); // its system is that of the curve fit
        const std::vector<Real> unknown = fit.bounds();
        const std::vector<Real> &x = fit.expected.x;
        const ResultVector found = curveFit.fit(y);
        const auto at = [&found](Quantity quantity) { return found[indexOf(quantity)]; };

        // Amount i is w_i x_i / S * (S J): four roundings, and S, whatever it is, cancels.
        Vector results;
        std::vector<Real> expected;
        std::vector<Real> bounds;
        Real total = 0;
        Real totalBound = 0;
        for (size_t i = 0; i < m; ++i) {
            const Real amount = weights[i] * x[i];
            const Real bound = weights[i] * unknown[i];
            const Real roundings = std::fabs(amount) + bound;
            results.push_back(found[kReferenceRows + i]);
            expected.push_back(amount);
            bounds.push_back(bound + exact::gamma(4) * roundings);
            total += amount;
            totalBound += bound + exact::gamma(m + 1) * roundings;
        }
        results.push_back(at(Quantity::Amount));
        expected.push_back(total);
        bounds.push_back(totalBound);
        Real valence = 0;
        Real valenceBound = 0;
        for (size_t i = 0; i < m; ++i) {
            const Real ratio = expected[i] / total;
            const Real bound = (bounds[i] + std::fabs(ratio) * totalBound) / (total - totalBound);
            valence += ratio * values.valences[i];
            valenceBound +=
                values.valences[i] * (bound + exact::gamma(m + 1) * (std::fabs(ratio) + bound));
        }
        results.push_back(at(Quantity::Valence));
        expected.push_back(valence);
        bounds.push_back(valenceBound);
        closeness.add(results, expected, bounds, 1e-2);
        worstTotal = std::fmax(worstTotal, std::fabs(at(Quantity::Amount) - total));
        worstValence = std::fmax(worstValence, std::fabs(at(Quantity::Valence) - valence));

        // The background apart: its coefficients are of other magnitudes.
        const Vector background = {at(Quantity::Mut0), at(Quantity::C1), at(Quantity::C2)};
        for (size_t k = m; k < x.size(); ++k) {
            closeness.holds = closeness.holds && std::fabs(background[k - m] - x[k]) <= unknown[k];
        }
    }
    QCOMPARE(closeness.fault(), QByteArray());

    // A line of the table in docs/numerics.md. Gains tell how much of the points' noise gets into a
    // result: its standard deviation over that of every point.
    const Fit fit(basis, values.energiesEv);
    const Table<Real> normal = fit.normalMatrix();
    const Table<Real> &inverse = fit.expected.normalInverse;
    std::vector<Real> asItIs;
    std::vector<Real> unitLengths;
    Real totalVariance = 0;
    Real amountVariance = 0;
    for (size_t i = 0; i < normal.size(); ++i) {
        asItIs.push_back(1);
        unitLengths.push_back(1 / std::sqrt(normal[i][i]));
        for (size_t j = 0; i < m && j < m; ++j) {
            totalVariance += weights[i] * inverse[i][j] * weights[j];
        }
        if (i < m) {
            amountVariance = std::fmax(amountVariance, weights[i] * weights[i] * inverse[i][i]);
        }
    }
    QStringList cells = QString::fromLatin1(QTest::currentDataTag()).split(QStringLiteral(", "));
    for (const Real value :
         {exact::conditionOf(normal, inverse, asItIs),
          exact::conditionOf(normal, inverse, unitLengths), worstTotal, worstValence,
          std::sqrt(totalVariance), std::sqrt(amountVariance), std::sqrt(inverse[m][m])}) {
        cells += QString::number(static_cast<double>(value), 'g', 2);
    }
    qInfo("| %s |", qPrintable(cells.join(QStringLiteral(" | "))));
}

QTEST_GUILESS_MAIN(AccuracyTest)
#include "tst_accuracy.moc"
