// Runs the program as its users do: sessions and data in files, results from its outputs. All runs
// are in the "C" locale with blanks and Japanese letters in their paths.

#include "tests/TestFiles.h"

#include <QCryptographicHash>
#include <QDir>
#include <QImage>
#include <QMap>
#include <QProcess>
#include <QTextCodec>
#include <QtTest>

#include <cmath>
#include <csignal>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
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
const QString kNanLcf = "Result of LCF ::    nan :    nan, Valence =    nan, Base =    nan";
const QString kFirst = "The 1st Ref File is not valid.";
const QString kSecond = "The 2nd Ref File is not valid.";
const QString kFew = "Number of valied Ref Files is %1, which is less than 2.";
const QString kFewForLcf = "Number of Valid Reference files is %1, which is less than 2";
const QString kNot = "Number of selected data sets %1 is not %2.";
const QString kLess = "Number of selected data sets %1 is less than %2.";

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

struct Run {
    int status = -1; ///< -1: it did not start or did not end by itself
    QString out;
    QString err;
};

class Program : public QProcess {
public:
    bool asOtherUser = false;
    bool hasNoFonts = false;
    rlim_t mostBytes = RLIM_INFINITY; ///< in any file it writes: a full disk
    int terminal = -1;                ///< standard error goes there

protected:
    void setupChildProcess() override
    {
        const rlimit limit = {mostBytes, RLIM_INFINITY};
        if (mostBytes != RLIM_INFINITY) {
            signal(SIGXFSZ, SIG_IGN);
            setrlimit(RLIMIT_FSIZE, &limit);
        }
        if (terminal >= 0) {
            dup2(terminal, STDERR_FILENO);
        }
        if (asOtherUser && geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) {
            _exit(127);
        }
    }
};

} // namespace

Q_DECLARE_METATYPE(Pixel)

class BatchTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void saysWhatItFinds_data();
    void saysWhatItFinds();
    void writesFiles_data();
    void writesFiles();
    void resultPathOfTheCommandLine();
    void drawsMaps_data();
    void drawsMaps();
    void drawsHistograms();
    void losesNothingForPictures();
    void keepsWhatItCannotReplace_data();
    void keepsWhatItCannotReplace();
    void firstStatusThatApplies();
    void neverOverwritesInputs_data();
    void neverOverwritesInputs();
    void namesUnreadableInputs_data();
    void namesUnreadableInputs();
    void knowsItsUsage_data();
    void knowsItsUsage();
    void notesWhatItDoesNotKnow();
    void progressIsForTerminals();

private:
    QString path(const QString &name) const { return m_folder + '/' + name; }
    QString write(const QString &name, const QByteArray &bytes) const
    {
        return m_files->write(kFolder + name, bytes);
    }
    QByteArray read(const QString &name) const { return m_files->read(kFolder + name); }
    void writeMaps(const Pixels &pixels, bool victoreen) const;
    QString session(const QString &changes = QString()) const;
    Run run(const QStringList &arguments) const
    {
        Program program;
        return run(program, arguments);
    }
    Run run(Program &program, const QStringList &arguments) const;
    QImage image(const QString &name) const
    {
        return QImage(path(name)).convertToFormat(QImage::Format_RGB32);
    }
    QStringList filesAndSums() const;

    std::unique_ptr<TestFiles> m_files; // new ones for every row
    QString m_folder;
};

void BatchTest::initTestCase()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    umask(022); // another user reads the files too
}

void BatchTest::init()
{
    m_files = std::make_unique<TestFiles>();
    const QDir outer(QDir(m_files->path("")).canonicalPath());
    QVERIFY(QFile::setPermissions(outer.path(), QFile::Permissions(0x7755)));
    QVERIFY(outer.mkdir(kFolder));
    m_folder = QDir::cleanPath(outer.filePath(kFolder));
    QVERIFY(QDir(m_folder).mkdir("sub"));
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
QString BatchTest::session(const QString &changes) const
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
    return write("解析 s.ini", text.toUtf8());
}

