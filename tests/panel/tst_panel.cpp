#include "session/Catalogue.h"
#include "tests/panel/Window.h"

#include <QLabel>
#include <QLayout>
#include <QListWidget>
#include <QRegularExpression>

using namespace window;

namespace {

using Act = std::function<void(FourPs &)>;

const QString kNoMap = QStringLiteral("V Point is not selected");
const QString kNoTarget = QStringLiteral("V Point is not selected.");
const QString kNoLcf =
    QStringLiteral("Energy Range is not selected, which should by selected by CB of TR.");

/// The steps that ran on a panel without inputs, by the message that stops each.
QString stepsOf(FourPs &panel)
{
    QString ran;
    for (const QString &line : newMessages(panel)) {
        ran += line == kNoMap ? "M" : line == kNoTarget ? "T" : line == kNoLcf ? "L" : line.left(4);
    }
    return ran;
}

struct Case {
    QString name;
    QString change;
    QString button;
    QStringList english;
    QStringList japanese;
};

} // namespace
Q_DECLARE_METATYPE(Act)
Q_DECLARE_METATYPE(Case)

class PanelTest : public QObject {
    Q_OBJECT

private slots:
    void objects_data();
    void objects();
    void rowsAndReferences();
    void slotsInOrder();
    void runs_data();
    void runs();
    void effects_data();
    void effects();
    void checkMessages_data();
    void checkMessages();
    void everyTextIsShown();
    void axisTitles();
    void rowValues_data();
    void rowValues();
    void edgeRule();
    void shiftedSpectra();
    void messageKeepsWhatIsSelected();

private:
    std::vector<Case> cases() const;
    QStringList provoke(FourPs &panel, const Case &one) const;
    QStringList paintedTitles(FourPs &panel) const;

    Sample m_sample;
};

/// Name, kind, text; for buttons whether they are on.
static const char *const kObjects = R"(
EdgeE QLineEdit 8350|PreEEndDE QLineEdit -50|PostEStartDE QLineEdit 100|HgAFrom QLineEdit 1.5
HgATo QLineEdit 3.5|HgABoxes QLineEdit 51|HgTFrom QLineEdit -0.2|HgTTo QLineEdit 1.2
HgTBoxes QLineEdit 51|CalcRes QLineEdit |LCFRes QLineEdit |TargetDMut QLineEdit
Message QPlainTextEdit |TargetFile AXafsFileSelect |DispFSelect AFileSelect
SaveFSelect AFileSelect |SelectedFs QListWidget |Disps Displays
CalcTargetB QPushButton 0 Calc.|CalcMapB QPushButton 0 Calc.|WriteB QPushButton 0 Write
RemoveAFile QPushButton 0 Remove|LCFB QPushButton 0 LCF
OpenSessionB QPushButton 0 Open session...|SaveSessionB QPushButton 0 Save session...
TypeNonEquiv QCheckBox 0 Non Equiv. Meth.|HgAAuto QCheckBox 0 Auto|HgTAuto QCheckBox 0 Auto
FullRangeCB QCheckBox 1 Full Range|MapWGrid QCheckBox 0 with Grid
ShowDMap QCheckBox 1 Show Data Map|ShowDAB QCheckBox 1 Show Graphs
ShowMap QCheckBox 1 Show Res. Map
TypeTMKisExact QRadioButton 1 Exact 4 points|TypeTMKisLS QRadioButton 0 Least Square
SubPreEforRef QRadioButton 1 Pre E. Line|SubPostEforRef QRadioButton 0 Post E. Line
SubPreEforTarget QRadioButton 1 Pre E. Line|SubPostEforTarget QRadioButton 0 Post E. Line
NonEquivBGVic QRadioButton 1 Vic.|NonEquivBGLinear QRadioButton 0 Linear
NNone QRadioButton 1 No normalize|NBySubPre QRadioButton 0 Sub pre Vic.
NByEJ QRadioButton 0 Normalized by edge jump|NBy2Vics QRadioButton 0 Normalized by 2 Vics 
MapMut0 QRadioButton 0 mu0|RecMut0 QCheckBox 1 mu0|HgMut0 QRadioButton 0 mut0
MapC1 QRadioButton 0 C1|RecC1 QCheckBox 1 C1|HgC1 QRadioButton 0 C1
MapC2 QRadioButton 0 C2|RecC2 QCheckBox 1 C2|HgC2 QRadioButton 0 C2
MapDMut1 QRadioButton 0 dMut 1|RecDMut1 QCheckBox 1 dMut 1|HgDMut1 QRadioButton 0 dMut 1
MapDMut2 QRadioButton 0 dMut 2|RecDMut2 QCheckBox 1 dMut 2|HgDMut2 QRadioButton 0 dMut 2
MapDMut3 QRadioButton 0 dMut 3|RecDMut3 QCheckBox 1 dMut 3|HgDMut3 QRadioButton 0 dMut 3
MapDMut4 QRadioButton 0 dMut 4|RecDMut4 QCheckBox 1 dMut 4|HgDMut4 QRadioButton 0 dMut 4
MapAmount QRadioButton 0 Amount|RecAmount QCheckBox 1 Amount|HgAmount QRadioButton 0 Amouont
MapRatio1 QRadioButton 0 Ratio 1|RecRatio1 QCheckBox 1 Rattio 1|HgRatio1 QRadioButton 0 Ratio 1
MapRatio2 QRadioButton 0 Ratio2|RecRatio2 QCheckBox 1 Ratio 2|HgRatio2 QRadioButton 0 Ratio 2
MapRatio3 QRadioButton 0 Ratio 3|RecRatio3 QCheckBox 1 Ratio 3|HgRatio3 QRadioButton 0 Ratio 3
MapRatio4 QRadioButton 0 Ratio 4|RecRatio4 QCheckBox 1 Ratio 4|HgRatio4 QRadioButton 0 Ratio 4
MapValence QRadioButton 1 Valence|RecValence QCheckBox 1 Valence|HgValence QRadioButton 1 Valence
)";

