#include "display/CColors.h"
#include "display/cBar.h"
#include "session/Catalogue.h"
#include "session/SessionFile.h"
#include "tests/panel/Window.h"

#include <QContextMenuEvent>
#include <QDrag>
#include <QListWidget>
#include <QMimeData>
#include <QProcess>
#include <QRandomGenerator>
#include <QWheelEvent>

using namespace window;
using orvel::PanelState;

namespace {

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Fills an empty panel as a session says, by dialogs, clicks and keys alone.
void fillByHand(FourPs &panel, const PanelState &state)
{
    const orvel::SessionTexts &texts = state.texts;
    const auto tickAt = [&panel](const QString &path, bool on) {
        tick(at<QAbstractButton>(panel, path), on);
    };
    for (int n = 0; n < 4; ++n) {
        const orvel::ReferenceTexts &from = texts.references[static_cast<size_t>(n)];
        const QString row = QStringLiteral("R%1.").arg(n + 1);
        if (!from.file.isEmpty()) {
            perform(panel, "type " + row + "Valence " + from.valence);
            perform(panel, "type " + row + "DE " + from.dE);
            choose(at<AFileSelect>(panel, row + "XafsFS"), {from.file});
        }
        tickAt(row + "UseCB", from.use);
    }
    choose(target(panel), {texts.target.file});
    for (int i = 0; i < 8; ++i) {
        const orvel::PointTexts &from = texts.points[static_cast<size_t>(i)];
        const QString row = QStringLiteral("P%1.").arg(i + 1);
        if (!from.file.isEmpty()) {
            choose(at<AFileSelect>(panel, row + "FileSelect"), {from.file});
        }
        if (!from.energy.isEmpty()) {
            perform(panel, "type " + row + "Energy " + from.energy);
        }
        tickAt(row + "UseCB", from.use);
        tickAt(row + "LCFCB", from.lcf);
        tickAt(row + "VPointCB", from.vPoint);
    }
    perform(panel, "type EdgeE " + *texts.edgeE + "; type PreEEndDE " + texts.preEdgeEndDE +
                       "; type PostEStartDE " + texts.postEdgeStartDE);
    tickAt("TypeNonEquiv", texts.nonEquiv);
    const bool exact = texts.solver == orvel::FourPointsSolver::Exact;
    perform(panel, exact ? "click TypeTMKisExact" : "click TypeTMKisLS");
    const bool linear = texts.background == orvel::BackgroundLine::Linear;
    perform(panel, linear ? "click NonEquivBGLinear" : "click NonEquivBGVic");
    const auto histogram = [&](const QString &name, const orvel::HistogramTexts &from) {
        perform(panel, QString("type %1From %2; type %1To %3; type %1Boxes %4")
                           .arg(name, from.from, from.to, from.boxes));
        tickAt(name + "Auto", from.autoRange);
    };
    histogram("HgA", texts.valenceHistogram);
    histogram("HgT", texts.amountHistogram);
    const QStringList quantities = QString("Ratio1 Ratio2 Ratio3 Ratio4 DMut1 DMut2 DMut3 DMut4 "
                                           "Mut0 C1 C2 Valence Amount")
                                       .split(' ');
    for (int q = 0; q < quantities.size(); ++q) {
        tickAt("Rec" + quantities[q], texts.record[static_cast<size_t>(q)]);
    }
}

class PaintCounter : public QObject {
public:
    PaintCounter() { qApp->installEventFilter(this); }
    int count = 0;

private:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        count += event->type() == QEvent::Paint || event->type() == QEvent::UpdateRequest;
        return false;
    }
};

} // namespace

class WindowTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void sessionsGiveWhatTheBatchProgramGives_data();
    void sessionsGiveWhatTheBatchProgramGives();
    void sessionKeepsThePanel();
    void sessionLeavesNothingBehind();
    void failedAndRepeatedLoads();
    void severalMapsAtOnce();
    void waitCursor();
    void mapIsPainted();
    void scaleFollowsOrStays();
    void histogramShowsTheCounts();
    void comparisonColours();
    void picksEnergies();
    void dragsEnergies();
    void rangeFollowsUsedEnergies();
    void fitsScreens_data();
    void fitsScreens();
    void dropsOnTheWindow();
    void marksAPixel();
    void closesWithFocus();
    void randomHands();

private:
    QTemporaryDir m_folder;
    Sample m_sample;
};

