// Standard deviations against the scatter of simulated measurements (20 000 draws, fixed seed) and
// against finite differences; bounded fits against exact fractions and the conditions of a least
// sum.

#include "analysis/FourPoints.h"
#include "analysis/NonEquivPixels.h"
#include "analysis/NonEquivPrecision.h"
#include "analysis/PixelNoise.h"
#include "analysis/SmallQr.h"
#include "tests/TestTable.h"
#include "tests/analysis/Inputs.h"

#include <QtTest>

#include <numeric>
#include <random>

using namespace orvel;
using inputs::close;
using inputs::flatSpectrum;

Q_DECLARE_METATYPE(Method)
Q_DECLARE_METATYPE(NoiseSource)
Q_DECLARE_METATYPE(LcfBounds)

namespace {

constexpr int kWidth = 200;
constexpr int kHeight = 100;
constexpr int kDraws = kWidth * kHeight;
/// The scatter of 20 000 draws is itself known to 0.5 %.
constexpr double kScatterTolerance = 0.05;

const std::vector<double> kEnergies = {105, 118, 126, 139, 147, 160, 178, 195};
const Rows kThreeReferences = {{0.1, 1.6, 0.9, 1.0, 1.1, 0.9, 1.05, 1.0},
                               {0.05, 0.5, 1.7, 0.8, 0.9, 1.2, 0.95, 1.0},
                               {0.0, 0.2, 0.6, 1.9, 0.8, 1.0, 1.1, 0.9}};
const std::vector<double> kJumps = {1.0, 0.8, 1.2};

/// References of valences 1, 2 and 5; as many as there are jumps.
AnalysisInput makeInput(const std::vector<double> &energies, const Rows &values,
                        const std::vector<double> &jumps)
{
    AnalysisInput input = inputs::withReferences(energies, values, jumps, {1, 2, 5});
    input.method.nonEquiv = true;
    input.points[1].vPoint = true; // which the checks want of targets
    return input;
}

AnalysisInput threeReferences(size_t points, bool linear)
{
    AnalysisInput input = makeInput(kEnergies, kThreeReferences, kJumps);
    input.points.resize(points);
    input.method.linearBackground = linear;
    return input;
}

/// The model, be there images and a target or not.
RefValues modelOf(const AnalysisInput &input)
{
    return gatherRefValues(input,
                           inputs::planOf(input.method.linearBackground ? Method::NonEquivLinear
                                                                        : Method::NonEquivVictoreen,
                                          input.points.size()));
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

/// Gives every point an image of draws around y: absorptions of noise sigma, or without it counted
/// photons of a beam that grows from energy to energy.
void measure(AnalysisInput &input, const std::vector<double> &y, double sigma, unsigned seed)
{
    std::mt19937_64 random(seed);
    std::normal_distribution<> normal;
    for (size_t e = 0; e < input.points.size(); ++e) {
        const double incident = 4e5 * (1.0 + 0.3 * static_cast<double>(e));
        const double passed = incident * std::exp(-y[e]);
        std::vector<double> pixels(kDraws);
        MapColumns columns;
        for (int i = 0; i < kDraws; ++i) {
            const int row = i / kWidth;
            pixels[static_cast<size_t>(i)] = y[e] + sigma * normal(random);
            if (sigma == 0.0) { // Poisson, nearly
                columns.x.push_back(i % kWidth);
                columns.y.push_back(row);
                columns.signal.push_back(passed + std::sqrt(passed) * normal(random));
                columns.reference.push_back(incident + std::sqrt(incident) * normal(random));
            }
        }
        input.points[e].map = sigma > 0.0
                                  ? inputs::image(kWidth, kHeight, pixels)
                                  : ImageData::fromColumns({}, kWidth, kHeight, std::move(columns));
    }
}

/// Standard deviation of a plane.
double scatterOf(const ResultMaps &maps, Quantity quantity)
{
    const auto n = static_cast<double>(maps.size());
    double mean = 0.0;
    for (qint64 i = 0; i < maps.size(); ++i) {
        mean += maps.at(quantity, i) / n;
    }
    double square = 0.0;
    for (qint64 i = 0; i < maps.size(); ++i) {
        square += std::pow(maps.at(quantity, i) - mean, 2) / (n - 1);
    }
    return std::sqrt(square);
}

/// Quantities whose scatter is not the root of the mean variance of the plane beside it.
QString unlikeScatter(const ResultMaps &maps)
{
    constexpr std::pair<Quantity, Quantity> kPlanes[] = {
        {Quantity::Ratio1, Quantity::SigmaRatio1},
        {Quantity::Ratio2, Quantity::SigmaRatio2},
        {Quantity::Ratio3, Quantity::SigmaRatio3},
        {Quantity::Valence, Quantity::SigmaValence},
        {Quantity::Amount, Quantity::SigmaAmount}};
    QString unlike;
    for (const auto &[quantity, sigma] : kPlanes) {
        if (!maps.fills(sigma)) {
            continue;
        }
        const double scatter = scatterOf(maps, quantity);
        double variance = 0.0;
        for (qint64 i = 0; i < maps.size(); ++i) {
            variance += std::pow(maps.at(sigma, i), 2) / static_cast<double>(maps.size());
        }
        const double predicted = std::sqrt(variance);
        if (!(std::fabs(predicted - scatter) <= kScatterTolerance * scatter)) {
            unlike += QStringLiteral("%1: %2 predicted, %3 found; ")
                          .arg(indexOf(quantity))
                          .arg(predicted)
                          .arg(scatter);
        }
    }
    return unlike;
}

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
    void undeterminedIsNotANumber();
    void unmeasuredPixelsDoNotCount();
    void fourPointsSigmasAreTheDerivatives_data();
    void fourPointsSigmasAreTheDerivatives();
    void fourPointsResidualsGiveTheNoise();
    void targetSigmas();
    void boundedFitIsTheExactFraction();
    void boundedFitIsTheBest();
    void lcfSigmasAreTheScatter_data();
    void lcfSigmasAreTheScatter();
    void boundedLcfIsTheBest();
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
    const TestTable<bool, int, NoiseSource, bool> row("linear", "points", "noise", "bounded");
    row("Victoreen, given, no freedom", false, 6, NoiseSource::Given, false);
    row("linear, pooled", true, 7, NoiseSource::Pooled, false);
    row("linear, own", true, 8, NoiseSource::Pixel, false);
    row("linear, counts", true, 8, NoiseSource::Counts, false);
    row("linear, bounded", true, 8, NoiseSource::Given, true);
}

void PrecisionTest::mapSigmasAreTheScatter()
{
    QFETCH(bool, linear);
    QFETCH(int, points);
    QFETCH(NoiseSource, noise);
    QFETCH(bool, bounded);
    constexpr double kSigma = 1e-3; // small against the amount: first order holds
    AnalysisInput input = threeReferences(static_cast<size_t>(points), linear);
    // Bounded, the second is so far below 0 that every pixel holds it.
    const std::vector<double> y = sampleOf(input, {0.5, bounded ? -0.3 : 0.3, 0.4});
    measure(input, y, noise == NoiseSource::Counts ? 0.0 : kSigma, 7);
    input.method.nonEquivBounds = bounded ? NonEquivBounds::NonNegative : NonEquivBounds::Free;
    input.precision = {true, noise, kSigma};

    const MapOutcome outcome = calculateMap(input);
    QVERIFY(outcome.maps && outcome.maps->precision());
    const ResultMaps &maps = *outcome.maps;
    QCOMPARE(maps.precision()->freedom, points - (linear ? 5 : 6));
    if (noise == NoiseSource::Given || noise == NoiseSource::Pooled) {
        QVERIFY(std::fabs(maps.precision()->sigma / kSigma - 1) < 0.02);
    }
    QCOMPARE(unlikeScatter(maps), QString());
    QCOMPARE(scatterOf(maps, Quantity::Ratio2) == 0.0, bounded);
    QVERIFY(!maps.fills(Quantity::SigmaRatio4));
    QCOMPARE(maps.isBounded() ? maps.pixelsOnBounds() : 0, qint64(bounded ? kDraws : 0));
    QCOMPARE(input.points[0].map->hasCounts(), noise == NoiseSource::Counts);
}

void PrecisionTest::undeterminedIsNotANumber()
{
    AnalysisInput input = threeReferences(6, false); // as many points as unknowns
    const auto isNan = [&input](NoiseSource noise, double given, Quantity quantity) {
        input.precision = {true, noise, given};
        return std::isnan(calculateMap(input).maps->at(quantity, 0));
    };
    measure(input, sampleOf(input, {0.5, 0.3, 0.4}), 1e-3, 3);
    for (const NoiseSource noise : {NoiseSource::Pooled, NoiseSource::Pixel, NoiseSource::Counts}) {
        QVERIFY(isNan(noise, 0.0, Quantity::SigmaRatio1) &&
                isNan(noise, 0.0, Quantity::SigmaAmount));
    }
    QVERIFY(isNan(NoiseSource::Given, 0.0, Quantity::SigmaValence));

    // Next to nothing in the pixel: an amount has its error, fractions have none.
    measure(input, sampleOf(input, {0, 0, 0}), 1e-9, 3);
    QVERIFY(!isNan(NoiseSource::Given, 1e-3, Quantity::SigmaAmount));
    QVERIFY(isNan(NoiseSource::Given, 1e-3, Quantity::SigmaRatio1));
    QVERIFY(isNan(NoiseSource::Given, 1e-3, Quantity::SigmaValence));

    // Equal references: nothing is determined, whatever the noise.
    input = threeReferences(8, true);
    input.references[1].spectrum = input.references[0].spectrum;
    input.method.nonEquivBounds = NonEquivBounds::NonNegative;
    measure(input, sampleOf(input, {0.5, 0.3, 0.4}), 1e-3, 3);
    for (const NoiseSource noise : {NoiseSource::Given, NoiseSource::Pooled}) {
        QVERIFY(isNan(noise, 1e-3, Quantity::SigmaAmount) &&
                isNan(noise, 1e-3, Quantity::Residual));
        const auto maps = calculateMap(input).maps;
        QVERIFY(!maps->isBounded());
        QCOMPARE(std::isnan(maps->precision()->sigma), noise == NoiseSource::Pooled);
    }
}

/// A pixel that some image does not have, or has no light in, stands for nothing: it must neither
/// count as noise nor get a deviation.
void PrecisionTest::unmeasuredPixelsDoNotCount()
{
    constexpr double kSigma = 1e-3;
    AnalysisInput input = threeReferences(8, true);
    const std::vector<double> y = sampleOf(input, {0.5, 0.3, 0.4});
    measure(input, y, kSigma, 8);
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
        for (const qint64 i : {qint64(7), qint64(8), maps->size() - 1}) {
            QCOMPARE(std::isnan(maps->at(Quantity::SigmaAmount, i)), i != 8);
            QCOMPARE(std::isnan(maps->at(Quantity::SigmaValence, i)), i != 8);
        }
    }
}