void PanelTest::objects_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("shows");
    for (const QString &row : QString(kObjects).split(QRegularExpression("[|\n]"))) {
        if (!row.isEmpty()) {
            QTest::newRow(qPrintable(row.section(' ', 0, 0)))
                << row.section(' ', 1, 1) << row.section(' ', 2);
        }
    }
}

void PanelTest::objects()
{
    QFETCH(QString, kind);
    const FourPs panel;
    const QString name = QTest::currentDataTag();
    const QWidget *widget = at(panel, name);
    QCOMPARE(QString(widget->metaObject()->className()), kind);
    const auto *button = qobject_cast<const QAbstractButton *>(widget);
    const QString text = widget->property("text").toString();
    QTEST(button ? QString::number(button->isChecked()) + ' ' + text : text, "shows");
    QCOMPARE(widget->styleSheet(), QStringList({"CalcRes", "LCFRes", "TargetDMut"}).contains(name)
                                       ? "background-color: rgb(255, 255, 220);"
                                   : name == "Message" ? "background-color: rgb(255, 231, 231);"
                                                       : QString());
}

void PanelTest::rowsAndReferences()
{
    const FourPs panel;
    QCOMPARE(panel.objectName(), QStringLiteral("FourPs"));
    QVERIFY(panel.findChild<QLayout *>("RefFileLayout"));
    QCOMPARE(panel.findChildren<ARefFile *>().size(), 4);
    QCOMPARE(shown(panel, "R1.RefName R4.RefName R1.Valence R1.UseCB:checked R4.UseCB:checked"),
             QStringLiteral("Ref 1 Ref 4 1 false false"));
    QCOMPARE(panel.findChildren<AEPoint *>().size(), 8);
    for (int i = 0; i < 8; ++i) {
        const AEPoint *row = point(panel, i);
        QCOMPARE(find(*row, "NumDisp")->property("text"), QStringLiteral("%1:  ").arg(i + 1));
        QVERIFY(!row->isUsed() && !row->isLcf() && !row->isVPoint());
        QCOMPARE(row->showMapButton()->isChecked(), i == 0);
        QVERIFY(!row->pickButton()->isChecked());
    }
    QCOMPARE(map(panel, "ResultMap")->title(), QStringLiteral("Result Map"));
    QCOMPARE(map(panel, "DataMap")->title(), QStringLiteral("Data Map"));
    QCOMPARE(at<AFileSelect>(panel, "SaveFSelect")->mode(), int(AFileSelect::Save));
}

