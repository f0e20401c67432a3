// Runs the program as its users do: sessions and data in files, results from its outputs. All runs
// are in the "C" locale with blanks and Japanese letters in their paths.

#include "tests/TestFiles.h"
#include "tests/TestTable.h"
#include "tests/batch/Program.h"

#include <QCryptographicHash>
#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QTextCodec>
#include <QtTest>

#include <cmath>

#include <unistd.h>

namespace {

// The sample. Two references A and B and a target T = A / 4 + B / 4 + 1 / 2 at five energies;
// below these all spectra are 0, far above they are constant: that is their edge jump. So pre-edge
// lines are 0 and the jumps 3, 1 and 2. Rows 1, 2 and 4 are used, 4 is the V point, 1 and 5 bound
// the fit; valences are 2 and 6.
//
// Three points (rows 1, 2, 4): alpha = (7 - 1) / (3 - 1) = 3, beta = (2 - 0) / (2 - 0) = 1,
//   tau = (2.75 - 0.75) / (1.75 - 0.75) = 2, so a = (tau - beta) / (alpha - beta) = 0.5.
// Four points: T = (A + B) / g + m with g = 4, m = 0.5, ratio of jumps r = 3, u = g / (r + 1) = 1,
//   w = r u = 3: a = ((m - T_V) w u + B_V w) / (B_V w - A_V u) = 0.75, t/ts = 2 / g = 0.5.
// Non-equivalent: coefficients 0.25, 0.25, weighed by jumps 3 : 1 = 0.75 : 0.25, t = 3 / 4 + 1 / 4.
// Linear combination: T / 2 = 0.375 A / 3 + 0.125 B + 0.25, so 0.75 : 0.25, valence with the raw
//   coefficients 0.375 * 2 + 0.125 * 6 = 1.5, base 0.25.
constexpr int kRows = 5;
const double kEnergiesEv[kRows] = {5000, 6000, 7000, 8000, 9000};
const double kA[kRows] = {1, 3, 2, 7, 6};
const double kB[kRows] = {0, 2, 1, 2, 3};

const QString kFolder = "価数 図, 1/";
const QString kSession = // "~" is a blank of a value
    "Session/Version=1 Edge/EdgeE=5500 Edge/PreEEndDE=-1000 Edge/PostEStartDE=4000 "
    "Ref1/UseCB=true Ref1/XafsFS=標準~a.dat Ref1/Valence=2 "
    "Ref2/UseCB=true Ref2/XafsFS=b.dat Ref2/Valence=6 Target/TargetFile=t.dat "
    "Point1/UseCB=true Point1/LCFCB=true Point1/FileSelect=m1.txt "
    "Point2/UseCB=true Point2/FileSelect=m2.txt Point3/FileSelect=m3.txt "
    "Point4/UseCB=true Point4/VPointCB=true Point4/FileSelect=m4.txt "
    "Point5/LCFCB=true Point5/FileSelect=m5.txt "
    "Histogram/HgAFrom=2 Histogram/HgATo=6 Histogram/HgABoxes=5 "
    "Histogram/HgTFrom=0.0009765625 Histogram/HgTTo=2.0009765625 Histogram/HgTBoxes=3";

// Changes of the session.
const QString kFour = " Point3/UseCB=true";
const QString kFive = kFour + " Point5/UseCB=true";
const QString kLeastSquares = " Method/TypeTMK=LS";
const QString kVictoreen = " Method/TypeNonEquiv=true";
const QString kLinear = kVictoreen + " Method/NonEquivBG=Linear";
const QString kNoV = " Point4/VPointCB=false";
const QString kNoRange = " Point1/LCFCB=false";
const QString kResult = " Output/SaveFSelect=r.dat";

// What the program says.
const QString k3ps = "3ps: a = 0.5, Valence = 4";
const QString kNeq = "Result of NEQ ::  0.750 :  0.250, Valence =  3.000, t =  1.000";
const QString kLcf = "Result of LCF ::  0.750 :  0.250, Valence =  1.500, Base =  0.250";
/// Standard output with these lines in the message box. Result lines are fields too; one that
/// starts with "!" is a field alone.
QString outputOf(const QStringList &lines)
{
    QString out;
    QString calcRes;
    QString lcfRes;
    for (const QString &line : lines) {
        out += line.startsWith('!') ? QString() : line.simplified() + '\n';
        if (line.contains("LCF")) {
            lcfRes = line;
        } else if (line.contains(" = ")) {
            calcRes = line.mid(line.startsWith('!') ? 1 : 0);
        }
    }
    return out + "CalcRes = " + calcRes + "\nTargetDMut = " + (calcRes.contains("NEQ") ? "1" : "") +
           "\nLCFRes = " + lcfRes + '\n';
}

QByteArray spectrum(double a, double b, double c, double jump)
{
    QByteArray text = "# eV mu\n1000 0\n2000 0\n3000 0\n4000 0\n";
    for (int i = 0; i < kRows; ++i) {
        text += QByteArray::number(kEnergiesEv[i]) + ' ' +
                QByteArray::number(a * kA[i] + b * kB[i] + c) + '\n';
    }
    for (const char *energyEv : {"10000 ", "12000 ", "16000 ", "20000 "}) {
        text += energyEv + QByteArray::number(jump) + '\n';
    }
    return text;
}

/// Absorption a A + b B + c0 + c1 E, or with the Victoreen terms c1 lambda^3 + c2 lambda^4.
struct Pixel {
    double a = 0;
    double b = 0;
    double c0 = 0;
    double c1 = 0;
    double c2 = 0;
};
using Pixels = QVector<Pixel>;

const Pixels kPixels = {{0, 1, 0.5},        {0.5, 0.5, 0.5}, {2, 0, 0.5},
                        {-0.25, 0.75, 0.5}, {0, 0, 0},       {-0.25, -0.75, 0.5}};

/// A map of up to three columns. Victoreen maps are intensities, the others absorptions.
QByteArray mapAt(int row, const Pixels &pixels, bool victoreen)
{
    const char *const x[] = {"0", "0.5", "123456.7"};
    const int width = qMin(3, pixels.size());
    QByteArray text = "# 1306 試料 map\n# ENERGY : " + QByteArray::number(kEnergiesEv[row]) +
                      "\n# X-NUM " + QByteArray::number(width) + "\n#  Y-NUM   " +
                      QByteArray::number(pixels.size() / width) + "  \n";
    const double lambda = 12398.424360387684 / kEnergiesEv[row]; // hc [eV Angstrom]
    for (int i = 0; i < pixels.size(); ++i) {
        const Pixel &p = pixels[i];
        const double mut = p.a * kA[row] + p.b * kB[row] + p.c0 +
                           (victoreen ? p.c1 * std::pow(lambda, 3) + p.c2 * std::pow(lambda, 4)
                                      : p.c1 * kEnergiesEv[row]);
        text += QByteArray(x[i % width]) + (i < width ? " 10 " : " -20 ") +
                (victoreen ? QByteArray::number(100 * std::exp(-mut), 'g', 17) + " 100\n"
                           : QByteArray::number(mut, 'g', 17) + " 0\n");
    }
    return text;
}

} // namespace

