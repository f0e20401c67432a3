// Regions under the fingers of a user: events go to the surface as the toolkit sends them.

#include "display/cBar.h"
#include "panel/PanelUndo.h"
#include "panel/RegionPanel.h"
#include "panel/RegionTable.h"
#include "session/RegionTexts.h"
#include "tests/panel/Window.h"

using namespace window;

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
        map->popDock();
        area->window()->show();
        area->setFixedSize(kWidth * kGrain, kHeight * kGrain);
        QCoreApplication::processEvents();
        button->click();
    }

    QPoint at(double x, double y) const // of the map, row 0 at the bottom
    {
        return {int(x * kGrain), int((kHeight - y) * kGrain)};
    }
    void drag(double x0, double y0, double x1, double y1) const
    {
        window::drag(area, at(x0, y0), at(x1, y1));
        QCoreApplication::processEvents();
    }
    void click(double x, double y, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        window::drag(area, at(x, y), at(x, y), modifiers);
    }
    void key(Qt::Key key) const { QTest::keyClick(area, key); }
    QString texts() const // with a star at the one that is selected
    {
        QStringList all;
        for (const orvel::Region &region : tool->regions()) {
            all << textOf(region) + (all.size() == tool->selected() ? "*" : "");
        }
        return all.join("; ");
    }

    Sample sample;
    Shown panel;
    DispMBase *map = window::map(panel, "ResultMap");
    DispArea *area = map->area();
    QToolButton *button = find<QToolButton>(panel, "RegionsB");
    RegionPanel *bar = panel.findChild<RegionPanel *>();
    orvel::RegionTool *tool = bar->tool();
    QComboBox *shape = find<QComboBox>(panel, "RegionShape"); // 0 rectangles, 1 polygons
};

} // namespace

class RegionsTest : public QObject {
    Q_OBJECT

private slots:
    void draws_data()
    {
        const QString triangle = "Shape 1,0.5 5,0.5 5,3.5 ";
        const QString made = "1 Polygon 1 0.5 5 0.5 5 3.5*";
        const QString three = "0.5,0.5,3.5,3.5 2.5,0.5,5.5,3.5 6.5,0.5,7.5,1.5 ";
        const QString a = "1 Rectangle 0 0 4 4";
        const QString b = "2 Rectangle 2 0 6 4";
        const QString c = "3 Rectangle 6 0 8 2";
        table<QString, QString>( // "x,y" a click, "x,y,x,y" a drag, keys and buttons by name
            {"steps", "regions"},
            {{"whole pixels that it touches", "1.5,0.5,2.5,2.5", "1 Rectangle 1 0 3 3*"},
             {"the other way", "2.5,2.5,1.5,0.5", "1 Rectangle 1 0 3 3*"},
             {"beyond the map", "6.5,2.5,12,9", "1 Rectangle 6 2 8 4*"},
             {"outside alone", "9,1,12,3", ""},
             {"a tremble is no drag", "3.5,1.5,3.6,1.6", ""},
             {"Escape while it is held", "held:1.5,1.5,4.5,3.5", ""},
             {"Enter", triangle + "Enter", made},
             {"on the first corner", triangle + "1.1,0.6", made},
             {"Escape, then another", "Shape 2,2 3,3 4,1 Escape Enter 1,0.5 5,0.5 5,3.5 Enter",
              made},
             {"Backspace", "Shape 1,0.5 5,0.5 2,2 Backspace 5,3.5 Enter", made},
             {"kept within the map", "Shape -1,1 9,1 9,5 Enter", "1 Polygon 0 1 8 1 8 4*"},
             {"without a pixel", "Shape 1,1 1.3,1 1.3,1.3 Enter", ""},
             {"the button gives it up", triangle + "Button Button Enter", ""},
             {"the last is selected", three, a + "; " + b + "; " + c + '*'},
             {"a click selects the upper", three + "3.3,2", a + "; " + b + "*; " + c},
             {"control selects anyway", three + "Shape ctrl:3.3,2 Delete", a + "; " + c},
             {"the first free colour", three + "3.3,2 Remove 0.5,0.5,0.9,0.9",
              a + "; " + c + "; 2 Rectangle 0 0 1 1*"},
             {"undone: a drawing", three + "Undo Undo", a},
             {"undone: a removal", three + "3.3,2 Delete Undo", a + "; " + b + "; " + c},
             {"redone: all", three + "3.3,2 Delete Undo Undo Undo Redo Redo Redo", a + "; " + c}});
    }

