#include "analysis/BinCounts.h"
#include "analysis/ResultFile.h"
#include "analysis/ToInt32.h"
#include "tests/TestFiles.h"

#include <QtTest>

using namespace orvel;

class ResultsTest : public QObject {
    Q_OBJECT

private slots:
    void countsIntoBoxes();
    void choosesLimits();
    void writesHistogramsBesideTheResult();
    void writesFourPointsMaps();

private:
    TestFiles m_files;
};

void ResultsTest::countsIntoBoxes()
{
    BinCounts bins;
    bins.setUp({1, 3, 3, true});
    QVERIFY(bins.step() == 1 && bins.from() == 0.5 && bins.to() == 3.5 && bins.autoRange());
    // 0.2 is less than one box below: truncation puts it into the first.
    for (const double value :
         {0.2, 0.5, 1.5, 3.49, -0.5, -0.6, 3.5, 9.0, qQNaN(), qInf(), -qInf()}) {
        bins.count(value);
    }
    QCOMPARE(bins.counts(), std::vector<qint32>({2, 1, 1}));
    QCOMPARE(bins.largest(), 2);
    QCOMPARE(bins.underflow(), 5); // -0.5 (one whole box below), -0.6, nan and both infinities
    QCOMPARE(bins.overflow(), 2);
    bins.setUp({1, 3, 2, false});
    QCOMPARE(bins.counts(), std::vector<qint32>({0, 0}));
    QCOMPARE(bins.largest() + bins.underflow() + bins.overflow(), 0);
    bins.setUp({1, 3, 1, false}); // one box: divides by zero
    QCOMPARE(bins.step(), qInf());
    bins.count(2.0); // no crash; not-a-number index
    QCOMPARE(bins.underflow(), 1);
    const std::pair<double, int> numbers[] = {{51.9, 51},     {-5, 2},           {1, 2},
                                              {3e9, 1 << 20}, {qInf(), 1 << 20}, {qQNaN(), 2}};
    for (const auto &[entered, boxes] : numbers) {
        QCOMPARE(BinCounts::boxesOf(entered), boxes);
    }
}

void ResultsTest::choosesLimits()
{
    const double values[] = {qQNaN(), 1.23456789, -qInf(), -2, qInf()};
    const auto limits = autoLimits(values, 5);
    QCOMPARE(limits->low, -2.0);
    QCOMPARE(limits->high, 1.23457); // as a field shows it
    const double nearlyEqual[] = {2.6576, 2.6576000001};
    QCOMPARE(autoLimits(nearlyEqual, 2)->low, 2.1576);
    QCOMPARE(autoLimits(nearlyEqual, 2)->high, 3.1576);
    const double large = 123456789; // six digits cannot tell half a unit
    QVERIFY(autoLimits(&large, 1)->low < large && autoLimits(&large, 1)->high > large);
    QVERIFY(!autoLimits(values, 1));
    QVERIFY(!autoLimits(nullptr, 0));
}

void ResultsTest::writesHistogramsBesideTheResult()
{
    const QString result = m_files.write("map.v1.txt", "");
    BinCounts bins;
    bins.setUp({0.1, 0.3, 3, false});
    for (const double value : {-9.0, 0.2, 0.21, 9.0}) {
        bins.count(value);
    }
    QVERIFY(bins.write(result, "HGAlpha"));
    // Step (0.3 - 0.1) / 2 and all edges in shortest exact form, worked out with Python's repr().
    QCOMPARE(m_files.read("map.v1_HGAlpha.txt"),
             QByteArray("-0.04999999999999998 1.3877787807814457e-17 0.05000000000000001  1\n"
                        "0.05000000000000001 0.1 0.15  0\n"
                        "0.15 0.2 0.25  2\n"
                        "0.25 0.3 0.35  0\n"
                        "0.35 0.39999999999999997 0.44999999999999996  1\n"));
    QCOMPARE(BinCounts::pathBeside(m_files.path("new"), QString("T")), m_files.path("new_T."));
    QVERIFY(!bins.write(m_files.path("no/map.txt"), "T"));
}

void ResultsTest::writesFourPointsMaps()
{
    MapColumns columns;
    columns.x = {0.5, 1e-7};
    columns.y = {-12345678, 2};
    columns.signal = columns.reference = {1, 1};
    ResultMaps maps(Method::ThreePoints, ImageData::fromColumns({"#  raw 標"}, 2, 1, columns));
    double *ratio = maps.addPlane(Quantity::Ratio1);
    double *amount = maps.addPlane(Quantity::Amount);
    ratio[0] = 0.25;
    ratio[1] = qQNaN();
    amount[0] = -0.0;
    amount[1] = qInf();
    ResultFileOptions options = {{}, {2, 4}};
    const QString path = m_files.path("four.dat");
    QVERIFY(writeResultFile(path, &maps, options));
    const QByteArray head = "# klyv result map V1.0\n#  raw \xE6\xA8\x99\n\n";
    QCOMPARE(m_files.read("four.dat"),
             head + "        0.5 -1.23457e+07          0.25        3.5          0\n"
                    "      1e-07          2           nan        nan        inf\n");
    options.valences = {2}; // the second reference went away since
    QVERIFY(writeResultFile(path, &maps, options));
    QVERIFY(m_files.read("four.dat").contains("      0.25          0          0\n"));
    QVERIFY(writeResultFile(path, nullptr, options));
    QCOMPARE(m_files.read("four.dat"), QByteArray("# klyv result map V1.0\n\n"));
    QVERIFY(!writeResultFile(m_files.path("no/four.dat"), &maps, options));
}

QTEST_GUILESS_MAIN(ResultsTest)
#include "tst_results.moc"