Q_DECLARE_METATYPE(Pixel)

class BatchTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void saysWhatItFinds_data();
    void saysWhatItFinds();
    void writesFiles();
    void resultPathOfTheCommandLine();
    void drawsMaps();
    void writesPrecisionOnRequest();
    void writesRegions();
    void tabulates();
    void tabulatesNothingThatIsAnothers_data();
    void tabulatesNothingThatIsAnothers();
    void leavesEveryFileAlone_data();
    void leavesEveryFileAlone();
    void keepsWhatItCannotReplace();
    void advises();
    void advisesWithoutMaps();

private:
    QString path(const QString &name) const { return m_folder + '/' + name; }
    QString write(const QString &name, const QByteArray &bytes) const
    {
        return m_files->write(kFolder + name, bytes);
    }
    QByteArray read(const QString &name) const { return m_files->read(kFolder + name); }
    void writeMaps(const Pixels &pixels, bool victoreen) const;
    QString session(const QString &changes = QString(), const QString &name = "解析 s.ini") const;
    QStringList filesAndSums() const;

    std::unique_ptr<TestFiles> m_files; // new ones for every row
    QString m_folder;
};

void BatchTest::initTestCase()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

void BatchTest::init()
{
    m_files = std::make_unique<TestFiles>();
    const QDir outer(QDir(m_files->path("")).canonicalPath());
    QVERIFY(outer.mkpath(kFolder + "sub"));
    m_folder = QDir::cleanPath(outer.filePath(kFolder));
    write("標準 a.dat", spectrum(1, 0, 0, 3));
    write("b.dat", spectrum(0, 1, 0, 1));
    write("t.dat", spectrum(0.25, 0.25, 0.5, 2));
    writeMaps(kPixels, false);
}