    void draws()
    {
        QFETCH(QString, steps);
        const Map map;
        const PanelUndo &undo = *map.panel.findChild<PanelUndo *>();
        const QMap<QString, Qt::Key> keys = {
            {"Enter", Qt::Key_Enter},
            {"Escape", Qt::Key_Escape},
            {"Backspace", Qt::Key_Backspace},
            {"Delete", Qt::Key_Delete},
        };
        const QMap<QString, std::function<void()>> others = {
            {"Button", [&] { map.button->click(); }},
            {"Remove", [&] { find<QPushButton>(map.panel, "RegionRemoveB")->click(); }},
            {"Shape", [&] { map.shape->setCurrentIndex(1 - map.shape->currentIndex()); }},
            {"Undo", [&] { undo.undoAction()->trigger(); }},
            {"Redo", [&] { undo.redoAction()->trigger(); }},
        };
        for (const QString &step : steps.split(' ', Qt::SkipEmptyParts)) {
            const QString word = step.section(':', 0, -2);
            const QStringList n = step.section(':', -1).split(',');
            const QPoint first = map.at(n[0].toDouble(), n.value(1).toDouble());
            if (keys.contains(step)) {
                map.key(keys[step]);
            } else if (others.contains(step)) {
                others[step]();
            } else if (word == "held") {
                mouse(map.area, QEvent::MouseButtonPress, first);
                mouse(map.area, QEvent::MouseMove, map.at(n[2].toDouble(), n[3].toDouble()));
                map.key(Qt::Key_Escape);
                mouse(map.area, QEvent::MouseButtonRelease, map.at(n[2].toDouble(), 3.5));
            } else if (n.size() == 4) {
                drag(map.area, first, map.at(n[2].toDouble(), n[3].toDouble()));
            } else {
                drag(map.area, first, first, word == "ctrl" ? Qt::ControlModifier : Qt::NoModifier);
            }
            QCoreApplication::processEvents();
        }
        QTEST(map.texts(), "regions");
        const bool isUndone = steps.endsWith("Undo") || steps.endsWith("Redo");
        QVERIFY(!isUndone ||
                (undo.redoAction()->text() + undo.undoAction()->text()).contains("do: regions"));
    }

    void mapEventsBelongToTheRegions()
    {
        const Map map;
        QSignalSpy pressed(map.map, &DispMBase::mPressed);
        QSignalSpy dragging(map.map, &DispMBase::mDragging);
        QSignalSpy doubleClicked(map.map, &DispMBase::mDClicked);
        const auto range = [&map] {
            map.area->grab();
            return rangeOf(*map.area->coord());
        };
        range();
        wheel(map.area, map.at(4, 2), {0, 120}); // still zooms
        const QString zoomed = range();
        QVERIFY(map.area->coord()->xMax() < kWidth);
        map.drag(1.5, 0.5, 2.5, 2.5);
        mouse(map.area, QEvent::MouseButtonDblClick, map.at(4, 2));
        mouse(map.area, QEvent::MouseButtonRelease, map.at(4, 2));
        QCOMPARE(range(), zoomed); // a double click would have reset it
        QCOMPARE(pressed.count() + dragging.count() + doubleClicked.count(), 0);
        drag(map.area, map.at(4, 2), map.at(5, 2), Qt::ShiftModifier);
        QVERIFY(range() != zoomed);
        // Switched off the map has them again, and the regions stay.
        const QString regions = map.texts();
        QVERIFY(!regions.isEmpty());
        map.button->click();
        map.drag(1.5, 0.5, 2.5, 2.5);
        mouse(map.area, QEvent::MouseButtonDblClick, map.at(4, 2));
        QCOMPARE(map.texts(), regions);
        QVERIFY(pressed.count() > 0 && dragging.count() > 0 && doubleClicked.count() == 1);
        QVERIFY(!map.bar->isVisible());
    }

    void thereAreFourteen()
    {
        const Map map;
        QSignalSpy refused(map.tool, &orvel::RegionTool::refused);
        for (int i = 0; i < 16; ++i) {
            const int row = i / 8;
            map.drag(i % 8 + 0.2, row + 0.2, i % 8 + 0.8, row + 0.8);
        }
        QVERIFY(map.texts().endsWith("14 Rectangle 5 1 6 2*"));
        QCOMPARE(refused.count(), 2);
    }

    void outlinesShowOnAnyPalette()
    {
        const Map map;
        const CColors colours;
        map.drag(1.2, 0.2, 3.8, 2.8);
        map.click(7.5, 3.5); // without the marks of a selected one
        const auto inks = [&map](const QColor &colour) {
            return pixelsNear(picture(map.area), colour, 59); // lines have few pixels exactly
        };
        for (const auto &[low, high] :
             {std::pair(2.0, 3.0), std::pair(-9.0, 2.5), std::pair(2.5, 99.0),
              std::pair(100.0, 101.0)}) { // many colours, and one
            map.map->setLimits(low, high);
            QVERIFY2(inks(colours.colour(1)) > 200, qPrintable(QString::number(low)));
            QVERIFY(inks(Qt::black) > 50 && inks(Qt::white) > 50);
        }
    }

