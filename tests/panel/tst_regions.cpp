// Regions under the fingers of a user: events go to the surface as the toolkit sends them.

#include "display/cBar.h"
#include "panel/RegionPanel.h"
#include "panel/RegionTable.h"
#include "session/RegionTexts.h"
#include "session/SessionFile.h"
#include "tests/panel/Window.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QSignalSpy>
#include <QTableWidget>
#include <QToolButton>

using namespace window;
using orvel::Region;

namespace {

constexpr int kWidth = 8;
constexpr int kHeight = 4;
constexpr int kGrain = 20; // screen pixels of a pixel of the map

/// A map of 8 x 4 whose valences are 2 at the left half, 3 at the right; its window, so that its
/// size does not depend on the form.
class Map {
public:
    Map()
    {
        QList<double> atV;
        for (int i = 0; i < kWidth * kHeight; ++i) {
            atV << (i % kWidth < kWidth / 2 ? 0.8 : 0.2);
        }
        sample.load(panel, kWidth, atV);
        panel.resize(1366, 736);
        panel.show();
        map = window::map(panel, "ResultMap");
        area = map->area();
        map->popDock();
        area->window()->show();
        area->setFixedSize(kWidth * kGrain, kHeight * kGrain);
        QCoreApplication::processEvents();
        button = find<QToolButton>(panel, "RegionsB");
        button->click();
        tool = panel.findChild<RegionPanel *>()->tool();
        bar = panel.findChild<RegionPanel *>();
    }

    QPoint at(double x, double y) const // of the map, row 0 at the bottom
    {
        return {int(x * kGrain), int((kHeight - y) * kGrain)};
    }
    void press(double x, double y, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::mousePress(area, Qt::LeftButton, modifiers, at(x, y));
    }
    void move(double x, double y) const { mouse(area, QEvent::MouseMove, at(x, y)); }
    void release(double x, double y, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::mouseRelease(area, Qt::LeftButton, modifiers, at(x, y));
    }
    void drag(double x0, double y0, double x1, double y1) const
    {
        press(x0, y0);
        move((x0 + x1) / 2, (y0 + y1) / 2);
        move(x1, y1);
        release(x1, y1);
    }
    void click(double x, double y, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        press(x, y, modifiers);
        release(x, y, modifiers);
    }
    void key(Qt::Key key) const { QTest::keyClick(area, key); }
    void choosePolygon() const { find<QComboBox>(panel, "RegionShape")->setCurrentIndex(1); }

    QString texts() const
    {
        QStringList all;
        for (const Region &region : tool->regions()) {
            all << textOf(region);
        }
        return all.join("; ");
    }

    Sample sample;
    FourPs panel;
    DispMBase *map;
    DispArea *area;
    QToolButton *button;
    orvel::RegionTool *tool;
    RegionPanel *bar;
};

/// Pixels of about that colour, which lines next to black and white have in few places exactly.
int pixelsNear(const QImage &image, const QColor &colour)
{
    int n = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor found = image.pixelColor(x, y);
            n += std::abs(found.red() - colour.red()) + std::abs(found.green() - colour.green()) +
                     std::abs(found.blue() - colour.blue()) <
                 60;
        }
    }
    return n;
}

} // namespace

class RegionsTest : public QObject {
    Q_OBJECT

private slots:
    void dragsRectangles_data();
    void dragsRectangles();
    void clicksPolygons_data();
    void clicksPolygons();
    void mapEventsBelongToTheRegions();
    void selectsAndRemoves();
    void thereAreFourteen();
    void outlinesShowOnAnyPalette();
    void plotsShowRegions();
    void tableOfStatistics();
    void sessionsKeepThem();
    void writesThemBesideTheResult();
    void otherMaps();
};

void RegionsTest::dragsRectangles_data()
{
    QTest::addColumn<QVector<double>>("from"); // x0 y0 x1 y1 of the drag
    QTest::addColumn<QString>("region");
    using Drag = QVector<double>;
    QTest::newRow("whole pixels that it touches")
        << Drag{1.5, 0.5, 2.5, 2.5} << "Rectangle 1 0 3 3";
    QTest::newRow("the other way") << Drag{2.5, 2.5, 1.5, 0.5} << "Rectangle 1 0 3 3";
    QTest::newRow("within a pixel") << Drag{3.2, 1.2, 3.8, 1.8} << "Rectangle 3 1 4 2";
    QTest::newRow("beyond the map") << Drag{6.5, 2.5, 12.0, 9.0} << "Rectangle 6 2 8 4";
    QTest::newRow("outside alone") << Drag{9.0, 1.0, 12.0, 3.0} << "";
    QTest::newRow("a tremble is no drag") << Drag{3.5, 1.5, 3.6, 1.6} << "";
}

