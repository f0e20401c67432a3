#include "base/Simd.h"
#include "display/CColors.h"
#include "display/ChCoord.h"
#include "display/ColourScale.h"
#include "display/CurvePainter.h"
#include "display/DrawText.h"
#include "display/HistogramPainter.h"
#include "display/MapPainter.h"
#include "display/MouseC.h"
#include "display/PlotFrame.h"

#include <QMouseEvent>
#include <QPainter>
#include <QtTest>

#include <cmath>
#include <random>
#include <set>

using namespace orvel;

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr QRgb kWhite = 0xFFFFFFFF;

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
    const double awkward[] = {kNan, kInf, -kInf, 1e300, -1e300, -0.0};
    for (std::size_t i = 5; i < values.size(); i += 11) {
        values[i] = awkward[i % std::size(awkward)];
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

std::set<int> columnsOf(const QImage &image, QRgb colour, int row)
{
    std::set<int> columns;
    for (int x = 0; x < image.width(); ++x) {
        if (image.pixel(x, row) == colour) {
            columns.insert(x);
        }
    }
    return columns;
}

} // namespace

class PaintTest : public QObject {
    Q_OBJECT

private slots:
    void mapsCoordinates();
    void clampsIntoRange();
    void tellsEdges_data();
    void tellsEdges();
    void stepsTicks_data();
    void stepsTicks();
    void roundsMousePositions_data();
    void roundsMousePositions();
    void fitsText();
    void drawsNoTextWithoutRoom();
    void remembersRectangles();
    void checkBoxes();
    void derivesColours();
    void palettes_data();
    void palettes();
    void coloursOfValues_data();
    void coloursOfValues();
    void manyColoursEqualSingleOnes();
    void colourBar();
    void mapEqualsRectangles_data();
    void mapEqualsRectangles();
    void pictureIsKept();
    void limitsOfMaps();
    void curveShowsWhatIsFinite();
    void curveKeepsSpikes();
    void histogramRanges();
    void histogramGrid();
    void histogramBars();
    void frameClearsMargins();
};

void PaintTest::mapsCoordinates()
{
    ChCoord coord;
    coord.setArea(0, 400, 500, 0);
    coord.setFrameByMargins();
    QCOMPARE(coord.frameX0(), 50.0);
    QCOMPARE(coord.frameX1(), 475.0);
    QCOMPARE(coord.frameY0(), 360.0);
    QCOMPARE(coord.frameY1(), 20.0);
    coord.setArea(0, 99, 99, 0); // fractions are cut towards the area's edge
    coord.setFrameByMargins();
    QCOMPARE(coord.frameX0(), 9.0);
    QCOMPARE(coord.frameX1(), 95.0);
    QCOMPARE(coord.frameY0(), 90.0);
    QCOMPARE(coord.frameY1(), 4.0);

    coord.setFrame(10, 210, 110, 10);
    coord.setRange(-1, 5, 3, 15);
    QCOMPARE(coord.sx(0), 35.0);
    QCOMPARE(coord.sy(10), 110.0);
    QCOMPARE(coord.sdx(2), 50.0);
    QCOMPARE(coord.sdy(1), -20.0);
    QCOMPARE(coord.rx(35), 0.0);
    QCOMPARE(coord.ry(110), 10.0);
    QCOMPARE(coord.rxOffset(35), 1.0);
    QCOMPARE(coord.ryOffset(110), 5.0);
    QCOMPARE(coord.rdx(25), 1.0);
    QCOMPARE(coord.rdy(-20), 1.0);
    coord.setXRange(2, 2);
    QVERIFY(!std::isfinite(coord.sx(3)));
}

void PaintTest::clampsIntoRange()
{
    ChCoord coord;
    coord.setFrame(0, 100, 100, 0);
    coord.setRange(2, 4, 1, 3); // both reversed
    QCOMPARE(coord.rxInRange(-50), 2.0);
    QCOMPARE(coord.rxInRange(150), 1.0);
    QCOMPARE(coord.rxInRange(50), 1.5);
    QCOMPARE(coord.ryInRange(150), 4.0);
    coord.setRange(1, 3, 2, 4);
    QCOMPARE(coord.rxInRange(-50), 1.0);
    QCOMPARE(coord.ryInRange(-50), 4.0);
}