void PanelTest::slotsInOrder()
{
    const QStringList expected =
        QString("noticedNewEdge(double) setEdge() updateMaps(bool) dispCalcConditions(bool) "
                "changedSubBGTypeForRef(bool) changedSubBGTypeForTarget(bool) removeAFile() "
                "receiveNewDir(QString) receiveNewEnergy(double) receiveNewFile(QString) "
                "receiveNewRef(int) receiveNewRef1() receiveNewRef2() receiveNewRef3() "
                "receiveNewRef4() receiveNewTarget() receiveNewDispFiles(QStringList) "
                "receiveNewPaths(QStringList) calcBoth() calcMap() calcTarget() calcAndWrite() "
                "clearLCFvs4PS(MouseC*) newColorLCFvs4PS(MouseC*) updateDMap() "
                "draw(Displays::DispId,DispABase*,QStylePainter*) drawMap(QStylePainter*) "
                "drawDMap(QStylePainter*) selectedNewMap() receiveNowPosInMap(double,double) "
                "receiveNowPosInDMap(double,double) lcf() mPressedInAllMut(MouseC*) "
                "dClickedInMap(MouseC*) openSession(QString) saveSession(QString)")
            .split(' ');
    QStringList found;
    const QMetaObject &meta = FourPs::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
        QCOMPARE(meta.method(i).access(), QMetaMethod::Public);
        found << meta.method(i).methodSignature();
    }
    QCOMPARE(found, expected);
}

// Which signals start which steps: M map, T target, L fit. Reference 3 holds a spectrum, nothing
// is used.
void PanelTest::runs_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<QString>("steps");
    const auto user = [](const char *steps, const char *ran) {
        QTest::newRow(steps) << Act([steps](FourPs &p) { perform(p, steps); }) << QString(ran);
    };
    const auto sent = [](const char *name, const char *ran, const Act &act) {
        QTest::newRow(name) << act << QString(ran);
    };
    user("click CalcTargetB", "T");
    user("click CalcMapB", "M");
    user("click LCFB", "L");
    user("click WriteB", "MCan'");
    user("click P8.LCFCB; click P8.VPointCB; click P7.UseCB", "MTLMTLMTL");
    user("click R4.UseCB", "MTL");
    user("type EdgeE 1", "MTL");
    user("type PreEEndDE 1", "MTL");
    user("type PostEStartDE 1", "MTL");
    user("type R3.DE 1", "MTL");
    user("type R1.DE 1; type TargetFile.DE 1", ""); // nothing is there to shift
    user("type P1.Energy 8400", "");
    user("click SubPostEforRef; click SubPostEforTarget; click TypeNonEquiv; click NByEJ", "");
    user("click MapAmount; click HgAmount; click MapWGrid; click P2.ShowMapB; click P2.FPB", "");
    sent("use by call is heard twice", "MTLMTL", [](auto &p) { reference(p, 3)->setUse(true); });
    sent("edge found", "MTL", [](auto &p) { emit reference(p, 0)->foundNewEdge(8333.256); });
    sent("no spectrum", "", [](auto &p) { emit reference(p, 0)->selectedFile(); });
    sent("a spectrum", "MTL", [](auto &p) { emit reference(p, 2)->selectedFile(); });
    sent("target shifted", "MTL", [](auto &p) { emit target(p)->updated(); });
    sent("target file", "MTL", [](auto &p) { emit target(p)->newFilePath(QString()); });
    sent("no such reference", "", [](auto &p) { p.receiveNewRef(4), p.receiveNewRef(-1); });
    sent("paths from nowhere", "", [](auto &p) { p.receiveNewPaths({"a", "b"}); });
}

void PanelTest::runs()
{
    QFETCH(Act, act);
    FourPs panel;
    reference(panel, 2)->selector()->newFile(m_sample.a);
    newMessages(panel);
    act(panel);
    QTEST(stepsOf(panel), "steps");
}