void RegionsTest::dragsRectangles()
{
    QFETCH(QVector<double>, from);
    QFETCH(QString, region);
    const Map map;
    map.drag(from[0], from[1], from[2], from[3]);
    QCOMPARE(map.texts(), region.isEmpty() ? QString() : "1 " + region);
    // Escape while the button is held: nothing, also when it is let go.
    map.press(1.5, 1.5);
    map.move(4.5, 3.5);
    map.key(Qt::Key_Escape);
    map.release(4.5, 3.5);
    QCOMPARE(map.tool->regions().size(), size_t(region.isEmpty() ? 0 : 1));
}

void RegionsTest::clicksPolygons_data()
{
    QTest::addColumn<QString>("steps"); // "x,y" a click; keys by name
    QTest::addColumn<QString>("regions");
    const QString triangle = "1,0.5 5,0.5 5,3.5 ";
    const QString made = "1 Polygon 1 0.5 5 0.5 5 3.5";
    QTest::newRow("Enter") << triangle + "Enter" << made;
    QTest::newRow("Return") << triangle + "Return" << made;
    QTest::newRow("on the first corner") << triangle + "1.1,0.6" << made;
    QTest::newRow("near it, too early") << "1,0.5 1.3,0.5 Enter"
                                        << "";
    QTest::newRow("still open") << triangle << "";
    QTest::newRow("Enter with two corners goes on") << "1,0.5 5,0.5 Enter 5,3.5 Enter" << made;
    QTest::newRow("Escape, then another")
        << "2,2 3,3 4,1 Escape Enter " + triangle + "Enter" << made;
    QTest::newRow("Backspace") << "1,0.5 5,0.5 2,2 Backspace 5,3.5 Enter" << made;
    QTest::newRow("a double click is one corner") << "1,0.5 double:5,0.5 5,3.5 Enter" << made;
    QTest::newRow("kept within the map") << "-1,1 9,1 9,5 Enter"
                                         << "1 Polygon 0 1 8 1 8 4";
    QTest::newRow("without a pixel") << "1,1 1.3,1 1.3,1.3 Enter"
                                     << "";
    QTest::newRow("two") << triangle + "Enter 6,1 8,1 8,4 Enter"
                         << made + "; 2 Polygon 6 1 8 1 8 4";
    QTest::newRow("the button gives it up") << triangle + "Button Button Enter"
                                            << "";
    QTest::newRow("another shape gives it up") << triangle + "Shape Shape Enter"
                                               << "";
}

void RegionsTest::clicksPolygons()
{
    QFETCH(QString, steps);
    QFETCH(QString, regions);
    const Map map;
    map.choosePolygon();
    const QMap<QString, Qt::Key> keys = {{"Enter", Qt::Key_Enter},
                                         {"Return", Qt::Key_Return},
                                         {"Escape", Qt::Key_Escape},
                                         {"Backspace", Qt::Key_Backspace}};
    for (QString step : steps.split(' ', Qt::SkipEmptyParts)) {
        const bool isDouble = step.startsWith("double:");
        step = step.section(':', -1);
        const double x = step.section(',', 0, 0).toDouble();
        const double y = step.section(',', 1).toDouble();
        if (keys.contains(step)) {
            map.key(keys[step]);
        } else if (step == "Button") {
            map.button->click();
        } else if (step == "Shape") {
            auto *box = find<QComboBox>(map.panel, "RegionShape");
            box->setCurrentIndex(1 - box->currentIndex());
        } else {
            map.click(x, y);
            map.move(x, y);
            if (isDouble) {
                mouse(map.area, QEvent::MouseButtonDblClick, map.at(x, y));
                map.release(x, y);
            }
        }
    }
    QCOMPARE(map.texts(), regions);
}

