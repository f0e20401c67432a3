#pragma once

#include "analysis/AnalysisInput.h"

#include <array>
#include <vector>

namespace orvel::bench {

class Random;

/// Images of an invented sample of four compounds at eight energies about an edge, 0.1 % noise,
/// and what an analysis of them takes as input.
class Sample {
public:
    /// side  width and height of the images [pixels]
    explicit Sample(int side);

    using Column = orvel::Column;

    const std::array<Column, kPointRows> &signalColumns() const { return m_signals; }
    const std::array<Column, kPointRows> &referenceColumns() const { return m_references; }

    /// All compounds, all energies, Victoreen background.
    const AnalysisInput &nonEquiv() const { return m_nonEquiv; }
    /// Least squares by the first and the last compound, V point 7125 eV.
    const AnalysisInput &fourPoints() const { return m_fourPoints; }

    /// Amount of each compound, the mean over all pixels, as multiples of its spectrum.
    const std::array<double, kReferenceRows> &meanAmounts() const { return m_meanAmounts; }

private:
    void makeIntensities(std::size_t pixels, Random &random);

    std::array<Column, kPointRows> m_signals;
    std::array<Column, kPointRows> m_references;
    std::array<double, kReferenceRows> m_meanAmounts = {};
    AnalysisInput m_nonEquiv;
    AnalysisInput m_fourPoints;
};

} // namespace orvel::bench
