// The adviser on energies as a user meets it, on three points whose noise can be worked out by
// hand.

#include "panel/EnergyAdviserDialog.h"
#include "panel/plots/EnergiesPlot.h"
#include "tests/panel/Window.h"

#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QSpinBox>
#include <QTableWidget>

#include <cmath>

using namespace window;

namespace {

struct Opened {
    explicit Opened(const QString &steps = {})
    {
        sample.load(panel);
        perform(panel, steps + "; tick AdvancedCB; click AdviserB");
        dialog = panel.findChild<EnergyAdviserDialog *>();
    }

    void click(const char *button)
    {
        QTest::mouseClick(find<QAbstractButton>(*dialog, button), Qt::LeftButton);
    }
    /// Without the Enter key, which would advise.
    void type(const char *field, const QString &text)
    {
        auto *edit = find<QLineEdit>(*dialog, field);
        edit->selectAll();
        QTest::keyClicks(edit, text);
    }
    QString label(const char *name) const { return find<QLabel>(*dialog, name)->text(); }
    QString figure(const QString &title, int column) const
    {
        const auto *table = find<QTableWidget>(*dialog, "Figures");
        for (int row = 0; row < table->rowCount(); ++row) {
            if (table->verticalHeaderItem(row)->text() == title) {
                return table->item(row, column)->text();
            }
        }
        return "(no row)";
    }
    QStringList energies(int column) const
    {
        QStringList texts;
        for (int i = 1; figure(QString("Energy %1 [eV]").arg(i), column) != "(no row)"; ++i) {
            texts += figure(QString("Energy %1 [eV]").arg(i), column).remove("V  ");
        }
        texts.removeAll(QString());
        return texts;
    }

    Sample sample;
    FourPs panel;
    EnergyAdviserDialog *dialog;
};

QString rounded(double number)
{
    return std::isnan(number) ? QString("-") : QString::number(number, 'g', 3);
}

} // namespace

class AdviserDialogTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void tellsWhatTheAdviserSays_data();
    void tellsWhatTheAdviserSays();
    void useFillsTheRows();
    void remarks_data();
    void remarks();
    void marksTheEnergies();
    void followsTheForm();
};

void AdviserDialogTest::tellsWhatTheAdviserSays_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<int>("more"); // energies than the rows in use
    QTest::newRow("three points") << "" << 0;
    QTest::newRow("least squares") << "click TypeTMKisLS" << 2;
    QTest::newRow("non-equivalent") << "tick TypeNonEquiv; click NonEquivBGLinear" << 2;
}