void PaintTest::tellsEdges_data()
{
    QTest::addColumn<double>("at");
    QTest::addColumn<bool>("xFrame");
    QTest::addColumn<bool>("yFrame");
    QTest::addColumn<bool>("xArea");
    QTest::newRow("outside") << -5.0 << true << true << true;
    QTest::newRow("beyond") << 2000.0 << true << true << true;
    QTest::newRow("in the area's band") << 19.0 << true << true << true;
    QTest::newRow("its end") << 20.0 << true << true << false;
    QTest::newRow("frame x band") << 54.0 << true << false << false;
    QTest::newRow("its end, y inside") << 56.0 << false << false << false;
    QTest::newRow("x frame's other end") << 184.0 << false << true << true;
    QTest::newRow("area's other end") << 180.0 << false << true << false;
    QTest::newRow("y frame's upper band") << 176.0 << false << true << false;
}

void PaintTest::tellsEdges()
{
    ChCoord coord;
    coord.setArea(0, 200, 200, 0);
    coord.setFrame(40, 180, 200, 30); // bands of 16 across: 56, 184; of 15 along: 45, 165
    QFETCH(double, at);
    QTEST(coord.nearFrameXEdge(at), "xFrame");
    QTEST(coord.nearAreaXEdge(at), "xArea");
    QCOMPARE(coord.nearAreaYEdge(at), coord.nearAreaXEdge(at)); // the area is a square
    QTEST(coord.nearFrameYEdge(at), "yFrame");
}

void PaintTest::stepsTicks_data()
{
    QTest::addColumn<double>("xMax");
    QTest::addColumn<double>("base");
    QTest::addColumn<int>("pixels");
    QTest::addColumn<double>("step");
    QTest::newRow("20 pixels are not more than 20") << 1000.0 << 1.0 << 20 << 100.0;
    QTest::newRow("twice") << 1000.0 << 1.0 << 7 << 20.0;
    QTest::newRow("five times") << 1000.0 << 1.0 << 8 << 50.0;
    QTest::newRow("the base itself") << 1.0 << 0.1 << 20 << 0.1;
    QTest::newRow("reversed") << -1000.0 << 2.0 << 20 << 2e8;
    QTest::newRow("eight decades are not enough") << 1e12 << 1.0 << 20 << 1e8;
    QTest::newRow("nan") << kNan << 1.0 << 20 << 1e8;
    QTest::newRow("no extent") << 0.0 << 1.0 << 20 << 1.0;
}

void PaintTest::stepsTicks()
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

void PaintTest::roundsMousePositions_data()
{
    QTest::addColumn<QPointF>("at");
    QTest::addColumn<QPoint>("rounded");
    QTest::newRow("halves up") << QPointF(2.5, 0.49) << QPoint(3, 0);
    QTest::newRow("negative halves up too") << QPointF(-2.5, -0.51) << QPoint(-2, -1);
}

void PaintTest::roundsMousePositions()
{
    QFETCH(QPointF, at);
    MouseC mouse;
    const auto event = [&at](QEvent::Type type, Qt::MouseButton button) {
        return QMouseEvent(type, at, button, button, Qt::ShiftModifier);
    };
    mouse.pressed(event(QEvent::MouseButtonPress, Qt::RightButton));
    QTEST(mouse.position(), "rounded");
    QTEST(mouse.pressPosition(), "rounded");
    QCOMPARE(mouse.previous(), QPoint());
    QVERIFY(mouse.isHeld());
    at = {70, 80};
    mouse.moved(event(QEvent::MouseMove, Qt::NoButton));
    QTEST(mouse.previous(), "rounded");
    mouse.released(event(QEvent::MouseButtonRelease, Qt::RightButton));
    QCOMPARE(mouse.previous(), QPoint(70, 80));
    QCOMPARE(mouse.releasePosition(), QPoint(70, 80));
    QVERIFY(!mouse.isHeld());
    QCOMPARE(mouse.pressButton(), int(Qt::RightButton));
    QCOMPARE(mouse.moveModifiers(), int(Qt::ShiftModifier));
}

