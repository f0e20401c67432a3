// Pictures and tables as a user gets them from the menus of graphs and maps.

#include "display/ExportMenu.h"
#include "display/Pictures.h"
#include "display/cBar.h"
#include "images/TDData0.h"
#include "panel/EnergyAdviserDialog.h"
#include "tests/panel/Window.h"

using namespace window;

static DispArea *surfaceOf(const FourPs &panel, const QString &name)
{
    auto *graph = qobject_cast<DispABase *>(at(panel, name));
    return graph ? graph->area() : at<DispMBase>(panel, name)->area();
}

const QString kByDialog = "?";

/// Presses the right button and chooses; "": only looks. Returns whether the choice was offered.
static bool choose(DispArea *area, const QString &action, const QString &path = {})
{
    if (path != kByDialog) {
        area->findChild<ExportMenu *>()->setAskPath(
            [path](QWidget *, const QString &, const QString &) { return path; });
    }
    const QPoint middle = area->rect().center();
    QTest::mousePress(area, Qt::RightButton, Qt::NoModifier, middle);
    QContextMenuEvent event(QContextMenuEvent::Mouse, middle, area->mapToGlobal(middle));
    QCoreApplication::sendEvent(area, &event);
    QPointer<QMenu> menu = area->findChild<QMenu *>("ExportMenu"); // a dialog may outlive it
    if (!menu || !menu->isVisible()) {
        return false;
    }
    auto *chosen = menu->findChild<QAction *>(action);
    const bool isOffered = action.isEmpty() || (chosen && chosen->isEnabled());
    if (chosen) {
        chosen->trigger();
    }
    delete menu;
    QTest::mouseRelease(area, Qt::RightButton, Qt::NoModifier, middle);
    return isOffered;
}

class ExportTest : public QObject {
    Q_OBJECT

private slots:
    void aRightPressOnlyOpensTheMenu_data()
    {
        table<bool>({"isPoppedOut"}, {{"DMuts", false}, {"DRef1", true}, {"ResultMap", true}});
    }

    void aRightPressOnlyOpensTheMenu()
    {
        QFETCH(bool, isPoppedOut);
        const QString name = QTest::currentDataTag();
        Shown panel(m_sample, 2, {0.5, 0.6});
        perform(panel, "tick P1.FPB"); // a left press would move its energy
        DispArea *area = surfaceOf(panel, name);
        if (isPoppedOut) {
            find<QAbstractButton>(*at(panel, name), "PopDockB")->click();
            QVERIFY(area->window() != panel.window());
        }
        int meant = 0;
        for (const auto signal : {&DispArea::mPressed, &DispArea::mDragging, &DispArea::mReleased,
                                  &DispArea::mDClicked}) {
            connect(area, signal, this, [&meant] { ++meant; });
        }
        const QString energies = shown(panel, "P1.Energy P2.Energy P3.Energy");
        QVERIFY(choose(area, QString()));
        QTest::mouseMove(area, area->rect().center() + QPoint(9, 9));
        QTest::mouseDClick(area, Qt::RightButton, Qt::NoModifier, area->rect().center());
        QVERIFY(choose(area, "Copy"));
        QCOMPARE(meant, 0);
        QCOMPARE(shown(panel, "P1.Energy P2.Energy P3.Energy"), energies);
        QVERIFY(!QGuiApplication::clipboard()->image().isNull());
        // Nor has a right press taken the left one's meaning.
        QTest::mouseClick(area, Qt::LeftButton, Qt::NoModifier, area->rect().center());
        QCOMPARE(meant, 2);
    }

    void picturesShowAndTell()
    {
        Shown panel(m_sample, 2, {0.2, 0.8}); // valences 3 and 2
        const DispMBase *map = window::map(panel, "ResultMap");
        const QString path = m_sample.path("map.png");
        const int width = map->area()->width();
        QSize once;
        for (const int fineness : {1, 4}) {
            QVERIFY(choose(map->area(), QString("Png%1").arg(fineness), path));
            const QImage image(path);
            once = fineness == 1 ? image.size() : once;
            QVERIFY(!once.isEmpty() && image.size() == once * fineness);
            // The left half is the pixel of valence 3, the right one that of 2.
            const auto colourAt = [&](int x, int y) {
                return image.pixelColor(QPoint(orvel::kAxisLeft + x, y) * fineness);
            };
            const int lowerEdge = once.height() - orvel::kAxisBottom;
            QCOMPARE(colourAt(width / 4, lowerEdge - 10), map->bar()->colourOf(3.0));
            QCOMPARE(colourAt(width * 3 / 4, lowerEdge - 10), map->bar()->colourOf(2.0));
            QCOMPARE(image.text("Quantity") + ' ' + image.text("Lowest") + ' ' +
                         image.text("Highest"),
                     "Valence 2 3");
            QCOMPARE(image.text("Reference1"), m_sample.a + "; dE 0 eV; valence 2");
            QCOMPARE(image.text("Energy2"), "8350 eV; V point; " + m_sample.path("edge.txt"));
        }
        // What the form says now made nothing yet.
        perform(panel, "type R1.Valence 7");
        QVERIFY(choose(map->area(), "Png1", path));
        QVERIFY(QImage(path).text("Reference1").endsWith("valence 2"));
    }

