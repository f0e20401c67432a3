// Manuals age silently: a message is reworded, a picture renamed, a section added in one language.
// What the documents name is compared here with the program, and their pages with the documents.

#include "panel/FourPs.h"
#include "session/Catalogue.h"
#include "tests/TestTable.h"
#include "text/ReadFailure.h"

#include <QAbstractButton>
#include <QDesktopServices>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QtTest>

namespace {

const QString kDocs = QStringLiteral(ORVEL_SOURCES "/docs/");
const QString kPages = QStringLiteral(ORVEL_PAGES "/");

QString contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList allOf(const QString &pattern, const QString &text, int group = 1)
{
    QStringList found;
    const QRegularExpression expression(pattern, QRegularExpression::MultilineOption);
    for (auto matches = expression.globalMatch(text); matches.hasNext();)
        found += matches.next().captured(group);
    return found;
}

/// Every literal that stands behind `before` in a source file, its parts joined.
QStringList literalsIn(const QString &path, const QString &before)
{
    QStringList texts;
    const QString content = contentOf(QStringLiteral(ORVEL_SOURCES "/") + path);
    for (QString text : allOf(before + R"(\s*((?:"(?:[^"\\]|\\.)*"\s*)+)[)}])", content)) {
        text = text.trimmed();
        text = text.mid(1, text.size() - 2);
        texts += text.remove(QRegularExpression(QStringLiteral("\"\\s*\""))).replace("\\\"", "\"");
    }
    return texts;
}

/// A text with its places filled in, as a pattern; the box shows it without blanks at its ends.
QString patternOf(const QString &text)
{
    QString pattern = QRegularExpression::escape(text.simplified());
    return pattern.replace(QRegularExpression(QStringLiteral("\\\\%[0-9]")), QStringLiteral(".+"));
}

} // namespace

class ManualTest : public QObject {
    Q_OBJECT

private slots:
    void bothLanguagesHaveTheSameHeadings();
    void everyMessageIsExplained_data();
    void everyMessageIsExplained();
    void pagesHoldWhatTheDocumentsHold_data() { documents(); }
    void pagesHoldWhatTheDocumentsHold();
    void linksAndPicturesAreThere_data() { documents(); }
    void linksAndPicturesAreThere();
    void helpOpensTheManual_data();
    void helpOpensTheManual();

public slots:
    void takeUrl(const QUrl &url) { m_opened += url; }

private:
    static void documents();
    QList<QUrl> m_opened;
};

void ManualTest::documents()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"manual", "manual.ja", "formats", "numerics"})
        QTest::newRow(name) << QString(name);
}

void ManualTest::bothLanguagesHaveTheSameHeadings()
{
    const QStringList english = allOf("^(#+) ", contentOf(kDocs + "manual.md"));
    QVERIFY(english.size() > 20);
    QCOMPARE(allOf("^(#+) ", contentOf(kDocs + "manual.ja.md")), english);
}

void ManualTest::everyMessageIsExplained_data()
{
    const TestTable<QString, QString, bool> row("document", "section", "japanese");
    row("en", "manual.md", "## Troubleshooting", false);
    row("ja", "manual.ja.md", QString::fromUtf8("## 困ったときは"), true);
}

