#include "analysis/BinCounts.h"
#include "display/CColors.h"
#include "display/DispABase.h"
#include "panel/plots/ComparisonPlot.h"
#include "panel/plots/HistogramPlot.h"
#include "panel/plots/ImageDifferences.h"
#include "panel/plots/MutsPlot.h"
#include "panel/plots/ScatterPlot.h"
#include "spectra/AMutE.h"

#include <QtTest>

#include <cmath>
#include <functional>
#include <limits>

using namespace orvel;

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

bool isWhite(QRgb colour)
{
    return qRed(colour) > 250 && qGreen(colour) > 250 && qBlue(colour) > 250;
}

/// A spectrum of two straight pieces: 0 before its edge at 7000 eV, `step` behind it.
AMutE stepAt7000(double step)
{
    QVector<MutPoint> points;
    for (int i = 0; i <= 200; ++i) {
        const double energy = 6900.0 + i;
        points.append({0.0, energy, energy < 7000.0 ? 0.0 : step});
    }
    AMutE spectrum;
    spectrum.setPoints(points);
    return spectrum;
}

/// A graph panel whose surface is painted by one of the plots.
class Graph {
public:
    using Draw = std::function<void(QStylePainter *, DispABase &)>;

    explicit Graph(Draw draw) : m_draw(std::move(draw))
    {
        m_panel.resize(500, 400);
        m_panel.setTitlesPainted(true, true);
        QObject::connect(&m_panel, &DispABase::draw, &m_panel,
                         [this](QStylePainter *p) { m_draw(p, m_panel); });
        m_panel.show();
    }

    /// Paints; pixels and coordinates are those of this painting from now on.
    void paint() { m_image = m_panel.area()->grab().toImage(); }
    DispABase &panel() { return m_panel; }
    const QImage &image() const { return m_image; }
    const ChCoord &coord() const { return *m_panel.coord(); }

    QRgb at(double x, double y) const
    {
        return m_image.pixel(static_cast<int>(coord().sx(x)), static_cast<int>(coord().sy(y)));
    }
    /// Whether anything but white is within two pixels of a place.
    bool isMarked(double x, double y) const
    {
        for (int dx = -2; dx <= 2; ++dx) {
            for (int dy = -2; dy <= 2; ++dy) {
                if (!isWhite(m_image.pixel(static_cast<int>(coord().sx(x)) + dx,
                                           static_cast<int>(coord().sy(y)) + dy))) {
                    return true;
                }
            }
        }
        return false;
    }
    bool frameIsWhite() const
    {
        for (double y = coord().frameY1() + 1; y < coord().frameY0(); ++y) {
            for (double x = coord().frameX0() + 1; x < coord().frameX1(); ++x) {
                if (!isWhite(m_image.pixel(static_cast<int>(x), static_cast<int>(y)))) {
                    return false;
                }
            }
        }
        return true;
    }
    QString range() const
    {
        return QStringLiteral("%1 %2 %3 %4")
            .arg(coord().xMin())
            .arg(coord().xMax())
            .arg(coord().yMin())
            .arg(coord().yMax());
    }

private:
    Draw m_draw;
    mutable DispABase m_panel;
    QImage m_image;
};

} // namespace

class PlotsTest : public QObject {
    Q_OBJECT

private slots:
    void histogram();
    void comparison();
    void comparisonOfNothing();
    void comparisonIsThatOfCircles();
    void scatter();
    void scatterIsKeptUntilItsValuesChange();
    void differencesOfImages();
    void spectra();
    void spectraAboutTheImages();
};

void PlotsTest::histogram()
{
    BinCounts counts;
    counts.setUp({1.0, 3.0, 3, false}); // boxes about 1, 2 and 3
    const double values[] = {1.0, 2.0, 2.0, 2.0, 2.0};
    counts.count(values, std::size(values));
    bool hasResults = true;
    Graph graph([&](QStylePainter *p, DispABase &dab) {
        drawHistogramPlot(p, dab, QStringLiteral("x"), QStringLiteral("y"),
                          {1.0, 3.0, counts, Qt::blue, hasResults});
    });
    graph.paint();
    QCOMPARE(graph.range(), QStringLiteral("1 3 -0.4 4.4"));
    QVERIFY(!isWhite(graph.at(2.0, 3.5)) && !isWhite(graph.at(1.2, 0.5)));
    QVERIFY(isWhite(graph.at(1.23, 1.5)) && isWhite(graph.at(2.83, 0.5)));
    QVERIFY(graph.coord().hasContent());

    hasResults = false;
    graph.paint();
    QVERIFY(graph.frameIsWhite() && !graph.coord().hasContent());
}

