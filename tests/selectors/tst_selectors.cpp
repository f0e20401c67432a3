// The widgets that choose files: what they say, in which order, and what is there when they say it.
#include "../LogCatcher.h"
#include "../TestFiles.h"
#include "display/DispABase.h"
#include "images/AEPoint.h"
#include "images/TDData0.h"
#include "spectra/ARefFile.h"
#include "spectra/AXafsFileSelect.h"
#include "spectra/RefFiles.h"

#include <QAbstractButton>
#include <QAction>
#include <QDropEvent>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QtTest>

namespace {

const char *const kOddNames[] = {"a.dat",     "a b.dat",  "a  b.dat", "a#b.dat",
                                 "a%23b.dat", "100%.dat", "why?.dat", "標準.dat"};

/// A step of height 1 at an edge [eV]: 0.2 below and 1.2 above, from 49.5 eV before to 49.5 behind.
QByteArray stepAt(int edge)
{
    QByteArray text;
    for (int e = edge - 50; e < edge + 50; ++e) {
        text += QByteArray::number(e + 0.5) + (e < edge ? " 0.2\n" : " 1.2\n");
    }
    return text;
}

QLineEdit *nameField(const QWidget &selector)
{
    return selector.findChild<QLineEdit *>("FileName");
}

void click(const QWidget &widget, const char *name)
{
    QTest::mouseClick(widget.findChild<QAbstractButton *>(name), Qt::LeftButton, {}, {6, 10});
}

void typeDE(const AFileSelect &selector, const QString &text)
{
    selector.deEdit()->setText(text);
    QTest::keyClick(selector.deEdit(), Qt::Key_Return);
}

QImage painted(DispABase &panel)
{
    panel.grab(); // gives the titles and the surface their places
    return panel.area()->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

/// How dark a part of a row of pixels is in all: 255 for a black line one pixel wide, wherever it
/// lies between two columns.
int darkness(const QImage &image, double y, double from, double to)
{
    int sum = 0;
    for (int x = int(from); x <= int(to); ++x) {
        sum += 255 - qGray(image.pixel(x, int(y)));
    }
    return sum;
}

} // namespace

class SelectorsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void modes();
    void choices_data();
    void choices();
    void drops_data();
    void drops();
    void shiftsOnlyWhenBound();
    void drawsMarkers();
    void drawsOddSpectra();
    void references();
    void maps_data();
    void maps();
    void pointRow();

private:
    void say(const QString &text) { m_said += QString(text).replace(m_folder, "~"); }
    QString path(const QString &name) const { return m_folder + '/' + name; }
    void listen(const AFileSelect &selector, const std::function<QString()> &state);
    void act(AFileSelect &selector, const QString &step);

    TestFiles m_files;
    QString m_folder = QFileInfo(m_files.path(".")).canonicalFilePath();
    QStringList m_said; ///< what was heard, with "~" for the folder of the files
};

void SelectorsTest::init()
{
    m_said.clear();
    m_files.write("a.dat", stepAt(7112));
    m_files.write("b.dat", stepAt(8979));
    m_files.write("empty.dat", "# nothing\n");
    QVERIFY(QDir(m_folder).mkpath("sub"));
    QFile::link(path("a.dat"), path("sub/link.dat"));
}

void SelectorsTest::listen(const AFileSelect &s, const std::function<QString()> &state)
{
    connect(&s, &AFileSelect::newDir, [=, this](const QString &d) { say("dir " + d + state()); });
    connect(&s, &AFileSelect::newFilePath,
            [=, this](const QString &p) { say("path " + p + state()); });
    connect(&s, &AFileSelect::newFilePaths,
            [=, this](const QStringList &p) { say("paths " + p.join('|') + state()); });
    connect(&s, &AFileSelect::selectedFile, [=, this] { say("selected" + state()); });
}

