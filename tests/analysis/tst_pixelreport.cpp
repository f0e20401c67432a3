// Reports on pixels that are exact mixtures, with fit and background known from how they were made,
// and on noisy ones against the planes of their maps.

#include "analysis/PixelReport.h"
#include "tests/TestTable.h"
#include "tests/analysis/Inputs.h"

#include <QtTest>

#include <algorithm>
#include <random>

using namespace orvel;
using inputs::close;

Q_DECLARE_METATYPE(Method)
Q_DECLARE_METATYPE(NoiseSource)

namespace {

const std::vector<double> kEnergies = {105, 118, 126, 139, 147, 160, 178, 195};
/// Values of the references at these energies; 0 before the edge, so nothing is subtracted. But at
/// 126 eV the first is 1.25 times the second, as are their jumps: what four points ask for.
const std::vector<std::vector<double>> kReferences = {{0.1, 0.5, 1.6, 0.9, 1.1, 1.0, 0.8, 1.2},
                                                      {0.08, 0.4, 0.3, 0.72, 0.88, 0.8, 0.64, 0.96},
                                                      {0.0, 0.2, 0.6, 1.9, 0.8, 1.0, 1.1, 0.9}};
const double kJumps[] = {1.0, 0.8, 1.2};
constexpr size_t kV = 2;

double referenceAt(size_t reference, double energyEv)
{
    const auto next = std::upper_bound(kEnergies.begin(), kEnergies.end() - 1, energyEv);
    const auto i = static_cast<size_t>(next - kEnergies.begin());
    const double part = (energyEv - kEnergies[i - 1]) / (kEnergies[i] - kEnergies[i - 1]);
    const std::vector<double> &values = kReferences[reference];
    return values[i - 1] + part * (values[i] - values[i - 1]);
}

/// The references are in rows 2 to 4.
AnalysisInput inputFor(Method method)
{
    const bool nonEquiv = isNonEquiv(method);
    const std::vector<double> jumps(kJumps, kJumps + (nonEquiv ? 3 : 2));
    AnalysisInput input = inputs::withReferences(kEnergies, kReferences, jumps, {2, 4, 6}, 1);
    input.points.resize(method == Method::ThreePoints       ? 4
                        : method == Method::ExactFourPoints ? 5
                                                            : kEnergies.size());
    input.points[1].use = nonEquiv || method == Method::LeastSquares;
    input.points[kV].vPoint = true;
    input.method.nonEquiv = nonEquiv;
    input.method.linearBackground = method == Method::NonEquivLinear;
    input.method.exact = method != Method::LeastSquares;
    return input;
}

/// A mixture as a function of energy, with the results that it must give.
struct Mixture {
    std::function<double(double)> background;
    std::vector<double> factors; ///< of the references
    std::vector<double> ratios;
    double amount;

    double at(double energyEv) const
    {
        double value = background(energyEv);
        for (size_t r = 0; r < factors.size(); ++r) {
            value += factors[r] * referenceAt(r, energyEv);
        }
        return value;
    }
};

Mixture mixtureFor(Method method)
{
    const auto line = [](double energyEv) { return 0.3 - 0.0004 * energyEv; };
    const auto victoreen = [](double energyEv) {
        return 0.1 + 2e-7 * std::pow(AMutE::kHcEvAngstrom / energyEv, 3);
    };
    if (method == Method::NonEquivLinear || method == Method::NonEquivVictoreen) {
        Mixture mixture = {line, {0.5, 0.3, 0.4}, {0.5 / 1.22, 0.24 / 1.22, 0.48 / 1.22}, 1.22};
        if (method == Method::NonEquivVictoreen) {
            mixture.background = victoreen;
        }
        return mixture;
    }
    if (method == Method::ThreePoints) {
        // T1 = 0.2, T2 = 1.0; A steps by 0.8, B by 0.64 from P1 to P2, so T - T1 is
        // (0.25 (A - 0.1) / 0.8 + 0.75 (B - 0.08) / 0.64) 0.8.
        const double a = 0.25;
        const double b = 0.75 * 0.8 / 0.64;
        return {[=](double) { return 0.2 - a * 0.1 - b * 0.08; },
                {a, b},
                {0.25, 0.75},
                0.8 / (((0.9 - 0.08) + 0.8) / 2)};
    }
    // r = 1.25, t/ts = 2 / g = 0.8: u = 2.5 / 2.25, w = 1.25 u.
    const double u = 2.5 / 2.25;
    return {line, {0.25 / (1.25 * u), 0.75 / u}, {0.25, 0.75}, 0.8};
}

void takeImages(AnalysisInput &input, const std::function<std::vector<double>(size_t)> &pixels)
{
    for (size_t e = 0; e < input.points.size(); ++e) {
        const std::vector<double> values = pixels(e);
        input.points[e].map = inputs::image(static_cast<int>(values.size()), 1, values);
    }
}

double curveAt(const PixelReport &report, const std::vector<double> &curve, double energyEv)
{
    const auto &energies = report.energiesEv;
    const auto next = std::lower_bound(energies.begin() + 1, energies.end() - 1, energyEv);
    const auto i = static_cast<size_t>(next - energies.begin());
    const double part = (energyEv - energies[i - 1]) / (energies[i] - energies[i - 1]);
    return curve[i - 1] + part * (curve[i] - curve[i - 1]);
}

} // namespace