void BatchTest::writeMaps(const Pixels &pixels, bool victoreen) const
{
    for (int row = 0; row < kRows; ++row) {
        write(QString("m%1.txt").arg(row + 1), mapAt(row, pixels, victoreen));
    }
}

/// Writes the session with its changes, "Group/Key=value" each; later ones win.
QString BatchTest::session(const QString &changes, const QString &name) const
{
    QMap<QString, QString> values;
    for (const QString &entry : (kSession + ' ' + changes).split(' ', Qt::SkipEmptyParts)) {
        values[entry.section('=', 0, 0)] = entry.section('=', 1);
    }
    QString text;
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        text += '[' + value.key().section('/', 0, 0) + "]\n" + value.key().section('/', 1) + '=' +
                QString(value.value()).replace('~', ' ') + '\n';
    }
    return write(name, text.toUtf8());
}

QStringList BatchTest::filesAndSums() const
{
    QStringList list;
    for (const QString &name : QDir(m_folder).entryList(QDir::Files | QDir::Hidden)) {
        list += name + ' ' + QCryptographicHash::hash(read(name), QCryptographicHash::Md5).toHex();
    }
    return list;
}

// Which checks stop what is a matter of the checks' own tests: here, how their lines are shown.
void BatchTest::saysWhatItFinds_data()
{
    const TestTable<QString, QString, QStringList, int> table("options", "changes", "lines",
                                                              "status");
    const auto row = [](const char *name, const QString &changes, const QStringList &lines,
                        int status = 0, const QString &options = "") {
        QTest::newRow(name) << options << changes << lines << status;
    };
    const QString four = "a = 0.75, Valence = 3, t/ts = 0.5";
    row("three points", "", {k3ps, kLcf});
    row("exact", kFour, {'!' + four, kLcf});
    row("least squares of five", kFive + kLeastSquares, {"4ps2: " + four, kLcf}, 0, "-j -e");
    // With equal references a = 1 / 0; the fit has no point between its limits: 0 / 0.
    row("singular",
        "Ref1/XafsFS=b.dat Point1/LCFCB=false Point5/LCFCB=false Point6/LCFCB=true "
        "Point6/Energy=5100 Point7/LCFCB=true Point7/Energy=5200",
        {"3ps: a = inf, Valence = nan",
         "Result of LCF ::    nan :    nan, Valence =    nan, Base =    nan"});

    row("no V", kNoV, {"V Point is not selected", "V Point is not selected.", kLcf}, 1);
    row("one row bounds the fit", kNoRange,
        {k3ps, "Energy Range is not selected, which should by selected by CB of TR."}, 1);

    const QString jaLcf = "結果(LCF) ::  0.750 :  0.250, 価数 =  1.500, ベース =  0.250";
    row("Japanese result", kFour + kLinear,
        {"結果(NEQ) ::  0.750 :  0.250, 価数 =  3.000, 相対厚さ =  1.000", jaLcf}, 0, "-e -j");
}

void BatchTest::saysWhatItFinds()
{
    QFETCH(QString, options);
    QFETCH(QString, changes);
    QFETCH(QStringList, lines);
    const Run result = runBatch(options.split(' ', Qt::SkipEmptyParts) << session(changes));
    QCOMPARE(result.out, outputOf(lines));
    QCOMPARE(result.err, QString()); // no terminal, no progress
    QTEST(result.status, "status");
}

