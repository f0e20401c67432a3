#include "text/NumberText.h"

#include <QLocale>
#include <QString>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

namespace orvel {
namespace {

/// Whether the seventh significant digit is a 5: only then can the number be an exact tie,
/// which the standard library rounds to even and the toolkit away from zero.
bool mayBeTie(double value)
{
    char digits[kGeneralTextSize];
    std::to_chars(digits, digits + sizeof digits, std::fabs(value), std::chars_format::scientific,
                  6);
    return digits[7] == '5'; // "d.ddddd5e+dd"
}

constexpr int kSafeDigits = 19;                     // that cannot overflow 64 bits
constexpr quint64 kExactInteger = quint64(1) << 53; // and below are exact doubles
constexpr int kExactPower = 22;                     // powers of ten up to here are, too
constexpr double kPowersOfTen[kExactPower + 1] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                  1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// Zeros up to the point that shortest texts prefer to "e+xx": 100000, but 1e+06.
constexpr int kZerosForExponent = 4;

int writeByToolkit(double value, int precision, char *out)
{
    const QByteArray text = QByteArray::number(value, 'g', precision);
    std::memcpy(out, text.constData(), static_cast<size_t>(text.size()));
    return text.size();
}

constexpr int kLeastExponent = -16;
constexpr double kLeastScaled = 1e-16;
constexpr double kGreatestScaled = 1e22;
constexpr unsigned kSevenDigits = 1000000;

/// X with 10^X <= magnitude < 10^(X + 1). Where 10^X is no exact double it may be one less than
/// the true one for that very number, which the seventh digit then carries over.
int decimalExponent(double magnitude)
{
    int binary = 0;
    std::frexp(magnitude, &binary);
    // log10(2) = 0.30103 is a little more than 1233 / 4096, and nowhere in the range does the
    // difference reach over a whole number: never too great.
    int x = ((binary - 1) * 1233) >> 12;
    Q_ASSUME(x >= kLeastExponent - 1 && x < kExactPower); // as the caller's range makes sure
    const auto below = [magnitude](int power) {
        return power >= 0 ? magnitude < kPowersOfTen[power]
                          : magnitude * kPowersOfTen[-power] < 1.0;
    };
    while (x < kExactPower && !below(x + 1)) {
        ++x;
    }
    return x;
}

/// d.ddd x 10^x as general format shows it: digits[0 .. count - 1] without trailing zeros, with an
/// exponent of at least two digits below 1e-4 and beyond 10^mostDecimal.
[[gnu::always_inline]] inline int layOut(const char *digits, int count, int x, int mostDecimal,
                                         bool negative, char *out)
{
    char *p = out;
    if (negative) {
        *p++ = '-';
    }
    const auto put = [&p, digits](int from, int to) {
        for (int i = from; i < to; ++i) {
            *p++ = digits[i];
        }
    };
    if (x >= 0 && x <= mostDecimal) {
        put(0, std::min(count, x + 1));
        for (int i = count; i < x + 1; ++i) {
            *p++ = '0';
        }
        if (count > x + 1) {
            *p++ = '.';
            put(x + 1, count);
        }
    } else if (x < 0 && x >= -4) {
        *p++ = '0';
        *p++ = '.';
        for (int i = -1; i > x; --i) {
            *p++ = '0';
        }
        put(0, count);
    } else {
        put(0, 1);
        if (count > 1) {
            *p++ = '.';
            put(1, count);
        }
        *p++ = 'e';
        *p++ = x < 0 ? '-' : '+';
        int power = x < 0 ? -x : x;
        if (power >= 100) {
            *p++ = static_cast<char>('0' + power / 100);
            power %= 100;
        }
        *p++ = static_cast<char>('0' + power / 10);
        *p++ = static_cast<char>('0' + power % 10);
    }
    return static_cast<int>(p - out);
}

/// d.ddddd x 10^x, six being these digits as an integer.
int writeDigits(unsigned six, int x, bool negative, char *out)
{
    char digits[6];
    for (int i = 5; i >= 0; --i) {
        digits[i] = static_cast<char>('0' + six % 10);
        six /= 10;
    }
    int count = 6;
    while (count > 1 && digits[count - 1] == '0') {
        --count;
    }
    return layOut(digits, count, x, 5, negative, out);
}

} // namespace

int writeGeneral(double value, char *out)
{
    const double magnitude = std::fabs(value);
    if (magnitude >= kLeastScaled && magnitude < kGreatestScaled) {
        // Six digits as an integer: value * 10^(5 - X), X the decimal exponent. One rounding, so
        // the fraction is known to 1e-9; nearer to a half than that, the toolkit decides.
        int x = decimalExponent(magnitude);
        const double scaled =
            x <= 5 ? magnitude * kPowersOfTen[5 - x] : magnitude / kPowersOfTen[x - 5];
        auto six = static_cast<unsigned>(scaled);
        const double fraction = scaled - six;
        if (std::fabs(fraction - 0.5) > 1e-9) {
            six += fraction > 0.5 ? 1 : 0;
            if (six >= kSevenDigits) {
                six /= 10;
                ++x;
            }
            return writeDigits(six, x, value < 0.0, out);
        }
        return writeByToolkit(value, 6, out);
    }
    if (!std::isfinite(value) || value == 0.0 || mayBeTie(value)) {
        return writeByToolkit(value, 6, out);
    }
    const auto end =
        std::to_chars(out, out + kGeneralTextSize, value, std::chars_format::general, 6).ptr;
    return static_cast<int>(end - out);
}

int writeShortest(double value, char *out)
{
    if (!std::isfinite(value) || value == 0.0) {
        return writeByToolkit(value, QLocale::FloatingPointShortest, out);
    }
    // Library and toolkit agree in the digits: the fewest that are read back as the same double,
    // of these the nearest, of two equally near (from 2^51 on) the even one. Only the layouts
    // differ.
    char text[kShortestTextSize]; // "d.ddde+xx"
    char *const end =
        std::to_chars(text, text + sizeof text, std::fabs(value), std::chars_format::scientific)
            .ptr;
    const char *const exponent = std::find(text, end, 'e');
    int x = 0;
    std::from_chars(exponent + 2, end, x);
    x = exponent[1] == '-' ? -x : x;
    const char *digits = text;
    if (text[1] == '.') {
        text[1] = text[0];
        digits = text + 1;
    }
    const auto count = static_cast<int>(exponent - digits);
    return layOut(digits, count, x, count + kZerosForExponent, value < 0.0, out);
}

NextNumber readNumber(const char *&at, const char *end, double &value)
{
    while (at != end && (*at == ' ' || *at == '\t')) {
        ++at;
    }
    if (at == end) {
        return NextNumber::None;
    }
    const char *p = at;
    const bool negative = *p == '-';
    if (negative || *p == '+') {
        ++p;
    }
    const char *const item = p;
    quint64 mantissa = 0;
    const auto takeDigits = [&] {
        const char *const first = p;
        for (; p != end; ++p) {
            const auto digit = static_cast<unsigned char>(*p - '0');
            if (digit > 9) {
                break;
            }
            mantissa = mantissa * 10 + digit;
        }
        return static_cast<int>(p - first);
    };
    int digits = takeDigits();
    int exponent = 0;
    if (p != end && *p == '.') {
        ++p;
        const int decimals = takeDigits();
        digits += decimals;
        exponent = -decimals;
    }
    const bool atEnd = p == end || *p == ' ' || *p == '\t';
    if (atEnd && digits > 0 && digits <= kSafeDigits && mantissa <= kExactInteger &&
        exponent >= -kExactPower) {
        // Both are exact doubles, so one division rounds correctly.
        const double magnitude = static_cast<double>(mantissa) / kPowersOfTen[-exponent];
        value = negative ? -magnitude : magnitude;
        at = p;
        return NextNumber::Item;
    }
    // Exponents and long mantissas: from_chars agrees with the toolkit wherever it takes all.
    for (; p != end && *p != ' ' && *p != '\t'; ++p) {
        const bool ofNumbers = (*p >= '0' && *p <= '9') || *p == 'e' || *p == 'E' || *p == '+' ||
                               *p == '-' || *p == '.';
        if (!ofNumbers) {
            return NextNumber::Other;
        }
    }
    if (item == p || *item == '-' || *item == '+') {
        return NextNumber::Other;
    }
    double magnitude = 0.0;
    const auto taken = std::from_chars(item, p, magnitude);
    if (taken.ec != std::errc() || taken.ptr != p) {
        return NextNumber::Other;
    }
    value = negative ? -magnitude : magnitude;
    at = p;
    return NextNumber::Item;
}

double throughSixDigits(double value)
{
    return QString::number(value, 'g', 6).toDouble();
}

} // namespace orvel