void WindowTest::initTestCase()
{
    QVERIFY(QDir::setCurrent(m_folder.path())); // whatever a random hand writes lands here
    QCOMPARE(QProcess::execute(ORVEL_PHANTOM, {"make", m_folder.filePath("data")}), 0);
    for (const QFileInfo &session : QDir(ORVEL_EXAMPLES).entryInfoList({"*.ini"})) {
        QVERIFY(QFile::copy(session.filePath(), m_folder.filePath(session.fileName())));
    }
    QDir(m_folder.path()).mkdir("results");
}

void WindowTest::sessionsGiveWhatTheBatchProgramGives_data()
{
    QTest::addColumn<QString>("session");
    QTest::addColumn<bool>("byHand");
    const QStringList sessions = QDir(m_folder.path()).entryList({"*.ini"});
    QVERIFY(sessions.size() >= 6);
    for (const QString &session : sessions) {
        QTest::addRow("%s opened", qPrintable(session)) << session << false;
        QTest::addRow("%s by hand", qPrintable(session)) << session << true;
    }
}

void WindowTest::sessionsGiveWhatTheBatchProgramGives()
{
    QFETCH(QString, session);
    QFETCH(bool, byHand);
    QProcess batch;
    batch.start(ORVEL_BATCH, {"--result", "results/batch.dat", session});
    QVERIFY(batch.waitForFinished());
    QCOMPARE(batch.exitCode(), 0);
    QStringList printed = QString::fromUtf8(batch.readAllStandardOutput()).split('\n');
    printed.removeLast();

    FourPs panel;
    if (byHand) {
        const orvel::SessionReading reading = orvel::readSession(m_folder.filePath(session));
        fillByHand(panel, reading.state);
        newMessages(panel);
        panel.calcBoth();
    } else {
        panel.openSession(m_folder.filePath(session));
    }
    QStringList shownLines = newMessages(panel);
    for (const char *field : {"CalcRes", "TargetDMut", "LCFRes"}) {
        shownLines << QString("%1 = %2").arg(field, shown(panel, field));
    }
    QCOMPARE(shownLines, printed);
    perform(panel, "type SaveFSelect.FileName results/window.dat; click WriteB");
    QVERIFY(newMessages(panel).isEmpty());
    for (const char *suffix : {"", "_HGAlpha", "_HGThick"}) {
        const QByteArray expected = bytesOf(QString("results/batch%1.dat").arg(suffix));
        QVERIFY(expected.size() > 1000);
        QVERIFY(bytesOf(QString("results/window%1.dat").arg(suffix)) == expected);
        QVERIFY(QFile::remove(QString("results/window%1.dat").arg(suffix)));
    }
}

void WindowTest::sessionKeepsThePanel()
{
    FourPs panel;
    m_sample.load(panel);
    at<AFileSelect>(panel, "DispFSelect")->newFiles({m_sample.a, m_sample.mix});
    perform(panel, "type EdgeE 8349; type PreEEndDE -49; type PostEStartDE 99; type R2.DE 0.5; "
                   "type TargetFile.DE -0.5; type P7.Energy 8351; click TypeNonEquiv; "
                   "click TypeTMKisLS; click SubPostEforRef; click SubPostEforTarget; "
                   "click NonEquivBGLinear; click NByEJ; click FullRangeCB; click MapWGrid; "
                   "click MapC1; click HgAmount; click HgTAuto; type HgABoxes 7; type HgAFrom 1; "
                   "type HgATo 2; click RecC1; click RecRatio3; click P4.ShowMapB; click ShowDAB; "
                   "type SaveFSelect.FileName out.dat");
    panel.saveSession("results/first.ini");
    FourPs opened;
    opened.openSession("results/first.ini");
    opened.saveSession("results/second.ini");
    QVERIFY(bytesOf("results/first.ini").size() > 1000);
    QCOMPARE(bytesOf("results/second.ini"), bytesOf("results/first.ini"));
    // A typed name means the working directory, also when the session is opened from elsewhere.
    QCOMPARE(opened.state().texts.resultFile, QDir::current().absoluteFilePath("out.dat"));
    QCOMPARE(shown(opened, "P2.Mut1 P2.Mut2 P2.MutT"), shown(panel, "P2.Mut1 P2.Mut2 P2.MutT"));
    QCOMPARE(shown(opened, "ShowDAB:checked EdgeE"), QStringLiteral("false 8349"));
    // One calculation was made, not one a file: a line of the map, of the target and of the fit.
    QCOMPARE(messages(opened).size(), 3);
    opened.openSession(m_sample.a);
    QVERIFY(messages(opened).last().startsWith("Can't open the file [" + m_sample.a + "]: "));
    opened.saveSession("/no/where.ini");
    QCOMPARE(messages(opened).last(), QStringLiteral("Can't open the file [/no/where.ini]"));
}