void PlotsTest::comparison()
{
    const CColors colours;
    ComparisonPlot plot;
    plot.add({0.4, 2.6, 0.5, 2.2, 1});
    plot.add({0.1, kNan, 0.1, 2.0, 2});
    plot.add({0.1, 1e300, 0.1, -kInf, 2});
    Graph graph(
        [&](QStylePainter *p, DispABase &dab) { plot.draw(p, dab, {}, {}, 1.8, 3.2, colours); });
    graph.paint();
    QCOMPARE(graph.range(), QStringLiteral("1.8 3.2 1.8 3.2"));
    const QPoint at(static_cast<int>(graph.coord().sx(2.2)),
                    static_cast<int>(graph.coord().sy(2.6)));
    const QImage image = graph.panel().area()->grab().toImage();
    QCOMPARE(image.pixelColor(at - QPoint(2, 1)), QColor(255, 0, 0)); // the outer ellipse
    QCOMPARE(QColor(graph.at(2.95, 2.95)), QColor(0, 200, 0));        // both methods agree
    QCOMPARE(QColor(graph.at(1.9, 2.55)), QColor(200, 200, 255));     // a line of the grid
}

void PlotsTest::comparisonOfNothing()
{
    const CColors colours;
    ComparisonPlot plot;
    Graph graph(
        [&](QStylePainter *p, DispABase &dab) { plot.draw(p, dab, {}, {}, -0.2, 0.2, colours); });
    graph.paint();
    QVERIFY(graph.frameIsWhite() && !graph.coord().hasContent());
}

/// The picture that is kept, added to, moved and cleared is what painting every circle gives.
void PlotsTest::comparisonIsThatOfCircles()
{
    const CColors colours;
    std::vector<ComparisonPoint> points;
    ComparisonPlot plot;
    Graph graph(
        [&](QStylePainter *p, DispABase &dab) { plot.draw(p, dab, {}, {}, 0.0, 1.0, colours); });
    Graph plain([&](QStylePainter *p, DispABase &dab) {
        ComparisonPlot grid; // a dot far outside: all but the dots is painted
        grid.add({0.0, 1e9, 0.0, 1e9, 0});
        grid.draw(p, dab, {}, {}, 0.0, 1.0, colours);
        const ChCoord &coord = *dab.coord();
        for (const ComparisonPoint &point : points) {
            const QPoint pixel(static_cast<int>(coord.sx(point.lcfValence)),
                               static_cast<int>(coord.sy(point.valence)));
            p->setPen(colours.colour(point.colour));
            p->drawEllipse(QRect(pixel - QPoint(1, 1), pixel));
            p->drawEllipse(QRect(pixel - QPoint(2, 2), pixel + QPoint(1, 1)));
        }
        dab.drawFrame(p, true);
    });
    const auto add = [&](int n) {
        for (int i = 0; i < n; ++i) { // also at and beyond the borders
            const auto k = static_cast<double>(points.size());
            const ComparisonPoint point = {0, std::fmod(k * 0.61803, 1.4) - 0.2, 0,
                                           std::fmod(k * 0.75488, 1.4) - 0.2,
                                           static_cast<int>(points.size() / 7) % 40};
            points.push_back(point);
            plot.add(point);
        }
    };
    const auto same = [&] {
        graph.paint();
        plain.paint();
        return graph.image() == plain.image();
    };
    add(300);
    QVERIFY(same());
    QVERIFY(graph.isMarked(points[1].lcfValence, points[1].valence));
    add(1);
    QVERIFY(same());
    for (Graph *each : {&graph, &plain}) {
        each->panel().coord()->setRange(0.2, -0.1, 0.7, 2.5);
    }
    QVERIFY(same());
    plot.clear();
    points.clear();
    add(300);
    QVERIFY(same());
}

void PlotsTest::scatter()
{
    const std::vector<double> x = {0.0, 10.0, 5.0, kNan, kInf, 5.0};
    const std::vector<double> y = {0.0, 20.0, 10.0, 1.0, 2.0, -kInf};
    const auto owner = std::make_shared<int>(0);
    ScatterPlot plot;
    Graph graph([&](QStylePainter *p, DispABase &dab) {
        plot.draw(p, dab, {}, {}, x.data(), y.data(), x.size(), owner, Qt::blue);
    });
    graph.paint();
    QCOMPARE(graph.range(), QStringLiteral("-0.5 10.5 -1 21")); // of the finite values
    QVERIFY(graph.isMarked(0, 0) && graph.isMarked(10, 20) && graph.isMarked(5, 10));
    QVERIFY(!graph.isMarked(2.5, 10) && !graph.isMarked(5, 0));
}

