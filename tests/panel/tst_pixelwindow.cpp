// The report on a pixel as it is drawn, shown and saved.

#include "display/ChCoord.h"
#include "panel/PixelWindow.h"
#include "panel/plots/PixelPlot.h"
#include "tests/TestFiles.h"
#include "tests/display/Gui.h"

#include <cmath>

using namespace orvel;

namespace {

constexpr double kNan = PixelReport::kNan;
constexpr double kSigma = 0.2;

/// A straight fit from 0 at 7000 eV to 1 at 7100 eV, measured at three energies.
PixelReport straightReport(double sigma)
{
    PixelReport report;
    report.method = Method::LeastSquares;
    report.x = 3;
    report.y = 7;
    const auto add = [&](double energyEv, double residual, bool isV) {
        const double fitted = (energyEv - 7000) / 100;
        report.points.push_back({energyEv, fitted + residual, sigma, fitted, residual, isV});
    };
    add(7020, 0.1, false);
    add(7050, 0.0, true);
    add(7080, -0.1, false);
    for (int i = 0; i <= 10; ++i) {
        report.energiesEv.push_back(7000 + 10 * i);
        report.fit.push_back(i / 10.0);
        report.background.push_back(0.0);
    }
    report.references.resize(2);
    report.references[1].row = 1;
    report.references[0].ratio = {0.25, 0.0312};
    report.references[1].ratio = {0.75, 0.0312};
    report.valence = {2.5, kNan};
    report.amount = {1.25, 0.5};
    report.noise = NoiseSource::Given;
    report.sigma = sigma;
    report.freedom = 1;
    report.residual = 0.1;
    return report;
}

struct Drawing {
    explicit Drawing(const PixelReport &report)
    {
        image.fill(Qt::white);
        QPainter painter(&image);
        const PixelPlotTexts texts;
        layOutPixelPlot(QFontMetricsF(painter.font()), QRectF(0, 0, 600, 480), report, texts, main,
                        residuals);
        drawPixelPlot(painter, report, texts, main, residuals);
    }

    QColor at(const ChCoord &coord, double x, double y, QPointF beside = {}) const
    {
        return image.pixelColor(int(coord.sx(x) + beside.x()), int(coord.sy(y) + beside.y()));
    }

    QImage image = QImage(600, 480, QImage::Format_RGB32);
    ChCoord main;
    ChCoord residuals;
};

bool isDark(const QColor &colour)
{
    return colour.value() < 150;
}
/// White or a line of the grid.
bool isBare(const QColor &colour)
{
    return colour.value() > 230 && colour.saturation() < 5;
}

} // namespace

class PixelWindowTest : public QObject {
    Q_OBJECT

private slots:
    void marksStandAtTheirPlaces()
    {
        const PixelReport report = straightReport(kSigma);
        const Drawing drawing(report);
        const ChCoord &main = drawing.main;
        const ChCoord &strip = drawing.residuals;
        QCOMPARE(drawing.at(main, 7020, 0.3), QColor(PixelPlotColours::kDot));
        QCOMPARE(drawing.at(main, 7050, 0.5), QColor(PixelPlotColours::kVDot));
        QCOMPARE(drawing.at(main, 7080, 0.7), QColor(PixelPlotColours::kDot));
        // The bar reaches one deviation up and down, and ends there.
        for (const double sign : {1.0, -1.0}) {
            QVERIFY(isDark(drawing.at(main, 7020, 0.3 + sign * 0.93 * kSigma)));
            QVERIFY(isBare(drawing.at(main, 7020, 0.3 + sign * 1.15 * kSigma)));
        }
        QVERIFY(drawing.at(main, 7060, 0.6).blue() > drawing.at(main, 7060, 0.6).red() + 50); // fit

        QCOMPARE(drawing.at(strip, 7020, 0.1), QColor(PixelPlotColours::kDot));
        QCOMPARE(drawing.at(strip, 7065, 0.95 * kSigma), QColor(PixelPlotColours::kBand));
        QVERIFY(isBare(drawing.at(strip, 7065, 1.1 * kSigma)));
        QCOMPARE(strip.sx(7020), main.sx(7020)); // one energy above the other
    }

    void undeterminedNoiseHasNoMarks()
    {
        PixelReport report = straightReport(kNan);
        report.fit.assign(report.fit.size(), kNan);
        const Drawing drawing(report);
        QVERIFY(isBare(drawing.at(drawing.main, 7020, 0.3, {0.0, -8.0})));
        QVERIFY(isBare(drawing.at(drawing.residuals, 7065, 0.05)));
        QVERIFY(isBare(drawing.at(drawing.main, 7060, 0.6)));
    }

    void numbersAreCutAtTheirDeviation_data()
    {
        window::table<double, double, QString>({"value", "sigma", "text"},
                                               {{"two digits", 0.28242, 0.0573, "0.282 0.057"},
                                                {"rounded up", 0.28242, 0.0996, "0.28 0.10"},
                                                {"larger", 1234.6, 567.0, "1235 567"},
                                                {"tiny", 0.5, 3.21e-12, "0.5 3.2e-12"},
                                                {"none", 0.28242, kNan, "0.2824 "}});
    }

