#include "spectra/AMutE.h"
#include "tests/Differential.h"
#include "tests/TestFiles.h"
#include "tests/TestTable.h"

#include <QtTest>

#include <cmath>

using orvel::ReadFailure;

using Points = QVector<QPair<double, double>>; // energy, mu
Q_DECLARE_METATYPE(Points)

namespace {

constexpr double kPi = 3.1415926535; // the readers' own, ten digits

double energyAt(double angleDeg, double d)
{
    return 12.398424360387684 / (2 * d * std::sin(angleDeg * kPi / 180)) * 1000;
}

AMutE spectrumOf(const Points &points)
{
    QVector<MutPoint> converted;
    for (const auto &p : points) {
        converted.append({0.0, p.first, p.second});
    }
    AMutE spectrum;
    spectrum.setPoints(converted);
    return spectrum;
}

Points pointsOf(const AMutE &spectrum)
{
    Points points;
    for (const MutPoint &p : spectrum.points()) {
        points.append({p.energyEv, p.mut});
    }
    return points;
}

} // namespace

class SpectraTest : public QObject {
    Q_OBJECT

private slots:
    void reads_data();
    void reads();
    void fastAndTextWayAgree_data();
    void fastAndTextWayAgree();
    void failedReadsEmptyTheSpectrum();
    void findsIntervals();
    void normalizes();
    void interpolates();
    void findsEdges();
    void fitsVictoreenLinesExactly();

private:
    TestFiles m_files;
};

void SpectraTest::reads_data()
{
    const TestTable<QByteArray, Points> row("bytes", "expected"); // none: the read fails
    const Points two = {{8000, 0.5}, {8001, 0.75}};
    row("columns", "# e mu\n8000 0.5\n8001 0.75\n", two);
    row("returns, tabs, blanks, no end", "  # comment 1 2\r\n\t8000\t 0.5 \r\n8001 0.75 9 9", two);
    row("bad numbers are 0", "8000 x\n1,5 2\n0x10 1e400\n", {{8000, 0}, {0, 2}, {0, qInf()}});
    row("binary", QByteArray("\0\1\2\xFF\xFE\n\0", 7), {});

    // 9809: modes and data by item number; mode 1 is I0, 2 transmission, 3 fluorescence.
    const double e1 = energyAt(14.0, 3.1355316);
    const double e2 = energyAt(13.5, 3.1355316);
    const QByteArray transmission = "9809 some beamline\n"
                                    "Mono : SI(111)  D=  3.1355316 A\n"
                                    " Mode 0 0 1 2\n"
                                    " Offset 0 0 10.5 11.5\n";
    const QByteArray data = " 9 14.0 1.00 2.718281828459045 1\n 9 13.5 1 8 2\n";
    const Points measured = {{e1, 1.0}, {e2, std::log(4.0)}};
    row("9809", transmission + data, measured);
    row("9809 behind blanks, Shift-JIS, returns",
        QByteArray("\t  " + transmission + data).replace("some", "\x8E\x8B").replace("\n", "\r\n"),
        measured);
    row("no Offset line", QByteArray(transmission).replace("Offset", "offset") + data, {});
    row("fluorescence, I0 in item 4", "9809\nMode 0 0 0 1 3 3\nOffset\n9 14.0 1 5 4 6 10\n",
        {{e1, 4.0}}); // (6 + 10) / 4
    row("fluorescence: each item over I0", "9809\nMode 0 0 3 3 1\nOffset\n9 14.0 1 0.1 0.2 0.3\n",
        {{e1, 0.1 / 0.3 + 0.2 / 0.3}});
    row("a later Mode line without I0 keeps it",
        "9809\nMode 0 0 1 2\nMode 0 0 0 0 2\nOffset\n9 14 1 8 9 2\n", {{e1, std::log(4.0)}});
    row("first transmission column wins", "9809\nMode 0 0 1 2 2\nOffset\n9 14 1 8 2 4\n",
        {{e1, std::log(4.0)}});
    row("first kind stays, later Mode line moves the columns",
        "9809\nMode 0 0 1 2\nMode 0 0 3 2 1\nOffset\n9 14 1 7 2 8\n", {{e1, std::log(4.0)}});
    row("no I0 column", "9809\nMode 0 0 0 2\nOffset\n9 14 1 7 8 2\n", {{e1, 0}});
    row("D= holds from its line on", "9809\nMode 0 0 1 2\nOffset\n9 14 1 4 1\nD= 2.5\n9 14 1 4 1\n",
        {{e1, std::log(4.0)}, {energyAt(14.0, 2.5), std::log(4.0)}});
}

