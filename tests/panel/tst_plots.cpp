#include "display/CColors.h"
#include "display/DispABase.h"
#include "panel/plots/ComparisonPlot.h"
#include "panel/plots/MutsPlot.h"
#include "panel/plots/ScatterPlot.h"
#include "spectra/AMutE.h"
#include "tests/display/Gui.h"

#include <cmath>
#include <functional>
#include <limits>

using namespace orvel;

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

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

    explicit Graph(const Draw &draw)
    {
        panel.resize(500, 400);
        panel.setTitlesPainted(true, true);
        QObject::connect(&panel, &DispABase::draw, &panel,
                         [this, draw](QStylePainter *p) { draw(p, panel); });
        panel.show();
        paint();
    }

    /// Pixels and coordinates are those of this painting from now on.
    void paint() { image = panel.area()->grab().toImage(); }
    QColor at(double x, double y, const QPoint &beside = {}) const
    {
        return image.pixelColor(QPoint(int(coord.sx(x)), int(coord.sy(y))) + beside);
    }
    /// Whether anything but white is within two pixels of a place.
    bool isMarked(double x, double y) const
    {
        for (int i = 0; i < 25; ++i) {
            if (qGray(at(x, y, {i % 5 - 2, i / 5 - 2}).rgb()) <= 250) {
                return true;
            }
        }
        return false;
    }
    DispABase panel;
    const ChCoord &coord = *panel.coord();
    QImage image;
};

} // namespace

class PlotsTest : public QObject {
    Q_OBJECT

private slots:
    /// The picture that is kept, added to, moved and cleared is what painting every circle gives.
    void comparisonIsThatOfCircles()
    {
        const CColors colours;
        std::vector<ComparisonPoint> points;
        ComparisonPlot plot;
        Graph graph([&](QStylePainter *p, DispABase &dab) {
            plot.draw(p, dab, {}, {}, 0.0, 1.0, colours);
        });
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
                const auto k = static_cast<int>(points.size());
                points.push_back({0, std::fmod(k * 0.61803, 1.4) - 0.2, 0,
                                  std::fmod(k * 0.75488, 1.4) - 0.2, k / 7 % 40});
                plot.add(points.back());
            }
        };
        const auto same = [&] {
            graph.paint();
            plain.paint();
            return graph.image == plain.image;
        };
        QVERIFY(!graph.coord.hasContent());
        plot.add({0, kNan, 0, 0.5, 1});
        plot.add({0, 0.5, 0, kInf, 1});
        add(300);
        QVERIFY(same());
        QVERIFY(graph.isMarked(points[1].lcfValence, points[1].valence));
        plot.clear();
        points.clear();
        add(300);
        QVERIFY(same());
    }

    void scatterIsKeptUntilItsValuesChange()
    {
        std::vector<double> x = {0.0, 1.0, 0.2, kNan, kInf, 0.5};
        const std::vector<double> y = {0.0, 2.0, 1.6, 1.0, 2.0, -kInf};
        std::shared_ptr<int> owner = std::make_shared<int>(0);
        ScatterPlot plot;
        Graph graph([&](QStylePainter *p, DispABase &dab) {
            plot.draw(p, dab, {}, {}, x.data(), y.data(), x.size(), owner, Qt::blue);
        });
        QCOMPARE(window::rangeOf(graph.coord),
                 "-0.05 1.05 -0.1 2.1"); // of the finite values
        QVERIFY(graph.isMarked(0.0, 0.0) && graph.isMarked(1.0, 2.0) && graph.isMarked(0.2, 1.6));
        x[2] = 0.6; // nobody says so: the picture stays
        graph.paint();
        QVERIFY(graph.isMarked(0.2, 1.6) && !graph.isMarked(0.6, 1.6));
        owner = std::make_shared<int>(0);
        graph.paint();
        QVERIFY(!graph.isMarked(0.2, 1.6) && graph.isMarked(0.6, 1.6));
        graph.panel.coord()->setXRange(0.5, 0.7); // zoomed: drawn anew for the range
        graph.paint();
        QVERIFY(graph.isMarked(0.6, 1.6));
    }

    void spectra()
    {
        const AMutE high = stepAt7000(2.0);
        const AMutE low = stepAt7000(1.0);
        MutsPlot plot;
        plot.spectra = {{&high, Qt::red}, {&low, Qt::blue}};
        plot.energies = {6950.0};
        plot.dots = {QPointF(6950.0, 0.5), QPointF(kNan, 1.0)};
        Graph graph([&](QStylePainter *p, DispABase &dab) { drawMutsPlot(p, dab, {}, {}, plot); });
        QVERIFY(graph.isMarked(7050, 2.0) && graph.isMarked(7050, 1.0) &&
                graph.isMarked(6930, 0.0));
        QVERIFY(!graph.isMarked(7050, 1.5) && !graph.isMarked(6930, 1.0));
        QVERIFY(graph.isMarked(6950, 1.7)); // the line of an image
        QVERIFY(graph.at(6950, 0.5).blue() < 150 && graph.at(6950, 0.5).red() > 150); // the dot
        plot.dots = {QPointF(6950.0, 3.0)}; // as far as the axes' natural range goes
        graph.panel.clearScale();
        graph.paint();
        QVERIFY(graph.isMarked(6950, 3.0));
    }
};

QTEST_MAIN(PlotsTest)
#include "tst_plots.moc"