    void pdfsAreVectors()
    {
        Shown panel(m_sample, 2, {0.2, 0.8});
        for (const char *name : {"DMuts", "ResultMap"}) {
            const QString path = m_sample.path("picture.pdf");
            QVERIFY(choose(surfaceOf(panel, name), "Pdf", path));
            const QByteArray pdf = m_sample.read("picture.pdf");
            QVERIFY2(pdf.startsWith("%PDF-") && pdf.contains("%%EOF"), name);
            QCOMPARE(pdf.contains("/Subtype /Image"), name == QByteArray("ResultMap"));
            QVERIFY2(!pdf.contains("/DCTDecode"), name); // would smear the borders of pixels
        }
    }

    void curves_data()
    {
        table<QString,
              int>( // some of the lines below the comments; pixels of the map in all of them
            {"lines", "pixels"},
            {{"DRef1", "curve,x,y; spectrum,8350,0.8; pre-edge line,8350,0; post-edge line,8660,1",
              0},
             {"DHistA", "counts,1.5,0", 2}, // 51 boxes about 1.5, 1.54 ... 3.5
             {"DDMutVorA", "curve,x,y", 2}});
    }

    void curves()
    {
        QFETCH(QString, lines);
        Shown panel;
        DispArea *area = surfaceOf(panel, QTest::currentDataTag());
        const QString path = m_sample.path("curves.csv");
        QVERIFY(!choose(area, "Curves", path)); // nothing to save yet
        m_sample.load(panel, 2, {0.2, 0.8});
        QTRY_VERIFY(choose(area, "Curves", path));
        const QStringList all = QString(m_sample.read("curves.csv")).split('\n');
        QCOMPARE(all.first(), "# orvel curves V1.0");
        for (const QString &line : lines.split("; ")) {
            QVERIFY2(all.contains(line), qPrintable(line + '\n' + all.join('\n')));
        }
        int pixels = all.filter(QRegularExpression("^pixels,")).size();
        for (const QString &line : all.filter(QRegularExpression("^counts,"))) {
            pixels += line.section(',', 2).toInt();
        }
        QTEST(pixels, "pixels");
    }

    void mapsAsNumbers()
    {
        Shown panel(m_sample, 3, {0.2, 0.8, 0.5, 0.2, 0.2, 0.8});
        DispArea *area = surfaceOf(panel, "DataMap");
        tick(point(panel, 1)->showMapButton(), true);
        QVERIFY(choose(area, "Grid", m_sample.path("map.csv")));
        QVERIFY(m_sample.read("map.csv").endsWith("\n0.2,0.8,0.5\n0.2,0.2,0.8\n"));
        QVERIFY(choose(area, "ProcessedMap", m_sample.path("map.dat")));
        TDData0 map;
        QVERIFY(map.read(m_sample.path("map.dat")));
        QCOMPARE(map.data, QVector<double>({0.2, 0.8, 0.5, 0.2, 0.2, 0.8}));
    }

    void whatCannotBeWrittenIsTold()
    {
        Shown panel(m_sample);
        for (const char *action : {"Png1", "Pdf", "Grid", "ProcessedMap"}) {
            const QString path = m_sample.path("nowhere/x.dat");
            QVERIFY(choose(surfaceOf(panel, "ResultMap"), action, path));
            QCOMPARE(newMessages(panel), QStringList("Can't open the file [" + path + ']'));
        }
        QVERIFY(choose(surfaceOf(panel, "ResultMap"), "Png1", m_sample.a));
        QCOMPARE(newMessages(panel), QStringList("Writing replaces the input " + m_sample.a));
        QVERIFY(QFileInfo(m_sample.a).size() < 500); // and is what it was
        at<QAbstractButton>(panel, "AdviserB")->click();
        auto *dialog = panel.findChild<EnergyAdviserDialog *>();
        QVERIFY(choose(dialog->exportMenu()->surface(), "Png1", m_sample.a));
        QCOMPARE(newMessages(panel), QStringList("Writing replaces the input " + m_sample.a));
    }

    /// A name without its ending, where the file with it is there.
    void theDialogAsksAboutTheWholeName()
    {
        Shown panel(m_sample);
        const QByteArray was = m_sample.read("a.dat");
        QStringList asked;
        QTimer::singleShot(100, &panel, [&] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            QTimer::singleShot(100, dialog, [&, dialog] {
                if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                    asked += box->text();
                    box->reject();
                }
                dialog->reject();
            });
            dialog->findChild<QLineEdit *>("fileNameEdit")->setText(m_sample.path("a"));
            QTest::keyClick(dialog->findChild<QLineEdit *>("fileNameEdit"), Qt::Key_Enter);
        });
        choose(surfaceOf(panel, "ResultMap"), "ProcessedMap", kByDialog);
        QCOMPARE(asked.size(), 1);
        QVERIFY(asked.first().contains("a.dat"));
        QCOMPARE(m_sample.read("a.dat"), was);
    }

private:
    Sample m_sample;
};

QTEST_MAIN(ExportTest)

#include "tst_export.moc"