/// What an earlier state held must not pass for the files of a session that cannot be read.
void WindowTest::sessionLeavesNothingBehind()
{
    FourPs panel;
    m_sample.load(panel);
    PanelState state = panel.state();
    state.texts.references[0].file = m_sample.path("missing.dat");
    state.texts.target.file = m_sample.path("missing.dat");
    state.texts.points[1].file = m_sample.path("missing.txt");
    panel.setState(state);
    QVERIFY(!reference(panel, 0)->selector()->isValid() && !target(panel)->isValid());
    QVERIFY(!point(panel, 1)->map() && point(panel, 2)->map());
    QVERIFY(!point(panel, 1)->fileSelect()->problem().isEmpty());
    QCOMPARE(shown(panel, "P2.Energy P2.Mut1 P2.Mut2 P2.MutT"), QStringLiteral("8350  0.2 "));
    panel.setState(PanelState());
    QVERIFY(!reference(panel, 1)->selector()->isValid() && !point(panel, 2)->map());
    QCOMPARE(shown(panel, "P3.Energy P3.Mut2 EdgeE P3.UseCB:checked"),
             QStringLiteral("  8350 false"));
}

void WindowTest::failedAndRepeatedLoads()
{
    FourPs panel;
    m_sample.load(panel);
    const auto first = point(panel, 1)->map();
    perform(panel, m_sample.in("load P2.FileSelect %/missing.txt"));
    QCOMPARE(point(panel, 1)->map(), first); // not opened: the image stays, with a warning
    QVERIFY(point(panel, 1)->fileSelect()->problem().contains("missing.txt"));
    perform(panel, m_sample.in("load P2.FileSelect %/edge.txt"));
    QVERIFY(point(panel, 1)->map() && point(panel, 1)->map() != first);
    QVERIFY(point(panel, 1)->fileSelect()->problem().isEmpty());
    perform(panel, m_sample.in("load P2.FileSelect %/empty.dat"));
    QVERIFY(!point(panel, 1)->map()); // opened, and nothing in it
    // A spectrum likewise; the check finds it, and what was calculated stays.
    const auto results = panel.results();
    const QString fields = shown(panel, "CalcRes LCFRes");
    perform(panel, m_sample.in("load R2.XafsFS %/empty.dat; load P2.FileSelect %/edge.txt"));
    newMessages(panel);
    panel.calcBoth();
    QCOMPARE(newMessages(panel),
             (QStringList{"Number of valied Ref Files is 1, which is less than 2.",
                          "Ref File 2 is not valid.",
                          "Number of valied Ref Files is 1, which is less than 2.",
                          "The 2nd Ref File is not valid.",
                          "Number of Valid Reference files is 1, which is less than 2"}));
    QCOMPARE(panel.results(), results);
    QCOMPARE(shown(panel, "CalcRes LCFRes"), fields);
    perform(panel, m_sample.in("load R2.XafsFS %/b.dat; click CalcTargetB"));
    QCOMPARE(newMessages(panel).last(), QStringLiteral("3ps: a = 0.5, Valence = 2.5"));
    // Loading the same references again calculates again, each time with a record.
    perform(panel, m_sample.in("load R2.XafsFS %/b.dat"));
    QCOMPARE(newMessages(panel).filter("LCF ::").size(), 3); // the choice, and the edge for two
    // Results are written as they are, even when a check stops the map.
    perform(panel, "type SaveFSelect.FileName old.dat; click WriteB; click P2.VPointCB");
    const QByteArray old = bytesOf("old.dat");
    QVERIFY(old.contains("2.5"));
    perform(panel, "type SaveFSelect.FileName new.dat; click WriteB");
    QCOMPARE(bytesOf("new.dat"), old);
}

void WindowTest::severalMapsAtOnce()
{
    FourPs panel;
    panel.show();
    QStringList paths;
    for (int i = 0; i < 4; ++i) {
        paths << m_sample.map(QString("several %1.txt").arg(i), 1, QByteArray::number(8300 + i),
                              {double(i)});
    }
    emit point(panel, 2)->fileSelect()->newFilePaths({paths[0]}); // its own newFilePath follows
    QVERIFY(!point(panel, 2)->map());
    emit point(panel, 2)->fileSelect()->newFilePaths(paths.mid(0, 3));
    QCOMPARE(shown(panel, "P2.Energy P3.Energy P4.Energy P5.Energy P6.Energy"),
             QStringLiteral(" 8300 8301 8302 "));
    QCOMPARE(point(panel, 3)->fileSelect()->path(), paths[1]);
    choose(point(panel, 5)->fileSelect(), paths); // by the dialog; one does not fit
    QCOMPARE(shown(panel, "P6.Energy P7.Energy P8.Energy"), QStringLiteral("8300 8301 8302"));
    QCOMPARE(shown(panel, "P6.FileName P8.FileName"), paths[0] + ' ' + paths[2]);
    perform(panel, "clear P6.FileSelect");
    QVERIFY(!point(panel, 5)->map() && point(panel, 6)->map());
}

