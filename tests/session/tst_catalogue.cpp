// The Japanese catalogues are kept by hand, so nothing but this test notices a source text that was
// mistyped, lost or added: the program would silently show English for it.

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QTranslator>
#include <QXmlStreamReader>
#include <QtTest>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

struct ContextTexts {
    const char *context;
    std::size_t count; // typed on its own, so that a slip in the list beside it shows
    std::vector<const char *> sources;
};

// Blanks at the ends and misspellings are part of the key, as the forms and the code use them.
const std::vector<ContextTexts> &expectedTexts()
{
    // clang-format off
    static const std::vector<ContextTexts> texts{
        {"AEPoint", 9,
         {"   2D ", "  Energy(eV)", "  mut(Ref 1)", "  mut(Ref 2)", "  mut(Target)", "Frame",
          "No. ", "mut(Ref 3)", "mut(Ref 4)"}},
        {"AFileSelect", 6, {"0", "Clear", "File", "Frame", "Sel.", "dE[eV]"}},
        {"ARefFile", 7, {"1", "Frame", "Ratio", "Ref 1", "Use", "Valence", "dMut"}},
        {"AXafsFileSelect", 4, {"Edge Jump : %1", "Edge Jump(1) : %1", "Eng.[eV]", "mut"}},
        {"Body", 1, {"MainWindow"}},
        {"DispABase", 7, {" x:", "Frame", "P/D", "TextLabel", "x-title", "y-title", "y:"}},
        {"DispArea", 1, {"Frame"}},
        {"DispMBase", 6, {"  Val:", "  x:", "  y:", "Frame", "P/D", "TextLabel"}},
        {"Displays", 12,
         {"Frame", "Histgram of a", "Histgram of dMut", "LCF vs 4PS", "M2/M3", "Muts", "Ref1",
          "Ref2", "Ref3", "Ref4", "Target", "dMut/v or a"}},
        {"FourPs", 118,
         {"  Non Equiv. Meth.", "%1", ", Valence = %1, Base = %2", ", Valence = %1, t = %2", "-0.2",
          "-50", "1.2", "1.5", "100", "3.5", "3ps: a = %1, Valence = %2", "4 Points Meth.",
          "4 points.", "4ps", "4ps2: a = %1, Valence = %2, t/ts = %3", "51", "8350", "Amount",
          "Amount dMut", "Amouont", "Auto", "B.G.Line Type: ", "Boxes", "C1", "C2", "Calc.",
          "Calc. Type for t, mu0, and k: ", "Can't open the file [%1]", "Data Map",
          "Data Processing", "Disp Select : ", "Disp. Only", "Edge[eV]",
          "Energy Range is not selected, which should by selected by CB of TR.", "Eng.", "Eng.[eV]",
          "Equiv.", "Exact 4 points", "Exec. and Results", "F.P.", "Frame", "From", "Full Range",
          "Hist Grams", "LCF", "Least Square", "Linear", "M2", "M3", "Map", "Map Select",
          "More Conds", "No normalize", "No.", "Non", "Non Equiv. Meth.", "Normalized by 2 Vics ",
          "Normalized by edge jump", "Num.",
          "Number of Valid Reference files is %1, which is less than 2",
          "Number of selected data sets %1 is less than %2.",
          "Number of selected data sets %1 is not %2.",
          "Number of valied Ref Files is %1, which is less than 2.", "Params for Vic. Lines",
          "Post E. Line", "Post Edge Start [eV]", "Pre E. Line", "Pre Edge End [eV]", "Ratio 1",
          "Ratio 2", "Ratio 3", "Ratio 4", "Ratio2", "Rattio 1", "Record Select :", "Ref %1",
          "Ref File %1 is not valid.", "Ref.1", "Ref.2", "Ref.3", "Ref.4",
          "Refs/Target XAFS Spectra", "Refs: Sub.", "Remove", "Result Map", "Result of LCF :: ",
          "Result of NEQ :: ", "Select 2D Map Data", "Show", "Show Data Map", "Show Graphs",
          "Show Res. Map", "Sub pre Vic.", "Target", "Target File1 is not valid.", "Target: Sub.",
          "The 1st Ref File is not valid.", "The 2nd Ref File is not valid.", "Thick.", "To", "Use",
          "V Point is not selected", "V Point is not selected.", "Valence", "Vic.",
          "When drawing all mut", "Write", "XAFS spectra", "[eV]",
          "a = %1, Valence = %2, t/ts = %3", "dMut", "dMut 1", "dMut 2", "dMut 3", "dMut 4", "mu0",
          "mut", "mut0"}},
        {"PopBase", 1, {"Frame"}},
        {"cBar", 1, {"Frame"}}};
    // clang-format on
    return texts;
}

QString keyOf(const QString &context, const QString &source)
{
    return context + '|' + source;
}

QStringList placeholdersOf(const QString &text)
{
    QStringList found;
    auto match = QRegularExpression(QStringLiteral("%[0-9]+")).globalMatch(text);
    while (match.hasNext())
        found += match.next().captured();
    found.removeDuplicates();
    found.sort();
    return found;
}

