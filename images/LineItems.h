#pragma once

#include <QString>
#include <QStringList>

/// Items of text lines: separated by white space, an item with blanks in double quotes. Faults in
/// quoting go to the debug log and never stop the reading.
namespace orvel {

/// Takes the first item off a line into item, without its quotes; returns the rest of the line,
/// from the character behind the item (behind its closing quote).
QString takeItem(const QString &line, QString &item);

/// One item of a comma-separated line: enclosed in quotes when it holds a comma or a quote, its
/// quotes doubled.
QString csvQuote(const QString &item);

/// Every item in quotes, single blanks between them; white space inside items collapses.
QString joinQuoted(const QStringList &items);

/// Every \" becomes ".
QString unescapeQuotes(QString text);

/// Whether a text is a plain decimal number: an optional sign, then digits and decimal points,
/// at least one of them a digit. Digits of other scripts count, exponents do not.
bool isNumberText(const QString &text);

} // namespace orvel