void WindowTest::waitCursor()
{
    FourPs panel;
    m_sample.load(panel);
    QVector<int> shapes;
    connect(at<QPlainTextEdit>(panel, "Message"), &QPlainTextEdit::textChanged, this, [&shapes] {
        shapes << (QApplication::overrideCursor() ? QApplication::overrideCursor()->shape() : -1);
    });
    perform(panel, "click CalcTargetB; click LCFB; click P2.VPointCB");
    QVERIFY(shapes.size() >= 5);
    QCOMPARE(shapes, QVector<int>(shapes.size(), Qt::WaitCursor));
    QVERIFY(!QApplication::overrideCursor());
}

void WindowTest::mapIsPainted()
{
    FourPs panel;
    panel.resize(1300, 800);
    panel.show();
    DispMBase *result = map(panel, "ResultMap");
    const QImage white = picture(result->area());
    QCOMPARE(pixelsOf(white, Qt::white), white.width() * white.height());
    m_sample.load(panel); // one pixel of valence 2.5
    perform(panel, "type ResultMap.MinV 2; type ResultMap.MaxV 3");
    QImage image = picture(result->area());
    const QColor middle = result->bar()->colourOf(2.5);
    QVERIFY(middle != result->bar()->colourOf(2.4) && middle != QColor(Qt::white));
    QCOMPARE(pixelsOf(image, middle), image.width() * image.height());
    // Two columns, two rows; row 0 is at the bottom. Valences 2.5 3 / 2 2.25.
    m_sample.load(panel, 2, {0.5, 0.2, 0.8, 0.65});
    image = picture(result->area());
    const int w = image.width();
    const int h = image.height();
    const double values[] = {2.5, 3, 2, 2.25};
    for (int i = 0; i < 4; ++i) {
        const int x = w / 4 + i % 2 * w / 2;
        const int y = h * 3 / 4 - i / 2 * h / 2;
        const QColor wanted = result->bar()->colourOf(values[i]);
        QCOMPARE(QColor(image.pixel(x, y)), wanted);
        mouse(result->area(), QEvent::MouseMove, QPointF(x, y));
        QCOMPARE(shown(panel, "ResultMap.Val"), QString::number(values[i]));
    }
    for (const QPointF &outside :
         {QPointF(-1, 5), QPointF(5, -1), QPointF(w + 1, 5), QPointF(5, h + 1)}) {
        mouse(result->area(), QEvent::MouseMove, QPointF(w / 4, h / 4));
        mouse(result->area(), QEvent::MouseMove, outside);
        QCOMPARE(shown(panel, "ResultMap.Val"), QString());
    }
    perform(panel, "click MapWGrid");
    QVERIFY(pixelsOf(picture(result->area()), QColor(200, 200, 200)) >= w + h);
    perform(panel, "click MapWGrid");
    at<QAbstractButton>(panel, "MapC1")->setChecked(true); // as by a session; four points give none
    QVERIFY(!at<QWidget>(panel, "MapC1")->isEnabled());
    QVERIFY(at<QWidget>(panel, "MapRatio2")->isEnabled());
    QCOMPARE(pixelsOf(picture(result->area()), result->bar()->colourOf(0)), w * h);
    // The image of the chosen row.
    perform(panel, "click P2.ShowMapB; type DataMap.MaxV 1; type DataMap.MinV 0");
    const DispMBase *data = map(panel, "DataMap");
    image = picture(data->area());
    QCOMPARE(QColor(image.pixel(5, image.height() - 5)), data->bar()->colourOf(0.5));
    perform(panel, "clear P2.FileSelect");
    image = picture(data->area());
    QCOMPARE(pixelsOf(image, Qt::white), image.width() * image.height());
}

