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

namespace {

QString keyOf(const QString &context, const QString &source)
{
    return context + '|' + source;
}

QString contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// "context|source", and "|translation" where that is given, a line each.
QStringList expectedTexts()
{
    return contentOf(ORVEL_SOURCES "/tests/data/catalogue/klyv_ja_JP.txt")
        .split('\n', Qt::SkipEmptyParts);
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
    const QStringList expected = expectedTexts();
    QCOMPARE(expected.size(), 173);
    for (const QString &line : expected) {
        const QString source = line.section('|', 1, 1);
        const QString text = translated(line.section('|', 0, 0), source);
        const QByteArray key = line.toUtf8();
        const char *const name = key.constData();
        QVERIFY2(!text.trimmed().isEmpty(), name);
        QVERIFY2(line.count('|') == 1 || text == line.section('|', 2), name);
        QStringList placeholders = placeholdersOf(source);
        // The one text whose translation names another placeholder; successive arg() calls fill it.
        if (source == "Number of Valid Reference files is %1, which is less than 2") {
            placeholders = QStringList("%2");
        }
        QVERIFY2(placeholdersOf(text) == placeholders, name);
        QVERIFY2(outerBlanksOf(text) == outerBlanksOf(source), name);
    }
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
