// Pixels of regions against a plain point-in-polygon, their statistics against numbers by hand and
// against the plain formulas on a sorted copy.

#include "analysis/RegionStatistics.h"
#include "tests/TestTable.h"
#include "tests/analysis/Inputs.h"

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

using namespace orvel;

Q_DECLARE_METATYPE(orvel::Region)

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
const double kNan = std::nan("");

Region rectangle(double x0, double y0, double x1, double y1)
{
    return {Region::Shape::Rectangle, 1, {{x0, y0}, {x1, y1}}};
}
Region polygon(std::vector<RegionPoint> corners)
{
    return {Region::Shape::Polygon, 1, std::move(corners)};
}

/// Rows from the bottom, a letter a pixel: '#' inside.
QString drawn(const std::vector<PixelSpan> &spans, int width, int height)
{
    QStringList rows;
    for (int row = 0; row < height; ++row) {
        QString line(width, '.');
        for (const PixelSpan &span : spans) {
            for (int x = span.begin; span.row == row && x < span.end; ++x) {
                line[x] = line[x] == '.' ? '#' : '!'; // not twice
            }
        }
        rows += line;
    }
    return rows.join(' ');
}

/// The textbook's test: a ray to the right crosses the outline an odd number of times. On an edge
/// a centre may fall either way by a rounding: neither 0 nor 1.
int insideOf(double x, double y, const std::vector<RegionPoint> &outline)
{
    int inside = 0;
    for (size_t i = 0, j = outline.size() - 1; i < outline.size(); j = i++) {
        const RegionPoint &a = outline[i];
        const RegionPoint &b = outline[j];
        const double left = (b.x - a.x) * (y - a.y) / (b.y - a.y) + a.x - x;
        if ((a.y > y) != (b.y > y) && left > -1e-9) {
            if (left < 1e-9) {
                return -1;
            }
            inside = 1 - inside;
        }
    }
    return inside;
}

} // namespace

class RegionStatisticsTest : public QObject {
    Q_OBJECT

private slots:
    void pixels_data();
    void pixels();
    void pixelsAreThoseOfThePointInPolygon();
    void numbers_data();
    void numbers();
    void numbersAreThoseOfThePlainFormulas();
    void quantitiesWithoutAPlane();
};

void RegionStatisticsTest::pixels_data()
{
    // expected: of a map of 5 x 4, rows from the bottom
    const TestTable<Region, QString> row("region", "expected");
    const QString none = "..... ..... ..... .....";
    row("rectangle", rectangle(1, 1, 3, 4), "..... .##.. .##.. .##..");
    row("clipped", rectangle(-7, -1, 2, 2), "##... ##... ..... .....");
    row("above it", rectangle(0, 4, 5, 9), none);
    row("triangle", polygon({{0, 0}, {4.2, 0}, {0, 4.2}}), "####. ###.. ##... #....");
    // a centre on the left edge counts
    row("a diagonal through centres", polygon({{0, 0}, {4, 4}, {4, 0}}), "####. .###. ..##. ...#.");
    row("crossing itself: two triangles", polygon({{0, 0}, {5, 4}, {0, 4}, {5, 0}}),
        ".###. ..#.. ..#.. .###.");
    row("a hole, by a bridge without width",
        polygon({{0, 0}, {5, 0}, {5, 4}, {0, 4}, {0, 0}, {1, 1}, {1, 3}, {4, 3}, {4, 1}, {1, 1}}),
        "##### #...# #...# #####");
}

void RegionStatisticsTest::pixels()
{
    QFETCH(Region, region);
    QFETCH(QString, expected);
    const std::vector<PixelSpan> spans = pixelsOf(region, 5, 4);
    QCOMPARE(drawn(spans, 5, 4), expected);
    QCOMPARE(countOf(spans), qint64(expected.count('#')));
    for (int y = 0; y < 4; ++y) { // a click lands where its pixel belongs
        for (int x = 0; x < 5; ++x) {
            QCOMPARE(contains(region, {x + 0.5, y + 0.5}), expected[6 * y + x] == '#');
        }
    }
}

void RegionStatisticsTest::pixelsAreThoseOfThePointInPolygon()
{
    std::mt19937 random(7);
    const auto below = [&random](int n) { return static_cast<int>(random() % unsigned(n)); };
    const int width = 23;
    const int height = 17;
    int inside = 0;
    for (int n = 0; n < 2000; ++n) {
        Region region = polygon({});
        const int grain = n % 2 ? 1000 : 2; // also corners and edges on centres
        for (int corners = 3 + below(n % 10 ? 8 : 250); corners > 0; --corners) {
            region.corners.push_back({(below(40 * grain) - 8 * grain) / double(grain),
                                      (below(30 * grain) - 6 * grain) / double(grain)});
        }
        const QString picture = drawn(pixelsOf(region, width, height), width, height);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const bool found = picture[(width + 1) * y + x] == '#';
                inside += found;
                const int expected = insideOf(x + 0.5, y + 0.5, region.corners);
                QVERIFY(expected < 0 || found == (expected == 1));
            }
        }
        QVERIFY(!picture.contains('!'));
    }
    QVERIFY(inside > 10000);
}

