#include "analysis/Calculations.h"
#include "tests/analysis/Inputs.h"

#include <QtTest>

#include <numeric>
#include <random>

using namespace orvel;
using inputs::close;
using inputs::flatSpectrum;

namespace {

/// A curve that obeys the four-points model: references alike but for their thickness at the
/// points other than V.
struct FourPointsCase {
    double jumpA = 0.8;
    double jumpB = 1.0;
    double a = 0.3;
    double g = 2.5;
    double m = 0.05;
    double k = -0.0002;

    double r() const { return jumpA / jumpB; }
    /// The curve from the references' values and the energy.
    double curve(double refA, double refB, double e) const
    {
        const double u = g / (r() + 1);
        const double w = r() * u;
        return a * refA / w + (1 - a) * refB / u + m + k * e;
    }

    /// Points at 110, 120, ... eV, V being number v; the target's values in the rows' fields.
    AnalysisInput input(int n, int v) const
    {
        AnalysisInput input;
        input.references = {inputs::reference(1, 2.0, flatSpectrum(jumpA)),
                            inputs::reference(3, 3.0, flatSpectrum(jumpB))};
        for (int i = 0; i < n; ++i) {
            EnergyPointInput point = inputs::point(i, 110 + 10 * i);
            const double refB = 0.1 + 0.9 * std::sin(i + 1.0) + 0.02 * i * i; // anything but a line
            point.referenceMu[3] = refB;
            point.referenceMu[1] = i == v ? 0.4 : r() * refB;
            point.targetMu = curve(point.referenceMu[1], refB, point.energyEv);
            point.vPoint = i == v;
            input.points.push_back(point);
        }
        input.target = flatSpectrum(1);
        return input;
    }
};

double textNumber(const Line &line, int argument)
{
    return line.parts[0].arguments[argument].toDouble();
}

/// References with values R_i(E) at the points of a non-equivalent fit, zero pre-edge lines and
/// jumps J_i; free energies between 100 and 200 eV.
struct Mixture {
    std::vector<double> energies = {105, 118, 131, 144, 157, 170, 183, 196};
    std::vector<double> jumps = {1.0, 0.7, 1.3};
    std::vector<double> valences = {0, 2, 3.5};
    std::vector<double> x = {0.4, 0.5, 0.3};

    static double shape(size_t reference, double e)
    {
        const double centre = 130 + 15 * static_cast<double>(reference);
        return 1 / (1 + std::exp(-(e - centre) / 5)) +
               0.4 * std::exp(-std::pow((e - centre) / 8, 2));
    }
    double curve(double e) const
    {
        double sum = 0.3 - 0.001 * e;
        for (size_t i = 0; i < x.size(); ++i) {
            sum += x[i] * jumps[i] * shape(i, e);
        }
        return sum;
    }
    double total() const { return std::inner_product(x.begin(), x.end(), jumps.begin(), 0.0); }
    /// References in rows 0, 2 and 3; row 1 is loaded but not used.
    AnalysisInput input() const
    {
        std::vector<std::vector<double>> values(x.size());
        QVector<QPair<double, double>> target;
        for (const double e : energies) {
            for (size_t i = 0; i < x.size(); ++i) {
                values[i].push_back(jumps[i] * shape(i, e));
            }
            target.append({e, curve(e)});
        }
        AnalysisInput input = inputs::withReferences(energies, values, jumps, valences);
        input.references[1].row = 2;
        input.references[2].row = 3;
        input.references.insert(input.references.begin() + 1,
                                inputs::reference(1, 9.0, flatSpectrum(2)));
        input.references[1].use = false;
        input.points[4].vPoint = true;
        input.method.nonEquiv = true;
        input.method.linearBackground = true;
        input.target = flatSpectrum(1, target);
        return input;
    }
};

} // namespace

class MethodsTest : public QObject {
    Q_OBJECT

private slots:
    void threePointsByHand();
    void fourPointsFindTheMixture();
    void leastSquaresMinimises();
    void mapsTakeTheFirstUsedRow();
    void nonEquivSubtractsPostLines();
    void lcfRangeTakesBothEnds();
};