void SpectraTest::reads()
{
    QFETCH(QByteArray, bytes);
    QFETCH(Points, expected);
    AMutE spectrum;
    QCOMPARE(spectrum.readFile(m_files.write("s.dat", bytes)), !expected.isEmpty());
    QCOMPARE(spectrum.isValid(), !expected.isEmpty());
    QCOMPARE(pointsOf(spectrum), expected);
    QCOMPARE(spectrum.fileName(), QString("s.dat"));
}

void SpectraTest::fastAndTextWayAgree_data()
{
    const TestTable<QByteArray> row("bytes");
    const QList<QByteArray> numbers =
        QByteArray(
            "8000 -2.5 +.5 . 7. -0 1e3 1E-3 1e 1e+ e5 nan -nan inf 1e400 -1e-400 "
            "4.9e-324 1,5 0x10 1_0 --1 +-1 1\r2 3\xE6 \xD9\xA3 8000\xC2\xA0-1 12345678901234567890 "
            "0.1234567890123456789 9007199254740993 2.2250738585072011e-308 #1 1# "
            "\x1A")
            .split(' ');
    static const char *const gaps[] = {" ", "\t", "  \t ", "\f", "\v", "\xC2\xA0", "\xE3\x80\x80"};
    QByteArray pairs;
    for (const QByteArray &number : numbers) {
        pairs += number + " 1\n2 " + number + "\r\n" + number + '\n';
    }
    row("numbers", pairs);
    QByteArray blanks;
    for (const QByteArray gap : gaps) {
        blanks += gap + "1" + gap + "2" + gap + "\n" + gap + "\n3" + gap + "4\n";
    }
    row("blanks", blanks);
    row("comments", "# 1 2\n #3 4\n\t# 5\n6 # 7\n8 9 # 10\n11#12 13\n#");
    row("line ends", "1 2\r\r\n\r3\r 4\r\n\n5 6\r7\n\r\n8 9");
    row("scan", "9809\nD= 3\xE6 D= 2\nMode 0 0 1 2\nOffset\n"
                "9 14.0 1 8 0x1\n9\f1e1 1 1e400 nan\n9 14 1 4 2\r\n");
    std::mt19937_64 random(17);
    QByteArray mixed;
    for (int line = randomCases(3000); line > 0; --line) {
        for (auto items = random() % 5; items > 0; --items) {
            mixed += random() % 4 == 0 ? numbers[static_cast<int>(random() % 32) % numbers.size()]
                                       : QByteArray::number(anyDouble(random), "gef"[random() % 3],
                                                            static_cast<int>(random() % 18));
            mixed += gaps[random() % std::size(gaps)];
        }
        mixed += '\n';
    }
    row("mixed", mixed);
}

void SpectraTest::fastAndTextWayAgree()
{
    QFETCH(QByteArray, bytes);
    AMutE fast;
    AMutE text;
    QVERIFY(fast.readFile(m_files.write("fast", bytes)));
    QVERIFY(text.readFile(m_files.writeWide("text", bytes)));
    QCOMPARE(fast.points().size(), text.points().size());
    for (int i = 0; i < fast.points().size(); ++i) {
        const MutPoint &a = fast.points()[i];
        const MutPoint &b = text.points()[i];
        QVERIFY2(sameBits(a.energyEv, b.energyEv) && sameBits(a.mut, b.mut) &&
                     sameBits(a.angleDeg, b.angleDeg),
                 qPrintable(QString("point %1").arg(i)));
    }
}

