#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvel {

/// The extent of finite values.
struct Span {
    double low = std::numeric_limits<double>::max();
    double high = std::numeric_limits<double>::lowest();

    void add(double value)
    {
        if (std::isfinite(value)) {
            low = std::min(low, value);
            high = std::max(high, value);
        }
    }
    bool isEmpty() const { return low > high; }
    bool contains(double value) const { return value >= low && value <= high; }
    /// A part of its width wider both ways; half a unit when it has none.
    Span wider(double part) const
    {
        const double beside = high > low ? part * (high - low) : 0.5;
        return {low - beside, high + beside};
    }
};

} // namespace orvel