void AdviserDialogTest::tellsWhatTheAdviserSays()
{
    QFETCH(QString, steps);
    QFETCH(int, more);
    Opened with(steps);
    QVERIFY(with.dialog->isVisible() && !with.dialog->isModal());
    QCOMPARE(with.label("NoiseOrigin"), QString("assumed"));
    for (int i = 0; i < more; ++i) {
        QTest::keyClick(find<QSpinBox>(*with.dialog, "Points"), Qt::Key_Up);
    }
    QTest::keyClick(find<QComboBox>(*with.dialog, "Criterion"), Qt::Key_Down);
    with.type("Low", "8290");
    with.type("High", "8500");
    with.type("Spacing", "3");
    with.type("Part1", "3");
    with.type("Amount", "0.8");
    with.type("Noise", "0.01");
    QVERIFY(!with.label("Outdated").isEmpty());
    with.click("AdviseB");
    QVERIFY(with.label("Outdated").isEmpty());

    orvel::AdviserSettings asked;
    asked.points = 3 + more;
    asked.criterion = orvel::DesignCriterion::Fractions;
    asked.lowEv = 8290;
    asked.highEv = 8500;
    asked.minimumSpacingEv = 3;
    asked.fractions = {3, 1};
    asked.amount = 0.8;
    asked.sigma = 0.01;
    const orvel::EnergyAdvice advice = adviseEnergies(with.panel.readInput(), asked);
    QVERIFY(advice.best.fault == orvel::DesignFault::None);
    for (const auto &[expected, column] :
         {std::make_pair(advice.present, 0), std::make_pair(advice.best, 1)}) {
        for (size_t i = 0; i < expected.energiesEv.size(); ++i) {
            const bool isV = static_cast<int>(i) == expected.vPoint;
            QCOMPARE(with.figure(QString("Energy %1 [eV]").arg(i + 1), column),
                     (isV ? "V  " : "") + QString::number(expected.energiesEv[i], 'f', 2));
        }
        QCOMPARE(with.figure("Sigma of ratio 1", column), rounded(expected.fractions[0]));
        QCOMPARE(with.figure("Sigma of ratio 2", column), rounded(expected.fractions[1]));
        QCOMPARE(with.figure("Sigma of valence", column), rounded(expected.valence));
        QCOMPARE(with.figure("Sigma of amount", column), rounded(expected.amount));
        const bool isThere = expected.fault == orvel::DesignFault::None;
        QCOMPARE(with.figure("Degrees of freedom", column),
                 isThere ? QString::number(expected.freedom) : QString("-"));
    }
    QCOMPARE(with.figure("Sigma of ratio 3", 0), QString("(no row)"));
    if (more == 0) { // tau = 0.2 + 0.6 * 3/4; valences 1 apart; the step is 0.8
        const double sigma = 0.01 / 0.8 / 0.6 * std::sqrt(1 + 0.35 * 0.35 + 0.65 * 0.65);
        QCOMPARE(with.figure("Sigma of valence", 0), rounded(sigma));
    }
    with.click("CopyB");
    QCOMPARE(QApplication::clipboard()->text(), with.energies(1).join('\n'));
}

void AdviserDialogTest::useFillsTheRows()
{
    // Every calculation complains once that no row bounds the fit of combinations.
    Opened with("type P5.Energy 8400; tick P5.UseCB; tick P5.VPointCB; click P2.VPointCB; "
                "click P1.LCFCB; click P3.LCFCB; type P4.Energy 8444");
    QTest::keyClick(find<QSpinBox>(*with.dialog, "Points"), Qt::Key_Down); // four rows are in use
    with.click("AdviseB");
    const QStringList proposed = with.energies(1);
    newMessages(with.panel);
    with.click("UseB");
    QCOMPARE(newMessages(with.panel).filter("Energy Range").size(), 1);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(point(with.panel, i)->energyEdit()->text(), proposed[i]);
        QVERIFY(point(with.panel, i)->isUsed());
        const AMutE &a = *reference(with.panel, 0)->selector();
        double value = 0.0;
        QVERIFY(a.valueMinusLine(proposed[i].toDouble(), false, value));
        QCOMPARE(point(with.panel, i)->referenceEdit(0)->text(), QString::number(value, 'g', 6));
        const bool isV = with.figure(QString("Energy %1 [eV]").arg(i + 1), 1).startsWith('V');
        QCOMPARE(point(with.panel, i)->isVPoint(), isV);
    }
    QVERIFY(!point(with.panel, 4)->isUsed() && !point(with.panel, 4)->isVPoint());
    QCOMPARE(shown(with.panel, "P4.Energy P5.Energy"), QString("8444 8400"));
    QVERIFY(point(with.panel, 1)->map());
    QCOMPARE(with.energies(0), proposed);
    QVERIFY(with.label("Notes").contains("measured at other energies"));
}

void AdviserDialogTest::remarks_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("noise");
    QTest::addColumn<QString>("remark");
    QTest::addColumn<bool>("isThere");
    QTest::newRow("no freedom") << ""
                                << "0.01"
                                << "Both:</b> There are as many" << true;
    QTest::newRow("far from best") << "type P2.Energy 8345.5"
                                   << "0.01"
                                   << "Present:</b> A standard deviation" << true;
    QTest::newRow("unlike") << "type P3.Energy 8351"
                            << "0.01"
                            << "Present:</b> The references differ" << true;
    QTest::newRow("in the noise") << ""
                                  << "0.5"
                                  << "Both:</b> The amount is hardly" << true;
    QTest::newRow("no V point") << "click P2.VPointCB"
                                << "0.01"
                                << "Present:</b> No V point" << true;
    QTest::newRow("no number") << ""
                               << "much"
                               << "No advice:</b> Range, distance" << false;
    QTest::newRow("no reference") << "click R2.UseCB"
                                  << "0.01"
                                  << "No advice:</b> Fewer than two" << false;
}

