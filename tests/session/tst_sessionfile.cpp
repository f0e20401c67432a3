#include "session/InputLoader.h"
#include "session/RegionTexts.h"
#include "session/SessionFile.h"
#include "tests/TestFiles.h"
#include "tests/TestTable.h"

#include <QDir>
#include <QSettings>
#include <QtTest>

#include <sys/stat.h>

using namespace orvel;

namespace {

const QByteArray kHead = "[Session]\nVersion=1\n";

/// All fields of a state; a difference names its line.
QStringList listed(const PanelState &state)
{
    QStringList lines;
    const auto add = [&lines](const QString &name, const QVariantList &values) {
        lines += name;
        for (const QVariant &value : values) {
            lines.last() += ' ' + value.toString();
        }
    };
    const SessionTexts &texts = state.texts;
    add("edge", {texts.edgeE.value_or("(none)"), texts.preEdgeEndDE, texts.postEdgeStartDE});
    for (const ReferenceTexts &row : texts.references) {
        add("reference", {row.use, row.file, row.dE, row.valence});
    }
    add("target", {texts.target.file, texts.target.dE});
    for (const PointTexts &row : texts.points) {
        add("point", {row.use, row.lcf, row.vPoint, row.energy, row.file});
    }
    add("method", {texts.nonEquiv, int(texts.solver), int(texts.subForRef), int(texts.subForTarget),
                   int(texts.background)});
    for (const HistogramTexts &row : {texts.valenceHistogram, texts.amountHistogram}) {
        add("histogram", {row.from, row.to, row.boxes, row.autoRange});
    }
    add("record", {});
    for (const bool column : texts.record) {
        lines.last() += column ? " on" : " off";
    }
    add("result", {texts.resultFile});
    const ViewTexts &view = state.view;
    add("quantities", {int(view.mapQuantity), int(view.histogramQuantity)});
    add("graphs", {int(view.normalize), view.fullRange});
    add("shown",
        {view.mapWithGrid, view.showDataMap, view.showGraphs, view.showResultMap, view.dataMapRow});
    add("displayed", {view.displayFiles.join(' ')});
    for (const Region &region : texts.regions) {
        add("region", {textOf(region), region.isValid()});
    }
    add("regions", {view.regionsAlone});
    return lines;
}

/// A spectrum without absorption up to the edge, so that its pre-edge line is exactly 0.
QByteArray spectrum(const QByteArray &edgePoints)
{
    return "1000 0\n2000 0\n3000 0\n4000 0\n5000 0\n" + edgePoints;
}

QByteArray mapAt(const QByteArray &energyEv)
{
    return "# ENERGY : " + energyEv + "\n# X-NUM 1\n# Y-NUM 1\n0 0 1 0\n";
}

} // namespace

class SessionFileTest : public QObject {
    Q_OBJECT

private slots:
    void init() { m_files = std::make_unique<TestFiles>(); } // new ones for every row
    void readsAndWritesEveryKey();
    void pathsMoveWithTheirFolder_data();
    void pathsMoveWithTheirFolder();
    void texts_data();
    void texts();
    void refuses();
    void regions_data();
    void regions();
    void edgeOfTheSpectra();
    void inputsAreShiftedAndFilled();

private:
    SessionReading read(const QByteArray &bytes) const
    {
        return readSession(m_files->write("s.ini", bytes));
    }

    std::unique_ptr<TestFiles> m_files;
};

