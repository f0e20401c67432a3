#include "analysis/Checks.h"
#include "tests/TestTable.h"
#include "tests/analysis/Inputs.h"

#include <QtTest>

using namespace orvel;

namespace {

/// Two loaded references in rows 1 and 2, a target, four used points with images, V in row 3; then
/// what the words change: "refs 3" uses three, "unload 1" empties the first and "noimage 1" takes
/// its image away.
AnalysisInput inputOf(const QString &changes)
{
    AnalysisInput input;
    for (int row = 0; row < kReferenceRows; ++row) {
        input.references.push_back(inputs::reference(row, row, inputs::flatSpectrum(1)));
        input.references.back().use = row < 2;
    }
    for (int row = 0; row < kPointRows; ++row) {
        input.points.push_back(inputs::point(row, 110 + row));
        input.points.back().use = row < 4;
        input.points.back().map = inputs::image(1, 1, {0.5});
    }
    input.points[2].vPoint = true;
    input.points[0].lcf = true;
    input.points[5].lcf = true; // unused rows bound the range too
    input.target = inputs::flatSpectrum(1);

    const QStringList words = changes.split(' ', Qt::SkipEmptyParts);
    for (int i = 0; i < words.size(); ++i) {
        const int number = words.value(i + 1).toInt();
        const auto row = static_cast<size_t>(qMax(0, number - 1));
        if (words[i] == "refs") {
            for (auto &reference : input.references) {
                reference.use = reference.row < number;
            }
        } else if (words[i] == "points") {
            for (auto &point : input.points) {
                point.use = point.row < number;
            }
        } else if (words[i] == "unload") {
            input.references[row].spectrum = AMutE();
        } else if (words[i] == "noimage") {
            input.points[row].map.reset();
        } else if (words[i] == "switch") {
            input.points[row].use = !input.points[row].use;
        } else if (words[i] == "notarget") {
            input.target = AMutE();
        } else if (words[i] == "noV") {
            input.points[2].vPoint = false;
        } else if (words[i] == "norange") {
            input.points[row].lcf = false;
        } else if (words[i] == "equal" || words[i] == "nan") {
            input.points[0].energyEv = words[i] == "nan" ? qQNaN() : 115;
            input.points[5].energyEv = input.points[0].energyEv;
        }
        input.method.exact = input.method.exact && words[i] != "LS";
        input.method.nonEquiv =
            input.method.nonEquiv || words[i] == "NEQ" || words[i] == "NEQlinear";
        input.method.linearBackground = input.method.linearBackground || words[i] == "NEQlinear";
    }
    return input;
}

} // namespace

class ChecksTest : public QObject {
    Q_OBJECT

private slots:
    void targetsAndMaps_data();
    void targetsAndMaps();
    void lcf_data();
    void lcf();
    void lastUsedVPointCounts();
};

void ChecksTest::targetsAndMaps_data()
{
    const TestTable<QString, bool, int, QStringList> table("changes", "isMap", "method",
                                                           "messages");
    bool isMap = false;
    const auto row = [&isMap](const char *changes, Method method,
                              const QStringList &messages = {}) {
        QTest::addRow("%s: %s", isMap ? "map" : "target", changes)
            << QString(changes) << isMap << static_cast<int>(method) << messages;
    };
    const auto count = [](int n) {
        return QString("Number of valied Ref Files is %1, which is less than 2.").arg(n);
    };
    const auto points = [](int n, int wanted, const char *how = "not") {
        return QString("Number of selected data sets %1 is %2 %3.").arg(n).arg(how).arg(wanted);
    };
    const QString noV = "V Point is not selected.";
    const QString first = "The 1st Ref File is not valid.";
    const QString second = "The 2nd Ref File is not valid.";
    const QString noTarget = "Target File1 is not valid.";
    row("noimage 1", Method::ExactFourPoints); // images play no part
    row("points 3", Method::ThreePoints);
    row("LS", Method::LeastSquares);
    row("points 5", Method::None, {points(5, 4)});
    row("switch 3", Method::None, {noV}); // V on an unused row
    row("refs 1 unload 1", Method::None, {count(0), first});
    row("refs 3 unload 2", Method::None, {second});
    row("refs 3 unload 3", Method::ExactFourPoints);
    row("NEQ refs 3 unload 3", Method::None, {second}); // the third, under the second's name
    row("NEQ refs 3 unload 3 notarget", Method::None, {noTarget});

    isMap = true;
    row("noimage 1", Method::ThreePoints); // a row without an image is not used
    row("noimage 3", Method::None, {"V Point is not selected"});
    row("LS", Method::LeastSquares);
    row("refs 0", Method::None, {count(0)});
    row("refs 4 unload 3 unload 4", Method::None, {"Ref File 3 is not valid."});
    row("NEQ noV refs 4", Method::None, {points(4, 7, "less than")});
    row("NEQlinear", Method::NonEquivLinear);
    row("NEQ refs 1", Method::NonEquivVictoreen, {count(1)}); // 4 unknowns: it runs
    row("NEQlinear refs 0 points 1", Method::None, {count(0), points(1, 2, "less than")});
}

void ChecksTest::targetsAndMaps()
{
    QFETCH(QString, changes);
    QFETCH(bool, isMap);
    const AnalysisInput input = inputOf(changes);
    const Plan plan = isMap ? checkMap(input) : checkTarget(input);
    QTEST(inputs::texts(plan.messages), "messages");
    QTEST(static_cast<int>(plan.method), "method");
}

void ChecksTest::lcf_data()
{
    // message: none: it runs
    const TestTable<QString> row("message");
    const QString noRange = "Energy Range is not selected, which should by selected by CB of TR.";
    row("", QString());
    row("equal", QString()); // equal energies are a range
    row("nan", noRange);
    row("norange 1 refs 0", noRange);
}

void ChecksTest::lcf()
{
    QFETCH(QString, message);
    const AnalysisInput input = inputOf(QTest::currentDataTag());
    const LcfPlan plan = checkLcf(input);
    QCOMPARE(inputs::texts(plan.messages).join('|'), message);
    QCOMPARE(plan.run, message.isEmpty());
    if (plan.run) {
        QCOMPARE(plan.lowEv, input.points[0].energyEv);
        QCOMPARE(plan.highEv, input.points[5].energyEv);
    }
}

void ChecksTest::lastUsedVPointCounts()
{
    AnalysisInput input = inputOf(QString());
    input.points[0].vPoint = true;
    input.points[7].vPoint = true; // not used
    QCOMPARE(checkTarget(input).vPoint, 2);
    QCOMPARE(checkMap(input).vPoint, 2);
    QCOMPARE(checkMap(input).used, std::vector<size_t>({0, 1, 2, 3}));
}

QTEST_GUILESS_MAIN(ChecksTest)
#include "tst_checks.moc"
