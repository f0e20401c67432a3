#include "display/DispABase.h"
#include "display/DispMBase.h"
#include "display/Displays.h"
#include "display/Histgram.h"
#include "display/MarkLines.h"
#include "display/PopBase.h"
#include "display/cBar.h"

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QContextMenuEvent>
#include <QGridLayout>
#include <QLabel>
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

template <class Panel> QFrame *surfaceFrame(Panel &panel)
{
    // Not a child any more while it is popped out.
    return qobject_cast<QFrame *>(panel.area()->parentWidget());
}

QMenu *menuOf(cBar &bar)
{
    const QList<QMenu *> menus = bar.findChildren<QMenu *>();
    return menus.isEmpty() ? nullptr : menus.last();
}

} // namespace

class PanelsTest : public QObject {
    Q_OBJECT

private slots:
    void forms();
    void zoomsAboutPointer_data();
    void zoomsAboutPointer();
    void dragsWithModifiers();
    void doubleClickAsksForTheRange();
    void oddSizesAndRanges();
    void picksMarkers();
    void dragsMarkers();
    void panelShowsPositionAndTitles();
    void popsOutAndBack();
    void restsWhenIdle();
    void displaysInTheirPlaces();
    void displaysCarryIdentities();
    void barLimits();
    void barLinesAreDragged();
    void barMenu();
    void mapLimitsAreTyped();
    void histogramFields();
};

void PanelsTest::forms()
{
    DispABase graph;
    DispMBase map;
    const auto labels = [](const QWidget &panel) {
        QStringList texts = {panel.objectName(), panel.windowTitle()};
        for (const auto *label : panel.findChildren<QLabel *>()) {
            texts += label->objectName() + '=' + label->text();
        }
        for (const auto *field : panel.findChildren<QLineEdit *>()) {
            texts += field->objectName() + (field->styleSheet().isEmpty() ? "" : " read out");
        }
        texts.sort();
        return texts.join('|');
    };
    QCOMPARE(labels(graph), QStringLiteral("DispABase|Frame|Title=TextLabel|XPos read out|"
                                           "XTitle=x-title|YPos read out|YTitle=y-title|"
                                           "label= x:|label_2=y:"));
    QCOMPARE(labels(map), QStringLiteral("DispMBase|Frame|MaxV|MinV|Title=TextLabel|Val read out|"
                                         "XPos read out|YPos read out|label=  x:|label_2=  y:|"
                                         "label_3=  Val:"));
    for (const QWidget *panel : {static_cast<QWidget *>(&graph), static_cast<QWidget *>(&map)}) {
        QCOMPARE(panel->findChild<QPushButton *>("PopDockB")->text(), QStringLiteral("P/D"));
        QVERIFY(panel->findChild<DispArea *>("DispA") && panel->findChild<QFrame *>("DispABFrame"));
    }
}

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
    // Nobody sets a range: 0 to 1.
    DispArea lonely;
    QVERIFY(!lonely.wasPainted());
    lonely.grab();
    QVERIFY(lonely.wasPainted());
    QCOMPARE(lonely.coord()->xMax(), 1.0);
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

