#include "images/A2DData.h"
#include "images/LineItems.h"
#include "images/TDData0.h"
#include "tests/Differential.h"
#include "tests/LogCatcher.h"
#include "tests/TestFiles.h"
#include "tests/TestTable.h"

#include <QtTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>

using namespace orvel;

Q_DECLARE_METATYPE(ReadFailure)

namespace {

/// "x y signal reference; x y ..." for comparison.
QString textOfPixels(const A2DData &data)
{
    QStringList texts;
    for (qint64 i = 0; i < data.pixelCount(); ++i) {
        const PixelRecord p = data.pixel(i);
        texts << QString("%1 %2 %3 %4").arg(p.x).arg(p.y).arg(p.signal).arg(p.reference);
    }
    return texts.join("; ");
}

template <class T> QByteArray rawBytes(const QVector<T> &values)
{
    return {reinterpret_cast<const char *>(values.constData()),
            values.size() * static_cast<int>(sizeof(T))};
}

} // namespace

class ImagesTest : public QObject {
    Q_OBJECT

private slots:
    void readsTextMaps_data();
    void readsTextMaps();
    void fastAndTextWayAgree();
    void keepsHeaderLinesAndTellsEnergies();
    void refusesTextMaps_data();
    void refusesTextMaps();
    void absorption();
    void writesProcessedMapsByteForByte();
    void readsProcessedMaps();
    void shortProcessedMapsAreReadAsFarAsTheyGo();
    void refusesProcessedMaps_data();
    void refusesProcessedMaps();
    void takesItems();

private:
    QByteArray processedMap(const QByteArray &size) const;

    TestFiles m_files;
};

void ImagesTest::readsTextMaps_data()
{
    const TestTable<QByteArray, QString, QString> row("bytes", "grid", "pixels");
    const char *const two = "0 0 5 7; 1 0 6 8";
    row("1306",
        "# 1306 scan\n# AXIS 0 a b c d 1\n# AXIS 1 a b c d 0\n"
        "0 0 5 7\n1 0 6 8\n",
        "2x1", two);
    row("last index counts from 0", "# 1306\n# AXIS 0 a b c d 99\n# axis 1 a b c d 0\n0 0 5 7\n",
        "100x1", "0 0 5 7");
    row("plain, mixed case, returns, tabs, end-of-file character, no end",
        "hello\r\n#\tx-num\t2 \r\n# Y-Num 1\r\n\t0 0\t5 7  \r\n\x1A\r\n1 0 6 8 9 9", "2x1", two);
    row("byte-order mark", "\xEF\xBB\xBF# 2003901\n# I : 0\n# I0 : 1\n0 0 5 7\n1 0 6 8\n", "2x1",
        two);
    row("2003901: columns count from the third item",
        "# 2003901\n# I0 : 2\n# I : 3\n# I: 9 9\n# X-NUM 7\n"
        "0 0 a b 7 5\n1 0 a b 8 6\n1 0 a b 8\n",
        "2x1", two);
    row("2003901: grid from the positions",
        "# 2003901\n# I : 0\n# I0 : 0\n0 0 1\n1 0 1\n0 1 1\n1 1 1\n", "2x2",
        "0 0 1 1; 1 0 1 1; 0 1 1 1; 1 1 1 1");
    row("2003901: impossible columns hold nothing, negative ones count back",
        "# 2003901\n# I : 2147483647\n# I0 : -3\n1 2 3 4\n# I : -1\n# I0 : -2\n"
        "1 2 3 4\n",
        "1x1", "1 2 2 1");
    row("bad numbers are 0", "# X-NUM 2\n# Y-NUM 1\na 1,5 1e400 nan\n", "2x1", "0 0 inf nan");
}

void ImagesTest::readsTextMaps()
{
    QFETCH(QByteArray, bytes);
    A2DData data;
    QVERIFY(data.loadMap(m_files.write("map.txt", bytes)));
    QTEST(QString("%1x%2").arg(data.xNum()).arg(data.yNum()), "grid");
    QTEST(textOfPixels(data), "pixels");
}

