#include "images/LineItems.h"

#include <QDebug>

#include <algorithm>

namespace orvel {
namespace {

const QLatin1Char kQuote('"');

int firstIndex(const QString &line, int from, bool wantSpace)
{
    for (int i = from; i < line.size(); ++i) {
        if (line[i].isSpace() == wantSpace) {
            return i;
        }
    }
    return -1;
}

void logFault(const char *fault, const QString &line)
{
    qDebug().noquote() << QString::fromLatin1(fault).arg(line);
}

constexpr const char *kNotClosed =
    "In a line [%1] item is started from quote but not ended by quote";
constexpr const char *kNotOpened =
    "In a line [%1] item is started from not quote but ended by quote";

} // namespace

QString takeItem(const QString &line, QString &item)
{
    item.clear();
    int start = firstIndex(line, 0, false);
    if (start < 0) {
        return QString();
    }
    bool strayQuote = false;
    if (line[start] == kQuote) {
        const int close = line.indexOf(kQuote, start + 1);
        if (close >= 0) {
            item = line.mid(start + 1, close - start - 1);
            return line.mid(close + 1);
        }
        logFault(kNotClosed, line);
        strayQuote = true;
        ++start;
    }
    int end = firstIndex(line, start, true);
    if (end < 0) {
        end = line.size();
        strayQuote = strayQuote || line.endsWith(kQuote);
    }
    if (strayQuote) {
        logFault(kNotOpened, line); // one message serves both ends
    }
    item = line.mid(start, end - start);
    return line.mid(end);
}

QString csvQuote(const QString &item)
{
    if (!item.contains(kQuote) && !item.contains(QLatin1Char(','))) {
        return item;
    }
    QString quoted = item;
    quoted.replace(kQuote, QStringLiteral("\"\""));
    return kQuote + quoted + kQuote;
}

QString joinQuoted(const QStringList &items)
{
    QString line;
    for (const QString &item : items) {
        line += kQuote + item + QStringLiteral("\" ");
    }
    return line.simplified();
}

QString unescapeQuotes(QString text)
{
    return text.replace(QStringLiteral("\\\""), QStringLiteral("\""));
}

bool isNumberText(const QString &text)
{
    const auto isDigit = [](QChar c) {
        return c.unicode() < 128 ? c >= QLatin1Char('0') && c <= QLatin1Char('9') : c.isNumber();
    };
    QString digits = text.simplified();
    if (digits.startsWith(QLatin1Char('-')) || digits.startsWith(QLatin1Char('+'))) {
        digits.remove(0, 1);
    }
    return std::any_of(digits.cbegin(), digits.cend(), isDigit) &&
           std::all_of(digits.cbegin(), digits.cend(),
                       [isDigit](QChar c) { return c == QLatin1Char('.') || isDigit(c); });
}

} // namespace orvel