void MethodsTest::threePointsByHand()
{
    AnalysisInput input;
    input.references = {inputs::reference(0, 2.0, flatSpectrum(1)),
                        inputs::reference(2, 3.0, flatSpectrum(1))};
    // alpha = 0.8 / 1.0, beta = 0.4 / 0.8, tau = 1.16 / 2: a = (0.58 - 0.5) / (0.8 - 0.5) = 4 / 15
    const double values[3][3] = {{0.1, 0.2, 1.0}, {0.9, 0.6, 2.16}, {1.1, 1.0, 3.0}}; // A, B, T
    for (int i = 0; i < 3; ++i) {
        EnergyPointInput point = inputs::point(i, 110 + i);
        point.referenceMu = {values[i][0], 99, values[i][1], 99};
        point.targetMu = values[i][2];
        point.vPoint = i == 1;
        point.map = inputs::image(1, 1, {values[i][2]});
        input.points.push_back(point);
    }
    input.target = flatSpectrum(1);
    const TargetOutcome target = calculateTarget(input);
    QCOMPARE(inputs::texts({target.resultField}),
             QStringList(QStringLiteral("3ps: a = 0.266667, Valence = 2.73333")));
    QCOMPARE(inputs::texts(target.messages), inputs::texts({target.resultField}));
    QVERIFY(close(target.a, 4.0 / 15, 1e-14) && close(target.valence, 41.0 / 15, 1e-14));
    QCOMPARE(target.rows[0].ratio + ' ' + target.rows[2].ratio, QString("0.266667 0.733333"));
    QVERIFY(target.rows[2].amount.isEmpty() && !target.dMutField);

    const auto map = calculateMap(input).maps;
    // dMut = 2 over ((1.1 - 0.2) + (1.1 - 0.1)) / 2: the mixed mean
    const std::pair<Quantity, double> expected[] = {{Quantity::Ratio1, 4.0 / 15},
                                                    {Quantity::Ratio2, 11.0 / 15},
                                                    {Quantity::Valence, 41.0 / 15},
                                                    {Quantity::Amount, 2 / 0.95},
                                                    {Quantity::Mut0, 0.0}};
    for (const auto &[quantity, value] : expected) {
        QVERIFY(close(map->at(quantity, 0), value, 1e-14));
    }
    QVERIFY(map->fills(Quantity::Ratio2) && !map->fills(Quantity::Ratio3));
}

void MethodsTest::fourPointsFindTheMixture()
{
    struct Case {
        int points, v;
        bool exact;
    };
    for (const Case &c :
         {Case{4, 3, true}, Case{4, 0, true}, Case{4, 2, false}, Case{8, 5, false}}) {
        const FourPointsCase known;
        AnalysisInput input = known.input(c.points, c.v);
        input.method.exact = c.exact;
        for (EnergyPointInput &point : input.points) {
            point.map = inputs::image(1, 1, {point.targetMu});
        }
        const TargetOutcome target = calculateTarget(input);
        QVERIFY(target.ran);
        // The edge jumps are fitted to about 1e-8, which a takes over.
        QVERIFY(close(target.a, known.a, 1e-6));
        QVERIFY(close(target.valence, known.a * 2 + (1 - known.a) * 3, 1e-6));
        QVERIFY(close(textNumber(target.resultField, 2), 2 / known.g, 1e-5)); // six digits
        const QString text = inputs::texts({target.resultField})[0];
        QVERIFY2(text.startsWith(QStringLiteral("%1a = 0.3, Valence = 2.7, t/ts = 0.8")
                                     .arg(c.exact ? "" : "4ps2: ")),
                 qPrintable(text));
        QCOMPARE(target.messages.empty(), c.exact); // the exact variant writes to its field alone
        QCOMPARE(target.rows[1].ratio + target.rows[3].ratio, QStringLiteral("0.30.7"));
        QCOMPARE(target.rows[0].ratio, QString());
        const MapOutcome map = calculateMap(input); // one pixel of the same values
        QVERIFY(map.maps && map.messages.empty());
        QCOMPARE(map.maps->at(Quantity::Ratio1, 0), target.a);
        QCOMPARE(map.maps->at(Quantity::Valence, 0), target.valence);
        QVERIFY(close(map.maps->at(Quantity::Amount, 0), 2 / known.g, 1e-9));
    }
}

