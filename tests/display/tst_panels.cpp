#include "display/DispABase.h"
#include "display/DispMBase.h"
#include "display/Displays.h"
#include "display/MarkLines.h"
#include "display/PlotFrame.h"
#include "display/PopBase.h"
#include "display/cBar.h"

#include <QAction>
#include <QBitmap>
#include <QContextMenuEvent>
#include <QGridLayout>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QWheelEvent>
#include <QtTest>

#include <cmath>

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

void mouse(QWidget *widget, QEvent::Type type, const QPointF &at,
           Qt::KeyboardModifiers modifiers = Qt::NoModifier,
           Qt::MouseButton button = Qt::LeftButton)
{
    const bool isMove = type == QEvent::MouseMove;
    QMouseEvent event(type, at, widget->mapToGlobal(at.toPoint()), isMove ? Qt::NoButton : button,
                      button, modifiers);
    QCoreApplication::sendEvent(widget, &event);
}

void drag(QWidget *widget, const QPointF &from, const QPointF &to,
          Qt::KeyboardModifiers modifiers = Qt::NoModifier, Qt::MouseButton button = Qt::LeftButton)
{
    mouse(widget, QEvent::MouseButtonPress, from, modifiers, button);
    mouse(widget, QEvent::MouseMove, to, modifiers, button);
    mouse(widget, QEvent::MouseButtonRelease, to, modifiers, button);
}

void wheel(QWidget *widget, const QPointF &at, const QPoint &delta)
{
    QWheelEvent event(at, widget->mapToGlobal(at.toPoint()), QPoint(), delta, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(widget, &event);
}

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

class PaintCounter : public QObject {
public:
    explicit PaintCounter(const QWidgetList &widgets)
    {
        for (QWidget *widget : widgets) {
            widget->installEventFilter(this);
        }
    }
    int count() const { return m_count; }

private:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        m_count += event->type() == QEvent::Paint || event->type() == QEvent::UpdateRequest;
        return false;
    }
    int m_count = 0;
};

} // namespace

class PanelsTest : public QObject {
    Q_OBJECT

private slots:
    void zoomsAboutPointer_data();
    void zoomsAboutPointer();
    void dragsWithModifiers();
    void doubleClickAsksForTheRange();
    void textsAroundSmallPlots_data();
    void textsAroundSmallPlots();
    void oddSizesAndRanges();
    void dragsMarkers();
    void popsOutAndBack();
    void restsWhenIdle();
    void displaysInTheirPlaces();
    void barLinesAreDragged();
    void barMenu();
    void mapLimitsAreTyped();
    void mapFollowsItsBar();
};

void PanelsTest::zoomsAboutPointer_data()
{
    QTest::addColumn<QPointF>("at");
    QTest::addColumn<int>("delta");
    QTest::addColumn<QVector<double>>("range");
    // The frame is 40..380 by 180..10: edge bands end at 74, 346, 163, 27.
    const double in = 1 / 1.1;
    const auto both = [](double f) { return QVector<double>{2 - 2 * f, 2 + 2 * f, 1 - f, 1 + f}; };
    QTest::newRow("in") << QPointF(210, 95) << 120 << both(in);
    QTest::newRow("out") << QPointF(210, 95) << -1 << both(1.1);
    QTest::newRow("no vertical step, rounded") << QPointF(209.5, 94.7) << 0 << both(in);
    QTest::newRow("left of the frame: y alone")
        << QPointF(5, 95) << 120 << QVector<double>{0, 4, 1 - in, 1 + in};
    QTest::newRow("below the frame: x alone")
        << QPointF(210, 190) << -120 << QVector<double>{2 - 2.2, 2 + 2.2, 0, 2};
    QTest::newRow("corner of the frame: both")
        << QPointF(40, 180) << 120 << QVector<double>{0, 4 * in, 0, 2 * in};
}

void PanelsTest::zoomsAboutPointer()
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
}

