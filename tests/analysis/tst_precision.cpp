// Standard deviations against the scatter of simulated measurements (20 000 draws, fixed seed) and
// against finite differences; bounded fits against exact fractions and against brute force.

#include "analysis/FourPoints.h"
#include "analysis/NonEquivPixels.h"
#include "analysis/NonEquivPrecision.h"
#include "analysis/PixelNoise.h"
#include "analysis/SmallQr.h"
#include "tests/analysis/Inputs.h"

#include <QtTest>

#include <numeric>
#include <random>

using namespace orvel;
using inputs::close;
using inputs::flatSpectrum;

namespace {

constexpr int kWidth = 200;
constexpr int kHeight = 100;
constexpr int kDraws = kWidth * kHeight;
/// The scatter of 20 000 draws is itself known to 0.5 %.
constexpr double kScatterTolerance = 0.05;

/// References with free values at `energies`, 0 before the edge.
AnalysisInput makeInput(const std::vector<double> &energies, const Rows &values,
                        const std::vector<double> &jumps)
{
    AnalysisInput input;
    for (size_t r = 0; r < values.size(); ++r) {
        QVector<QPair<double, double>> between;
        for (size_t e = 0; e < energies.size(); ++e) {
            between.append({energies[e], values[r][e]});
        }
        input.references.push_back(inputs::reference(static_cast<int>(r),
                                                     1.0 + static_cast<double>(r * r),
                                                     flatSpectrum(jumps[r], between)));
    }
    for (size_t e = 0; e < energies.size(); ++e) {
        EnergyPointInput point = inputs::point(static_cast<int>(e), energies[e]);
        for (size_t r = 0; r < values.size(); ++r) {
            point.referenceMu[r] = values[r][e];
        }
        input.points.push_back(point);
    }
    input.method.nonEquiv = true;
    input.points[1].vPoint = true; // which the checks want of targets
    return input;
}

const std::vector<double> kEnergies = {105, 118, 126, 139, 147, 160, 178, 195};
const Rows kThreeReferences = {{0.1, 1.6, 0.9, 1.0, 1.1, 0.9, 1.05, 1.0},
                               {0.05, 0.5, 1.7, 0.8, 0.9, 1.2, 0.95, 1.0},
                               {0.0, 0.2, 0.6, 1.9, 0.8, 1.0, 1.1, 0.9}};
const std::vector<double> kJumps = {1.0, 0.8, 1.2};

AnalysisInput threeReferences(int points, bool linear)
{
    std::vector<double> energies(kEnergies.begin(), kEnergies.begin() + points);
    Rows values;
    for (const auto &row : kThreeReferences) {
        values.emplace_back(row.begin(), row.begin() + points);
    }
    AnalysisInput input = makeInput(energies, values, kJumps);
    input.method.linearBackground = linear;
    return input;
}

/// The model, be there images and a target or not.
RefValues modelOf(const AnalysisInput &input)
{
    Plan plan;
    plan.method =
        input.method.linearBackground ? Method::NonEquivLinear : Method::NonEquivVictoreen;
    for (size_t i = 0; i < input.points.size(); ++i) {
        plan.used.push_back(i);
    }
    return gatherRefValues(input, plan);
}

/// Absorptions of a sample with these coefficients on a background, at each point.
std::vector<double> sampleOf(const AnalysisInput &input, const std::vector<double> &x)
{
    const RefValues references = modelOf(input);
    std::vector<double> y;
    for (size_t e = 0; e < references.energiesEv.size(); ++e) {
        const double lambda = AMutE::kHcEvAngstrom / references.energiesEv[e];
        double value = references.victoreen ? 0.1 + 2e-7 * lambda * lambda * lambda
                                            : 0.3 - 0.0004 * references.energiesEv[e];
        for (size_t i = 0; i < x.size(); ++i) {
            value += x[i] * references.values[i][e];
        }
        y.push_back(value);
    }
    return y;
}

/// Gives every point an image of draws around y; sigma a point.
void measure(AnalysisInput &input, const std::vector<double> &y, const std::vector<double> &sigma,
             unsigned seed)
{
    std::mt19937_64 random(seed);
    for (size_t e = 0; e < input.points.size(); ++e) {
        std::normal_distribution<> noise(0.0, sigma[e]);
        std::vector<double> pixels(kDraws);
        for (double &pixel : pixels) {
            pixel = y[e] + noise(random);
        }
        input.points[e].map = inputs::image(kWidth, kHeight, pixels);
    }
}

struct Scatter {
    double mean = 0.0;
    double sigma = 0.0;
};

Scatter scatterOf(const ResultMaps &maps, Quantity quantity)
{
    Scatter found;
    for (qint64 i = 0; i < maps.size(); ++i) {
        found.mean += maps.at(quantity, i) / static_cast<double>(maps.size());
    }
    for (qint64 i = 0; i < maps.size(); ++i) {
        const double d = maps.at(quantity, i) - found.mean;
        found.sigma += d * d / static_cast<double>(maps.size() - 1);
    }
    found.sigma = std::sqrt(found.sigma);
    return found;
}

/// Root of the mean predicted variance.
double predicted(const ResultMaps &maps, Quantity quantity)
{
    double sum = 0.0;
    for (qint64 i = 0; i < maps.size(); ++i) {
        sum += maps.at(quantity, i) * maps.at(quantity, i);
    }
    return std::sqrt(sum / static_cast<double>(maps.size()));
}

Quantity sigmaOf(Quantity quantity)
{
    switch (quantity) {
    case Quantity::Valence:
        return Quantity::SigmaValence;
    case Quantity::Amount:
        return Quantity::SigmaAmount;
    default:
        return quantityAt(indexOf(Quantity::SigmaRatio1) + indexOf(quantity));
    }
}

/// Model columns without the background, and data without it: by Gram and Schmidt, in long double.
struct Projected {
    Projected(const RefValues &references, const std::vector<double> &y)
    {
        const NonEquivFit fit(references);
        const size_t n = y.size();
        const size_t m = references.references();
        std::vector<std::vector<long double>> vectors;
        for (size_t k = m; k <= fit.basis()[0].size(); ++k) {
            vectors.emplace_back();
            for (size_t e = 0; e < n && k < fit.basis()[0].size(); ++e) {
                vectors.back().push_back(fit.basis()[e][k]);
            }
        }
        vectors.pop_back();
        for (size_t k = 0; k < m + 1; ++k) {
            vectors.emplace_back();
            for (size_t e = 0; e < n; ++e) {
                vectors.back().push_back(k < m ? references.values[k][e] : y[e]);
            }
        }
        const size_t background = vectors.size() - m - 1;
        for (size_t k = 0; k < background; ++k) {
            for (int twice = 0; twice < 2; ++twice) { // once leaves rounding behind
                for (size_t j = 0; j < k; ++j) {
                    remove(vectors[k], vectors[j]);
                }
            }
            long double length = 0;
            for (const long double v : vectors[k]) {
                length += v * v;
            }
            for (long double &v : vectors[k]) {
                v /= sqrtl(length);
            }
        }
        for (size_t k = background; k < vectors.size(); ++k) {
            for (int twice = 0; twice < 2; ++twice) {
                for (size_t j = 0; j < background; ++j) {
                    remove(vectors[k], vectors[j]);
                }
            }
        }
        data = vectors.back();
        columns.assign(vectors.begin() + static_cast<std::ptrdiff_t>(background),
                       vectors.end() - 1);
    }

