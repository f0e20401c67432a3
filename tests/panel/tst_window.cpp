// The window as a whole: sessions, loads, maps and graphs under the mouse, drops, sizes, long
// chance.

#include "display/CColors.h"
#include "display/cBar.h"
#include "panel/EnergyAdviserDialog.h"
#include "session/Catalogue.h"
#include "tests/panel/Window.h"

#include <QProcess>

using namespace window;

class WindowTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QStandardPaths::setTestModeEnabled(true);
        QVERIFY(QDir::setCurrent(m_sample.path("."))); // whatever a random hand writes lands here
        QCOMPARE(QProcess::execute(ORVEL_PHANTOM, {"make", "data"}), 0);
        for (const QFileInfo &session : QDir(ORVEL_EXAMPLES).entryInfoList({"*.ini"})) {
            QVERIFY(QFile::copy(session.filePath(), session.fileName()));
        }
        QDir().mkdir("results");
    }

    void sessionsGiveWhatTheBatchProgramGives_data()
    {
        QTest::addColumn<QString>("session");
        const QStringList sessions = QDir().entryList({"*.ini"});
        QVERIFY(sessions.size() >= 6);
        for (const QString &session : sessions) {
            QTest::newRow(qPrintable(session)) << session;
        }
    }

    void sessionsGiveWhatTheBatchProgramGives()
    {
        QFETCH(QString, session);
        QProcess batch;
        batch.start(ORVEL_BATCH, {"--result", "results/batch.dat", session});
        QVERIFY(batch.waitForFinished() && batch.exitCode() == 0);
        FourPs panel;
        panel.openSession(session);
        QStringList shownLines = newMessages(panel);
        for (const char *field : {"CalcRes", "TargetDMut", "LCFRes"}) {
            shownLines << QString("%1 = %2").arg(field, shown(panel, field));
        }
        QCOMPARE(shownLines.join('\n') + '\n', QString::fromUtf8(batch.readAllStandardOutput()));
        perform(panel, "type SaveFSelect.FileName results/window.dat; click WriteB");
        QVERIFY(newMessages(panel).isEmpty());
        for (const char *suffix : {"", "_HGAlpha", "_HGThick"}) {
            const QByteArray expected = m_sample.read(QString("results/batch%1.dat").arg(suffix));
            QVERIFY(expected.size() > 1000);
            QVERIFY(m_sample.read(QString("results/window%1.dat").arg(suffix)) == expected);
            QVERIFY(QFile::remove(QString("results/window%1.dat").arg(suffix)));
        }
    }

    void sessionKeepsThePanel()
    {
        FourPs panel;
        m_sample.load(panel);
        at<AFileSelect>(panel, "DispFSelect")->newFiles({m_sample.a, m_sample.mix});
        perform(panel,
                "type EdgeE 8349; type PreEEndDE -49; type PostEStartDE 99; type R2.DE 0.5; "
                "type TargetFile.DE -0.5; type P7.Energy 8351; click TypeTMKisLS; "
                "click SubPostEforRef; click SubPostEforTarget; click NonEquivBGLinear; "
                "click NByEJ; click FullRangeCB; click MapWGrid; click HgAmount; click HgTAuto; "
                "type HgABoxes 7; type HgAFrom 1; type HgATo 2; click RecC1; click RecRatio3; "
                "click P4.ShowMapB; click ShowDAB; type SaveFSelect.FileName out.dat; "
                "tick AdvancedCB; tick SigmaMaps; tick SigmaFile; tick HideUncertain; "
                "type SigmaLimit 0.5; tick ShowPixelWindow; click MapSigmaValence; click AdviserB; "
                "click TypeNonEquiv");
        chooseGivenNoise(panel, "0.03");
        auto *adviser = panel.findChild<EnergyAdviserDialog *>();
        for (QWidget *box : {at(panel, "NonEquivBounds"), at(panel, "LcfBounds"),
                             find(*adviser, "Criterion"), find(*adviser, "Points")}) {
            QTest::keyClick(box, Qt::Key_Down);
        }
        type(find<QLineEdit>(*adviser, "Spacing"), "3.5");
        type(find<QLineEdit>(*adviser, "Noise"), "0.007");
        type(find<QLineEdit>(*adviser, "Part2"), "0.25");
        panel.saveSession("first.ini");
        FourPs opened;
        opened.openSession("first.ini");
        // One calculation was made, not one a file: a line of the map, of the target, of the fit.
        QCOMPARE(messages(opened).size(), 3);
        perform(opened, "click AdviserB");
        const orvel::AdviserTexts again = opened.findChild<EnergyAdviserDialog *>()->texts();
        QVERIFY(again == adviser->texts() && again.byFractions && again.noise == "0.007");
        opened.saveSession("second.ini");
        QCOMPARE(m_sample.read("second.ini"), m_sample.read("first.ini"));
        // A typed name means the working directory, also when the session is opened from elsewhere.
        QCOMPARE(opened.state().texts.resultFile, QDir::current().absoluteFilePath("out.dat"));
        QCOMPARE(shown(opened, "P2.Mut1 P2.Mut2 P2.MutT"), shown(panel, "P2.Mut1 P2.Mut2 P2.MutT"));
        QCOMPARE(shown(opened, "ShowDAB:checked EdgeE Noise:currentText NonEquivBounds:currentText "
                               "HideUncertain:checked SigmaLimit MapSigmaValence:checked"),
                 "false 8349 given number not negative true 0.5 true");
        opened.saveSession("/no/where.ini");
        QCOMPARE(messages(opened).last(), "Can't open the file [/no/where.ini]");
    }

    /// What an earlier state held must not pass for the files of a session that cannot be read.
    void sessionLeavesNothingBehind()
    {
        Loaded panel(m_sample);
        orvel::PanelState state = panel.state();
        state.texts.references[0].file = m_sample.path("missing.dat");
        state.texts.target.file = m_sample.path("missing.dat");
        state.texts.points[1].file = m_sample.path("missing.txt");
        panel.setState(state);
        QVERIFY(!reference(panel, 0)->selector()->isValid() && !target(panel)->isValid());
        QVERIFY(!point(panel, 1)->map() && point(panel, 2)->map());
        QCOMPARE(shown(panel, "P2.Energy P2.Mut1 P2.Mut2 P2.MutT"), "8350  0.2 ");
        panel.setState({});
        QVERIFY(!reference(panel, 1)->selector()->isValid() && !point(panel, 2)->map());
        QCOMPARE(shown(panel, "P3.Energy P3.Mut2 EdgeE P3.UseCB:checked"), "  8350 false");
    }

    void severalMapsAtOnce()
    {
        Shown panel;
        QStringList paths;
        for (int i = 0; i < 4; ++i) {
            paths << m_sample.map(QString("several %1.txt").arg(i), 1, QByteArray::number(8300 + i),
                                  {double(i)});
        }
        choose(point(panel, 5)->fileSelect(), paths); // by the dialog; one does not fit
        QCOMPARE(shown(panel, "P6.Energy P7.Energy P8.Energy"), "8300 8301 8302");
        QCOMPARE(shown(panel, "P6.FileName P8.FileName"), paths[0] + ' ' + paths[2]);
    }

    void mapIsPainted()
    {
        Shown panel;
        DispMBase *result = map(panel, "ResultMap");
        DispArea *area = result->area();
        const int w = area->width();
        const int h = area->height();
        QCOMPARE(pixelsOf(picture(area), Qt::white), w * h);
        // Two columns, two rows; row 0 is at the bottom. Valences 2.5 3 / 2 2.25.
        m_sample.load(panel, 2, {0.5, 0.2, 0.8, 0.65});
        const QImage image = picture(area);
        const double values[] = {2.5, 3, 2, 2.25};
        for (int i = 0; i < 4; ++i) {
            const QPoint at(w / 4 + i % 2 * w / 2, h * 3 / 4 - i / 2 * h / 2);
            QCOMPARE(image.pixelColor(at), result->bar()->colourOf(values[i]));
            mouse(area, QEvent::MouseMove, at);
            QCOMPARE(shown(panel, "ResultMap.Val"), QString::number(values[i]));
        }
        QVERIFY(result->bar()->colourOf(2.25) != result->bar()->colourOf(2.5));
        perform(panel, "click MapWGrid");
        QVERIFY(pixelsOf(picture(area), QColor(200, 200, 200)) >= w + h);
        perform(panel, "click MapWGrid");
        // The image of the chosen row.
        perform(panel, "click P2.ShowMapB; type DataMap.MaxV 1; type DataMap.MinV 0");
        const DispMBase *data = map(panel, "DataMap");
        const QPoint corner(5, data->area()->height() - 5);
        QCOMPARE(picture(data->area()).pixelColor(corner), data->bar()->colourOf(0.5));
        perform(panel, "clear P2.FileSelect");
        QCOMPARE(picture(data->area()).pixelColor(corner), QColor(Qt::white));
    }

    void scaleFollowsOrStays()
    {
        Shown panel(m_sample, 2, {0.5, 0.2});
        DispMBase *result = map(panel, "ResultMap");
        const auto after = [&](const QString &steps) { // limits, and as far as the map shows
            perform(panel, steps);
            result->area()->grab();
            return shown(panel, "ResultMap.MinV ResultMap.MaxV") +
                   QString(" %1").arg(result->coord()->xMax());
        };
        QCOMPARE(after(""), "2.5 3 2");
        result->coord()->setRange(0, 0, 1, 0.5); // a zoom
        QCOMPARE(after("type R1.Valence 1; click CalcMapB"), "2 3 1");
        QCOMPARE(after("click MapRatio1; click MapValence"), "2 3 1");
        QCOMPARE(after("type ResultMap.MaxV 5; type R1.Valence 0; click CalcMapB"),
                 "2 5 1"); // typed: stays
        QVERIFY(!result->bar()->isAutoScale());
        result->bar()->setAutoScale(true);
        emit result->bar()->autoScaleChosen(true); // as its menu does
        QCOMPARE(after(""), "1.5 3 1");
    }

    void comparisonColours()
    {
        Shown panel(m_sample);
        DispABase *plot = graph(panel, Displays::DLCFvsMPS);
        const CColors colours;
        const auto drawn = [&](int index) {
            return pixelsOf(picture(plot->area()), colours.colour(index)) > 0;
        };
        emit plot->mReleased(nullptr);
        QVERIFY(!drawn(1)); // nothing was calculated in it yet
        perform(panel, "click LCFB");
        QVERIFY(drawn(1));
        for (int i = 1; i < colours.count() + 2; ++i) {
            emit plot->mReleased(nullptr); // past the last to the third
        }
        perform(panel, "click LCFB"); // over the other
        QVERIFY(!drawn(1) && drawn(2));
        emit plot->mDClicked(nullptr);
        QVERIFY(!drawn(2));
    }

    void picksEnergies()
    {
        Shown panel;
        DispArea *area = graph(panel, Displays::DMuts)->area();
        const auto pickAt = [&](double x) {
            drag(area, {x, 50}, {x, 50});
            return shown(panel, "P5.Energy P6.Energy P5.FPB:checked P6.FPB:checked");
        };
        perform(panel, "click P5.FPB");
        QCOMPARE(pickAt(80), "  true false"); // no spectrum, no energies
        perform(panel, m_sample.in("load R1.XafsFS %/a.dat"));
        area->grab();
        const double x = area->coord()->sx(8352.5);
        const double picked = pickAt(x).section(' ', 0, 0).toDouble();
        QVERIFY(std::fabs(picked - 8352.5) <= std::fabs(area->coord()->rdx(1.0)));
        perform(panel, "type P5.Energy 8400; click P6.FPB"); // one row at a time
        QVERIFY(pickAt(x).startsWith("8400 83") && pickAt(x).endsWith("false true"));
    }

    void dragsEnergies()
    {
        Shown panel(m_sample);
        DispArea *area = graph(panel, Displays::DMuts)->area();
        perform(panel, "click P8.FPB");
        area->grab();
        const auto at = [area](double energy) { return QPointF(area->coord()->sx(energy), 40); };
        mouse(area, QEvent::MouseButtonPress, at(8600));
        mouse(area, QEvent::MouseMove, at(8500));
        const double dragged = shown(panel, "P3.Energy").toDouble();
        QVERIFY(std::fabs(dragged - 8500) <= std::fabs(area->coord()->rdx(1.0)));
        QCOMPARE(shown(panel, "P3.Mut1 P8.Energy"), "1 "); // no pick beside a marker
        mouse(area, QEvent::MouseMove, at(8347.5));
        QVERIFY(shown(panel, "P3.Mut1").toDouble() < 1); // refreshed as it goes
        mouse(area, QEvent::MouseButtonRelease, at(8600));
    }

    void rangeFollowsUsedEnergies()
    {
        Shown panel(m_sample); // 8200, 8350, 8600 in use
        DispArea *area = graph(panel, Displays::DMuts)->area();
        const auto after = [&](const QString &steps) {
            perform(panel, steps);
            area->grab();
            return QString("%1 %2").arg(area->coord()->xMin()).arg(area->coord()->xMax());
        };
        QCOMPARE(after("click FullRangeCB"), "8100 8700"); // a quarter of 400 both ways
        QCOMPARE(after("click P1.UseCB; type P3.Energy 8450"), "8325 8475");
        // A dragged line stays under the pointer; the range follows when it is let go.
        const QPointF to(area->coord()->sx(8400), 40);
        mouse(area, QEvent::MouseButtonPress, {area->coord()->sx(8450), 40});
        mouse(area, QEvent::MouseMove, to);
        QCOMPARE(after(""), "8325 8475");
        mouse(area, QEvent::MouseButtonRelease, to);
        after("");
        QVERIFY(std::fabs(area->coord()->xMax() - 8412.5) < 2); // a pixel and a quarter
        // What the user zoomed stays until a double click.
        wheel(area, {60, 40}, {0, 120});
        const QString zoomed = after("");
        QCOMPARE(after("click P1.UseCB; type P3.Energy 8600"), zoomed);
        mouse(area, QEvent::MouseButtonDblClick, {60, 40});
        QCOMPARE(after(""), "8100 8700");
    }

    void fitsScreens_data() { table<bool>({"japanese"}, {{"English", false}, {"Japanese", true}}); }

    void fitsScreens()
    {
        QFETCH(bool, japanese);
        orvel::Translators translators;
        if (japanese) {
            orvel::installJapanese(translators);
        }
        FourPs panel;
        panel.show();
        panel.resize(100, 100);
        const QSize largest(1210, 680); // once it is laid out
        QTRY_COMPARE(panel.minimumSizeHint().expandedTo(largest), largest);
        panel.keepSessions(60000);
        find(panel, "RestoreB")->show(); // as after a crash
        panel.resize(1262, 700);         // on a screen of 1280 x 768 with bars and borders
        panel.openSession("nonequiv-linear.ini");
        const auto isWhole = [](const QWidget *widget, const QString &text) {
            constexpr int kFrames = 2 * 4; // of the field and around its text
            return widget->fontMetrics().horizontalAdvance(text) + kFrames <= widget->width();
        };
        QTRY_VERIFY(isWhole(at(panel, "P1.MutT"), "-0.123457"));
        QCOMPARE(panel.size(), QSize(1262, 700));
        for (const char *name : {"CalcRes", "LCFRes"}) {
            QVERIFY(!shown(panel, name).isEmpty());
            QVERIFY(
                isWhole(at(panel, name), shown(panel, name) + ": -0.000")); // of four references
        }
        for (const char *name : {"RestoreB", "OpenSessionB", "RecentB", "SaveSessionB", "UndoB"}) {
            const QWidget *button = at(panel, name);
            const QRect place(button->mapTo(&panel, QPoint()), button->size());
            QVERIFY2(button->isVisible() && panel.rect().contains(place), name);
            QVERIFY2(!button->inherits("QPushButton") || isWhole(button, shown(panel, name)), name);
        }
    }

    void dropsOnTheWindow()
    {
        Shown panel;
        m_sample.map("drop.txt", 1, "8350", {0.5});
        const auto dropOn = [&](const char *path, const QList<QUrl> &urls) {
            return drop(at(panel, path), urls);
        };
        QVERIFY(dropOn("R2.XafsFS.FileName", {m_sample.url("a.dat")}));
        QVERIFY(dropOn("TargetFile.FileName", {m_sample.url("mix.dat")}));
        QVERIFY(dropOn("DispFSelect.SelB", {m_sample.url("b.dat")}));
        QVERIFY(
            dropOn("P3.FileSelect.FileName", {m_sample.url("drop.txt"), m_sample.url("a.dat")}));
        QVERIFY(!dropOn("P2.FileSelect.FileName", {QUrl("http://host/a.dat")}));
        QVERIFY(reference(panel, 1)->selector()->isValid() && target(panel)->isValid());
        QCOMPARE(at<QListWidget>(panel, "SelectedFs")->count(), 1);
        QCOMPARE(shown(panel, "P3.Energy P3.Mut2 P3.MutT P2.Energy"), "8350 0.8 0.5 ");
        QVERIFY(point(panel, 2)->map() && !point(panel, 3)->map()); // the first of two
    }

    void randomHands()
    {
        constexpr int kEvents = 20000;
        QRandomGenerator random(1);
        const auto below = [&random](int n) { return random.bounded(qMax(1, n)); };
        Shown panel(m_sample, 3, {0.5, 0.2, 0.8, 0.1, 0.3, 0.4});
        const int keys[] = {Qt::Key_Tab,  Qt::Key_Space, Qt::Key_Return, Qt::Key_Escape,
                            Qt::Key_Left, Qt::Key_Right, Qt::Key_Up,     Qt::Key_Down,
                            Qt::Key_1,    Qt::Key_8,     Qt::Key_Minus,  Qt::Key_Backspace,
                            Qt::Key_Home, Qt::Key_A,     Qt::Key_Delete, Qt::Key_Menu};
        const auto closeAll = [&panel] {
            while (QWidget *popup = QApplication::activePopupWidget()) {
                popup->close();
            }
            for (QFileDialog *dialog : panel.findChildren<QFileDialog *>()) {
                dialog->close();
            }
        };
        QTimer letGo; // dragged text and the menu of a scroll bar wait in loops of their own
        connect(&letGo, &QTimer::timeout, this, [closeAll] {
            QDrag::cancel();
            closeAll();
        });
        letGo.start(10);
        for (int i = 0; i < kEvents; ++i) {
            const QWidgetList widgets = panel.findChildren<QWidget *>();
            QWidget *widget = widgets[below(widgets.size())];
            if (!widget->isVisible()) {
                --i;
                continue;
            }
            const QPointF where(below(widget->width() + 10) - 5, below(widget->height() + 10) - 5);
            const int what = below(5);
            if (what == 0) {
                QTest::keyClick(widget, Qt::Key(keys[below(int(std::size(keys)))]),
                                below(8) == 0 ? Qt::ShiftModifier : Qt::NoModifier);
            } else if (what == 1) {
                wheel(widget, where, {0, below(2) ? 120 : -120});
            } else {
                mouse(widget, QEvent::MouseButtonPress, where);
                mouse(widget, QEvent::MouseMove, QPoint(below(widget->width()), int(where.y())));
                mouse(widget, below(8) ? QEvent::MouseButtonRelease : QEvent::MouseButtonDblClick,
                      where);
            }
            closeAll();
            if (i % 100 == 0) {
                QCoreApplication::processEvents();
            }
        }
        letGo.stop();
        panel.calcBoth();
        QVERIFY(rests());
    }

private:
    Sample m_sample; // its folder is the working directory
};

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const QApplication app(argc, argv);
    QApplication::setCursorFlashTime(0); // a blinking cursor is painted
    WindowTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_window.moc"