Run BatchTest::run(Program &program, const QStringList &arguments) const
{
    if (program.workingDirectory().isEmpty()) {
        program.setWorkingDirectory("/"); // not where the session is
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LC_ALL", "C");
    if (program.hasNoFonts) {
        environment.insert("FONTCONFIG_FILE", m_files->write("fonts.conf", "<fontconfig/>"));
    }
    program.setProcessEnvironment(environment);
    program.start(ORVEL_BATCH, arguments);
    Run result;
    if (program.waitForFinished(60000) && program.exitStatus() == QProcess::NormalExit) {
        result.status = program.exitCode();
    }
    program.kill();
    result.out = QString::fromUtf8(program.readAllStandardOutput());
    result.err = QString::fromUtf8(program.readAllStandardError());
    return result;
}

QStringList BatchTest::filesAndSums() const
{
    QStringList list;
    for (const QString &name : QDir(m_folder).entryList(QDir::Files | QDir::Hidden)) {
        list += name + ' ' + QCryptographicHash::hash(read(name), QCryptographicHash::Md5).toHex();
    }
    return list;
}

void BatchTest::saysWhatItFinds_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("changes");
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("status");
    QString options;
    int status = 0;
    const auto row = [&](const char *name, const QString &changes, const QStringList &lines) {
        QTest::newRow(name) << options << changes << lines << status;
    };
    row("three points", "", {k3ps, kLcf});
    row("three points, least squares", kLeastSquares, {k3ps, kLcf});
    row("last V counts", "Point2/VPointCB=true", {k3ps, kLcf});
    // alpha = (3 - 1) / (7 - 1), beta = 1, tau = 0.5
    row("V between", kNoV + " Point2/VPointCB=true", {"3ps: a = 0.75, Valence = 3", kLcf});
    const QString four = "a = 0.75, Valence = 3, t/ts = 0.5";
    row("exact", kFour, {'!' + four, kLcf});
    row("least squares", kFour + kLeastSquares, {"4ps2: " + four, kLcf});
    row("least squares of five", kFive + kLeastSquares, {"4ps2: " + four, kLcf});
    row("linear background", kFour + kLinear, {kNeq, kLcf});
    row("Victoreen background", kFive + kVictoreen, {kNeq, kLcf});
    // With equal references a = 1 / 0; the fit has no point between its limits: 0 / 0.
    row("singular",
        "Ref1/XafsFS=b.dat Point1/LCFCB=false Point5/LCFCB=false Point6/LCFCB=true "
        "Point6/Energy=5100 Point7/LCFCB=true Point7/Energy=5200",
        {"3ps: a = inf, Valence = nan", kNanLcf});

    status = 1;
    const QStringList noV = {"V Point is not selected", "V Point is not selected.", kLcf};
    row("no V", kNoV, noV);
    row("V not used", kNoV + " Point3/VPointCB=true", noV);
    row("no V, non-equivalent", kNoV + kFour + kLinear, {"V Point is not selected.", kLcf});
    row("no reference", "Ref1/UseCB=false Ref2/UseCB=false",
        {kFew.arg(0), kFew.arg(0), kFewForLcf.arg(0)});
    row("one reference", "Ref1/UseCB=false", {kFew.arg(1), kFew.arg(1), kFewForLcf.arg(1)});
    const QString ref = "Ref File %1 is not valid.";
    row("one reference, not loaded", "Ref1/XafsFS= Ref2/UseCB=false",
        {kFew.arg(0), ref.arg(1), kFew.arg(0), kFirst, kFewForLcf.arg(0)});
    row("first not loaded",
        "Ref1/XafsFS=", {kFew.arg(1), ref.arg(1), kFew.arg(1), kFirst, kFewForLcf.arg(1)});
    row("second not loaded",
        "Ref2/XafsFS=", {kFew.arg(1), ref.arg(2), kFew.arg(1), kSecond, kFewForLcf.arg(1)});
    const QString third = " Ref3/UseCB=true Ref3/Valence=2";
    row("first of three not loaded", third + " Ref1/XafsFS= Ref3/XafsFS=標準~a.dat",
        {ref.arg(1), kFirst, "Result of LCF ::  0.250 :  0.750, Valence =  1.500, Base =  0.250"});
    row("third not loaded", third, {ref.arg(3), k3ps, kLcf});
    row("third not loaded, non-equivalent", third + kFour + kLinear, {ref.arg(3), kSecond, kLcf});
    const QString target = "Target File1 is not valid.";
    row("no target", "Target/TargetFile=", {target, kNanLcf});
    row("no target, third not loaded",
        third + kFour + kLinear + " Target/TargetFile=", {ref.arg(3), target, kNanLcf});
    row("two points", "Point1/UseCB=false", {kNot.arg(2).arg(4), kNot.arg(2).arg(4), kLcf});
    row("five points, exact", kFive, {kNot.arg(5).arg(4), kNot.arg(5).arg(4), kLcf});
    row("a point for spectra only",
        "Point1/Energy=5000 Point1/FileSelect=", {kNot.arg(2).arg(4), k3ps, kLcf});
    row("three points, linear", kLinear, {kLess.arg(3).arg(4), kNot.arg(3).arg(4), kLcf});
    row("four points, Victoreen", kFour + kVictoreen,
        {kLess.arg(4).arg(5), kNot.arg(4).arg(5), kLcf});
    const QString noRange = "Energy Range is not selected, which should by selected by CB of TR.";
    row("one row bounds the fit", kNoRange, {k3ps, noRange});
    row("no number bounds the fit",
        kNoRange + " Point5/LCFCB=false Point6/LCFCB=true Point6/Energy=nan Point7/LCFCB=true "
                   "Point7/Energy=nan",
        {k3ps, noRange});

    const QString jaLcf = "結果(LCF) ::  0.750 :  0.250, 価数 =  1.500, ベース =  0.250";
    options = "-j";
    row("Japanese: no V", kNoV,
        {"非等吸収点を選択して下さい。", "非等吸収点を選択して下さい。", jaLcf});
    const QString jaFew = "標準試料の数が1しかありません(最低2つ必要です)。";
    row("Japanese: second not loaded", "Ref2/XafsFS=",
        {jaFew, "標準[2]が無効です。", jaFew, "2番目の標準試料が有効ではありません。",
         "有効な標準試料が1個しか指定されていません(最低2つ必要です)。"});
    row("Japanese: three points, linear", kLinear,
        {"マップデータがが3個しか選択されていません。(最低4個選択する必要があります)",
         "データセットが3個選ばれています。4個選択して下さい。", jaLcf});
    status = 0;
    row("Japanese result", kFour + kLinear,
        {"結果(NEQ) ::  0.750 :  0.250, 価数 =  3.000, 相対厚さ =  1.000", jaLcf});
    options = "-e -j";
    row("last language: Japanese", "", {"3ps: 標準1の比率 = 0.5, 価数 = 4", jaLcf});
    options = "-j -e";
    row("last language: English", "", {k3ps, kLcf});
}