void RegionsTest::mapEventsBelongToTheRegions()
{
    const Map map;
    QSignalSpy pressed(map.map, &DispMBase::mPressed);
    QSignalSpy dragging(map.map, &DispMBase::mDragging);
    QSignalSpy doubleClicked(map.map, &DispMBase::mDClicked);
    const auto wheel = [&map] {
        const QPoint at = map.at(4, 2);
        QWheelEvent event(at, map.area->mapToGlobal(at), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(map.area, &event);
    };
    const auto range = [&map] {
        const ChCoord &coord = *map.area->coord();
        return QVector<double>{coord.xMin(), coord.xMax(), coord.yMin(), coord.yMax()};
    };
    map.area->grab();
    wheel(); // still zooms
    const QVector<double> zoomed = range();
    QVERIFY(zoomed[1] - zoomed[0] < kWidth);
    map.drag(1.5, 0.5, 2.5, 2.5);
    mouse(map.area, QEvent::MouseButtonDblClick, map.at(4, 2));
    map.release(4, 2);
    map.area->grab();
    QCOMPARE(range(), zoomed); // a double click would have reset it
    QCOMPARE(pressed.count() + dragging.count() + doubleClicked.count(), 0);
    // The pointer's place is shown as before, and shift-drag moves the map.
    map.move(4, 2);
    QVERIFY(!find<QLineEdit>(*map.map, "XPos")->text().isEmpty());
    map.press(4, 2, Qt::ShiftModifier);
    QMouseEvent moved(QEvent::MouseMove, map.at(5, 2), Qt::NoButton, Qt::LeftButton,
                      Qt::ShiftModifier);
    QCoreApplication::sendEvent(map.area, &moved);
    map.release(5, 2, Qt::ShiftModifier);
    QVERIFY(range()[0] < zoomed[0]);

    // Switched off the map has them again, and the regions stay.
    map.button->click();
    const size_t regions = map.tool->regions().size();
    QCOMPARE(regions, size_t(1));
    map.drag(1.5, 0.5, 2.5, 2.5);
    mouse(map.area, QEvent::MouseButtonDblClick, map.at(4, 2));
    QCOMPARE(map.tool->regions().size(), regions);
    QVERIFY(pressed.count() > 0 && dragging.count() > 0 && doubleClicked.count() == 1);
    QVERIFY(!map.bar->isVisible());
}

void RegionsTest::selectsAndRemoves()
{
    const Map map;
    map.drag(0.5, 0.5, 3.5, 3.5);
    map.drag(2.5, 0.5, 5.5, 3.5);
    map.drag(6.5, 0.5, 7.5, 1.5);
    QCOMPARE(map.tool->selected(), 2); // the one just drawn
    map.click(3.3, 2);                 // the upper one of two
    QCOMPARE(map.tool->selected(), 1);
    map.click(1, 1);
    QCOMPARE(map.tool->selected(), 0);
    map.click(7, 3.5);
    QCOMPARE(map.tool->selected(), -1);
    QVERIFY(!find<QPushButton>(map.panel, "RegionRemoveB")->isEnabled());
    map.key(Qt::Key_Delete); // nothing is selected
    QCOMPARE(map.tool->regions().size(), size_t(3));

    map.choosePolygon(); // there a click is a corner
    map.click(3.3, 2, Qt::ControlModifier);
    QCOMPARE(map.tool->selected(), 1);
    map.key(Qt::Key_Delete);
    QCOMPARE(map.texts(), QString("1 Rectangle 0 0 4 4; 3 Rectangle 6 0 8 2"));
    map.click(3.3, 2, Qt::ControlModifier);
    find<QPushButton>(map.panel, "RegionRemoveB")->click();
    QCOMPARE(map.texts(), QString("3 Rectangle 6 0 8 2"));
    find<QComboBox>(map.panel, "RegionShape")->setCurrentIndex(0);
    map.drag(0.5, 0.5, 0.9, 0.9); // the first colour that is free
    QCOMPARE(map.texts(), QString("3 Rectangle 6 0 8 2; 1 Rectangle 0 0 1 1"));
}

void RegionsTest::thereAreFourteen()
{
    const Map map;
    QSignalSpy refused(map.tool, &orvel::RegionTool::refused);
    for (int i = 0; i < 16; ++i) {
        map.drag(i % 8 + 0.2, i / 8 + 0.2, i % 8 + 0.8, i / 8 + 0.8);
    }
    QCOMPARE(map.tool->regions().size(), size_t(14));
    QCOMPARE(refused.count(), 2);
    QVERIFY(map.texts().endsWith("14 Rectangle 5 1 6 2"));
    map.choosePolygon();
    map.click(1, 1);
    QCOMPARE(refused.count(), 3);
    QVERIFY(orvel::writeSession(map.sample.path("full.ini"), map.panel.state()));
    QCOMPARE(orvel::readSession(map.sample.path("full.ini")).state.texts.regions.size(),
             size_t(14));
}

void RegionsTest::outlinesShowOnAnyPalette()
{
    const Map map;
    const CColors colours;
    map.drag(1.2, 0.2, 3.8, 2.8);
    map.click(7.5, 3.5); // without the marks of a selected one
    const auto inks = [&map](const QColor &colour) {
        return pixelsNear(picture(map.area), colour);
    };
    for (const auto &[low, high] : {std::pair(2.0, 3.0), std::pair(-9.0, 2.5), std::pair(2.5, 99.0),
                                    std::pair(100.0, 101.0)}) { // many colours, and one
        map.map->setLimits(low, high);
        QVERIFY2(inks(colours.colour(1)) > 200, qPrintable(QString::number(low)));
        QVERIFY(inks(Qt::black) > 50 && inks(Qt::white) > 50);
    }
    // Also back in the panel; and it goes with its region.
    map.map->popDock();
    QCoreApplication::processEvents();
    const int docked = inks(colours.colour(1));
    map.tool->setRegions({});
    QVERIFY2(docked - inks(colours.colour(1)) > 100, qPrintable(QString::number(docked)));
}

void RegionsTest::plotsShowRegions()
{
    Map map;
    const CColors colours;
    perform(map.panel, "type HgAFrom 1; type HgATo 4; type HgABoxes 7");
    map.panel.calcMap();
    const auto inks = [&map](Displays::DispId id, const QColor &colour) {
        DispABase *panel = graph(map.panel, id);
        panel->area()->setFixedSize(300, 200);
        return pixelsOf(picture(panel->area()), colour);
    };
    const QColor whole = colours.colour(2);
    for (const Displays::DispId id : {Displays::DHistA, Displays::DDMutVorA}) {
        QCOMPARE(inks(id, colours.colour(1)), 0);
        QVERIFY(inks(id, whole) > 0);
    }
    map.drag(0.5, 0.5, 1.5, 1.5); // four pixels of valence 2
    for (const Displays::DispId id : {Displays::DHistA, Displays::DHistDMut, Displays::DDMutVorA}) {
        QVERIFY2(inks(id, colours.colour(1)) > 0, qPrintable(QString::number(id)));
    }
    // The whole map behind them has no colour, since a region may have any.
    QCOMPARE(inks(Displays::DHistA, whole) + inks(Displays::DDMutVorA, whole), 0);
    const QColor bars = QColor(Qt::darkGray).lighter(160);
    const int barPixels = inks(Displays::DHistA, bars); // and some in letters
    const int dotPixels = inks(Displays::DDMutVorA, Qt::lightGray);
    QVERIFY(barPixels > 500);
    QVERIFY(graph(map.panel, Displays::DHistA)->coord()->yMax() > 16);
    // Alone: the range is that of its counts, 1.1 times the four pixels.
    auto *alone = find<QCheckBox>(map.panel, "RegionsAlone");
    alone->click();
    QVERIFY(inks(Displays::DHistA, colours.colour(1)) > 0);
    QVERIFY(inks(Displays::DDMutVorA, colours.colour(1)) > 0);
    QVERIFY(inks(Displays::DHistA, bars) < 10);
    QCOMPARE(dotPixels - inks(Displays::DDMutVorA, Qt::lightGray), 4); // the dot of the right half
    QVERIFY(std::fabs(graph(map.panel, Displays::DHistA)->coord()->yMax() - 4.4) < 1e-12);
    // Where the plot shows another quantity or other boxes, so do the regions.
    perform(map.panel, "tick HgRatio1");
    QVERIFY(inks(Displays::DHistA, colours.colour(1)) > 0);
    // Without regions "alone" would show nothing.
    map.tool->removeSelected();
    QVERIFY(inks(Displays::DHistDMut, colours.colour(8)) > 0);
    QVERIFY(inks(Displays::DDMutVorA, whole) > 0);
}

void RegionsTest::tableOfStatistics()
{
    Map map;
    map.drag(2.5, 0.5, 4.5, 0.5 + 1); // x 2 to 4: valences 2, 2, 3 in two rows
    find<QPushButton>(map.panel, "RegionTableB")->click();
    auto *table = map.panel.findChild<RegionTable *>();
    QVERIFY(table && table->isVisible());
    auto *view = find<QTableWidget>(*table, "RegionView");
    const auto row = [view](const QString &quantity) {
        QStringList cells;
        for (int i = 0; i < view->rowCount(); ++i) {
            if (view->item(i, 1)->text() == quantity) {
                for (int column = 0; column < view->columnCount(); ++column) {
                    cells << view->item(i, column)->text();
                }
            }
        }
        return cells.join(' ');
    };
    QCOMPARE(view->rowCount(), 4); // both ratios, valence, amount
    // Mean (4 * 2 + 2 * 3) / 6; squares 4 / 9 * 2 + 1 / 9 * 4 = 4 / 3, over 5.
    QCOMPARE(row("Valence"), QString("1 Valence 2.33333 0.516398 2 6 6"));
    map.drag(7.5, 3.5, 7.9, 3.9);
    QCOMPARE(view->rowCount(), 8); // follows
    QCOMPARE(row("Valence"),       // one pixel has no deviation
             QString("1 Valence 2.33333 0.516398 2 6 6 2 Valence 3  3 1 1"));

    // A line chosen is a region selected, and the other way round.
    view->selectRow(1);
    QCOMPARE(map.tool->selected(), 0);
    map.click(7.7, 3.7);
    QCOMPARE(view->currentRow(), 4);
    find<QPushButton>(*table, "RegionCopyB")->click();
    const QStringList lines = QApplication::clipboard()->text().split('\n');
    QCOMPARE(lines.size(), 10);
    QCOMPARE(lines[0], QString("Region\tMap\tMean\tStd. dev.\tMedian\tFinite pixels\tPixels"));
    QVERIFY(lines[3].startsWith("1\tValence\t2.33333\t0.516398\t2\t6\t6"));

    const QString path = map.sample.path("table.csv");
    table->save(path);
    const auto maps = map.panel.results();
    QCOMPARE(map.sample.read("table.csv"),
             regionCsv(orvel::regionRows(*maps, 2, map.tool->regions()), map.tool->regions()));
    newMessages(map.panel);
    table->save(map.sample.path("no/table.csv"));
    QCOMPARE(newMessages(map.panel).join(' '),
             QString("Can't open the file [%1]").arg(map.sample.path("no/table.csv")));
    for (const QWidget *widget : table->findChildren<QWidget *>()) {
        if (widget->objectName().startsWith("Region")) {
            QVERIFY2(!widget->toolTip().isEmpty(), qPrintable(widget->objectName()));
        }
    }
}

void RegionsTest::sessionsKeepThem()
{
    const Map map;
    map.drag(2.5, 0.5, 4.5, 1.5);
    map.choosePolygon();
    for (const QPointF corner : {QPointF(1, 1), QPointF(5.35, 1), QPointF(5, 3.65)}) {
        map.click(corner.x(), corner.y());
    }
    map.key(Qt::Key_Enter);
    find<QCheckBox>(map.panel, "RegionsAlone")->click();
    const QString path = map.sample.path("regions.ini");
    QVERIFY(orvel::writeSession(path, map.panel.state()));
    const Map other;
    const_cast<FourPs &>(other.panel).openSession(path);
    QCOMPARE(other.texts(), map.texts());
    QVERIFY(other.texts().contains("2 Polygon 1 1 5.35 1 5 3.65"));
    QVERIFY(other.panel.state().view.regionsAlone);
    const_cast<FourPs &>(other.panel).setState({});
    QVERIFY(other.tool->regions().empty() && !other.panel.state().view.regionsAlone);
}

void RegionsTest::writesThemBesideTheResult()
{
    Map map;
    perform(map.panel, map.sample.in("load SaveFSelect %/out.dat"));
    map.panel.calcAndWrite();
    QVERIFY(!QFile::exists(map.sample.path("out_Regions.csv")));
    map.drag(2.5, 0.5, 4.5, 1.5);
    map.panel.calcAndWrite();
    QVERIFY(map.sample.read("out_Regions.csv").contains("1,1,Rectangle,Valence,2.3333333"));
}

void RegionsTest::otherMaps()
{
    // No map, no region; a smaller map keeps the regions, clipped where they are used.
    {
        FourPs empty;
        auto *area = window::map(empty, "ResultMap")->area();
        area->resize(160, 80);
        find<QToolButton>(empty, "RegionsB")->click();
        QTest::mousePress(area, Qt::LeftButton, Qt::NoModifier, {10, 10});
        QTest::mouseRelease(area, Qt::LeftButton, Qt::NoModifier, {90, 60});
        QVERIFY(empty.findChild<RegionPanel *>()->regions().empty());
    }
    Map map;
    map.drag(0.5, 0.5, 7.5, 3.5);
    map.sample.load(map.panel, 2, {0.8, 0.2, 0.8, 0.2});
    QCOMPARE(map.texts(), QString("1 Rectangle 0 0 8 4"));
    map.area->grab();
    const auto rows = orvel::regionRows(*map.panel.results(), 2, map.tool->regions());
    QCOMPARE(rows[0].found.pixels, qint64(4));
}

QTEST_MAIN(RegionsTest)

#include "tst_regions.moc"
