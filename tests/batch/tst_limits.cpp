// Small files that claim to be huge. The program runs within a gibibyte of addresses, and must end
// by itself with a status and a reason, whatever the files say.

#include "tests/TestFiles.h"
#include "tests/TestTable.h"
#include "tests/batch/Program.h"

#include <QDir>
#include <QtTest>

namespace {

constexpr rlim_t kMostAddresses = rlim_t(1) << 30;

QByteArray processedMap(const QByteArray &headerSize, const QByteArray &width,
                        const QByteArray &height)
{
    const QByteArray first = "2dData-V0.0 HeaderSize: " + headerSize;
    QByteArray bytes = first.leftJustified(64) + "\nWIDTH: " + width + "\nHEIGHT: " + height +
                       "\nDATA_ID: x\nMIN_VAL: 0\nMAX_VAL: 1\nEND_OF_HEADER:\n";
    return bytes.leftJustified(512, '\0');
}

QByteArray textMap(const QByteArray &header)
{
    return header + "\n0 0 0.5 0\n";
}

/// A folder with a session, its inputs and an old result.
struct Sample : TestFiles {
    explicit Sample(const QByteArray &more = QByteArray(), const QByteArray &map = mapOf(1))
    {
        write("spectrum", kSpectrum);
        write("target", kSpectrum);
        write("map", map);
        write("s.ini", sessionOf("result.dat", more));
        write("result.dat", "old");
    }
};

} // namespace

class LimitsTest : public QObject {
    Q_OBJECT

private slots:
    void smallFiles_data();
    void smallFiles();
    void wideGridOfFewPixels();
};

void LimitsTest::smallFiles_data()
{
    // name: of the file that is not as it should be; size: of a file with a hole behind these
    // bytes; 0: just them
    const TestTable<QString, QByteArray, qint64, int, QString> table("name", "bytes", "size",
                                                                     "status", "reason");
    const auto row = [](const char *title, const char *name, const QByteArray &bytes, int status,
                        const char *reason, qint64 size = 0) {
        QTest::newRow(title) << name << bytes << size << status << reason;
    };
    constexpr qint64 kMiB = 1 << 20;
    const char *const grid = "its header promises more pixels";
    const char *const lines = "it has lines far too long";
    const auto processed = [&](const char *title, const char *size, const char *width,
                               const char *height, const char *reason, qint64 hole = 0) {
        row(title, "map", processedMap(size, width, height), 3, reason, hole);
    };
    processed("processed, 2^27 pixels", "512", "16384", "8192", grid);
    processed("processed, 2^27 pixels of a hole", "512", "16384", "8192",
              "there is not enough memory for it", 1300 * kMiB);
    row("text, 2^31 - 1 squared", "map", textMap("# X-NUM 2147483647\n# Y-NUM 2147483647"), 3,
        grid);
    row("spectrum, half a million columns", "spectrum",
        "9809\nMode 1 2" + QByteArray(" 3").repeated(500000) + "\nOffset\n", 3,
        "it holds no data point");
    for (const char *name : {"spectrum", "target", "map"}) {
        QTest::addRow("%s, one line of 4 GiB", name)
            << name << QByteArray("# x") << 4096 * kMiB << 3 << lines;
    }
    row("session, one line of 4 GiB", "s.ini", "[Session]\nx=", 2,
        "it is far too large for a session", 4096 * kMiB);
    row("session, serialised object", "s.ini", "[Session]\nx=@Variant(\\0\\0\\0\\t\\x7f\\xff)", 2,
        "it has a serialised object");
    row("session, endless boxes", "s.ini",
        sessionOf("result.dat", "[Histogram]\nHgABoxes=inf\nHgTBoxes=2147483648\n"), 0, "");
    QByteArray keys = "[Junk]\n";
    for (int i = 0; i < 90000; ++i) {
        keys += QByteArray::number(i, 36) + "=1\n";
    }
    row("session, 90000 keys", "s.ini", sessionOf("result.dat", keys), 0, "unknown key Junk/zz");
}

void LimitsTest::smallFiles()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(qint64, size);
    QFETCH(int, status);
    QFETCH(QString, reason);
    const Sample files;
    const QString hostile = files.write(name, bytes);
    QVERIFY(size == 0 || QFile::resize(hostile, size));
    Program program;
    program.mostAddresses = kMostAddresses;
    const Run run = program.run({"--threads", "2", files.path("s.ini")});
    QVERIFY2(run.status == status, qPrintable(run.err.left(500) + run.out.left(500)));
    QVERIFY2(run.err.contains(reason), qPrintable(run.err.left(500)));
    QCOMPARE(QFile(files.path("result.dat")).size() == 3, status >= 2);
}

/// As many missing pixels as are allowed, in all rows: computed, or refused for want of memory.
void LimitsTest::wideGridOfFewPixels()
{
    const QByteArray more = "[Method]\nTypeNonEquiv=true\n[Record]\nRecRatio1=0\nRecRatio2=0\n"
                            "RecDMut1=0\nRecDMut2=0\nRecRatio3=0\nRecDMut3=0\nRecRatio4=0\n"
                            "RecDMut4=0\n";
    const QByteArray map = processedMap("512", "2048", "2048");
    for (const rlim_t most : {kMostAddresses, kMostAddresses / 2}) {
        const Sample files(more, map);
        Program program;
        program.mostAddresses = most;
        const Run run = program.run({files.path("s.ini")});
        const QString said = run.err + run.out;
        qInfo("status %d", run.status);
        QVERIFY2(run.status == 0 || run.status == 3 || run.status == 4, qPrintable(said));
        QVERIFY2(run.status != 3 || run.err.contains("not enough memory"), qPrintable(said));
        QVERIFY2(run.status != 4 || run.out.contains("Can't open the file"), qPrintable(said));
        // All of it, or none.
        const qint64 size = QFileInfo(files.path("result.dat")).size();
        QCOMPARE(size > (1 << 25), run.status != 3);
        QVERIFY(run.status != 3 || size == 3);
    }
}

QTEST_GUILESS_MAIN(LimitsTest)
#include "tst_limits.moc"
