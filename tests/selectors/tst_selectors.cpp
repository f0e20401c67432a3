// The widgets that choose files: what they say, in which order, and what is there when they say it.
#include "images/AEPoint.h"
#include "spectra/AXafsFileSelect.h"
#include "tests/TestFiles.h"
#include "tests/display/Gui.h"

namespace {

const char *const kOddNames[] = {"a b.dat", "a#b.dat", "a%23b.dat", "標準.dat"};

/// A step of height 1 at an edge [eV]: 0.2 below and 1.2 above, from 49.5 eV before to 49.5 behind.
QByteArray stepAt(int edge)
{
    QByteArray text;
    for (int e = edge - 50; e < edge + 50; ++e) {
        text += QByteArray::number(e + 0.5) + (e < edge ? " 0.2\n" : " 1.2\n");
    }
    return text;
}

} // namespace

class SelectorsTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_said.clear();
        m_files.write("a.dat", stepAt(7112));
        m_files.write("empty.dat", "# nothing\n");
    }

    void choices_data()
    {
        // What is said in the last step, with the points of a spectrum; what stands in the field;
        // the problem of a spectrum, "-" where none is read.
        const char *const read = "dir ~ 100; path ~/a.dat 100; selected 100; edge 7112";
        window::table<QString, QString, QString, QString>(
            {"steps", "said", "name", "problem"},
            {{"opening adds no suffix", "file new", "dir ~; path ~/new; selected", "~/new", "-"},
             {"save", "save dat; file new", "dir ~; path ~/new.dat; selected", "~/new.dat", "-"},
             {"save, another suffix stays", "save dat; file a.txt",
              "dir ~; path ~/a.txt.dat; selected", "~/a.txt.dat", "-"},
             {"several", "files a.dat b.dat", "dir ~; paths ~/a.dat|~/b.dat; selected",
              "a.dat b.dat", "-"},
             {"clear twice", "file a.dat; clear; clear", "selected", "", "-"},
             {"read", "file a.dat", read, "~/a.dat", ""},
             {"missing: the spectrum stays", "file a.dat; file no.dat",
              "dir ~ 100; path ~/no.dat 100; selected 100", "~/no.dat",
              "~/no.dat: there is no such readable file"},
             {"no point: the spectrum goes", "file a.dat; file empty.dat",
              "dir ~ 0; path ~/empty.dat 0; selected 0", "~/empty.dat",
              "~/empty.dat: it holds no data point"},
             {"clear a spectrum", "file a.dat; clear", "path  0; selected 0", "", ""},
             {"dialog: the choice, then the reading", "dialog a.dat",
              QString("dir ~ 0; paths ~/a.dat 0; selected 0; ") + read, "~/a.dat", ""}});
    }

    void choices()
    {
        QFETCH(QString, steps);
        QFETCH(QString, problem);
        AFileSelect file;
        AXafsFileSelect spectrum;
        const bool isPlain = problem == "-";
        AFileSelect &selector = isPlain ? file : spectrum;
        listen(selector, [&] {
            return isPlain ? QString() : ' ' + QString::number(spectrum.points().size());
        });
        connect(&spectrum, &AXafsFileSelect::foundNewEdge,
                [this](double e) { say("edge " + QString::number(e)); });
        for (const QString &step : steps.split("; ")) {
            m_said.clear();
            act(selector, step);
        }
        QTEST(m_said.join("; "), "said");
        QTEST(QString(selector.text()).replace(m_folder, "~"), "name");
        QString shown; // a warning icon in the field, with its tool tip
        for (const QAction *icon : selector.nameEdit()->actions()) {
            shown += icon->icon().isNull() ? "no icon" : icon->toolTip().replace(m_folder, "~");
        }
        QCOMPARE(shown, isPlain ? QString() : problem);
    }

    void drops_data()
    {
        const auto url = [this](const QString &name) { return QUrl::fromLocalFile(path(name)); };
        window::table<QList<QUrl>, QString>( // refused where nothing is chosen
            {"urls", "chosen"},
            {{"a name that nobody encoded", {QUrl("file://" + path("a#b.dat"))}, "~/a#b.dat"},
             {"no such file", {QUrl("file:///no/such.dat")}, "/no/such.dat"},
             {"not a file before a file", {QUrl("ftp://host/a.dat"), url("a.dat")}, ""}});
        for (const char *name : kOddNames) {
            QTest::newRow(name) << QList<QUrl>{url(name)} << QString("~/") + name;
        }
    }

    void drops()
    {
        QFETCH(QList<QUrl>, urls);
        QFETCH(QString, chosen);
        for (const char *name : kOddNames) {
            m_files.write(name, "1 1\n");
        }
        AFileSelect selector;
        selector.showDE(true);
        listen(selector, [] { return QString(); });
        // Whichever part of the selector it comes in over: the fields leave drops to the selector.
        for (QWidget *at : QWidgetList{&selector, selector.deEdit(), selector.nameEdit()}) {
            m_said.clear();
            QCOMPARE(window::drop(at, urls), !chosen.isEmpty());
            QCOMPARE(m_said.filter("path "), QStringList("path " + chosen).mid(chosen.isEmpty()));
            QCOMPARE(selector.deEdit()->text(), "0");
        }
    }

    void maps()
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
        QCOMPARE(said("file map.txt"),
                 "energy 8333.25 at width 1, data, selected"); // while it is read
        QCOMPARE(said("file missing.txt"), "selected");        // the map stays
        QVERIFY(row.isLoaded() && row.fileSelect()->problem().contains("missing.txt: "));
        QCOMPARE(said("file none.txt"), "lost, selected");
        QVERIFY(!row.isLoaded() && row.fileSelect()->problem().contains("no width"));
        said("file map.txt");
        QCOMPARE(said("clear"), "lost, selected");
    }

private:
    void say(const QString &text) { m_said += QString(text).replace(m_folder, "~"); }
    QString path(const QString &name) const { return m_folder + '/' + name; }

    void listen(const AFileSelect &s, const std::function<QString()> &state)
    {
        connect(&s, &AFileSelect::newDir,
                [=, this](const QString &d) { say("dir " + d + state()); });
        connect(&s, &AFileSelect::newFilePath,
                [=, this](const QString &p) { say("path " + p + state()); });
        connect(&s, &AFileSelect::newFilePaths,
                [=, this](const QStringList &p) { say("paths " + p.join('|') + state()); });
        connect(&s, &AFileSelect::selectedFile, [=, this] { say("selected" + state()); });
    }

    void act(AFileSelect &selector, const QString &step)
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
            selector.findChild<QAbstractButton *>("ClearB")->click();
        } else {
            QCOMPARE(verb, "save");
            selector.setMode(AFileSelect::Save);
            selector.setDefaultExtension(rest);
        }
    }

    TestFiles m_files;
    QString m_folder = QFileInfo(m_files.path(".")).canonicalFilePath();
    QStringList m_said; ///< what was heard, with "~" for the folder of the files
};

QTEST_MAIN(SelectorsTest)

#include "tst_selectors.moc"
