#include "display/DispABase.h"
#include "display/DispMBase.h"
#include "display/MarkLines.h"
#include "display/PlotFrame.h"
#include "display/PopBase.h"
#include "display/cBar.h"
#include "tests/display/Gui.h"

#include <cmath>

using namespace window;

namespace {

/// A surface of 400 x 200 whose frame leaves no margins, or the usual ones, with range 0..4, 0..2.
struct Surface {
    explicit Surface(bool margins = false)
    {
        area.resize(400, 200);
        QObject::connect(&area, &DispArea::draw, &area, [this, margins] {
            if (margins) {
                area.coord()->setFrameByMargins();
            }
            area.setInitialRange(0, 0, 4, 2);
        });
        paint();
    }
    void paint() { area.grab(); }
    QVector<double> range()
    {
        const ChCoord &c = *area.coord();
        return {c.xMin(), c.xMax(), c.yMin(), c.yMax()};
    }

    DispArea area;
};

bool isClose(const QVector<double> &a, const QVector<double> &b)
{
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](double x, double y) {
               return std::fabs(x - y) < 1e-12; // a few roundings of numbers below 10
           });
}

} // namespace

class PanelsTest : public QObject {
    Q_OBJECT

private slots:
    void zoomsAboutPointer_data()
    {
        // The frame is 40..380 by 180..10: edge bands end at 74, 346, 163, 27.
        const double in = 1 / 1.1;
        const auto both = [](double f) {
            return QVector<double>{2 - 2 * f, 2 + 2 * f, 1 - f, 1 + f};
        };
        table<QPointF, int, QVector<double>>(
            {"at", "delta", "range"},
            {{"in", {210, 95}, 120, both(in)},
             {"no vertical step, rounded", {209.5, 94.7}, 0, both(in)},
             {"left of the frame: y alone", {5, 95}, 120, {0, 4, 1 - in, 1 + in}},
             {"below the frame: x alone", {210, 190}, -120, {2 - 2.2, 2 + 2.2, 0, 2}},
             {"corner of the frame: both", {40, 180}, 120, {0, 4 * in, 0, 2 * in}}});
    }

    void zoomsAboutPointer()
    {
        QFETCH(QPointF, at);
        QFETCH(int, delta);
        QFETCH(QVector<double>, range);
        Surface surface(true);
        wheel(&surface.area, at, QPoint(120, delta));
        QVERIFY(isClose(surface.range(), range));
        QCOMPARE(surface.area.mouse()->position(), QPoint(qRound(at.x()), qRound(at.y())));
        surface.paint();
        QVERIFY(isClose(surface.range(), range)); // outlives a repaint
        QSignalSpy clicked(&surface.area, &DispArea::mDClicked);
        mouse(&surface.area, QEvent::MouseButtonDblClick, at);
        surface.paint();
        QVERIFY(isClose(surface.range(), {0, 4, 0, 2}) && clicked.count() == 1);
    }

    void dragsWithModifiers_data()
    {
        table<int, bool, bool, bool>({"modifiers", "isRight", "isPlain", "pans"},
                                     {{"none", Qt::NoModifier, false, true, false},
                                      {"shift", Qt::ShiftModifier, false, false, true},
                                      {"control", Qt::ControlModifier, false, false, false},
                                      {"right", Qt::NoModifier, true, false, false}});
    }

    void dragsWithModifiers()
    {
        QFETCH(int, modifiers);
        QFETCH(bool, isRight);
        QFETCH(bool, isPlain);
        QFETCH(bool, pans);
        Surface surface;
        const QSignalSpy pressed(&surface.area, &DispArea::mPressed);
        const QSignalSpy dragging(&surface.area, &DispArea::mDragging);
        const QSignalSpy released(&surface.area, &DispArea::mReleased);
        const QSignalSpy nowPos(&surface.area, &DispArea::nowPos);
        drag(&surface.area, {100, 100}, {150, 80}, Qt::KeyboardModifiers(modifiers),
             isRight ? Qt::RightButton : Qt::LeftButton);
        QVERIFY(isClose(surface.range(), pans ? QVector<double>{-0.5, 3.5, -0.2, 1.8}
                                              : QVector<double>{0, 4, 0, 2}));
        QVERIFY(pressed.count() == isPlain && dragging.count() == isPlain && released.count() == 1);
        QCOMPARE(nowPos.value(0), QVariantList({1.5, 1.2})); // before the pan moves the range
    }