// What else follows what. The sample is loaded; its maps have two pixels.
void PanelTest::effects_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<QString>("where");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    const auto sent = [](const char *name, const char *where, const char *before, const char *after,
                         const Act &act) {
        QTest::newRow(name) << act << QString(where) << QString(before) << QString(after);
    };
    const auto user = [&](const char *steps, const char *where, const char *before,
                          const char *after) {
        const QString filled = m_sample.in(steps);
        sent(steps, where, before, after, [filled](FourPs &p) { perform(p, filled); });
    };
    const char *const kResult = "ResultMap.MinV ResultMap.MaxV";
    const char *const kData = "DataMap.MinV DataMap.MaxV";
    user("type P2.Energy 8347.5", "P2.Mut1 P2.Mut2 P2.MutT P1.Mut1", "0.8 0.2 0.5 0",
         "0.4 0.1 0.25 0");
    user("click SubPostEforRef", "P2.Mut1 P2.Mut2 P2.MutT", "0.8 0.2 0.5", "-0.2 -0.8 0.5");
    user("click SubPostEforTarget", "P2.Mut2 P2.MutT", "0.2 0.5", "0.2 -0.5");
    user("click SubPostEforTarget; click SubPreEforTarget", "P2.MutT", "0.5", "0.5");
    user("click MapRatio2", kResult, "2.5 3", "0.5 1");
    user("click P2.ShowMapB", kData, "0 0", "0.2 0.5");
    user("load P1.FileSelect %/edge.txt", kData, "0 0", "0.2 0.5");
    user("clear P1.FileSelect", "DataMap.MinV", "0", "0"); // white now; the limits stay
    user("click ShowDMap", "DataMap:visible", "true", "false");
    user("click ShowMap", "ResultMap:visible", "true", "false");
    user("click ShowDAB", "Disps:visible", "true", "false");
    user("click MoreCondsCB", "FourPCondsF:visible NonEquivCondsF:visible", "false false",
         "true true");
    user("click HgAAuto; click CalcMapB", "HgAFrom HgATo", "1.5 3.5", "2.5 3");
    user("click HgAAuto; click HgRatio1; click CalcMapB", "HgAFrom HgATo", "1.5 3.5", "0 0.5");
    user("click HgAAuto; click CalcMapB; click HgRatio2; click HgValence", "HgAFrom HgATo",
         "1.5 3.5", "2.5 3");
    user("type P4.Energy 8250; click P4.UseCB; click TypeNonEquiv; click NonEquivBGLinear; "
         "click CalcTargetB",
         "R1.RatioDisp R2.RatioDisp R1.AmountDisp R3.RatioDisp TargetDMut", "0.5 0.5   ",
         "0.5 0.5 0.5  1");
    sent("edge found", "EdgeE", "8352.5", "8333.26",
         [](FourPs &p) { emit reference(p, 3)->foundNewEdge(8333.256); });
    sent("in the map", "ResultMap.Val", "", "3",
         [](FourPs &p) { emit map(p, "ResultMap")->nowPos(1.5, 0.5); });
    sent("in the image", "DataMap.Val", "", "0",
         [](FourPs &p) { emit map(p, "DataMap")->nowPos(1.5, 0.5); });
    for (const char *name : {"R4.XafsFS", "TargetFile", "P8.FileSelect", "DispFSelect"}) {
        QTest::newRow(name) << Act([name](FourPs &p) {
            emit at<AFileSelect>(p, name)->newDir("/some/where");
            for (const AFileSelect *selector : p.findChildren<AFileSelect *>()) {
                QCOMPARE(selector->dir(), QStringLiteral("/some/where"));
            }
        }) << "EdgeE"
                            << "8352.5"
                            << "8352.5";
    }
    const auto files = [&](const char *name, const char *count, const Act &act) {
        sent(name, "SelectedFs:count", "0", count, [this, act](FourPs &p) {
            at<AFileSelect>(p, "DispFSelect")->newFiles({m_sample.a, m_sample.b, m_sample.mix});
            act(p);
        });
    };
    files("display files", "3", [](FourPs &) {});
    files("none is current", "3", [](FourPs &p) { perform(p, "click RemoveAFile"); });
    files("cleared", "0", [](FourPs &p) { perform(p, "clear DispFSelect"); });
    files("a new one for all", "1",
          [this](FourPs &p) { at<AFileSelect>(p, "DispFSelect")->newFile(m_sample.b); });
    files("one removed", "2", [this](FourPs &p) {
        auto *list = at<QListWidget>(p, "SelectedFs");
        list->setCurrentRow(1);
        perform(p, "click RemoveAFile");
        QCOMPARE(list->item(1)->text(), m_sample.mix);
    });
}

void PanelTest::effects()
{
    QFETCH(Act, act);
    QFETCH(QString, where);
    FourPs panel;
    panel.show();
    m_sample.load(panel, 2, {0.5, 0.2});
    QTEST(shown(panel, where), "before");
    act(panel);
    QTEST(shown(panel, where), "after");
}

