// The adviser on energies as a user meets it, on three points whose noise can be worked out by
// hand.

#include "panel/EnergyAdviserDialog.h"
#include "panel/plots/EnergiesPlot.h"
#include "tests/panel/Window.h"

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
    /// What stands in a column: "title: text", without empty cells.
    QStringList figures(int column) const
    {
        const auto *table = find<QTableWidget>(*dialog, "Figures");
        QStringList all;
        for (int row = 0; row < table->rowCount(); ++row) {
            const QString title = table->verticalHeaderItem(row)->text();
            all << title + ": " + table->item(row, column)->text();
        }
        return all.filter(QRegularExpression(": .+"));
    }
    QStringList energies(int column) const
    {
        QStringList texts = figures(column).filter("Energy");
        return texts.replaceInStrings(QRegularExpression("^.*: (V  )?"), "");
    }

    Sample sample;
    FourPs panel;
    EnergyAdviserDialog *dialog;
};

QString rounded(double number)
{
    return QString::number(number, 'g', 3);
}

} // namespace

class AdviserDialogTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void tellsWhatTheAdviserSays()
    {
        Opened with;
        QVERIFY(with.dialog->isVisible() && !with.dialog->isModal());
        QCOMPARE(with.label("NoiseOrigin"), "assumed");
        QTest::keyClick(find<QComboBox>(*with.dialog, "Criterion"), Qt::Key_Down);
        for (const auto &[field, text] :
             {std::pair("Low", "8290"), std::pair("High", "8500"), std::pair("Spacing", "3"),
              std::pair("Part1", "3"), std::pair("Amount", "0.8"), std::pair("Noise", "0.01")}) {
            with.type(field, text);
        }
        QVERIFY(!with.label("Outdated").isEmpty());
        with.click("AdviseB");
        QVERIFY(with.label("Outdated").isEmpty());

        orvel::AdviserSettings asked;
        asked.points = 3;
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
            QStringList figures;
            for (size_t i = 0; i < expected.energiesEv.size(); ++i) {
                const bool isV = static_cast<int>(i) == expected.vPoint;
                figures << QString("Energy %1 [eV]: ").arg(i + 1) + (isV ? "V  " : "") +
                               QString::number(expected.energiesEv[i], 'f', 2);
            }
            figures << "Sigma of ratio 1: " + rounded(expected.fractions[0])
                    << "Sigma of ratio 2: " + rounded(expected.fractions[1])
                    << "Sigma of valence: " + rounded(expected.valence)
                    << "Sigma of amount: " + rounded(expected.amount) << "Degrees of freedom: 0";
            QCOMPARE(with.figures(column).mid(0, figures.size()), figures);
        }
        // tau = 0.2 + 0.6 * 3/4; valences 1 apart; the step is 0.8
        const double sigma = 0.01 / 0.8 / 0.6 * std::sqrt(1 + 0.35 * 0.35 + 0.65 * 0.65);
        QVERIFY(with.figures(0).contains("Sigma of valence: " + rounded(sigma)));
        with.click("CopyB");
        QCOMPARE(QApplication::clipboard()->text(), with.energies(1).join('\n'));
    }

    void useFillsTheRows()
    {
        Opened with("type P5.Energy 8400; tick P5.UseCB; tick P5.VPointCB; click P2.VPointCB; "
                    "click P1.LCFCB; click P3.LCFCB; type P4.Energy 8444");
        QTest::keyClick(find<QSpinBox>(*with.dialog, "Points"),
                        Qt::Key_Down); // four rows are in use
        with.click("AdviseB");
        const QStringList proposed = with.energies(1);
        with.click("UseB");
        for (int i = 0; i < 3; ++i) {
            const AEPoint *row = point(with.panel, i);
            QCOMPARE(row->energyEdit()->text(), proposed[i]);
            double value = 0.0;
            QVERIFY(reference(with.panel, 0)->selector()->valueMinusLine(row->energyEv(), value));
            QCOMPARE(row->referenceEdit(0)->text(), QString::number(value, 'g', 6));
            const bool isV = with.figures(1)[i].contains(": V");
            QVERIFY(row->isUsed() && row->isVPoint() == isV && row->map());
        }
        QVERIFY(!point(with.panel, 3)->isUsed() && !point(with.panel, 4)->isUsed());
        QVERIFY(!point(with.panel, 4)->isVPoint());
        QCOMPARE(shown(with.panel, "P4.Energy P5.Energy"), "8444 8400");
        QCOMPARE(with.energies(0), proposed);
        QVERIFY(with.label("Notes").contains("measured at other energies"));
    }

    void remarks_data()
    {
        table<QString, QString, QString, bool>(
            {"steps", "noise", "remark", "isThere"},
            {{"far from best", "type P2.Energy 8345.5", "0.01", "Present:</b> A standard", true},
             {"no V point", "click P2.VPointCB", "0.01", "Present:</b> No V point", true},
             {"no number", "", "much", "No advice:</b> Range, distance", false}});
    }

    void remarks()
    {
        QFETCH(QString, steps);
        QFETCH(QString, noise);
        QFETCH(QString, remark);
        Opened with(steps);
        with.type("Noise", noise);
        with.click("AdviseB");
        QVERIFY2(with.label("Notes").contains(remark), qPrintable(with.label("Notes")));
        QTEST(find(*with.dialog, "UseB")->isEnabled(), "isThere");
    }

    void marksTheEnergies()
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
    }

    void followsTheForm()
    {
        Opened with("tick SigmaMaps");
        QApplication::setActiveWindow(with.dialog);
        QVERIFY(with.label("Outdated").isEmpty());
        QApplication::setActiveWindow(&with.panel);
        perform(with.panel, "type P3.Energy 8500");
        QApplication::setActiveWindow(with.dialog);
        QVERIFY(!with.label("Outdated").isEmpty());
        with.click("AdviseB");
        QCOMPARE(with.energies(0), QStringList({"8200.00", "8350.00", "8500.00"}));

        // The noise of a map is taken over until the user says better.
        const auto noise = [&with] {
            perform(with.panel, "click AdviserB");
            return find<QLineEdit>(*with.dialog, "Noise")->text() + with.label("NoiseOrigin");
        };
        chooseGivenNoise(with.panel, "0.02");
        QCOMPARE(noise(), "0.02of the map");
        with.type("Noise", "0.03");
        QCOMPARE(noise(), "0.03");
        with.click("CloseB");
        QVERIFY(!with.dialog->isVisible());
    }
};

QTEST_MAIN(AdviserDialogTest)
#include "tst_adviserdialog.moc"