void PaintTest::fitsText()
{
    QImage image = blank(400, 100);
    QPainter painter(&image);
    QFont font = painter.font();
    font.setPointSizeF(7.5);
    const QRectF box(0, 0, 100, 20);
    const QRectF twice(0, 0, 200, 40);
    const int flags = DrawText::kLeft;
    const auto text = QStringLiteral("1.2345");
    const QRectF at10 = DrawText::drawFittedText(&painter, box, font, flags, 1, text, -1);
    if (at10.isEmpty()) {
        QSKIP("no fonts here");
    }
    const double size = DrawText::fitPointSize(&painter, box, font, flags, text);
    QCOMPARE(DrawText::fitPointSize(&painter, twice, font, flags, text), 2 * size);
    QCOMPARE(DrawText::fitPointSize(&painter, {0, 0, 0, 20}, font, flags, text),
             10 / std::max(1.0, at10.height() / 20));
    QCOMPARE(DrawText::fitPointSize(&painter, {}, font, flags, text), 10.0);

    const QRectF fitted = DrawText::fitFont(&painter, box, font, flags, 1, text);
    QVERIFY(fitted.width() <= 100 && fitted.height() <= 20);
    QCOMPARE(font.pointSizeF(), 7.5);

    const QStringList texts = {text, text + text + text};
    DrawText::drawTextColumn(&painter, box, 0, 20, font, flags, 0, texts, -1);
    const double smallest = DrawText::fitPointSize(&painter, box, font, flags, texts[1]);
    QCOMPARE(font.pointSize(), int(smallest * 0.9));
    DrawText::drawKeyValueColumn(&painter, box, 0, 20, font, {text}, {text + text}, -1);
    QCOMPARE(font.pointSize(), int(smallest * 0.9));
    DrawText::drawTextColumn(&painter, box, 0, 20, font, flags, 0, {}, -1);
    QCOMPARE(font.pointSize(), 90000);
    font.setPointSize(8);
    DrawText::drawKeyValueColumn(&painter, box, 0, 20, font, {}, {}, -1);
    QCOMPARE(font.pointSize(), 90000);
}

void PaintTest::drawsNoTextWithoutRoom()
{
    QImage image = blank(50, 50);
    QPainter painter(&image);
    const auto draw = [&](const QRectF &box, const QString &text) {
        DrawText::drawFittedText(&painter, box, QFont(), DrawText::kCentre, 1, text, 12);
        QFont font;
        DrawText::fitFont(&painter, box, font, DrawText::kCentre, 1, text);
        DrawText::fitPointSize(&painter, box, font, DrawText::kCentre, text);
    };
    draw({10, 10, 0, 20}, QStringLiteral("x"));
    draw({10, 10, 20, 0}, QStringLiteral("x"));
    draw({10, 10, kNan, kInf}, QStringLiteral("x"));
    draw({10, 10, 20, 20}, QString());
    QCOMPARE(image, blank(50, 50));
}

void PaintTest::remembersRectangles()
{
    DrawText drawText;
    QVERIFY(!drawText.overlapsDrawn({0, 0, 10, 10}));
    drawText.rememberRect({0, 0, 10, 10});
    drawText.rememberRect({50, 50, 10, 10});
    QVERIFY(drawText.overlapsDrawn({65, 65, -10, -10}));
    QVERIFY(!drawText.overlapsDrawn({10, 0, 10, 10}));
}

void PaintTest::checkBoxes()
{
    QImage image = blank(100, 40);
    QPainter painter(&image);
    DrawText().drawCheckBox(&painter, true, QStringLiteral("a"), 5, 90, 30, 11);
    QCOMPARE(image.pixel(10, 25), qRgb(170, 255, 170));
    QCOMPARE(image.pixel(5, 25), qRgb(0, 220, 220));
    QCOMPARE(image.pixel(15, 29), qRgb(0, 220, 220));
    QCOMPARE(image.pixel(16, 25), kWhite);
    DrawText().drawCheckBox(&painter, false, QString(), 5, 90, 30, 11);
    QCOMPARE(image.pixel(10, 25), qRgb(140, 180, 140));
    const auto inside = [](double x, double y) {
        MouseC mouse;
        mouse.pressed(
            {QEvent::MouseButtonPress, {x, y}, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier});
        return DrawText::inCheckBox(mouse, 5, 30, 11);
    };
    QVERIFY(inside(5.5, 29.4) && inside(15.4, 19.5));
    QVERIFY(!inside(5.4, 25) && !inside(16, 25) && !inside(10, 19) && !inside(10, 30));
}

