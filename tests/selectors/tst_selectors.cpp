// The widgets that choose files: what they say, in which order, and what is there when they say it.
#include "../TestFiles.h"
#include "display/DispABase.h"
#include "images/AEPoint.h"
#include "spectra/AXafsFileSelect.h"

#include <QAbstractButton>
#include <QAction>
#include <QDropEvent>
#include <QFileDialog>
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

} // namespace

class SelectorsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void choices_data();
    void choices();
    void drops_data();
    void drops();
    void drawsOddSpectra();
    void maps();

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
    } else {
        QCOMPARE(verb, QString("save"));
        selector.setMode(AFileSelect::Save);
        selector.setDefaultExtension(rest);
    }
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
    saves("save, no extension", "", "new", "new");
    plain("several", {"files a.dat b.dat"}, {"dir ~", "paths ~/a.dat|~/b.dat", "selected"},
          "a.dat b.dat");
    plain("a link", {"file sub/link.dat"}, {"dir ~", "path ~/sub/link.dat", "selected"},
          "~/sub/link.dat");
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
    row("a name that nobody encoded", {QUrl("file://" + path("a#b.dat"))}, "~/a#b.dat");
    row("no such file", {QUrl("file:///no/such.dat")}, "/no/such.dat");
    row("a share", {QUrl("file://host/share/a.dat")}, "//host/share/a.dat");
    row("not a file", {QUrl("http://host/a.dat")}, "");
    row("not a file before a file", {QUrl("ftp://host/a.dat"), urlOf("a.dat")}, "");
    row("no scheme", {QUrl("a.dat")}, "");
}

void SelectorsTest::drops()
{
    QFETCH(QList<QUrl>, urls);
    QFETCH(QString, chosen);
    for (const char *name : kOddNames) {
        m_files.write(name, "1 1\n");
    }
    QMimeData data;
    data.setUrls(urls);
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

void SelectorsTest::drawsOddSpectra()
{
    DispABase panel;
    AXafsFileSelect selector;
    selector.setDisplay(&panel);
    for (const char *text : {"7112 0.5\n", "7112 0.5\n7113 0.5\n", "7112 nan\nnan 1\n7113 -inf\n",
                             "-1e308 -1e308\n1e308 1e308\n", ""}) {
        selector.newFile(m_files.write("odd.dat", text));
        panel.area()->grab();
        QCOMPARE(panel.coord()->hasContent(), !selector.points().isEmpty());
    }
}

void SelectorsTest::maps()
{
    AEPoint row;
    row.fileSelect()->newFile(m_files.write("one.dat", "# X-NUM 1\n# Y-NUM 1\n0 0 1\n"));
    connect(&row, &AEPoint::newEnergy,
            [&](double e) { say(QString("energy %1 at width %2").arg(e).arg(row.xNum())); });
    connect(&row, &AEPoint::newData, [this] { say("data"); });
    connect(&row, &AEPoint::lostData, [this] { say("lost"); });
    connect(row.fileSelect(), &AFileSelect::selectedFile, [this] { say("selected"); });
    const auto said = [&](const QString &step) {
        m_said.clear();
        act(*row.fileSelect(), step);
        return m_said.join(", ");
    };
    m_files.write("map.txt", "# X-NUM 2\n# Y-NUM 1\n# ENERGY : 8333.25 eV\n0 0 1 2\n1 0 3\n");
    m_files.write("none.txt", "0 0 1 2\n");
    m_files.write("damaged.txt", "2dData-V9");
    QCOMPARE(said("file map.txt"), "energy 8333.25 at width 1, data, selected"); // while it is read
    QCOMPARE(row.energyEdit()->text(), "8333.25");
    QCOMPARE(said("file missing.txt"), "selected"); // the map stays
    QCOMPARE(said("file damaged.txt"), "selected");
    QVERIFY(row.isLoaded() && row.fileSelect()->problem().contains("damaged.txt: "));
    QCOMPARE(said("file none.txt"), "lost, selected");
    QVERIFY(!row.isLoaded() && row.fileSelect()->problem().contains("no width"));
    said("file map.txt");
    QCOMPARE(said("clear"), "lost, selected");
    QVERIFY(row.fileSelect()->problem().isEmpty());
}

QTEST_MAIN(SelectorsTest)

#include "tst_selectors.moc"
