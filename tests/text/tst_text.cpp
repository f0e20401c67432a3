#include "tests/Differential.h"
#include "tests/TestFiles.h"
#include "tests/TestTable.h"
#include "text/NumberText.h"
#include "text/OutputFile.h"
#include "text/TextFile.h"

#include <QTextCodec>
#include <QtTest>

#include <cmath>
#include <csignal>
#include <cstring>
#include <random>

#include <sys/resource.h>

using namespace orvel;

class TextTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void generalTextIsTheToolkits();
    void shortestTextIsTheToolkits();
    void numbersAreTheToolkits();
    void lines_data();
    void lines();
    void outputReplacesOnlyWhenWhole();
    void outputKeepsTheOldFileOnAFullDisk();

private:
    TestFiles m_files;
};

void TextTest::initTestCase()
{
    // Files are UTF-8 whatever the locale says.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
}

void TextTest::generalTextIsTheToolkits()
{
    const auto text = [](double value) {
        char out[kGeneralTextSize];
        return QString::fromLatin1(out, writeGeneral(value, out));
    };
    QCOMPARE(text(-0.0), QString("0"));
    QCOMPARE(text(-qQNaN()), QString("nan"));
    QCOMPARE(text(-qInf()), QString("-inf"));
    QCOMPARE(text(100000), QString("100000"));
    QCOMPARE(text(2215.625), QString("2215.63"));             // a tie, away from zero
    QCOMPARE(text(-1.234567e-308), QString("-1.23457e-308")); // the longest

    std::mt19937_64 random(7);
    for (int i = randomCases(200000); i > 0; --i) {
        const double value =
            i % 2 == 0
                ? anyDouble(random)
                : static_cast<double>(static_cast<qint64>(random()) % 2000001) / 1024.0; // ties
        QCOMPARE(text(value), QString::number(value, 'g', 6));
    }
}

void TextTest::shortestTextIsTheToolkits()
{
    const auto isSame = [](double value) {
        char out[kShortestTextSize];
        const QByteArray text(out, writeShortest(value, out));
        const QByteArray expected = QByteArray::number(value, 'g', QLocale::FloatingPointShortest);
        if (text != expected) {
            qWarning() << text << "is not" << expected;
        }
        return text == expected;
    };
    for (const double value : {0.0, -0.0, qQNaN(), -qQNaN(), qInf(), -qInf(), 5e-324, -2.5e-323,
                               2.2250738585072014e-308, -1.7976931348623157e308, 0x1p53 + 2}) {
        QVERIFY(isSame(value));
    }
    // Numbers of 1 to 17 digits at every exponent: both sides of every change of layout.
    for (int digits = 1; digits <= 17; ++digits) {
        const QByteArray mantissa = QByteArray("1.2345678912345678").left(digits + (digits > 1));
        for (int x = -310; x <= 308; ++x) {
            QVERIFY(isSame((mantissa + 'e' + QByteArray::number(x)).toDouble()));
        }
    }
    // Powers of two, where the doubles below lie denser than those above, and their neighbours.
    for (int power = -1074; power < 1024; ++power) {
        const double value = std::ldexp(1.0, power);
        QVERIFY(isSame(value) && isSame(std::nextafter(value, 0.0)) &&
                isSame(-std::nextafter(value, qInf())));
    }
    std::mt19937_64 random(13);
    for (int i = randomCases(200000); i > 0; --i) {
        const auto whole = static_cast<double>(random() % (1 << 23));
        const double kinds[] = {anyDouble(random), whole / 1e4, 0.1 * whole,
                                0x1p51 + whole + 0.25}; // half way between ...2 and ...3
        QVERIFY(isSame(kinds[i % 4]));
    }
}