void BatchTest::writesFiles()
{
    // t = 3 pa + pb = 1, ratios 3 pa / t and pb / t, valence 6 - 4 alpha1 = 3.
    writeMaps({{0.25, 0.25, 0.5, 0.25, -0.125}}, true);
    QString changes = kFive + kVictoreen + " Output/SaveFSelect=map.v1.txt";
    for (const char *name :
         {"Ratio1", "Ratio3", "Ratio4", "DMut1", "DMut2", "DMut3", "DMut4", "Valence"}) {
        changes += QString(" Record/Rec%1=false").arg(name);
    }
    // "Auto" with one value: half a unit to both sides.
    changes += " Histogram/HgABoxes=3 Histogram/HgAAuto=true";
    QCOMPARE(runBatch({session(changes)}).status, 0);
    QCOMPARE(read("map.v1.txt"),
             QByteArray("# klyv result map V1.0\n# 1306 試料 map\n# ENERGY : 5000\n# X-NUM 1\n"
                        "#  Y-NUM   1  \n\n# y x alpha2 Mut0 C1 C2 Total-dMut\n"
                        "          0         10       0.25        0.5       0.25     -0.125"
                        "          1\n"));
    QCOMPARE(read("map.v1_HGAlpha.txt"),
             QByteArray("1.75 2 2.25  0\n2.25 2.5 2.75  0\n2.75 3 3.25  1\n3.25 3.5 3.75  0\n"
                        "3.75 4 4.25  0\n"));
    QVERIFY(read("map.v1_HGThick.txt").contains("\n0.5009765625 1.0009765625 1.5009765625  1\n"));
}

void BatchTest::resultPathOfTheCommandLine()
{
    const QString file = session(kResult);
    const QStringList before = filesAndSums();
    Program program;
    program.setWorkingDirectory(path("sub"));
    QCOMPARE(program.run({"--threads", "2", "--result", "../sub/結 x.dat", "--", file}).status, 0);
    QCOMPARE(filesAndSums(), before); // no r.dat
    QCOMPARE(QDir(path("sub")).entryList(QDir::Files),
             (QStringList{"結 x.dat", "結 x_HGAlpha.dat", "結 x_HGThick.dat"}));
    QCOMPARE(runBatch({"--result", "", file}).status, 2);
}

/// Colours are those of the definition: index trunc(768 (v - low) / (high - low)) of black, red,
/// yellow, white in 256 steps each; values 0, 0.5, 1, -0.5, 0 / 0 and 0.25, from -0.5 to 1.
void BatchTest::drawsMaps()
{
    QCOMPARE(runBatch({"--images", session(" Output/SaveFSelect=map.v1.txt")}).err, QString());
    QCOMPARE(QDir(m_folder).entryList({"*.png"}, QDir::Files).join(' ').remove("map.v1_"),
             QString("Amount.png HGAlpha.png HGThick.png Ratio1.png Ratio2.png Valence.png"));
    const QImage image = QImage(path("map.v1_Ratio1.png")).convertToFormat(QImage::Format_RGB32);
    const QRgb colours[] = {qRgb(255, 0, 0), qRgb(255, 255, 0),   qRgb(255, 255, 255), // the lower
                            qRgb(0, 0, 0),   qRgb(170, 170, 170), qRgb(255, 128, 0)};
    for (int i = 0; i < 6; ++i) { // squares of 100 pixels
        const QPoint corner(24 + 100 * (i % 3), 58 + 100 * (1 - i / 3));
        for (const QPoint &at : {QPoint(0, 0), QPoint(50, 50), QPoint(99, 99)}) {
            QCOMPARE(QColor(image.pixel(corner + at)), QColor(colours[i]));
        }
    }
}