void AdviserDialogTest::remarks()
{
    QFETCH(QString, steps);
    QFETCH(QString, noise);
    QFETCH(QString, remark);
    Opened with(steps);
    with.type("Noise", noise);
    with.click("AdviseB");
    QVERIFY2(with.label("Notes").contains(remark), qPrintable(with.label("Notes")));
    QVERIFY(!find(*with.dialog, "Notes")->isHidden());
    QTEST(find(*with.dialog, "UseB")->isEnabled(), "isThere");
    QTEST(find(*with.dialog, "CopyB")->isEnabled(), "isThere");
    picture(find<DispABase>(*with.dialog, "Plot")->area());
}

void AdviserDialogTest::marksTheEnergies()
{
    Opened with("type P1.Energy 8300; type P3.Energy 8500");
    auto *plot = find<DispABase>(*with.dialog, "Plot");
    const QImage image = picture(plot->area());
    const ChCoord &coord = *plot->coord();
    const QStringList proposed = with.energies(1);
    QCOMPARE(proposed.size(), 3);
    for (const QString &energy : proposed) {
        const int x = qRound(coord.sx(energy.toDouble()));
        QCOMPARE(image.pixel(x, qRound(coord.frameY1()) + 6), orvel::kProposedColour);
    }
    QCOMPARE(with.energies(0), QStringList({"8300.00", "8350.00", "8500.00"}));
    const auto greyest = [&](double energy) {
        const int y = qRound(coord.frameY0()) - 8;
        int least = 255;
        for (int x = 2; x <= 6; ++x) { // across the ring, beside the line
            least = qMin(least, qGray(image.pixel(qRound(coord.sx(energy)) + x, y)));
        }
        return least;
    };
    for (const double energy : {8300.0, 8350.0, 8500.0}) {
        QVERIFY(greyest(energy) < 160);
    }
    QCOMPARE(greyest(8320), 255);
}

void AdviserDialogTest::followsTheForm()
{
    Opened with("tick SigmaMaps");
    QApplication::setActiveWindow(with.dialog);
    QVERIFY(with.label("Outdated").isEmpty());
    QApplication::setActiveWindow(&with.panel);
    perform(with.panel, "type P3.Energy 8500");
    QApplication::setActiveWindow(with.dialog);
    QVERIFY(!with.label("Outdated").isEmpty());
    with.click("AdviseB");
    QCOMPARE(with.energies(0).last(), QString("8500.00"));

    // The noise of a map is taken over until the user says better.
    auto *noise = at<QComboBox>(with.panel, "Noise");
    while (noise->currentText() != "given number") {
        QTest::keyClick(noise, Qt::Key_Down);
    }
    perform(with.panel, "type NoiseSigma 0.02; click AdviserB");
    QCOMPARE(find<QLineEdit>(*with.dialog, "Noise")->text() + with.label("NoiseOrigin"),
             QString("0.02of the map"));
    with.type("Noise", "0.03");
    perform(with.panel, "click AdviserB");
    QCOMPARE(find<QLineEdit>(*with.dialog, "Noise")->text() + with.label("NoiseOrigin"),
             QString("0.03"));
    for (const char *name : {"Points", "Criterion", "Low", "High", "Spacing", "Part1", "Part4",
                             "Amount", "Noise", "AdviseB", "Figures", "UseB", "CopyB", "CloseB"}) {
        QVERIFY2(!find(*with.dialog, name)->accessibleDescription().isEmpty(), name);
    }
    with.click("CloseB");
    QVERIFY(!with.dialog->isVisible());
}

QTEST_MAIN(AdviserDialogTest)
#include "tst_adviserdialog.moc"