void WindowTest::scaleFollowsOrStays()
{
    FourPs panel;
    panel.show();
    m_sample.load(panel, 2, {0.5, 0.2});
    DispMBase *result = map(panel, "ResultMap");
    DispArea *area = result->area();
    area->grab();
    QCOMPARE(shown(panel, "ResultMap.MinV ResultMap.MaxV"), QStringLiteral("2.5 3"));
    area->coord()->setRange(0, 0, 1, 0.5);               // a zoom
    perform(panel, "type R1.Valence 1; click CalcMapB"); // new values, same size
    area->grab();
    QCOMPARE(shown(panel, "ResultMap.MinV ResultMap.MaxV"), QStringLiteral("2 3"));
    QCOMPARE(area->coord()->xMax(), 1.0);
    perform(panel, "click MapRatio1");
    area->grab();
    QCOMPARE(area->coord()->xMax(), 1.0);
    perform(panel, "click MapValence; type ResultMap.MaxV 5; type R1.Valence 0; click CalcMapB");
    QCOMPARE(shown(panel, "ResultMap.MinV ResultMap.MaxV"), QStringLiteral("2 5")); // typed: stays
    QVERIFY(!result->bar()->isAutoScale());
    m_sample.load(panel, 3, {0.5, 0.2, 0.8}); // another size: the zoom goes, typed limits stay
    area->grab();
    QCOMPARE(area->coord()->xMax(), 3.0);
    QCOMPARE(shown(panel, "ResultMap.MinV ResultMap.MaxV"), QStringLiteral("2 5"));
    result->bar()->setAutoScale(true);
    emit result->bar()->autoScaleChosen(true); // as its menu does
    QCOMPARE(shown(panel, "ResultMap.MinV ResultMap.MaxV"), QStringLiteral("2 3"));
}

void WindowTest::histogramShowsTheCounts()
{
    FourPs panel;
    panel.show();
    m_sample.load(panel, 4, {0.5, 0.2, 0.5, 0.5});
    DispABase *plot = graph(panel, Displays::DHistA);
    plot->area()->grab();
    const auto range = [plot] {
        const ChCoord &c = *plot->coord();
        return QVector<double>{c.xMin(), c.xMax(), c.yMin(), c.yMax()};
    };
    QCOMPARE(range(), (QVector<double>{1.5, 3.5, -0.1 * 3, 1.1 * 3})); // three pixels of 2.5
    // Other counts, other limits: the plot follows, and shows what was counted.
    perform(panel, "click HgAAuto; type R1.Valence 1; click CalcMapB");
    const QImage valence = picture(plot->area());
    QCOMPARE(range(), (QVector<double>{2, 3, -0.1 * 3, 1.1 * 3}));
    perform(panel, "click HgRatio1");
    QVERIFY(picture(plot->area()) != valence);
    QCOMPARE(range(), (QVector<double>{0, 0.5, -0.1 * 3, 1.1 * 3}));
    QVERIFY(!at<QWidget>(panel, "HgC1")->isEnabled());
    // Files have the valence whatever is shown: three pixels in the first box, one in the last.
    perform(panel, "type SaveFSelect.FileName hist.dat; type HgABoxes 2; click WriteB");
    QCOMPARE(bytesOf("hist_HGAlpha.dat"), QByteArray("0.5 1 1.5  0\n1.5 2 2.5  3\n"
                                                     "2.5 3 3.5  1\n3.5 4 4.5  0\n"));
    plot->coord()->setRange(1, 0, 2, 1); // a zoom outlives a run that counts the same
    perform(panel, "click HgValence; click CalcMapB");
    plot->area()->grab();
    plot->coord()->setRange(1, 0, 2, 1);
    perform(panel, "click CalcMapB");
    plot->area()->grab();
    QCOMPARE(range(), (QVector<double>{1, 2, 0, 1}));
}

void WindowTest::comparisonColours()
{
    FourPs panel;
    panel.resize(1300, 900);
    panel.show();
    DispABase *plot = graph(panel, Displays::DLCFvsMPS);
    const CColors colours;
    const auto drawn = [&](int index) {
        return pixelsOf(picture(plot->area()), colours.colour(index)) > 0;
    };
    m_sample.load(panel);
    emit plot->mReleased(nullptr);
    QVERIFY(!drawn(1)); // nothing was calculated in it yet
    perform(panel, "click LCFB");
    QVERIFY(drawn(1));
    for (int i = 1; i < colours.count(); ++i) {
        emit plot->mReleased(nullptr); // back to the first
    }
    emit plot->mReleased(nullptr);
    emit plot->mReleased(nullptr);
    perform(panel, "click LCFB"); // over the other
    QVERIFY(!drawn(1) && drawn(2));
    emit plot->mDClicked(nullptr);
    const QImage white = picture(plot->area());
    QCOMPARE(pixelsOf(white, colours.colour(2)), 0);
    emit plot->mReleased(nullptr); // the release after a double click: the second colour
    perform(panel, "click LCFB");
    QVERIFY(drawn(1));
}

