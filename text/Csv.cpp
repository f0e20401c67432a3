#include "text/Csv.h"

#include "text/NumberText.h"

#include <cmath>

namespace orvel {

QByteArray csvLine(const QStringList &fields)
{
    QByteArray line;
    for (int i = 0; i < fields.size(); ++i) {
        QString field = fields[i];
        const bool isPlain =
            !field.contains(QLatin1Char(',')) && !field.contains(QLatin1Char('"')) &&
            !field.contains(QLatin1Char('\n')) && !field.contains(QLatin1Char('\r'));
        if (!isPlain) {
            field.replace(QLatin1Char('"'), QStringLiteral("\"\""));
            field = QLatin1Char('"') + field + QLatin1Char('"');
        }
        line += (i > 0 ? "," : "") + field.toUtf8();
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