namespace {

/// Two references with an isosbestic line but for V; points: 3 or more, V in the middle.
AnalysisInput fourPointsInput(Method method, size_t points)
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
    const TestTable<Method, int> row("method", "points");
    row("three points", Method::ThreePoints, 3);
    row("exact", Method::ExactFourPoints, 4);
    row("least squares of 8", Method::LeastSquares, 8);
}

void PrecisionTest::fourPointsSigmasAreTheDerivatives()
{
    QFETCH(Method, method);
    QFETCH(int, points);
    AnalysisInput input = fourPointsInput(method, static_cast<size_t>(points));
    const std::vector<double> t = {0.21, 1.1, 0.93, 1.17, 0.98, 1.31, 1.02, 1.2};
    for (size_t e = 0; e < input.points.size(); ++e) {
        input.points[e].map = inputs::image(1, 1, {t[e]});
    }
    constexpr double kSigma = 1e-6; // so small that nothing counts as undetermined
    input.precision = {true, NoiseSource::Given, kSigma};
    const auto maps = calculateMap(input).maps;
    QVERIFY(maps && maps->method() == method);

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
    measure(input, y, kSigma, 5);
    input.precision = {true, NoiseSource::Pooled, 0.0};
    const auto maps = calculateMap(input).maps;
    QVERIFY(std::fabs(maps->precision()->sigma / kSigma - 1) < 0.02);
    QCOMPARE(unlikeScatter(*maps), QString());
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
            const TargetOutcome outcome = calculateTarget(input);
            QCOMPARE(outcome.valence, maps->at(Quantity::Valence, 0));
            const TargetPrecision &target = outcome.precision;
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

/// The sum of squares is convex: it is least where no step that the bounds allow leads down, along
/// the columns of the background and of free references either way, of held ones upwards.
void PrecisionTest::boundedFitIsTheBest()
{
    const AnalysisInput input = threeReferences(8, true);
    const RefValues references = modelOf(input);
    const Rows basis = NonEquivFit(references).basis();
    std::mt19937_64 random(21);
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
        std::vector<double> x(3); // all held: amounts are 0 times not-a-number
        if (held != 7U) {
            x = coefficientsOf(result, references);
        }
        for (size_t i = 0; i < 3; ++i) {
            QVERIFY(x[i] >= 0.0);
            QCOMPARE(x[i] == 0.0, (held >> i & 1U) != 0);
        }
        const auto background = result.begin() + indexOf(Quantity::Mut0);
        x.insert(x.end(), background, background + 3);
        double squares = 0.0;
        std::vector<double> slopes(basis[0].size());
        for (size_t e = 0; e < 8; ++e) {
            const double left =
                y[e] - std::inner_product(basis[e].begin(), basis[e].end(), x.begin(), 0.0);
            squares += left * left;
            for (size_t k = 0; k < slopes.size(); ++k) {
                slopes[k] += left * basis[e][k] / std::fmax(1.0, std::fabs(basis[0][k]));
            }
        }
        QVERIFY(close(squares, residual * residual * 8, 1e-9));
        for (size_t k = 0; k < slopes.size(); ++k) {
            const bool isHeld = k < 3 && x[k] == 0.0;
            QVERIFY(isHeld ? slopes[k] <= 1e-7 : std::fabs(slopes[k]) < 1e-7);
        }
    }
    QVERIFY(*std::min_element(seen.begin(), seen.end()) > 0); // every set was held
}