/// Three points with V at 7, alpha = 3, beta = 1, edge step d, tau = (T_V - T1) / d: noise s gives
/// sigma of a = s / (2 d) sqrt(1 + (tau - 1)^2 + tau^2). For the first pixel T = B + 1/2, d = 2,
/// tau = 1, and the valences are 4 apart.
void BatchTest::writesPrecisionOnRequest()
{
    const QString usual = session(kResult);
    QCOMPARE(runBatch({usual}).status, 0);
    const QStringList before = filesAndSums().filter(QRegularExpression("^r"));
    QCOMPARE(before.size(), 3);
    const Run result = runBatch({"--images", session(kResult + " Advanced/SigmaFile=true "
                                                               "Advanced/Noise=Given "
                                                               "Advanced/NoiseSigma=0.001")});
    QCOMPARE(result.err, QString());
    QCOMPARE(filesAndSums().filter(QRegularExpression("^r(|_HG[A-Za-z]*).dat")), before);
    QVERIFY(QFile::exists(path("r_SigmaValence.png")));
    const QByteArray sigmas = read("r_Sigma.dat");
    const QByteArray names = "# y x sigma_alpha1 sigma_alpha2 sigma_Valence sigma_Total-dMut\n";
    QVERIFY(sigmas.contains(names));
    const QList<QByteArray> first =
        sigmas.mid(sigmas.indexOf(names) + names.size()).simplified().split(' ');
    QCOMPARE(first[2], QByteArray::number(0.001 / 4 * std::sqrt(2), 'g', 6));
    QCOMPARE(first[4], QByteArray::number(0.001 * std::sqrt(2), 'g', 6));

    // A bounded fit says so in the header, a free one is the file as it always was.
    for (const char *bounds : {"Free", "NonNegative"}) {
        const QString fit = kFive + kLinear + kResult + " Advanced/NonEquivBounds=" + bounds;
        QCOMPARE(runBatch({session(fit)}).status, 0);
        QCOMPARE(read("r.dat").contains("\n# fit: no negative references; "),
                 fit.endsWith("NonNegative"));
    }
}

void BatchTest::writesRegions()
{
    // Ratios of the six pixels by three points, row by row: tau = (7 a + 2 b - a) / (2 a + 2 b)
    // with pixel a A + b B, ratio = (tau - 1) / 2: 0, 0.5, 1; -0.5, nan, 0.25.
    const QString regions =
        " Regions/Region1=3~Rectangle~0~0~9~1 Regions/Region2=1~Polygon~0~1~3~1~3~2~0~2"
        " Regions/Region3=2~Rectangle~7~7~8~8";
    QCOMPARE(runBatch({session(kResult + regions)}).status, 0);
    const QStringList lines = QString::fromUtf8(read("r_Regions.csv")).split("\r\n");
    QCOMPARE(lines.first(),
             QString("region,colour,shape,quantity,mean,deviation,median,finite,pixels"));
    QCOMPARE(lines.size(), 1 + 3 * 4 + 1);
    QStringList ratios = lines.filter(",Ratio1,");
    ratios[1].remove(QRegularExpression("[-0-9.e]+(,[-0-9.e]+){2}(?=,2,3$)")); // rounded
    QCOMPARE(ratios, (QStringList{"1,3,Rectangle,Ratio1,0.5,0.5,0.5,3,3", "2,1,Polygon,Ratio1,,2,3",
                                  "3,2,Rectangle,Ratio1,,,,0,0"}));
    // Never over an input; nothing beside a stopped map step, or without a result file.
    QFile::remove(path("r_Regions.csv"));
    write("r_Regions.csv", spectrum(1, 1, 1, 1));
    QCOMPARE(runBatch({session(kResult + regions + " Ref4/XafsFS=r_Regions.csv")}).status, 2);
    QCOMPARE(read("r_Regions.csv"), spectrum(1, 1, 1, 1));
    QFile::remove(path("r_Regions.csv"));
    QCOMPARE(runBatch({session(kResult + regions + kNoV)}).status, 1);
    QCOMPARE(runBatch({session(regions)}).status, 0);
    QVERIFY(!QFile::exists(path("r_Regions.csv")));
}

