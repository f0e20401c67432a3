// Precision beside the results, as a user meets it: frame, map, hidden pixels, files.

#include "panel/EnergyAdviserDialog.h"
#include "panel/PixelWindow.h"
#include "session/SessionFile.h"
#include "tests/panel/Window.h"

#include <QComboBox>
#include <QSpinBox>

#include <cmath>

using namespace window;

namespace {

// Three points: a = (tau - 0.2) / 0.6 with tau the absorption at V, the edge step 1. Noise s on
// each of the three gives sigma = s / 0.6 * sqrt(1 + (tau - 1)^2 + tau^2); valences 1 apart.
double sigmaOf(double tau, double s)
{
    return s / 0.6 * std::sqrt(1 + (tau - 1) * (tau - 1) + tau * tau);
}

/// Ticks the frame open and asks for maps from a given noise.
void askForSigma(FourPs &panel, const QString &s)
{
    perform(panel, "tick AdvancedCB; tick SigmaMaps");
    auto *noise = at<QComboBox>(panel, "Noise");
    while (noise->currentText() != "given number") {
        QTest::keyClick(noise, Qt::Key_Down);
    }
    perform(panel, "type NoiseSigma " + s);
}

QString valueAt(FourPs &panel, double x)
{
    emit map(panel, "ResultMap")->nowPos(x, 0.5);
    return shown(panel, "ResultMap.Val");
}

} // namespace

class AdvancedTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void standsBesideTheResults();
    void uncertainPixelsAreWhite();
    void writesBesideTheResultFile();
    void sessionKeepsTheChoices();
    void boundsHoldFromTheNextCalculation();
    void doubleClickShowsThePixel();
};

void AdvancedTest::standsBesideTheResults()
{
    const Sample sample;
    FourPs panel;
    panel.resize(1366, 736);
    panel.show();
    sample.load(panel, 2, {0.5, 0.2});
    QVERIFY(!at(panel, "AdvancedPanel")->isVisible());
    QVERIFY(!at(panel, "MapSigmaValence")->isVisible());
    const QString results = shown(panel, "CalcRes LCFRes P1.Mut1 Message:plainText");
    askForSigma(panel, "0.01");
    QVERIFY(at(panel, "AdvancedPanel")->isVisible());
    QVERIFY(at(panel, "MapSigmaValence")->isVisible());
    QVERIFY(!at(panel, "MapSigmaRatio3")->isEnabled() && !at(panel, "MapResidual")->isEnabled());
    QVERIFY(!at(panel, "NoiseSigma")->toolTip().isEmpty());
    QCOMPARE(shown(panel, "CalcRes LCFRes P1.Mut1 Message:plainText"), results);

    for (const char *quantity : {"MapSigmaValence", "MapSigmaRatio1", "MapSigmaRatio2"}) {
        perform(panel, QStringLiteral("click ") + quantity);
        QCOMPARE(valueAt(panel, 0.5), QString::number(sigmaOf(0.5, 0.01), 'g', 6));
        QCOMPARE(valueAt(panel, 1.5), QString::number(sigmaOf(0.2, 0.01), 'g', 6));
    }
    perform(panel, "type NoiseSigma 0.02");
    QCOMPARE(valueAt(panel, 0.5), QString::number(sigmaOf(0.5, 0.02), 'g', 6));
    const QString target = shown(panel, "TargetPrecision");
    QVERIFY2(target.contains("valence 0.041") && target.contains("s 0.02"), qPrintable(target));
    QVERIFY(shown(panel, "LcfPrecision").contains("R factor"));

    // Without their planes there is nothing to show: back to the valence.
    perform(panel, "click SigmaMaps");
    QVERIFY(at<QAbstractButton>(panel, "MapValence")->isChecked());
    QVERIFY(!at(panel, "MapSigmaValence")->isVisible());
    // Processed absorptions are no counts.
    const auto *noise = at<QComboBox>(panel, "Noise");
    QVERIFY(!(noise->model()->index(3, 0).flags() & Qt::ItemIsEnabled));
}