    void textsAroundSmallPlots_data()
    {
        const QVector<double> energies = {7950, 0.7104, 9050, 1.9671}; // xmin, ymin, xmax, ymax
        const QVector<double> valences = {0.32131, 0.03011, 2.92852, 1.33311};
        const QVector<double> counts = {-0.1, -1076.6, 3.1, 11845.2};
        // Among ten graphs on screens of 1280 and 1366 pixels, one of two columns, in a low window.
        table<QSize, QVector<double>, QString, QString>(
            {"size", "range", "xTitle", "yTitle"},
            {{"spectrum", {132, 70}, energies, "Eng.[eV]", "mut"},
             {"spectrum, Japanese", {145, 68}, energies, "エネルギー[eV]", "μt"},
             {"histogram", {145, 68}, counts, "Valence", "Num."},
             {"high", {145, 260}, valences, "Valence", "Thick."}});
    }

    void textsAroundSmallPlots()
    {
        QFETCH(QSize, size);
        QFETCH(QVector<double>, range);
        QFETCH(QString, xTitle);
        QFETCH(QString, yTitle);
        DispArea area;
        area.setMinimumSize(0, 0);
        area.resize(size);
        connect(&area, &DispArea::draw, &area, [&area] { area.coord()->setFrameByMargins(); });
        area.grab();
        ChCoord &coord = *area.coord();
        coord.setRange(range[0], range[1], range[2], range[3]);
        const auto ink = [&size](const std::function<void(QPainter &)> &paint) {
            QImage image(size, QImage::Format_RGB32);
            image.fill(Qt::white);
            QPainter painter(&image);
            paint(painter);
            painter.end();
            return QRegion(QBitmap::fromImage(image.createMaskFromColor(qRgb(255, 255, 255))));
        };
        const QRect frame(QPoint(int(coord.frameX0()), int(coord.frameY1())),
                          QPoint(int(coord.frameX1()), int(coord.frameY0())));
        const QRegion numbers = ink([&](QPainter &p) { orvel::drawPlotFrame(p, coord, false); }) -
                                QRegion(frame.adjusted(-1, -1, 1, 1));
        QVERIFY(!numbers.isEmpty());
        for (const bool isX : {true, false}) {
            const QRegion title = ink([&](QPainter &p) {
                orvel::drawAxisTitles(p, coord, isX ? xTitle : "", isX ? "" : yTitle);
            });
            const QRegion wide = title | title.translated(1, 0) | title.translated(-1, 0);
            QVERIFY(!title.isEmpty() && !title.intersects(frame) && (wide & numbers).isEmpty());
        }
    }

    void dragsMarkers()
    {
        Surface surface;
        QLineEdit baseEdit(QString("1"));
        QLineEdit offsetEdit(QString("1"));
        MarkLine base(&baseEdit);
        MarkLine relative(&offsetEdit); // at x = 2, screen 200
        relative.setRelativeTo(0);
        MarkLines lines;
        lines.append(&base);
        lines.append(&relative);
        surface.area.setMarkLines(&lines);
        QSignalSpy moving(&lines, &MarkLines::moving);
        QSignalSpy newPos(&lines, &MarkLines::newPos);
        drag(&surface.area, {205, 150}, {350, 150});
        QCOMPARE(offsetEdit.text(), "2.5"); // 3.5 less the base's 1
        QCOMPARE(baseEdit.text(), "1");
        QCOMPARE(moving.count(), 2); // move and release
        QVERIFY(newPos.count() == 1 && !lines.isMoving() && lines.selected() == -1);
    }

    void popsOutAndBackAndRests()
    {
        DispABase panel;
        connect(&panel, &DispABase::draw, &panel, [&panel] { panel.setTitles("a", QString()); });
        const QWidget *window = panel.popBase();
        auto *button = panel.findChild<QPushButton *>("PopDockB");
        panel.show();
        QVERIFY(QTest::qWaitForWindowExposed(&panel));
        QVERIFY2(rests(), "docked");
        panel.area()->setInitialRange(0, 0, 4, 2);
        panel.coord()->setRange(1, 1, 1.5, 1.25); // a zoom
        button->click();
        QTRY_VERIFY(panel.area()->isVisible() && panel.area()->window() == window);
        QVERIFY2(rests(), "popped out");
        const PaintCounter repaints;
        panel.update();
        QTRY_VERIFY(repaints.count > 0); // the panel repaints its window
        QVERIFY2(rests(), "popped out, after an update");
        panel.popBase()->close();
        QVERIFY(!window->isVisible() && panel.area()->isVisible());
        QVERIFY(panel.area()->window() == &panel && panel.coord()->xMax() == 1.5);
        button->click(); // and goes with its surface while popped out
    }