void BatchTest::tabulates()
{
    const QString good = session(kResult, "a \"1\", b.ini");
    const QString silent = session(kNoV, "no v.ini");
    const QString unreadable = session(" Ref4/XafsFS=missing.dat", "unreadable.ini");
    const QString unwritable = session(" Output/SaveFSelect=no/r.dat", "unwritable.ini");
    const QString missing = path("missing.ini");
    const QString table = path("table.csv");
    const auto linesFor = [&](const QStringList &sessions, int status) {
        const Run result = runBatch(QStringList{"--table", table} + sessions);
        const bool isSilent = result.out.isEmpty() && result.err.isEmpty() == (status == 0);
        const QString text = QString::fromUtf8(read("table.csv"));
        return (result.status == status && isSilent ? text
                                                    : QString(5, '\n').replace('\n', "?\r\n"))
            .split("\r\n");
    };

    QStringList lines = linesFor({good}, 0);
    QCOMPARE(lines.size(), 3);
    const QStringList head = lines[0].split(',');
    QVERIFY(lines[0].startsWith("session,status,CalcRes,TargetDMut,LCFRes,width,height,pixels,"
                                "Ratio1_mean,Ratio1_finite,Ratio2_mean,Ratio2_finite,"));
    QCOMPARE(head.size(), 8 + 2 * 20);
    QString name = good;
    const QString start =
        '"' + name.replace('"', "\"\"") + "\",0,\"" + k3ps + "\",,\"" + kLcf + "\",3,2,6,";
    QCOMPARE(lines[1].left(start.size()), start);
    // Ratios as in writesRegions: 5 finite pixels, mean (0 + 0.5 + 1 - 0.5 + 0.25) / 5; the rest 1.
    const QStringList cells = lines[1].mid(start.size()).split(',');
    QCOMPARE(cells.size(), 2 * 20);
    const std::pair<const char *, double> means[] = {
        {"Ratio1_mean", 0.25}, {"Ratio2_mean", 0.75}, {"Valence_mean", 5.0}}; // 2 a + 6 (1 - a)
    for (const auto &[title, mean] : means) {
        const int at = head.indexOf(title) - 8;
        QVERIFY2(std::fabs(cells[at].toDouble() - mean) < 1e-12, title);
        QCOMPARE(cells[at + 1], QString("5"));
    }
    QCOMPARE(cells.mid(4, 18).join(QString()), QString()); // what this method does not give

    // Every session runs, and the table of before is replaced; the first that applies counts.
    lines = linesFor({silent, good}, 1);
    QVERIFY(lines.size() == 4 && lines[1].contains(",1,") && lines[2].contains(",0,"));
    QVERIFY(lines[1].endsWith(",\"" + kLcf + "\"" + QString(3 + 40, ','))); // the fit goes on
    QCOMPARE(linesFor({silent, unwritable, good}, 4).size(), 5);
    QFile::remove(path("r.dat"));
    lines = linesFor({silent, unwritable, unreadable, good}, 3);
    QCOMPARE(lines[3], '"' + unreadable + "\",3" + QString(46, ','));
    QVERIFY(QFile::exists(path("r.dat")));
    lines = linesFor({missing, unreadable, good}, 2);
    QCOMPARE(lines[1], '"' + missing + "\",2" + QString(46, ','));
    QVERIFY(lines[3].contains(",0,"));

    // A full disk leaves the old table whole.
    const QByteArray before = read("table.csv");
    Program full;
    full.mostBytes = 100;
    QCOMPARE(full.run({"--table", table, silent}).status, 4);
    QCOMPARE(read("table.csv"), before);
}

void BatchTest::tabulatesNothingThatIsAnothers_data()
{
    // first: changes of the sessions
    const TestTable<QString, QString, QString> table("table", "first", "second");
    const auto row = [&table](const char *name, const char *csv, const QString &first = "",
                              const QString &second = "") { table(name, csv, first, second); };
    row("a session", "2.ini");
    row("an input by another name", "sub/../t.dat");
    row("a result", "r.dat", kResult);
    row("two with one result", "table.csv", kResult, kResult);
    row("a result that is another's input", "table.csv", " Output/SaveFSelect=u.dat",
        " Ref4/XafsFS=u.dat");
}

void BatchTest::tabulatesNothingThatIsAnothers()
{
    QFETCH(QString, table);
    QFETCH(QString, first);
    QFETCH(QString, second);
    write("u.dat", spectrum(1, 0, 0, 3));
    const QStringList words = {"--table", path(table), session(first, "1.ini"),
                               session(second, "2.ini")};
    const QStringList before = filesAndSums();
    const Run result = runBatch(words);
    QCOMPARE(result.status, 2);
    QVERIFY(result.err.contains("would overwrite"));
    QCOMPARE(filesAndSums(), before);
}