void SelectorsTest::act(AFileSelect &selector, const QString &step)
{
    const QString verb = step.section(' ', 0, 0);
    const QString rest = step.section(' ', 1);
    if (verb == "file") {
        selector.newFile(path(rest));
    } else if (verb == "files") {
        QStringList paths = rest.split(' ', Qt::SkipEmptyParts);
        selector.newFiles(paths.replaceInStrings(QRegularExpression("^"), m_folder + '/'));
    } else if (verb == "dialog") {
        QFileDialog *dialog = selector.dialog();
        dialog->setOption(QFileDialog::DontUseNativeDialog);
        dialog->setDirectory(m_folder);
        dialog->open();
        dialog->findChild<QLineEdit *>("fileNameEdit")->setText(rest);
        QVERIFY(QMetaObject::invokeMethod(dialog, "accept"));
        QVERIFY(!dialog->isVisible());
    } else if (verb == "clear") {
        click(selector, "ClearB");
    } else if (verb == "save") {
        selector.setMode(AFileSelect::Save);
        selector.setDefaultExtension(rest);
    } else {
        QCOMPARE(verb, QString("multiple"));
        selector.setMultiple(true);
    }
}

void SelectorsTest::modes()
{
    AFileSelect selector;
    selector.setDir(m_folder);
    selector.selectingFile(path("a.dat"));
    QVERIFY(!selector.findChild<QFileDialog *>()); // made at its first use
    for (const int mode : {0, 1, 2, 0}) {          // 2: several files
        selector.setMode(mode % 2);
        selector.setMultiple(mode == 2);
        click(selector, "SelB");
        auto *dialog = selector.findChild<QFileDialog *>();
        QVERIFY(dialog && dialog->isVisible());
        dialog->reject();
        QCOMPARE(int(dialog->acceptMode()), mode % 2);
        const QFileDialog::FileMode fileModes[] = {QFileDialog::ExistingFile, QFileDialog::AnyFile,
                                                   QFileDialog::ExistingFiles};
        QCOMPARE(dialog->fileMode(), fileModes[mode]);
        QCOMPARE(dialog->nameFilters(), (QStringList{"Data Files (*.dat)", "All (* *.*)"}));
        QCOMPARE(dialog->directory().canonicalPath(), m_folder);
        QCOMPARE(nameField(selector)->isReadOnly(), mode != 1);
        QCOMPARE(nameField(selector)->styleSheet(),
                 QString("background-color: rgb(255, 255, %1);").arg(mode == 1 ? 255 : 220));
    }
    selector.setDir("/");
    QCOMPARE(selector.dialog()->directory().path(), QString("/"));
    QCOMPARE(selector.findChildren<QFileDialog *>().size(), 1);
}