void PanelsTest::dragsWithModifiers()
{
    struct Case {
        int modifiers;
        Qt::MouseButton button;
        bool isPlain, pans;
    };
    const Case cases[] = {
        {Qt::NoModifier, Qt::LeftButton, true, false},
        {Qt::KeypadModifier, Qt::LeftButton, true, false}, // counts as none
        {Qt::ShiftModifier, Qt::LeftButton, false, true},
        {Qt::ControlModifier, Qt::LeftButton, false, false},
        {Qt::AltModifier, Qt::LeftButton, false, false},
        {Qt::ShiftModifier | Qt::ControlModifier, Qt::LeftButton, false, false},
        {Qt::NoModifier, Qt::RightButton, false, false},
        {Qt::ShiftModifier, Qt::RightButton, false, false},
    };
    for (const Case &c : cases) {
        Surface surface;
        const QSignalSpy pressed(&surface.area, &DispArea::mPressed);
        const QSignalSpy dragging(&surface.area, &DispArea::mDragging);
        const QSignalSpy released(&surface.area, &DispArea::mReleased);
        const QSignalSpy nowPos(&surface.area, &DispArea::nowPos);
        drag(&surface.area, {100, 100}, {150, 80}, Qt::KeyboardModifiers(c.modifiers), c.button);
        QVERIFY(isClose(surface.range(), c.pans ? QVector<double>{-0.5, 3.5, -0.2, 1.8}
                                                : QVector<double>{0, 4, 0, 2}));
        QVERIFY(pressed.count() == c.isPlain && dragging.count() == c.isPlain);
        QVERIFY(released.count() == 1 && nowPos.count() == 1);
        QCOMPARE(nowPos[0][0].toDouble(), 1.5); // before the pan moves the range
        QCOMPARE(nowPos[0][1].toDouble(), 1.2);
    }
}

void PanelsTest::doubleClickAsksForTheRange()
{
    Surface surface;
    QSignalSpy clicked(&surface.area, &DispArea::mDClicked);
    wheel(&surface.area, {30, 60}, {0, 120});
    QVERIFY(!isClose(surface.range(), {0, 4, 0, 2}));
    mouse(&surface.area, QEvent::MouseButtonDblClick, {60, 70});
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(surface.area.mouse()->doubleClickPosition(), QPoint(60, 70));
    QVERIFY(!surface.area.isRangeSet());
    surface.paint();
    QCOMPARE(surface.range(), (QVector<double>{0, 4, 0, 2}));
}

void PanelsTest::textsAroundSmallPlots_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QVector<double>>("range"); // xmin, ymin, xmax, ymax
    QTest::addColumn<QString>("xTitle");
    QTest::addColumn<QString>("yTitle");
    const QVector<double> energies = {7950, 0.7104, 9050, 1.9671};
    const QVector<double> valences = {0.32131, 0.03011, 2.92852, 1.33311};
    const QVector<double> counts = {-0.1, -1076.6, 3.1, 11845.2};
    const auto row = [](const char *name, const QSize &size, const QVector<double> &range,
                        const QString &xTitle, const QString &yTitle) {
        QTest::newRow(name) << size << range << xTitle << yTitle;
    };
    // Among ten graphs on screens of 1280 and 1366 pixels, one of two columns, in a low window.
    row("spectrum", {132, 70}, energies, "Eng.[eV]", "mut");
    row("spectrum, Japanese", {145, 68}, energies, "エネルギー[eV]", "μt");
    row("scatter", {132, 70}, valences, "Valence", "Thick.");
    row("scatter, Japanese", {132, 70}, valences, "価数", "膜厚");
    row("histogram", {145, 68}, counts, "Valence", "Num.");
    row("wide", {290, 68}, energies, "Eng.[eV]", "mut");
    row("high", {145, 260}, valences, "Valence", "Thick.");
}

/// Where an image is not white.
static QRegion inkOf(const QImage &image)
{
    return QRegion(QBitmap::fromImage(image.createMaskFromColor(qRgb(255, 255, 255))));
}

