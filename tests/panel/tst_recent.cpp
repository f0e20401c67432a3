// What is left of one run for the next: recent sessions and the copy of unsaved inputs.

#include "panel/PanelUndo.h"
#include "session/Catalogue.h"
#include "session/SessionFile.h"
#include "tests/panel/Window.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QStandardPaths>
#include <QToolButton>

using namespace window;

class RecentTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void init();
    void cleanupTestCase() { init(); }
    void recentSessions();
    void aDroppedSessionOpens();
    void theNextRunRestores();
    void nothingToKeepLeavesNothing();
    void theButtonsFitTheScreen_data();
    void theButtonsFitTheScreen();

private:
    static QString copies();
    QString session(const QString &name) const;

    Sample m_sample;
};

constexpr int kDelayMs = 20;

QString RecentTest::copies()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + "/autosave";
}

void RecentTest::init()
{
    QDir(copies()).removeRecursively();
    QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/orvel")
        .removeRecursively();
}

QString RecentTest::session(const QString &name) const
{
    orvel::PanelState state;
    state.texts.target.file = m_sample.mix;
    state.texts.references[0].file = m_sample.a;
    const QString path = m_sample.path(name);
    return orvel::writeSession(path, state) ? path : QString();
}

static QList<QAction *> menuOf(const FourPs &panel)
{
    auto *menu = at<QToolButton>(panel, "RecentB")->menu();
    emit menu->aboutToShow();
    return menu->actions();
}

void RecentTest::recentSessions()
{
    QStringList opened;
    {
        FourPs panel;
        panel.keepSessions(kDelayMs);
        QVERIFY(!menuOf(panel).first()->isEnabled()); // says that there are none
        for (int i = 0; i < 12; ++i) {
            opened.prepend(session(QString("s, %1&.ini").arg(i)));
            panel.openSession(opened.first());
        }
        panel.openSession(m_sample.path("nowhere.ini")); // is none
        panel.saveSession(opened[3]);
        opened.move(3, 0);
    }
    QVERIFY(QFile::remove(opened[2]));
    FourPs panel;
    panel.keepSessions(kDelayMs);
    const QList<QAction *> actions = menuOf(panel);
    QStringList paths;
    for (const QAction *action : actions) {
        paths += action->data().toString();
        QCOMPARE(action->isEnabled(), action->data() != opened[2]);
    }
    QCOMPARE(paths, opened.mid(0, 10));
    int read = 0;
    for (const AFileSelect *selector : panel.findChildren<AFileSelect *>()) {
        connect(selector, &AFileSelect::newFilePath, this,
                [&](const QString &path) { read += path.isEmpty() ? 0 : 1; });
    }
    actions[5]->trigger();
    QCOMPARE(target(panel)->path(), m_sample.mix);
    QCOMPARE(read, 2); // each input once
    QCOMPARE(menuOf(panel).first()->data().toString(), opened[5]);
}

void RecentTest::aDroppedSessionOpens()
{
    const QString path = session("drop.ini");
    for (const bool onSelector : {false, true}) {
        FourPs panel;
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(path)});
        QWidget *to = onSelector ? static_cast<QWidget *>(target(panel)) : &panel;
        QDragEnterEvent enter(QPoint(2, 2), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QCoreApplication::sendEvent(to, &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop(QPointF(2, 2), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(to, &drop);
        QCOMPARE(target(panel)->path(), onSelector ? path : m_sample.mix);
        data.setUrls({QUrl::fromLocalFile(m_sample.a)}); // no session
        QDragEnterEvent other(QPoint(2, 2), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        other.ignore();
        QCoreApplication::sendEvent(&panel, &other);
        QVERIFY(!other.isAccepted());
        // No field between takes it as a text.
        QVERIFY(!at(panel, "EdgeE")->acceptDrops() && !at(panel, "Message")->acceptDrops());
    }
}

void RecentTest::theNextRunRestores()
{
    orvel::PanelState left;
    {
        FourPs panel;
        panel.keepSessions(kDelayMs);
        QVERIFY(at(panel, "RestoreB")->isHidden());
        m_sample.load(panel, 2, {0.2, 0.8});
        QTRY_COMPARE(QDir(copies()).entryList({"*.ini"}).size(), 1);
        left = panel.state();
        FourPs other; // of a process that lives: nothing to restore
        other.keepSessions(kDelayMs);
        QVERIFY(at(other, "RestoreB")->isHidden());
        type(at<QLineEdit>(panel, "EdgeE"), "1"); // closed before it is copied: not saved
    }
    {
        FourPs panel;
        panel.keepSessions(kDelayMs);
        QVERIFY(target(panel)->path().isEmpty());
        auto *button = at<QAbstractButton>(panel, "RestoreB");
        QVERIFY(!button->isHidden());
        button->click();
        QVERIFY(isSameState(panel.state(), left));
        QVERIFY(panel.results() != nullptr);
        QVERIFY(button->isHidden());
        QCOMPARE(menuOf(panel).first()->data().toString(), QString()); // no session of the user's
        QCOMPARE(QDir(copies()).entryList({"*.ini"}).size(), 1);       // this run's own
        panel.saveSession(m_sample.path("mine.ini"));
        QCOMPARE(QDir(copies()).entryList({"*.ini"}).size(), 0);
    }
    FourPs panel;
    panel.keepSessions(kDelayMs);
    QVERIFY(at(panel, "RestoreB")->isHidden());
}

void RecentTest::nothingToKeepLeavesNothing()
{
    FourPs panel;
    panel.keepSessions(kDelayMs);
    panel.openSession(session("s.ini"));
    tick(at<QAbstractButton>(panel, "MapWGrid"), true);
    tick(at<QAbstractButton>(panel, "MapWGrid"), false); // as it was
    panel.calcBoth();
    QTest::qWait(10 * kDelayMs);
    QCOMPARE(QDir(copies()).entryList({"*.ini"}), QStringList());
}

void RecentTest::theButtonsFitTheScreen_data()
{
    QTest::addColumn<bool>("japanese");
    QTest::newRow("English") << false;
    QTest::newRow("Japanese") << true;
}

void RecentTest::theButtonsFitTheScreen()
{
    QFETCH(bool, japanese);
    orvel::Translators translators;
    if (japanese) {
        orvel::installJapanese(translators);
    }
    { // so that there is something to restore
        FourPs panel;
        panel.keepSessions(kDelayMs);
        tick(at<QAbstractButton>(panel, "MapWGrid"), true);
        QTRY_COMPARE(QDir(copies()).entryList({"*.ini"}).size(), 1);
    }
    FourPs panel;
    panel.keepSessions(kDelayMs);
    panel.resize(1262, 700);
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    QCOMPARE(panel.size(), QSize(1262, 700));
    for (const char *name : {"UndoB", "RestoreB", "OpenSessionB", "RecentB", "SaveSessionB"}) {
        const QWidget *button = at(panel, name);
        const QRect place(button->mapTo(&panel, QPoint()), button->size());
        const QString text =
            button->inherits("QPushButton") ? button->property("text").toString() : "";
        QVERIFY2(button->isVisible() && panel.rect().contains(place) &&
                     button->width() >= button->fontMetrics().horizontalAdvance(text),
                 name);
    }
}

QTEST_MAIN(RecentTest)

#include "tst_recent.moc"