namespace {

/// A spectrum with 25 points between its lines, and three references for it.
AnalysisInput lcfInput(const std::vector<double> &x, std::mt19937_64 *random, double sigma)
{
    constexpr size_t kPoints = 25;
    std::vector<double> energies;
    Rows values(3);
    QVector<QPair<double, double>> between;
    std::normal_distribution<> noise(0.0, 1.0);
    for (size_t e = 0; e < kPoints; ++e) {
        energies.push_back(104.0 + 3.7 * static_cast<double>(e));
        double value = 0.02;
        for (size_t r = 0; r < 3; ++r) {
            const double d = (energies[e] - 115.0 - 12.0 * static_cast<double>(r)) / 8.0;
            values[r].push_back(1.0 / (1.0 + std::exp(-d)) + 0.8 * std::exp(-d * d));
            value += x[r] * values[r][e];
        }
        between.append({energies[e], value + (random != nullptr ? sigma * noise(*random) : 0.0)});
    }
    AnalysisInput input = makeInput(energies, values, {1.0, 1.0, 1.0});
    input.points = {inputs::point(0, 103.0), inputs::point(1, 196.0)};
    input.points[0].lcf = input.points[1].lcf = true;
    input.target = flatSpectrum(1.0, between); // noise lies between the lines: these stay
    return input;
}

} // namespace