/// Numbers and titles keep apart, and the titles are no smaller than letters of 6 points.
void PanelsTest::textsAroundSmallPlots()
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
        return inkOf(image);
    };
    const QRect frame(QPoint(int(coord.frameX0()), int(coord.frameY1())),
                      QPoint(int(coord.frameX1()), int(coord.frameY0())));
    const QRegion numbers = ink([&](QPainter &p) { orvel::drawPlotFrame(p, coord, false); }) -
                            QRegion(frame.adjusted(-1, -1, 1, 1));
    const QRegion x = ink([&](QPainter &p) { orvel::drawAxisTitles(p, coord, xTitle, {}); });
    const QRegion y = ink([&](QPainter &p) { orvel::drawAxisTitles(p, coord, {}, yTitle); });
    QVERIFY(!numbers.isEmpty());
    const auto least = [&ink](const QString &text) {
        return ink([&text](QPainter &p) {
                   QFont font = p.font();
                   font.setPointSizeF(6.0);
                   p.setFont(font);
                   p.drawText(QRect(0, 0, 130, 60), Qt::AlignCenter, text);
               })
            .boundingRect()
            .size();
    };
    const QSize xLeast = least(xTitle);
    const QSize yLeast = least(yTitle).transposed();
    for (const auto &[title, wanted] : {std::pair(x, xLeast), std::pair(y, yLeast)}) {
        const QRect box = title.boundingRect();
        QVERIFY2(box.width() >= wanted.width() && box.height() >= wanted.height(),
                 qPrintable(QStringLiteral("%1 x %2 instead of %3 x %4")
                                .arg(box.width())
                                .arg(box.height())
                                .arg(wanted.width())
                                .arg(wanted.height())));
        QVERIFY(!title.intersects(frame));
        QVERIFY((title.translated(1, 0) & numbers).isEmpty());
        QVERIFY((title.translated(-1, 0) & numbers).isEmpty());
    }
}

void PanelsTest::oddSizesAndRanges()
{
    MarkLines lines;
    MarkLine marker;
    marker.setValue(0.5);
    lines.append(&marker);
    for (const QSize &size :
         {QSize(0, 0), QSize(1, 1), QSize(0, 50), QSize(300, 1), QSize(300, 200)}) {
        for (const double end : {0.0, -1.0, kInf, -kInf, kNan, 1e308}) {
            DispABase panel;
            panel.area()->setMinimumSize(0, 0);
            panel.resize(size);
            panel.area()->resize(size);
            panel.area()->setMarkLines(&lines);
            panel.setTitlesPainted(true, false);
            connect(&panel, &DispABase::draw, &panel, [&panel, end](QStylePainter *p) {
                panel.coord()->setFrameByMargins();
                panel.setInitialRange(0, end, end, 0);
                panel.setTitles(QStringLiteral("x"), QStringLiteral("y"));
                panel.drawFrame(p, true);
            });
            DispMBase map;
            map.area()->setMinimumSize(0, 0);
            map.bar()->setMinimumSize(0, 0);
            map.bar()->resize(size);
            map.setLimits(end, 0);
            panel.grab();
            panel.area()->grab();
            map.bar()->grab();
            for (QWidget *widget : QWidgetList{panel.area(), map.bar()}) {
                wheel(widget, {0, 0}, {0, -120});
                drag(widget, {0, 0}, {-500, 1e9}); // released outside
                drag(widget, {0, 0}, {5, 5}, Qt::ShiftModifier);
                widget->grab();
                mouse(widget, QEvent::MouseButtonDblClick, {0, 0});
                widget->grab();
            }
            QVERIFY(!panel.area()->mouse()->isHeld());
        }
    }
}

void PanelsTest::dragsMarkers()
{
    Surface surface;
    QLineEdit baseEdit(QStringLiteral("1"));
    QLineEdit offsetEdit(QStringLiteral("1"));
    MarkLine base(&baseEdit);
    MarkLine relative(&offsetEdit); // at x = 2, screen 200
    relative.setRelativeTo(0);
    MarkLines lines;
    lines.append(&base);
    lines.append(&relative);
    surface.area.setMarkLines(&lines);
    QSignalSpy moving(&lines, &MarkLines::moving);
    QSignalSpy newPos(&lines, &MarkLines::newPos);
    QCOMPARE(lines.position(1), 2.0);

    drag(&surface.area, {205, 150}, {350, 150});
    QCOMPARE(offsetEdit.text(), QStringLiteral("2.5")); // 3.5 less the base's 1
    QCOMPARE(offsetEdit.cursorPosition(), 0);
    QCOMPARE(baseEdit.text(), QStringLiteral("1"));
    QCOMPARE(moving.count(), 2); // move and release
    QCOMPARE(newPos.count(), 1);
    QVERIFY(!lines.isMoving());
    QCOMPARE(lines.selected(), -1);

    // The release went elsewhere; the next press ends the first move.
    mouse(&surface.area, QEvent::MouseButtonPress, {100, 60});
    mouse(&surface.area, QEvent::MouseButtonPress, {100, 60});
    QCOMPARE(newPos.count(), 2);
}