void SpectraTest::failedReadsEmptyTheSpectrum()
{
    const QString good = m_files.write("good", "1 2\n3 4\n");
    const std::pair<QByteArray, ReadFailure> bad[] = {
        {"#\n", ReadFailure::NoPoint},
        {"9809\n1 2 3 4 5\n", ReadFailure::NoDataMark},
        {"1 2\n" + QByteArray(2 << 20, '7'), ReadFailure::LineTooLong}};
    for (const auto &[bytes, reason] : bad) {
        AMutE spectrum;
        QVERIFY(spectrum.readFile(good));
        QVERIFY(!spectrum.readFile(m_files.path("missing"))); // changes nothing
        QVERIFY(spectrum.minE() == 1 && spectrum.maxMu() == 4 && spectrum.filePath() == good);
        QVERIFY(!spectrum.readFile(m_files.write("bad", bytes)));
        QCOMPARE(spectrum.readFailure(), reason);
        QVERIFY(!spectrum.isValid() && spectrum.points().isEmpty());
        QVERIFY(spectrum.minE() == 1e300 && spectrum.maxMu() == -1e300);
    }
}

void SpectraTest::findsIntervals()
{
    const Points rising = {{10, 0}, {20, 0}, {30, 0}, {30, 0}, {40, 0}};
    const Points mixed = {{10, 0}, {30, 0}, {20, 0}, {50, 0}};
    const std::tuple<Points, double, int> cases[] = {
        {{}, 1, 0},      {{{10, 1}}, 99, 0}, {rising, 9, 0},  {rising, 10, 0},
        {rising, 25, 1}, {rising, 20, 0}, // at a point: the interval that ends there
        {rising, 30, 1}, {rising, 40, 3},    {rising, 41, 3}, {rising, qQNaN(), 0},
        {mixed, 25, 0}, // unsorted: the first that holds it
        {mixed, 45, 2},  {mixed, 50, 2},
    };
    for (const auto &[points, energyEv, expected] : cases) {
        AMutE spectrum = spectrumOf(points);
        QCOMPARE(spectrum.indexAt(energyEv), expected);
        spectrum.setDE(5.0);
        QCOMPARE(spectrum.indexAt(energyEv - 5.0), expected);
    }
}

void SpectraTest::normalizes()
{
    // Sloped lines, a shift and an edge away from the points, so that every part of the
    // definitions shows. Bits count: results must not depend on how a formula is arranged.
    AMutE spectrum = spectrumOf({{50, .25},
                                 {70, .375},
                                 {90, .5},
                                 {150, 1.5},
                                 {160, 1.75},
                                 {250, 2},
                                 {300, 2.5},
                                 {400, 2.25}});
    spectrum.setDE(3);
    spectrum.setEdge(100, 140, 200);
    spectrum.fitVictoreens();
    const auto line = [](const AMutE::Victoreen &v, double e) {
        const double lambda = 12398.424360387684 / e;
        return ((lambda * v.c + v.b) * (lambda * lambda * lambda)) + v.a;
    };
    const auto value = [&](int mode, double energyEv, double mut) {
        const double e = energyEv - 3;
        const double pre = line(spectrum.preLine(), e);
        const double post = line(spectrum.postLine(), e);
        const double jump = line(spectrum.postLine(), 140) - line(spectrum.preLine(), 140);
        const double values[] = {
            mut, mut - pre, mut - post, (mut - pre) / jump, (mut - pre) / (post - pre), 0.0};
        return values[mode];
    };
    for (int mode = 0; mode <= 5; ++mode) {
        const double v0 = value(mode, 150, 1.5);
        const double v1 = value(mode, 160, 1.75);
        QCOMPARE(spectrum.valueAt(mode, 3), v0);
        QCOMPARE(spectrum.valueAtOrZero(mode, 3), v0);
        QCOMPARE(spectrum.valueAtOrZero(mode, 8), 0.0);
        QCOMPARE(spectrum.valueAtOrZero(mode, -1), 0.0);
        QCOMPARE(spectrum.valueAtE(mode, 149.3),
                 v0 + (v1 - v0) / (157.0 - 147.0) * (149.3 - 147.0));
    }
    double minus = 0.0;
    QVERIFY(spectrum.valueMinusLine(149.3, true, minus));
    QCOMPARE(minus, 1.5 + (1.75 - 1.5) / (157.0 - 147.0) * (149.3 - 147.0) -
                        line(spectrum.postLine(), 149.3));
    QCOMPARE(spectrum.findEdge(), ((90.0 - 3) + (150.0 - 3)) / 2);
    QCOMPARE(spectrum.valueAt(-1, 3), 0.0);
}