    static void remove(std::vector<long double> &v, const std::vector<long double> &unit)
    {
        long double product = 0;
        for (size_t e = 0; e < v.size(); ++e) {
            product += v[e] * unit[e];
        }
        for (size_t e = 0; e < v.size(); ++e) {
            v[e] -= product * unit[e];
        }
    }

    double residualSum(const std::vector<double> &x) const
    {
        long double sum = 0;
        for (size_t e = 0; e < data.size(); ++e) {
            long double r = data[e];
            for (size_t i = 0; i < x.size(); ++i) {
                r -= x[i] * columns[i][e];
            }
            sum += r * r;
        }
        return static_cast<double>(sum);
    }

    std::vector<std::vector<long double>> columns;
    std::vector<long double> data;
};

/// Coefficients x_i from a result: amount_i = J_i x_i.
std::vector<double> coefficientsOf(const ResultVector &result, const RefValues &references)
{
    std::vector<double> x;
    for (size_t i = 0; i < references.references(); ++i) {
        x.push_back(result[kReferenceRows + i] / (references.jumpShares[i] * references.jump));
    }
    return x;
}

} // namespace

class PrecisionTest : public QObject {
    Q_OBJECT

private slots:
    void smallQrByHand();
    void mapSigmasAreTheScatter_data();
    void mapSigmasAreTheScatter();
    void countedPhotonsScatter();
    void undeterminedIsNotANumber();
    void unmeasuredPixelsDoNotCount();
    void fourPointsSigmasAreTheDerivatives_data();
    void fourPointsSigmasAreTheDerivatives();
    void fourPointsResidualsGiveTheNoise();
    void targetSigmas();
    void boundedFitIsTheExactFraction();
    void boundedFitIsTheBest_data();
    void boundedFitIsTheBest();
    void boundedPixelsScatter();
    void lcfSigmasAreTheScatter_data();
    void lcfSigmasAreTheScatter();
    void boundedLcfIsTheBest_data();
    void boundedLcfIsTheBest();
    void hopelessTargetsGiveNoNumbers();
};

void PrecisionTest::smallQrByHand()
{
    // Orthogonal columns of lengths 2 and 6: everything is known.
    const SmallQr qr({{1, 3}, {1, -3}, {1, 3}, {1, -3}});
    QVERIFY(qr.isRegular());
    QCOMPARE(qr.freedom(), 2);
    const Rows inverse = qr.normalInverse();
    QVERIFY(close(inverse[0][0], 1.0 / 4, 1e-15) && close(inverse[1][1], 1.0 / 36, 1e-15));
    QVERIFY(std::fabs(inverse[0][1]) < 1e-16);
    QVERIFY(close(qr.normalCondition(), 9.0, 1e-14));
    QCOMPARE(qr.complement().size(), size_t(2));
    for (const std::vector<double> &z : qr.complement()) {
        QVERIFY(std::fabs(z[0] + z[1] + z[2] + z[3]) < 1e-15);
        QVERIFY(std::fabs(z[0] - z[1] + z[2] - z[3]) < 1e-15);
        QVERIFY(close(z[0] * z[0] + z[1] * z[1] + z[2] * z[2] + z[3] * z[3], 1.0, 1e-15));
    }
    const std::vector<double> x = qr.solve({4, -2, 4, -2});
    QVERIFY(close(x[0], 1.0, 1e-15) && close(x[1], 1.0, 1e-15));

    QVERIFY(!SmallQr({{1, 2}, {2, 4}, {3, 6}}).isRegular()); // parallel
    QVERIFY(!SmallQr({{1, 2, 3}, {4, 5, 7}}).isRegular());   // too few points
    QVERIFY(!SmallQr({{1, qQNaN()}, {2, 4}}).isRegular());
    QVERIFY(!SmallQr({{1, 0}, {2, 0}}).isRegular());
    // [[1, 1], [0, 1e-5]]: A^T A has condition (2 + 1e-10)^2 / 1e-10 to first order.
    QVERIFY(close(SmallQr({{1, 1}, {0, 1e-5}}).normalCondition(), 4e10, 1e-9));
}