void PanelsTest::picksMarkers()
{
    // Vertical ones at x = 100, 100, 140 and a horizontal one at y = 150; the last is never near.
    Surface surface;
    MarkLine markers[] = {MarkLine(nullptr, 0), MarkLine(nullptr, 0), MarkLine(nullptr, 0),
                          MarkLine(nullptr, 1), MarkLine(nullptr, 0)};
    const char *const texts[] = {"1", "1", "1.4", "0.5", "nan"};
    MarkLines lines;
    for (int i = 0; i < 5; ++i) {
        markers[i].edit()->setText(QString(texts[i]));
        lines.append(&markers[i]);
    }
    markers[1].setRelativeTo(77); // no such line: it stands on its own
    surface.area.setMarkLines(&lines);
    const std::pair<QPoint, int> cases[] = {
        {{81, 20}, 0},   {{80, 20}, -1}, // 20 pixels are too far,
        {{120, 20}, -1}, {{110, 20}, 0}, // from both sides; the first on a tie
        {{125, 20}, 2},                  // the nearest, although later
        {{300, 131}, 3}, {{300, 130}, -1},
    };
    for (const auto &[at, selected] : cases) {
        mouse(&surface.area, QEvent::MouseButtonPress, at);
        QCOMPARE(lines.selected(), selected);
        QCOMPARE(lines.isMoving(), selected >= 0);
        mouse(&surface.area, QEvent::MouseButtonRelease, {-1000, -1000});
        for (int i = 0; i < 5; ++i) {
            markers[i].edit()->setText(QString(texts[i]));
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
    MarkLine across(nullptr, 1);
    across.setValue(1.8); // screen y 20
    MarkLines lines;
    lines.append(&base);
    lines.append(&relative);
    lines.append(&across);
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

    drag(&surface.area, {300, 15}, {300, 133});
    QCOMPARE(across.edit()->text(), QStringLiteral("0.67"));
    drag(&surface.area, {250, 60}, {20, 60}); // away from every marker
    QCOMPARE(newPos.count(), 2);
    drag(&surface.area, {100, 60}, {20, 60}, Qt::ControlModifier);
    QCOMPARE(baseEdit.text(), QStringLiteral("1"));
    // The release went elsewhere; the next press ends the first move.
    mouse(&surface.area, QEvent::MouseButtonPress, {100, 60});
    mouse(&surface.area, QEvent::MouseButtonPress, {100, 60});
    QCOMPARE(newPos.count(), 3);
    lines.clear();
    mouse(&surface.area, QEvent::MouseButtonRelease, {100, 60});
    QCOMPARE(newPos.count(), 3);
}

void PanelsTest::panelShowsPositionAndTitles()
{
    DispABase panel;
    auto *x = panel.findChild<QLineEdit *>("XPos");
    panel.receiveNowPos(7112.123456, -1e-7);
    QCOMPARE(x->text() + ' ' + panel.findChild<QLineEdit *>("YPos")->text(),
             QStringLiteral("7112.12 -1e-07"));
    QCOMPARE(x->cursorPosition(), 0);
    const auto titles = [&panel] {
        return panel.findChild<QLabel *>("XTitle")->text() + '|' +
               panel.findChild<QLabel *>("YTitle")->text();
    };
    panel.setTitles(QStringLiteral("Eng."), QStringLiteral("mut"));
    QCOMPARE(titles(), QStringLiteral("Eng.|mut"));
    panel.setTitlesPainted(true, false);
    QCOMPARE(titles(), QStringLiteral("|mut"));
    panel.area()->setInitialRange(1, 2, 3, 4);
    panel.setInitialRange(5, 6, 7, 8);
    QCOMPARE(panel.coord()->xMin(), 1.0);
    panel.clearScale();
    panel.setInitialRange(5, 6, 7, 8);
    QCOMPARE(panel.coord()->xMin(), 5.0);
}

void PanelsTest::popsOutAndBack()
{
    for (const bool isMap : {false, true}) {
        DispABase graph;
        DispMBase map;
        QFrame &panel = isMap ? static_cast<QFrame &>(map) : graph;
        DispArea *area = isMap ? map.area() : graph.area();
        PopBase *window = isMap ? map.popBase() : graph.popBase();
        QFrame *frame = isMap ? surfaceFrame(map) : surfaceFrame(graph);
        auto *grid = panel.findChild<QGridLayout *>("gridLayout");
        auto *button = panel.findChild<QPushButton *>("PopDockB");
        QVERIFY(window->findChild<QGridLayout *>("PopBaseLayout"));
        panel.show();
        QVERIFY(QTest::qWaitForWindowExposed(&panel));
        area->setInitialRange(0, 0, 4, 2);
        area->coord()->setRange(1, 1, 1.5, 1.25); // a zoom
        for (const bool byButton : {true, false}) {
            button->click();
            QVERIFY(window->isVisible());
            QVERIFY(QTest::qWaitForWindowExposed(window));
            QCOMPARE(frame->window(), window);
            QTRY_VERIFY(area->isVisible());
            QCOMPARE(grid->indexOf(frame), -1);
            QCOMPARE(area->coord()->xMax(), 1.5);
            if (byButton) {
                button->click();
            } else {
                window->close();
                window->close(); // a second request on the way
            }
            QVERIFY(!window->isVisible());
            QCOMPARE(frame->window(), &panel);
            QVERIFY(area->isVisible());
            QCOMPARE(grid->itemAtPosition(1, 0)->widget(), frame);
            QCOMPARE(area->coord()->xMax(), 1.5);
            QVERIFY(area->isRangeSet());
        }
        button->click(); // and goes with its surface while popped out
    }
}

void PanelsTest::restsWhenIdle()
{
    for (const bool isMap : {false, true}) {
        DispABase graph;
        DispMBase map;
        QFrame &panel = isMap ? static_cast<QFrame &>(map) : graph;
        DispArea *area = isMap ? map.area() : graph.area();
        PopBase *window = isMap ? map.popBase() : graph.popBase();
        connect(&graph, &DispABase::draw, &graph,
                [&graph] { graph.setTitles(QStringLiteral("a"), QString()); });
        panel.show();
        QVERIFY(QTest::qWaitForWindowExposed(&panel));
        const auto settle = [] { QTest::qWait(150); };
        const auto rests = [&] {
            settle();
            const PaintCounter counter({&panel, area, window});
            QTest::qWait(300);
            return counter.count() == 0;
        };
        QVERIFY2(rests(), "docked");
        panel.findChild<QPushButton *>("PopDockB")->click();
        QVERIFY(QTest::qWaitForWindowExposed(window));
        QVERIFY2(rests(), "popped out");
        const PaintCounter repaints({area});
        panel.update();
        QTRY_VERIFY(repaints.count() > 0); // the panel repaints its window
        QVERIFY2(rests(), "popped out, after an update");
        panel.hide();
        settle();
        const PaintCounter recolours({area});
        emit map.bar()->newScale(); // a hidden panel's window too
        QTRY_VERIFY(!isMap || recolours.count() > 0);
        panel.show();
        window->close();
        QVERIFY2(rests(), "docked again");
    }
}

void PanelsTest::displaysInTheirPlaces()
{
    Displays displays;
    displays.show();
    QVERIFY(displays.findChild<QGridLayout *>("gridLayout"));
    auto *grid = displays.findChild<QGridLayout *>("DispL");
    QStringList found;
    for (int id = 0; id < 11; ++id) {
        DispABase *panel = displays.panel(Displays::DispId(id));
        int at[4] = {-1, -1, 0, 0}; // row, column and their spans
        if (grid->indexOf(panel) >= 0) {
            grid->getItemPosition(grid->indexOf(panel), &at[0], &at[1], &at[2], &at[3]);
        }
        QCOMPARE(panel->isVisible(), at[0] >= 0);
        found += QStringLiteral("%1 %2 %3 %4 %5")
                     .arg(panel->title())
                     .arg(at[0])
                     .arg(at[1])
                     .arg(at[2])
                     .arg(at[3]);
        panel->setTitles(QStringLiteral("painted"), QStringLiteral("painted"));
        QCOMPARE(panel->findChild<QLabel *>("XTitle")->text(), QString());
    }
    QCOMPARE(found.join('|'),
             QStringLiteral("Ref1 0 0 1 1|Ref2 0 1 1 1|Ref3 0 2 1 1|Ref4 0 3 1 1|Target 1 0 1 1|"
                            "Muts 1 1 1 2|LCF vs MPS 1 3 1 1|Histgram of a 2 0 1 1|"
                            "Histgram of dMut 2 1 1 1|dMut/v or a 2 2 1 1|M2/M3 -1 -1 0 0"));
}

void PanelsTest::displaysCarryIdentities()
{
    Displays displays;
    QVector<QPair<int, DispABase *>> drawn;
    connect(&displays, &Displays::draw, &displays, [&](Displays::DispId id, DispABase *panel) {
        drawn.append({int(id), panel});
    });
    QSignalSpy pressed(&displays, &Displays::mPressed);
    QSignalSpy dragging(&displays, &Displays::mDragging);
    QSignalSpy released(&displays, &Displays::mReleased);
    DispABase *muts = displays.panel(Displays::DMuts);
    muts->area()->grab();
    QCOMPARE(drawn, (QVector<QPair<int, DispABase *>>{{5, muts}}));
    // One emission for each position in the list.
    displays.append(muts, QStringLiteral("again"), Displays::DHistA, -1, -1, 1, 1);
    drawn.clear();
    muts->area()->grab();
    QCOMPARE(drawn, (QVector<QPair<int, DispABase *>>{{5, muts}, {7, muts}}));
    drag(muts->area(), {20, 20}, {30, 30});
    QVERIFY(pressed.count() == 1 && dragging.count() == 1 && released.count() == 1);
}

void PanelsTest::barLimits()
{
    cBar bar;
    QCOMPARE(bar.objectName() + bar.windowTitle(), QStringLiteral("cBarcBar"));
    QCOMPARE(bar.size(), QSize(400, 300));
    QVERIFY(bar.maxCBarTypes() == 12 && bar.scale().size() == 768 && bar.isAutoScale());
    QSignalSpy newScale(&bar, &cBar::newScale);
    bar.setLimits(0, 1);
    QCOMPARE(bar.colourOf(1), QColor(Qt::white));
    bar.setLimits(4, 2);
    bar.setInvertCBar(true);
    bar.setAutoScale(false);
    QCOMPARE(newScale.count(), 0);
    bar.checkLimits();
    QCOMPARE(newScale.count(), 1);
    QVERIFY(bar.scale().zMin() == 2 && bar.scale().zMax() == 4);
    QCOMPARE(bar.colourOf(4), QColor(Qt::black));
}

void PanelsTest::barLinesAreDragged()
{
    cBar bar;
    bar.resize(40, 256);
    bar.grab(); // lines at rows 0 and 255
    QSignalSpy newScale(&bar, &cBar::newScale);
    drag(&bar, {5, 100}, {5, 128}); // near neither: the upper one
    QCOMPARE(newScale.count(), 1);
    QCOMPARE(bar.scale().bottom(), 0.0);
    QCOMPARE(bar.scale().top(), 1536.0);
    QCOMPARE(bar.colourOf(0.5), QColor(Qt::white)); // the top is reached at half the range
    bar.grab();
    mouse(&bar, QEvent::MouseMove, {5, 200}); // not held
    QCOMPARE(newScale.count(), 1);
    drag(&bar, {5, 246}, {5, 192}); // 9 rows from the lower line
    QCOMPARE(bar.scale().bottom(), -768.0);
    QCOMPARE(bar.scale().top(), 2304.0);
    bar.grab();                     // lines at 128 and 192
    drag(&bar, {5, 138}, {5, 160}); // 10 rows from the upper: the lower one again
    QCOMPARE(bar.scale().bottom(), -2304.0);
    drag(&bar, {5, 50}, {5, 128}); // onto the other line
    QVERIFY(std::isfinite(bar.scale().top()));
    newScale.clear();
    mouse(&bar, QEvent::MouseButtonDblClick, {5, 50});
    QCOMPARE(bar.scale().bottom(), 0.0);
    QCOMPARE(bar.scale().top(), 768.0);
    QCOMPARE(newScale.count(), 0);
}

void PanelsTest::barMenu()
{
    for (const bool byKey : {false, true}) {
        cBar bar;
        bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bar));
        QSignalSpy newScale(&bar, &cBar::newScale);
        QSignalSpy chosen(&bar, &cBar::autoScaleChosen);
        QVERIFY(bar.focusPolicy() & Qt::TabFocus);
        if (!byKey) {
            mouse(&bar, QEvent::MouseButtonPress, {50, 50}, Qt::NoModifier, Qt::RightButton);
        }
        QContextMenuEvent request(byKey ? QContextMenuEvent::Keyboard : QContextMenuEvent::Mouse,
                                  {50, 50}, bar.mapToGlobal({50, 50}));
        QCoreApplication::sendEvent(&bar, &request);
        QPointer<QMenu> menu = menuOf(bar);
        QVERIFY(menu);
        QTRY_VERIFY(menu->isVisible());
        QVERIFY(bar.rect().contains(bar.mapFromGlobal(menu->pos())) || !byKey);
        mouse(&bar, QEvent::MouseMove, {50, 90}, Qt::NoModifier, Qt::RightButton);
        QCOMPARE(newScale.count(), 0); // the press is over
        QList<QAction *> actions = menu->actions();
        QCOMPARE(actions.size(), 15); // palettes, separator, two more
        QVERIFY(actions[0]->isChecked());
        QVERIFY(!actions[11]->icon().isNull());
        actions[11]->trigger();
        QCOMPARE(bar.scale().type(), 11);
        QCOMPARE(newScale.count(), 1);
        QCOMPARE(actions[13]->text(), QStringLiteral("Invert"));
        actions[13]->trigger();
        QVERIFY(bar.isInverted());
        QCOMPARE(newScale.count(), 2);
        QCOMPARE(actions[14]->text(), QStringLiteral("Auto scale"));
        QVERIFY(actions[14]->isChecked());
        actions[14]->trigger();
        QVERIFY(!bar.isAutoScale());
        QCOMPARE(chosen.count(), 1);
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
    QCOMPARE(map.bar()->scale().zMin(), 1.23456789);
    QCOMPARE(newScale.count(), 0);
    const auto type = [](QLineEdit *edit, const QString &text) {
        edit->setText(text);
        QTest::keyClick(edit, Qt::Key_Return);
    };
    const auto limits = [&map] {
        return std::make_pair(map.bar()->scale().zMin(), map.bar()->scale().zMax());
    };
    type(minimum, QStringLiteral("2"));
    QCOMPARE(limits(), std::make_pair(2.0, 3.0));
    type(maximum, QStringLiteral("0.5"));
    QCOMPARE(limits(), std::make_pair(0.5, 2.0));
    type(maximum, maximum->text()); // as on leaving the field
    QCOMPARE(limits(), std::make_pair(0.5, 2.0));
    type(minimum, QStringLiteral("9"));
    QCOMPARE(limits(), std::make_pair(2.0, 9.0));
    QCOMPARE(minimum->text(), QStringLiteral("2"));
    QCOMPARE(maximum->text(), QStringLiteral("9"));
    QCOMPARE(newScale.count(), 4);
    type(minimum, QStringLiteral("1,5 no number"));
    QCOMPARE(limits(), std::make_pair(0.0, 9.0));
    type(maximum, QStringLiteral("nan"));
    QVERIFY(std::isnan(limits().second));
    map.bar()->grab();
    QSignalSpy nowPos(&map, &DispMBase::nowPos);
    map.area()->grab();
    mouse(map.area(), QEvent::MouseMove, {0, 0});
    QCOMPARE(nowPos.count(), 1);
    QCOMPARE(map.findChild<QLineEdit *>("YPos")->text(), QStringLiteral("1"));
}

void PanelsTest::histogramFields()
{
    QLineEdit from("1");
    QLineEdit to("3");
    QLineEdit boxes("3.9");
    QCheckBox automatic;
    automatic.setChecked(true);
    Histgram histogram(&from, &to, &boxes, &automatic);
    QCOMPARE(histogram.boxes(), 0);
    histogram.setUp();
    QVERIFY(histogram.from() == 0.5 && histogram.to() == 3.5 && histogram.boxes() == 3);
    QVERIFY(histogram.counts().counts().size() == 3 && histogram.largest() == 0);
    automatic.setChecked(false);
    QVERIFY(histogram.isChecked()); // as it was at set-up
    histogram.showLimits(1.23456789, 1e7);
    QCOMPARE(from.text() + ' ' + to.text(), QStringLiteral("1.23457 1e+07"));
    from.setText("a");
    to.setText("1,5"); // no numbers
    histogram.setUp();
    QVERIFY(histogram.from() == 0 && histogram.to() == 0);
}

QTEST_MAIN(PanelsTest)
#include "tst_panels.moc"