void BatchTest::saysWhatItFinds()
{
    QFETCH(QString, options);
    QFETCH(QString, changes);
    QFETCH(QStringList, lines);
    const Run result = run(options.split(' ', Qt::SkipEmptyParts) << session(changes));
    QCOMPARE(result.out, outputOf(lines));
    QCOMPARE(result.err, QString()); // no terminal, no progress
    QTEST(result.status, "status");
}

void BatchTest::writesFiles_data()
{
    QTest::addColumn<Pixels>("pixels");
    QTest::addColumn<QString>("changes");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("result");
    QTest::addColumn<QByteArray>("valences");
    QTest::addColumn<QByteArray>("amounts");

    const QByteArray head = "# klyv result map V1.0\n# 1306 試料 map\n# ENERGY : 5000\n";
    const QByteArray head3x2 = head + "# X-NUM 3\n#  Y-NUM   2  \n\n";
    const QByteArray head1x1 = head + "# X-NUM 1\n#  Y-NUM   1  \n\n";
    // With f = pa / (pa + pb) and X = pa + pb of a pixel pa A + pb B + c:
    // three points: a = f, amount = 2 X / (((3 - 0) + (3 - 1)) / 2) = 0.8 X, valence 6 - 4 f.
    // The pixel of zeros is 0 / 0. Amounts lie in boxes from -0.499: -0.8 falls short of them by
    // less than one box and so counts in the first.
    const QByteArray threePoints =
        head3x2 + R"(          0         10             0          6        0.8
        0.5         10           0.5          4        0.8
     123457         10             1          2        1.6
          0        -20          -0.5          8        0.4
        0.5        -20           nan        nan          0
     123457        -20          0.25          5       -0.8
)";
    const auto counted = [](const char *edges, const char *counts) {
        QByteArray text;
        for (const QByteArray &box : QByteArray(edges).split(',')) {
            text += box + "  " + *counts++ + '\n';
        }
        return text;
    };
    const auto valences = [&](const char *counts) {
        return counted("0.5 1 1.5,1.5 2 2.5,2.5 3 3.5,3.5 4 4.5,4.5 5 5.5,5.5 6 6.5,6.5 7 7.5",
                       counts);
    };
    const auto amounts = [&](const char *counts) {
        return counted("-1.4990234375 -0.9990234375 -0.4990234375,"
                       "-0.4990234375 0.0009765625 0.5009765625,"
                       "0.5009765625 1.0009765625 1.5009765625,"
                       "1.5009765625 2.0009765625 2.5009765625,"
                       "2.5009765625 3.0009765625 3.5009765625",
                       counts);
    };
    const auto row = [](const char *name, const Pixels &pixels, const QString &changes, int status,
                        const QByteArray &result, const QByteArray &v, const QByteArray &a) {
        QTest::newRow(name) << pixels << changes << status << result << v << a;
    };
    row("three points", kPixels, "", 0, threePoints, valences("1101111"), amounts("03210"));
    row("the fit stopped", kPixels, kNoRange, 1, threePoints, valences("1101111"),
        amounts("03210"));

    // Non-equivalent: t = 3 pa + pb, ratios 3 pa / t and pb / t, valence 6 - 4 alpha1.
    const auto pixelLine = [](const char *numbers) {
        QByteArray line;
        for (const QByteArray &number : QByteArray(numbers).split(' ')) {
            line += ' ' + number.rightJustified(10);
        }
        return line + '\n';
    };
    const Pixels mixed = {{0.25, 0.25, 0.5, 0.001}, {0.2, 0.4, -2, 0.0005},
                          {1, -0.5, 4, -0.002},     {0, 0, 0, 0},
                          {-0.25, 0.5, 1, 0.001},   {0.5, 3, 8350.25, -1}};
    row("linear background, all columns", mixed, kFour + kLinear, 0,
        head3x2 +
            "# y x alpha1 alpha2 alpha3 alpha4 dMut1 dMut2 dMut3 dMut4 Mut0 C1 C2 "
            "Valence Total-dMut\n" +
            pixelLine("0 10 0.75 0.25 0 0 0.75 0.25 0 0 0.5 0.001 0 3 1") +
            pixelLine("0.5 10 0.6 0.4 0 0 0.6 0.4 0 0 -2 0.0005 0 3.6 1") +
            pixelLine("123457 10 1.2 -0.2 0 0 3 -0.5 0 0 4 -0.002 0 1.2 2.5") +
            pixelLine("0 -20 nan nan nan nan nan nan 0 0 0 0 0 nan 0") +
            pixelLine("0.5 -20 3 -2 0 0 -0.75 0.5 0 0 1 0.001 0 -6 -0.25") +
            pixelLine("123457 -20 0.333333 0.666667 0 0 1.5 3 0 0 8350.25 -1 0 4.66667 4.5"),
        valences("2111100"), amounts("02211"));
    const auto columns = [](const QStringList &chosen) {
        QString changes;
        for (const char *name : {"Ratio1", "Ratio2", "Ratio3", "Ratio4", "DMut1", "DMut2", "DMut3",
                                 "DMut4", "Mut0", "C1", "C2", "Valence", "Amount"}) {
            changes += QString(" Record/Rec%1=%2").arg(name).arg(chosen.contains(name));
        }
        return changes;
    };
    row("Victoreen background, some columns", {{0.25, 0.25, 0.5, 0.25, -0.125}},
        kFive + kVictoreen + columns({"Ratio2", "Mut0", "C1", "C2", "Amount"}), 0,
        head1x1 + "# y x alpha2 Mut0 C1 C2 Total-dMut\n" + pixelLine("0 10 0.25 0.5 0.25 -0.125 1"),
        valences("0010000"), amounts("00100"));
    // "Auto" with one value: half a unit to both sides.
    row("no column, auto limits", {{0.25, 0.25}},
        kFour + kLinear + columns({}) + " Histogram/HgABoxes=3 Histogram/HgAAuto=true", 0,
        head1x1 + "# y x\n" + pixelLine("0 10"),
        counted("1.75 2 2.25,2.25 2.5 2.75,2.75 3 3.25,3.25 3.5 3.75,3.75 4 4.25", "00100"),
        amounts("00100"));
    // The second reference alone: too few for all else, but these maps run.
    row("one reference", {{0, 0.5, 0.5, 0.001}},
        kFour + kLinear + " Ref1/UseCB=false" + columns({"Ratio1", "Ratio2", "DMut1", "Valence"}),
        1, head1x1 + "# y x alpha1 alpha2 dMut1 Valence\n" + pixelLine("0 10 1 0 0.5 6"),
        valences("0000010"), amounts("01000"));
}