void MethodsTest::leastSquaresMinimises()
{
    // Noisy values: S = c0 + c1 E + g T. Without their own lines in E, S and T are proportional but
    // for noise: g = sum T S / sum T^2.
    AnalysisInput input = FourPointsCase().input(7, 2);
    input.method.exact = false;
    std::mt19937 random(4);
    std::vector<double> energies;
    std::vector<double> curve;
    std::vector<double> sums;
    for (EnergyPointInput &point : input.points) {
        point.targetMu += 1e-3 * std::uniform_real_distribution<>(-1, 1)(random);
        if (!point.vPoint) {
            energies.push_back(point.energyEv - 140);
            curve.push_back(point.targetMu);
            sums.push_back(point.referenceMu[1] + point.referenceMu[3]);
        }
    }
    const auto product = [](const std::vector<double> &a, const std::vector<double> &b) {
        return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
    };
    const auto withoutPart = [&product](std::vector<double> a, const std::vector<double> &of) {
        const double part = product(a, of) / product(of, of);
        std::transform(a.begin(), a.end(), of.begin(), a.begin(),
                       [part](double x, double y) { return x - part * y; });
        return a;
    };
    const std::vector<double> ones(6, 1.0);
    const std::vector<double> slope = withoutPart(energies, ones);
    const std::vector<double> t = withoutPart(withoutPart(curve, ones), slope);
    const double tOverTs = textNumber(calculateTarget(input).resultField, 2);
    QVERIFY(close(tOverTs, 2 * product(t, t) / product(t, sums), 1e-5)); // six digits
}

void MethodsTest::mapsTakeTheFirstUsedRow()
{
    AnalysisInput input = FourPointsCase().input(4, 1);
    input.points[0].use = false; // then V is the first used row, and three points remain
    MapColumns columns;
    columns.x = {10, 20};
    columns.y = {5, 6};
    columns.signal = {0.5, 0.6};
    columns.reference = {0, 0};
    input.points[0].map = inputs::image(9, 9, std::vector<double>(81, 1.0));
    input.points[1].map = ImageData::fromColumns({QStringLiteral("# head")}, 2, 1, columns);
    input.points[2].map = inputs::image(1, 1, {0.25}); // its second pixel does not exist: -1
    input.points[3].map = inputs::image(2, 1, {0.75, 1.0});
    const MapOutcome outcome = calculateMap(input);
    QCOMPARE(outcome.maps->size(), 2);
    QCOMPARE(outcome.maps->origin().header(), QStringList(QStringLiteral("# head")));
    QCOMPARE(outcome.maps->origin().positionX(1), 20.0);
    // Amount is dMut over the same mean for both pixels: (0.75 - 0.25) against (1 - -1).
    QVERIFY(close(outcome.maps->at(Quantity::Amount, 1) / outcome.maps->at(Quantity::Amount, 0), 4,
                  1e-14));
}

void MethodsTest::nonEquivSubtractsPostLines()
{
    // Minus flat post-edge lines the references are R_i - J_i: with a constant in the background
    // the coefficients stay, and the constant takes up the difference, here of the map.
    const Mixture known;
    AnalysisInput input = known.input();
    input.method.subPostForRef = true;
    for (EnergyPointInput &point : input.points) {
        point.map = inputs::image(1, 1, {known.curve(point.energyEv)});
    }
    const MapOutcome outcome = calculateMap(input);
    QVERIFY(close(outcome.maps->at(Quantity::Amount, 0), known.total(), 1e-6));
    QVERIFY(close(outcome.maps->at(Quantity::Mut0, 0), 0.3 + known.total(), 1e-6));
    QVERIFY(close(outcome.maps->at(Quantity::C1, 0), -0.001, 1e-6));
    QCOMPARE(outcome.maps->at(Quantity::C2, 0), 0.0);

    // The choice for the target, seen in its values: the flat post-edge line is 1.
    const Plan plan = checkTarget(input);
    const std::vector<double> minusPre = targetValues(input, plan);
    input.method.subPostForTarget = true;
    const std::vector<double> minusPost = targetValues(input, plan);
    QVERIFY(close(minusPre[3], known.curve(known.energies[3]), 1e-6));
    QVERIFY(close(minusPost[3], minusPre[3] - 1, 1e-6));
}

void MethodsTest::lcfRangeTakesBothEnds()
{
    AnalysisInput input = Mixture().input();
    input.target.setDE(10); // the target's point at 131 counts as 121, the one at 196 as 186
    input.points[1].lcf = input.points[6].lcf = true;
    input.points[1].energyEv = 186;
    input.points[6].energyEv = 121;
    const LcfOutcome lcf = calculateLcf(input);
    QCOMPARE(lcf.result->curve.points().size(), 6);
    QCOMPARE(lcf.result->curve.points().first().energyEv, 121.0);
    QCOMPARE(lcf.result->curve.points().last().energyEv, 186.0);
}

QTEST_GUILESS_MAIN(MethodsTest)
#include "tst_methods.moc"