void TextTest::numbersAreTheToolkits()
{
    // Items of the letters of numbers, most of them well formed.
    std::mt19937_64 random(11);
    const QByteArray letters = "0123456789+-.eE";
    int read = 0;
    const int cases = randomCases(400000);
    for (int i = 0; i < cases; ++i) {
        QByteArray item;
        if (i % 4 == 0) {
            item = QByteArray::number(anyDouble(random), "gfe"[i / 4 % 3],
                                      static_cast<int>(random() % 20));
        } else {
            const int size = 1 + static_cast<int>(random() % 22);
            for (int k = 0; k < size; ++k) {
                item += random() % 12 == 0 ? letters[static_cast<int>(random() % 15)]
                                           : static_cast<char>('0' + random() % 10);
            }
        }
        const QByteArray line = " \t" + item + (i % 2 == 0 ? " 7" : "");
        const char *at = line.constBegin();
        double value = 0.0;
        if (readNumber(at, line.constEnd(), value) == NextNumber::Item) {
            ++read;
            const double expected = QString::fromLatin1(item).toDouble();
            QVERIFY2(sameBits(value, expected), item.constData());
            QCOMPARE(at, line.constBegin() + 2 + item.size());
        } else {
            bool ok = false; // only what the toolkit refuses, too, and what it alone judges
            QString::fromLatin1(item).toDouble(&ok);
            QVERIFY2(!ok || item.contains("nan") || item.contains("inf"), item.constData());
        }
    }
    QVERIFY(read > cases / 2);
    for (const char *other : {"", " \t ", "1\r2", "1\xC2\xA0", "x", "nan", "1,5", "#", "+-1"}) {
        const char *at = other;
        double value = 0.0;
        QVERIFY(readNumber(at, other + std::strlen(other), value) != NextNumber::Item);
    }
}

void TextTest::lines_data()
{

    const TestTable<QByteArray, QStringList> row("bytes", "expected");
    const QStringList two = {"1 2", "3"};
    row("no end at the end", "1 2\n3", two);
    row("doubled returns", "1 2\r\r\n\r3\r\n", two);
    row("UTF-8 mark",
        "\xEF\xBB\xBF"
        "1 2\n3\n",
        two);
    row("UTF-16 mark",
        QByteArray("\xFF\xFE"
                   "1\0 \0"
                   "2\0\n\0"
                   "3\0\n\0",
                   12),
        two);
    // Undecodable, decodable, blank, x.
    row("Shift-JIS", "\x94\x5A x\n", {QString::fromUtf8("\uFFFDZ x")});
    row("mark inside, as of joined files",
        "\xEF\xBB\xBF\xEF\xBB\xBF"
        "1\n\xEF\xBB\xBF"
        "2\n",
        {QString(QChar(0xFEFF)) + "1", QString(QChar(0xFEFF)) + "2"});
}

void TextTest::lines()
{
    QFETCH(QByteArray, bytes);
    TextFile file(m_files.write("lines.txt", bytes));
    QVERIFY(file.open());
    QStringList lines;
    QString line;
    while (file.readLine(line)) {
        lines.append(line);
    }
    QTEST(lines, "expected");
    QCOMPARE(file.failure(), ReadFailure::None);
}

void TextTest::outputReplacesOnlyWhenWhole()
{
    const QString path = m_files.write("out", "old");
    const QByteArray large(1000001, 'n'); // several blocks and a rest
    {
        OutputFile abandoned(path);
        QVERIFY(abandoned.open());
        abandoned.write(large);
    }
    QCOMPARE(m_files.read("out"), QByteArray("old"));
    QVERIFY(!OutputFile(m_files.path(QString())).open()); // a folder
    OutputFile file(path);
    QVERIFY(file.open());
    file.write(large);
    file.write("end");
    QVERIFY(file.commit());
    QCOMPARE(m_files.read("out"), large + "end");
}

void TextTest::outputKeepsTheOldFileOnAFullDisk()
{
    for (const int size : {5000, 70000, 256 * 1024 + 100, 1000000}) { // around all buffers
        const QString path = m_files.write("full", "old");
        rlimit before;
        getrlimit(RLIMIT_FSIZE, &before);
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit small = {4096, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
        OutputFile file(path);
        const bool opened = file.open();
        file.write(QByteArray(size, 'x'));
        const bool committed = file.commit();
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
        QVERIFY(opened);
        QVERIFY(!committed);
        QCOMPARE(m_files.read("full"), QByteArray("old"));
    }
}

QTEST_GUILESS_MAIN(TextTest)
#include "tst_text.moc"