void SelectorsTest::choices_data()
{
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QStringList>("said"); // in the last step; with the points of a spectrum
    QTest::addColumn<QString>("name");     // in the field
    QTest::addColumn<QString>("problem");  // of a spectrum; "-": none is read
    const auto plain = [](const char *name, const QStringList &steps, const QStringList &said,
                          const QString &field) {
        QTest::newRow(name) << steps << said << field << QString("-");
    };
    const auto saves = [&](const char *name, const QString &extension, const QString &chosen,
                           const QString &saved) {
        plain(name, {"save " + extension, "file " + chosen},
              {"dir ~", "path ~/" + saved, "selected"}, "~/" + saved);
    };
    plain("opening adds no suffix", {"file new"}, {"dir ~", "path ~/new", "selected"}, "~/new");
    saves("save", "dat", "new", "new.dat");
    saves("save, the suffix is there", "dat", "new.v1.dat", "new.v1.dat");
    saves("save, another suffix stays", "dat", "a.txt", "a.txt.dat");
    saves("save, capitals are another suffix", "dat", "a.DAT", "a.DAT.dat");
    saves("save, no extension", "", "new", "new");
    const QStringList two = {"dir ~", "paths ~/a.dat|~/b.dat", "selected"};
    plain("several", {"files a.dat b.dat"}, two, "a.dat b.dat");
    plain("a link", {"file sub/link.dat"}, {"dir ~", "path ~/sub/link.dat", "selected"},
          "~/sub/link.dat");
    plain("dialog, several", {"multiple", "dialog \"a.dat\" \"b.dat\""}, two, "a.dat b.dat");
    plain("clear several", {"files a.dat b.dat", "clear"}, {"path ", "selected"}, "");
    plain("clear twice", {"file a.dat", "clear", "clear"}, {"selected"}, "");

    const auto spectrum = [](const char *name, const QStringList &steps, const QStringList &said,
                             const QString &field, const QString &problem = QString()) {
        QTest::newRow(name) << steps << said << field << problem;
    };
    const QStringList read = {"dir ~ 100", "path ~/a.dat 100", "selected 100", "edge 7112"};
    spectrum("read", {"file a.dat"}, read, "~/a.dat");
    spectrum("missing: the spectrum stays", {"file a.dat", "file no.dat"},
             {"dir ~ 100", "path ~/no.dat 100", "selected 100"}, "~/no.dat",
             "~/no.dat: there is no such readable file");
    spectrum("a folder", {"file sub"}, {"dir ~ 0", "path ~/sub 0", "selected 0"}, "~/sub",
             "~/sub: there is no such readable file");
    spectrum("no point: the spectrum goes", {"file a.dat", "file empty.dat"},
             {"dir ~ 0", "path ~/empty.dat 0", "selected 0"}, "~/empty.dat",
             "~/empty.dat: it holds no data point");
    spectrum("read after a failure", {"file no.dat", "file a.dat"}, read, "~/a.dat");
    spectrum("clear a spectrum", {"file a.dat", "clear"}, {"path  0", "selected 0"}, "");
    spectrum("dialog: the choice, then the reading", {"dialog a.dat"},
             QStringList{"dir ~ 0", "paths ~/a.dat 0", "selected 0"} + read, "~/a.dat");
}

void SelectorsTest::choices()
{
    QFETCH(QStringList, steps);
    QFETCH(QString, problem);
    AFileSelect file;
    AXafsFileSelect spectrum;
    const bool isPlain = problem == "-";
    AFileSelect &selector = isPlain ? file : spectrum;
    listen(selector,
           [&] { return isPlain ? QString() : ' ' + QString::number(spectrum.points().size()); });
    connect(&spectrum, &AXafsFileSelect::foundNewEdge,
            [this](double e) { say("edge " + QString::number(e)); });
    connect(&spectrum, &AXafsFileSelect::updated, [this] { say("updated"); });
    for (const QString &step : steps) {
        m_said.clear();
        act(selector, step);
    }
    QTEST(m_said, "said");
    QTEST(QString(selector.text()).replace(m_folder, "~"), "name");
    QCOMPARE(selector.path().isEmpty(), selector.text().isEmpty());
    QString shown; // a warning icon in the field, with its tool tip
    for (const QAction *icon : nameField(selector)->actions()) {
        shown += icon->icon().isNull() ? "no icon" : icon->toolTip().replace(m_folder, "~");
    }
    QCOMPARE(shown, isPlain ? QString() : problem);
}

void SelectorsTest::drops_data()
{
    QTest::addColumn<QList<QUrl>>("urls");
    QTest::addColumn<QString>("chosen"); // empty: refused
    const auto urlOf = [this](const QString &name) { return QUrl::fromLocalFile(path(name)); };
    for (const char *name : kOddNames) {
        QTest::newRow(name) << QList<QUrl>{urlOf(name)} << QString("~/") + name;
    }
    const auto row = [](const char *name, const QList<QUrl> &urls, const char *chosen) {
        QTest::newRow(name) << urls << QString(chosen);
    };
    row("the first of several", {urlOf("a b.dat"), urlOf("a.dat")}, "~/a b.dat");
    row("a name that nobody encoded", {QUrl("file://" + path("a#b.dat"))}, "~/a#b.dat");
    row("no such file", {QUrl("file:///no/such.dat")}, "/no/such.dat");
    row("a share", {QUrl("file://host/share/a.dat")}, "//host/share/a.dat");
    row("not a file", {QUrl("http://host/a.dat")}, "");
    row("not a file before a file", {QUrl("ftp://host/a.dat"), urlOf("a.dat")}, "");
    row("no scheme", {QUrl("a.dat")}, "");
    row("text alone", {}, "");
}

