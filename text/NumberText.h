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

/// A number as a field of the form shows it and gives it back: six significant digits.
double throughSixDigits(double value);

} // namespace orvel
