#pragma once

namespace orvel {

/// Space that writeGeneral() may use [characters]; the longest text is "-1.23457e-308".
inline constexpr int kGeneralTextSize = 24;

/// Writes a number in general format with six significant digits, letter by letter as
/// QString::number(value, 'g', 6) does and so whatever the locale: exact ties round away from
/// zero, minus zero is "0", not-a-number is "nan" without a sign.
///
/// out  room for kGeneralTextSize characters; no terminating zero is written
/// Returns the number of characters written.
int writeGeneral(double value, char *out);

/// Space that writeShortest() may use [characters]; the longest text is "-1.7976931348623157e+308".
inline constexpr int kShortestTextSize = 32;

/// Writes the fewest digits that are read back as the same double, letter by letter as
/// QString::number(value, 'g', QLocale::FloatingPointShortest) does: with an exponent only below
/// 1e-4 and where that is shorter. Otherwise as writeGeneral().
int writeShortest(double value, char *out);

/// Reads one number of a line of plain items: skips blanks and tabs from `at`, takes the item that
/// follows and leaves `at` behind it. The value is that of QString::toDouble, to the bit.
///
/// Item    a number was read
/// None    nothing is left
/// Other   the item is written in a way that only QString::toDouble can judge: take the line to it
enum class NextNumber { Item, None, Other };
NextNumber readNumber(const char *&at, const char *end, double &value);

/// A number as a field of the form shows it and gives it back: six significant digits.
double throughSixDigits(double value);

} // namespace orvel
