// Fast map kernels against the plain per-pixel definition: the same bits, on awkward data, sizes,
// numbers of threads and every SIMD level of this processor.

#include "analysis/FourPoints.h"
#include "analysis/NonEquiv.h"
#include "base/Simd.h"
#include "tests/Differential.h"
#include "tests/TestTable.h"
#include "tests/analysis/Inputs.h"

#include <QtTest>

#include <random>

using namespace orvel;
using inputs::flatSpectrum;

Q_DECLARE_METATYPE(Method)

namespace {

constexpr SimdLevel kLevels[] = {SimdLevel::Base, SimdLevel::Avx2, SimdLevel::Avx512};

/// The same number to the bit, or both not-a-number (whose bits nothing shows).
bool same(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || sameBits(a, b);
}

/// How many values of two maps are not the same; quantities beside the results only on demand.
int differences(const ResultMaps &a, const ResultMaps &b, int quantities = kQuantities)
{
    int count = a.size() == b.size() ? 0 : 1;
    for (int q = 0; q < quantities; ++q) {
        for (qint64 i = 0; i < qMin(a.size(), b.size()); ++i) {
            count += same(a.at(quantityAt(q), i), b.at(quantityAt(q), i)) ? 0 : 1;
        }
    }
    return count;
}

/// Mostly plausible absorptions, some of every awkward kind.
double awkward(std::mt19937 &random)
{
    static const double odd[] = {0.0,    -0.0,   -1.0,    1.0,     1e300,  -1e300,
                                 5e-324, qInf(), -qInf(), qQNaN(), 1e-200, 3.0};
    const unsigned kind = random() % 8;
    if (kind == 0) {
        return odd[random() % std::size(odd)];
    }
    return std::uniform_real_distribution<>(-0.5, 3.0)(random);
}

/// references used, points used, images of the map's size; some images narrower or short.
AnalysisInput randomInput(std::mt19937 &random, int references, int points, int width, int height,
                          bool oddImages)
{
    AnalysisInput input;
    for (int row = 0; row < references; ++row) {
        QVector<QPair<double, double>> shape;
        for (int e = 105; e < 200; e += 5) {
            shape.append({static_cast<double>(e), std::uniform_real_distribution<>(0, 2)(random)});
        }
        input.references.push_back(
            inputs::reference(row, row * 1.5, flatSpectrum(0.5 + 0.25 * row, shape)));
    }
    for (int i = 0; i < points; ++i) {
        EnergyPointInput point = inputs::point(i, 106.5 + 11 * i);
        point.vPoint = i == points / 2;
        for (double &mu : point.referenceMu) {
            mu = std::uniform_real_distribution<>(0, 2)(random);
        }
        const bool odd = oddImages && i > 0 && random() % 2 == 0;
        const int ownWidth =
            odd ? 1 + static_cast<int>(random() % static_cast<unsigned>(width + 3)) : width;
        const auto records = static_cast<size_t>(ownWidth) * static_cast<size_t>(height);
        std::vector<double> pixels(odd ? records - random() % records : records);
        for (double &pixel : pixels) {
            pixel = awkward(random);
        }
        point.map = inputs::image(ownWidth, height, pixels);
        input.points.push_back(point);
    }
    return input;
}

std::vector<double> pixelOf(const AnalysisInput &input, const std::vector<size_t> &used, int x,
                            int y)
{
    std::vector<double> values;
    values.reserve(used.size());
    for (const size_t i : used) {
        values.push_back(input.points[i].map->absorption(x, y));
    }
    return values;
}

/// The map by its definition, pixel by pixel.
ResultMaps plainMap(const AnalysisInput &input, const Plan &plan)
{
    ResultMaps maps(plan.method, input.points[plan.used.front()].map);
    const auto each = [&maps](const auto &solve) {
        for (qint64 i = 0; i < maps.size(); ++i) {
            solve(i, static_cast<int>(i % maps.width()), static_cast<int>(i / maps.width()));
        }
    };
    if (isNonEquiv(plan.method)) {
        NonEquivFit fit(gatherRefValues(input, plan));
        double *planes[kQuantities] = {};
        for (int q = 0; q < kQuantities; ++q) {
            planes[q] = maps.addPlane(quantityAt(q));
        }
        each([&](qint64 i, int x, int y) {
            const ResultVector result = fit.fit(pixelOf(input, plan.used, x, y));
            for (size_t q = 0; q < kQuantities; ++q) {
                planes[q][i] = result[q];
            }
        });
        return maps;
    }
    double *ratio = maps.addPlane(Quantity::Ratio1);
    double *valence = maps.addPlane(Quantity::Valence);
    double *amount = maps.addPlane(Quantity::Amount);
    FourPoints method(input, plan);
    const auto v = static_cast<size_t>(plan.vPoint);
    std::vector<size_t> others = plan.used;
    others.erase(std::find(others.begin(), others.end(), v));
    each([&](qint64 i, int x, int y) {
        const FourPointsResult result =
            method.solve({pixelOf(input, others, x, y), input.points[v].map->absorption(x, y)});
        ratio[i] = result.a;
        valence[i] = method.valenceOf(result.a);
        amount[i] = result.amount;
    });
    return maps;
}

} // namespace

class PixelsTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { limitSimd(SimdLevel::Avx512); }
    void fastMapsHaveThePlainBits_data();
    void fastMapsHaveThePlainBits();
    void sameInputReusesThePlanes();
};

void PixelsTest::fastMapsHaveThePlainBits_data()
{
    const TestTable<Method, int, int> row("method", "references", "points");
    row("three points", Method::ThreePoints, 2, 3);
    row("exact", Method::ExactFourPoints, 2, 4);
    row("least squares of 8", Method::LeastSquares, 3, 8);
    row("linear, 4", Method::NonEquivLinear, 4, 8);
    row("Victoreen, no reference", Method::NonEquivVictoreen, 0, 4);
    row("Victoreen, 4", Method::NonEquivVictoreen, 4, 8);
    row("Victoreen, 4, too few points: singular", Method::NonEquivVictoreen, 4, 5);
}

void PixelsTest::fastMapsHaveThePlainBits()
{
    QFETCH(int, references);
    QFETCH(int, points);
    QFETCH(Method, method);
    std::mt19937 random(
        static_cast<unsigned>(static_cast<int>(method) * 100 + references * 10 + points));
    const QSize sizes[] = {{1, 1}, {1, 9}, {7, 1}, {8, 1}, {9, 2}, {13, 11}, {67, 31}, {4099, 2}};
    for (const QSize size : sizes) {
        for (const bool oddImages : {false, true}) {
            const AnalysisInput input =
                randomInput(random, references, points, size.width(), size.height(), oddImages);
            const Plan plan = inputs::planOf(method, input.points.size(), points / 2);
            const bool nonEquiv = isNonEquiv(plan.method);
            const ResultMaps plain = plainMap(input, plan);
            AnalysisInput withMore = input;
            withMore.precision.maps = true;
            withMore.precision.noise = oddImages ? NoiseSource::Pixel : NoiseSource::Pooled;
            withMore.method.nonEquivBounds =
                oddImages ? NonEquivBounds::NonNegative : NonEquivBounds::Free;
            const auto more = [&](const MapResources &resources) {
                return nonEquiv ? nonEquivMap(withMore, plan, resources)
                                : fourPointsMap(withMore, plan, resources);
            };
            limitSimd(SimdLevel::Base);
            const ResultMaps moreOnce = more({});
            QVERIFY(oddImages || differences(moreOnce, plain) == 0);
            for (const SimdLevel level : kLevels) {
                limitSimd(level);
                for (const int threads : {1, 2, 3, 7}) {
                    const MapResources resources = {threads, nullptr,
                                                    8}; // so that small maps split
                    const ResultMaps fast = nonEquiv ? nonEquivMap(input, plan, resources)
                                                     : fourPointsMap(input, plan, resources);
                    QCOMPARE(differences(fast, plain), 0);
                    QCOMPARE(differences(more(resources), moreOnce, kMapQuantities), 0);
                }
            }
        }
    }
}

void PixelsTest::sameInputReusesThePlanes()
{
    struct Case {
        const char *name;
        bool reusedByNonEquiv;
        bool reusedByFourPoints;
        std::function<void(AnalysisInput &)> change;
    };
    const Case cases[] = {
        {"nothing", true, true, [](auto &) {}},
        {"unused reference", true, true, [](auto &i) { i.references[3].valence += 1; }},
        {"valence", false, false, [](auto &i) { i.references[0].valence += 1e-9; }},
        {"image of the same values", false, false,
         [](auto &i) { i.points[1].map = inputs::image(9, 5, std::vector<double>(45, 0.5)); }},
        {"V point", false, false,
         [](auto &i) { std::swap(i.points[0].vPoint, i.points[2].vPoint); }},
        {"background", false, true, [](auto &i) { i.method.linearBackground = true; }},
        {"row value", false, false, [](auto &i) { i.points[1].referenceMu[0] += 1; }},
        {"edge", false, false,
         [](auto &i) {
             i.references[0].spectrum.setEdge(100, 150, 190); // a point more behind it
             i.references[0].spectrum.fitVictoreens();
         }},
    };
    for (const Case &c : cases) {
        for (const bool nonEquiv : {true, false}) {
            std::mt19937 random(1);
            AnalysisInput input = randomInput(random, 4, 6, 9, 5, false);
            input.references[2].use = input.references[3].use = false;
            input.method.nonEquiv = nonEquiv;
            input.method.exact = false;
            std::swap(input.points[2].vPoint, input.points[3].vPoint);
            input.points[1].map = inputs::image(9, 5, std::vector<double>(45, 0.5));
            MapMemory memory;
            const auto before = calculateMap(input, {}, &memory).maps;
            c.change(input);
            const MapOutcome after = calculateMap(input, {}, &memory);
            QVERIFY2((after.maps == before) ==
                         (nonEquiv ? c.reusedByNonEquiv : c.reusedByFourPoints),
                     c.name);
            // With or without: the same outcome.
            const MapOutcome fresh = calculateMap(input);
            QCOMPARE(inputs::texts(after.messages), inputs::texts(fresh.messages));
            QCOMPARE(after.valenceCounts.counts(), fresh.valenceCounts.counts());
            QVERIFY2(differences(*after.maps, *fresh.maps) == 0, c.name);
        }
    }
}

QTEST_GUILESS_MAIN(PixelsTest)
#include "tst_pixels.moc"