void RegionStatisticsTest::numbers_data()
{
    // expected: mean, deviation, median, finite
    const TestTable<QVector<double>, QVector<double>> row("values", "expected");
    using Numbers = QVector<double>;
    row("none", Numbers{}, Numbers{kNan, kNan, kNan, 0});
    row("two", Numbers{1, 4}, Numbers{2.5, std::sqrt(4.5), 2.5, 2});
    row("even", Numbers{2, 4, 4, 4, 5, 5, 7, 9}, Numbers{5, std::sqrt(32.0 / 7), 4.5, 8});
    row("what is not finite does not count", Numbers{kNan, 1, kInf, 4, -kInf, kNan},
        Numbers{2.5, std::sqrt(4.5), 2.5, 2});
    row("equal", Numbers(1000, 0.1), Numbers{0.1, 0, 0.1, 1000});
    row("far from 0", Numbers{1e9 + 4, 1e9 + 7, 1e9 + 13, 1e9 + 16},
        Numbers{1e9 + 10, std::sqrt(30), 1e9 + 10, 4});
    row("the sum overflows", Numbers{1.5e308, 1.5e308}, Numbers{1.5e308, 0, 1.5e308, 2});
}

void RegionStatisticsTest::numbers()
{
    QFETCH(QVector<double>, values);
    QFETCH(QVector<double>, expected);
    // In the second row of a plane, behind pixels that do not belong.
    QVector<double> plane(2 * (values.size() + 1), 1e6);
    std::copy(values.begin(), values.end(), plane.begin() + values.size() + 2);
    RegionStatistician statistician;
    for (int run = 0; run < 2; ++run) { // the second with what the first left behind
        const RegionStatistics found =
            statistician.of(plane.data(), values.size() + 1, {{1, 1, values.size() + 1}});
        QCOMPARE(found.pixels, qint64(values.size()));
        QCOMPARE(double(found.finite), expected[3]);
        const double numbers[] = {found.mean, found.deviation, found.median};
        for (int i = std::isinf(expected[0]) ? 2 : 0; i < 3; ++i) {
            QVERIFY2(std::fabs(numbers[i] - expected[i]) <= 1e-15 * std::fabs(expected[i]) ||
                         (std::isnan(numbers[i]) && std::isnan(expected[i])),
                     qPrintable(QString::number(numbers[i], 'g', 17)));
        }
    }
}

/// Large enough that the median is found by a sample, in orders that mislead a sample as well.
void RegionStatisticsTest::numbersAreThoseOfThePlainFormulas()
{
    std::mt19937 random(3);
    std::normal_distribution<double> normal(2.5, 0.3);
    RegionStatistician statistician;
    for (const char *order : {"random", "few values", "ascending", "two heaps", "one outlier",
                              "every sampled one is huge"}) {
        for (const int n : {32767, 32768, 100000, 100001}) {
            std::vector<double> values;
            for (int i = 0; i < n; ++i) {
                const QByteArray kind(order);
                values.push_back(kind == "few values"    ? std::round(normal(random))
                                 : kind == "ascending"   ? i
                                 : kind == "two heaps"   ? normal(random) + (i < n / 2 ? 0 : 1000)
                                 : kind == "one outlier" ? (i == 0 ? 1e12 : normal(random))
                                                         : normal(random));
            }
            for (int i = 0; QByteArray(order).startsWith("every") && i < 4096; ++i) {
                values[size_t(i) * size_t(n) / 4096] = 1e6 + i;
            }
            const RegionStatistics found = statistician.of(values.data(), n, {{0, 0, n}});
            long double sum = 0;
            for (const double value : values) {
                sum += value;
            }
            const long double mean = sum / n;
            long double squares = 0;
            for (const double value : values) {
                squares += (value - mean) * (value - mean);
            }
            std::sort(values.begin(), values.end());
            const double median =
                n % 2 ? values[n / 2] : 0.5 * values[n / 2 - 1] + 0.5 * values[n / 2];
            QVERIFY2(found.median == median, order);
            // Eight lanes of n / 8 roundings each, of numbers of one sign.
            const double rounding = n * std::numeric_limits<double>::epsilon();
            QVERIFY2(std::fabs(double(found.mean - mean)) <= rounding * std::fabs(double(mean)),
                     order);
            const double deviation = std::sqrt(double(squares) / (n - 1));
            QVERIFY2(std::fabs(found.deviation - deviation) <= rounding * deviation, order);
            QCOMPARE(found.finite, qint64(n));
        }
    }
}

void RegionStatisticsTest::quantitiesWithoutAPlane()
{
    ResultMaps maps(Method::ThreePoints, inputs::image(3, 1, {0, 0, 0}));
    double *ratio = maps.addPlane(Quantity::Ratio1);
    maps.addPlane(Quantity::Valence);
    ratio[0] = 0.25;
    ratio[1] = kNan;
    ratio[2] = 0.5;
    RegionStatistician statistician;
    const RegionStatistics rest = statistician.of(maps, Quantity::Ratio2, {{0, 0, 3}});
    QCOMPARE(rest.mean, 0.625); // 1 - ratio
    QCOMPARE(rest.finite, qint64(2));
    QCOMPARE(rest.pixels, qint64(3));

    ResultMaps linear(Method::NonEquivLinear, inputs::image(1, 1, {0}));
    QStringList determined; // what is worth a line of a table: no C2
    for (int q = 0; q < kQuantities; ++q) {
        linear.addPlane(quantityAt(q));
        if (isDetermined(linear, 2, quantityAt(q))) {
            determined += QString::number(q);
        }
    }
    QCOMPARE(determined.join(' '), QString("0 1 4 5 8 9 11 12"));
}

QTEST_APPLESS_MAIN(RegionStatisticsTest)

#include "tst_regionstatistics.moc"
