#include "analysis/Checks.h"
#include "tests/analysis/Inputs.h"

#include <QtTest>

using namespace orvel;

namespace {

/// Two loaded references in rows 1 and 2, a target, four used points with images, V in row 3.
AnalysisInput goodInput()
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
    return input;
}

using Change = std::function<void(AnalysisInput &)>;

void unload(AnalysisInput &input, int row)
{
    input.references[static_cast<size_t>(row)].spectrum = AMutE();
}
void useReferences(AnalysisInput &input, int count)
{
    for (auto &reference : input.references) {
        reference.use = reference.row < count;
    }
}
void usePoints(AnalysisInput &input, int count)
{
    for (auto &point : input.points) {
        point.use = point.row < count;
    }
}

} // namespace
Q_DECLARE_METATYPE(Change)

class ChecksTest : public QObject {
    Q_OBJECT

private slots:
    void target_data();
    void target();
    void map_data();
    void map();
    void lcf_data();
    void lcf();
    void lastUsedVPointCounts();

private:
    void checkRow(Plan (*check)(const AnalysisInput &));
};

void ChecksTest::target_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<int>("method");
    QTest::addColumn<QStringList>("messages");

    const auto row = [](const char *name, const Change &change, Method method,
                        const QStringList &messages = {}) {
        QTest::newRow(name) << change << static_cast<int>(method) << messages;
    };
    const QString noV = QStringLiteral("V Point is not selected.");
    const QString first = QStringLiteral("The 1st Ref File is not valid.");
    const QString second = QStringLiteral("The 2nd Ref File is not valid.");
    const QString noTarget = QStringLiteral("Target File1 is not valid.");
    const auto count = [](int n) {
        return QStringLiteral("Number of valied Ref Files is %1, which is less than 2.").arg(n);
    };
    const auto points = [](int n, int wanted) {
        return QStringLiteral("Number of selected data sets %1 is not %2.").arg(n).arg(wanted);
    };

    row(
        "exact", [](auto &) {}, Method::ExactFourPoints);
    row(
        "images play no part", [](auto &i) { i.points[0].map.reset(); }, Method::ExactFourPoints);
    row(
        "least squares of four", [](auto &i) { i.method.exact = false; }, Method::LeastSquares);
    row(
        "three points", [](auto &i) { usePoints(i, 3); }, Method::ThreePoints);
    row(
        "least squares of three is three points",
        [](auto &i) {
            usePoints(i, 3);
            i.method.exact = false;
        },
        Method::ThreePoints);
    row(
        "least squares of eight",
        [](auto &i) {
            usePoints(i, 8);
            i.method.exact = false;
        },
        Method::LeastSquares);
    row("five exact", [](auto &i) { usePoints(i, 5); }, Method::None, {points(5, 4)});
    row("one point, the V point",
        [](auto &i) {
            usePoints(i, 0);
            i.points[2].use = true;
        },
        Method::None, {points(1, 4)});
    row("no V", [](auto &i) { i.points[2].vPoint = false; }, Method::None, {noV});
    row("V on an unused row", [](auto &i) { i.points[2].use = false; }, Method::None, {noV});
    row("no V comes first, also for NEQ",
        [](auto &i) {
            i.points[2].vPoint = false;
            i.method.nonEquiv = true;
            useReferences(i, 0);
        },
        Method::None, {noV});
    row("no reference", [](auto &i) { useReferences(i, 0); }, Method::None, {count(0)});
    row("one reference stops without more, whatever the target",
        [](auto &i) {
            useReferences(i, 1);
            i.target = AMutE();
        },
        Method::None, {count(1)});
    row("one reference, not loaded",
        [](auto &i) {
            useReferences(i, 1);
            unload(i, 0);
        },
        Method::None, {count(0), first});
    row("first of two", [](auto &i) { unload(i, 0); }, Method::None, {count(1), first});
    row("first of three",
        [](auto &i) {
            useReferences(i, 3);
            unload(i, 0);
        },
        Method::None, {first});
    row("second of three",
        [](auto &i) {
            useReferences(i, 3);
            unload(i, 1);
        },
        Method::None, {second});
    row(
        "third does not matter to four points",
        [](auto &i) {
            useReferences(i, 3);
            unload(i, 2);
        },
        Method::ExactFourPoints);
    row("no target", [](auto &i) { i.target = AMutE(); }, Method::None, {noTarget});
    row("third matters to NEQ, under the second's name",
        [](auto &i) {
            useReferences(i, 3);
            unload(i, 2);
            i.method.nonEquiv = true;
        },
        Method::None, {second});
    row("NEQ: target before the third",
        [](auto &i) {
            useReferences(i, 3);
            unload(i, 2);
            i.target = AMutE();
            i.method.nonEquiv = true;
        },
        Method::None, {noTarget});
    row("NEQ Victoreen takes 5", [](auto &i) { i.method.nonEquiv = true; }, Method::None,
        {points(4, 5)});
    row(
        "NEQ Victoreen",
        [](auto &i) {
            i.method.nonEquiv = true;
            usePoints(i, 5);
        },
        Method::NonEquivVictoreen);
    row(
        "NEQ linear", [](auto &i) { i.method.nonEquiv = i.method.linearBackground = true; },
        Method::NonEquivLinear);
    row("NEQ linear takes 4",
        [](auto &i) {
            i.method.nonEquiv = i.method.linearBackground = true;
            usePoints(i, 3);
        },
        Method::None, {points(3, 4)});
}