void SpectraTest::interpolates()
{
    AMutE spectrum = spectrumOf({{10, 1}, {20, 3}, {40, 4}});
    // Outside from the first and the last interval.
    const std::pair<double, double> values[] = {{15, 2}, {20, 3}, {30, 3.5}, {5, 0}, {60, 5}};
    for (const auto &[energyEv, expected] : values) {
        QCOMPARE(spectrum.valueAtE(0, energyEv), expected);
    }
    QCOMPARE(spectrum.valueAtE(9, 15), 0.0);
    double min = 3.5;
    double max = 3.5;
    spectrum.rangeOf(0, 10, 20, min, max); // both ends belong to it
    QVERIFY(min == 1 && max == 3.5);
    spectrum.setDE(5.0); // the point read at 15 eV counts as 10 eV
    QCOMPARE(spectrum.valueAtE(0, 10), 2.0);
    QCOMPARE(spectrumOf({{10, 1}}).valueAtE(0, 10), 0.0);
    QCOMPARE(AMutE().valueAtE(0, 10), 0.0);
}

void SpectraTest::findsEdges()
{
    const std::pair<Points, double> cases[] = {
        {{{8970, 0}, {8979, 0}, {8981, 1}, {8990, 1}}, 8980},
        {{{10, 0}, {11, 1}, {21, 3}}, 16}, // raw step, not slope
        {{{10, 0}, {20, 1}, {30, 2}}, 15}, // ties keep the first
        {{{10, 3}, {20, 2}, {30, 0}}, 5},  // falling by 1 and more
        {{{10, 3}}, 5},
        {{}, 0},
    };
    for (const auto &[points, expected] : cases) {
        QCOMPARE(spectrumOf(points).findEdge(), expected);
    }
}

void SpectraTest::fitsVictoreenLinesExactly()
{
    // Points on one Victoreen line before and another behind; those at the bounds belong to none.
    const auto close = [](double a, double b, double tolerance) {
        return std::fabs(a - b) <= tolerance;
    };
    const double shift = 5.0;
    const auto line = [](double e, double a, double b, double c) {
        const double lambda = 12398.424360387684 / e;
        return a + b * std::pow(lambda, 3) + c * std::pow(lambda, 4);
    };
    Points points;
    for (int e = 7000; e <= 10000; e += 100) {
        const double value = e < 8300    ? line(e, 0.1, 0.2, -0.03)
                             : e == 8300 ? 99.0
                                         : line(e, 0.5, 0.3, 0.01);
        points.append({e + shift, value});
    }
    QByteArray bytes; // reading fits with the defaults: below 8000 eV and above 8500 eV
    for (int e = 7000; e <= 9500; e += 50) {
        bytes += QByteArray::number(e) + (e < 8000 ? " 0.25\n" : e > 8500 ? " 2\n" : " 99\n");
    }
    AMutE spectrum;
    QVERIFY(spectrum.readFile(m_files.write("step", bytes)));
    QVERIFY(close(spectrum.pre(7777), 0.25, 1e-8) && close(spectrum.post(9000), 2.0, 1e-8));

    spectrum.setPoints(spectrumOf(points).points());
    spectrum.setDE(shift);
    spectrum.setEdge(8300, 8350, 8300);
    spectrum.fitVictoreens();
    // Condition of the normal equations is about 1e9: coefficients to 1e-6, lines far better.
    QVERIFY(close(spectrum.preLine().b, 0.2, 1e-5));
    QVERIFY(close(spectrum.postLine().c, 0.01, 1e-5));
    QVERIFY(close(spectrum.pre(7450), line(7450, 0.1, 0.2, -0.03), 1e-9));
    QVERIFY(close(spectrum.post(9450), line(9450, 0.5, 0.3, 0.01), 1e-9));
    QVERIFY(
        close(spectrum.edgeJump(), line(8350, 0.5, 0.3, 0.01) - line(8350, 0.1, 0.2, -0.03), 1e-8));

    spectrum.setEdge(0, 8350, 1e6); // nothing in either range
    spectrum.fitVictoreens();
    QVERIFY(!std::isfinite(spectrum.pre(8000)));
}

QTEST_GUILESS_MAIN(SpectraTest)
#include "tst_spectra.moc"