void SessionFileTest::readsAndWritesEveryKey()
{
    const QDir folder(m_files->path(""));
    QString expected = "edge 7112.5 -40 90";
    for (int i = 1; i <= 4; ++i) {
        expected += QString("|reference true %1/refs/%2.dat 0.%2 %2.5").arg(folder.path()).arg(i);
    }
    expected += QString("|target %1/試料 a,b;c.dat -1.5").arg(folder.path());
    for (int i = 1; i <= 8; ++i) {
        expected += QString("|point true true true 710%1 /maps/%1.txt").arg(i);
    }
    expected += "|method true 1 1 1 1|histogram 1 2 3 true|histogram 4 5 6 true|record" +
                QString(" off").repeated(13) + "|result " + folder.path() + "/../out/map.v1.dat" +
                "|quantities 10 6|graphs 3 false|shown true false false false 7|displayed " +
                folder.path() + "/one.dat /else/two.dat" + "|region 14 Rectangle -1 2 3 40 true" +
                "|region 1 Polygon 0.5 0 1e-05 7.25 8 9 0 0 true|regions true";
    QFile full(ORVEL_TEST_DATA "/session/full.ini");
    QVERIFY(full.open(QIODevice::ReadOnly));
    const SessionReading reading = read(full.readAll());
    QCOMPARE(reading.error + (reading.notes + reading.viewNotes).join('|'), QString());
    QCOMPARE(listed(reading.state).join('|'), expected);
    const MethodChoice method = methodOf(reading.state.texts);
    QVERIFY(method.nonEquiv && !method.exact && method.linearBackground);
    QVERIFY(method.subPostForRef && method.subPostForTarget);

    const QString path = m_files->write("w.ini", "[Left]\nOver=1\n");
    QVERIFY(writeSession(path, reading.state));
    const SessionReading again = readSession(path);
    QCOMPARE(again.error + again.notes.join('|'), QString());
    QCOMPARE(listed(again.state).join('|'), expected);
    // The same keys and no other; and defaults of them all differ, or some might not be read.
    const QStringList keys = QSettings(m_files->path("s.ini"), QSettings::IniFormat).allKeys();
    QCOMPARE(QSettings(path, QSettings::IniFormat).allKeys(), keys);
    QVERIFY(writeSession(m_files->path("d.ini"), PanelState()));
    QCOMPARE(listed(readSession(m_files->path("d.ini")).state), listed(PanelState()));
    const QSettings defaults(m_files->path("d.ini"), QSettings::IniFormat);
    for (const QString &key : keys) {
        QVERIFY2(key == "Session/Version" ||
                     defaults.value(key) != QSettings(path, QSettings::IniFormat).value(key),
                 qPrintable(key));
    }
    // So that a look at the first line tells a session from other files.
    QVERIFY(m_files->read("w.ini").startsWith("[Session]\n"));
}

void SessionFileTest::pathsMoveWithTheirFolder_data()
{
    const TestTable<QString> row("name");
    for (const char *name :
         {" blanks at the ends ", "a, b;c.dat", "価数/図.dat", "quote\"d.dat", "back\\slash.dat",
          "100%41.dat", "@Invalid()", "../beside/x.dat", "two\nlines.dat"}) {
        row(name, QString(name));
    }
}

void SessionFileTest::pathsMoveWithTheirFolder()
{
    QFETCH(QString, name);
    const QDir folder(m_files->path(""));
    QVERIFY(folder.mkdir("old") && folder.mkdir("new"));
    const auto pathIn = [&](const char *at) {
        return QDir::cleanPath(m_files->path(at + ('/' + name)));
    };
    PanelState state;
    state.texts.target.file = pathIn("old");
    state.view.displayFiles = QStringList{pathIn("old"), pathIn("old")};
    QVERIFY(writeSession(m_files->path("old/s.ini"), state));
    QCOMPARE(listed(readSession(m_files->path("old/s.ini")).state), listed(state));

    const QString copy = m_files->write("new/s.ini", m_files->read("old/s.ini"));
    const QString moved = name.startsWith("../") ? pathIn("old") : pathIn("new");
    QCOMPARE(readSession(copy).state.texts.target.file, moved);
}

