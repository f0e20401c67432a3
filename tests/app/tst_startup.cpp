// From the command line to the window.
#include "../TestFiles.h"
#include "app/Body.h"
#include "app/StartUp.h"
#include "display/DispABase.h"
#include "images/AEPoint.h"
#include "panel/FourPs.h"
#include "session/Catalogue.h"
#include "spectra/ARefFile.h"
#include "spectra/AXafsFileSelect.h"

#include <QGridLayout>
#include <QLabel>
#include <QMenuBar>
#include <QPaintEngine>
#include <QStatusBar>
#include <QtTest>

#include <sys/stat.h>

namespace {

/// A surface that keeps the texts painted on it and nothing else.
class TextRecorder : public QPaintDevice, private QPaintEngine {
public:
    TextRecorder() : QPaintEngine(AllFeatures) {}
    QString texts;

private:
    QPaintEngine *paintEngine() const override { return const_cast<TextRecorder *>(this); }
    int metric(PaintDeviceMetric m) const override
    {
        return m == PdmDevicePixelRatioScaled ? QPaintDevice::metric(m)
               : m == PdmDevicePixelRatio     ? 1
                                              : 96; // dots and dots per inch
    }
    bool begin(QPaintDevice * /*device*/) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState & /*state*/) override {}
    void drawPixmap(const QRectF & /*to*/, const QPixmap & /*p*/, const QRectF & /*r*/) override {}
    void drawPath(const QPainterPath & /*path*/) override {}
    void drawPolygon(const QPointF * /*points*/, int /*n*/, PolygonDrawMode /*mode*/) override {}
    void drawTextItem(const QPointF & /*at*/, const QTextItem &i) override { texts += i.text(); }
    Type type() const override { return User; }
};

} // namespace

class StartUpTest : public QObject {
    Q_OBJECT

private slots:
    void languages_data();
    void languages();
    void sessions_data();
    void sessions();
    void firstSessionIsTaken();
    void window_data();
    void window();
    void japanese();
    void edgeJump();

private:
    TestFiles m_files;
};

void StartUpTest::languages_data()
{
    QTest::addColumn<bool>("japanese");
    for (const char *arguments : {"", "-j", "-e -j", "-j -e a.ini -j", "-E", "--e", "-e=", "-e-"}) {
        QTest::newRow(arguments) << true;
    }
    for (const char *arguments : {"-e", "-j -e", "-e -x  a.ini", "-e -j -e", "-e -J", "-e --j"}) {
        QTest::newRow(arguments) << false;
    }
}

void StartUpTest::languages()
{
    QTEST(orvel::wantsJapanese(QString(QTest::currentDataTag()).split(' ')), "japanese");
}

void StartUpTest::sessions_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isSession");
    const auto row = [](const char *name, const QByteArray &bytes, bool isSession) {
        QTest::newRow(name) << bytes << isSession;
    };
    row("the group alone", "[Session]", true);
    row("other line ends", "[Session]\r\nVersion=1\r\n[View]\r\n", true);
    row("mark", "\xEF\xBB\xBF[Session]\nVersion=1\n", true);
    row("comments and blank lines first", "; [View]\n\n# note\n  [Session]  \n", true);
    row("second group", "[View]\n[Session]\n", false);
    row("other letters", "[session]\n", false);
    row("longer name", "[Sessions]\n", false);
    row("in a value", "note=[Session]\n", false);
    row("empty", "", false);
    row("a map", "# X-NUM 2\n# Y-NUM 1\n0 0 1\n", false);
    row("binary", QByteArray("\0\xFF\xFE[\0S\n[\x01]\n[Session]\n", 21), false);
    row("largest", "[Session]\n" + QByteArray((1 << 20) - 10, '\n'), true);
    row("too large", "[Session]\n" + QByteArray((1 << 20) - 9, '\n'), false);
}

void StartUpTest::sessions()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isSession);
    const QString path = m_files.write("tried.ini", bytes);
    QCOMPARE(orvel::sessionArgument({path}), isSession ? path : QString());
}

void StartUpTest::firstSessionIsTaken()
{
    const QString first = m_files.write("first.ini", "[Session]\n");
    const QString second = m_files.write("second.ini", "[Session]\n");
    const QString pipe = m_files.path("pipe"); // opening it would wait for a writer for ever
    QCOMPARE(mkfifo(qPrintable(pipe), 0600), 0);
    const QStringList others = {"-e", "",          "no such file", m_files.path("."), "/",
                                pipe, "/dev/zero", "/dev/null",    "[Session]",       "-j"};
    QCOMPARE(orvel::sessionArgument(others), QString());
    QCOMPARE(orvel::sessionArgument(others + QStringList{first, second}), first);
    QCOMPARE(orvel::sessionArgument({second, first, "-e"}), second);
}