/// What a button writes about the sample after a change, in both languages: name # change # button
/// # English # Japanese, several lines with | between. What succeeds was worked out by hand: the
/// target is half A, half B.
static const char *const kCases = R"(
target: V # click P2.VPointCB # CalcTargetB # V Point is not selected. # 非等吸収点を選択して下さい。
target: first # clear R1.XafsFS # CalcTargetB # Number of valied Ref Files is 1, which is less than 2.|The 1st Ref File is not valid. # 標準試料の数が1しかありません(最低2つ必要です)。|１番目の標準試料が有効ではありません。
target: first of three # clear R1.XafsFS; load R3.XafsFS %/a.dat; click R3.UseCB # CalcTargetB # The 1st Ref File is not valid. # １番目の標準試料が有効ではありません。
target: second # clear R2.XafsFS # CalcTargetB # Number of valied Ref Files is 1, which is less than 2.|The 2nd Ref File is not valid. # 標準試料の数が1しかありません(最低2つ必要です)。|2番目の標準試料が有効ではありません。
target: target # clear TargetFile # CalcTargetB # Target File1 is not valid. # 解析対象ファイルが設定されていません。
target: points # click P1.UseCB # CalcTargetB # Number of selected data sets 2 is not 4. # データセットが2個選ばれています。4個選択して下さい。
target: Victoreen # click TypeNonEquiv # CalcTargetB # Number of selected data sets 3 is not 5. # データセットが3個選ばれています。5個選択して下さい。
target: linear # click TypeNonEquiv; click NonEquivBGLinear # CalcTargetB # Number of selected data sets 3 is not 4. # データセットが3個選ばれています。4個選択して下さい。
map: V # click P2.VPointCB # CalcMapB # V Point is not selected # 非等吸収点を選択して下さい。
map: reference # clear R2.XafsFS # CalcMapB # Number of valied Ref Files is 1, which is less than 2.|Ref File 2 is not valid. # 標準試料の数が1しかありません(最低2つ必要です)。|標準[2]が無効です。
map: points # clear P1.FileSelect # CalcMapB # Number of selected data sets 2 is not 4. # データセットが2個選ばれています。4個選択して下さい。
map: Victoreen # click TypeNonEquiv # CalcMapB # Number of selected data sets 3 is less than 5. # マップデータがが3個しか選択されていません。(最低5個選択する必要があります)
map: linear # click TypeNonEquiv; click NonEquivBGLinear # CalcMapB # Number of selected data sets 3 is less than 4. # マップデータがが3個しか選択されていません。(最低4個選択する必要があります)
fit: range # click P3.LCFCB # LCFB # Energy Range is not selected, which should by selected by CB of TR. # 線形結合計算を行うエネルギー範囲が選択されていません(「膜厚比計算」のチェックボックスで選択)。
fit: references # clear R1.XafsFS # LCFB # Number of Valid Reference files is 1, which is less than 2 # 有効な標準試料が1個しか指定されていません(最低2つ必要です)。
write # type SaveFSelect.FileName /no/where.dat # WriteB # Can't open the file [/no/where.dat] # ファイル[/no/where.dat]が開けません。
map #  # CalcMapB #  # 
three points #  # CalcTargetB # 3ps: a = 0.5, Valence = 2.5 # 3ps: 標準1の比率 = 0.5, 価数 = 2.5
least squares # type P4.Energy 8250; click P4.UseCB; click TypeTMKisLS # CalcTargetB # 4ps2: a = 0.5, Valence = 2.5, t/ts = 1 # 4ps2: 標準1の比率=0.5, 価数=2.5, t/ts=1
NEQ # type P4.Energy 8250; click P4.UseCB; click TypeNonEquiv; click NonEquivBGLinear # CalcTargetB # Result of NEQ :: 0.500 : 0.500, Valence = 2.500, t = 1.000 # 結果(NEQ) :: 0.500 : 0.500, 価数 = 2.500, 相対厚さ = 1.000
fit #  # LCFB # Result of LCF :: 0.500 : 0.500, Valence = 2.500, Base = 0.000 # 結果(LCF) :: 0.500 : 0.500, 価数 = 2.500, ベース = 0.000
)";

std::vector<Case> PanelTest::cases() const
{
    std::vector<Case> all;
    for (const QString &row : QString(kCases).split('\n', Qt::SkipEmptyParts)) {
        const QStringList parts = row.split(" # ");
        all.push_back({parts[0], m_sample.in(parts[1]), parts[2],
                       parts[3].split('|', Qt::SkipEmptyParts),
                       parts[4].split('|', Qt::SkipEmptyParts)});
    }
    return all;
}

void PanelTest::checkMessages_data()
{
    QTest::addColumn<Case>("one");
    for (const Case &one : cases()) {
        QTest::newRow(qPrintable(one.name)) << one;
    }
}

