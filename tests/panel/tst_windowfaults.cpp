// What the window makes of files that are none, of results named as inputs, and of too little
// memory.

#include "tests/panel/Window.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace window;

class WindowFaultsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(QDir::setCurrent(m_sample.path("."))); }

    /// Nothing is waited for, nothing is lost, and a reason is shown.
    void whatIsNoFile()
    {
        QCOMPARE(mkfifo("pipe", 0600), 0);
        Loaded panel(m_sample);
        const auto map = point(panel, 1)->map();
        for (const char *name : {"pipe", "/dev/zero", "missing"}) {
            const QString path = QDir(m_sample.path({})).absoluteFilePath(name);
            for (const char *where : {"R1.XafsFS", "TargetFile", "P2.FileSelect"}) {
                perform(panel, QString("load %1 %2").arg(where, path));
                QCOMPARE(at<AFileSelect>(panel, where)->problem(),
                         path + ": there is no such readable file");
            }
            QCOMPARE(point(panel, 1)->map(), map);
            newMessages(panel);
            panel.openSession(path);
            QCOMPARE(newMessages(panel), QStringList("Can't open the file [" + path +
                                                     "]: there is no such readable file"));
        }
        perform(panel, "type SaveFSelect.FileName no/where; click WriteB");
        QCOMPARE(newMessages(panel), QStringList("Can't open the file [no/where]"));
    }

    /// As the user types the result's name, chooses inputs or opens a session.
    void warnsOfOverwriting()
    {
        const QString in = m_sample.write("in.dat", "8000 1\n");
        QVERIFY(link("in.dat", "hard.dat") == 0 && QFile::link("in.dat", "soft.dat"));
        FourPs panel;
        const auto warned = [&panel](const char *name = nullptr) {
            if (name) {
                at<QLineEdit>(panel, "SaveFSelect.FileName")->setText(name);
            }
            return at<AFileSelect>(panel, "SaveFSelect")->problem();
        };
        for (const char *where : {"R4.XafsFS", "TargetFile", "P8.FileSelect", "DispFSelect"}) {
            const auto load = [&](const QString &path) {
                perform(panel, QString("load %1 %2").arg(where, path));
            };
            QCOMPARE(warned("in.dat"), QString());
            load(in);
            QCOMPARE(warned(), "Writing replaces the input " + in);
            QCOMPARE(warned("other.dat"), QString());
            for (const char *link : {"./in.dat", "hard.dat", "soft.dat"}) {
                QCOMPARE(warned(link), "Writing replaces the input " + in);
            }
            const orvel::PanelState state = panel.state();
            perform(panel, QString("clear %1").arg(where));
            QCOMPARE(warned(), QString());
            panel.setState(state);
            QCOMPARE(warned(), "Writing replaces the input " + in);
            perform(panel, QString("clear %1").arg(where));
        }
        QCOMPARE(warned(""), QString());
    }

    /// A map too many: said so, and the window goes on as before.
    void outOfMemory()
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
        const auto results = panel.results();
        const QString large = m_sample.write("large.txt", "# X-NUM 2048\n# Y-NUM 2048\n0 0 1 0\n");
        rlimit old = {};
        QCOMPARE(getrlimit(RLIMIT_AS, &old), 0);
        QFile statm("/proc/self/statm");
        QVERIFY(statm.open(QIODevice::ReadOnly));
        const rlim_t now =
            statm.readAll().split(' ').first().toULongLong() * rlim_t(sysconf(_SC_PAGESIZE));
        // The result takes more; one plane does not.
        const rlimit tight = {now + (rlim_t(256) << 20), old.rlim_max};
        QCOMPARE(setrlimit(RLIMIT_AS, &tight), 0);
        for (const char *row : {"P1", "P2", "P3", "P4", "P5"}) {
            perform(panel, QString("load %1.FileSelect %2").arg(row, large));
        }
        newMessages(panel);
        perform(panel, "click CalcMapB");
        const QStringList said = newMessages(panel);
        const auto after = panel.results();
        QCoreApplication::processEvents();
        QCOMPARE(setrlimit(RLIMIT_AS, &old), 0);
        QCOMPARE(said, QStringList("There is not enough memory for these maps"));
        QVERIFY(after == results && !QApplication::overrideCursor());
        perform(panel, "click CalcMapB"); // now there is
        QCOMPARE(panel.results()->width(), 2048);
        QCOMPARE(newMessages(panel), QStringList());
    }

private:
    Sample m_sample; // its folder is the working directory
};

QTEST_MAIN(WindowFaultsTest)
#include "tst_windowfaults.moc"