void BatchTest::writesFiles()
{
    QFETCH(Pixels, pixels);
    QFETCH(QString, changes);
    writeMaps(pixels, changes.contains(kVictoreen) && !changes.contains(kLinear));
    QTEST(run({session(changes + " Output/SaveFSelect=map.v1.txt")}).status, "status");
    QTEST(read("map.v1.txt"), "result");
    QTEST(read("map.v1_HGAlpha.txt"), "valences");
    QTEST(read("map.v1_HGThick.txt"), "amounts");
}

void BatchTest::resultPathOfTheCommandLine()
{
    const QString file = session(kResult);
    const QStringList before = filesAndSums();
    Program program;
    program.setWorkingDirectory(path("sub"));
    QCOMPARE(run(program, {"--threads", "2", "--result", "../sub/結 x.dat", "--", file}).status, 0);
    QCOMPARE(filesAndSums(), before); // no r.dat
    QCOMPARE(QDir(path("sub")).entryList(QDir::Files),
             (QStringList{"結 x.dat", "結 x_HGAlpha.dat", "結 x_HGThick.dat"}));
    QCOMPARE(run({"--result", "", file}).status, 2);
}

// Expected colours are those of the definition: index trunc(768 (v - low) / (high - low)) of
// black, red, yellow, white in 256 steps each.
void BatchTest::drawsMaps_data()
{
    QTest::addColumn<Pixels>("pixels");
    QTest::addColumn<QString>("changes");
    QTest::addColumn<QStringList>("quantities");
    QTest::addColumn<QString>("shown");         // of these, the one that is looked at
    QTest::addColumn<QVector<QRgb>>("colours"); // of the pixels; row 0 is at the bottom
    const auto row = [](const char *name, const Pixels &pixels, const QString &changes,
                        const QString &quantities, const QVector<QRgb> &colours) {
        const QStringList names = quantities.split(' ');
        QTest::newRow(name) << pixels << changes << names << names.first() << colours;
    };
    const QRgb black = qRgb(0, 0, 0);
    const QRgb white = qRgb(255, 255, 255);
    const QRgb noValue = qRgb(170, 170, 170);
    const QRgb middle = qRgb(255, 128, 0); // entry 384
    const QString fourPoints = " Ratio1 Ratio2 Valence Amount";
    // Values 0, 0.5, 1, -0.5, 0 / 0, 0.25: from -0.5 to 1 in steps of 1 / 512.
    row("fraction", kPixels, "", "Ratio1" + fourPoints,
        {qRgb(255, 0, 0), qRgb(255, 255, 0), white, black, noValue, middle});
    row("rest of it", kPixels, "", "Ratio2" + fourPoints,
        {qRgb(255, 255, 0), qRgb(255, 0, 0), black, white, noValue, middle});
    // A value for all pixels is in the middle of the bar, whatever rounding leaves of it.
    row("uniform", {{0.5, 0.5, 0.5}}, "", "Valence" + fourPoints, {middle});
    row("no value at all", {{0, 0, 0.5}, {0, 0, 0.5}}, "", "Valence" + fourPoints,
        {noValue, noValue});
    row("linear background", {{0.25, 0.25, 0.5, 0.001}, {0.25, 0.25, -2, 0}}, kFour + kLinear,
        "C1 C1 Ratio1 Ratio2 DMut1 DMut2 Mut0 Valence Amount", {white, black});
    row("one reference, Victoreen", {{0, 0.5, 0.5, 0.1, 0.2}, {0, 0.5, 0.5, 0.1, -0.2}},
        kFive + kVictoreen + " Ref1/UseCB=false", "C2 C2 Ratio1 DMut1 Mut0 C1 Valence Amount",
        {white, black});
}