void PaintTest::derivesColours()
{
    const CColors base;
    QCOMPARE(base.count(), 45);
    QCOMPARE(base.colour(14), QColor(240, 160, 0));
    QCOMPARE(base.colour(15 + 12), QColor(120, 220, 120));
    QCOMPARE(base.colour(45), QColor(0, 0, 0)); // around again
    QCOMPARE(base.colour(-1), QColor(240, 160, 0));
    const CColors more(50);
    QCOMPARE(more.count(), 50);
    // By hand; the third and the fifth are too bright at first: sums of 550 and 613.
    QCOMPARE(more.colour(45), QColor(255, 0, 0));
    QCOMPARE(more.colour(46), QColor(170, 0, 255));
    QCOMPARE(more.colour(47), QColor(96, 132, 168));
    QCOMPARE(more.colour(48), QColor(200, 213, 80));
    QCOMPARE(more.colour(49), QColor(192, 79, 192));
    QCOMPARE(CColors({Qt::red}, 3).colour(2), QColor(255, 0, 0));
    QCOMPARE(CColors({}, 3).count(), 0);
}

void PaintTest::palettes_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("size");
    QTest::addColumn<QVector<QRgb>>("at100"); // entries 100, 356, 612
    const auto row = [](int type, int size, const QVector<QRgb> &colours) {
        QTest::addRow("%d", type) << type << size << colours;
    };
    row(0, 768, {qRgb(100, 0, 0), qRgb(255, 100, 0), qRgb(255, 255, 100)});
    row(1, 768, {qRgb(0, 100, 0), qRgb(0, 255, 100), qRgb(100, 255, 255)});
    row(2, 768, {qRgb(0, 0, 100), qRgb(100, 0, 255), qRgb(255, 100, 255)});
    row(3, 512, {qRgb(155, 100, 0), qRgb(0, 155, 100)});
    row(4, 512, {qRgb(155, 0, 100), qRgb(0, 100, 155)});
    row(5, 512, {qRgb(100, 155, 0), qRgb(155, 0, 100)});
    row(6, 512, {qRgb(0, 155, 100), qRgb(100, 0, 155)});
    row(7, 512, {qRgb(100, 0, 155), qRgb(155, 100, 0)});
    row(8, 512, {qRgb(0, 100, 155), qRgb(100, 155, 0)});
    row(9, 256, {qRgb(155, 100, 100)});
    row(10, 256, {qRgb(100, 155, 100)});
    row(11, 256, {qRgb(100, 100, 155)});
    row(12, 768, {qRgb(100, 0, 0), qRgb(255, 100, 0), qRgb(255, 255, 100)});
    row(-1, 768, {qRgb(100, 0, 0), qRgb(255, 100, 0), qRgb(255, 255, 100)});
}

void PaintTest::palettes()
{
    QFETCH(int, type);
    QFETCH(QVector<QRgb>, at100);
    const ColourScale scale(type);
    QTEST(scale.size(), "size");
    QCOMPARE(scale.size(), at100.size() * 256);
    for (int i = 0; i < at100.size(); ++i) {
        QCOMPARE(scale.entry(100 + 256 * i), at100[i]);
        if (i > 0) {
            QCOMPARE(scale.entry(256 * i), scale.entry(256 * i - 1));
        }
    }
    QCOMPARE(scale.bottom(), 0.0);
    QCOMPARE(scale.top(), double(scale.size()));
}

void PaintTest::coloursOfValues_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("index");
    QTest::newRow("zero") << 0.0 << 0;
    QTest::newRow("one") << 1.0 << 767;
    QTest::newRow("middle") << 0.5 << 384;
    QTest::newRow("just below an entry") << 1.99 / 768 << 1;
    QTest::newRow("above") << 2.0 << 767;
    QTest::newRow("below") << -1.0 << 0;
    QTest::newRow("nan") << kNan << 0;
    QTest::newRow("infinite") << kInf << 0;
    QTest::newRow("-infinite") << -kInf << 0;
    QTest::newRow("the last that an int holds") << 2147483647.0 / 768 << 767;
    QTest::newRow("the first that none holds") << 2147483648.0 / 768 << 0;
}

void PaintTest::coloursOfValues()
{
    QFETCH(double, value);
    QFETCH(int, index);
    ColourScale scale;
    QCOMPARE(scale.indexOf(value), index);
    QCOMPARE(scale.colourOf(value), scale.entry(index));
    scale.setInverted(true);
    QCOMPARE(scale.colourOf(value), scale.entry(767 - index));
}