    void barLinesAreDragged()
    {
        cBar bar;
        bar.resize(40, 256);
        QSignalSpy newScale(&bar, &cBar::newScale);
        const auto stretchAfter = [&bar](int from, int to) {
            bar.grab();
            drag(&bar, {5, double(from)}, {5, double(to)});
            return std::make_pair(bar.scale().bottom(), bar.scale().top());
        };
        QCOMPARE(stretchAfter(100, 128),
                 std::make_pair(0.0, 1536.0)); // near neither: the upper line
        QCOMPARE(newScale.count(), 1);
        QCOMPARE(bar.colourOf(0.5), QColor(Qt::white)); // the top is reached at half the range
        QCOMPARE(stretchAfter(246, 192),
                 std::make_pair(-768.0, 2304.0));        // 9 rows from the lower line
        QCOMPARE(stretchAfter(138, 160).first, -2304.0); // 10 from the upper: the lower one again
        mouse(&bar, QEvent::MouseButtonDblClick, {5, 50});
        QVERIFY(bar.scale().bottom() == 0 && bar.scale().top() == 768);
    }

    void barMenu()
    {
        cBar bar;
        bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bar));
        QSignalSpy newScale(&bar, &cBar::newScale);
        QSignalSpy chosen(&bar, &cBar::autoScaleChosen);
        mouse(&bar, QEvent::MouseButtonPress, {50, 50}, Qt::NoModifier, Qt::RightButton);
        QContextMenuEvent request(QContextMenuEvent::Mouse, {50, 50}, bar.mapToGlobal({50, 50}));
        QCoreApplication::sendEvent(&bar, &request);
        QPointer<QMenu> menu = bar.findChild<QMenu *>();
        QTRY_VERIFY(menu && menu->isVisible());
        mouse(&bar, QEvent::MouseMove, {50, 90}, Qt::NoModifier, Qt::RightButton);
        QCOMPARE(newScale.count(), 0); // the press is over
        const QList<QAction *> actions = menu->actions();
        QCOMPARE(actions.size(), 15); // palettes, separator, two more
        for (const int i : {11, 13, 14}) {
            actions[i]->trigger();
        }
        QVERIFY(bar.scale().type() == 11 && bar.isInverted() && !bar.isAutoScale());
        QVERIFY(newScale.count() >= 2 && chosen.count() == 1);
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return); // the first palette, by keys alone
        QCOMPARE(bar.scale().type(), 0);
        QTRY_VERIFY(!menu);
    }

    void mapLimitsAreTyped()
    {
        DispMBase map;
        auto *minimum = map.findChild<QLineEdit *>("MinV");
        auto *maximum = map.findChild<QLineEdit *>("MaxV");
        QSignalSpy newScale(map.bar(), &cBar::newScale);
        map.setLimits(1.23456789, 3);
        QCOMPARE(minimum->text(), "1.23457");
        QCOMPARE(newScale.count(), 0);
        const auto limitsAfter = [&](QLineEdit *edit, const QString &text) {
            edit->setText(text);
            QTest::keyClick(edit, Qt::Key_Return);
            const orvel::ColourScale &scale = map.bar()->scale();
            return QString("%1 %2 shown %3 %4")
                .arg(scale.zMin())
                .arg(scale.zMax())
                .arg(minimum->text(), maximum->text());
        };
        QCOMPARE(limitsAfter(minimum, "2"), "2 3 shown 2 3");
        QCOMPARE(limitsAfter(maximum, "0.5"), "0.5 2 shown 0.5 2");
        QCOMPARE(newScale.count(), 2);
        QCOMPARE(limitsAfter(minimum, "no number"), "0 2 shown no number 2");
    }

    void mapFollowsItsBar()
    {
        DispMBase map;
        QSignalSpy draw(&map, &DispMBase::draw);
        map.show();
        QTRY_VERIFY(draw.count() > 0);
        draw.clear();
        drag(map.bar(), {5, 60}, {5, 90});
        QTRY_VERIFY(draw.count() > 0);
    }
};

QTEST_MAIN(PanelsTest)
#include "tst_panels.moc"