void BatchTest::drawsMaps()
{
    QFETCH(Pixels, pixels);
    QFETCH(QString, changes);
    QFETCH(QStringList, quantities);
    QFETCH(QString, shown);
    QFETCH(QVector<QRgb>, colours);
    writeMaps(pixels, changes.contains(kVictoreen) && !changes.contains(kLinear));
    const QString file = session(changes + " Output/SaveFSelect=map.v1.txt");
    QImage images[2];
    for (const bool hasNoFonts : {false, true}) {
        Program program;
        program.hasNoFonts = hasNoFonts;
        const Run result = run(program, {"--images", file});
        QVERIFY(result.status == 0 || result.status == 1);
        QCOMPARE(result.err, QString());
        QStringList expected = {"map.v1_HGAlpha.png", "map.v1_HGThick.png"};
        for (const QString &quantity : quantities.mid(1)) {
            expected += "map.v1_" + quantity + ".png";
        }
        expected.sort();
        QCOMPARE(QDir(m_folder).entryList({"*.png"}, QDir::Files), expected);
        images[hasNoFonts] = image("map.v1_" + shown + ".png");
    }
    // Squares of 100 pixels from (24, 58) on; a low map stands half way up its bar.
    const int width = qMin(3, pixels.size());
    const int height = pixels.size() / width;
    const int top = 58 + qMax(0, 120 - 100 * height) / 2;
    for (int i = 0; i < pixels.size(); ++i) {
        const QPoint corner(24 + 100 * (i % width), top + 100 * (height - 1 - i / width));
        for (const QImage &drawn : images) {
            for (const QPoint &at : {QPoint(0, 0), QPoint(50, 50), QPoint(99, 99)}) {
                QCOMPARE(QColor(drawn.pixel(corner + at)), QColor(colours[i]));
            }
        }
    }
    // The bar beside it, from white through yellow and red to black.
    const int barMiddle = 24 + 100 * width + 20 + 11;
    const int barHeight = qMax(120, 100 * height);
    for (const QImage &drawn : images) {
        const QColor third(drawn.pixel(barMiddle, 58 + barHeight / 3));
        QVERIFY(third.red() == 255 && third.green() > 240 && third.blue() < 15);
        QVERIFY(QColor(drawn.pixel(barMiddle, 58 + 3)).blue() > 230);
        QVERIFY(QColor(drawn.pixel(barMiddle, 58 + barHeight - 4)).red() < 40);
    }
    // Fonts are the only difference: texts above, below and at the bar.
    QVERIFY(images[0] != images[1]);
    QCOMPARE(images[0].copy(0, 58, barMiddle, barHeight),
             images[1].copy(0, 58, barMiddle, barHeight));
}