void PrecisionTest::lcfSigmasAreTheScatter_data()
{
    const TestTable<LcfBounds, NoiseSource> row("bounds", "noise");
    row("free", LcfBounds::Free, NoiseSource::Pixel);
    row("free, given", LcfBounds::Free, NoiseSource::Given);
    row("sum to one", LcfBounds::SumToOne, NoiseSource::Pixel);
    // Which misses the curve: its residuals are no measure of the noise.
    row("one held", LcfBounds::NonNegativeSumToOne, NoiseSource::Given);
}

void PrecisionTest::lcfSigmasAreTheScatter()
{
    QFETCH(LcfBounds, bounds);
    QFETCH(NoiseSource, noise);
    constexpr double kSigma = 2e-3;
    const bool oneHeld = bounds == LcfBounds::NonNegativeSumToOne;
    std::mt19937_64 random(4);
    std::normal_distribution<> normal(0.0, kSigma);
    AnalysisInput input = lcfInput(oneHeld ? std::vector<double>{0.9, 0.4, -0.3} // far below
                                           : std::vector<double>{0.5, 0.3, 0.2},
                                   nullptr, 0.0);
    input.method.lcfBounds = bounds;
    input.precision.noise = noise;
    input.precision.givenSigma = kSigma;
    const LcfResult truth = *calculateLcf(input).result;
    QCOMPARE(truth.precision.freedom,
             truth.precision.points - 4 + (bounds != LcfBounds::Free ? 1 : 0) + (oneHeld ? 1 : 0));
    const QVector<MutPoint> clean = input.target.points();
    std::array<double, 5> found = {}; // mean squares: of three ratios, the valence and the noise
    std::array<double, 5> predicted = {};
    double chiSquare = 0.0;
    for (int draw = 0; draw < kDraws; ++draw) {
        QVector<MutPoint> points = clean;
        for (MutPoint &p : points) {
            p.mut += p.energyEv > 100 && p.energyEv < 200 ? normal(random) : 0.0;
        }
        input.target.setPoints(points);
        input.target = inputs::withLines(input.target);
        const LcfResult result = *calculateLcf(input).result;
        QCOMPARE(result.held, oneHeld ? 4U : 0U);
        const LcfPrecision &precision = result.precision;
        for (size_t i = 0; i < 3; ++i) {
            found[i] += std::pow(result.ratios[i] - truth.ratios[i], 2) / kDraws;
            predicted[i] += std::pow(precision.sigmaRatios[i], 2) / kDraws;
        }
        found[3] += std::pow(result.valence - truth.valence, 2) / kDraws;
        predicted[3] += std::pow(precision.sigmaValence, 2) / kDraws;
        found[4] += kSigma * kSigma / kDraws; // the jump is 1
        predicted[4] += std::pow(precision.sigma, 2) / kDraws;
        chiSquare += precision.chiSquare / kDraws;
    }
    for (size_t i = 0; i < found.size(); ++i) {
        QVERIFY2(std::fabs(std::sqrt(predicted[i]) - std::sqrt(found[i])) <=
                     kScatterTolerance * std::sqrt(found[i]),
                 qPrintable(QString::number(i)));
    }
    QCOMPARE(found[2] == 0.0, oneHeld);
    QCOMPARE(std::isnan(chiSquare), noise == NoiseSource::Pixel);
    QVERIFY(noise == NoiseSource::Pixel || oneHeld || close(chiSquare, 1.0, 0.02));
}