void PaintTest::manyColoursEqualSingleOnes()
{
    std::vector<double> values = someValues(997);
    for (const double edge : {1.0 / 768, 767.0 / 768, 1.0, 2147483647.0 / 768, 2147483648.0 / 768,
                              -2147483649.0 / 768, 5e-324}) {
        values.insert(values.end(), {edge, std::nextafter(edge, 9e9), std::nextafter(edge, -9e9)});
    }
    const int n = static_cast<int>(values.size());
    std::vector<std::int32_t> columns;
    for (int i = 0; i < n; ++i) {
        columns.push_back(i < 3 || i >= n - 5 ? -1 : (i * 7) % n); // no column at the ends
    }
    const double limits[][2] = {{0, 1},    {1, 0},          {0.5, 0.5}, {0, kInf},
                                {kNan, 1}, {-1e308, 1e308}, {0, 5e-324}};
    const double stretches[][2] = {{0, 256}, {-1000, 3000}, {300, -300}, {kNan, 1}, {7, 7}};
    const SimdLevel best = simdLevel();
    for (const SimdLevel level : {SimdLevel::Base, SimdLevel::Avx2, SimdLevel::Avx512}) {
        if (level > best) {
            continue;
        }
        limitSimd(level);
        for (int variant = 0; variant < 7 * 5 * 2; ++variant) {
            ColourScale scale(variant % 12);
            scale.setLimits(limits[variant % 7][0], limits[variant % 7][1]);
            scale.setStretch(stretches[variant % 5][0], stretches[variant % 5][1]);
            scale.setInverted(variant % 2 == 1);
            std::vector<QRgb> colours(columns.size());
            scale.coloursOf(values.data(), columns.data(), n, colours.data());
            for (std::size_t i = 0; i < columns.size(); ++i) {
                const std::int32_t column = columns[i];
                const QRgb expected =
                    column < 0 ? kWhite : scale.colourOf(values[static_cast<std::size_t>(column)]);
                if (colours[i] != expected) {
                    limitSimd(best);
                    QFAIL(qPrintable(QStringLiteral("level %1 variant %2 value %3")
                                         .arg(int(level))
                                         .arg(variant)
                                         .arg(values[static_cast<std::size_t>(column)])));
                }
            }
        }
    }
    limitSimd(best);
}

void PaintTest::colourBar()
{
    const auto paint = [](int height, const ColourScale &scale) {
        QImage image = blank(20, height, qRgb(9, 9, 9));
        ChCoord coord;
        coord.setArea(0, height, 20, 0);
        QPainter painter(&image);
        const LimitLines lines = drawColourBar(painter, coord, scale);
        return std::make_pair(image, lines);
    };
    const QRgb line = qRgb(150, 255, 150);
    ColourScale scale;
    auto [image, lines] = paint(768, scale);
    QCOMPARE(lines.upper, 0);
    QCOMPARE(lines.lower, 767);
    QCOMPARE(image.pixel(19, 0), line);
    QCOMPARE(image.pixel(0, 767), line);
    QCOMPARE(image.pixel(10, 100), scale.entry(668));
    scale.setInverted(true);
    QCOMPARE(paint(768, scale).first.pixel(10, 100), scale.entry(99));
    scale.setInverted(false);

    scale.setStretch(-384, 1152); // half a row an entry, row 576 - i / 2
    std::tie(image, lines) = paint(768, scale);
    QCOMPARE(lines.upper, 192);
    QCOMPARE(lines.lower, 576);
    QCOMPARE(image.pixel(10, 100), kWhite);
    QCOMPARE(image.pixel(10, 700), qRgb(0, 0, 0));
    QCOMPARE(image.pixel(10, 400), scale.entry(352));

    scale.setStretch(0, 768); // two rows an entry
    std::tie(image, lines) = paint(1536, scale);
    QCOMPARE(image.pixel(10, 1000), scale.entry(268));
    QCOMPARE(image.pixel(10, 1001), scale.entry(268));
    scale.setStretch(1536, -768); // turned round: the bands beyond the lines cover the palette
    std::tie(image, lines) = paint(2304, scale);
    QCOMPARE(lines.upper, 1536);
    QCOMPARE(lines.lower, 768);
    QCOMPARE(image.pixel(10, 1000), kWhite);
    QCOMPARE(image.pixel(10, 1600), qRgb(0, 0, 0));

    for (const double odd : {kNan, kInf, -kInf, 768.0, 1e300}) {
        scale.setStretch(768, odd);
        for (const int height : {1, 300}) {
            lines = paint(height, scale).second;
            QVERIFY(lines.upper >= 0 && lines.upper < height);
            QVERIFY(lines.lower >= 0 && lines.lower < height);
        }
    }
}