void WindowTest::picksEnergies()
{
    FourPs panel;
    panel.resize(1300, 900);
    panel.show();
    DispArea *area = graph(panel, Displays::DMuts)->area();
    area->grab();
    perform(panel, "click P5.FPB");
    mouse(area, QEvent::MouseButtonPress, {80, 50}); // no spectrum, no energies
    QCOMPARE(shown(panel, "P5.Energy"), QString());
    mouse(area, QEvent::MouseButtonRelease, {80, 50});
    perform(panel, m_sample.in("load R1.XafsFS %/a.dat"));
    area->grab();
    const QPointF at8352(area->coord()->sx(8352.5), 50);
    mouse(area, QEvent::MouseButtonPress, at8352);
    mouse(area, QEvent::MouseButtonRelease, at8352);
    const double picked = shown(panel, "P5.Energy").toDouble();
    QVERIFY(std::fabs(picked - 8352.5) <= std::fabs(area->coord()->rdx(1.0)));
    QVERIFY(shown(panel, "P5.Mut1").toDouble() > 0.5); // the row was refreshed
    perform(panel, "click P6.FPB");                    // one row at a time
    QCOMPARE(shown(panel, "P5.FPB:checked P6.FPB:checked"), QStringLiteral("false true"));
    perform(panel, "click P6.FPB"); // unchosen
    mouse(area, QEvent::MouseButtonPress, at8352);
    QCOMPARE(shown(panel, "P6.FPB:checked P6.Energy"), QStringLiteral("false "));
}

void WindowTest::dragsEnergies()
{
    FourPs panel;
    panel.resize(1300, 900);
    panel.show();
    m_sample.load(panel);
    DispArea *area = graph(panel, Displays::DMuts)->area();
    perform(panel, "click P8.FPB");
    area->grab();
    const QPointF from(area->coord()->sx(8600), 40);
    const QPointF to(area->coord()->sx(8500), 40);
    mouse(area, QEvent::MouseButtonPress, from);
    mouse(area, QEvent::MouseMove, to);
    const double dragged = shown(panel, "P3.Energy").toDouble();
    QVERIFY(std::fabs(dragged - 8500) <= std::fabs(area->coord()->rdx(1.0)));
    QCOMPARE(shown(panel, "P3.Mut1 P8.Energy"), QStringLiteral("1 ")); // no pick beside a marker
    area->grab();
    mouse(area, QEvent::MouseMove, QPointF(area->coord()->sx(8347.5), 40));
    QVERIFY(shown(panel, "P3.Mut1").toDouble() < 1); // refreshed as it goes
    mouse(area, QEvent::MouseButtonRelease, from);
    perform(panel, "click P3.UseCB"); // no marker without use
    const QString energy = shown(panel, "P3.Energy");
    mouse(area, QEvent::MouseButtonPress, QPointF(area->coord()->sx(8600), 40));
    QVERIFY(shown(panel, "P3.Energy") == energy && !shown(panel, "P8.Energy").isEmpty());
}