void AdvancedTest::uncertainPixelsAreWhite()
{
    const Sample sample;
    FourPs panel;
    panel.resize(1366, 736);
    panel.show();
    sample.load(panel, 2, {0.5, 0.2}); // valences 2.5 and 3
    perform(panel, "type HgAFrom 2; type HgATo 3; type HgABoxes 3");
    askForSigma(panel, "0.01"); // 0.0204 and 0.0216
    panel.calcMap();
    DispArea *area = map(panel, "ResultMap")->area();
    const auto colourAt = [&](double x) {
        const ChCoord *coord = map(panel, "ResultMap")->coord();
        return QColor(picture(area).pixel(QPointF(coord->sx(x), coord->sy(0.5)).toPoint()));
    };
    const auto bars = [&] {
        return pixelsOf(picture(graph(panel, Displays::DHistA)->area()), CColors().colour(2));
    };
    picture(area);
    const int both = bars();
    QVERIFY(colourAt(0.5) != QColor(Qt::white));
    perform(panel, "tick HideUncertain; type SigmaLimit 0.021");
    QCOMPARE(colourAt(1.5), QColor(Qt::white));
    QVERIFY(colourAt(0.5) != QColor(Qt::white));
    QVERIFY(bars() < both && bars() > 0);
    perform(panel, "type SigmaLimit 0.022");
    QCOMPARE(bars(), both);
    perform(panel, "type SigmaLimit 0.001"); // none is left
    QCOMPARE(bars(), 0);
    QCOMPARE(colourAt(0.5), QColor(Qt::white));
}

void AdvancedTest::writesBesideTheResultFile()
{
    const Sample sample;
    FourPs panel;
    sample.load(panel, 2, {0.5, 0.2});
    perform(panel, "type SaveFSelect.FileName " + sample.path("r.dat"));
    panel.calcAndWrite();
    const auto files = [&] {
        return sample.read("r.dat") + sample.read("r_HGAlpha.dat") + sample.read("r_HGThick.dat");
    };
    const QByteArray before = files();
    QVERIFY(!QFile::exists(sample.path("r_Sigma.dat")));
    askForSigma(panel, "0.01");
    perform(panel, "tick SigmaFile; tick HideUncertain; type SigmaLimit 0.001");
    panel.calcAndWrite();
    QCOMPARE(files(), before); // not a byte differs
    const QList<QByteArray> lines = sample.read("r_Sigma.dat").trimmed().split('\n');
    QVERIFY(lines.contains("# noise: given, s = 0.01; degrees of freedom 0"));
    QVERIFY(lines.contains("# y x sigma_alpha1 sigma_alpha2 sigma_Valence sigma_Total-dMut"));
    const QList<QByteArray> numbers = lines.last().simplified().split(' ');
    QCOMPARE(numbers.size(), 6);
    QCOMPARE(numbers[2], QByteArray::number(sigmaOf(0.2, 0.01), 'g', 6));
    // The step is the difference of two absorptions, over 1: s times the root of 2.
    QCOMPARE(numbers[5], QByteArray::number(0.01 * std::sqrt(2), 'g', 6));
}