/// Presses the button of a case; what it writes.
QStringList PanelTest::provoke(FourPs &panel, const Case &one) const
{
    m_sample.load(panel);
    perform(panel, one.change);
    newMessages(panel);
    const QString fields = shown(panel, "CalcRes LCFRes");
    const auto results = panel.results();
    at<QAbstractButton>(panel, one.button)->click();
    QStringList lines = newMessages(panel);
    for (QString &line : lines) {
        line.replace("= -0.000", "= 0.000"); // the base of the fit is 0 but for rounding
    }
    const bool isSame = panel.results() == results && shown(panel, "CalcRes LCFRes") == fields;
    if (!isSame && !one.change.contains("P4")) {
        lines << "the results changed"; // but a check failed, or the same came out
    }
    return lines;
}

void PanelTest::checkMessages()
{
    QFETCH(Case, one);
    FourPs english;
    QCOMPARE(provoke(english, one), one.english);
    orvel::Translators translator;
    orvel::installJapanese(translator);
    FourPs japanese;
    QCOMPARE(provoke(japanese, one), one.japanese);
}

/// Every text of the panel: where it stands > what it says. "header": the heads of the point
/// table; "message": provoked by the cases; "painted": the axes.
static const char *const kTexts = R"(
message > V Point is not selected.|V Point is not selected|The 1st Ref File is not valid.
message > The 2nd Ref File is not valid.|Target File1 is not valid.|Ref File %1 is not valid.
message > Number of valied Ref Files is %1, which is less than 2.
message > Number of selected data sets %1 is not %2.
message > Number of selected data sets %1 is less than %2.
message > Number of Valid Reference files is %1, which is less than 2|Can't open the file [%1]
message > Energy Range is not selected, which should by selected by CB of TR.
message > Result of LCF :: |Result of NEQ :: |, Valence = %1, t = %2|, Valence = %1, Base = %2
message > 3ps: a = %1, Valence = %2|4ps2: a = %1, Valence = %2, t/ts = %3
CalcRes > a = %1, Valence = %2, t/ts = %3 # P7.NumDisp > %1 # R3.RefName > Ref %1
header > No.|Use|Non|Equiv.|LCF|Eng.|[eV]|mut|Ref.1|Ref.2|Ref.3|Ref.4|Target|Map
header > Select 2D Map Data|Show|F.P.
painted > Eng.[eV]|mut|LCF|Valence|Num.|Thick.|M2|M3
:windowTitle > Frame # XafsHead > XAFS spectra # RefsTargetG:title > Refs/Target XAFS Spectra
TargetLabel > Target # DispOnlyLabel > Disp. Only # RemoveAFile > Remove
VicG:title > Params for Vic. Lines # EdgeLabel > Edge[eV] # PreLabel > Pre Edge End [eV]
PostLabel > Post Edge Start [eV] # EdgeE > 8350 # PreEEndDE > -50 # PostEStartDE > 100
HgAFrom > 1.5 # HgATo > 3.5 # HgTFrom > -0.2 # HgTTo > 1.2 # HgABoxes > 51 # HgTBoxes > 51
NormLabel > When drawing all mut # NNone > No normalize # NBySubPre > Sub pre Vic.
NByEJ > Normalized by edge jump # NBy2Vics > Normalized by 2 Vics | # FullRangeCB > Full Range
ProcHead > Data Processing # MoreCondsCB > More Conds # FourPLabel > 4 Points Meth.
TypeNonEquiv > Non Equiv. Meth. # NonEquivLabel >   Non Equiv. Meth.
TypeTMKLabel > Calc. Type for t, mu0, and k: | # TypeTMKisExact > Exact 4 points
TypeTMKisLS > Least Square # BGLabel > B.G.Line Type: | # NonEquivBGVic > Vic.
NonEquivBGLinear > Linear # SubRefLabel > Refs: Sub. # SubTargetLabel > Target: Sub.
SubPreEforRef > Pre E. Line # SubPostEforTarget > Post E. Line # HistG:title > Hist Grams
DispSelectLabel > Disp Select : | # FromLabel > From # ToLabel > To # BoxesLabel > Boxes
HgAAuto > Auto # HgTAuto > Auto # HgALabel > Valence # HgTLabel > Amount dMut
MapSelectLabel > Map Select # RecordSelectLabel > Record Select : # HgMut0 > mut0 # MapMut0 > mu0
HgC1 > C1 # MapC2 > C2 # HgDMut1 > dMut 1 # MapDMut2 > dMut 2 # RecDMut3 > dMut 3
RecDMut4 > dMut 4 # HgAmount > Amouont # MapAmount > Amount # HgRatio1 > Ratio 1
RecRatio1 > Rattio 1 # HgRatio2 > Ratio 2 # MapRatio2 > Ratio2 # RecRatio3 > Ratio 3
MapRatio4 > Ratio 4 # ExecG:title > Exec. and Results # CalcTargetB > Calc. # CalcMapB > Calc.
WriteB > Write # CalcResLabel > 4ps # FourPNote > 4 points. # TargetDMutLabel > dMut # LCFB > LCF
ShowDMap > Show Data Map # ShowDAB > Show Graphs # ShowMap > Show Res. Map
DataMap.Title > Data Map # ResultMap.Title > Result Map
)";