void SessionFileTest::texts_data()
{
    // expected: one of listed()
    const TestTable<QByteArray, QString, QString> table("lines", "expected", "note");
    const auto row = [](const QByteArray &lines, const char *expected, const char *note = "") {
        QTest::newRow(lines.simplified().constData())
            << lines << QString(expected) << QString(note);
    };
    row("[Edge]\nEdgeE=8350 eV", "edge 8350 eV -50 100"); // no number stays text
    row("[Edge]\nEdgeE=", "edge  -50 100");               // empty is not missing
    row("[Edge]\nEdgeE=8,350", "edge 8,350 -50 100");     // a comma makes no list
    row("[Edge]\nEdgeE=8350   ; eV, found", "edge 8350 -50 100");
    for (const char *yes : {"true", "1"}) {
        row(QByteArray("[View]\nMapWGrid=") + yes, "shown true true true true 1");
    }
    for (const char *other : {"True", "yes", "2", "0", "", "true,true"}) {
        row(QByteArray("[View]\nFullRangeCB=") + other, "graphs 0 false");
    }
    row("[Output]\nSaveFSelect=/a/b,c.dat", "result /a/b,c.dat");
    row("[Output]\nSaveFSelect=/a/./b/../c.dat", "result /a/./b/../c.dat"); // b may be a link
    row("[Method]\nTypeTMK=ls", "method false 0 0 0 0",
        "unknown choice Method/TypeTMK=ls, taken as Exact");
    row("[Edge]\nedgee=1", "edge (none) -50 100", "unknown key Edge/edgee");
}

void SessionFileTest::texts()
{
    QFETCH(QByteArray, lines);
    QFETCH(QString, expected);
    for (const char *mark : {"", "\xEF\xBB\xBF"}) {
        const SessionReading reading = read(mark + kHead + lines + '\n');
        QCOMPARE(reading.error, QString());
        QVERIFY2(listed(reading.state).contains(expected),
                 qPrintable(listed(reading.state).join('\n')));
        QTEST((reading.notes + reading.viewNotes).join('|'), "note");
    }
}

void SessionFileTest::regions_data()
{
    const TestTable<QString, bool> row("text", "isTaken");
    row("blanks", "  14   Polygon 0 0\t1 0 1 1 ", true);
    for (const char *bad :
         {"", "1", "Rectangle 0 0 1 1", "1 rectangle 0 0 1 1", "1 Circle 0 0 1 1",
          "0 Rectangle 0 0 1 1", "15 Rectangle 0 0 1 1", "1 Rectangle 0 0 1", "1 Rectangle 0 0 0 1",
          "1 Rectangle 0 0 1.5 1", "1 Rectangle 0 0 1 1 2 2", "1 Rectangle 0 0 nan 1",
          "1 Rectangle 0 0 1e300 1", "1 Polygon 0 0 1 1", "1 Polygon 0 0 1 0 inf 1",
          "1 Polygon 0 0 1 0 x 1"}) {
        row(bad, bad, false);
    }
    row("as many corners as may be", "1 Polygon" + QString(" 1 2").repeated(256), true);
    row("one more", "1 Polygon" + QString(" 1 2").repeated(257), false);
}

void SessionFileTest::regions()
{
    QFETCH(QString, text);
    QFETCH(bool, isTaken);
    const SessionReading session =
        read(kHead + "[Regions]\nRegion3=" + text.toUtf8() + "\nRegion14=2 Rectangle 0 0 1 1\n");
    QCOMPARE(session.error, QString());
    QCOMPARE(session.notes,
             isTaken ? QStringList() : QStringList("Regions/Region3 is no region, ignored"));
    const std::vector<Region> &regions = session.state.texts.regions;
    QCOMPARE(regions.size(), isTaken ? size_t(2) : size_t(1)); // the others stay
    QCOMPARE(textOf(regions.back()), QString("2 Rectangle 0 0 1 1"));
    if (isTaken) {
        QVERIFY(regions.front() == *regionFromText(textOf(regions.front())));
    }
    QCOMPARE(read(kHead + "[Regions]\nRegion15=1 Rectangle 0 0 1 1\n").notes,
             QStringList("unknown key Regions/Region15"));
}