void PanelsTest::popsOutAndBack()
{
    for (const bool isMap : {false, true}) {
        DispABase graph;
        DispMBase map;
        QFrame &panel = isMap ? static_cast<QFrame &>(map) : graph;
        DispArea *area = isMap ? map.area() : graph.area();
        PopBase *window = isMap ? map.popBase() : graph.popBase();
        auto *frame = qobject_cast<QFrame *>(area->parentWidget());
        auto *button = panel.findChild<QPushButton *>("PopDockB");
        panel.show();
        QVERIFY(QTest::qWaitForWindowExposed(&panel));
        area->setInitialRange(0, 0, 4, 2);
        area->coord()->setRange(1, 1, 1.5, 1.25); // a zoom
        for (const bool byButton : {true, false}) {
            button->click();
            QVERIFY(QTest::qWaitForWindowExposed(window));
            QCOMPARE(frame->window(), window);
            QTRY_VERIFY(area->isVisible());
            if (byButton) {
                button->click();
            } else {
                window->close();
                window->close(); // a second request on the way
            }
            QVERIFY(!window->isVisible() && area->isVisible());
            QCOMPARE(frame->window(), &panel);
            QVERIFY(area->isRangeSet() && area->coord()->xMax() == 1.5);
        }
        button->click(); // and goes with its surface while popped out
    }
}

void PanelsTest::restsWhenIdle()
{
    DispABase panel;
    connect(&panel, &DispABase::draw, &panel,
            [&panel] { panel.setTitles(QStringLiteral("a"), QString()); });
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    const auto rests = [&] {
        // What is due may come late on a busy machine; what repaints for ever never rests.
        for (int attempt = 0; attempt < 10; ++attempt) {
            const PaintCounter counter({&panel, panel.area(), panel.popBase()});
            QTest::qWait(300);
            if (counter.count() == 0) {
                return true;
            }
        }
        return false;
    };
    QVERIFY2(rests(), "docked");
    panel.findChild<QPushButton *>("PopDockB")->click();
    QVERIFY(QTest::qWaitForWindowExposed(panel.popBase()));
    QVERIFY2(rests(), "popped out");
    const PaintCounter repaints({panel.area()});
    panel.update();
    QTRY_VERIFY(repaints.count() > 0); // the panel repaints its window
    QVERIFY2(rests(), "popped out, after an update");
}

void PanelsTest::displaysInTheirPlaces()
{
    Displays displays;
    auto *grid = displays.findChild<QGridLayout *>("DispL");
    QStringList found;
    for (int id = 0; id < 11; ++id) {
        DispABase *panel = displays.panel(Displays::DispId(id));
        int at[4] = {-1, -1, 0, 0}; // row, column and their spans
        if (grid->indexOf(panel) >= 0) {
            grid->getItemPosition(grid->indexOf(panel), &at[0], &at[1], &at[2], &at[3]);
        }
        found += QString("%1 %2 %3 %4").arg(panel->title()).arg(at[0]).arg(at[1]).arg(at[3]);
    }
    QCOMPARE(found.join('|'), "Ref1 0 0 1|Ref2 0 1 1|Ref3 0 2 1|Ref4 0 3 1|Target 1 0 1|Muts 1 1 2|"
                              "LCF vs MPS 1 3 1|Histgram of a 2 0 1|Histgram of dMut 2 1 1|"
                              "dMut/v or a 2 2 1|M2/M3 -1 -1 0");
}