void PanelTest::everyTextIsShown()
{
    orvel::Translators translator;
    orvel::installJapanese(translator);
    QStringList written;
    for (const Case &one : cases()) {
        FourPs panel;
        written += provoke(panel, one);
    }
    FourPs panel;
    QStringList heads;
    for (const QLabel *label : at(panel, "PointHead")->findChildren<QLabel *>()) {
        heads += label->text().split('\n');
    }
    const QStringList painted = paintedTitles(panel);
    FourPs exact; // its line goes to the field alone
    m_sample.load(exact);
    perform(exact, "type P4.Energy 8250; click P4.UseCB; click CalcTargetB");

    QSet<QString> sources;
    for (const QString &row : QString(kTexts).split(QRegularExpression(" # |\n"))) {
        const QString place = row.section(" > ", 0, 0);
        for (const QString &source : row.section(" > ", 1).split('|', Qt::SkipEmptyParts)) {
            sources += source;
            const QString wanted =
                QCoreApplication::translate("FourPs", source.toUtf8().constData());
            const QStringList found = place == "message"        ? written
                                      : place == "header"       ? heads
                                      : place == "painted"      ? painted
                                      : place == "CalcRes"      ? QStringList(shown(exact, place))
                                      : place == ":windowTitle" ? QStringList(panel.windowTitle())
                                                                : QStringList(shown(panel, place));
            // Arguments are numbers, and "7:  " is more than the number.
            QString filled =
                QRegularExpression::escape(place == "message" ? wanted.simplified() : wanted);
            filled.replace(QRegularExpression("\\\\%[123]"), ".+");
            const bool isWhole = place != "message" && place != "P7.NumDisp";
            const QRegularExpression text(isWhole ? '^' + filled + '$' : filled);
            QVERIFY2(!found.filter(text).isEmpty(), qPrintable(row + " / " + wanted));
        }
    }
    QCOMPARE(sources.size(), 118);
}

/// Titles of the axes of the six plots, taken from their labels instead of from the pictures.
QStringList PanelTest::paintedTitles(FourPs &panel) const
{
    QStringList titles;
    for (int id = Displays::DMuts; id <= Displays::DM2M3; ++id) {
        DispABase *plot = graph(panel, Displays::DispId(id));
        plot->setTitlesPainted(false, false);
        plot->area()->grab();
        titles << find<QLabel>(*plot, "XTitle")->text() << find<QLabel>(*plot, "YTitle")->text();
        plot->setTitlesPainted(true, true);
    }
    return titles;
}

void PanelTest::axisTitles()
{
    FourPs panel;
    m_sample.load(panel);
    QCOMPARE(paintedTitles(panel),
             (QStringList{"Eng.[eV]", "mut", "LCF", "MPs", "Valence", "Num.", "Thick.", "Num.",
                          "Valence", "Thick.", "M3", "M2"}));
    perform(panel, "click HgAmount");
    QCOMPARE(paintedTitles(panel)[4], QStringLiteral("Amouont"));
}

void PanelTest::rowValues_data()
{
    QTest::addColumn<QString>("energy");
    QTest::addColumn<QString>("value");
    QTest::newRow("between points") << "8352.5"
                                    << "0.9";
    QTest::newRow("at a point") << "8350"
                                << "0.8";
    QTest::newRow("below the first: from 0 eV") << "100"
                                                << "0";
    QTest::newRow("the last point") << "8760"
                                    << "1";
    QTest::newRow("beyond the last") << "8760.5"
                                     << "";
    QTest::newRow("zero leaves the field") << "0"
                                           << "was";
    QTest::newRow("negative") << "-8350"
                              << "was";
    QTest::newRow("no number") << "8350 eV"
                               << "was";
    QTest::newRow("not a number") << "nan"
                                  << "was";
    QTest::newRow("infinite") << "inf"
                              << "";
}

