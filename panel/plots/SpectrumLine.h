#pragma once

#include "spectra/AMutE.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

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

/// A spectrum as it is drawn.
struct SpectrumLine {
    std::vector<double> energies;
    std::vector<double> values;
};

inline SpectrumLine lineOf(const AMutE &spectrum, int mode)
{
    SpectrumLine line;
    const int n = spectrum.points().size();
    line.energies.reserve(static_cast<size_t>(n));
    line.values.reserve(static_cast<size_t>(n));
    for (int i = 0; i < n; ++i) {
        line.energies.push_back(spectrum.effectiveEnergy(i));
        line.values.push_back(spectrum.valueAt(mode, i));
    }
    return line;
}

/// Adds the values at energies inside a span.
inline void addValues(const SpectrumLine &line, const Span &shown, Span &values)
{
    for (size_t i = 0; i < line.energies.size(); ++i) {
        if (shown.contains(line.energies[i])) {
            values.add(line.values[i]);
        }
    }
}

} // namespace orvel