void ChecksTest::target()
{
    checkRow(checkTarget);
}

void ChecksTest::map_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<int>("method");
    QTest::addColumn<QStringList>("messages");

    const auto row = [](const char *name, const Change &change, Method method,
                        const QStringList &messages = {}) {
        QTest::newRow(name) << change << static_cast<int>(method) << messages;
    };
    const QString noV = QStringLiteral("V Point is not selected");
    const auto count = [](int n) {
        return QStringLiteral("Number of valied Ref Files is %1, which is less than 2.").arg(n);
    };
    const auto notValid = [](int n) { return QStringLiteral("Ref File %1 is not valid.").arg(n); };
    const auto less = [](int n, int wanted) {
        return QStringLiteral("Number of selected data sets %1 is less than %2.")
            .arg(n)
            .arg(wanted);
    };

    row(
        "exact, target not needed", [](auto &i) { i.target = AMutE(); }, Method::ExactFourPoints);
    row(
        "three points: a row without an image is not used",
        [](auto &i) { i.points[0].map.reset(); }, Method::ThreePoints);
    row("V without an image", [](auto &i) { i.points[2].map.reset(); }, Method::None, {noV});
    row(
        "least squares", [](auto &i) { i.method.exact = false; }, Method::LeastSquares);
    row("two points", [](auto &i) { i.points[0].use = i.points[1].use = false; }, Method::None,
        {QStringLiteral("Number of selected data sets 2 is not 4.")});
    row("no reference", [](auto &i) { useReferences(i, 0); }, Method::None, {count(0)});
    row("one reference", [](auto &i) { useReferences(i, 1); }, Method::None, {count(1)});
    row("reference 2 of 2", [](auto &i) { unload(i, 1); }, Method::None, {count(1), notValid(2)});
    row("the first of two missing ones",
        [](auto &i) {
            useReferences(i, 4);
            unload(i, 2);
            unload(i, 3);
        },
        Method::None, {notValid(3)});
    row("NEQ needs no V, four refs and a Victoreen 7",
        [](auto &i) {
            i.method.nonEquiv = true;
            i.points[2].vPoint = false;
            useReferences(i, 4);
        },
        Method::None, {less(4, 7)});
    row(
        "NEQ linear, two refs need 4",
        [](auto &i) { i.method.nonEquiv = i.method.linearBackground = true; },
        Method::NonEquivLinear);
    row("NEQ Victoreen, one ref needs 4, and runs",
        [](auto &i) {
            i.method.nonEquiv = true;
            useReferences(i, 1);
        },
        Method::NonEquivVictoreen, {count(1)});
    row("NEQ linear without a ref needs 2",
        [](auto &i) {
            i.method.nonEquiv = i.method.linearBackground = true;
            useReferences(i, 0);
            usePoints(i, 1);
        },
        Method::None, {count(0), less(1, 2)});
}

void ChecksTest::map()
{
    checkRow(checkMap);
}

/// One row of target_data() or map_data().
void ChecksTest::checkRow(Plan (*check)(const AnalysisInput &))
{
    QFETCH(Change, change);
    AnalysisInput input = goodInput();
    change(input);
    const Plan plan = check(input);
    QTEST(inputs::texts(plan.messages), "messages");
    QTEST(static_cast<int>(plan.method), "method");
}

void ChecksTest::lcf_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("message"); // none: it runs

    const QString noRange =
        QStringLiteral("Energy Range is not selected, which should by selected by CB of TR.");
    QTest::newRow("runs") << Change([](auto &) {}) << QString();
    QTest::newRow("equal energies are a range")
        << Change([](auto &i) { i.points[5].energyEv = i.points[0].energyEv; }) << QString();
    QTest::newRow("one row") << Change([](auto &i) { i.points[5].lcf = false; }) << noRange;
    QTest::newRow("no numbers") << Change([](auto &i) {
        i.points[0].energyEv = i.points[5].energyEv = qQNaN();
    }) << noRange;
    QTest::newRow("range before references") << Change([](auto &i) {
        i.points[0].lcf = false;
        useReferences(i, 0);
    }) << noRange;
    QTest::newRow("one valid reference")
        << Change([](auto &i) { unload(i, 1); })
        << QStringLiteral("Number of Valid Reference files is 1, which is less than 2");
}

void ChecksTest::lcf()
{
    QFETCH(Change, change);
    QFETCH(QString, message);
    AnalysisInput input = goodInput();
    change(input);
    const LcfPlan plan = checkLcf(input);
    QCOMPARE(inputs::texts(plan.messages).join(QLatin1Char('|')), message);
    QCOMPARE(plan.run, message.isEmpty());
    if (plan.run) {
        QCOMPARE(plan.lowEv, input.points[0].energyEv);
        QCOMPARE(plan.highEv, input.points[5].energyEv);
    }
}

void ChecksTest::lastUsedVPointCounts()
{
    AnalysisInput input = goodInput();
    input.points[0].vPoint = true;
    input.points[7].vPoint = true; // not used
    QCOMPARE(checkTarget(input).vPoint, 2);
    QCOMPARE(checkMap(input).vPoint, 2);
    QCOMPARE(checkMap(input).used, std::vector<size_t>({0, 1, 2, 3}));
}

QTEST_GUILESS_MAIN(ChecksTest)
#include "tst_checks.moc"