void PanelTest::rowValues()
{
    QFETCH(QString, energy);
    QFETCH(QString, value);
    FourPs panel;
    reference(panel, 3)->selector()->newFile(m_sample.a);
    target(panel)->newFile(m_sample.a);
    for (const char *field : {"P6.Mut1", "P6.Mut4", "P6.MutT"}) {
        at<QLineEdit>(panel, field)->setText("was");
    }
    perform(panel, "type P6.Energy " + energy);
    QCOMPARE(shown(panel, "P6.Mut1 P6.Mut4 P6.MutT"), "was " + value + ' ' + value);
    QVERIFY(value == "was" || at<QLineEdit>(panel, "P6.Mut4")->cursorPosition() == 0);
    // A reference that is gone leaves its column, a target that is gone does not.
    perform(panel, "clear R4.XafsFS; clear TargetFile");
    const QString isLeft = value == "was" ? value : QString();
    QCOMPARE(shown(panel, "P6.Mut1 P6.Mut4 P6.MutT"), "was " + value + ' ' + isLeft);
}

void PanelTest::edgeRule()
{
    FourPs panel;
    m_sample.load(panel);
    perform(panel, "type PreEEndDE -60.5; type PostEStartDE x; type EdgeE 8340"); // x: 0
    const AXafsFileSelect *a = reference(panel, 0)->selector();
    for (const AMutE *spectrum : {static_cast<const AMutE *>(a),
                                  static_cast<const AMutE *>(reference(panel, 3)->selector()),
                                  static_cast<const AMutE *>(target(panel))}) {
        QCOMPARE(spectrum->preEdgeEnd(), 8279.5);
        QCOMPARE(spectrum->edgeE(), 8340.0);
        QCOMPARE(spectrum->postEdgeStart(), 8340.0);
    }
    // The lines are fitted anew: the post-edge line no longer runs along 1 at 8350 eV.
    perform(panel, "click SubPostEforRef");
    QVERIFY(std::fabs(a->post(8350) - 1) > 0.01);
    QCOMPARE(shown(panel, "P2.Mut1"), QString::number(0.8 - a->post(8350), 'g', 6));
    // Display spectra follow too: the edge alone changes their normalised picture.
    at<AFileSelect>(panel, "DispFSelect")->newFile(m_sample.mix);
    perform(panel, "clear R1.XafsFS; clear R2.XafsFS; clear TargetFile; click NByEJ");
    DispArea *area = graph(panel, Displays::DMuts)->area();
    const QImage before = picture(area);
    perform(panel, "type PostEStartDE 100");
    area->clearRange();
    QVERIFY(picture(area) != before);
}

void PanelTest::shiftedSpectra()
{
    FourPs panel;
    m_sample.load(panel);
    newMessages(panel);
    perform(panel, "type R1.DE 2.5"); // energies are 2.5 eV less
    QCOMPARE(shown(panel, "P2.Mut1 P2.Mut2"), QStringLiteral("0.9 0.2"));
    QVERIFY(newMessages(panel).size() >= 2);
    perform(panel, "type TargetFile.DE -5");
    QCOMPARE(shown(panel, "P2.MutT"), QStringLiteral("0")); // at 8345 eV it was 0
    // The shift of a file that comes later holds for it, and for the edge it brings.
    perform(panel, m_sample.in("load R1.XafsFS %/a.dat"));
    QCOMPARE(shown(panel, "P2.Mut1 EdgeE"), QStringLiteral("0.9 8345"));
}

void PanelTest::messageKeepsWhatIsSelected()
{
    FourPs panel;
    auto *box = at<QPlainTextEdit>(panel, "Message");
    perform(panel, "click LCFB");
    box->selectAll();
    perform(panel, "click CalcMapB");
    QCOMPARE(messages(panel), (QStringList{kNoLcf, kNoMap}));
    QVERIFY(box->textCursor().atEnd());
    // Lines go to the cursor, wherever it was put, and move it to the end.
    box->moveCursor(QTextCursor::Start);
    perform(panel, "click CalcTargetB; click LCFB");
    QCOMPARE(messages(panel), (QStringList{kNoTarget, kNoLcf, kNoMap, kNoLcf}));
}

QTEST_MAIN(PanelTest)
#include "tst_panel.moc"
