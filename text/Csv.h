#pragma once

#include <QByteArray>
#include <QStringList>

namespace orvel {

/// A field of comma-separated values as RFC 4180 wants it: with commas, quotes or line ends it
/// stands in quotes, quotes are doubled. UTF-8.
QByteArray csvField(const QString &text);

/// One line of such fields, CR LF at the end.
QByteArray csvLine(const QStringList &fields);

/// A number with the fewest digits that read back as the same; empty for not-a-number, which
/// stands for "not determined".
QString csvNumber(double value);

} // namespace orvel