    void numbersAreCutAtTheirDeviation()
    {
        QFETCH(double, value);
        QFETCH(double, sigma);
        const ShownNumber shown = shownNumber(value, sigma);
        QTEST(shown.value + ' ' + shown.sigma, "text");
    }

    void csvHoldsTheReport()
    {
        const TestFiles files;
        PixelWindow window;
        PixelReport report = straightReport(1.0 / 3.0); // numbers to the bit
        report.energiesEv = {7000, 7000.1};
        report.fit = {0, 0.001};
        report.background = {0.25, kNan};
        window.show(report);
        QVERIFY(window.saveCsv(files.path("pixel.csv")));
        const QByteArray csv = files.read("pixel.csv");
        for (const char *comment :
             {"orvel pixel report V1.0", "method,LeastSquares", "pixel,3,7", "ratio2,0.75,0.0312",
              "valence,2.5,nan", "amount,1.25,0.5", "noise,Given,0.3333333333333333", "freedom,1",
              "residual,0.1"}) {
            QVERIFY2(csv.contains(QByteArray("# ") + comment + '\n'), comment);
        }
        QCOMPARE(csv.mid(csv.indexOf("\nkind") + 1),
                 QByteArray("kind,energy,measured,sigma,fitted,residual,background\n"
                            "point,7020,0.30000000000000004,0.3333333333333333,0.2,0.1,\n"
                            "V,7050,0.5,0.3333333333333333,0.5,0,\n"
                            "point,7080,0.7000000000000001,0.3333333333333333,0.8,-0.1,\n"
                            "curve,7000,,,0,,0.25\ncurve,7000.1,,,0.001,,nan\n"));
    }

    void buttonsSave()
    {
        const TestFiles files;
        QString answer = "a";
        QStringList asked;
        PixelWindow window(nullptr,
                           [&](QWidget *, const QString &suggested, const QString &suffix) {
                               asked << suggested;
                               return files.path(answer + '.' + suffix);
                           });
        window.show(straightReport(kSigma));
        auto *outcome = window.findChild<QLabel *>("Outcome");
        const auto press = [&](const char *button) {
            window.findChild<QPushButton *>(button)->click();
        };
        press("PngB");
        press("CsvB");
        QCOMPARE(asked, QStringList({"pixel_3_7.png", "pixel_3_7.csv"}));
        QCOMPARE(outcome->text(), "Written: " + files.path("a.csv"));
        QImage picture(files.path("a.png"));
        picture.setDevicePixelRatio(window.picture().devicePixelRatio()); // no file keeps it
        QCOMPARE(picture, window.picture().convertToFormat(picture.format()));
        QVERIFY(picture.width() > 1500); // fine enough to print
        answer = "no/such/folder";
        press("PngB");
        QCOMPARE(outcome->text(), "Can't write " + files.path("no/such/folder.png"));
    }

    void laterReportsComeIntoTheSameWindow()
    {
        QLineEdit main;
        main.show();
        PixelWindow window(&main);
        window.show(straightReport(kSigma));
        QVERIFY(window.isVisible() && window.isWindow() && !window.isModal());
        main.activateWindow(); // the offscreen platform activates every window, asked or not
        main.setFocus();
        QTRY_VERIFY(main.hasFocus());
        PixelReport later = straightReport(kSigma);
        later.x = 4;
        later.references[1].isHeld = true;
        window.show(later);
        QCoreApplication::processEvents();
        QVERIFY(main.hasFocus());
        QCOMPARE(window.windowTitle(), "Pixel (4, 7)");
        const QString numbers = window.findChild<QLabel *>("Numbers")->text();
        for (const char *text : {"Pixel (4, 7)", "Ratio of Ref.1", "0.250", "0.031", "at its bound",
                                 "not determined", "t/ts", "one standard deviation", "as given"}) {
            QVERIFY2(numbers.contains(text), text);
        }
    }

    void wheelMagnifies()
    {
        PixelWindow window;
        window.show(straightReport(kSigma));
        const QImage all = window.picture();
        auto *plot = window.findChild<QWidget *>("Plot");
        const QPointF middle = QRectF(plot->rect()).center();
        const auto turn = [&](int units) { window::wheel(plot, middle, {0, units}); };
        turn(120);
        QVERIFY(window.picture() != all);
        turn(-1200);
        QCOMPARE(window.picture(), all); // never wider than that
        turn(120);
        window.show(straightReport(kSigma));
        QVERIFY(window.picture() != all); // another pixel, the same energies
        QTest::mouseDClick(plot, Qt::LeftButton);
        QCOMPARE(window.picture(), all);
    }
};

QTEST_MAIN(PixelWindowTest)

#include "tst_pixelwindow.moc"