void WindowTest::rangeFollowsUsedEnergies()
{
    FourPs panel;
    panel.resize(1300, 900);
    panel.show();
    m_sample.load(panel); // 8200, 8350, 8600 in use
    DispArea *area = graph(panel, Displays::DMuts)->area();
    const auto range = [area] {
        area->grab();
        return QString("%1 %2").arg(area->coord()->xMin()).arg(area->coord()->xMax());
    };
    perform(panel, "click FullRangeCB");
    QCOMPARE(range(), QStringLiteral("8100 8700")); // a quarter of 400 more both ways
    perform(panel, "click P1.UseCB");
    QCOMPARE(range(), QStringLiteral("8287.5 8662.5"));
    perform(panel, "type P3.Energy 8450");
    QCOMPARE(range(), QStringLiteral("8325 8475"));
    // A dragged line stays under the pointer; the range follows when it is let go.
    const QPointF from(area->coord()->sx(8450), 40);
    mouse(area, QEvent::MouseButtonPress, from);
    mouse(area, QEvent::MouseMove, QPointF(area->coord()->sx(8400), 40));
    QCOMPARE(range(), QStringLiteral("8325 8475"));
    mouse(area, QEvent::MouseButtonRelease, QPointF(area->coord()->sx(8400), 40));
    range();
    QVERIFY(std::fabs(area->coord()->xMax() - 8412.5) < 2); // a pixel and a quarter
    // What the user zoomed stays until a double click.
    QWheelEvent wheel({60, 40}, area->mapToGlobal(QPoint(60, 40)), QPoint(), QPoint(0, 120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(area, &wheel);
    const QString zoomed = range();
    perform(panel, "click P1.UseCB; type P3.Energy 8600");
    QCOMPARE(range(), zoomed);
    mouse(area, QEvent::MouseButtonDblClick, {60, 40});
    QCOMPARE(range(), QStringLiteral("8100 8700"));
    perform(panel, "click FullRangeCB");
    const QString whole = range();
    perform(panel, "click P1.UseCB");
    QCOMPARE(range(), whole);
}

void WindowTest::fitsScreens_data()
{
    QTest::addColumn<bool>("japanese");
    QTest::newRow("English") << false;
    QTest::newRow("Japanese") << true;
}

void WindowTest::fitsScreens()
{
    QFETCH(bool, japanese);
    orvel::Translators translators;
    if (japanese) {
        orvel::installJapanese(translators);
    }
    FourPs panel;
    panel.show();
    panel.resize(100, 100);
    const auto least = [&panel] { return panel.minimumSizeHint(); };
    QTRY_VERIFY(least().width() <= 1210 && least().height() <= 680); // once it is laid out
    panel.resize(1262, 700); // on a screen of 1280 x 768 with bars and borders
    panel.openSession(m_folder.filePath("nonequiv-linear.ini"));
    const auto isWhole = [](const QLineEdit *field, const QString &text) {
        constexpr int kFrames = 2 * 4; // of the field and around its text
        return field->fontMetrics().horizontalAdvance(text) + kFrames <= field->width();
    };
    const auto *number = at<QLineEdit>(panel, "P1.MutT");
    QTRY_VERIFY(isWhole(number, "-0.123457"));
    for (const char *name : {"CalcRes", "LCFRes"}) {
        const auto *field = at<QLineEdit>(panel, name);
        QVERIFY(!field->text().isEmpty());
        QVERIFY(isWhole(field, field->text() + ": -0.000")); // of four references
    }
}

/// Through the window, which looks for whoever takes a drop at that place.
void WindowTest::dropsOnTheWindow()
{
    FourPs panel;
    panel.resize(1300, 900);
    panel.show();
    m_sample.map("drop.txt", 1, "8350", {0.5});
    const auto drop = [&panel](const QString &path, const QList<QUrl> &urls) {
        QMimeData data;
        data.setUrls(urls);
        QWidget *at = window::at(panel, path);
        const QPoint where = at->mapTo(&panel, at->rect().center());
        QDragEnterEvent enter(where, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(panel.windowHandle(), &enter);
        QDragMoveEvent move(where, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        move.setDropAction(enter.dropAction());
        move.setAccepted(enter.isAccepted()); // as the toolkit does before it sends one
        QCoreApplication::sendEvent(panel.windowHandle(), &move);
        QDropEvent event(where, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(panel.windowHandle(), &event);
        return move.isAccepted() && event.isAccepted();
    };
    const auto file = [this](const QString &name) {
        return QList<QUrl>{QUrl::fromLocalFile(m_sample.path(name))};
    };
    QVERIFY(drop("R2.XafsFS.FileName", file("a.dat")));
    QVERIFY(drop("TargetFile.FileName", file("mix.dat")));
    QVERIFY(drop("DispFSelect.SelB", file("b.dat")));
    QVERIFY(drop("P3.FileSelect.FileName", file("drop.txt") + file("a.dat"))); // the first one
    QVERIFY(drop("SaveFSelect.FileName", file("drop.txt")));
    QVERIFY(!drop("P2.FileSelect.FileName", {QUrl("http://host/a.dat")}));
    QVERIFY(reference(panel, 1)->selector()->isValid() && target(panel)->isValid());
    QVERIFY(!reference(panel, 0)->selector()->isValid());
    QCOMPARE(at<QListWidget>(panel, "SelectedFs")->count(), 1);
    QCOMPARE(shown(panel, "P3.Energy P3.Mut2 P3.MutT P2.Energy"), QStringLiteral("8350 0.8 0.5 "));
    QVERIFY(point(panel, 2)->map() && !point(panel, 3)->map());
    QCOMPARE(shown(panel, "SaveFSelect.FileName"), m_sample.path("drop.txt") + ".dat");
}

void WindowTest::marksAPixel()
{
    FourPs panel;
    panel.resize(1300, 900);
    panel.show();
    m_sample.load(panel, 2, {0.5, 0.2});
    DispArea *area = map(panel, "ResultMap")->area();
    area->grab();
    DispArea *muts = graph(panel, Displays::DMuts)->area();
    const QColor dot(255, 230, 0);
    QCOMPARE(pixelsOf(picture(muts), dot), 0);
    mouse(area, QEvent::MouseButtonDblClick, QPointF(area->width() / 4, 10));
    const int dots = pixelsOf(picture(muts), dot);
    QVERIFY(dots > 3 * 10); // one a point, 7 pixels wide with its rim
    mouse(area, QEvent::MouseButtonDblClick, QPointF(area->width() + 5, 10)); // outside
    QCOMPARE(pixelsOf(picture(muts), dot), 0);
}

void WindowTest::closesWithFocus()
{
    auto panel = std::make_unique<FourPs>();
    m_sample.load(*panel);
    panel->show();
    panel->activateWindow();
    at(*panel, "EdgeE")->setFocus();
    QTRY_VERIFY(at(*panel, "EdgeE")->hasFocus());
    QTest::keyClick(at(*panel, "EdgeE"), Qt::Key_7); // an edit that is not finished
    panel.reset();
}

void WindowTest::randomHands()
{
    constexpr int kEvents = 20000;
    QRandomGenerator random(1);
    const auto below = [&random](int n) { return random.bounded(qMax(1, n)); };
    FourPs panel;
    panel.show();
    m_sample.load(panel, 3, {0.5, 0.2, 0.8, 0.1, 0.3, 0.4});
    const int keys[] = {Qt::Key_Tab,  Qt::Key_Space, Qt::Key_Return, Qt::Key_Escape,
                        Qt::Key_Left, Qt::Key_Right, Qt::Key_Up,     Qt::Key_Down,
                        Qt::Key_1,    Qt::Key_8,     Qt::Key_Minus,  Qt::Key_Backspace,
                        Qt::Key_Home, Qt::Key_A,     Qt::Key_Delete, Qt::Key_Menu};
    const auto closePopups = [] {
        while (QWidget *popup = QApplication::activePopupWidget()) {
            popup->close();
        }
    };
    QTimer letGo; // dragged text and the menu of a scroll bar wait in loops of their own
    connect(&letGo, &QTimer::timeout, this, [closePopups] {
        QDrag::cancel();
        closePopups();
    });
    letGo.start(10);
    for (int i = 0; i < kEvents; ++i) {
        const QWidgetList widgets = panel.findChildren<QWidget *>();
        QWidget *widget = widgets[below(widgets.size())];
        if (!widget->isVisible()) {
            --i;
            continue;
        }
        const QPoint where(below(widget->width() + 10) - 5, below(widget->height() + 10) - 5);
        switch (below(6)) {
        case 0:
            QTest::keyClick(widget, Qt::Key(keys[below(int(std::size(keys)))]),
                            below(8) == 0 ? Qt::ShiftModifier : Qt::NoModifier);
            break;
        case 1: {
            QWheelEvent event(where, widget->mapToGlobal(where), QPoint(),
                              QPoint(0, below(2) ? 120 : -120), Qt::NoButton, Qt::NoModifier,
                              Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(widget, &event);
            break;
        }
        case 2: {
            QContextMenuEvent event(QContextMenuEvent::Mouse, where, widget->mapToGlobal(where));
            QCoreApplication::sendEvent(widget, &event);
            break;
        }
        default:
            mouse(widget, QEvent::MouseButtonPress, where);
            mouse(widget, QEvent::MouseMove, QPoint(below(widget->width()), where.y()));
            mouse(widget, below(8) ? QEvent::MouseButtonRelease : QEvent::MouseButtonDblClick,
                  where);
            break;
        }
        closePopups();
        for (QFileDialog *dialog : panel.findChildren<QFileDialog *>()) {
            dialog->close();
        }
        if (i % 100 == 0) {
            QCoreApplication::processEvents();
        }
    }
    letGo.stop();
    panel.calcBoth();
    bool rests = false; // what is due may come late; what repaints for ever never rests
    for (int attempt = 0; attempt < 10 && !rests; ++attempt) {
        const PaintCounter paints;
        QTest::qWait(300);
        rests = paints.count == 0;
    }
    QVERIFY(rests);
}

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const QApplication app(argc, argv);
    QApplication::setCursorFlashTime(0); // a blinking cursor is painted
    WindowTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_window.moc"