void PrecisionTest::mapSigmasAreTheScatter_data()
{
    QTest::addColumn<bool>("linear");
    QTest::addColumn<int>("points");
    QTest::addColumn<int>("noise");
    QTest::newRow("Victoreen, given, no freedom")
        << false << 6 << static_cast<int>(NoiseSource::Given);
    QTest::newRow("Victoreen, pooled") << false << 8 << static_cast<int>(NoiseSource::Pooled);
    QTest::newRow("linear, pooled") << true << 7 << static_cast<int>(NoiseSource::Pooled);
    QTest::newRow("linear, own") << true << 8 << static_cast<int>(NoiseSource::Pixel);
}

void PrecisionTest::mapSigmasAreTheScatter()
{
    QFETCH(bool, linear);
    QFETCH(int, points);
    QFETCH(int, noise);
    constexpr double kSigma = 1e-3; // small against the amount: first order holds
    AnalysisInput input = threeReferences(points, linear);
    const std::vector<double> y = sampleOf(input, {0.5, 0.3, 0.4});
    measure(input, y, std::vector<double>(y.size(), kSigma), 7);
    input.precision = {true, static_cast<NoiseSource>(noise), kSigma};

    const MapOutcome outcome = calculateMap(input);
    QVERIFY(outcome.maps && outcome.maps->precision());
    const ResultMaps &maps = *outcome.maps;
    QCOMPARE(maps.precision()->freedom, points - (linear ? 5 : 6));
    if (input.precision.noise != NoiseSource::Pixel) {
        QVERIFY(std::fabs(maps.precision()->sigma / kSigma - 1) < 0.02);
    }
    for (const Quantity q : {Quantity::Ratio1, Quantity::Ratio2, Quantity::Ratio3,
                             Quantity::Valence, Quantity::Amount}) {
        const double scatter = scatterOf(maps, q).sigma;
        const double sigma = predicted(maps, sigmaOf(q));
        QVERIFY2(std::fabs(sigma / scatter - 1) < kScatterTolerance,
                 qPrintable(QStringLiteral("%1: %2 predicted, %3 found")
                                .arg(indexOf(q))
                                .arg(sigma)
                                .arg(scatter)));
    }
    QVERIFY(!maps.fills(Quantity::SigmaRatio4));
    // The same road for a single fit.
    const NonEquivPrecision precision(modelOf(input));
    ResultVector first = {};
    for (int q = 0; q < kQuantities; ++q) {
        first[static_cast<size_t>(q)] = maps.at(quantityAt(q), 0);
    }
    std::vector<double> pixel;
    for (const EnergyPointInput &point : input.points) {
        pixel.push_back(point.map->absorption(0, 0));
    }
    const double rss = precision.residualSum(pixel);
    QVERIFY(close(maps.at(Quantity::Residual, 0), std::sqrt(rss / points), 1e-12));
    const double s = input.precision.noise == NoiseSource::Pixel
                         ? std::sqrt(rss / precision.freedom())
                         : maps.precision()->sigma;
    QVERIFY(close(maps.at(Quantity::SigmaValence, 0), precision.sigmas(first, s).valence, 1e-12));
    // And the residual is what a fit in other arithmetic leaves.
    const RefValues references = modelOf(input);
    QVERIFY(std::fabs(Projected(references, pixel).residualSum(coefficientsOf(first, references)) -
                      rss) < 1e-12);
}

void PrecisionTest::countedPhotonsScatter()
{
    AnalysisInput input = threeReferences(8, true);
    const std::vector<double> y = sampleOf(input, {0.5, 0.3, 0.4});
    std::mt19937_64 random(11);
    for (size_t e = 0; e < y.size(); ++e) {
        const double incident = 4e5 * (1.0 + 0.3 * static_cast<double>(e));
        std::normal_distribution<> beam(incident, std::sqrt(incident)); // Poisson, nearly
        const double passed = incident * std::exp(-y[e]);
        std::normal_distribution<> behind(passed, std::sqrt(passed));
        MapColumns columns;
        for (int i = 0; i < kDraws; ++i) {
            columns.x.push_back(i % kWidth);
            columns.y.push_back(i / kWidth);
            columns.signal.push_back(behind(random));
            columns.reference.push_back(beam(random));
        }
        input.points[e].map = ImageData::fromColumns({}, kWidth, kHeight, std::move(columns));
        QVERIFY(input.points[e].map->hasCounts());
    }
    input.precision = {true, NoiseSource::Counts, 0.0};
    const auto maps = calculateMap(input).maps;
    for (const Quantity q :
         {Quantity::Ratio1, Quantity::Ratio3, Quantity::Valence, Quantity::Amount}) {
        const double scatter = scatterOf(*maps, q).sigma;
        QVERIFY(std::fabs(predicted(*maps, sigmaOf(q)) / scatter - 1) < kScatterTolerance);
    }
    QVERIFY(!inputs::image(2, 1, {1, 2})->hasCounts());
}

