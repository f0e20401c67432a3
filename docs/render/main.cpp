// Renders a Markdown document to a page for the browser: what the Help button of the window opens.
//
//   orvel-render DOCUMENT.md PAGE.html
//
// The toolkit reads Markdown into a QTextDocument; the page is written from that document here, for
// QTextDocument::toHtml() repeats fonts and margins at every word and gives headings no anchors.
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>

#include <cstdio>

namespace {

const char *const kStyle = R"(
body { max-width: 54rem; margin: 1rem auto 4rem; padding: 0 1rem; line-height: 1.5;
       font-family: "Noto Sans", "Noto Sans CJK JP", "Segoe UI", "Yu Gothic UI", sans-serif;
       color: #222; background: #fff; }
h1, h2, h3 { line-height: 1.25; margin-top: 2rem; }
h2 { border-bottom: 1px solid #ccc; padding-bottom: .2rem; }
a { color: #0550ae; }
table { border-collapse: collapse; margin: 1rem 0; display: block; overflow-x: auto; }
th, td { border: 1px solid #bbb; padding: .25rem .6rem; text-align: left; vertical-align: top; }
th { background: #f0f2f5; }
code, pre { font-family: "DejaVu Sans Mono", "Noto Sans Mono CJK JP", Consolas, monospace;
            font-size: .88em; background: #f5f5f2; }
code { padding: .05rem .2rem; }
pre { padding: .6rem .8rem; overflow-x: auto; line-height: 1.35; border-left: 3px solid #ccc; }
img { max-width: 100%; border: 1px solid #ccc; }
:lang(ja) em { font-style: normal; font-weight: 600; }
nav { border: 1px solid #ccc; padding: .2rem 1rem; margin: 1rem 0; }
)";

/// Anchor of a heading as the usual viewers of Markdown make it: letters and digits in small, a
/// hyphen for every blank, nothing for other signs.
QString anchorOf(const QString &heading)
{
    QString anchor;
    for (const QChar c : heading.toLower()) {
        if (c == QLatin1Char(' ')) {
            anchor += QLatin1Char('-');
        } else if (c.isLetterOrNumber() || c == QLatin1Char('-') || c == QLatin1Char('_')) {
            anchor += c;
        }
    }
    return anchor;
}

/// Documents beside this one are pages beside its page.
QString pageOf(const QString &link)
{
    static const QRegularExpression document(QStringLiteral("^([^:#]+)\\.md(#.*)?$"));
    QString page = link;
    return page.replace(document, QStringLiteral("\\1.html\\2"));
}

class Page {
public:
    explicit Page(const QTextDocument &document) { takeFrame(*document.rootFrame()); }

    QString html(const QString &language) const
    {
        const QString head = QStringLiteral("<!DOCTYPE html>\n<html lang=\"%1\">\n<head>\n"
                                            "<meta charset=\"utf-8\">\n<title>%2</title>\n"
                                            "<style>%3</style>\n</head>\n<body>\n")
                                 .arg(language, m_title, QLatin1String(kStyle));
        const QString contents =
            m_contents.isEmpty()
                ? QString()
                : QStringLiteral("<nav>\n<ul>\n") + m_contents + QStringLiteral("</ul>\n</nav>\n");
        return head + m_beforeContents + contents + m_body + QStringLiteral("</body>\n</html>\n");
    }

private:
    static bool isCode(const QTextBlock &block)
    {
        const QTextBlockFormat format = block.blockFormat();
        return format.nonBreakableLines() || format.hasProperty(QTextFormat::BlockCodeLanguage);
    }

    void takeFrame(const QTextFrame &frame)
    {
        for (QTextFrame::iterator it = frame.begin(); !it.atEnd(); ++it) {
            const auto *table = qobject_cast<QTextTable *>(it.currentFrame());
            if (table) {
                closeCode();
                closeLists(0);
                takeTable(*table);
            } else if (it.currentBlock().isValid()) {
                takeBlock(it.currentBlock());
            }
        }
        closeCode();
        closeLists(0);
    }

    void takeTable(const QTextTable &table)
    {
        m_body += QStringLiteral("<table>\n");
        for (int row = 0; row < table.rows(); ++row) {
            const QString tag = row == 0 ? QStringLiteral("th") : QStringLiteral("td");
            m_body += QStringLiteral("<tr>");
            for (int column = 0; column < table.columns(); ++column) {
                const QTextTableCell cell = table.cellAt(row, column);
                QStringList lines;
                for (QTextFrame::iterator it = cell.begin(); !it.atEnd(); ++it) {
                    lines.append(textOf(it.currentBlock(), row == 0));
                }
                m_body += QStringLiteral("<%1>%2</%1>").arg(tag, lines.join(QLatin1String("<br>")));
            }
            m_body += QStringLiteral("</tr>\n");
        }
        m_body += QStringLiteral("</table>\n");
    }

    void takeBlock(const QTextBlock &block)
    {
        if (isCode(block)) {
            closeLists(0);
            m_body += m_isInCode ? QString() : QStringLiteral("<pre>");
            m_isInCode = true;
            m_body += block.text().toHtmlEscaped() + QLatin1Char('\n');
            return;
        }
        closeCode();
        const int level = block.blockFormat().headingLevel();
        const QTextList *list = block.textList();
        if (level > 0) {
            closeLists(0);
            takeHeading(block, level);
        } else if (list) {
            const bool isOrdered = list->format().style() <= QTextListFormat::ListDecimal;
            openLists(list->format().indent(), isOrdered);
            m_body += QStringLiteral("<li>") + textOf(block, false) + QLatin1Char('\n');
        } else if (!block.text().isEmpty()) { // those around tables are
            closeLists(0);
            m_body += QStringLiteral("<p>") + textOf(block, false) + QStringLiteral("</p>\n");
        }
    }

    void takeHeading(const QTextBlock &block, int level)
    {
        const QString text = textOf(block, true);
        const QString anchor = anchorOf(block.text());
        const QString heading =
            QStringLiteral("<h%1 id=\"%2\">%3</h%1>\n").arg(level).arg(anchor, text);
        if (m_title.isEmpty()) {
            m_title = block.text().toHtmlEscaped();
            m_beforeContents = m_body + heading;
            m_body.clear();
            return;
        }
        if (level == 2) {
            m_contents += QStringLiteral("<li><a href=\"#%1\">%2</a></li>\n").arg(anchor, text);
        }
        m_body += heading;
    }

    /// The words of a block with their marks; in headings and table heads all is bold anyway.
    static QString textOf(const QTextBlock &block, bool isHead)
    {
        QString html;
        for (QTextBlock::iterator it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const QTextCharFormat format = fragment.charFormat();
            if (format.isImageFormat()) {
                html += QStringLiteral("<img src=\"%1\" alt=\"%2\">")
                            .arg(format.toImageFormat().name().toHtmlEscaped(),
                                 format.stringProperty(QTextFormat::ImageAltText).toHtmlEscaped());
                continue;
            }
            QString text = fragment.text().toHtmlEscaped();
            text.replace(QChar(QChar::LineSeparator), QLatin1String("<br>"));
            const auto wrap = [&text](const char *tag) {
                text = QStringLiteral("<%1>%2</%1>").arg(QLatin1String(tag), text);
            };
            // The reader gives code a fixed font, whatever that is called here, and nothing else
            // one.
            if (format.hasProperty(QTextFormat::FontFamily) ||
                format.hasProperty(QTextFormat::FontFamilies) || format.fontFixedPitch()) {
                wrap("code");
            }
            if (format.fontItalic()) {
                wrap("em");
            }
            if (!isHead && format.fontWeight() > QFont::Medium) {
                wrap("strong");
            }
            if (format.isAnchor()) {
                text = QStringLiteral("<a href=\"%1\">%2</a>")
                           .arg(pageOf(format.anchorHref()).toHtmlEscaped(), text);
            }
            html += text;
        }
        return html;
    }

    void openLists(int depth, bool isOrdered)
    {
        closeLists(depth);
        while (m_lists.size() < depth) {
            m_lists.append(isOrdered ? QStringLiteral("ol") : QStringLiteral("ul"));
            m_body += QStringLiteral("<%1>\n").arg(m_lists.last());
        }
    }

    void closeLists(int depth)
    {
        while (m_lists.size() > depth) {
            m_body += QStringLiteral("</%1>\n").arg(m_lists.takeLast());
        }
    }

    void closeCode()
    {
        if (m_isInCode) {
            m_body = m_body.left(m_body.lastIndexOf(QRegularExpression(QStringLiteral("\\S"))) + 1);
            m_body += QStringLiteral("\n</pre>\n");
            m_isInCode = false;
        }
    }

    QString m_title;
    QString m_beforeContents; ///< up to the first heading
    QString m_contents;       ///< links to the headings of level 2
    QString m_body;
    QStringList m_lists; ///< tags of the open lists, the innermost last
    bool m_isInCode = false;
};

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen"); // a text document wants fonts, not a display
    const QGuiApplication app(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("usage: orvel-render DOCUMENT.md PAGE.html\n", stderr);
        return 2;
    }
    QFile source(arguments[1]);
    if (!source.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "orvel-render: cannot read %s\n", qPrintable(arguments[1]));
        return 1;
    }
    QTextDocument document;
    document.setMarkdown(QString::fromUtf8(source.readAll()));
    const bool isJapanese = QFileInfo(source).completeBaseName().endsWith(QLatin1String(".ja"));
    const QString page =
        Page(document).html(isJapanese ? QStringLiteral("ja") : QStringLiteral("en"));
    QFile target(arguments[2]);
    if (!target.open(QIODevice::WriteOnly) || target.write(page.toUtf8()) < 0 || !target.flush()) {
        std::fprintf(stderr, "orvel-render: cannot write %s\n", qPrintable(arguments[2]));
        return 1;
    }
    return 0;
}