void SelectorsTest::drops()
{
    QFETCH(QList<QUrl>, urls);
    QFETCH(QString, chosen);
    for (const char *name : kOddNames) {
        m_files.write(name, "1 1\n");
    }
    QMimeData data;
    data.setText("file:///tmp/text.dat");
    if (!urls.isEmpty()) {
        data.setUrls(urls);
    }
    AFileSelect selector;
    selector.showDE(true);
    listen(selector, [] { return QString(); });
    // Whichever part of the selector it comes in over: the fields leave drops to the selector.
    for (QWidget *at :
         {static_cast<QWidget *>(&selector), static_cast<QWidget *>(selector.deEdit()),
          static_cast<QWidget *>(nameField(selector))}) {
        m_said.clear();
        QDragEnterEvent enter({2, 2}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(at, &enter);
        QCOMPARE(enter.isAccepted(), !chosen.isEmpty());
        QDropEvent drop({2, 2}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&selector, &drop);
        QCOMPARE(drop.isAccepted(), !chosen.isEmpty());
        QCOMPARE(m_said.filter("path "), QStringList("path " + chosen).mid(chosen.isEmpty()));
        QCOMPARE(selector.deEdit()->text(), QString("0"));
    }
}

void SelectorsTest::shiftsOnlyWhenBound()
{
    DispABase panel;
    DispABase other;
    AXafsFileSelect selector;
    QSignalSpy updated(&selector, &AXafsFileSelect::updated);
    selector.newFile(path("a.dat"));
    const LogCatcher log;
    typeDE(selector, "5");
    QCOMPARE(selector.dE(), 0.0);
    QVERIFY(selector.deEdit()->isHidden());
    selector.setDisplay(&panel);
    QVERIFY(!selector.deEdit()->isHidden());
    typeDE(selector, "5");
    QCOMPARE(selector.dE(), 5.0);
    QCOMPARE(log.lines(), (QStringList{"set new de", "bb"}));
    selector.setDisplay(&other);
    typeDE(selector, "1,5"); // no number
    QCOMPARE(selector.dE(), 0.0);
    QCOMPARE(log.lines().mid(2), (QStringList{"set new de", "bb"}));
    QCOMPARE(updated.count(), 2);
    painted(panel);
    painted(other);
    QVERIFY(!panel.area()->isRangeSet()); // draws on the panel it was bound to last
    QVERIFY(other.area()->isRangeSet());
    selector.clearFileName();
    typeDE(selector, " -2e0 ");
    QCOMPARE(selector.dE(), -2.0);
    QCOMPARE(log.lines().mid(4), QStringList("set new de"));
    QCOMPARE(updated.count(), 2);
}

void SelectorsTest::drawsMarkers()
{
    const double dE = 20;
    DispABase panel;
    panel.resize(700, 500);
    AXafsFileSelect selector;
    selector.setDisplay(&panel);
    selector.setDE(dE);
    selector.newFile(path("a.dat"));
    const double energies[] = {7092 - dE, 7112 - dE, 7137 - dE};
    selector.setEdge(energies[0], energies[1], energies[2]);
    selector.fitVictoreens();
    const QImage image = painted(panel);
    const ChCoord &coord = *panel.coord();
    const auto isClose = [](double a, double b) { return qAbs(a - b) < 1e-9; }; // some roundings
    // 7062.5 to 7161.5 and 0.2 to 1.2, and 5 % of the span on both sides
    QVERIFY(isClose(coord.xMin(), 7057.55 - dE) && isClose(coord.xMax(), 7166.45 - dE));
    QVERIFY(isClose(coord.yMin(), 0.15) && isClose(coord.yMax(), 1.25));
    // Below the spectrum there is nothing but the markers: (200, 200, 200), black, the same.
    const double y = coord.sy(0.175);
    const int marker[] = {55, 255, 55};
    for (int i = 0; i < 3; ++i) {
        const double x = coord.sx(energies[i]);
        QVERIFY(qAbs(darkness(image, y, x - 2, x + 2) - marker[i]) <= 12); // smoothed by bytes
    }
    QVERIFY(qAbs(darkness(image, y, coord.frameX0() + 3, coord.frameX1() - 3) - 365) <= 36);
    // Another spectrum gets its own range, whatever was zoomed to before.
    panel.coord()->setRange(0, 0, 1, 1);
    selector.newFile(path("b.dat"));
    painted(panel);
    QVERIFY(isClose(coord.xMin(), 8924.55 - dE));
}

void SelectorsTest::drawsOddSpectra()
{
    DispABase panel;
    AXafsFileSelect selector;
    selector.setDisplay(&panel);
    for (const char *text : {"7112 0.5\n", "7112 0.5\n7113 0.5\n", "7112 nan\nnan 1\n7113 -inf\n",
                             "-1e308 -1e308\n1e308 1e308\n", ""}) {
        selector.newFile(m_files.write("odd.dat", text));
        const QImage image = painted(panel);
        QImage white(image.size(), image.format());
        white.fill(Qt::white);
        QCOMPARE(image == white, selector.points().isEmpty());
        QCOMPARE(panel.coord()->hasContent(), !selector.points().isEmpty());
    }
}

void SelectorsTest::references()
{
    ARefFile first;
    ARefFile second;
    RefFiles set;
    set.append(&first);
    set.append(&second);
    connect(&second, &ARefFile::changedUse, [this](bool f) { say(f ? "row on" : "row off"); });
    connect(&set, &RefFiles::changedUse, [this](bool f) { say(f ? "set on" : "set off"); });
    connect(second.selector(), &AFileSelect::selectedFile, [this] { say("selector"); });
    connect(&second, &ARefFile::selectedFile, [this] { say("row"); });
    connect(&set, &RefFiles::selectedFile, [this] { say("set"); });
    connect(&second, &ARefFile::foundNewEdge, [this](double e) { say(QString("edge %1").arg(e)); });
    const auto said = [this] {
        m_said.sort(); // who of several listeners hears first is not promised
        return std::exchange(m_said, {}).join(", ");
    };
    click(second, "UseCB");
    QCOMPARE(said(), QString("row on, set on"));
    second.setUse(true);
    QCOMPARE(said(), QString());
    second.setUse(false); // heard twice
    QCOMPARE(said(), QString("row off, row off, set off, set off"));
    QVERIFY(!second.isUsed());
    second.selector()->newFile(path("a.dat"));
    QCOMPARE(m_said.last(), QString("edge 7112"));
    QCOMPARE(said(), QString("edge 7112, row, selector, set"));
    second.selector()->newFile(path("no.dat"));
    QCOMPARE(said(), QString("row, selector, set"));
    first.selector()->clearFileName();
    QCOMPARE(said(), QString("set"));
    for (const char *name : {"RatioDisp", "AmountDisp"}) {
        const auto *field = first.findChild<QLineEdit *>(name);
        QVERIFY(field->isReadOnly());
        QCOMPARE(field->styleSheet(), QString("background-color: rgb(255, 255, 220);"));
    }
    QCOMPARE(first.valence(), 1.0);
}

void SelectorsTest::maps_data()
{
    QTest::addColumn<QByteArray>("text"); // of map.txt; or "missing", "processed", "clear"
    QTest::addColumn<QString>("said");
    QTest::addColumn<QSize>("grid");
    QTest::addColumn<QString>("energy");
    QTest::addColumn<QString>("problem");
    const auto row = [](const char *name, const QByteArray &text, const char *said,
                        const QSize &grid, const char *energy, const char *problem) {
        QTest::newRow(name) << text << QString(said) << grid << QString(energy) << QString(problem);
    };
    const QSize before(1, 1); // every row starts with such a map at 7000 eV
    const QByteArray size = "# X-NUM 2\n# Y-NUM 1\n";
    const QByteArray pixels = "0 0 1 2\n1 0 3\n";
    row("text", size + pixels, "dir, data, selected", {2, 1}, "7000", "");
    row("its energy comes while it is read", size + "# ENERGY : 8333.25 eV\n" + pixels,
        "dir, energy 8333.25 at width 1, data, selected", {2, 1}, "8333.25", "");
    row("no grid", pixels, "dir, lost, selected", {0, 0}, "7000",
        "its header gives no width or no height");
    row("no pixel", size, "dir, lost, selected", {2, 1}, "7000", "it holds no pixel");
    row("missing: the map stays", "missing", "dir, selected", before, "7000",
        "there is no such readable file");
    row("processed, whatever its suffix", "processed", "dir, data, selected", {3, 2}, "7000", "");
    row("damaged processed: the map stays", "2dData-V9", "dir, selected", before, "7000",
        "its header is not that of a processed map");
    row("clear", "clear", "lost, selected", {0, 0}, "7000", "");
}

void SelectorsTest::maps()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, problem);
    QFETCH(QSize, grid);
    AEPoint row;
    row.fileSelect()->newFile(m_files.write("one.dat", "# X-NUM 1\n# Y-NUM 1\n0 0 1\n"));
    row.energyEdit()->setText("7000");
    QFile::remove(path("map.txt"));
    if (text == "processed") {
        TDData0 file;
        file.width = 3;
        file.height = 2;
        file.data.fill(0.5, 6);
        file.valid.fill(true, 6);
        QVERIFY(file.write(path("map.txt")));
    } else if (text != "missing") {
        m_files.write("map.txt", text);
    }
    connect(&row, &AEPoint::newDir, [this](const QString &d) { say(d == m_folder ? "dir" : d); });
    connect(&row, &AEPoint::newEnergy,
            [&](double e) { say(QString("energy %1 at width %2").arg(e).arg(row.xNum())); });
    connect(&row, &AEPoint::newData, [this] { say("data"); });
    connect(&row, &AEPoint::lostData, [this] { say("lost"); });
    connect(row.fileSelect(), &AFileSelect::selectedFile, [this] { say("selected"); });
    const LogCatcher log;
    act(*row.fileSelect(), text == "clear" ? "clear" : "file map.txt");
    QTEST(m_said.join(", "), "said");
    QCOMPARE(QSize(row.xNum(), row.yNum()), grid);
    QCOMPARE(row.isLoaded(), !m_said.contains("lost"));
    QTEST(row.energyEdit()->text(), "energy");
    QCOMPARE(row.energyEdit()->cursorPosition() == 0, m_said.join(' ').contains("energy"));
    QCOMPARE(row.fileSelect()->problem(),
             problem.isEmpty() ? QString() : path("map.txt") + ": " + problem);
    QCOMPARE(log.lines().contains(QString("size %1 %2").arg(grid.width()).arg(grid.height())),
             text.contains('\n'));
}

