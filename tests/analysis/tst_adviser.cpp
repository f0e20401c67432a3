// The adviser against all designs of a small grid, whose standard deviations come from what maps
// get theirs from (tst_precision holds these to the scatter of fits).

#include "analysis/EnergyAdviser.h"
#include "analysis/FourPoints.h"
#include "analysis/FourPointsPrecision.h"
#include "analysis/NonEquivPrecision.h"
#include "tests/TestTable.h"
#include "tests/analysis/Inputs.h"

#include <QtTest>

#include <algorithm>
#include <bit>
#include <functional>
#include <limits>
#include <numbers>
#include <numeric>

using namespace orvel;

namespace {

constexpr double kEdgeEv = 7112;
constexpr double kJumps[] = {1.0, 0.8, 1.3};
constexpr double kValences[] = {0.0, 2.0, 3.5};

/// Steps at different energies with white lines of different heights; 60 eV from the edge all are
/// alike. The background is a Victoreen line, so lines and jumps are found exactly.
AMutE makeSpectrum(int compound)
{
    QVector<MutPoint> points;
    const double jump = kJumps[compound];
    for (int i = 0; i <= 400; ++i) {
        const double e = 7000 + i;
        const double beyond = e - kEdgeEv - 3 * compound;
        const double white = (beyond - 5) / (4 + compound);
        points.append({0, e,
                       AMutE::Victoreen{0.2, 0.05, 0.01}.at(e) +
                           jump * (0.5 + 0.5 * std::erf(beyond / 4) +
                                   (0.2 + 0.3 * compound) * std::exp(-white * white))});
    }
    AMutE made;
    made.setEdge(kEdgeEv - 60, kEdgeEv, kEdgeEv + 60);
    made.setPoints(points);
    return made;
}

const AMutE &spectrum(int compound)
{
    static const AMutE all[] = {makeSpectrum(0), makeSpectrum(1), makeSpectrum(2)};
    return all[compound];
}

struct Case {
    int references;
    bool nonEquiv;
    bool linear;
    int points;
    bool exact = false;
    DesignCriterion criterion = DesignCriterion::Valence;
    double alikeWithin = 0.02;
};

AnalysisInput inputOf(const Case &c, const std::vector<double> &energiesEv = {}, int v = -1)
{
    AnalysisInput input;
    for (int i = 0; i < c.references; ++i) {
        input.references.push_back(inputs::reference(i, kValences[i], spectrum(i)));
    }
    input.method.nonEquiv = c.nonEquiv;
    input.method.linearBackground = c.linear;
    input.method.exact = c.exact;
    for (const double energyEv : energiesEv) {
        EnergyPointInput point = inputs::point(static_cast<int>(input.points.size()), energyEv);
        point.vPoint = point.row == v;
        for (const ReferenceInput &reference : input.references) {
            point.referenceMu[static_cast<size_t>(reference.row)] =
                reference.spectrum.valueAtE(AMutE::SubPre, energyEv);
        }
        input.points.push_back(point);
    }
    return input;
}

AdviserSettings settingsOf(const Case &c)
{
    AdviserSettings settings;
    settings.points = c.points;
    settings.criterion = c.criterion;
    settings.alikeWithin = c.alikeWithin;
    settings.fractions = {0.3, 0.5, 0.2};
    settings.amount = 0.8;
    settings.sigma = 0.002;
    return settings;
}

/// The assumed fractions of the references that the method takes.
std::vector<double> fractionsOf(const Case &c)
{
    return c.nonEquiv && c.references == 3 ? std::vector<double>{0.3, 0.5, 0.2}
                                           : std::vector<double>{0.3 / 0.8, 0.5 / 0.8};
}

struct Sigmas {
    double fraction;
    double valence;
    double amount;
    double fractions; ///< root of the sum of the variances
};

/// By what gives maps their standard deviations; with noise so small that it never refuses.
Sigmas plainSigmas(const Case &c, Method method, const std::vector<double> &energiesEv, int v)
{
    constexpr double kSmall = 1e-9;
    constexpr double kVariance = kSmall * kSmall;
    const double scale = 0.002 / kSmall;
    const AnalysisInput input = inputOf(c, energiesEv, v);
    const Plan plan = inputs::planOf(method, energiesEv.size(), v);
    const std::vector<double> fractions = fractionsOf(c);
    if (c.nonEquiv) {
        ResultVector assumed = {};
        for (size_t i = 0; i < fractions.size(); ++i) {
            assumed[i] = fractions[i];
            assumed[indexOf(Quantity::Valence)] += fractions[i] * input.references[i].valence;
        }
        assumed[indexOf(Quantity::Amount)] = 0.8;
        const FitSigmas found =
            NonEquivPrecision(gatherRefValues(input, plan)).sigmas(assumed, kSmall);
        const double all = std::hypot(found.ratios[0], found.ratios[1],
                                      fractions.size() > 2 ? found.ratios[2] : 0.0);
        return {found.ratios[0] * scale, found.valence * scale, found.amount * scale, all * scale};
    }
    // The assumed curve: of a total edge jump t/ts times the references' mean; V comes last.
    std::vector<double> curve;
    for (const EnergyPointInput &point : input.points) {
        double value = 0;
        for (size_t i = 0; i < 2; ++i) {
            value += fractions[i] * 0.8 * (kJumps[0] + kJumps[1]) / 2 /
                     input.references[i].spectrum.edgeJump() * point.referenceMu[i];
        }
        curve.push_back(value);
    }
    std::rotate(curve.begin() + v, curve.begin() + v + 1, curve.end());
    std::vector<const double *> values(curve.size());
    std::iota(values.begin(), values.end(), curve.data());
    const std::vector<const double *> variances(values.size(), &kVariance);
    double a = 0;
    double valence = 0;
    double amount = 0;
    FourPointsPrecision(method, FourPoints(input, plan).pixels().setup())
        .sigmas(values.data(), variances.data(), 1, {&a, &valence, &amount});
    return {a * scale, valence * scale, amount * scale, a * scale * std::numbers::sqrt2};
}

/// At the points other than v each difference is small, and so is what a line leaves of them
/// beside what it leaves of the spectra.
bool isAlike(const Case &c, Method method, const AnalysisInput &input, int v)
{
    Rows line;
    std::vector<double> differences;
    std::vector<double> means;
    for (const EnergyPointInput &point : input.points) {
        if (point.row != v) {
            const auto &mu = point.referenceMu;
            differences.push_back(mu[0] / kJumps[0] - mu[1] / kJumps[1]);
            means.push_back((mu[0] / kJumps[0] + mu[1] / kJumps[1]) / 2);
            line.push_back({1.0});
            if (method != Method::ThreePoints) {
                line.back().push_back(point.energyEv);
            }
        }
    }
    double left[2] = {};
    for (const auto &z : SmallQr(line).complement()) {
        const double d = std::inner_product(z.begin(), z.end(), differences.begin(), 0.0);
        const double m = std::inner_product(z.begin(), z.end(), means.begin(), 0.0);
        left[0] += d * d;
        left[1] += m * m;
    }
    const double within = c.alikeWithin;
    return left[0] <= within * within * left[1] &&
           std::all_of(differences.begin(), differences.end(),
                       [within](double d) { return std::fabs(d) <= within; });
}

/// Least criterion over all designs of a grid, and how many there are.
std::pair<double, int> leastOfAll(const Case &c, const std::vector<double> &grid, Method method,
                                  double spacingEv)
{
    std::pair<double, int> found(std::numeric_limits<double>::infinity(), 0);
    for (unsigned set = 0; set < 1U << grid.size(); ++set) {
        std::vector<double> energies;
        bool isApart = std::popcount(set) == c.points;
        for (size_t i = 0; i < grid.size() && isApart; ++i) {
            if ((set >> i & 1U) != 0) {
                isApart = energies.empty() || grid[i] - energies.back() >= spacingEv;
                energies.push_back(grid[i]);
            }
        }
        for (int v = c.nonEquiv ? -1 : 0; isApart && v < (c.nonEquiv ? 0 : c.points); ++v) {
            if (c.nonEquiv || isAlike(c, method, inputOf(c, energies), v)) {
                const Sigmas sigmas = plainSigmas(c, method, energies, v);
                const bool valence = c.criterion == DesignCriterion::Valence;
                found.first = std::fmin(found.first, valence ? sigmas.valence : sigmas.fractions);
                ++found.second;
            }
        }
    }
    return found;
}

using Change = std::function<void(AnalysisInput &, AdviserSettings &)>;

bool has(const ExpectedPrecision &expected, DesignWarning warning)
{
    return std::count(expected.warnings.begin(), expected.warnings.end(), warning) == 1;
}

} // namespace

