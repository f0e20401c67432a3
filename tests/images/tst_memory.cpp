// What reading a text map holds at its peak: at most its columns plus twice the file. Each map is
// read by a process of its own, whose peak the system tells.

#include "images/A2DData.h"
#include "tests/TestFiles.h"
#include "tests/TestTable.h"

#include <QtTest>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

class MemoryTest : public QObject {
    Q_OBJECT

private slots:
    void textMaps_data();
    void textMaps();

private:
    TestFiles m_files;
};

namespace {

/// Peak resident size [bytes] of a child that does the work; -1 when that returns false.
template <class Work> qint64 peakOf(Work work)
{
    const pid_t child = fork();
    if (child == 0) {
        _exit(work() ? 0 : 1);
    }
    int status = 0;
    rusage used = {};
    if (child < 0 || wait4(child, &status, 0, &used) != child || status != 0) {
        return -1;
    }
    return qint64(used.ru_maxrss) * 1024;
}

} // namespace

void MemoryTest::textMaps_data()
{
    const TestTable<QByteArray, bool> row("line", "wide");
    row("as instruments write", QByteArray("12.5 -7.25 12345.5 23456.75\n"), false);
    row("way of texts", QByteArray("1 2 3 x\n"), false);
    row("UTF-16", QByteArray("1 2 3 4\n"), true);
}

void MemoryTest::textMaps()
{
    QFETCH(QByteArray, line);
    QFETCH(bool, wide);
    constexpr int kSide = 1000;
    constexpr qint64 kPixels = qint64(kSide) * kSide;
    const auto header = [](int side) {
        return QString("# X-NUM %1\n# Y-NUM %1\n").arg(side).toLatin1();
    };

    const QString small = m_files.write("small", header(1) + line);
    const QString path = m_files.path("map");
    const qint64 written = peakOf([&] { // in a child too: freed memory here would spoil the measure
        const QByteArray bytes = header(kSide) + line.repeated(static_cast<int>(kPixels));
        wide ? m_files.writeWide("map", bytes) : m_files.write("map", bytes);
        return true;
    });

    const qint64 before = peakOf([&small] { return A2DData().loadMap(small); });
    const qint64 peak = peakOf([&path] { return A2DData().loadMap(path); });
    QVERIFY(written > 0 && before > 0 && peak > 0);
    // x, y, signal, reference and the absorption. Each may end in a huge page of which little is
    // used, and so may, for a moment, the one that it outgrows.
    constexpr qint64 kColumns = 5;
    constexpr qint64 kRounding = (kColumns + 1) * (2 << 20);
    const qint64 most =
        kColumns * kPixels * qint64(sizeof(double)) + 2 * QFileInfo(path).size() + kRounding;
    const qint64 least = kColumns * kPixels * qint64(sizeof(double)); // else nothing was measured
    qInfo("%.1f MiB of at most %.1f", double(peak - before) / (1 << 20), double(most) / (1 << 20));
    QVERIFY(peak - before <= most);
    QVERIFY(peak - before >= least);
}

QTEST_GUILESS_MAIN(MemoryTest)
#include "tst_memory.moc"