// Blanks before and after the text: indents of captions, joints of message pieces.
std::pair<int, int> outerBlanksOf(const QString &text)
{
    const auto isInk = [](QChar c) { return !c.isSpace(); };
    return {int(std::find_if(text.begin(), text.end(), isInk) - text.begin()),
            int(std::find_if(text.rbegin(), text.rend(), isInk) - text.rbegin())};
}

QString contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// Texts of a form, in the context of its class.
void takeForm(const QString &content, QSet<QString> &keys)
{
    QString context;
    QXmlStreamReader xml(content);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("class") && context.isEmpty()) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("string")) {
            const bool isTranslated = !xml.attributes().hasAttribute(QLatin1String("notr"));
            const QString text = xml.readElementText();
            if (isTranslated && !text.isEmpty())
                keys += keyOf(context, text);
        }
    }
}

// Texts in tr(), in the context of the class whose member function they stand in, and in
// QT_TRANSLATE_NOOP and translate(), which name theirs.
void takeSource(const QString &content, QSet<QString> &keys)
{
    static const QRegularExpression pattern(
        R"re(^(?=\S).*?\b(?<member>\w+)::~?\w+\(|)re"
        R"re(\b(?:tr\(|(?:QT_TRANSLATE_NOOP|translate)\(\s*"(?<named>\w+)",)\s*)re"
        R"re((?<literals>"(?:[^"\\]|\\.)*"(?:\s*"(?:[^"\\]|\\.)*")*))re",
        QRegularExpression::MultilineOption);
    static const QRegularExpression joint(QStringLiteral("\"\\s*\""));
    QString context;
    auto matches = pattern.globalMatch(content);
    while (matches.hasNext()) {
        const auto match = matches.next();
        QString text = match.captured(QStringLiteral("literals"));
        if (text.isEmpty()) {
            context = match.captured(QStringLiteral("member"));
            continue;
        }
        text = text.mid(1, text.size() - 2).remove(joint);
        const QString named = match.captured(QStringLiteral("named"));
        keys += keyOf(named.isEmpty() ? context : named, text);
    }
}

QSet<QString> textsOfTheProgram()
{
    QSet<QString> keys;
    for (const char *folder : {"analysis", "app", "batch", "display", "forms", "images", "panel",
                               "session", "spectra", "text"}) {
        QDirIterator files(QStringLiteral(ORVEL_SOURCES "/") + folder, {"*.ui", "*.cpp"},
                           QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            (path.endsWith(".ui") ? takeForm : takeSource)(contentOf(path), keys);
        }
    }
    return keys;
}

} // namespace

class CatalogueTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void everyTextIsTranslated();
    void givenTexts();
    void sourceFileHoldsTheseTextsOnly();
    void everyTextOfTheProgramIsInACatalogue();

private:
    QString translated(const QString &context, const QString &source) const
    {
        return m_catalogue.translate(context.toUtf8().constData(), source.toUtf8().constData());
    }

    QTranslator m_catalogue;
    QTranslator m_later; // of the texts that the first one does not have
};

void CatalogueTest::initTestCase()
{
    QVERIFY(m_catalogue.load(QStringLiteral(":klyv_ja_JP")));
    QVERIFY(m_later.load(QStringLiteral(":orvel_ja")));
}

void CatalogueTest::everyTextIsTranslated()
{
    for (const ContextTexts &texts : expectedTexts()) {
        for (const QString source : texts.sources) {
            const QString text = translated(texts.context, source);
            const QByteArray key = keyOf(texts.context, source).toUtf8();
            const char *const name = key.constData();
            QVERIFY2(!text.trimmed().isEmpty(), name);
            QStringList placeholders = placeholdersOf(source);
            // The one text whose translation names another placeholder; successive arg() calls fill
            // it.
            if (source == "Number of Valid Reference files is %1, which is less than 2") {
                placeholders = QStringList(QStringLiteral("%2"));
            }
            QVERIFY2(placeholdersOf(text) == placeholders, name);
            QVERIFY2(outerBlanksOf(text) == outerBlanksOf(source), name);
        }
    }
}