void SessionFileTest::refuses()
{
    // The last two: lists of 2^31 elements that are not there, in the notation for what is no text.
    for (const QByteArray &bytes :
         {QByteArray(), QByteArray("[Session]\nVersion=2\n"), QByteArray("[Edge]\nEdgeE=8350\n"),
          QByteArray("Version=1\n[Edge]\nEdgeE=8350\n"), QByteArray("Dear reader,\na letter\n"),
          kHead + "nonsense\n", kHead + "[Edge\nEdgeE=8350\n", mapAt("8330"),
          QByteArray::fromHex("7f454c46020101000000fffe3d0a005b80"),
          kHead + ';' + QByteArray(2 << 20, 'x'),
          kHead + "[Edge]\nEdgeE=@Variant(\\0\\0\\0\\x9\\x7f\\xff\\xff\\xff)\n",
          kHead + "[Edge]\nEdgeE=@Variant(\\0\\0\\0\\xb\\x7f\\xff\\xff\\xff)\n"}) {
        QVERIFY2(!read(bytes).error.isEmpty(), bytes.left(80).constData());
    }
    const QString pipe = m_files->path("pipe"); // must not be waited for
    QCOMPARE(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    for (const QString &path : {pipe, m_files->path(""), m_files->path("missing"), QString()}) {
        QVERIFY2(!readSession(path).error.isEmpty(), qPrintable(path));
    }
    QVERIFY(!writeSession(m_files->path(""), PanelState())); // a folder
    QVERIFY(!writeSession(m_files->path("no/s.ini"), PanelState()));
}

void SessionFileTest::edgeOfTheSpectra()
{
    SessionTexts texts;
    texts.references[0] = {true, m_files->write("1", spectrum("7000 9\n")), "0", "1"};
    // The last one counts, used or not: 8335.7895 less 2, in six digits.
    texts.references[2].file = m_files->write("3", spectrum("8335.123 0\n8336.456 1\n"));
    texts.references[2].dE = "2";
    texts.references[3].file = m_files->path("missing");
    const std::pair<std::optional<QString>, double> cases[] = {
        {{}, 8333.79}, {"8340.1234567", 8340.1234567}, {"", 0}, {"8,340", 0}};
    for (const auto &[entered, expected] : cases) {
        texts.edgeE = entered;
        const AnalysisInput input = loadInput(texts).input;
        for (const AMutE &one : {input.references[0].spectrum, input.references[3].spectrum}) {
            QCOMPARE(one.edgeE(), expected);
            QCOMPARE(one.preEdgeEnd(), expected - 50);
            QCOMPARE(one.postEdgeStart(), expected + 100);
        }
        QCOMPARE(input.target.edgeE(), expected);
    }
    QCOMPARE(loadInput(SessionTexts()).input.target.edgeE(), 8350.0);
}

void SessionFileTest::inputsAreShiftedAndFilled()
{
    // Pre-edge lines are 0. From 6000 to 9000 mu rises by 1 / 3000 per eV, the target's by twice
    // that. With dE = 100 a spectrum has at E what its file has at E + 100.
    SessionTexts texts;
    texts.edgeE = "5550";
    texts.references[1] = {false, m_files->write("r", spectrum("6000 0\n9000 1\n")), "100", "2.5"};
    texts.target.file = m_files->write("t", spectrum("6000 0\n9000 2\n"));
    const QString map = m_files->write("m", mapAt("7000"));
    texts.points[0].file = texts.points[1].file = texts.points[3].file = map;
    texts.points[1].energy = "8000";
    texts.points[2].energy = "9500";  // beyond the last point
    texts.points[3].energy = "8,000"; // no number
    texts.points[7] = {true, true, true, "", ""};
    const AnalysisInput input = loadInput(texts).input;
    QCOMPARE(input.references[1].valence, 2.5);
    const double energies[] = {7000, 8000, 9500, 0, 0, 0, 0, 0};
    const double reference[] = {0.366667, 0.7, 0, 0, 0, 0, 0, 0}; // 1100 / 3000, 2100 / 3000
    const double target[] = {0.666667, 1.33333, 0, 0, 0, 0, 0, 0};
    for (size_t i = 0; i < input.points.size(); ++i) {
        const EnergyPointInput &row = input.points[i];
        QCOMPARE(row.energyEv, energies[i]);
        QCOMPARE(row.referenceMu[0], 0.0);
        QCOMPARE(row.referenceMu[1], reference[i]);
        QCOMPARE(row.targetMu, target[i]);
        QCOMPARE(row.map != nullptr, i < 2 || i == 3);
    }
    const EnergyPointInput &last = input.points[7];
    QVERIFY(last.use && last.lcf && last.vPoint && !last.isUsedOnMaps());
}

QTEST_GUILESS_MAIN(SessionFileTest)
#include "tst_sessionfile.moc"