Q_DECLARE_METATYPE(MapCase)

void PaintTest::mapEqualsRectangles_data()
{
    QTest::addColumn<MapCase>("c");
    const auto row = [](const char *name, const MapCase &c) { QTest::newRow(name) << c; };
    const PlotRange unit = {0, 0, 1, 1};
    row("one pixel", {30, 20, 1, 1, unit});
    row("no pixel", {30, 20, 0, 0, unit});
    row("no height", {30, 20, 5, 0, unit});
    row("1 x 1 surface", {1, 1, 3, 3, {0, 0, 3, 3}, true});
    row("tall", {7, 301, 1, 100000, {0, 0, 1, 100000}});
    row("tall, grid", {7, 301, 1, 100000, {0, 0, 1, 100000}, true});
    row("tall, zoomed in", {7, 301, 1, 100000, {0.2, 77777.3, 0.6, 77781.9}, true});
    row("wide", {301, 7, 100000, 1, {-5000, 0, 123456, 1}});
    row("reversed x", {101, 67, 7, 5, {7, 0, 0, 5}, true});
    row("reversed y", {101, 67, 7, 5, {0, 5, 7, 0}});
    row("both reversed, panned", {101, 67, 7, 5, {8.3, 6, 1.1, 2}, true});
    row("out of sight", {101, 67, 7, 5, {70, 0, 77, 5}, true});
    row("far zoomed out", {101, 67, 7, 5, {-1e300, -1e9, 1e300, 1e9}, true});
    row("far zoomed in", {101, 67, 7, 5, {3.1, 2.1, 3.1 + 1e-12, 2.1 + 1e-12}, true});
    row("inside one pixel's corner", {101, 67, 7, 5, {3, 2, 3.0000001, 2.0000001}, true});
    row("no extent", {101, 67, 7, 5, {3, 0, 3, 5}, true});
    row("hardly an extent", {101, 67, 7, 5, {0, 0, 5e-324, 5}, true});
    row("nan", {101, 67, 7, 5, {kNan, 0, 7, 5}, true});
    row("nan along", {101, 67, 7, 5, {0, kNan, 7, 5}, true});
    row("infinite end", {101, 67, 7, 5, {0, 0, kInf, 5}, true});
    row("infinite start", {101, 67, 7, 5, {0, -kInf, 7, 5}, true});
    row("a row is missing", {101, 67, 7, 5, {0, 0, 7, 5}, false, 9});
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
        c.scale.setStretch(below(500) - 250, 100 + below(900));
        QTest::addRow("random %d", i) << c;
    }
}

void PaintTest::mapEqualsRectangles()
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
    QImage image = blank(c.surfaceWidth, c.surfaceHeight, qRgb(1, 2, 3));
    MapPainter mapPainter;
    {
        QPainter painter(&image);
        mapPainter.paint(painter, coord, map, c.scale, c.grid);
    }
    QCOMPARE(image, rectangleByRectangle(c, coord, map));
}

void PaintTest::pictureIsKept()
{
    std::vector<double> values = {0.2, 0.4, 0.6, 0.8};
    auto owner = std::make_shared<int>();
    MapValues map = {values.data(), 4, 2, 2, owner};
    ColourScale scale;
    bool grid = false;
    int width = 20;
    ChCoord coord;
    coord.setRange(0, 0, 2, 2);
    MapPainter mapPainter;
    QImage before;
    // A kept picture does not show that values changed behind its back.
    const auto isRenewed = [&] {
        std::swap(values[0], values[3]);
        coord.setArea(0, 20, width, 0);
        QImage image = blank(40, 40);
        QPainter painter(&image);
        mapPainter.paint(painter, coord, map, scale, grid);
        painter.end();
        MapPainter fresh;
        QImage truth = blank(40, 40);
        painter.begin(&truth);
        fresh.paint(painter, coord, map, scale, grid);
        painter.end();
        return image == truth;
    };
    const auto isKept = [&] {
        const bool kept = !isRenewed();
        std::swap(values[0], values[3]);
        return kept;
    };
    QVERIFY(isRenewed());
    QVERIFY(isKept());
    QVERIFY(isKept());
    coord.setRange(0, 0, 2, 1.5);
    QVERIFY(isRenewed());
    QVERIFY(isKept());
    grid = true;
    QVERIFY(isRenewed());
    grid = false;
    QVERIFY(isRenewed());
    width = 21;
    QVERIFY(isRenewed());
    scale.setLimits(0, 2);
    QVERIFY(isRenewed());
    scale.setInverted(true);
    QVERIFY(isRenewed());
    scale.setStretch(0, 500);
    QVERIFY(isRenewed());
    scale.setType(4);
    QVERIFY(isRenewed());
    map.count = 3;
    QVERIFY(isRenewed());
    QVERIFY(isKept());
    owner = std::make_shared<int>(); // the address of the values is used again
    map.owner = owner;
    QVERIFY(isRenewed());
    QVERIFY(isKept());
    mapPainter.clear();
    QVERIFY(isRenewed());
}