class PixelReportTest : public QObject {
    Q_OBJECT

private slots:
    void exactMixtureIsMet_data();
    void exactMixtureIsMet();
    void noiseIsThatOfTheMap_data();
    void noiseIsThatOfTheMap();
    void otherInputsHaveNoReport();
};

void PixelReportTest::exactMixtureIsMet_data()
{
    const TestTable<Method> row("method");
    row("three points", Method::ThreePoints);
    row("least squares", Method::LeastSquares);
    row("linear", Method::NonEquivLinear);
    row("Victoreen", Method::NonEquivVictoreen);
}

void PixelReportTest::exactMixtureIsMet()
{
    QFETCH(Method, method);
    AnalysisInput input = inputFor(method);
    const Mixture mixture = mixtureFor(method);
    takeImages(input, [&](size_t e) { return std::vector<double>{0.0, mixture.at(kEnergies[e])}; });
    const MapOutcome outcome = calculateMap(input);
    QVERIFY(outcome.maps);
    const PixelReport report = reportPixel(input, *outcome.maps, 1, 0);
    QCOMPARE(report.method, method);

    // Edge jumps of the spectra are known to 1e-8, normal equations lose some digits more.
    constexpr double kTolerance = 1e-6;
    QCOMPARE(report.references.size(), mixture.ratios.size());
    for (size_t r = 0; r < mixture.ratios.size(); ++r) {
        QCOMPARE(report.references[r].row, static_cast<int>(r) + 1);
        QVERIFY(close(report.references[r].ratio.value, mixture.ratios[r], kTolerance));
        if (input.method.nonEquiv) {
            QVERIFY(close(report.references[r].amount.value, mixture.factors[r] * kJumps[r],
                          kTolerance));
        }
    }
    QVERIFY(close(report.amount.value, mixture.amount, kTolerance));

    size_t next = 0;
    for (const EnergyPointInput &used : input.points) {
        if (!used.use) {
            continue;
        }
        const PixelReport::Point &point = report.points[next++];
        QCOMPARE(point.energyEv, used.energyEv);
        QCOMPARE(point.isV, used.vPoint && !input.method.nonEquiv);
        QCOMPARE(point.measured, mixture.at(used.energyEv));
        QVERIFY(std::fabs(point.residual) < 1e-8);
        QCOMPARE(point.residual, point.measured - point.fitted);
        // Between two energies spectra are straight, and what is curved is so over 90 eV.
        for (const double energyEv : {used.energyEv, used.energyEv + 3.7}) {
            if (energyEv <= report.points.back().energyEv) {
                QVERIFY(close(curveAt(report, report.fit, energyEv), mixture.at(energyEv), 1e-5));
                const double background = input.points.size() == 4 ? 0.2 // T1 of three points
                                                                   : mixture.background(energyEv);
                QVERIFY(close(curveAt(report, report.background, energyEv), background, 1e-5));
            }
        }
    }
    QCOMPARE(report.points.size(), next);
    // A tenth wider than the used energies, which the spectra are as well.
    const double beside = (report.points.back().energyEv - 105) / 10;
    QCOMPARE(report.energiesEv.front(), 105 - beside);
    QCOMPARE(report.energiesEv.back(), report.points.back().energyEv + beside);
    QVERIFY(std::is_sorted(report.energiesEv.begin(), report.energiesEv.end()));
}

void PixelReportTest::noiseIsThatOfTheMap_data()
{
    const TestTable<Method, NoiseSource, bool> row("method", "noise", "bounded");
    row("linear, pooled", Method::NonEquivLinear, NoiseSource::Pooled, false);
    row("Victoreen, pixel", Method::NonEquivVictoreen, NoiseSource::Pixel, false);
    row("Victoreen, counts", Method::NonEquivVictoreen, NoiseSource::Counts, false);
    row("bounded, pixel", Method::NonEquivLinear, NoiseSource::Pixel, true);
    row("least squares, pixel", Method::LeastSquares, NoiseSource::Pixel, false);
    row("three points, given", Method::ThreePoints, NoiseSource::Given, false);
}