void ManualTest::everyMessageIsExplained()
{
    QFETCH(const QString, document);
    QFETCH(const QString, section);
    QFETCH(const bool, japanese);
    const QString manual = contentOf(kDocs + document);
    QVERIFY(manual.contains('\n' + section + '\n'));
    const QStringList explained =
        allOf("`([^`\n]+)`", manual.mid(manual.indexOf('\n' + section + '\n')));

    orvel::Translators translators;
    if (japanese)
        orvel::installJapanese(translators);
    QStringList texts;
    const auto add = [&texts](const char *context, const QStringList &sources) {
        for (const QString &source : sources)
            texts += QCoreApplication::translate(context, source.toUtf8().constData());
        return sources.size();
    };
    int found = 0; // less than there are: sources are read wrongly
    for (const QString &name : QDir(ORVEL_SOURCES "/analysis").entryList({"*.cpp"}))
        found +=
            add("FourPs", literalsIn("analysis/" + name, R"(QT_TRANSLATE_NOOP\(\s*"FourPs",)"));
    QVERIFY2(found >= 18, qPrintable(QString::number(found)));
    const QStringList ofPanel = literalsIn("panel/FourPsRun.cpp", R"(\btr\()");
    QVERIFY(ofPanel.contains("Written: %1"));
    add("FourPs", ofPanel);
    add("FourPs",
        {"Writing replaces the input %1", "The inputs have changed: calculate the map first"});
    QVERIFY(add("EnergyAdviserDialog",
                literalsIn("panel/EnergyAdviserDialog.cpp", R"(return tr\()")) >= 16);
    add("Manual", {"The manual could not be opened; it should be here: %1"});
    int reason = 1; // 0 is none
    while (!orvel::describe(orvel::ReadFailure(reason)).isEmpty())
        texts += orvel::describe(orvel::ReadFailure(reason++));
    QVERIFY(reason > 10);
    const QStringList ofSessions =
        literalsIn("session/SessionFile.cpp", R"(reading\.error =\s*QStringLiteral\()");
    QVERIFY(ofSessions.size() >= 5);
    const QStringList ofAdvice = literalsIn("batch/Advice.cpp", R"(return \{"\w+",)");
    QVERIFY(ofAdvice.size() >= 16);

    QStringList missing;
    for (const QString &text : texts + ofSessions + ofAdvice) {
        // The pieces of a result line stand within one; all else stands alone.
        const bool isPiece = text.startsWith(',') || text.endsWith(' ');
        const QString pattern = patternOf(text);
        const QRegularExpression expression(isPiece ? pattern
                                                    : QRegularExpression::anchoredPattern(pattern));
        if (explained.filter(expression).isEmpty())
            missing += text;
    }
    QCOMPARE(missing, QStringList());
}

void ManualTest::pagesHoldWhatTheDocumentsHold()
{
    QFETCH(const QString, name);
    const QString document = contentOf(kDocs + name + ".md");
    const QString page = contentOf(kPages + name + ".html");
    QVERIFY(!document.isEmpty());
    QCOMPARE(allOf("<h([1-6]) ", page).size(), allOf("^(#+) ", document).size());
    QCOMPARE(allOf("<(img) ", page).size(), allOf("(!)\\[", document).size());
    const int rules = allOf("^ {0,3}(\\|)[-|]+$", document).size();
    QCOMPARE(allOf("<(tr)>", page).size(), allOf("^ {0,3}(\\|)", document).size() - rules);
    QCOMPARE(allOf("<(table)>", page).size(), rules);
    // Every line of code, its blanks included.
    QString code =
        allOf("<pre>([^<]*)</pre>", page).join(QString()).replace("&lt;", "<").replace("&gt;", ">");
    const QStringList shown =
        code.replace("&quot;", "\"").replace("&amp;", "&").split('\n', Qt::SkipEmptyParts);
    QStringList written = allOf("^    (.+)$", document);
    QCOMPARE(shown, written);
}

/// In the documents, for readers of the sources, and in the pages, as installed.
void ManualTest::linksAndPicturesAreThere()
{
    QFETCH(const QString, name);
    const QString document = contentOf(kDocs + name + ".md");
    const QString page = contentOf(kPages + name + ".html");
    QStringList broken;
    for (const QString &link : allOf("\\]\\(([^)#:]+)[^):]*\\)", document)) {
        if (!QFileInfo::exists(kDocs + link))
            broken += link;
    }
    for (const QString &link : allOf("(?:href|src)=\"([^\":]+)\"", page)) {
        const QString target =
            kPages + (link.startsWith('#') ? name + ".html" : link.section('#', 0, 0));
        const QString anchor = link.section('#', 1);
        if (!QFileInfo::exists(target) ||
            (!anchor.isEmpty() && !contentOf(target).contains(" id=\"" + anchor + '"')))
            broken += link;
    }
    QCOMPARE(broken, QStringList());
}

void ManualTest::helpOpensTheManual_data()
{
    const TestTable<QString> row("file");
    row("en", "manual.html");
    row("ja", "manual.ja.html");
}

void ManualTest::helpOpensTheManual()
{
    QFETCH(const QString, file);
    orvel::Translators translators;
    if (file == "manual.ja.html")
        orvel::installJapanese(translators);
    const FourPs panel;
    m_opened.clear();
    QDesktopServices::setUrlHandler("file", this, "takeUrl");
    panel.findChild<QAbstractButton *>("HelpB")->click();
    QDesktopServices::unsetUrlHandler("file");
    const QString message = panel.findChild<QPlainTextEdit *>("Message")->toPlainText();
    QCOMPARE(m_opened.size(), 1);
    QCOMPARE(QFileInfo(m_opened[0].toLocalFile()), QFileInfo(kPages + file));
    QCOMPARE(message, QString());
}

QTEST_MAIN(ManualTest)

#include "tst_manual.moc"