void ImagesTest::fastAndTextWayAgree()
{
    const QList<QByteArray> items = // "~" is a NUL
        QByteArray("1 -2.5 +.5 1e-3 nan x 1,5 0x1 1e400 -0 7. 12345678901234567890 1\r2 \xC2\xA0 "
                   "3\xE6 1e --1 0.1234567890123456789 34~ \xEF\xBB\xBF\x37")
            .replace('~', '\0')
            .split(' ');
    static const char *const gaps[] = {" ", "  ", "\t", " \t ", "\f"};
    std::mt19937 random(3);
    for (const char *kind : {"# 1306", "# 2003901", "plain"}) {
        QByteArray bytes = QByteArray(kind) + "\n# X-NUM 60\n# Y-NUM 50\n# I : 1\n# I0 : 0\n";
        for (int line = 0; line < 12000; ++line) { // several blocks of the reader
            if (line % 1000 == 0) {
                bytes += QByteArray(3000, ' ');
            }
            const int count = static_cast<int>(random() % 7);
            bytes += random() % 10 == 0 ? gaps[random() % 5] : "";
            for (int i = 0; i < count; ++i) {
                bytes += random() % 4 == 0
                             ? items[static_cast<int>(random() % 20)]
                             : QByteArray::number(static_cast<int>(random() % 2000000) * 1e-3, 'g',
                                                  1 + i * 3);
                bytes += gaps[random() % 5];
            }
            bytes += random() % 5 == 0 ? "\r\n" : "\n";
        }
        TextMap fast;
        TextMap text;
        const ReadFailure fastOutcome = readTextMap(m_files.write("fast", bytes), {}, fast);
        const ReadFailure textOutcome = readTextMap(m_files.writeWide("text", bytes), {}, text);
        QCOMPARE(fastOutcome, textOutcome);
        QVERIFY(fast.columns.x.size() > 1000);
        for (Column MapColumns::*column :
             {&MapColumns::x, &MapColumns::y, &MapColumns::signal, &MapColumns::reference}) {
            const Column &a = fast.columns.*column;
            const Column &b = text.columns.*column;
            QVERIFY(std::equal(a.begin(), a.end(), b.begin(), b.end(), sameBits));
        }
        QCOMPARE(fast.header, text.header);
    }
}

void ImagesTest::keepsHeaderLinesAndTellsEnergies()
{
    QStringList told;
    A2DData data;
    const QByteArray header = "# 1306  two  blanks\r\n #\t\x94\x5A end \n# ENERGY : 8333.5 eV\n"
                              "# X-NUM 1\n# Y-NUM 1\n#\n# energy = x\n# ENERGY 1\n";
    const QString path = m_files.write("map.txt", header + "1 2 3 4\n");
    QVERIFY(data.loadMap(path, [&](const QString &text) {
        told << text;
        QCOMPARE(data.pixelCount(), 0); // not there yet
    }));
    QCOMPARE(told.join(' '), QString("8333.5 x"));
    QCOMPARE(data.header().join('\n') + '\n', QString::fromUtf8(header).remove('\r'));
}

void ImagesTest::refusesTextMaps_data()
{
    const TestTable<QByteArray, ReadFailure, bool> row("bytes", "reason", "previousStays");
    row("no pixel", "# X-NUM 2\n# Y-NUM 2\n", ReadFailure::NoPixel, false);
    row("no grid", "# X-NUM 2\n1 2 3 4\n", ReadFailure::NoGrid, false);
    row("too many missing", "# X-NUM 4194306\n# Y-NUM 1\n1 2 3 4\n", ReadFailure::GridTooLarge,
        true);
    row("overflowing axis", "# AXIS 0 a b c d 2147483647\n# Y-NUM 1\n1 2 3 4\n",
        ReadFailure::GridTooLarge, true);
    row("endless line", QByteArray(2 << 20, '1'), ReadFailure::LineTooLong, true);
}

