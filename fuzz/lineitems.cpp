// Splitting of text lines into items, and quoting.

#include "images/LineItems.h"
#include "fuzz/Fuzz.h"
#include "text/TextFile.h"

#include <algorithm>

using namespace orvel::fuzz;

namespace {

const QLatin1Char kQuote('"');

/// Takes a line apart, and looks at every step.
QStringList takenItems(const QString &line)
{
    QStringList items;
    QString rest = line;
    while (!rest.isEmpty()) {
        QString item = QStringLiteral("left over");
        const QString next = orvel::takeItem(rest, item);
        require(next.size() < rest.size() && rest.endsWith(next), "the rest is a shorter end");
        require(rest.contains(item), "an item is a piece of its line");
        require(!item.startsWith(kQuote), "an item does not keep its opening quote");
        rest = next;
        items.append(item);
    }
    return items;
}

void requireSplit(const QString &line)
{
    QStringList items = takenItems(line);
    QString item = QStringLiteral("left over");
    require(orvel::takeItem(QString(), item).isEmpty() && item.isEmpty(),
            "an empty line has no item");
    if (!line.contains(kQuote)) {
        items.removeAll(QString()); // what the white space at the end gives
        require(items == orvel::itemsOf(line), "without quotes both ways of splitting agree");
    }
}

/// Undoes csvQuote() by the rule that every quote inside is doubled.
QString csvUnquoted(QString text)
{
    if (!text.startsWith(kQuote)) {
        return text;
    }
    return text.mid(1, text.size() - 2).replace(QStringLiteral("\"\""), QStringLiteral("\""));
}

void requireQuoting(const QString &text)
{
    const QString quoted = orvel::csvQuote(text);
    require(csvUnquoted(quoted) == text, "a quoted item gives the item back");
    require(quoted == text || (quoted.endsWith(kQuote) && quoted.count(kQuote) % 2 == 0),
            "an item is quoted whole");
    QString escaped = text;
    escaped.replace(kQuote, QStringLiteral("\\\""));
    require(orvel::unescapeQuotes(escaped) == text, "escaped quotes give the quotes back");
}

/// Items without quotes and without white space that would collapse come back one by one.
void requireJoining(const QString &text)
{
    QStringList items;
    for (const QString &piece : text.split(QLatin1Char(','))) {
        QString item = piece.simplified();
        items.append(item.remove(kQuote).simplified());
    }
    QString rest = orvel::joinQuoted(items);
    for (const QString &expected : items) {
        QString item;
        rest = orvel::takeItem(rest, item);
        require(item == expected, "joined items come back one by one");
    }
    require(rest.isEmpty(), "joined items leave nothing behind");
}

void requireNumber(const QString &text)
{
    const bool isNumber = orvel::isNumberText(text);
    require(isNumber == orvel::isNumberText(QStringLiteral(" \t") + text + QLatin1Char(' ')),
            "white space around a number does not count");
    const QString digits = text.simplified();
    const bool plain =
        std::all_of(digits.cbegin(), digits.cend(), [](QChar c) { return c.unicode() < 128; });
    if (isNumber && plain && digits.count(QLatin1Char('.')) < 2) {
        bool converted = false;
        digits.toDouble(&converted);
        require(converted, "a plain decimal number converts");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = bytesOf(data, size);
    // As text files give lines, and as the headers of processed maps do.
    for (const QString &line : {QString::fromUtf8(bytes), QString::fromLatin1(bytes)}) {
        requireSplit(line);
        requireQuoting(line);
        requireJoining(line);
        for (const QString &item : takenItems(line)) {
            requireNumber(item);
        }
        requireNumber(line);
    }
    return 0;
}
