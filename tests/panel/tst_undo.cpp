// Undo and redo as keys and menu give them: a step an action, and nothing read or run for nothing.

#include "panel/PanelUndo.h"
#include "tests/panel/Window.h"

#include <QAction>

using namespace window;

class UndoTest : public QObject {
    Q_OBJECT

private slots:
    void everyActionIsAStep_data();
    void everyActionIsAStep();
    void aDragIsAStep();
    void typingIsAStepOfItsField();
    void unchangedFilesAreNotReadAgain();
    void restoringCalculatesOnce();

private:
    Sample m_sample;
};

static QAction *undoAction(const FourPs &panel)
{
    return panel.findChild<PanelUndo *>()->undoAction();
}
static QAction *redoAction(const FourPs &panel)
{
    return panel.findChild<PanelUndo *>()->redoAction();
}

void UndoTest::everyActionIsAStep_data()
{
    QTest::addColumn<QString>("steps"); // one action
    QTest::addColumn<QString>("name");
    QTest::newRow("a box") << "click R1.UseCB"
                           << "reference";
    QTest::newRow("a spectrum and its edge") << "load R2.XafsFS %/mix.dat"
                                             << "reference";
    QTest::newRow("a file taken away") << "clear R2.XafsFS"
                                       << "reference";
    QTest::newRow("the target") << "clear TargetFile"
                                << "target";
    QTest::newRow("a shift") << "type TargetFile.DE 2"
                             << "target";
    QTest::newRow("an energy") << "type P2.Energy 8351"
                               << "energy points";
    QTest::newRow("a map and its energy") << "load P4.FileSelect %/edge.txt"
                                          << "energy points";
    QTest::newRow("the edge") << "type EdgeE 8349"
                              << "edge";
    QTest::newRow("a method") << "tick TypeTMKisLS"
                              << "method";
    QTest::newRow("a histogram") << "type HgABoxes 11"
                                 << "histogram";
    QTest::newRow("a name") << "type SaveFSelect.FileName out"
                            << "result file";
    QTest::newRow("a bound") << "tick SigmaMaps"
                             << "precision and bounds";
    QTest::newRow("a quantity") << "tick MapAmount"
                                << "view";
    QTest::newRow("a spectrum to show") << "load DispFSelect %/a.dat"
                                        << "view";
}

void UndoTest::everyActionIsAStep()
{
    QFETCH(QString, steps);
    QFETCH(QString, name);
    FourPs panel;
    m_sample.load(panel);
    QCoreApplication::processEvents();
    const auto before = panel.state();
    const QStringList was = shown(panel, "CalcRes LCFRes").split('\n');
    perform(panel, m_sample.in(steps));
    QCoreApplication::processEvents();
    const auto after = panel.state();
    QVERIFY(!isSameState(before, after));
    QCOMPARE(undoAction(panel)->text(), "Undo: " + name);
    undoAction(panel)->trigger();
    QVERIFY(isSameState(panel.state(), before));
    QCOMPARE(redoAction(panel)->text(), "Redo: " + name);
    QCoreApplication::processEvents(); // restoring is no step of its own
    QVERIFY(redoAction(panel)->isEnabled());
    if (name != "target") { // an empty target leaves what was found last
        panel.calcBoth();
        QCOMPARE(shown(panel, "CalcRes LCFRes").split('\n'), was);
    }
    redoAction(panel)->trigger();
    QVERIFY(isSameState(panel.state(), after));
    QCoreApplication::processEvents();
    QVERIFY(!redoAction(panel)->isEnabled());
}

