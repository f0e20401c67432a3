#pragma once

#include <QByteArray>
#include <QStringList>

namespace orvel {

/// One line of comma-separated values as RFC 4180 wants it: fields with commas, quotes or line ends
/// stand in quotes, quotes are doubled, CR LF at the end. UTF-8.
QByteArray csvLine(const QStringList &fields);

/// A number with the fewest digits that read back as the same; empty for not-a-number, which
/// stands for "not determined".
QString csvNumber(double value);

} // namespace orvel