void CatalogueTest::givenTexts()
{
    const std::pair<const char *, const char *> texts[] = {
        {"V Point is not selected.", "非等吸収点を選択して下さい。"},
        {"V Point is not selected", "非等吸収点を選択して下さい。"},
        {"The 1st Ref File is not valid.", "１番目の標準試料が有効ではありません。"},
        {"The 2nd Ref File is not valid.", "2番目の標準試料が有効ではありません。"},
        {"Target File1 is not valid.", "解析対象ファイルが設定されていません。"},
        {"Ref File %1 is not valid.", "標準[%1]が無効です。"},
        {"Number of valied Ref Files is %1, which is less than 2.",
         "標準試料の数が%1しかありません(最低2つ必要です)。"},
        {"Number of selected data sets %1 is not %2.",
         "データセットが%1個選ばれています。%2個選択して下さい。"},
        {"Number of selected data sets %1 is less than %2.",
         "マップデータがが%1個しか選択されていません。(最低%2個選択する必要があります)"},
        {"Number of Valid Reference files is %1, which is less than 2",
         "有効な標準試料が%2個しか指定されていません(最低2つ必要です)。"},
        {"Energy Range is not selected, which should by selected by CB of TR.",
         "線形結合計算を行うエネルギー範囲が選択されていません"
         "(「膜厚比計算」のチェックボックスで選択)。"},
        {"Can't open the file [%1]", "ファイル[%1]が開けません。"},
        {"Result of LCF :: ", "結果(LCF) :: "},
        {"Result of NEQ :: ", "結果(NEQ) :: "},
        {"3ps: a = %1, Valence = %2", "3ps: 標準1の比率 = %1, 価数 = %2"},
        {"4ps2: a = %1, Valence = %2, t/ts = %3", "4ps2: 標準1の比率=%1, 価数=%2, t/ts=%3"},
        {"a = %1, Valence = %2, t/ts = %3", "標準1の比率=%1, 価数=%2, t/ts=%3"},
        {", Valence = %1, t = %2", ", 価数 = %1, 相対厚さ = %2"},
        {", Valence = %1, Base = %2", ", 価数 = %1, ベース = %2"},
        {"Ref %1", "標準%1"},
    };
    for (const auto &[source, expected] : texts) {
        QCOMPARE(translated("FourPs", source), expected);
    }
    QCOMPARE(translated("AXafsFileSelect", "Edge Jump : %1"), "エッジジャンプ: %1");
    // The form's defaults pass through the catalogue too; a changed digit would change a
    // calculation.
    for (const char *digits : {"8350", "-50", "100", "1.5", "3.5", "-0.2", "1.2", "51"}) {
        QCOMPARE(translated("FourPs", digits), digits);
    }
    QCOMPARE(translated("AFileSelect", "0") + translated("ARefFile", "1"), "01");
}

void CatalogueTest::sourceFileHoldsTheseTextsOnly()
{
    QFile file(QStringLiteral(ORVEL_CATALOGUE_TS));
    QVERIFY2(file.open(QIODevice::ReadOnly), ORVEL_CATALOGUE_TS);
    QStringList actual;
    QString context;
    QString source;
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("source")) {
            source = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            // "unfinished", "vanished" and "obsolete" all come as a type
            const bool finished = xml.attributes().isEmpty();
            const QString text = xml.readElementText();
            actual += keyOf(context, source);
            QVERIFY2(finished, qPrintable("not finished: " + actual.last()));
            // the compiled catalogue is the one made from this file
            QCOMPARE(translated(context, source), text);
        }
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));

    QStringList expected;
    for (const ContextTexts &texts : expectedTexts()) {
        for (const char *text : texts.sources)
            expected += keyOf(texts.context, text);
        QVERIFY2(texts.sources.size() == texts.count, texts.context);
    }
    actual.sort(); // no text twice either
    expected.sort();
    QCOMPARE(actual, expected);
    QCOMPARE(actual.size(), 173);
}

void CatalogueTest::everyTextOfTheProgramIsInACatalogue()
{
    const QSet<QString> english{"FourPs|with Grid", "Displays|LCF vs MPS"}; // by decision
    const QSet<QString> keys = textsOfTheProgram();
    for (const char *found : {"FourPs|%1", "FourPs|Ref.4", "AFileSelect|dE[eV]", "cBar|Invert",
                              "FourPs|3ps: a = %1, Valence = %2", "ToolTips|Select a file"})
        QVERIFY2(keys.contains(found), found); // forms, literals and contexts are read aright
    QStringList wrong;
    for (const QString &key : keys) {
        const QByteArray context = key.section('|', 0, 0).toUtf8();
        const QString source = key.section('|', 1);
        const QString later = m_later.translate(context.constData(), source.toUtf8().constData());
        const bool isFixed = !translated(context, source).isEmpty();
        if (isFixed + !later.isEmpty() != !english.contains(key)) // in one, or in none by decision
            wrong += key;
        if (!isFixed && !later.isEmpty())
            QCOMPARE(placeholdersOf(later), placeholdersOf(source));
    }
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QStringLiteral("; "))));
    // No entry is left over from a text that went, or stands in the wrong context.
    QString context;
    QXmlStreamReader xml(contentOf(QStringLiteral(ORVEL_SOURCES "/session/i18n/orvel_ja.ts")));
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == QLatin1String("name"))
            context = xml.readElementText();
        else if (xml.isStartElement() && xml.name() == QLatin1String("source")) {
            const QString key = keyOf(context, xml.readElementText());
            QVERIFY2(keys.contains(key), qPrintable("used nowhere: " + key));
        }
    }
    QVERIFY2(!xml.hasError() && !context.isEmpty(), qPrintable(xml.errorString()));
}

QTEST_GUILESS_MAIN(CatalogueTest)

#include "tst_catalogue.moc"
