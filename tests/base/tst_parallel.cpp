#include "base/Parallel.h"
#include "tests/TestTable.h"

#include <QtTest>

#include <atomic>
#include <new>

using orvel::inParallel;

class ParallelTest : public QObject {
    Q_OBJECT

private slots:
    void everyItemOnce();
    void exceptionsComeBack_data();
    void exceptionsComeBack();
};

void ParallelTest::everyItemOnce()
{
    for (const int threads : {-1, 1, 2, 3, 7, 100}) {
        for (const std::size_t n : {0U, 1U, 2U, 7U, 1000U}) {
            for (const std::size_t grain : {0U, 1U, 3U, 5000U}) {
                std::vector<int> visits(n, 0); // parts share no item: no lock
                inParallel(n, grain, threads, [&visits](std::size_t begin, std::size_t end) {
                    for (std::size_t i = begin; i < end; ++i) {
                        ++visits[i];
                    }
                });
                QCOMPARE(std::count(visits.begin(), visits.end(), 1), static_cast<long>(n));
            }
        }
    }
}

void ParallelTest::exceptionsComeBack_data()
{
    // from: item whose part throws
    const TestTable<int, int> row("from", "to");
    row("this thread's, the last", 29, 29);
    row("another's", 0, 0);
    row("all", 0, 29);
}

/// Memory that one part does not get must not end the program.
void ParallelTest::exceptionsComeBack()
{
    QFETCH(int, from);
    QFETCH(int, to);
    std::atomic<int> parts = 0;
    int caught = 0;
    try {
        inParallel(30, 10, 3, [&](std::size_t begin, std::size_t end) {
            ++parts;
            if (static_cast<int>(begin) <= to && static_cast<int>(end) > from) {
                throw std::bad_alloc();
            }
        });
    } catch (const std::bad_alloc &) {
        ++caught;
    }
    QCOMPARE(caught, 1);
    QCOMPARE(parts.load(), 3); // the others were not given up
}

QTEST_APPLESS_MAIN(ParallelTest)
#include "tst_parallel.moc"
