// From the command line to the window.
#include "app/StartUp.h"
#include "tests/TestFiles.h"
#include "tests/display/Table.h"

#include <sys/stat.h>

class StartUpTest : public QObject {
    Q_OBJECT

private slots:
    void languages_data()
    {
        QTest::addColumn<bool>("japanese");
        for (const char *arguments : {"", "-j", "-j -e a.ini -j", "-E", "--e"}) {
            QTest::newRow(arguments) << true;
        }
        for (const char *arguments : {"-e", "-j -e", "-e -x  a.ini"}) {
            QTest::newRow(arguments) << false;
        }
    }

    void languages()
    {
        QTEST(orvel::wantsJapanese(QString(QTest::currentDataTag()).split(' ')), "japanese");
    }

    void sessions_data()
    {
        window::table<QByteArray, bool>(
            {"bytes", "isSession"},
            {{"the group alone", "[Session]", true},
             {"mark", "\xEF\xBB\xBF[Session]\nVersion=1\n", true},
             {"comments and blank lines first", "; [View]\n\n# note\n  [Session]  \n", true},
             {"other letters", "[session]\n", false},
             {"empty", "", false},
             {"binary", QByteArray("\0\xFF\xFE[\0S\n[\x01]\n[Session]\n", 21), false},
             {"too large", "[Session]\n" + QByteArray((1 << 20) - 9, '\n'), false}});
    }

    void sessions()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, isSession);
        const QString path = m_files.write("tried.ini", bytes);
        QCOMPARE(orvel::sessionArgument({path}), isSession ? path : QString());
    }

    void firstSessionIsTaken()
    {
        const QString first = m_files.write("first.ini", "[Session]\n");
        const QString second = m_files.write("second.ini", "[Session]\n");
        const QString pipe = m_files.path("pipe"); // opening it would wait for a writer for ever
        QCOMPARE(mkfifo(qPrintable(pipe), 0600), 0);
        const QStringList others = {"-e", "",          "no such file", m_files.path("."), "/",
                                    pipe, "/dev/zero", "/dev/null",    "[Session]",       "-j"};
        QCOMPARE(orvel::sessionArgument(others), QString());
        QCOMPARE(orvel::sessionArgument(others + QStringList{first, second}), first);
        QCOMPARE(orvel::sessionArgument({second, first, "-e"}), second);
    }

private:
    TestFiles m_files;
};

QTEST_MAIN(StartUpTest)

#include "tst_startup.moc"