Q_DECLARE_METATYPE(Case)
Q_DECLARE_METATYPE(DesignFault)
Q_DECLARE_METATYPE(Change)

class AdviserTest : public QObject {
    Q_OBJECT

private slots:
    void findsTheBestOfAll_data();
    void findsTheBestOfAll();
    void saysWhyNot_data();
    void saysWhyNot();
    void warns();
};

void AdviserTest::findsTheBestOfAll_data()
{
    const TestTable<Case> row("c");
    constexpr auto kFractions = DesignCriterion::Fractions;
    row("three points", Case{2, false, false, 3});
    row("exact", Case{2, false, false, 4, true});
    row("least squares", Case{3, false, false, 6}); // the third takes no part
    // Off the model's line its derivatives have further terms.
    row("unlike references", Case{2, false, false, 5, false, kFractions, 0.3});
    row("linear", Case{3, true, true, 5});
    row("Victoreen, fractions", Case{3, true, false, 7, false, kFractions});
}

void AdviserTest::findsTheBestOfAll()
{
    QFETCH(Case, c);
    AdviserSettings settings = settingsOf(c);
    settings.candidates = 18; // 15.3 eV apart: no two neighbours
    settings.minimumSpacingEv = 16;
    settings.refine = false;
    const EnergyAdvice advice = adviseEnergies(inputOf(c), settings);
    const ExpectedPrecision &best = advice.best;
    QVERIFY(best.fault == DesignFault::None);
    QCOMPARE(best.energiesEv.size(), static_cast<size_t>(c.points));
    QCOMPARE(best.vPoint >= 0, !c.nonEquiv);
    settings.refine = true;
    const ExpectedPrecision refined = adviseEnergies(inputOf(c), settings).best;
    QVERIFY(refined.valence < best.valence || c.criterion == DesignCriterion::Fractions);
    for (const auto &energies : {best.energiesEv, refined.energiesEv}) {
        QVERIFY(energies.front() >= 7052 && energies.back() <= 7312);
        for (size_t i = 1; i < energies.size(); ++i) {
            QVERIFY(energies[i] - energies[i - 1] >= 16 - 1e-9);
        }
        for (const double energy : energies) { // as a form holds it, to the last bit
            QCOMPARE(QString::number(energy, 'f', 2).toDouble() - energy, 0.0);
        }
    }

    constexpr double kRounding = 1e-7; // condition of backgrounds over 260 eV
    const Sigmas plain = plainSigmas(c, best.method, best.energiesEv, best.vPoint);
    QVERIFY(inputs::close(best.fractions[0] / plain.fraction, 1, kRounding));
    QVERIFY(inputs::close(best.valence / plain.valence, 1, kRounding));
    QVERIFY(inputs::close(best.amount / plain.amount, 1, kRounding));

    const auto [least, designs] = leastOfAll(c, advice.candidatesEv, best.method, 16);
    QVERIFY(designs > 50);
    const double found = c.criterion == DesignCriterion::Valence ? plain.valence : plain.fractions;
    QVERIFY2(found <= least * (1 + kRounding), qPrintable(QString::number(found / least)));
}