void ImagesTest::refusesTextMaps()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, previousStays);
    A2DData data;
    QVERIFY(data.loadMap(m_files.write("good.txt", "# X-NUM 1\n# Y-NUM 1\n9 9 9 9\n")));
    const auto before = data.map();
    QVERIFY(!data.loadMap(m_files.write("bad.txt", bytes)));
    QTEST(data.loadFailure(), "reason");
    QCOMPARE(data.hasMap(), previousStays);
    QCOMPARE(data.map() == before, previousStays);
    QVERIFY(!data.loadMap(m_files.path("missing")));
    QCOMPARE(data.hasMap(), previousStays);
}

void ImagesTest::absorption()
{
    const auto image = ImageData::fromColumns(
        {}, 2, 3, {{0, 1, 0, 1, 5}, {0, 0, 1, 1, 5}, {0.5, 0, 2, -1, 3}, {0, 7, 8, 1, 3}});
    QVector<double> found; // the sixth pixel of the grid has no record
    for (int i = 0; i < 6; ++i) {
        found += image->absorption(i % 2, i / 2);
    }
    QVERIFY(std::isnan(found.takeAt(3)));
    QCOMPARE(found, (QVector<double>{0.5, 1.0, std::log(4.0), 0.0, -1.0}));
    QCOMPARE(image->absorption(4, 0), 0.0); // beyond its own width: on into the next rows
    QCOMPARE(image->absorption(0, 100), -1.0);
    QCOMPARE(image->absorption(-1, 0), -1.0);
    const auto processed = ImageData::fromAbsorption(2, 2, {1, 2, 3, 4});
    QCOMPARE(processed->absorption(1, 1), 4.0);
    QVERIFY(!ImageData::fromAbsorption(0, 0, {})->isMap());
}

void ImagesTest::writesProcessedMapsByteForByte()
{
    TDData0 map;
    map.dataId = "a b ";
    map.width = 2;
    map.height = 1;
    map.data = {1.5, -2};
    map.valid = {true, false};
    map.minVal = -2;
    QVERIFY(map.write(m_files.path("m.tdd")));
    const QByteArray text =
        "2dData-V0.0 HeaderSize: 512" + QByteArray(37, ' ') +
        "\n"
        "WIDTH: 2\nHEIGHT: 1\nDATA_ID: a b \n"
        "DATA_STRUCTURE: Header of Size ( HeaderSize: ), Row Double Data Block of pixels "
        "( WIDTH: * HEIGHT ), Row Bool Valid Flag Block of pixels ( WIDTH: * HEIGHT ) \n"
        "SIZE_OF_DOUBLE: 8\nSIZE_OF_BOOL: 1\nMIN_VAL: -2\nMAX_VAL: -1e+300\nEND_OF_HEADER:\n";
    QCOMPARE(m_files.read("m.tdd"), text + QByteArray(512 - text.size(), '\0') +
                                        rawBytes(map.data) + QByteArray("\1\0", 2));
    QVERIFY(!map.write(m_files.path("no/m.tdd")));
    map.data.resize(1); // would leave the file short
    QVERIFY(!map.write(m_files.path("m.tdd")));
}

/// A hand-made header of 256 bytes with the given lines for the size, then 2 pixels.
QByteArray ImagesTest::processedMap(const QByteArray &size) const
{
    QByteArray bytes = "2dData-V0.0 HeaderSize: 256";
    bytes = bytes.leftJustified(64) + "\n" + size + "DATA_ID: x  \"y\nMIN_VAL: 1.5\nMAX_VAL: z\n" +
            "END_OF_HEADER:\nWIDTH: 77\n";
    bytes = bytes.leftJustified(256, '\0');
    return bytes + rawBytes(QVector<double>{1.5, 2.5}) + QByteArray("\0\7", 2);
}