void PrecisionTest::undeterminedIsNotANumber()
{
    AnalysisInput input = threeReferences(6, false); // as many points as unknowns
    const std::vector<double> y = sampleOf(input, {0.5, 0.3, 0.4});
    measure(input, y, std::vector<double>(y.size(), 1e-3), 3);
    for (const NoiseSource noise : {NoiseSource::Pooled, NoiseSource::Pixel, NoiseSource::Counts}) {
        input.precision = {true, noise, 0.0};
        const auto maps = calculateMap(input).maps;
        QVERIFY(std::isnan(maps->at(Quantity::SigmaRatio1, 0)));
        QVERIFY(std::isnan(maps->at(Quantity::SigmaAmount, 0)));
    }
    input.precision = {true, NoiseSource::Given, 0.0};
    QVERIFY(std::isnan(calculateMap(input).maps->at(Quantity::SigmaValence, 0)));

    // Next to nothing in the pixel: an amount has its error, fractions have none.
    measure(input, sampleOf(input, {0, 0, 0}), std::vector<double>(y.size(), 1e-9), 3);
    input.precision = {true, NoiseSource::Given, 1e-3};
    const auto maps = calculateMap(input).maps;
    QVERIFY(maps->at(Quantity::SigmaAmount, 0) > 0);
    QVERIFY(std::isnan(maps->at(Quantity::SigmaRatio1, 0)));
    QVERIFY(std::isnan(maps->at(Quantity::SigmaValence, 0)));

    // Equal references: nothing is determined, whatever the noise.
    AnalysisInput equal = threeReferences(8, true);
    equal.references[1].spectrum = equal.references[0].spectrum;
    measure(equal, sampleOf(equal, {0.5, 0.3, 0.4}), std::vector<double>(8, 1e-3), 3);
    for (const NoiseSource noise : {NoiseSource::Given, NoiseSource::Pooled}) {
        equal.precision = {true, noise, 1e-3};
        equal.method.nonEquivBounds = NonEquivBounds::NonNegative;
        const auto none = calculateMap(equal).maps;
        QVERIFY(std::isnan(none->at(Quantity::SigmaAmount, 0)));
        QVERIFY(std::isnan(none->at(Quantity::Residual, 0)));
        QVERIFY(noise == NoiseSource::Given || std::isnan(none->precision()->sigma));
        QVERIFY(!none->isBounded());
    }
}

/// A pixel that some image does not have, or has no light in, stands for nothing: it must neither
/// count as noise nor get a deviation.
void PrecisionTest::unmeasuredPixelsDoNotCount()
{
    constexpr double kSigma = 1e-3;
    AnalysisInput input = threeReferences(8, true);
    const std::vector<double> y = sampleOf(input, {0.5, 0.3, 0.4});
    measure(input, y, std::vector<double>(y.size(), kSigma), 8);
    Column cut = input.points[3].map->absorptionPlane();
    cut.resize(cut.size() - kWidth); // the last row is missing
    input.points[3].map = ImageData::fromAbsorption(kWidth, kHeight, std::move(cut));
    MapColumns columns;
    for (const double absorption : input.points[5].map->absorptionPlane()) {
        columns.x.push_back(0.0);
        columns.y.push_back(0.0);
        columns.signal.push_back(columns.signal.size() == 7 ? 0.0 : 1e6 * std::exp(-absorption));
        columns.reference.push_back(1e6);
    }
    input.points[5].map = ImageData::fromColumns({}, kWidth, kHeight, std::move(columns));
    for (const NoiseSource noise : {NoiseSource::Pooled, NoiseSource::Given}) {
        input.precision = {true, noise, kSigma};
        const auto maps = calculateMap(input).maps;
        QVERIFY(std::fabs(maps->precision()->sigma / kSigma - 1) < 0.02);
        for (const qint64 i : {qint64(7), maps->size() - 1}) {
            QVERIFY(std::isnan(maps->at(Quantity::SigmaAmount, i)));
            QVERIFY(std::isnan(maps->at(Quantity::SigmaValence, i)));
        }
        QVERIFY(maps->at(Quantity::SigmaAmount, 8) > 0);
    }
}

namespace {

/// Two references with an isosbestic line but for V; points: 3 or more, V in the middle.
AnalysisInput fourPointsInput(Method method, int points)
{
    AnalysisInput input = threeReferences(points, false);
    input.references.resize(2);
    input.method.nonEquiv = false;
    input.method.exact = method != Method::LeastSquares;
    return input;
}

} // namespace

void PrecisionTest::fourPointsSigmasAreTheDerivatives_data()
{
    QTest::addColumn<int>("method");
    QTest::addColumn<int>("points");
    QTest::newRow("three points") << static_cast<int>(Method::ThreePoints) << 3;
    QTest::newRow("exact") << static_cast<int>(Method::ExactFourPoints) << 4;
    QTest::newRow("least squares of 5") << static_cast<int>(Method::LeastSquares) << 5;
    QTest::newRow("least squares of 8") << static_cast<int>(Method::LeastSquares) << 8;
}