void PaintTest::limitsOfMaps()
{
    const double values[] = {3, kNan, -2, 7};
    const auto limits = [&](qint64 count, int width) {
        const ValueLimits found = limitsOf({values, count, width, 1, {}});
        return std::make_pair(found.low, found.high);
    };
    QCOMPARE(limits(4, 4), std::make_pair(-2.0, 7.0));
    QCOMPARE(limits(4, 1), std::make_pair(3.0, 3.0));
    QCOMPARE(limits(1, 2), std::make_pair(0.0, 3.0)); // missing ones are 0
    QCOMPARE(limits(4, 0), std::make_pair(1e300, -1e300));
}

void PaintTest::curveShowsWhatIsFinite()
{
    ChCoord coord;
    setSurface(coord, 200, 100, {0, 0, 200, 100});
    const auto drawn = [&](const std::vector<double> &x, const std::vector<double> &y, int row) {
        QImage image = blank(200, 100);
        QPainter painter(&image);
        drawCurve(painter, coord, x.data(), y.data(), x.size(), Qt::black);
        painter.end();
        std::set<int> columns;
        for (int column = 0; column < 200; ++column) {
            if (image.pixel(column, row) != kWhite) {
                columns.insert(column);
            }
        }
        return columns;
    };
    auto columns = drawn({10, 50, 90, kNan, 110, 150}, {50, 50, 50, 50, 50, 50}, 50);
    QVERIFY(columns.count(30) && columns.count(70) && columns.count(130));
    QVERIFY(!columns.count(100) && !columns.count(5) && !columns.count(160));
    columns = drawn({10, 50, 90, 110, 150, 190}, {50, 50, kInf, -kInf, 50, 50}, 50);
    QVERIFY(columns.count(30) && columns.count(170) && !columns.count(70) && !columns.count(100));
    // Ends of which the difference, or the screen position, is no finite number any more.
    columns = drawn({100, 100}, {-1.5e308, 1.5e308}, 20);
    QVERIFY(!columns.empty() && *columns.begin() >= 98 && *columns.rbegin() <= 101);
    columns = drawn({-1e300, 1e300}, {50, 50}, 50);
    QVERIFY(columns.count(1) && columns.count(198));
    coord.setXRange(5, 5);
    QVERIFY(drawn({1, 5, 7}, {50, 50, 50}, 50).empty());
    QVERIFY(drawn({}, {}, 50).empty());
}

void PaintTest::curveKeepsSpikes()
{
    constexpr int kPoints = 100000;
    std::vector<double> x;
    std::vector<double> y(kPoints, 10.0);
    for (int i = 0; i < kPoints; ++i) {
        x.push_back(i * 200.0 / kPoints);
    }
    y[50123] = 95; // in column 100
    for (const int ratio : {1, 2}) {
        QImage image = blank(200 * ratio, 100 * ratio);
        image.setDevicePixelRatio(ratio);
        ChCoord coord;
        setSurface(coord, 200, 100, {0, 0, 200, 100});
        QPainter painter(&image);
        drawCurve(painter, coord, x.data(), y.data(), x.size(), Qt::black);
        painter.end();
        for (int column = 0; column < 200; ++column) {
            bool isDark = false;
            for (int k = 0; k < ratio; ++k) {
                isDark |= image.pixel(column * ratio + k, 50 * ratio) != kWhite;
            }
            QCOMPARE(isDark, column == 100 || (isDark && std::abs(column - 100) == 1));
            QVERIFY(image.pixel(column * ratio, 90 * ratio) != kWhite);
        }
    }
}

void PaintTest::histogramRanges()
{
    const auto range = histogramRange(1, 3, {10, 40, 0});
    QVERIFY(range.has_value());
    QCOMPARE(range->xMin, 1.0);
    QCOMPARE(range->xMax, 3.0);
    QCOMPARE(range->yMin, -4.0);
    QCOMPARE(range->yMax, 44.0);
    QVERIFY(!histogramRange(1, 3, {}).has_value());
}