void PanelsTest::barLinesAreDragged()
{
    cBar bar;
    bar.resize(40, 256);
    QSignalSpy newScale(&bar, &cBar::newScale);
    const auto stretchAfter = [&bar](int from, int to) {
        bar.grab();
        drag(&bar, {5, double(from)}, {5, double(to)});
        return std::make_pair(bar.scale().bottom(), bar.scale().top());
    };
    QCOMPARE(stretchAfter(100, 128), std::make_pair(0.0, 1536.0)); // near neither: the upper line
    QCOMPARE(newScale.count(), 1);
    QCOMPARE(bar.colourOf(0.5), QColor(Qt::white)); // the top is reached at half the range
    mouse(&bar, QEvent::MouseMove, {5, 200});       // not held
    QCOMPARE(newScale.count(), 1);
    QCOMPARE(stretchAfter(246, 192), std::make_pair(-768.0, 2304.0)); // 9 rows from the lower line
    QCOMPARE(stretchAfter(138, 160).first, -2304.0);      // 10 from the upper: the lower one again
    QVERIFY(std::isfinite(stretchAfter(50, 128).second)); // onto the other line
    mouse(&bar, QEvent::MouseButtonDblClick, {5, 50});
    QVERIFY(bar.scale().bottom() == 0 && bar.scale().top() == 768);
}

void PanelsTest::barMenu()
{
    for (const bool byKey : {false, true}) {
        cBar bar;
        bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bar));
        QSignalSpy newScale(&bar, &cBar::newScale);
        QSignalSpy chosen(&bar, &cBar::autoScaleChosen);
        if (!byKey) {
            mouse(&bar, QEvent::MouseButtonPress, {50, 50}, Qt::NoModifier, Qt::RightButton);
        }
        QContextMenuEvent request(byKey ? QContextMenuEvent::Keyboard : QContextMenuEvent::Mouse,
                                  {50, 50}, bar.mapToGlobal({50, 50}));
        QCoreApplication::sendEvent(&bar, &request);
        QPointer<QMenu> menu = bar.findChild<QMenu *>();
        QVERIFY(menu);
        QTRY_VERIFY(menu->isVisible());
        QVERIFY(bar.rect().contains(bar.mapFromGlobal(menu->pos())) || !byKey);
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
}

void PanelsTest::mapLimitsAreTyped()
{
    DispMBase map;
    auto *minimum = map.findChild<QLineEdit *>("MinV");
    auto *maximum = map.findChild<QLineEdit *>("MaxV");
    QSignalSpy newScale(map.bar(), &cBar::newScale);
    map.setLimits(1.23456789, 3);
    QCOMPARE(minimum->text(), QStringLiteral("1.23457"));
    QCOMPARE(newScale.count(), 0);
    const auto limitsAfter = [&](QLineEdit *edit, const QString &text) {
        edit->setText(text);
        QTest::keyClick(edit, Qt::Key_Return);
        return std::make_pair(map.bar()->scale().zMin(), map.bar()->scale().zMax());
    };
    QCOMPARE(limitsAfter(minimum, "2"), std::make_pair(2.0, 3.0));
    QCOMPARE(limitsAfter(maximum, "0.5"), std::make_pair(0.5, 2.0));
    QCOMPARE(limitsAfter(maximum, maximum->text()), std::make_pair(0.5, 2.0)); // on leaving it
    QCOMPARE(limitsAfter(minimum, "9"), std::make_pair(2.0, 9.0));
    QCOMPARE(minimum->text() + maximum->text(), QStringLiteral("29"));
    QCOMPARE(newScale.count(), 4);
    QCOMPARE(limitsAfter(minimum, "1,5 no number"), std::make_pair(0.0, 9.0));
    QVERIFY(std::isnan(limitsAfter(maximum, "nan").second));
    map.bar()->grab();
}

void PanelsTest::mapFollowsItsBar()
{
    DispMBase map;
    QSignalSpy draw(&map, &DispMBase::draw);
    map.resize(400, 300);
    map.show();
    QTRY_VERIFY(draw.count() > 0);
    drag(map.bar(), {5, 60}, {5, 90});
    QCoreApplication::processEvents();
    draw.clear();
    mouse(map.bar(), QEvent::MouseButtonDblClick, {5, 50});
    QTRY_VERIFY(draw.count() > 0);
}

QTEST_MAIN(PanelsTest)
#include "tst_panels.moc"
