#include "text/NumberText.h"

#include <QString>

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

int writeByToolkit(double value, char *out)
{
    const QByteArray text = QByteArray::number(value, 'g', 6);
    std::memcpy(out, text.constData(), static_cast<size_t>(text.size()));
    return text.size();
}

} // namespace

int writeGeneral(double value, char *out)
{
    if (!std::isfinite(value) || value == 0.0 || mayBeTie(value)) {
        return writeByToolkit(value, out);
    }
    const auto end =
        std::to_chars(out, out + kGeneralTextSize, value, std::chars_format::general, 6).ptr;
    return static_cast<int>(end - out);
}

double throughSixDigits(double value)
{
    return QString::number(value, 'g', 6).toDouble();
}

} // namespace orvel