void AdviserTest::saysWhyNot_data()
{
    const TestTable<DesignFault, DesignFault, Change> row("best", "present", "change");
    using F = DesignFault;
    // 5 energies of 2 references with a Victoreen background, or where that is said four points
    row("possible", F::None, F::None, [](auto &, auto &) {});
    row("too many energies", F::BadSettings, F::BadSettings, [](auto &, auto &s) { s.points = 9; });
    row("equal references", F::NotDetermined, F::NotDetermined,
        [](auto &in, auto &) { in.references[1].spectrum = in.references[0].spectrum; });
    row("less than unknowns", F::FewPoints, F::None, [](auto &, auto &s) { s.points = 4; });
    row("too far apart", F::FewCandidates, F::None,
        [](auto &, auto &s) { s.minimumSpacingEv = 70; }); // 4 * 70 > 260
    row("just fits", F::None, F::None, [](auto &, auto &s) {
        s.candidates = 14; // every 20 eV
        s.minimumSpacingEv = 60;
    });
    row("exact takes four", F::CountForMethod, F::CountForMethod, [](auto &in, auto &) {
        in.method.nonEquiv = false;
        in.method.exact = true;
    });
    row("no V", F::None, F::NoVPoint, [](auto &in, auto &) {
        in.method.nonEquiv = false;
        in.points[2].vPoint = false;
    });
    row("nowhere alike", F::FewAlikeCandidates, F::None, [](auto &in, auto &s) {
        in.method.nonEquiv = false;
        s.lowEv = 7105;
        s.highEv = 7125;
    });
}

void AdviserTest::saysWhyNot()
{
    QFETCH(Change, change);
    AnalysisInput input = inputOf({2, true, false, 5}, {7060, 7110, 7116, 7130, 7300}, 2);
    input.method.exact = false;
    AdviserSettings settings;
    change(input, settings);
    const EnergyAdvice advice = adviseEnergies(input, settings);
    QTEST(advice.best.fault, "best");
    QTEST(advice.present.fault, "present");
    QVERIFY(advice.best.fault != DesignFault::None || advice.best.energiesEv.size() == 5);
}

void AdviserTest::warns()
{
    const Case c = {2, false, false, 5};
    AdviserSettings settings = settingsOf(c);
    const auto present = [&](const std::vector<double> &energies) {
        return adviseEnergies(inputOf(c, energies, 1), settings).present;
    };
    const ExpectedPrecision good = present({7040, 7115, 7180, 7250, 7300});
    QVERIFY(good.warnings.empty() && good.freedom == 1);
    QVERIFY(has(present({7040, 7115, 7300}), DesignWarning::NoFreedom));
    QVERIFY(has(present({7040, 7115, 7110, 7250, 7300}), DesignWarning::UnlikeReferences));
    // All behind the edge but V: the line has hardly a step to be told from.
    QVERIFY(has(present({7055, 7115, 7050, 7045, 7076}), DesignWarning::FarFromBest));
    settings.sigma = 0.5;
    const ExpectedPrecision noisy = present({7040, 7115, 7180, 7250, 7300});
    QVERIFY(has(noisy, DesignWarning::AmountInNoise) && noisy.valence > 0);
}

QTEST_GUILESS_MAIN(AdviserTest)
#include "tst_adviser.moc"