void ImagesTest::readsProcessedMaps()
{
    const auto textOf = [](const TDData0 &map) {
        QString text;
        QDebug(&text) << map.width << map.height << map.dataId << map.minVal << map.maxVal
                      << map.data << map.valid;
        return text;
    };
    TDData0 map;
    QVERIFY(map.read(m_files.write("m", processedMap("WIDTH: 1\nHEIGHT: 2\n"))));
    QCOMPARE(textOf(map),
             QString("1 2 \"x  \\\"y\" 1.5 0 QVector(1.5, 2.5) QVector(false, true) "));

    A2DData data;
    QVERIFY(data.loadMap(m_files.path("m")));
    QCOMPARE(textOfPixels(data), QString("0 0 1.5 0; 0 1 2.5 0"));
    QCOMPARE(data.map()->absorption(0, 1), 2.5);
}

void ImagesTest::shortProcessedMapsAreReadAsFarAsTheyGo()
{
    const QByteArray whole = processedMap("WIDTH: 2\nHEIGHT: 1\n");
    for (int size = 256; size <= whole.size(); ++size) {
        TDData0 map;
        QVERIFY(map.read(m_files.write("cut", whole.left(size))));
        QCOMPARE(map.data, QVector<double>({size >= 264 ? 1.5 : 0.0, size >= 272 ? 2.5 : 0.0}));
        QCOMPARE(map.valid, QVector<bool>({false, size >= whole.size()}));
    }
}

void ImagesTest::refusesProcessedMaps_data()
{
    const TestTable<QByteArray, ReadFailure> row("bytes", "reason");
    const QByteArray good = processedMap("WIDTH: 2\nHEIGHT: 1\n");
    row("empty", "", ReadFailure::NotProcessed);
    row("negative header", QByteArray(good).replace("Size: 256", "Size: -25"),
        ReadFailure::NotProcessed);
    row("huge header", QByteArray(good).replace("Size: 256", "Size: 2147483647"),
        ReadFailure::NotProcessed);
    row("negative size", processedMap("WIDTH: -2\nHEIGHT: -1\n"), ReadFailure::NoGrid);
    row("2^27 + 2^15 pixels", processedMap("WIDTH: 32768\nHEIGHT: 4097\n"),
        ReadFailure::GridTooLarge);
    row("too much missing", processedMap("WIDTH: 4194307\nHEIGHT: 1\n"), ReadFailure::GridTooLarge);
}

void ImagesTest::refusesProcessedMaps()
{
    QFETCH(QByteArray, bytes);
    const QString path = m_files.write("bad.tdd", bytes);
    if (bytes.contains("4097")) { // pixels that the (sparse) file really has
        QVERIFY(QFile::resize(path, 256 + qint64(32768) * 4097 * 9));
    }
    TDData0 map;
    map.width = 5;
    QVERIFY(!map.read(path));
    QTEST(map.readFailure(), "reason");
    QCOMPARE(map.width, 5); // unchanged
}

void ImagesTest::takesItems()
{
    const std::array<const char *, 4> cases[] = {
        // line, item, rest, how it is quoted amiss
        {" \t ", "", "", ""},
        {"  a\tb", "a", "\tb", ""},
        {"\"x y\" z", "x y", " z", ""},
        {"\"open end", "open", " end", "quote but not ended by quote"},
        {"closed\"", "closed\"", "", "not quote but ended by quote"},
        {"a b\"", "a", " b\"", ""},
    };
    for (const auto &[line, expected, rest, fault] : cases) {
        const LogCatcher log;
        QString item = "before";
        QCOMPARE(takeItem(line, item), rest);
        QCOMPARE(item, expected);
        QCOMPARE(log.lines().value(0).section("started from ", 1), fault);
    }
}

QTEST_GUILESS_MAIN(ImagesTest)
#include "tst_images.moc"