void PixelReportTest::noiseIsThatOfTheMap()
{
    QFETCH(Method, method);
    QFETCH(NoiseSource, noise);
    QFETCH(bool, bounded);
    constexpr int kPixels = 40;
    AnalysisInput input = inputFor(method);
    Mixture mixture = mixtureFor(method);
    if (bounded) {
        mixture.factors[1] = 0.0; // noise takes half of the pixels below
    }
    std::mt19937_64 random(3);
    std::normal_distribution<> scatter(0.0, 0.003);
    for (size_t e = 0; e < input.points.size(); ++e) {
        MapColumns columns;
        for (int i = 0; i < kPixels; ++i) {
            const double reference = 1e5 * (1.0 + static_cast<double>(e));
            columns.x.push_back(i);
            columns.y.push_back(0);
            columns.reference.push_back(reference);
            columns.signal.push_back(reference *
                                     std::exp(-mixture.at(kEnergies[e]) - scatter(random)));
        }
        input.points[e].map = ImageData::fromColumns({}, kPixels, 1, std::move(columns));
    }
    input.method.nonEquivBounds = bounded ? NonEquivBounds::NonNegative : NonEquivBounds::Free;
    input.precision = {true, noise, 0.004};
    const MapOutcome outcome = calculateMap(input);
    input.precision.maps = false;
    const MapOutcome plain = calculateMap(input);
    QVERIFY(outcome.maps && plain.maps);
    const ResultMaps &maps = *outcome.maps;
    const bool isLine = !input.method.nonEquiv;
    int onBounds = 0;
    for (int x = 0; x < kPixels; ++x) {
        const PixelReport report = reportPixel(input, maps, x, 0);
        double squares = 0.0;
        for (const PixelReport::Point &point : report.points) {
            squares += point.isV ? 0.0 : point.residual * point.residual;
        }
        const auto points = static_cast<double>(report.points.size() - (isLine ? 1 : 0));
        if (maps.fills(Quantity::Residual)) {
            const double residual = maps.at(Quantity::Residual, x);
            QVERIFY(close(squares / points / (residual * residual), 1.0, 1e-6));
            QCOMPARE(report.residual, residual);
        } else {
            QVERIFY(squares < 1e-16); // solved exactly
        }
        const auto isPlane = [&](double sigma, Quantity quantity) {
            const double expected = maps.at(quantity, x);
            return std::isnan(expected) ? std::isnan(sigma) : close(sigma / expected, 1.0, 1e-9);
        };
        for (size_t r = 0; r < report.references.size(); ++r) {
            const auto plane = quantityAt(indexOf(Quantity::SigmaRatio1) + static_cast<int>(r));
            const PixelReport::Reference &reference = report.references[r];
            const bool held = bounded && (maps.heldReferences()[static_cast<size_t>(x)] >> r & 1);
            QCOMPARE(reference.isHeld, held);
            QVERIFY(held || isPlane(reference.ratio.sigma, plane));
            onBounds += held;
        }
        QVERIFY(isPlane(report.valence.sigma, Quantity::SigmaValence));
        QVERIFY(isPlane(report.amount.sigma, Quantity::SigmaAmount));
        for (size_t e = 0; report.noise == NoiseSource::Counts && e < kEnergies.size(); ++e) {
            const PixelRecord pixel = input.points[e].map->pixel(x);
            QVERIFY(close(report.points[e].sigma, std::sqrt(1 / pixel.signal + 1 / pixel.reference),
                          1e-12));
        }
        // Without planes the pixel's own residuals are all there is.
        const PixelReport own = reportPixel(input, *plain.maps, x, 0);
        QCOMPARE(own.noise, NoiseSource::Pixel);
        if (report.noise == NoiseSource::Pixel) {
            QVERIFY(close(own.sigma / report.sigma, 1.0, 1e-6));
            QVERIFY(close(own.valence.sigma / report.valence.sigma, 1.0, 1e-6));
        }
    }
    QCOMPARE(onBounds > 0, bounded);
}

void PixelReportTest::otherInputsHaveNoReport()
{
    AnalysisInput input = inputFor(Method::NonEquivLinear);
    takeImages(input, [](size_t) { return std::vector<double>{0.5}; });
    const auto maps = calculateMap(input).maps;
    const auto hasReport = [&](int x, int y) {
        return reportPixel(input, *maps, x, y).method != Method::None;
    };
    QVERIFY(hasReport(0, 0));
    QVERIFY(!hasReport(1, 0) && !hasReport(0, 1) && !hasReport(-1, 0));
    input.method.linearBackground = false;
    QVERIFY(!hasReport(0, 0));
    input.method.linearBackground = true;
    input.points[0].map = inputs::image(1, 1, {0.5});
    QVERIFY(!hasReport(0, 0));
}

QTEST_GUILESS_MAIN(PixelReportTest)

#include "tst_pixelreport.moc"
