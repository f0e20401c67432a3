#pragma once

#include "panel/plots/Span.h"
#include "spectra/AMutE.h"

#include <vector>

namespace orvel {

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