void BatchTest::leavesEveryFileAlone_data()
{
    // arguments: S: a session, T: a spectrum
    const TestTable<QString, QString, int> table("arguments", "changes", "status");
    const auto row = [](const char *arguments, int status, const QString &changes = "") {
        QTest::addRow("%s%s", arguments, qPrintable(changes)) << arguments << changes << status;
    };
    for (const char *good : {"--help", "-h", "--version", "S --help"}) {
        row(good, 0, kResult);
    }
    const QString wrong =
        "|--|-x S|--images|S S|S -e S|--threads -1 S|--threads x S|--threads 1.5 S|S --threads|"
        "S --result|missing.ini|.|T|--quiet=1 S|-ej S|--table|--table x.csv|"
        "--table x.csv --result y S|--table x.csv --advise 3 S|--advise 2 S|--advise 9 S|"
        "--advise S|--json S|--sigma 1 S|--advise 3 --sigma 0 S|--advise 3 --images S|"
        "--advise 3 --result x S|--advise 3 --range 9,8 S|--advise 3 --criterion best S|"
        "--advise 3 --fractions 1,-1 S|--advise 3 --fractions 1 S";
    for (const QString &arguments : wrong.split('|')) {
        row(qPrintable(arguments), 2, kResult);
    }
    row("--images S", 2);                                         // no result file
    row("--images S", 2, " Output/SaveFSelect=r.png");            // histogram and its picture
    row("--images S", 2, kResult + " Ref3/XafsFS=r_Valence.png"); // an input
    row("--images S", 1, kNoV + kResult);                         // no map, no picture
    row("S", 2, kResult + " Advanced/SigmaFile=true Ref3/XafsFS=r_Sigma.dat");
    row("--images S", 0, " Output/SaveFSelect=/dev/stdout"); // nothing lies beside a pipe
    // Of several reasons the first counts. Inputs are saved before they are read.
    const QString missing = " Ref4/XafsFS=missing.dat";
    const QString unwritable = " Output/SaveFSelect=no/r.dat";
    row("S", 3, missing + kNoRange + unwritable);
    row("S", 4, kNoRange + unwritable);
    row("--result /sub/../t.dat S", 2, missing);
    row("--result /here/b.dat S", 2, missing); // through a linked folder
    for (const char *inputs :
         {"sub/../t.dat", "m3.txt", "解析~s.ini", "here/b.dat", "b.dat Ref2/XafsFS=link.dat",
          "new.txt Ref3/XafsFS=sub/new_HGAlpha.txt", // beside a link's future file
          "hard.dat", "x.dat Ref3/XafsFS=x2.dat",    // further names of the file itself
          "two.dat"}) {                              // whose histogram is a link to it
        row("S", 2, missing + kNoRange + " Output/SaveFSelect=" + inputs);
    }
}

void BatchTest::leavesEveryFileAlone()
{
    QFETCH(QString, arguments);
    QFETCH(QString, changes);
    QFETCH(int, status);
    QVERIFY(QFile::link("b.dat", path("link.dat")) && QFile::link(".", path("here")));
    QVERIFY(QFile::link("sub/new.txt", path("new.txt")));
    QVERIFY(QFile::link("two.dat", path("two_HGThick.dat")));
    for (const char *input :
         {"r_Valence.png", "sub/new_HGAlpha.txt", "new_HGAlpha.dat", "x_HGThick.dat"}) {
        write(input, spectrum(1, 1, 1, 1));
    }
    const auto linkHard = [this](const char *file, const char *name) {
        return link(QFile::encodeName(path(file)).constData(),
                    QFile::encodeName(path(name)).constData()) == 0;
    };
    QVERIFY(linkHard("b.dat", "hard.dat") && linkHard("x_HGThick.dat", "x2.dat"));
    QStringList words = arguments.split(' ', Qt::SkipEmptyParts);
    for (QString &word : words) {
        word = word == "S"            ? session(changes)
               : word == "T"          ? path("t.dat")
               : word.startsWith('/') ? path(word.mid(1))
                                      : word;
    }
    const QStringList before = filesAndSums();
    const Run result = runBatch(words);
    QCOMPARE(result.status, status);
    QCOMPARE(result.out.contains("orvel-batch"), status == 0 && changes == kResult);
    QCOMPARE(result.err.startsWith("orvel-batch: "), status == 2 || status == 3);
    QVERIFY(result.out.isEmpty() || result.err.isEmpty());
    QCOMPARE(filesAndSums(), before);
}