void UndoTest::aDragIsAStep()
{
    FourPs panel;
    m_sample.load(panel);
    panel.resize(1400, 900);
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    QTest::qWait(50);
    const auto before = panel.state();
    DispArea *area = graph(panel, Displays::DMuts)->area();
    const double y = area->height() / 2.0;
    const double x = area->coord()->sx(8600);
    mouse(area, QEvent::MouseButtonPress, {x, y});
    for (int i = 1; i < 5; ++i) {
        mouse(area, QEvent::MouseMove, {x - 3 * i, y});
        QCoreApplication::processEvents();
    }
    mouse(area, QEvent::MouseButtonRelease, {x - 12, y});
    QVERIFY(!isSameState(panel.state(), before));
    undoAction(panel)->trigger();
    QVERIFY(isSameState(panel.state(), before));
}

void UndoTest::typingIsAStepOfItsField()
{
    FourPs panel;
    m_sample.load(panel);
    panel.show();
    QVERIFY(QTest::qWaitForWindowActive(&panel));
    const auto before = panel.state();
    auto *edge = at<QLineEdit>(panel, "EdgeE");
    const QString text = edge->text();
    edge->setFocus();
    edge->end(false);
    QTest::keyClicks(edge, "12");
    QCoreApplication::processEvents();
    QTest::keyClick(edge, Qt::Key_Z, Qt::ControlModifier); // the field's own
    QCOMPARE(edge->text(), text);
    QVERIFY(isSameState(panel.state(), before));
    QTest::keyClicks(edge, "1");
    QCoreApplication::processEvents();
    QTest::keyClicks(edge, "2");
    at<QLineEdit>(panel, "HgABoxes")->setFocus(); // leaves it
    QCOMPARE(panel.state().texts.edgeE.value(), text + "12");
    QTest::keyClick(at<QLineEdit>(panel, "HgABoxes"), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(panel.state().texts.edgeE.value(), text); // both letters at once
    QVERIFY(isSameState(panel.state(), before));
    QTest::keyClick(at<QLineEdit>(panel, "HgABoxes"), Qt::Key_Z,
                    Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(panel.state().texts.edgeE.value(), text + "12");
}

void UndoTest::unchangedFilesAreNotReadAgain()
{
    FourPs panel;
    m_sample.load(panel);
    QCoreApplication::processEvents();
    tick(at<QAbstractButton>(panel, "P2.LCFCB"), true);
    QCoreApplication::processEvents();
    int read = 0;
    for (const AFileSelect *selector : panel.findChildren<AFileSelect *>()) {
        connect(selector, &AFileSelect::newFilePath, this, [&read] { ++read; });
    }
    QList<std::shared_ptr<const orvel::ImageData>> maps;
    for (int i = 0; i < 3; ++i) {
        maps.append(point(panel, i)->map());
    }
    undoAction(panel)->trigger();
    QVERIFY(!at<QAbstractButton>(panel, "P2.LCFCB")->isChecked());
    QCOMPARE(read, 0);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(point(panel, i)->map(), maps[i]);
    }
    perform(panel, "clear P3.FileSelect");
    QCoreApplication::processEvents();
    read = 0;
    undoAction(panel)->trigger();
    QCOMPARE(read, 1);
    QVERIFY(point(panel, 2)->map() != nullptr);
}

void UndoTest::restoringCalculatesOnce()
{
    FourPs panel;
    m_sample.load(panel);
    perform(panel, "click P2.VPointCB"); // of which every calculation complains
    QCoreApplication::processEvents();
    newMessages(panel);
    panel.calcBoth();
    const int once = newMessages(panel).size();
    QVERIFY(once > 0);
    perform(panel, m_sample.in("load R1.XafsFS %/mix.dat"));
    QCoreApplication::processEvents();
    perform(panel, "tick MapWGrid");
    QCoreApplication::processEvents();
    newMessages(panel);
    undoAction(panel)->trigger(); // the grid
    QCOMPARE(newMessages(panel), QStringList());
    undoAction(panel)->trigger();
    QCOMPARE(newMessages(panel).size(), once);
    redoAction(panel)->trigger();
    QCOMPARE(newMessages(panel).size(), once);
}

QTEST_MAIN(UndoTest)

#include "tst_undo.moc"
