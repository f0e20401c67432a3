#include "base/Simd.h"
#include "display/ChCoord.h"
#include "display/ColourScale.h"
#include "display/CurvePainter.h"
#include "display/HistogramPainter.h"
#include "display/MapPainter.h"
#include "tests/display/Table.h"

#include <QPainter>

#include <cmath>
#include <random>
#include <set>

using namespace orvel;
using window::table;

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr QRgb kWhite = 0xFFFFFFFF;
constexpr QRgb kBlack = 0xFF000000;

QImage blank(int width, int height, QRgb colour = kWhite)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

/// A surface without margins.
void setSurface(ChCoord &coord, int width, int height, const PlotRange &range)
{
    coord.setArea(0, height, width, 0);
    coord.setRange(range.xMin, range.yMin, range.xMax, range.yMax);
}

/// What `draw` makes of a white surface.
template <class Draw> QImage painted(int width, int height, const PlotRange &range, Draw draw)
{
    QImage image = blank(width, height);
    ChCoord coord;
    setSurface(coord, width, height, range);
    QPainter painter(&image);
    draw(painter, coord);
    return image;
}

struct MapCase {
    int surfaceWidth, surfaceHeight;
    int width, height;
    PlotRange range;
    bool grid = false;
    qint64 missing = 0; ///< pixels that the values lack
    ColourScale scale = ColourScale(0);
    bool margins = false;
};

std::vector<double> someValues(qint64 n)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> numbers(-0.3, 1.3);
    std::vector<double> values(static_cast<std::size_t>(std::max<qint64>(n, 0)));
    for (double &value : values) {
        value = numbers(random);
    }
    std::vector<double> awkward = {kNan, kInf, -kInf, 1e300, -1e300, -0.0};
    for (const double entry : {1.0, 767.0, 768.0, 2147483647.0, 2147483648.0, -2147483649.0}) {
        const double edge = entry / 768; // where the next entry begins, or no int holds it
        awkward.insert(awkward.end(),
                       {edge, std::nextafter(edge, 9e9), std::nextafter(edge, -9e9)});
    }
    for (std::size_t i = 5; i < values.size(); i += 5) {
        values[i] = awkward[i % awkward.size()];
    }
    return values;
}

/// The definition: one rectangle a pixel, then the outlines.
QImage rectangleByRectangle(const MapCase &c, const ChCoord &coord, const MapValues &map)
{
    QImage image = blank(c.surfaceWidth, c.surfaceHeight);
    QPainter painter(&image);
    const auto place = [](double s) {
        constexpr double kFar = 20000;
        return static_cast<int>(std::trunc(std::clamp(s, -kFar, kFar)));
    };
    for (const bool outlines : {false, true}) {
        for (qint64 p = 0; p < (outlines && !c.grid ? 0 : map.size()); ++p) {
            const int i = static_cast<int>(p % map.width);
            const int j = static_cast<int>(p / map.width);
            const double edges[] = {coord.sx(i), coord.sx(i + 1), coord.sy(j), coord.sy(j + 1)};
            if (!std::all_of(edges, edges + 4, [](double s) { return std::isfinite(s); })) {
                continue;
            }
            const int x = std::min(place(edges[0]), place(edges[1]));
            const int y = std::min(place(edges[2]), place(edges[3]));
            const int w = std::abs(place(edges[1]) - place(edges[0]));
            const int h = std::abs(place(edges[3]) - place(edges[2]));
            if (outlines) {
                const QColor grid(200, 200, 200);
                painter.fillRect(x, y, w + 1, 1, grid);
                painter.fillRect(x, y + h, w + 1, 1, grid);
                painter.fillRect(x, y, 1, h + 1, grid);
                painter.fillRect(x + w, y, 1, h + 1, grid);
            } else if (w > 0 && h > 0) {
                const double value = p < map.count ? map.values[p] : 0.0;
                painter.fillRect(x, y, w, h, QColor(c.scale.colourOf(value)));
            }
        }
    }
    return image;
}

/// Columns of that colour, or of any but white.
std::set<int> columnsOf(const QImage &image, int row, std::optional<QRgb> colour = std::nullopt)
{
    std::set<int> columns;
    for (int x = 0; x < image.width(); ++x) {
        const QRgb found = image.pixel(x, row);
        if (colour ? found == *colour : found != kWhite) {
            columns.insert(x);
        }
    }
    return columns;
}

} // namespace

Q_DECLARE_METATYPE(MapCase)

class PaintTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { limitSimd(SimdLevel::Avx512); }

    void mapsCoordinates()
    {
        ChCoord coord;
        const auto frame = [&coord](double width, double height) {
            coord.setArea(0, height, width, 0);
            coord.setFrameByMargins();
            return QVector<double>{coord.frameX0(), coord.frameX1(), coord.frameY0(),
                                   coord.frameY1()};
        };
        QCOMPARE(frame(500, 400), (QVector<double>{50, 475, 360, 20}));

        coord.setFrame(10, 210, 110, 10);
        coord.setRange(-1, 5, 3, 15);
        QVERIFY(coord.sx(0) == 35 && coord.rx(35) == 0 && coord.rxOffset(35) == 1);
        QVERIFY(coord.sy(10) == 110 && coord.ry(110) == 10 && coord.ryOffset(110) == 5);
        QVERIFY(coord.sdx(2) == 50 && coord.rdx(25) == 1 && coord.sdy(1) == -20 &&
                coord.rdy(-20) == 1);
        QVERIFY(coord.rxInRange(-500) == -1 && coord.ryInRange(-500) == 15);
        coord.setRange(2, 4, 1, 3); // both reversed
        QVERIFY(coord.rxInRange(-500) == 2 && coord.rxInRange(500) == 1 &&
                coord.rxInRange(60) == 1.5);
        QVERIFY(coord.ryInRange(500) == 4 && coord.ryInRange(-500) == 3);
        coord.setXRange(2, 2);
        QVERIFY(!std::isfinite(coord.sx(3)));
    }

    void stepsTicks_data()
    {
        table<double, double, int, double>({"xMax", "base", "pixels", "step"},
                                           {{"not more than 20 pixels", 1000, 1, 20, 100},
                                            {"fives", 1000, 1, 8, 50},
                                            {"not a number", kNan, 1, 20, 1e8}});
    }

    void stepsTicks()
    {
        QFETCH(double, xMax);
        QFETCH(double, base);
        QFETCH(int, pixels);
        ChCoord coord;
        coord.setFrame(0, 1, 400, 0);
        coord.setRange(0, 0, xMax, 1e-7);
        QTEST(coord.xTickStep(base, pixels), "step");
        QTEST(coord.yTickStep(base, pixels), "step"); // measured on the x scale too
    }

    void palettes()
    {
        const QMap<QChar, QRgb> colours = {{'k', 0x000000}, {'w', 0xFFFFFF}, {'r', 0xFF0000},
                                           {'g', 0x00FF00}, {'b', 0x0000FF}, {'c', 0x00FFFF},
                                           {'m', 0xFF00FF}, {'y', 0xFFFF00}};
        const QStringList corners = {"kryw", "kgcw", "kbmw", "rgb", "rbg", "grb", "gbr",
                                     "brg",  "bgr",  "rc",   "gm",  "by",  "kryw"}; // unknown
        for (int type = 0; type < corners.size(); ++type) {
            const ColourScale scale(type);
            const int parts = corners[type].size() - 1;
            QVERIFY(scale.size() == parts * 256 && scale.bottom() == 0 &&
                    scale.top() == scale.size());
            for (int part = 0; part < parts; ++part) {
                const QRgb from = 0xFF000000 | colours[corners[type][part]];
                const QRgb to = 0xFF000000 | colours[corners[type][part + 1]];
                QCOMPARE(scale.entry(256 * part), from);
                QCOMPARE(scale.entry(256 * part + 255), to);
                const int mixed = qRound(qRed(from) + 0.2 * (qRed(to) - qRed(from)));
                QCOMPARE(qRed(scale.entry(256 * part + 51)), mixed);
            }
        }
    }

    void coloursOfValues()
    {
        constexpr double kMost = 2147483647.0 / 768; // the next index is one that no int holds
        const double values[] = {0, 1, 0.5, 1.99 / 768, 2, -1, kNan, kInf, -kInf, kMost, kMost + 1};
        const int indices[] = {0, 767, 384, 1, 767, 0, 0, 0, 0, 767, 0};
        for (std::size_t i = 0; i < std::size(values); ++i) {
            ColourScale scale;
            QCOMPARE(scale.colourOf(values[i]), scale.entry(indices[i]));
            scale.setInverted(true);
            QCOMPARE(scale.colourOf(values[i]), scale.entry(767 - indices[i]));
        }
    }

    void colourBar_data()
    {
        using Rows = QVector<QPoint>; // row, entry; -1: white beyond, -2: black
        // Half a row an entry, row 576 - i / 2; two rows an entry; turned round: the bands beyond
        // the lines cover the palette.
        table<int, double, double, QPoint, Rows>(
            {"height", "bottom", "top", "lines", "rows"},
            {{"a row an entry", 768, 0, 768, {0, 767}, {{100, 668}}},
             {"two rows an entry", 1536, 0, 768, {0, 1535}, {{1000, 268}, {1001, 268}}},
             {"turned round", 2304, 1536, -768, {1536, 768}, {{1000, -1}, {1600, -2}}},
             {"no number", 300, 768, kNan, {-1, -1}, {}}, // no matter where, if only inside
             {"infinite", 1, 768, -kInf, {-1, -1}, {}}});
    }

    void colourBar()
    {
        QFETCH(int, height);
        QFETCH(double, bottom);
        QFETCH(double, top);
        QFETCH(QPoint, lines); // upper, lower
        QFETCH(QVector<QPoint>, rows);
        ColourScale scale;
        scale.setStretch(bottom, top);
        QImage image = blank(20, height);
        ChCoord coord;
        coord.setArea(0, height, 20, 0);
        QPainter painter(&image);
        const LimitLines found = drawColourBar(painter, coord, scale);
        QVERIFY(std::min(found.upper, found.lower) >= 0 &&
                std::max(found.upper, found.lower) < height);
        QVERIFY(lines.x() < 0 || lines == QPoint(found.upper, found.lower));
        for (const QPoint &row : rows) {
            const QRgb expected = row.y() >= 0    ? scale.entry(row.y())
                                  : row.y() == -1 ? kWhite
                                                  : kBlack;
            QCOMPARE(image.pixel(10, row.x()), expected);
        }
    }

    void mapEqualsRectangles_data()
    {
        QTest::addColumn<MapCase>("c");
        const auto row = [](const char *name, const MapCase &c) { QTest::newRow(name) << c; };
        const PlotRange unit = {0, 0, 1, 1};
        row("one pixel", {30, 20, 1, 1, unit});
        row("tall, grid", {7, 301, 1, 100000, {0, 0, 1, 100000}, true});
        row("out of sight", {101, 67, 7, 5, {70, 0, 77, 5}, true});
        row("far zoomed out", {101, 67, 7, 5, {-1e300, -1e9, 1e300, 1e9}, true});
        row("far zoomed in", {101, 67, 7, 5, {3.1, 2.1, 3.1 + 1e-12, 2.1 + 1e-12}, true});
        for (const double odd : {3.0, kNan, kInf, -kInf}) { // 3: no extent
            QTest::addRow("x to %g", odd) << MapCase{101, 67, 7, 5, {3, 0, odd, 5}, true};
        }
        row("nothing is there", {101, 67, 7, 5, {0, 0, 7, 5}, true, 35});
        row("with margins", {101, 67, 7, 5, {-0.5, 1, 7, 5}, true, 0, ColourScale(3), true});

        std::mt19937 random(11);
        const auto below = [&random](int n) { return static_cast<int>(random() % unsigned(n)); };
        for (int i = 0; i < 60; ++i) {
            MapCase c = {1 + below(130), 1 + below(130), 1 + below(150), 1 + below(60), {}};
            const auto around = [&](int n) { return n * (below(3000) - 1000) / 1000.0; };
            c.range = {around(c.width), around(c.height), around(c.width), around(c.height)};
            c.grid = i % 3 == 0;
            c.missing = i % 4 == 0 ? below(c.width * c.height) : 0;
            c.scale = ColourScale(i % 12);
            c.scale.setInverted(i % 2 == 0);
            const double limits[][2] = {{0, 1},    {1, 0},          {0.5, 0.5}, {0, kInf},
                                        {kNan, 1}, {-1e308, 1e308}, {0, 5e-324}};
            const double *limit = limits[i % 3 == 1 ? i / 3 % 7 : 0];
            c.scale.setLimits(limit[0], limit[1]);
            const double ends[] = {100.0 + below(900), -300, kNan, -250};
            c.scale.setStretch(below(500) - 250, ends[i % 5 == 1 ? i / 5 % 4 : 0]);
            QTest::addRow("random %d", i) << c;
        }
    }

    void mapEqualsRectangles()
    {
        QFETCH(MapCase, c);
        const qint64 pixels = qint64(c.width) * c.height;
        const std::vector<double> values = someValues(pixels - c.missing);
        const MapValues map = {values.data(), qint64(values.size()), c.width, c.height, {}};
        ChCoord coord;
        setSurface(coord, c.surfaceWidth, c.surfaceHeight, c.range);
        if (c.margins) {
            coord.setFrameByMargins();
        }
        const QImage expected = rectangleByRectangle(c, coord, map);
        for (const SimdLevel level : {SimdLevel::Base, SimdLevel::Avx2, SimdLevel::Avx512}) {
            limitSimd(level); // at most what there is
            QImage image = blank(c.surfaceWidth, c.surfaceHeight, qRgb(1, 2, 3));
            QPainter painter(&image);
            MapPainter().paint(painter, coord, map, c.scale, c.grid);
            QCOMPARE(image, expected);
        }
    }

    void pictureIsKept()
    {
        std::vector<double> values = {0.2, 0.4, 0.6, 0.8};
        MapValues map = {values.data(), 4, 2, 2, std::make_shared<int>()};
        ColourScale scale;
        bool grid = false;
        ChCoord coord;
        coord.setRange(0, 0, 2, 2);
        MapPainter mapPainter;
        const auto picture = [&](MapPainter &by) {
            coord.setArea(0, 20, 20, 0);
            QImage image = blank(40, 40);
            QPainter painter(&image);
            by.paint(painter, coord, map, scale, grid);
            return image;
        };
        // A kept picture does not show that values changed behind its back.
        const auto isRenewed = [&] {
            std::swap(values[0], values[3]);
            MapPainter fresh;
            return picture(mapPainter) == picture(fresh);
        };
        const std::function<void()> changes[] = {
            [] {},
            [&] { coord.setRange(0, 0, 2, 1.5); },
            [&] { grid = true; },
            [&] { scale.setLimits(0, 2); },
            [&] { scale.setInverted(true); },
            [&] { scale.setType(4); },
            [&] { map.count = 3; },
            [&] { map.owner = std::make_shared<int>(); }, // the address of the values is used again
        };
        for (const auto &change : changes) {
            change();
            QVERIFY(isRenewed());
            QVERIFY(!isRenewed());
            std::swap(values[0], values[3]);
        }
    }

    void curveShowsWhatIsFinite()
    {
        const PlotRange range = {0, 0, 200, 100};
        const auto drawn = [&](const std::vector<double> &x, const std::vector<double> &y,
                               int row) {
            return columnsOf(painted(200, 100, range,
                                     [&](QPainter &painter, ChCoord &coord) {
                                         drawCurve(painter, coord, x.data(), y.data(), x.size(),
                                                   Qt::black);
                                     }),
                             row);
        };
        auto columns = drawn({10, 50, 90, kNan, 110, 150}, {50, 50, 50, 50, 50, 50}, 50);
        QVERIFY(columns.count(30) && columns.count(70) && columns.count(130));
        QVERIFY(!columns.count(100) && !columns.count(5) && !columns.count(160));
        // One of a hundred thousand points, in column 100.
        std::vector<double> x(100000);
        std::vector<double> y(x.size(), 10.0);
        for (std::size_t i = 0; i < x.size(); ++i) {
            x[i] = double(i) * 0.002;
        }
        y[50123] = 95;
        columns = drawn(x, y, 50);
        QVERIFY(columns.count(100) && *columns.begin() >= 99 && *columns.rbegin() <= 101);
    }

    void histogramBars()
    {
        const QRgb fill = QColor(Qt::blue).lighter(160).rgb();
        const auto paint = [](const HistogramBars &bars, const PlotRange &range) {
            return painted(100, 100, range, [&bars](QPainter &painter, ChCoord &coord) {
                drawHistogramBars(painter, coord, bars, Qt::blue);
            });
        };
        const auto range = histogramRange(1, 3, {10, 40, 0});
        QVERIFY(range && range->xMin == 1 && range->xMax == 3 && range->yMin == -4 &&
                range->yMax == 44);
        QVERIFY(!histogramRange(1, 3, {}).has_value());
        // Three wide bars, just below and above their tops.
        QImage image = paint({0, 10, {20, 0, 60}}, {0, 0, 30, 100});
        QVERIFY(image.pixel(16, 85) == fill && image.pixel(16, 75) == kWhite);
        QVERIFY(image.pixel(83, 45) == fill && image.pixel(83, 35) == kWhite);

        std::vector<std::int32_t> many(1 << 20, 1);
        many[(1 << 20) / 4] = 90; // one box of many thousand in a column
        image = paint({0, 1, many}, {0, 0, 1 << 20, 100});
        QVERIFY(columnsOf(image, 50, fill).size() == 1);
        QVERIFY(std::abs(*columnsOf(image, 50, fill).begin() - 25) <= 1);
    }
};

QTEST_MAIN(PaintTest)
#include "tst_paint.moc"
