// Precision beside the results, as a user meets it: frame, map, hidden pixels, files.

#include "panel/PixelWindow.h"
#include "tests/panel/Window.h"

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
    chooseGivenNoise(panel, s);
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

    void standsBesideTheResults()
    {
        Shown panel(m_sample, 2, {0.5, 0.2});
        const QString fields = "AdvancedPanel:visible MapSigmaValence:visible";
        QCOMPARE(shown(panel, fields), "false false");
        const QString results = shown(panel, "CalcRes LCFRes P1.Mut1 Message:plainText");
        askForSigma(panel, "0.01");
        QCOMPARE(shown(panel, fields), "true true");
        QCOMPARE(shown(panel, "CalcRes LCFRes P1.Mut1 Message:plainText"), results);
        for (const char *quantity : {"MapSigmaValence", "MapSigmaRatio1", "MapSigmaRatio2"}) {
            perform(panel, QString("click ") + quantity);
            QCOMPARE(valueAt(panel, 0.5), QString::number(sigmaOf(0.5, 0.01), 'g', 6));
            QCOMPARE(valueAt(panel, 1.5), QString::number(sigmaOf(0.2, 0.01), 'g', 6));
        }
        perform(panel, "type NoiseSigma 0.02");
        QCOMPARE(valueAt(panel, 0.5), QString::number(sigmaOf(0.5, 0.02), 'g', 6));
        const QString target = shown(panel, "TargetPrecision LcfPrecision");
        QVERIFY2(target.contains("valence 0.041") && target.contains("s 0.02"), qPrintable(target));
        // Without their planes there is nothing to show: back to the valence.
        perform(panel, "click SigmaMaps");
        QCOMPARE(shown(panel, "MapValence:checked MapSigmaValence:visible"), "true false");
    }

    void uncertainPixelsAreWhite()
    {
        Shown panel(m_sample, 2, {0.5, 0.2}); // valences 2.5 and 3
        perform(panel, "type HgAFrom 2; type HgATo 3; type HgABoxes 3");
        askForSigma(panel, "0.01"); // 0.0204 and 0.0216
        panel.calcMap();
        DispArea *area = map(panel, "ResultMap")->area();
        const auto isWhite = [area](double x) {
            return picture(area).pixelColor(int(x * area->width()), 9) == QColor(Qt::white);
        };
        const auto bars = [&panel] {
            return pixelsOf(picture(panel, Displays::DHistA), CColors().colour(2));
        };
        const int both = bars();
        QVERIFY(!isWhite(0.2));
        perform(panel, "tick HideUncertain; type SigmaLimit 0.021");
        QVERIFY(!isWhite(0.2) && isWhite(0.8) && bars() < both && bars() > 0);
        perform(panel, "type SigmaLimit 0.022");
        QCOMPARE(bars(), both);
    }

    void writesBesideTheResultFile()
    {
        Loaded panel(m_sample, 2, {0.5, 0.2});
        perform(panel, m_sample.in("type SaveFSelect.FileName %/r.dat; click WriteB"));
        const auto files = [&] {
            return m_sample.read("r.dat") + m_sample.read("r_HGAlpha.dat") +
                   m_sample.read("r_HGThick.dat");
        };
        const QByteArray before = files();
        QVERIFY(!QFile::exists(m_sample.path("r_Sigma.dat")));
        askForSigma(panel, "0.01");
        perform(panel, "tick SigmaFile; tick HideUncertain; type SigmaLimit 0.001; click WriteB");
        QCOMPARE(files(), before); // not a byte differs
        const QByteArray sigmas = m_sample.read("r_Sigma.dat");
        QVERIFY(sigmas.contains("\n# noise: given, s = 0.01; degrees of freedom 0\n"));
        const QByteArray last = sigmas.trimmed().split('\n').last();
        const QList<QByteArray> numbers = last.simplified().split(' ');
        QCOMPARE(numbers[2], QByteArray::number(sigmaOf(0.2, 0.01), 'g', 6));
        // The step is the difference of two absorptions, over 1: s times the root of 2.
        QCOMPARE(numbers[5], QByteArray::number(0.01 * std::sqrt(2), 'g', 6));
    }

    void boundsHoldFromTheNextCalculation()
    {
        Loaded panel(m_sample, 1, {0.9}); // beyond A: B's coefficient is below 0
        perform(panel, "tick TypeNonEquiv; click NonEquivBGLinear");
        m_sample.map("more.txt", 1, "8340", {0});
        perform(panel, m_sample.in("load P4.FileSelect %/more.txt; tick P4.UseCB"));
        panel.calcBoth();
        perform(panel, "click MapRatio2");
        QVERIFY(valueAt(panel, 0.5).toDouble() < 0);
        QTest::keyClick(at<QComboBox>(panel, "NonEquivBounds"), Qt::Key_Down);
        QVERIFY(valueAt(panel, 0.5).toDouble() < 0);
        panel.calcBoth();
        QCOMPARE(valueAt(panel, 0.5).toDouble(), 0.0);
        QCOMPARE(shown(panel, "BoundsFound"), "1 pixels on a bound (0 : 1)");
    }

    void doubleClickShowsThePixel()
    {
        Shown panel(m_sample, 2, {0.5, 0.2});
        DispArea *area = map(panel, "ResultMap")->area();
        const auto doubleClick = [&](double x) {
            QTest::mouseDClick(area, Qt::LeftButton, Qt::NoModifier,
                               QPoint(int(x * area->width()), 9));
            return panel.findChild<orvel::PixelWindow *>();
        };
        const auto dots = [&panel] {
            return pixelsOf(picture(panel, Displays::DMuts), QColor(255, 230, 0));
        };
        area->grab();
        QCOMPARE(dots(), 0);
        QVERIFY(doubleClick(0.8) == nullptr); // no window was asked for
        QVERIFY(dots() > 3 * 10);             // one a point, 7 pixels wide with its rim
        mouse(area, QEvent::MouseButtonDblClick, QPointF(area->width() + 5, 10)); // outside
        QCOMPARE(dots(), 0);
        perform(panel, "tick AdvancedCB; tick ShowPixelWindow");
        const orvel::PixelWindow *window = doubleClick(0.8);
        QVERIFY(window && window->isVisible());
        QCOMPARE(QPoint(window->report().x, window->report().y), QPoint(1, 0));
    }

private:
    Sample m_sample;
};

QTEST_MAIN(AdvancedTest)
#include "tst_advanced.moc"