void PrecisionTest::fourPointsSigmasAreTheDerivatives()
{
    QFETCH(int, method);
    QFETCH(int, points);
    AnalysisInput input = fourPointsInput(static_cast<Method>(method), points);
    const std::vector<double> t = {0.21, 1.1, 0.93, 1.17, 0.98, 1.31, 1.02, 1.2};
    for (size_t e = 0; e < input.points.size(); ++e) {
        input.points[e].map = inputs::image(1, 1, {t[e]});
    }
    constexpr double kSigma = 1e-6; // so small that nothing counts as undetermined
    input.precision = {true, NoiseSource::Given, kSigma};
    const auto maps = calculateMap(input).maps;
    QVERIFY(maps && static_cast<int>(maps->method()) == method);

    double varianceA = 0.0;
    double varianceAmount = 0.0;
    FourPoints solver(input, checkMap(input));
    for (int e = 0; e < points; ++e) {
        constexpr double kStep = 1e-5; // its square, 1e-10, against rounding of about 1e-11 / 1e-5
        const auto solve = [&](double shift) {
            PointValues values;
            for (int k = 0; k < points; ++k) {
                const double value = t[static_cast<size_t>(k)] + (k == e ? shift : 0.0);
                k == 1 ? (values.atV = value) : (values.atPoints.push_back(value), 0.0);
            }
            return solver.solve(values);
        };
        const FourPointsResult up = solve(kStep);
        const FourPointsResult down = solve(-kStep);
        varianceA += std::pow((up.a - down.a) / (2 * kStep), 2);
        varianceAmount += std::pow((up.amount - down.amount) / (2 * kStep), 2);
    }
    constexpr double kTolerance = 1e-5; // least squares solves a matrix with squares of energies
    const auto isNear = [](double found, double expected) {
        return std::fabs(found / expected - 1) < kTolerance;
    };
    QVERIFY(isNear(maps->at(Quantity::SigmaRatio1, 0), kSigma * std::sqrt(varianceA)));
    QCOMPARE(maps->at(Quantity::SigmaRatio2, 0), maps->at(Quantity::SigmaRatio1, 0));
    QVERIFY(isNear(maps->at(Quantity::SigmaAmount, 0), kSigma * std::sqrt(varianceAmount)));
    QVERIFY(isNear(maps->at(Quantity::SigmaValence, 0), // valences 1 and 2
                   kSigma * std::sqrt(varianceA)));
    QCOMPARE(maps->fills(Quantity::Residual), points > 4);

    input.precision.noise = NoiseSource::Pixel; // without freedom: not determined
    const auto own = calculateMap(input).maps;
    QCOMPARE(std::isnan(own->at(Quantity::SigmaAmount, 0)), points <= 4);
}

void PrecisionTest::fourPointsResidualsGiveTheNoise()
{
    constexpr double kSigma = 5e-4;
    AnalysisInput input = fourPointsInput(Method::LeastSquares, 8);
    // A + B wherever a and b differ: a pixel that lies on the model but for noise.
    std::vector<double> y;
    for (size_t e = 0; e < 8; ++e) {
        const double sum = kThreeReferences[0][e] + kThreeReferences[1][e];
        y.push_back(sum / 2.5 + 0.1 + 0.0005 * kEnergies[e]);
    }
    measure(input, y, std::vector<double>(8, kSigma), 5);
    input.precision = {true, NoiseSource::Pooled, 0.0};
    // Nothing but background in every other pixel: there g is near 0, and the residuals, which are
    // over g, would drown the noise of the sample.
    AnalysisInput halfBlank = input;
    for (size_t e = 0; e < 8; ++e) {
        std::mt19937_64 random(40 + e);
        std::normal_distribution<> noise(0.0, kSigma);
        Column pixels = input.points[e].map->absorptionPlane();
        for (size_t i = 0; i < pixels.size(); i += 2) {
            pixels[i] = 0.1 + 0.0005 * kEnergies[e] + noise(random);
        }
        halfBlank.points[e].map = ImageData::fromAbsorption(kWidth, kHeight, std::move(pixels));
    }
    const double s = calculateMap(halfBlank).maps->precision()->sigma;
    QVERIFY2(std::fabs(s / kSigma - 1) < kScatterTolerance, qPrintable(QString::number(s)));

    const auto maps = calculateMap(input).maps;
    QVERIFY(std::fabs(maps->precision()->sigma / kSigma - 1) < 0.02);
    for (const Quantity q : {Quantity::Ratio1, Quantity::Valence, Quantity::Amount}) {
        QVERIFY(std::fabs(predicted(*maps, sigmaOf(q)) / scatterOf(*maps, q).sigma - 1) <
                kScatterTolerance);
    }
}

void PrecisionTest::targetSigmas()
{
    // The target's fit is that of a pixel with the same values: so are its deviations.
    AnalysisInput input = threeReferences(8, true);
    std::mt19937_64 random(2);
    std::normal_distribution<> noise(0.0, 1e-3);
    QVector<QPair<double, double>> between;
    std::vector<double> y;
    for (size_t e = 0; e < 8; ++e) { // near the models of both methods
        y.push_back((kThreeReferences[0][e] + kThreeReferences[1][e]) / 2.5 + 0.1 + noise(random));
        between.append({kEnergies[e], y[e]});
        input.points[e].map = inputs::image(1, 1, {y[e]});
        input.points[e].targetMu = y[e];
    }
    input.target = flatSpectrum(1.0, between);
    for (const bool nonEquiv : {true, false}) {
        input.method.nonEquiv = nonEquiv;
        input.method.exact = false;
        for (const NoiseSource source : {NoiseSource::Pixel, NoiseSource::Given}) {
            input.precision = {true, source, 2e-3};
            const auto maps = calculateMap(input).maps;
            const TargetPrecision target = calculateTarget(input).precision;
            QCOMPARE(target.freedom, nonEquiv ? 3 : 4);
            QVERIFY(target.condition > 1);
            QVERIFY(close(target.sigmas.ratios[0], maps->at(Quantity::SigmaRatio1, 0), 1e-10));
            QVERIFY(close(target.sigmas.valence, maps->at(Quantity::SigmaValence, 0), 1e-10));
            QVERIFY(close(target.sigmas.amount, maps->at(Quantity::SigmaAmount, 0), 1e-10));
        }
    }
}

