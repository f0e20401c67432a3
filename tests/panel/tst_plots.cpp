#include "display/DispABase.h"
#include "panel/plots/ImageDifferences.h"
#include "panel/plots/MutsPlot.h"
#include "panel/plots/ScatterPlot.h"
#include "spectra/AMutE.h"

#include <QtTest>

#include <functional>
#include <limits>

using namespace orvel;

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

/// A graph panel whose surface is painted by one of the plots.
class Graph {
public:
    using Draw = std::function<void(QStylePainter *, DispABase &)>;

    explicit Graph(const Draw &draw)
    {
        m_panel.resize(500, 400);
        m_panel.setTitlesPainted(true, true);
        QObject::connect(&m_panel, &DispABase::draw, &m_panel,
                         [this, draw](QStylePainter *p) { draw(p, m_panel); });
        m_panel.show();
    }

    /// Paints; pixels and coordinates are those of this painting from now on.
    void paint() { m_image = m_panel.area()->grab().toImage(); }
    DispABase &panel() { return m_panel; }

    /// Whether anything but white is within two pixels of a place.
    bool isMarked(double x, double y)
    {
        const ChCoord &c = *m_panel.coord();
        for (int i = 0; i < 25; ++i) {
            const QPoint at(int(c.sx(x)) + i % 5 - 2, int(c.sy(y)) + i / 5 - 2);
            if (qGray(m_image.pixel(at)) < 250) {
                return true;
            }
        }
        return false;
    }
    QString range()
    {
        const ChCoord &c = *m_panel.coord();
        return QString("%1 %2 %3 %4").arg(c.xMin()).arg(c.xMax()).arg(c.yMin()).arg(c.yMax());
    }

private:
    DispABase m_panel;
    QImage m_image;
};

} // namespace

class PlotsTest : public QObject {
    Q_OBJECT

private slots:
    void scatter();
    void differencesOfImages();
    void spectra();
};

void PlotsTest::scatter()
{
    std::vector<double> x = {0.0, 10.0, 5.0, kNan, kInf, 5.0};
    const std::vector<double> y = {0.0, 20.0, 10.0, 1.0, 2.0, -kInf};
    std::shared_ptr<int> owner = std::make_shared<int>(0);
    ScatterPlot plot;
    Graph graph([&](QStylePainter *p, DispABase &dab) {
        plot.draw(p, dab, {}, {}, x.data(), y.data(), x.size(), owner, Qt::blue);
    });
    graph.paint();
    QCOMPARE(graph.range(), QStringLiteral("-0.5 10.5 -1 21")); // of the finite values
    QVERIFY(graph.isMarked(0, 0) && graph.isMarked(10, 20) && graph.isMarked(5, 10));
    QVERIFY(!graph.isMarked(2.5, 10) && !graph.isMarked(5, 0));
    x[2] = 8; // nobody says so: the picture stays
    graph.paint();
    QVERIFY(graph.isMarked(5, 10) && !graph.isMarked(8, 10));
    owner = std::make_shared<int>(0);
    graph.paint();
    QVERIFY(!graph.isMarked(5, 10) && graph.isMarked(8, 10));
    graph.panel().coord()->setXRange(7, 9); // zoomed: drawn anew for the range
    graph.paint();
    QVERIFY(graph.isMarked(8, 10));
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
    AMutE spectrum; // 0 before its edge at 7000 eV, 2 behind it
    QVector<MutPoint> points;
    for (int energyEv = 6900; energyEv <= 7100; ++energyEv) {
        points.append({0.0, double(energyEv), energyEv < 7000 ? 0.0 : 2.0});
    }
    spectrum.setPoints(points);
    MutsPlot plot;
    plot.spectra = {{&spectrum, Qt::red}};
    plot.energies = {6960.0, 7000.0};
    plot.dots = {QPointF(6960.0, 0.5), QPointF(kNan, 1.0)};
    Graph graph([&](QStylePainter *p, DispABase &dab) { drawMutsPlot(p, dab, {}, {}, plot); });
    graph.paint();
    QVERIFY(graph.isMarked(7050, 2) && graph.isMarked(6930, 0) && !graph.isMarked(6930, 1));
    QVERIFY(graph.isMarked(6960, 1.7) && graph.isMarked(6960, 0.5)); // an image's line, a dot
    plot.fullRange = false;
    graph.panel().clearScale();
    graph.paint();
    QCOMPARE(graph.range(), QStringLiteral("6950 7010 -0.1 2.1")); // a quarter wider both ways
}

QTEST_MAIN(PlotsTest)
#include "tst_plots.moc"