void BatchTest::drawsHistograms()
{
    // Valences 4 and 6: boxes 2 and 4 of five are filled, the first twice as high.
    writeMaps({{0.5, 0.5, 0.5}, {0.5, 0.5, 0.5}, {0, 1, 0.5}}, false);
    QCOMPARE(run({"--images", session(kResult)}).status, 0);
    const QImage drawn = image("r_HGAlpha.png");
    const auto filled = [&drawn](double valence) { // rows from the frame's 80 to 760 = 2 to 6
        const int x = 80 + static_cast<int>((valence - 2) / 4 * 680);
        int rows = 0;
        for (int y = 0; y < drawn.height(); ++y) {
            const QColor colour(drawn.pixel(x, y));
            rows += colour.blue() > colour.red() + 60;
        }
        return rows;
    };
    QCOMPARE(filled(3.1), 0);
    QCOMPARE(filled(5.1), 0);
    QVERIFY(filled(5.9) > 50);
    QVERIFY(std::abs(filled(3.9) - 2 * filled(5.9)) <= 6);
    QVERIFY(std::abs(filled(4.4) - filled(3.9)) <= 2);
}

void BatchTest::losesNothingForPictures()
{
    const std::pair<QString, QString> wrong[] = {
        {"", "--images"},                                          // no result file
        {" Output/SaveFSelect=r.png", "r_HGAlpha.png"},            // histogram and its picture
        {kResult + " Ref3/XafsFS=r_Valence.png", "r_Valence.png"}, // an input
    };
    write("r_Valence.png", spectrum(1, 1, 1, 1));
    for (const auto &[changes, reason] : wrong) {
        const QString file = session(changes);
        const QStringList before = filesAndSums();
        const Run result = run({"--images", file});
        QCOMPARE(result.status, 2);
        QVERIFY(!result.err.isEmpty());
        QCOMPARE(filesAndSums(), before);
    }
    // A stopped map gives no picture, nor does a result that goes into a pipe.
    for (const QString &changes : {kNoV + kResult, QString(" Output/SaveFSelect=/dev/stdout")}) {
        const QString file = session(changes);
        const QStringList before = filesAndSums();
        QVERIFY(run({"--images", file}).status <= 1);
        QCOMPARE(filesAndSums(), before);
    }
}

void BatchTest::keepsWhatItCannotReplace_data()
{
    QTest::addColumn<QString>("changes");
    QTest::addColumn<bool>("folderIsReadOnly");
    QTest::addColumn<int>("mostBytes"); // 0: as many as it likes
    QTest::addColumn<QString>("lost");
    QTest::addColumn<QStringList>("written");
    const auto row = [](const char *name, const QString &changes, bool folderIsReadOnly,
                        int mostBytes, const QString &lost, const QStringList &written = {}) {
        QTest::newRow(name) << changes << folderIsReadOnly << mostBytes << lost << written;
    };
    row("no such folder", " Output/SaveFSelect=no/r.dat", false, 0, "no/r.dat");
    row("a folder", " Output/SaveFSelect=sub", false, 0, "sub");
    row("read-only folder", kResult, true, 0, "r.dat");
    // A result has 6 lines of 59 bytes, a histogram of 100 boxes at least 20 a line.
    row("full disk", kResult, false, 300, "r.dat");
    row("disk full with the histogram", kResult + " Histogram/HgTBoxes=100", false, 1500,
        "r_HGThick.dat", {"r.dat", "r_HGAlpha.dat"});
    row("a folder where a picture goes", " Output/SaveFSelect=p.dat", false, 0, "p_Valence.png",
        {"p.dat", "p_HGAlpha.dat", "p_HGThick.dat", "p_Amount.png", "p_Ratio1.png", "p_Ratio2.png",
         "p_HGAlpha.png", "p_HGThick.png"});
    row("a folder where a histogram goes", " Output/SaveFSelect=x.dat", false, 0, "x_HGAlpha.dat",
        {"x.dat", "x_HGThick.dat"});
}