void PlotsTest::scatterIsKeptUntilItsValuesChange()
{
    std::vector<double> x = {0.0, 1.0, 0.2};
    const std::vector<double> y = {0.0, 1.0, 0.8};
    std::shared_ptr<int> owner = std::make_shared<int>(0);
    ScatterPlot plot;
    Graph graph([&](QStylePainter *p, DispABase &dab) {
        plot.draw(p, dab, {}, {}, x.data(), y.data(), x.size(), owner, Qt::blue);
    });
    graph.paint();
    QVERIFY(graph.isMarked(0.2, 0.8));
    x[2] = 0.6; // nobody says so: the picture stays
    graph.paint();
    QVERIFY(graph.isMarked(0.2, 0.8) && !graph.isMarked(0.6, 0.8));
    owner = std::make_shared<int>(0);
    graph.paint();
    QVERIFY(!graph.isMarked(0.2, 0.8) && graph.isMarked(0.6, 0.8));
    graph.panel().coord()->setXRange(0.5, 0.7); // zoomed: drawn anew for the range
    graph.paint();
    QVERIFY(graph.isMarked(0.6, 0.8));
}

void PlotsTest::differencesOfImages()
{
    const auto image = [](double left, double right) {
        return ImageData::fromAbsorption(2, 1, Column{left, right});
    };
    ImageDifferenceCache cache;
    const ImageDifferenceCache::Images images = {image(1.0, 2.0), image(1.5, 2.0), image(3.0, 1.0)};
    const auto differences = cache.of(images);
    QVERIFY(differences);
    QCOMPARE(std::vector<double>(differences->x.begin(), differences->x.end()),
             (std::vector<double>{2.0, -1.0}));
    QCOMPARE(std::vector<double>(differences->y.begin(), differences->y.end()),
             (std::vector<double>{0.5, 0.0}));
    QCOMPARE(cache.of(images), differences);
    QVERIFY(cache.of({images[0], images[2], images[1]}) != differences);
    QVERIFY(!cache.of({images[0], images[1], nullptr}));
}

void PlotsTest::spectra()
{
    const AMutE high = stepAt7000(2.0);
    const AMutE low = stepAt7000(1.0);
    MutsPlot plot;
    plot.spectra = {{&high, Qt::red}, {&low, Qt::blue}};
    plot.energies = {6950.0};
    plot.dots = {QPointF(6950.0, 0.5), QPointF(kNan, 1.0)};
    Graph graph([&](QStylePainter *p, DispABase &dab) { drawMutsPlot(p, dab, {}, {}, plot); });
    graph.paint();
    QVERIFY(graph.isMarked(7050, 2.0) && graph.isMarked(7050, 1.0) && graph.isMarked(6930, 0.0));
    QVERIFY(!graph.isMarked(7050, 1.5) && !graph.isMarked(6930, 1.0));
    QVERIFY(graph.isMarked(6950, 1.7)); // the line of an image
    QVERIFY(qBlue(graph.at(6950, 0.5)) < 150 && qRed(graph.at(6950, 0.5)) > 150); // the dot
    const QString whole = graph.range();
    plot.dots = {QPointF(6950.0, 3.0)}; // as far as the axes' natural range goes
    graph.panel().clearScale();
    graph.paint();
    QVERIFY(graph.isMarked(6950, 3.0));
    plot.mode = AMutE::SubPre; // other units than the dots'
    graph.panel().clearScale();
    graph.paint();
    QVERIFY(graph.coord().yMax() < 3.0);

    plot.spectra.clear();
    graph.panel().clearScale();
    graph.paint();
    QVERIFY(graph.frameIsWhite() && graph.range() != whole);
}

void PlotsTest::spectraAboutTheImages()
{
    const AMutE spectrum = stepAt7000(2.0);
    MutsPlot plot;
    plot.spectra = {{&spectrum, Qt::red}};
    plot.energies = {6960.0, 7000.0};
    plot.fullRange = false;
    Graph graph([&](QStylePainter *p, DispABase &dab) { drawMutsPlot(p, dab, {}, {}, plot); });
    graph.paint();
    QCOMPARE(graph.range(), QStringLiteral("6950 7010 -0.1 2.1")); // a quarter wider both ways
}

QTEST_MAIN(PlotsTest)
#include "tst_plots.moc"