void PrecisionTest::boundedFitIsTheExactFraction()
{
    // At four equal steps (1,-1,-1,1) and (1,-3,3,-1) are orthogonal to 1 and E, and to each other.
    // R1 = the first, R2 = their sum = (2,-4,2,0). For y = -1 R1 + 2 R2 + background, x1 is held:
    // H11 = 4, H12 = 4, H22 = 24, so x2 = 2 - 4/24 = 11/6 and the residual sum of squares grows by
    // H11 - H12^2 / H22 = 10/3.
    AnalysisInput input =
        makeInput({110, 130, 150, 170}, {{1, -1, -1, 1}, {2, -4, 2, 0}}, {1.0, 1.0});
    input.method.linearBackground = true;
    const RefValues references = modelOf(input);
    std::vector<double> y;
    for (size_t e = 0; e < 4; ++e) {
        y.push_back(-references.values[0][e] + 2 * references.values[1][e] + 0.5 +
                    0.01 * references.energiesEv[e]);
    }
    unsigned held = 0;
    double residual = 0.0;
    const ResultVector result = fitNonNegative(references, y, held, residual);
    const std::vector<double> x = coefficientsOf(result, references);
    QCOMPARE(held, 1U);
    QVERIFY(std::fabs(x[0]) == 0.0);
    QVERIFY(close(x[1], 11.0 / 6, 1e-9)); // the energies' normal matrix costs the digits
    QVERIFY(close(residual, std::sqrt(10.0 / 3 / 4), 1e-9));
    QVERIFY(result[0] == 0.0 && result[1] == 1.0);
    // Orthogonal parts: the background is as it was, and R1 alone is held at its bound.
    QVERIFY(close(result[static_cast<size_t>(indexOf(Quantity::C1))], 0.01, 1e-9));

    // -1/4 - R1/2, whose products with R1 and R2 are both -2: both are held, fractions are 0 / 0.
    y = {-0.75, 0.25, 0.25, -0.75};
    const ResultVector none = fitNonNegative(references, y, held, residual);
    QCOMPARE(held, 3U);
    QVERIFY(std::isnan(none[0]));
}

void PrecisionTest::boundedFitIsTheBest_data()
{
    QTest::addColumn<bool>("linear");
    QTest::newRow("linear") << true;
    QTest::newRow("Victoreen") << false;
}

void PrecisionTest::boundedFitIsTheBest()
{
    QFETCH(bool, linear);
    const AnalysisInput input = threeReferences(8, linear);
    const RefValues references = modelOf(input);
    std::mt19937_64 random(linear ? 21 : 22);
    std::uniform_real_distribution<> coefficient(-0.6, 0.8);
    std::normal_distribution<> noise(0.0, 0.05);
    std::array<int, 8> seen = {};
    for (int draw = 0; draw < 100; ++draw) {
        std::vector<double> y =
            sampleOf(input, {coefficient(random), coefficient(random), coefficient(random)});
        for (double &value : y) {
            value += noise(random);
        }
        unsigned held = 0;
        double residual = 0.0;
        const ResultVector result = fitNonNegative(references, y, held, residual);
        ++seen[held];
        const Projected model(references, y);
        const double rss = residual * residual * 8;
        if (held != 7U) { // else the amounts are 0 times not-a-number
            const std::vector<double> x = coefficientsOf(result, references);
            for (size_t i = 0; i < 3; ++i) {
                QVERIFY(x[i] >= 0.0);
                QCOMPARE(x[i] == 0.0, (held >> i & 1U) != 0);
            }
            QVERIFY(std::fabs(model.residualSum(x) - rss) < 1e-9);
        }
        for (double a = 0; a < 1.6; a += 0.1) {
            for (double b = 0; b < 1.6; b += 0.1) {
                for (double c = 0; c < 1.6; c += 0.1) {
                    QVERIFY(model.residualSum({a, b, c}) >= rss - 1e-10);
                }
            }
        }
    }
    for (const int count : seen) {
        QVERIFY(count > 0); // every set of held references was met
    }
}

void PrecisionTest::boundedPixelsScatter()
{
    constexpr double kSigma = 1e-3;
    AnalysisInput input = threeReferences(8, true);
    // Far below 0: every pixel holds the second reference.
    const std::vector<double> y = sampleOf(input, {0.6, -0.3, 0.5});
    measure(input, y, std::vector<double>(8, kSigma), 9);
    input.method.nonEquivBounds = NonEquivBounds::NonNegative;
    input.precision = {true, NoiseSource::Given, kSigma};
    const auto maps = calculateMap(input).maps;
    QCOMPARE(maps->pixelsOnBounds(), static_cast<qint64>(kDraws));
    QCOMPARE(scatterOf(*maps, Quantity::Ratio2).sigma, 0.0);
    QCOMPARE(predicted(*maps, Quantity::SigmaRatio2), 0.0);
    for (const Quantity q : {Quantity::Ratio1, Quantity::Valence, Quantity::Amount}) {
        QVERIFY(std::fabs(predicted(*maps, sigmaOf(q)) / scatterOf(*maps, q).sigma - 1) <
                kScatterTolerance);
    }
}

