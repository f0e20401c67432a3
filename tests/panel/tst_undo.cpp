// Undo and redo as keys and menu give them: a step an action, and nothing read or run for nothing.

#include "panel/PanelUndo.h"
#include "tests/panel/Window.h"

using namespace window;

static QAction *undoAction(const FourPs &panel)
{
    return panel.findChild<PanelUndo *>()->undoAction();
}
static QAction *redoAction(const FourPs &panel)
{
    return panel.findChild<PanelUndo *>()->redoAction();
}

class UndoTest : public QObject {
    Q_OBJECT

private slots:
    void everyActionIsAStep_data()
    {
        table<QString, QString>( // one action
            {"steps", "name"},
            {{"a spectrum and its edge", "load R2.XafsFS %/mix.dat", "reference"},
             {"a file taken away", "clear R2.XafsFS", "reference"},
             {"a shift", "type TargetFile.DE 2", "target"},
             {"an energy", "type P2.Energy 8351", "energy points"},
             {"a map and its energy", "load P4.FileSelect %/edge.txt", "energy points"},
             {"the edge", "type EdgeE 8349", "edge"},
             {"a method", "tick TypeTMKisLS", "method"},
             {"a bound", "tick SigmaMaps", "precision and bounds"},
             {"a quantity", "tick MapAmount", "view"}});
    }

    void everyActionIsAStep()
    {
        QFETCH(QString, steps);
        QFETCH(QString, name);
        Loaded panel(m_sample);
        const auto before = panel.state();
        const QString was = shown(panel, "CalcRes LCFRes");
        perform(panel, m_sample.in(steps));
        QCoreApplication::processEvents();
        const auto after = panel.state();
        QVERIFY(!isSameState(before, after));
        QCOMPARE(undoAction(panel)->text(), "Undo: " + name);
        undoAction(panel)->trigger();
        QVERIFY(isSameState(panel.state(), before));
        QCOMPARE(redoAction(panel)->text(), "Redo: " + name);
        QCoreApplication::processEvents(); // restoring is no step of its own
        panel.calcBoth();
        QCOMPARE(shown(panel, "CalcRes LCFRes"), was);
        redoAction(panel)->trigger();
        QVERIFY(isSameState(panel.state(), after));
        QCoreApplication::processEvents();
        QVERIFY(!redoAction(panel)->isEnabled());
    }

    void aDragIsAStep()
    {
        Shown panel(m_sample);
        const auto before = panel.state();
        DispArea *area = graph(panel, Displays::DMuts)->area();
        const double x = area->coord()->sx(8600);
        mouse(area, QEvent::MouseButtonPress, {x, 40});
        for (int i = 1; i < 5; ++i) {
            mouse(area, QEvent::MouseMove, {x - 3 * i, 40});
            QCoreApplication::processEvents();
        }
        mouse(area, QEvent::MouseButtonRelease, {x - 12, 40});
        QVERIFY(!isSameState(panel.state(), before));
        undoAction(panel)->trigger();
        QVERIFY(isSameState(panel.state(), before));
    }

    void typingIsAStepOfItsField()
    {
        Shown panel(m_sample);
        const auto before = panel.state();
        auto *edit = at<QLineEdit>(panel, "EdgeE");
        auto *other = at<QLineEdit>(panel, "HgABoxes");
        const QString text = edit->text();
        edit->setFocus();
        edit->end(false);
        QTest::keyClicks(edit, "12");
        QCoreApplication::processEvents();
        QTest::keyClick(edit, Qt::Key_Z, Qt::ControlModifier); // the field's own
        QCOMPARE(edit->text(), text);
        QVERIFY(isSameState(panel.state(), before));
        QTest::keyClicks(edit, "1");
        QCoreApplication::processEvents();
        QTest::keyClicks(edit, "2");
        other->setFocus(); // leaves it
        QTest::keyClick(other, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(edit->text(), text); // both letters at once
        QVERIFY(isSameState(panel.state(), before));
        QTest::keyClick(other, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(edit->text(), text + "12");
    }

    void unchangedFilesAreNotReadAgain()
    {
        Loaded panel(m_sample);
        tick(at<QAbstractButton>(panel, "P2.LCFCB"), true);
        QCoreApplication::processEvents();
        int read = 0;
        for (const AFileSelect *selector : panel.findChildren<AFileSelect *>()) {
            connect(selector, &AFileSelect::newFilePath, this, [&read] { ++read; });
        }
        const auto map = point(panel, 2)->map();
        undoAction(panel)->trigger();
        QVERIFY(!at<QAbstractButton>(panel, "P2.LCFCB")->isChecked());
        QVERIFY(read == 0 && point(panel, 2)->map() == map);
    }

    void restoringCalculatesOnce()
    {
        Loaded panel(m_sample);
        perform(panel, "click P2.VPointCB"); // of which every calculation complains
        QCoreApplication::processEvents();
        newMessages(panel);
        panel.calcBoth();
        const int once = newMessages(panel).size();
        QVERIFY(once > 0);
        perform(panel, m_sample.in("load R1.XafsFS %/mix.dat"));
        QCoreApplication::processEvents();
        newMessages(panel);
        // What no map depends on, while a valence waits for "Calc.".
        perform(panel, "type R1.Valence 5");
        QCoreApplication::processEvents();
        perform(panel, "type SaveFSelect.FileName out");
        QCoreApplication::processEvents();
        undoAction(panel)->trigger();
        redoAction(panel)->trigger();
        QCOMPARE(newMessages(panel), QStringList());
        undoAction(panel)->trigger();
        undoAction(panel)->trigger(); // the valence
        newMessages(panel);
        undoAction(panel)->trigger();
        QCOMPARE(newMessages(panel).size(), once);
    }

private:
    Sample m_sample;
};

QTEST_MAIN(UndoTest)

#include "tst_undo.moc"