/// The other files are written where a folder is in the way of one.
void BatchTest::keepsWhatItCannotReplace()
{
    const QString file = session(" Output/SaveFSelect=p.dat");
    const QStringList before = filesAndSums();
    for (const QString lost : {"p_Valence.png", "p_HGAlpha.dat"}) {
        QVERIFY(QDir(m_folder).mkdir(lost));
        const Run result = runBatch({"--images", file});
        QCOMPARE(result.out, outputOf({k3ps, kLcf, "Can't open the file [" + path(lost) + ']'}));
        QCOMPARE(result.status, 4);
        QCOMPARE(filesAndSums().filter(QRegularExpression("^(?!p[_.])")), before);
        // Result, two histograms and six pictures but for one.
        const QFileInfoList written = QDir(m_folder).entryInfoList({"p*"}, QDir::Files);
        QCOMPARE(written.size(), 8);
        for (const QFileInfo &other : written) {
            QVERIFY2(other.size() > 50, qPrintable(other.fileName()));
            QVERIFY(QFile::remove(other.filePath()));
        }
        QVERIFY(QDir(m_folder).rmdir(lost));
    }
}

// The three present points, for the curve T = A / 3 + B (a = 0.5, t = 1) at 5000, 6000, V 8000 eV:
// 1/3, 3, 13/3. So alpha = 3, beta = 1, tau = 4 / (8/3) = 1.5, da/dT_V = 3/8 / (alpha - beta) =
// 3/16, sigma of a = s 3/16 sqrt(1 + tau^2 + (tau - 1)^2) = s 3/16 sqrt(3.5), four times that of
// the valence; amount sqrt(2) s / 2.5.
void BatchTest::advises()
{
    const Run result = runBatch(
        {"--advise", "3", "--json", "--sigma", "0.016", "--range", "3000,16000", session()});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.status, 0);
    const QJsonObject all = QJsonDocument::fromJson(result.out.toUtf8()).object();
    const QJsonObject present = all["present"].toObject();
    const auto isNear = [](const QJsonValue &found, double expected) {
        return std::fabs(found.toDouble() - expected) < 1e-6 * expected; // lines: normal equations
    };
    QCOMPARE(present["energies"].toArray(), QJsonArray({5000, 6000, 8000}));
    QCOMPARE(present["vPoint"].toInt(), 2);
    QCOMPARE(present["freedom"].toInt(), 0);
    const double sigmaA = 0.003 * std::sqrt(3.5);
    QVERIFY(isNear(present["sigmaFractions"].toArray()[1], sigmaA));
    QVERIFY(present["sigmaFractions"].toArray()[2].isNull());
    QVERIFY(isNear(present["sigmaValence"], 4 * sigmaA));
    QVERIFY(isNear(present["sigmaAmount"], 0.016 * std::sqrt(2.0) / 2.5));
    QCOMPARE(present["warnings"].toArray(), QJsonArray({"UnlikeReferences", "NoFreedom"}));

    const QJsonObject best = all["best"].toObject();
    QCOMPARE(best["energies"].toArray().size(), 3);
    QVERIFY(best["energies"][0].toDouble() >= 3000 && best["energies"][2].toDouble() <= 16000);
    QVERIFY(best["sigmaValence"].toDouble() > 0);
}

void BatchTest::advisesWithoutMaps()
{
    const auto adviceFor = [this](const QString &changes) {
        return runBatch({"--advise", "3", "--range", "3000,16000", session(changes)});
    };
    const Run known = adviceFor(" Point1/Energy=5000 Point2/Energy=6000 Point4/Energy=8000"
                                " Point1/FileSelect=no Point4/FileSelect=no Target/TargetFile=no");
    QCOMPARE(known.status, 0);
    QVERIFY(known.out.contains("8000.00") && known.err.isEmpty());
    const Run unknown = adviceFor(" Point1/FileSelect=no");
    QCOMPARE(unknown.status, 0);
    QVERIFY(unknown.out.contains("the energy of a used point is not known"));
    QVERIFY(unknown.err.contains("/no: "));
    QCOMPARE(adviceFor(" Ref3/XafsFS=no").status, 3);
}

QTEST_GUILESS_MAIN(BatchTest)
#include "tst_batch.moc"
