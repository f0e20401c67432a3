// What the window makes of files that are none, of results named as inputs, and of too little
// memory.

#include "tests/panel/Window.h"

#include <QListWidget>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace window;

class WindowFaultsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void whatIsNoFile();
    void warnsOfOverwriting();
    void outOfMemory();

private:
    QTemporaryDir m_folder;
    Sample m_sample;
};

void WindowFaultsTest::initTestCase()
{
    QVERIFY(QDir::setCurrent(m_folder.path()));
}

/// Nothing is waited for, nothing is lost, and a reason is shown.
void WindowFaultsTest::whatIsNoFile()
{
    QCOMPARE(mkfifo("pipe", 0600), 0);
    QDir().mkdir("folder");
    FourPs panel;
    m_sample.load(panel);
    const auto map = point(panel, 1)->map();
    for (const char *name : {"pipe", "folder", "/dev/zero", "missing"}) {
        const QString path = QDir::current().absoluteFilePath(name);
        for (const char *where : {"R1.XafsFS", "TargetFile", "P2.FileSelect"}) {
            perform(panel, QStringLiteral("load %1 %2").arg(where, path));
            QCOMPARE(at<AFileSelect>(panel, where)->problem(),
                     path + ": there is no such readable file");
        }
        QCOMPARE(point(panel, 1)->map(), map);
        at<AFileSelect>(panel, "DispFSelect")->newFiles({path, m_sample.a});
        const auto *shown = find<QListWidget>(panel, "SelectedFs");
        QVERIFY(shown->item(0)->toolTip().endsWith("there is no such readable file"));
        newMessages(panel);
        panel.openSession(path);
        QCOMPARE(newMessages(panel),
                 QStringList("Can't open the file [" + path + "]: there is no such readable file"));
    }
    perform(panel, m_sample.in("load R1.XafsFS %/a.dat; load TargetFile %/mix.dat"));
    for (const char *name : {"./pipe", "no/where"}) { // nobody reads that pipe
        find<QLineEdit>(*find(panel, "SaveFSelect"), "FileName")->setText(name);
        newMessages(panel);
        perform(panel, "click WriteB");
        QCOMPARE(newMessages(panel),
                 QStringList(QStringLiteral("Can't open the file [%1]").arg(name)));
    }
}

/// As the user types the result's name, chooses inputs or opens a session.
void WindowFaultsTest::warnsOfOverwriting()
{
    const auto write = [](const QString &name) {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("8000 1\n") > 0);
    };
    write("in.dat");
    write("in_HGAlpha.dat");
    QVERIFY(link("in.dat", "hard.dat") == 0 && QFile::link("in.dat", "soft.dat"));
    const QString in = QDir::current().absoluteFilePath("in.dat");
    const QString beside = QDir::current().absoluteFilePath("in_HGAlpha.dat");
    FourPs panel;
    const auto warned = [&panel] { return at<AFileSelect>(panel, "SaveFSelect")->problem(); };
    const auto name = [&panel](const char *text) {
        find<QLineEdit>(*find(panel, "SaveFSelect"), "FileName")->setText(text);
    };
    for (const char *where : {"R4.XafsFS", "TargetFile", "P8.FileSelect", "DispFSelect"}) {
        name("in.dat");
        QCOMPARE(warned(), QString());
        perform(panel, QStringLiteral("load %1 %2").arg(where, in));
        QCOMPARE(warned(), "Writing replaces the input " + in);
        name("other.dat");
        QCOMPARE(warned(), QString());
        for (const char *link : {"./in.dat", "hard.dat", "soft.dat"}) {
            name(link);
            QCOMPARE(warned(), "Writing replaces the input " + in);
        }
        const orvel::PanelState state = panel.state();
        perform(panel, QStringLiteral("clear %1").arg(where));
        QCOMPARE(warned(), QString());
        panel.setState(state);
        QCOMPARE(warned(), "Writing replaces the input " + in);
        perform(panel, QStringLiteral("load %1 %2").arg(where, beside));
        QCOMPARE(warned(), QString());
        name("in.dat");
        QCOMPARE(warned(), "Writing replaces the input " + beside);
        perform(panel, QStringLiteral("clear %1").arg(where));
    }
    name("");
    QCOMPARE(warned(), QString());
}

/// A map too many: said so, and the window goes on as before.
void WindowFaultsTest::outOfMemory()
{
#ifdef ORVEL_SANITIZED
    QSKIP("the sanitizers' own memory cannot be bounded");
#endif
    FourPs panel;
    panel.show();
    m_sample.load(panel);
    perform(panel, m_sample.in("click CalcMapB; load P4.FileSelect %/edge.txt; "
                               "load P5.FileSelect %/edge.txt; tick P4.UseCB; tick P5.UseCB; "
                               "click TypeNonEquiv; click CalcMapB"));
    const auto map = point(panel, 1)->map();
    const auto results = panel.results();
    const QString large = m_sample.write("large.txt", "# X-NUM 2048\n# Y-NUM 2048\n0 0 1 0\n");
    QFile hole(
        m_sample.write("hole.dat", QByteArray("2dData-V0.0 HeaderSize: 256").leftJustified(64) +
                                       "\nWIDTH: 8192\nHEIGHT: 8192\nEND_OF_HEADER:\n"));
    QVERIFY(hole.resize(600 << 20));
    rlimit old = {};
    QCOMPARE(getrlimit(RLIMIT_AS, &old), 0);
    QFile statm("/proc/self/statm");
    QVERIFY(statm.open(QIODevice::ReadOnly));
    const rlim_t now =
        statm.readAll().split(' ').first().toULongLong() * rlim_t(sysconf(_SC_PAGESIZE));
    // The result takes more, and so does the image in the hole; one plane does not.
    const rlimit tight = {now + (rlim_t(256) << 20), old.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_AS, &tight), 0);
    perform(panel, "load P2.FileSelect " + hole.fileName());
    const QString problem = point(panel, 1)->fileSelect()->problem();
    const auto kept = point(panel, 1)->map();
    for (const char *row : {"P1", "P2", "P3", "P4", "P5"}) {
        perform(panel, QStringLiteral("load %1.FileSelect %2").arg(row, large));
    }
    newMessages(panel);
    perform(panel, "click CalcMapB");
    const QStringList said = newMessages(panel);
    const auto after = panel.results();
    QCoreApplication::processEvents();
    QCOMPARE(setrlimit(RLIMIT_AS, &old), 0);
    QVERIFY(problem.endsWith("there is not enough memory for it"));
    QCOMPARE(kept, map);
    QCOMPARE(said, QStringList("There is not enough memory for these maps"));
    QCOMPARE(after, results);
    perform(panel, "click CalcMapB"); // now there is
    QCOMPARE(panel.results()->width(), 2048);
    QCOMPARE(newMessages(panel), QStringList());
}

QTEST_MAIN(WindowFaultsTest)
#include "tst_windowfaults.moc"