void StartUpTest::window_data()
{
    QTest::addColumn<bool>("japanese");
    QTest::newRow("English") << false;
    QTest::newRow("Japanese") << true;
}

void StartUpTest::window()
{
    QFETCH(bool, japanese);
    orvel::Translators translator;
    if (japanese) {
        orvel::installJapanese(translator);
    }
    Body body;
    QCOMPARE(body.windowTitle(), QString("orvel"));
    QCOMPARE(body.objectName(), QString("Body"));
    QCOMPARE(body.size(), QSize(869, 121));
    const auto *outer = qobject_cast<QGridLayout *>(body.centralWidget()->layout());
    const auto *inner = qobject_cast<QGridLayout *>(outer->itemAtPosition(0, 0)->layout());
    QCOMPARE(inner->itemAt(0)->widget(), body.panel());
    QCOMPARE(
        (QStringList{body.centralWidget()->objectName(), outer->objectName(), inner->objectName(),
                     body.menuBar()->objectName(), body.statusBar()->objectName()}),
        (QStringList{"centralwidget", "gridLayout_2", "bodyLayout", "menubar", "statusbar"}));
    QCOMPARE(outer->count() + inner->count(), 2);
    QCOMPARE(body.panel()->parentWidget(), body.centralWidget());
    QCOMPARE(body.menuBar()->geometry(), QRect(0, 0, 869, 17));
    QVERIFY(body.menuBar()->actions().isEmpty());
    body.show();
    QVERIFY(QTest::qWaitForWindowExposed(&body));
    QVERIFY(body.height() > 121); // the panel makes it grow
    QCOMPARE(body.windowTitle(), QString("orvel"));
    QCOMPARE(body.findChild<QLabel *>("RefName")->text(), QString(japanese ? "標準1" : "Ref 1"));
}

// No row: "MainWindow" of the window, whose title is fixed, and "Edge Jump(1) : %1", since no graph
// shows a second edge jump. What AXafsFileSelect draws is in edgeJump().
void StartUpTest::japanese()
{
    orvel::Translators translator;
    orvel::installJapanese(translator);
    const AFileSelect file;
    const ARefFile reference;
    const AEPoint point;
    const auto shown = [](const QWidget &owner, const QStringList &names) {
        QStringList texts = {owner.windowTitle()};
        for (const QString &name : names) {
            texts += owner.findChild<QWidget *>(name)->property("text").toString();
        }
        return texts;
    };
    QCOMPARE(shown(file, {"DE", "ClearB", "FileLabel", "SelB", "DELabel"}),
             (QStringList{"フレーム", "0", "クリア", "ファイル", "選択", "ΔE[eV]"}));
    QCOMPARE(shown(reference, {"Valence", "RefName", "UseCB", "label", "label_2", "label_3"}),
             (QStringList{"フレーム", "1", "標準1", "使用", "価数", "比率", "Δμt"}));
    const QStringList captioned = {"Energy", "Mut1", "Mut2", "Mut3", "Mut4", "MutT", "ShowMapB"};
    QCOMPARE(shown(point, QStringList("NumDisp") + QStringList(captioned).replaceInStrings(
                                                       QRegularExpression("$"), "Label")),
             (QStringList{"フレーム", "番号 ", "  エネルギー(eV)", "  μt(標準1)", "  μt(標準2)",
                          "μt(標準3)", "μt(標準4)", "  μt(解析対象)", "   2D "}));
    for (const QString &name : captioned) { // hidden, they name the fields to screen readers
        QCOMPARE(point.findChild<QLabel *>(name + "Label")->buddy()->objectName(), name);
    }
}

void StartUpTest::edgeJump()
{
    DispABase panel;
    AXafsFileSelect selector;
    selector.setDisplay(&panel);
    selector.setEdge(7020, 7030, 7040);
    QByteArray step;
    for (int e = 7000; e < 7060; ++e) {
        step += QByteArray::number(e) + (e < 7030 ? " 0.25\n" : " 1.75\n");
    }
    selector.newFile(m_files.write("step.dat", step));
    const auto textsOf = [&] {
        TextRecorder recorder;
        QStylePainter painter;
        painter.begin(&recorder, &panel);
        selector.draw(&painter);
        painter.end();
        return recorder.texts;
    };
    const QString jump = textsOf().section("Edge Jump : ", 1);
    QCOMPARE(jump, QString("1.5")); // six digits
    QCOMPARE(panel.findChild<QLabel *>("XTitle")->text(), QString("Eng.[eV]"));
    orvel::Translators translator;
    orvel::installJapanese(translator);
    QVERIFY(textsOf().endsWith("エッジジャンプ: " + jump));
    QCOMPARE(panel.findChild<QLabel *>("XTitle")->text(), QString("エネルギー[eV]"));
    QCOMPARE(panel.findChild<QLabel *>("YTitle")->text(), QString("μt"));
}

QTEST_MAIN(StartUpTest)

#include "tst_startup.moc"