void PaintTest::histogramGrid()
{
    const auto lines = [](double xMin, double xMax, int width, double low, double high) {
        QImage image = blank(width, 10);
        ChCoord coord;
        setSurface(coord, width, 10, {xMin, 0, xMax, 1});
        QPainter painter(&image);
        drawHistogramGrid(painter, coord, low, high);
        painter.end();
        return static_cast<int>(columnsOf(image, qRgb(200, 200, 255), 5).size());
    };
    QCOMPARE(lines(0.3, 3.7, 340, 0.3, 3.7), 4); // 1, 1.5, 2, 2.5
    QCOMPARE(lines(10, 11, 400, 0, 100), 10);    // a deep zoom keeps its lines
    QCOMPARE(lines(0, 100, 1, 0, 100), 0);
    for (const double low : {kNan, kInf, -kInf, -1e300, 0.0, 1e300}) {
        for (const double high : {kNan, kInf, -kInf, 1e300, 0.0}) {
            QVERIFY(lines(low, high, 100, low, high) <= 100);
            QVERIFY(lines(0, 1, 100, low, high) <= 100);
        }
    }
}

void PaintTest::histogramBars()
{
    const QRgb fill = QColor(Qt::blue).lighter(160).rgb();
    const auto paint = [](const HistogramBars &bars, const PlotRange &range) {
        QImage image = blank(100, 100);
        ChCoord coord;
        setSurface(coord, 100, 100, range);
        QPainter painter(&image);
        drawHistogramBars(painter, coord, bars, Qt::blue);
        return image;
    };
    // Three wide bars: the middle of each, just below and above its top.
    QImage image = paint({0, 10, {20, 0, 60}}, {0, 0, 30, 100});
    QCOMPARE(image.pixel(16, 85), fill);
    QCOMPARE(image.pixel(16, 75), kWhite);
    QCOMPARE(image.pixel(50, 98), kWhite);
    QCOMPARE(image.pixel(83, 45), fill);
    QCOMPARE(image.pixel(83, 35), kWhite);
    image = paint({0, 10, {20, 0, 60}}, {30, 0, 0, 100}); // turned round
    QCOMPARE(image.pixel(83, 85), fill);
    QCOMPARE(image.pixel(16, 45), fill);

    std::vector<std::int32_t> many(1 << 20, 1);
    many[(1 << 20) / 4] = 90; // one box of many thousand in a column
    image = paint({0, 1, many}, {0, 0, 1 << 20, 100});
    QVERIFY(columnsOf(image, fill, 50).size() == 1);
    QVERIFY(std::abs(*columnsOf(image, fill, 50).begin() - 25) <= 1);
    QVERIFY(columnsOf(image, fill, 99).size() >= 98);
    for (const double odd : {kNan, kInf, -kInf, 0.0, 1e308, -1.0}) {
        paint({odd, 1, many}, {0, 0, 1, 100});
        paint({0, odd, {1, 2}}, {0, 0, 1, 100});
        paint({0, 1, {1, 2}}, {0, odd, 1, 1});
        paint({0, 1, {1, 2}}, {odd, 0, 1, 1});
    }
}

void PaintTest::frameClearsMargins()
{
    QImage image = blank(200, 100, qRgb(255, 0, 0));
    ChCoord coord;
    setSurface(coord, 200, 100, {0, kNan, kInf, 0.000123456});
    coord.setFrameByMargins(); // 20..190, 90..5
    QPainter painter(&image);
    drawPlotFrame(painter, coord, true);
    drawAxisTitles(painter, coord, QStringLiteral("x"), QStringLiteral("y"));
    painter.end();
    QCOMPARE(image.pixel(100, 50), qRgb(255, 0, 0));
    QCOMPARE(image.pixel(20, 50), qRgb(150, 150, 150));
    QCOMPARE(image.pixel(190, 50), qRgb(150, 150, 150));
    QCOMPARE(image.pixel(100, 5), qRgb(150, 150, 150));
    QCOMPARE(image.pixel(100, 90), qRgb(150, 150, 150));
    QCOMPARE(image.pixel(199, 50), kWhite);
    QCOMPARE(image.pixel(100, 2), kWhite);
    QCOMPARE(image.pixel(0, 99), kWhite);
}

QTEST_MAIN(PaintTest)
#include "tst_paint.moc"
