#include "text/Csv.h"

#include "text/NumberText.h"

#include <algorithm>
#include <cmath>

namespace orvel {

QByteArray csvField(const QString &text)
{
    const auto isSpecial = [](QChar c) {
        return c == QLatin1Char(',') || c == QLatin1Char('"') || c == QLatin1Char('\n') ||
               c == QLatin1Char('\r');
    };
    if (std::none_of(text.begin(), text.end(), isSpecial)) {
        return text.toUtf8();
    }
    QString inner = text;
    inner.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return '"' + inner.toUtf8() + '"';
}

QByteArray csvLine(const QStringList &fields)
{
    QByteArray line;
    for (int i = 0; i < fields.size(); ++i) {
        line += (i > 0 ? "," : "") + csvField(fields[i]);
    }
    return line + "\r\n";
}

QString csvNumber(double value)
{
    if (std::isnan(value)) {
        return {};
    }
    char text[kShortestTextSize];
    return QString::fromLatin1(text, writeShortest(value, text));
}

} // namespace orvel