/// As above; where the sum is fixed, slopes along the free references are equal instead of 0.
void PrecisionTest::boundedLcfIsTheBest()
{
    std::mt19937_64 random(31);
    const Rows mixtures = {{0.5, 0.3, 0.2}, {0.9, -0.4, 0.3}, {-0.2, 0.9, -0.1}, {0.4, 0.9, -0.6}};
    for (int n = 0; n < 16; ++n) {
        const bool sumToOne = n % 2 != 0;
        const bool nonNegative = n / 2 % 2 != 0;
        AnalysisInput input = lcfInput(mixtures[size_t(n) / 4], &random, 5e-3);
        input.method.lcfBounds =
            sumToOne ? (nonNegative ? LcfBounds::NonNegativeSumToOne : LcfBounds::SumToOne)
                     : (nonNegative ? LcfBounds::NonNegative : LcfBounds::Free);
        const LcfResult result = *calculateLcf(input).result;
        double valence = 0.0; // by the ratios; the result's goes by the coefficients
        for (size_t i = 0; i < 3; ++i) {
            QVERIFY(!nonNegative || result.ratios[i] >= 0.0);
            QCOMPARE((result.held >> i & 1U) != 0, nonNegative && result.ratios[i] == 0.0);
            valence += result.ratios[i] * input.references[i].valence;
        }
        QCOMPARE(std::fabs(valence - result.valence) < 1e-9, sumToOne);

        double sum = 0.0; // the slope along the base
        double squares = 0.0;
        double total = 0.0;
        std::array<double, 3> slopes = {};
        for (const MutPoint &p : result.curve.points()) {
            const double y = input.target.valueAtE(AMutE::By2Victoreens, p.energyEv);
            const double left = y - p.mut;
            sum += left;
            squares += left * left;
            total += y * y;
            for (size_t i = 0; i < 3; ++i) {
                slopes[i] +=
                    left * input.references[i].spectrum.valueAtE(AMutE::By2Victoreens, p.energyEv);
            }
        }
        QVERIFY(std::fabs(sum) < 1e-8);
        QVERIFY(close(result.precision.rFactor * total, squares, 1e-9));
        const double ofFree = sumToOne ? *std::max_element(slopes.begin(), slopes.end()) : 0.0;
        for (size_t i = 0; i < 3; ++i) {
            const bool isHeld = (result.held >> i & 1U) != 0;
            QVERIFY(isHeld ? slopes[i] <= ofFree + 1e-8 : std::fabs(slopes[i] - ofFree) < 1e-8);
        }
    }
}

QTEST_GUILESS_MAIN(PrecisionTest)
#include "tst_precision.moc"