void AdvancedTest::sessionKeepsTheChoices()
{
    const Sample sample;
    FourPs panel;
    panel.saveSession(sample.path("usual.ini"));
    QVERIFY(!sample.read("usual.ini").contains("Advanced"));
    QVERIFY(!sample.read("usual.ini").contains("Sigma"));
    QVERIFY(!sample.read("usual.ini").contains("Adviser"));
    sample.load(panel);
    askForSigma(panel, "0.03");
    perform(panel, "tick SigmaFile; tick HideUncertain; type SigmaLimit 0.5; tick ShowPixelWindow; "
                   "click MapSigmaValence");
    for (const char *box : {"NonEquivBounds", "LcfBounds"}) {
        QTest::keyClick(at<QComboBox>(panel, box), Qt::Key_Down);
    }
    perform(panel, "click AdviserB");
    auto *adviser = panel.findChild<EnergyAdviserDialog *>();
    QTest::keyClick(find<QComboBox>(*adviser, "Criterion"), Qt::Key_Down);
    type(find<QLineEdit>(*adviser, "Spacing"), "3.5");
    type(find<QLineEdit>(*adviser, "Noise"), "0.007");
    type(find<QLineEdit>(*adviser, "Part2"), "0.25");
    find<QSpinBox>(*adviser, "Points")->stepUp();
    panel.saveSession(sample.path("s.ini"));
    FourPs other;
    other.openSession(sample.path("s.ini"));
    const auto all = [](const FourPs &of) {
        return shown(of, "SigmaMaps:checked SigmaFile:checked Noise:currentText NoiseSigma "
                         "NonEquivBounds:currentText LcfBounds:currentText HideUncertain:checked "
                         "SigmaLimit ShowPixelWindow:checked MapSigmaValence:checked");
    };
    QCOMPARE(all(other), QString("true true given number 0.03 not negative not negative true 0.5 "
                                 "true true"));
    QCOMPARE(all(panel), all(other));
    QCOMPARE(other.state().texts.advanced.adviser.spacing, QString("3.5"));
    perform(other, "click AdviserB");
    const auto *again = other.findChild<EnergyAdviserDialog *>();
    QVERIFY(again->texts() == adviser->texts());
    QVERIFY(again->texts().byFractions && again->texts().noise == "0.007");
    other.saveSession(sample.path("again.ini"));
    QCOMPARE(sample.read("again.ini"), sample.read("s.ini"));
}

void AdvancedTest::boundsHoldFromTheNextCalculation()
{
    const Sample sample;
    FourPs panel;
    sample.load(panel, 1, {0.9}); // beyond A: B's coefficient is below 0
    perform(panel, "tick TypeNonEquiv; click NonEquivBGLinear");
    sample.map("more.txt", 1, "8340", {0});
    perform(panel, sample.in("load P4.FileSelect %/more.txt; tick P4.UseCB"));
    panel.calcBoth();
    perform(panel, "click MapRatio2");
    QVERIFY(valueAt(panel, 0.5).toDouble() < 0);
    QTest::keyClick(at<QComboBox>(panel, "NonEquivBounds"), Qt::Key_Down);
    QVERIFY(valueAt(panel, 0.5).toDouble() < 0);
    panel.calcBoth();
    QCOMPARE(valueAt(panel, 0.5).toDouble(), 0.0);
    QCOMPARE(shown(panel, "BoundsFound"), QString("1 pixels on a bound (0 : 1)"));
}

void AdvancedTest::doubleClickShowsThePixel()
{
    const Sample sample;
    FourPs panel;
    panel.resize(1366, 736);
    panel.show();
    sample.load(panel, 2, {0.5, 0.2});
    DispArea *area = map(panel, "ResultMap")->area();
    picture(area);
    const auto doubleClick = [&](double x) {
        const ChCoord *coord = map(panel, "ResultMap")->coord();
        QTest::mouseDClick(area, Qt::LeftButton, Qt::NoModifier,
                           QPointF(coord->sx(x), coord->sy(0.5)).toPoint());
        return panel.findChild<orvel::PixelWindow *>();
    };
    QVERIFY(doubleClick(1.5) == nullptr); // not asked for
    perform(panel, "tick AdvancedCB; tick ShowPixelWindow");
    const orvel::PixelWindow *window = doubleClick(1.5);
    QVERIFY(window && window->isVisible());
    QCOMPARE(QPoint(window->report().x, window->report().y), QPoint(1, 0));
    perform(panel, "type R1.Valence 7"); // the map is of another one
    doubleClick(0.5);
    QCOMPARE(window->report().x, 1);
    panel.calcMap();
    QCOMPARE(doubleClick(0.5), window);
    QCOMPARE(window->report().x, 0);
}

QTEST_MAIN(AdvancedTest)
#include "tst_advanced.moc"