namespace {

/// A spectrum with 25 points between its lines, and three references for it.
AnalysisInput lcfInput(const std::vector<double> &x, std::mt19937_64 *random, double sigma)
{
    constexpr int kPoints = 25;
    AnalysisInput input;
    std::vector<double> energies;
    for (int e = 0; e < kPoints; ++e) {
        energies.push_back(104.0 + 3.7 * e);
    }
    Rows values(3, std::vector<double>(kPoints));
    for (size_t e = 0; e < kPoints; ++e) {
        for (size_t r = 0; r < 3; ++r) {
            const double d = (energies[e] - 115.0 - 12.0 * static_cast<double>(r)) / 8.0;
            values[r][e] = 1.0 / (1.0 + std::exp(-d)) + 0.8 * std::exp(-d * d);
        }
    }
    input = makeInput(energies, values, {1.0, 1.0, 1.0});
    input.points.clear();
    input.points.push_back(inputs::point(0, 103.0));
    input.points.push_back(inputs::point(1, 196.0));
    input.points[0].lcf = input.points[1].lcf = true;
    QVector<QPair<double, double>> between;
    std::normal_distribution<> noise(0.0, 1.0);
    for (size_t e = 0; e < kPoints; ++e) {
        double value = 0.02;
        for (size_t r = 0; r < 3; ++r) {
            value += x[r] * values[r][e];
        }
        between.append({energies[e], value + (random != nullptr ? sigma * noise(*random) : 0.0)});
    }
    input.target = flatSpectrum(1.0, between); // noise lies between the lines: these stay
    return input;
}

} // namespace

void PrecisionTest::lcfSigmasAreTheScatter_data()
{
    QTest::addColumn<int>("bounds");
    QTest::newRow("free") << static_cast<int>(LcfBounds::Free);
    QTest::newRow("sum to one") << static_cast<int>(LcfBounds::SumToOne);
    QTest::newRow("one held") << static_cast<int>(LcfBounds::NonNegativeSumToOne);
}

void PrecisionTest::lcfSigmasAreTheScatter()
{
    QFETCH(int, bounds);
    constexpr double kSigma = 2e-3;
    std::mt19937_64 random(4);
    const bool sumToOne = bounds != static_cast<int>(LcfBounds::Free);
    const bool oneHeld = bounds == static_cast<int>(LcfBounds::NonNegativeSumToOne);
    const std::vector<double> x = oneHeld ? std::vector<double>{0.9, 0.4, -0.3} // far below
                                          : std::vector<double>{0.5, 0.3, 0.2};
    AnalysisInput exact = lcfInput(x, nullptr, 0.0);
    exact.method.lcfBounds = static_cast<LcfBounds>(bounds);
    const LcfResult truth = *calculateLcf(exact).result;
    std::array<double, 3> squares = {};
    std::array<double, 3> predictions = {};
    double givenPrediction = 0.0; // of the first ratio
    double valenceSquare = 0.0;
    double valencePrediction = 0.0;
    double variance = 0.0;
    double chiSquare = 0.0;
    AnalysisInput input = exact;
    const QVector<MutPoint> clean = input.target.points();
    std::normal_distribution<> noise(0.0, kSigma);
    for (int draw = 0; draw < kDraws; ++draw) {
        QVector<MutPoint> points = clean;
        for (MutPoint &p : points) {
            if (p.energyEv > 100 && p.energyEv < 200) {
                p.mut += noise(random);
            }
        }
        input.target.setPoints(points);
        input.target = inputs::withLines(input.target);
        input.precision.noise = draw % 2 == 0 ? NoiseSource::Pixel : NoiseSource::Given;
        input.precision.givenSigma = kSigma;
        const LcfResult result = *calculateLcf(input).result;
        for (size_t i = 0; i < 3; ++i) {
            squares[i] += std::pow(result.ratios[i] - truth.ratios[i], 2) / kDraws;
            predictions[i] += std::pow(result.precision.sigmaRatios[i], 2) / kDraws;
        }
        givenPrediction +=
            draw % 2 == 0 ? 0.0 : std::pow(result.precision.sigmaRatios[0], 2) * 2 / kDraws;
        valenceSquare += std::pow(result.valence - truth.valence, 2) / kDraws;
        valencePrediction += std::pow(result.precision.sigmaValence, 2) / kDraws;
        variance += std::pow(result.precision.sigma, 2) / kDraws;
        QCOMPARE(result.held, oneHeld ? 4U : 0U);
        chiSquare += draw % 2 == 0 ? 0.0 : result.precision.chiSquare / (kDraws / 2);
        QVERIFY(draw % 2 != 0 || std::isnan(result.precision.chiSquare));
    }
    const auto agree = [](double predictedSquare, double foundSquare) {
        return std::fabs(std::sqrt(predictedSquare / foundSquare) - 1) < kScatterTolerance;
    };
    // A fit that must hold a reference misses: its residuals are no measure of the noise.
    if (!oneHeld) {
        for (size_t i = 0; i < 3; ++i) {
            QVERIFY(agree(predictions[i], squares[i]));
        }
        QVERIFY(agree(valencePrediction, valenceSquare));
        QVERIFY(agree(variance, kSigma * kSigma)); // the jump is 1
        QVERIFY(close(chiSquare, 1.0, 0.02));
    } else {
        QVERIFY(agree(givenPrediction, squares[0]));
        QCOMPARE(predictions[2], 0.0);
        QCOMPARE(squares[2], 0.0);
    }
    QCOMPARE(truth.precision.freedom,
             truth.precision.points - 4 + (sumToOne ? 1 : 0) + (oneHeld ? 1 : 0));
}

