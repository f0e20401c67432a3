#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace orvel {

/// A double to a 32-bit integer by truncation toward zero. What no 32-bit integer can hold
/// (not-a-number, infinities, too large magnitudes) gives the smallest integer: histograms then
/// count it as underflow, colour scales clamp it to their first colour.
inline std::int32_t toInt32(double value)
{
    constexpr double kLowest = -2147483648.0;
    constexpr double kBeyond = 2147483648.0;
    if (!(value > kLowest - 1.0 && value < kBeyond)) { // also false for not-a-number
        return std::numeric_limits<std::int32_t>::min();
    }
    return static_cast<std::int32_t>(value);
}

} // namespace orvel