    void plotsShowRegions()
    {
        Map map;
        const CColors colours;
        perform(map.panel, "type HgAFrom 1; type HgATo 4; type HgABoxes 7");
        map.panel.calcMap();
        const auto inks = [&map](Displays::DispId id, const QColor &colour) {
            graph(map.panel, id)->area()->setFixedSize(300, 200);
            return pixelsOf(picture(map.panel, id), colour);
        };
        const QColor whole = colours.colour(2);
        const QColor ours = colours.colour(1);
        map.drag(0.5, 0.5, 1.5, 1.5); // four pixels of valence 2
        for (const Displays::DispId id :
             {Displays::DHistA, Displays::DHistDMut, Displays::DDMutVorA}) {
            QVERIFY2(inks(id, ours) > 0, qPrintable(QString::number(id)));
        }
        // The whole map behind them has no colour, since a region may have any.
        QCOMPARE(inks(Displays::DHistA, whole) + inks(Displays::DDMutVorA, whole), 0);
        const QColor bars = QColor(Qt::darkGray).lighter(160);
        QVERIFY(inks(Displays::DHistA, bars) > 500);
        const ChCoord &coord = *graph(map.panel, Displays::DHistA)->coord();
        QVERIFY(coord.yMax() > 16);
        // Alone: the range is that of its counts, 1.1 times the four pixels.
        find<QCheckBox>(map.panel, "RegionsAlone")->click();
        QVERIFY(inks(Displays::DHistA, ours) > 0 && inks(Displays::DDMutVorA, ours) > 0);
        QVERIFY(inks(Displays::DHistA, bars) < 10);
        QVERIFY(std::fabs(coord.yMax() - 4.4) < 1e-12);
        // Without regions "alone" would show nothing.
        map.tool->removeSelected();
        QVERIFY(inks(Displays::DHistDMut, colours.colour(8)) > 0);
        QVERIFY(inks(Displays::DDMutVorA, whole) > 0);
    }

    void tableOfStatistics()
    {
        Map map;
        map.drag(2.5, 0.5, 4.5, 0.5 + 1); // x 2 to 4: valences 2, 2, 3 in two rows
        find<QPushButton>(map.panel, "RegionTableB")->click();
        auto *table = map.panel.findChild<RegionTable *>();
        QVERIFY(table && table->isVisible());
        auto *view = find<QTableWidget>(*table, "RegionView");
        const auto row = [view](int i) {
            QStringList cells;
            for (int column = 0; column < view->columnCount(); ++column) {
                cells << view->item(i, column)->text();
            }
            return cells.join(' ');
        };
        QCOMPARE(view->rowCount(), 4); // both ratios, valence, amount
        // Mean (4 * 2 + 2 * 3) / 6; squares 4 / 9 * 2 + 1 / 9 * 4 = 4 / 3, over 5.
        QCOMPARE(row(2), "1 Valence 2.33333 0.516398 2 6 6");
        map.drag(7.5, 3.5, 7.9, 3.9);
        QCOMPARE(view->rowCount(), 8);          // follows
        QCOMPARE(row(6), "2 Valence 3  3 1 1"); // one pixel has no deviation

        // A line chosen is a region selected, and the other way round.
        view->selectRow(1);
        QCOMPARE(map.tool->selected(), 0);
        map.click(7.7, 3.7);
        QCOMPARE(view->currentRow(), 4);
        find<QPushButton>(*table, "RegionCopyB")->click();
        const QString copied = QApplication::clipboard()->text();
        QVERIFY(copied.contains("\n1\tValence\t2.33333\t0.516398\t2\t6\t6\n"));

        const QString path = map.sample.path("table.csv");
        table->save(path);
        const auto maps = map.panel.results();
        QCOMPARE(map.sample.read("table.csv"),
                 regionCsv(orvel::regionRows(*maps, 2, map.tool->regions()), map.tool->regions()));
    }

    void sessionsKeepThem()
    {
        Map map;
        map.drag(2.5, 0.5, 4.5, 1.5);
        find<QCheckBox>(map.panel, "RegionsAlone")->click();
        map.panel.saveSession(map.sample.path("regions.ini"));
        map.panel.setState({});
        QVERIFY(map.texts().isEmpty() && !map.panel.state().view.regionsAlone);
        map.panel.openSession(map.sample.path("regions.ini"));
        QCOMPARE(map.texts(), "1 Rectangle 2 0 5 2");
        QVERIFY(map.panel.state().view.regionsAlone);
    }

    void writesThemBesideTheResult()
    {
        Map map;
        perform(map.panel, map.sample.in("load SaveFSelect %/out.dat"));
        map.panel.calcAndWrite();
        QVERIFY(!QFile::exists(map.sample.path("out_Regions.csv")));
        map.drag(2.5, 0.5, 4.5, 1.5);
        map.panel.calcAndWrite();
        QVERIFY(map.sample.read("out_Regions.csv").contains("1,1,Rectangle,Valence,2.3333333"));
    }

    void otherMaps()
    {
        // A smaller map keeps the regions, clipped where they are used.
        Map map;
        map.drag(0.5, 0.5, 7.5, 3.5);
        map.sample.load(map.panel, 2, {0.8, 0.2, 0.8, 0.2});
        QVERIFY(map.texts().startsWith("1 Rectangle 0 0 8 4"));
        map.area->grab();
        const auto rows = orvel::regionRows(*map.panel.results(), 2, map.tool->regions());
        QCOMPARE(rows[0].found.pixels, qint64(4));
    }
};

QTEST_MAIN(RegionsTest)

#include "tst_regions.moc"