void PrecisionTest::boundedLcfIsTheBest_data()
{
    QTest::addColumn<int>("bounds");
    QTest::newRow("non-negative") << static_cast<int>(LcfBounds::NonNegative);
    QTest::newRow("sum to one") << static_cast<int>(LcfBounds::SumToOne);
    QTest::newRow("both") << static_cast<int>(LcfBounds::NonNegativeSumToOne);
}

void PrecisionTest::boundedLcfIsTheBest()
{
    QFETCH(int, bounds);
    const bool sumToOne = bounds != static_cast<int>(LcfBounds::NonNegative);
    const bool nonNegative = bounds != static_cast<int>(LcfBounds::SumToOne);
    std::mt19937_64 random(31);
    for (const std::vector<double> &x :
         Rows{{0.5, 0.3, 0.2}, {0.9, -0.4, 0.3}, {-0.2, 0.9, -0.1}, {0.4, 0.9, -0.6}}) {
        AnalysisInput input = lcfInput(x, &random, 5e-3);
        input.method.lcfBounds = static_cast<LcfBounds>(bounds);
        const LcfResult result = *calculateLcf(input).result;
        double valence = 0.0; // by the ratios; the result's goes by the coefficients
        for (size_t i = 0; i < 3; ++i) {
            QVERIFY(!nonNegative || result.ratios[i] >= 0.0);
            QCOMPARE((result.held >> i & 1U) != 0, nonNegative && result.ratios[i] == 0.0);
            valence += result.ratios[i] * input.references[i].valence;
        }
        QCOMPARE(std::fabs(valence - result.valence) < 1e-9, sumToOne);

        // What the fitted curve leaves is the least of all that the bounds allow: coefficients on
        // a fine grid, each with its best base.
        const auto references = validReferences(input.references);
        std::vector<double> y;
        Rows columns(3);
        double rss = 0.0;
        for (const MutPoint &p : result.curve.points()) {
            y.push_back(input.target.valueAtE(AMutE::By2Victoreens, p.energyEv));
            rss += std::pow(y.back() - p.mut, 2);
            for (size_t i = 0; i < 3; ++i) {
                columns[i].push_back(
                    references[i]->spectrum.valueAtE(AMutE::By2Victoreens, p.energyEv));
            }
        }
        QVERIFY(
            close(result.precision.rFactor * std::inner_product(y.begin(), y.end(), y.begin(), 0.0),
                  rss, 1e-9));
        double leastOfGrid = std::numeric_limits<double>::infinity();
        const double low = nonNegative ? 0.0 : -1.0;
        for (double a = low; a <= 2.0; a += 0.05) {
            for (double b = low; b <= 2.0; b += 0.05) {
                for (double c = sumToOne ? 1 - a - b : low; c <= 2.0; c += sumToOne ? 9 : 0.05) {
                    if (nonNegative && c < 0) {
                        continue;
                    }
                    double mean = 0.0;
                    double square = 0.0;
                    for (size_t e = 0; e < y.size(); ++e) {
                        const double r =
                            y[e] - a * columns[0][e] - b * columns[1][e] - c * columns[2][e];
                        mean += r / static_cast<double>(y.size());
                        square += r * r;
                    }
                    const double left = square - mean * mean * static_cast<double>(y.size());
                    QVERIFY(left >= rss - 1e-9);
                    leastOfGrid = std::min(leastOfGrid, left);
                }
            }
        }
        // Half a step of the grid away at most, in three coefficients of curves of about 1.
        QVERIFY(leastOfGrid - rss < static_cast<double>(y.size()) * 0.075 * 0.075);
    }
}

/// What no fit can be made of gives not-a-numbers, with bounds as without.
void PrecisionTest::hopelessTargetsGiveNoNumbers()
{
    const AnalysisInput sound = lcfInput({0.5, 0.3, 0.2}, nullptr, 0.0);
    QVector<MutPoint> broken = sound.target.points();
    broken[broken.size() / 2].mut = qQNaN();
    QVector<MutPoint> flat = sound.target.points();
    for (MutPoint &p : flat) {
        p.mut = 0.25;
    }
    const QVector<MutPoint> noPreEdge = sound.target.points().mid(4);
    for (const auto &points : {broken, flat, noPreEdge}) {
        for (const LcfBounds bounds : {LcfBounds::Free, LcfBounds::NonNegative, LcfBounds::SumToOne,
                                       LcfBounds::NonNegativeSumToOne}) {
            AnalysisInput input = sound;
            AMutE target;
            target.setPoints(points);
            input.target = inputs::withLines(target);
            input.method.lcfBounds = bounds;
            const LcfOutcome outcome = calculateLcf(input);
            QVERIFY(outcome.result && outcome.result->ratios.size() == 3);
            QVERIFY(!std::isfinite(outcome.result->ratios[0]) ||
                    std::isfinite(outcome.result->precision.sigmaRatios[0]));
        }
    }
}

QTEST_GUILESS_MAIN(PrecisionTest)
#include "tst_precision.moc"
