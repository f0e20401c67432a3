// What is left of one run for the next: recent sessions and the copy of unsaved inputs.

#include "panel/PanelUndo.h"
#include "session/SessionFile.h"
#include "tests/panel/Window.h"

using namespace window;

constexpr int kDelayMs = 20;

static QString copies()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + "/autosave";
}

/// A panel as the program has it.
struct Keeping : FourPs {
    Keeping() { keepSessions(kDelayMs); }
};

static int kept()
{
    return QDir(copies()).entryList({"*.ini"}).size();
}

static QList<QAction *> menuOf(const FourPs &panel)
{
    auto *menu = at<QToolButton>(panel, "RecentB")->menu();
    emit menu->aboutToShow();
    return menu->actions();
}

class RecentTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    void init()
    {
        QDir(copies()).removeRecursively();
        QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/orvel")
            .removeRecursively();
    }

    void cleanupTestCase() { init(); }

    void recentSessions()
    {
        QStringList opened;
        {
            Keeping panel;
            for (int i = 0; i < 12; ++i) {
                opened.prepend(session(QString("s, %1&.ini").arg(i)));
                panel.openSession(opened.first());
            }
            panel.saveSession(opened[3]);
            opened.move(3, 0);
        }
        QVERIFY(QFile::remove(opened[2]));
        Keeping panel;
        const QList<QAction *> actions = menuOf(panel);
        QStringList paths;
        for (const QAction *action : actions) {
            paths += action->data().toString();
            QCOMPARE(action->isEnabled(), action->data() != opened[2]);
        }
        QCOMPARE(paths, opened.mid(0, 10));
        actions[5]->trigger();
        QCOMPARE(target(panel)->path(), m_sample.mix);
        QCOMPARE(menuOf(panel).first()->data().toString(), opened[5]);
    }

    void aDroppedSessionOpens()
    {
        session("drop.ini");
        FourPs panel;
        QVERIFY(!drop(at(panel, "EdgeE"), {m_sample.url("a.dat")}));
        QVERIFY(drop(at(panel, "Message"), {m_sample.url("drop.ini")}));
        QCOMPARE(target(panel)->path(), m_sample.mix);
    }

    void theNextRunRestores()
    {
        orvel::PanelState left;
        {
            Keeping panel;
            QVERIFY(at(panel, "RestoreB")->isHidden());
            m_sample.load(panel, 2, {0.2, 0.8});
            QTRY_COMPARE(kept(), 1);
            Keeping other; // of a process that lives: nothing to restore
            QVERIFY(at(other, "RestoreB")->isHidden());
            perform(panel, "type EdgeE 8351"); // copied at closing, if not before
            left = panel.state();
        }
        {
            Keeping panel;
            auto *button = at<QAbstractButton>(panel, "RestoreB");
            QVERIFY(!button->isHidden());
            button->click();
            QVERIFY(isSameState(panel.state(), left) && panel.results() && button->isHidden());
            QCOMPARE(kept(), 1); // this run's own
            panel.saveSession(m_sample.path("mine.ini"));
            QCOMPARE(kept(), 0);
        }
        Keeping panel;
        QVERIFY(at(panel, "RestoreB")->isHidden());
    }

    /// Changes that come faster than the delay do not put the copy off.
    void busyWorkIsCopied()
    {
        Keeping panel;
        for (int i = 0; i < 40; ++i) {
            perform(panel, QString("type EdgeE %1").arg(8000 + i));
            QTest::qWait(kDelayMs / 4);
        }
        QCOMPARE(kept(), 1);
        panel.saveSession(m_sample.path("mine.ini"));
    }

    void nothingToKeepLeavesNothing()
    {
        Keeping panel;
        panel.openSession(session("s.ini"));
        tick(at<QAbstractButton>(panel, "MapWGrid"), true);
        tick(at<QAbstractButton>(panel, "MapWGrid"), false); // as it was
        panel.calcBoth();
        QTest::qWait(10 * kDelayMs);
        QCOMPARE(kept(), 0);
    }

private:
    QString session(const QString &name) const
    {
        orvel::PanelState state;
        state.texts.target.file = m_sample.mix;
        state.texts.references[0].file = m_sample.a;
        const QString path = m_sample.path(name);
        return orvel::writeSession(path, state) ? path : QString();
    }

    Sample m_sample;
};

QTEST_MAIN(RecentTest)

#include "tst_recent.moc"