void BatchTest::keepsWhatItCannotReplace()
{
    QFETCH(QString, changes);
    QFETCH(bool, folderIsReadOnly);
    QFETCH(int, mostBytes);
    QFETCH(QString, lost);
    QFETCH(QStringList, written);
    QVERIFY(QDir(m_folder).mkdir("x_HGAlpha.dat") && QDir(m_folder).mkdir("p_Valence.png"));
    for (const char *old : {"r.dat", "r_HGAlpha.dat", "r_HGThick.dat"}) {
        // In a read-only folder a writable file would be written in place.
        const QFile::Permissions permissions(folderIsReadOnly ? 0x4444 : 0x6644);
        QVERIFY(QFile::setPermissions(write(old, "old"), permissions));
    }
    const QString file = session(changes);
    const auto others = [&] {
        QStringList files = filesAndSums();
        for (const QString &name : written) {
            files = files.filter(QRegularExpression("^(?!" + name + " )"));
        }
        return files;
    };
    const QStringList before = others();
    Program program;
    program.asOtherUser = folderIsReadOnly; // nothing is read-only for root
    program.mostBytes = mostBytes > 0 ? static_cast<rlim_t>(mostBytes) : RLIM_INFINITY;
    QVERIFY(
        QFile::setPermissions(m_folder, QFile::Permissions(folderIsReadOnly ? 0x5555 : 0x7755)));
    const bool images = lost.endsWith(".png");
    const Run result = run(program, images ? QStringList{"--images", file} : QStringList{file});
    QVERIFY(QFile::setPermissions(m_folder, QFile::Permissions(0x7755)));
    if (folderIsReadOnly && program.error() == QProcess::FailedToStart) {
        QSKIP("the program lies where no other user may run it");
    }
    const QStringList lines = {k3ps, kLcf, "Can't open the file [" + path(lost) + ']'};
    QCOMPARE(result.out, outputOf(lines));
    QCOMPARE(result.status, 4);
    QCOMPARE(others(), before); // and nothing is left behind
    for (const QString &name : written) {
        QVERIFY(read(name).size() > 50);
    }
}

void BatchTest::firstStatusThatApplies()
{
    const QString missing = " Ref4/XafsFS=missing.dat";
    const QString unwritable = " Output/SaveFSelect=no/r.dat";
    const std::pair<QString, int> cases[] = {
        {missing + kNoRange + " Output/SaveFSelect=t.dat", 2}, // an input
        {missing + kNoRange + unwritable, 3},
        {kNoRange + unwritable, 4},
        {kNoV + kResult, 1}, // no map, nothing to be written
    };
    write("r.dat", "old");
    for (const auto &[changes, status] : cases) {
        const QString file = session(changes);
        const QStringList before = filesAndSums();
        QCOMPARE(run({file}).status, status);
        QCOMPARE(filesAndSums(), before);
    }
}

void BatchTest::neverOverwritesInputs_data()
{
    QTest::addColumn<QString>("changes");
    QTest::addColumn<QString>("output");
    const auto row = [](const char *name, const QString &output, const QString &changes = "") {
        QTest::newRow(name) << changes << output;
    };
    row("reference", "標準~a.dat");
    row("target, by another path", "sub/../t.dat");
    row("map of a row not used", "m3.txt");
    row("the session", "解析~s.ini");
    row("through a link", "link.dat");
    row("through a linked folder", "here/b.dat");
    row("an input that is a link", "b.dat", " Ref2/XafsFS=link.dat");
    row("valence histogram", "m.txt", " Ref3/XafsFS=m_HGAlpha.txt");
    row("histogram beside a link's future file", "new.txt", " Ref3/XafsFS=sub/new_HGAlpha.txt");
    row("amount histogram", "here/m.txt", " Point8/FileSelect=m_HGThick.txt");
}

void BatchTest::neverOverwritesInputs()
{
    QFETCH(QString, changes);
    QFETCH(QString, output);
    QVERIFY(QFile::link("b.dat", path("link.dat")) && QFile::link(".", path("here")));
    QVERIFY(QFile::link("sub/new.txt", path("new.txt")));
    write("sub/new_HGAlpha.txt", spectrum(1, 1, 1, 1));
    write("m_HGAlpha.txt", spectrum(1, 1, 1, 1));
    write("m_HGThick.txt", mapAt(0, kPixels, false));
    changes += " Ref4/XafsFS=missing.dat"; // so that reading would show
    for (const bool inSession : {true, false}) {
        const QString file =
            session(inSession ? changes + " Output/SaveFSelect=" + output : changes);
        const QStringList before = filesAndSums();
        const Run result =
            inSession ? run({file}) : run({"--result", path(output).replace('~', ' '), file});
        QCOMPARE(result.status, 2);
        QCOMPARE(result.out, QString());
        QVERIFY(!result.err.isEmpty() && !result.err.contains("missing.dat"));
        QCOMPARE(filesAndSums(), before);
    }
}