void SelectorsTest::pointRow()
{
    AEPoint row;
    QVERIFY(!row.isLoaded() && !row.isUsed() && !row.isLcf() && !row.isVPoint());
    const QFileDialog *dialog = row.fileSelect()->dialog();
    QCOMPARE(dialog->nameFilters(), (QStringList{"Maps (*.dat *.txt)", "All (* *.*)"}));
    QCOMPARE(dialog->fileMode(), QFileDialog::ExistingFiles);
    QSignalSpy changed(&row, &AEPoint::changedCB);
    for (const char *name : {"UseCB", "LCFCB", "VPointCB"}) {
        click(row, name);
    }
    QVERIFY(row.isUsed() && row.isLcf() && row.isVPoint());
    QCOMPARE(changed.count(), 3);
    row.setChecks(false, false, false);
    QVERIFY(!row.isUsed() && !row.isLcf() && !row.isVPoint());
    QCOMPARE(changed.count(), 3); // by hand alone
    QSignalSpy energy(&row, &AEPoint::newEnergy);
    row.energyEdit()->setText("7112.5");
    QCOMPARE(energy.count(), 0);
    QTest::keyClick(row.energyEdit(), Qt::Key_Return);
    QCOMPARE(energy.count(), 1);
    QCOMPARE(energy[0][0].toDouble(), 7112.5);
}

QTEST_MAIN(SelectorsTest)

#include "tst_selectors.moc"