void BatchTest::namesUnreadableInputs_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("bytes"); // null: the test made it, or there is none
    const QByteArray binary = QByteArray::fromHex("7f454c460201010000000000fffe0080");
    const QByteArray endless = QByteArray("1 2 ").repeated(1 << 20);
    const QByteArray twoGib = QByteArray("2dData-V0.0 HeaderSize: 512").leftJustified(64) +
                              "\nWIDTH: 16384\nHEIGHT: 16384\nEND_OF_HEADER:\n";
    for (const QString key : {"Ref1/XafsFS", "Ref4/XafsFS", "Target/TargetFile",
                              "Point1/FileSelect", "Point8/FileSelect"}) {
        const auto row = [&key](const char *file, const QByteArray &bytes) {
            QTest::addRow("%s %s", qPrintable(key), file) << key << QString(file) << bytes;
        };
        row("missing", QByteArray());
        row("folder", QByteArray());
        row("pipe", QByteArray());
        row("binary", binary);
        if (key == "Ref4/XafsFS" || key == "Point8/FileSelect") { // rows that are not used
            row("empty", "");
            row("endless", endless);
            row("comments", "# eV mu\n\n# X-NUM 1\n# Y-NUM 1\n");
        }
        if (key == "Point8/FileSelect") {
            row("gridless", "# X-NUM 2\n0 0 1 0\n");
            row("large_grid", "# X-NUM 99999\n# Y-NUM 99999\n0 0 1 0\n");
            row("large_processed", twoGib.leftJustified(4096, '\0'));
        }
    }
}

void BatchTest::namesUnreadableInputs()
{
    QFETCH(QString, key);
    QFETCH(QString, file);
    QFETCH(QByteArray, bytes);
    QVERIFY(QDir(m_folder).mkdir("folder"));
    QCOMPARE(mkfifo(QFile::encodeName(path("pipe")).constData(), 0644), 0);
    if (!bytes.isNull()) {
        write(file, bytes);
    }
    const QString file3 = session(kResult + " Ref3/XafsFS=second.dat " + key + '=' + file);
    const QStringList before = filesAndSums();
    const Run result = run({"--quiet", file3});
    QCOMPARE(result.status, 3);
    QCOMPARE(result.out, QString());
    for (const QString &name : {file, QString("second.dat")}) { // all of them, each with a reason
        QVERIFY2(result.err.contains(QRegularExpression(path(name) + ": .+\n")),
                 qPrintable(result.err));
    }
    QCOMPARE(filesAndSums(), before);
}

void BatchTest::knowsItsUsage_data()
{
    QTest::addColumn<QString>("arguments"); // S: a session, T: a spectrum
    QTest::addColumn<int>("status");
    for (const char *good : {"--help", "-h", "--version", "S --help"}) {
        QTest::newRow(good) << QString(good) << 0;
    }
    for (const char *wrong : {"", "--", "-x S", "--images", "S S", "S -e S", "--threads -1 S",
                              "--threads x S", "--threads 1.5 S", "S --threads", "S --result",
                              "missing.ini", ".", "T", "--quiet=1 S", "-ej S"}) {
        QTest::newRow(wrong) << QString(wrong) << 2;
    }
}

void BatchTest::knowsItsUsage()
{
    QFETCH(QString, arguments);
    QFETCH(int, status);
    QStringList words = arguments.split(' ', Qt::SkipEmptyParts);
    for (QString &word : words) {
        word = word == "S" ? session(kResult) : word == "T" ? path("t.dat") : word;
    }
    const QStringList before = filesAndSums();
    const Run result = run(words);
    QCOMPARE(result.status, status);
    QCOMPARE(result.out.contains("orvel-batch"), status == 0);
    QCOMPARE(result.err.startsWith("orvel-batch: "), status == 2);
    QCOMPARE(result.out.isEmpty() || result.err.isEmpty(), true);
    QCOMPARE(filesAndSums(), before);
}

void BatchTest::notesWhatItDoesNotKnow()
{
    const Run result =
        run({"--quiet", session("Edge/EdgeX=1 Method/TypeTMK=exact View/ShowMapB=3")});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.out, outputOf({k3ps, kLcf}));
    QVERIFY(result.err.contains("Edge/EdgeX") && result.err.contains("Method/TypeTMK=exact"));
    QCOMPARE(result.err.count('\n'), 2);
}

void BatchTest::progressIsForTerminals()
{
    for (const bool quiet : {false, true}) {
        const int master = posix_openpt(O_RDWR | O_NOCTTY);
        QVERIFY(master >= 0 && grantpt(master) == 0 && unlockpt(master) == 0);
        Program program;
        program.terminal = open(ptsname(master), O_RDWR | O_NOCTTY);
        const QStringList arguments = {session()};
        const Run result = run(program, quiet ? arguments + QStringList("--quiet") : arguments);
        close(program.terminal);
        QByteArray shown;
        char part[4096]; // to the end: with the last opener gone, reading fails
        for (ssize_t n = 0; (n = ::read(master, part, sizeof part)) > 0;) {
            shown.append(part, static_cast<int>(n));
        }
        close(master);
        QCOMPARE(result.out, outputOf({k3ps, kLcf}));
        QCOMPARE(shown.isEmpty(), quiet);
        QCOMPARE(shown.contains(" 60 % "), !quiet);
    }
}

QTEST_GUILESS_MAIN(BatchTest)
#include "tst_batch.moc"
