#pragma once

#include "LinearModel.h"
#include "Samples.h"

#include <map>

namespace orvel::phantom {

/// How far a Victoreen line fitted to a written spectrum can lie from the true line: digits of the
/// file (kSpectrumError a point) and double-precision normal equations. Remembers what it was
/// asked, so a question a pixel is cheap; for one thread.
class FittedLine {
public:
    enum class Side { PreEdge, PostEdge };

    /// `trueLine` is what the spectrum follows on the whole fit range of `side`.
    FittedLine(const Victoreen &trueLine, Side side);

    double errorAt(double energyEv) const; ///< of the line [1]
    double coefficientError(std::size_t index) const { return m_coefficientErrors.at(index); }

private:
    double errorOf(const Numbers &f) const;

    LinearModel m_model;
    Numbers m_coefficients; // constant, cube, fourth power
    std::array<double, 3> m_coefficientErrors{};
    mutable std::map<double, double> m_asked; // energy -> errorAt
};

/// Both lines of one spectrum.
struct FittedLines {
    FittedLines(const Victoreen &preEdge, double edgeJump);

    /// Of the edge jump [1].
    double jumpError() const { return pre.errorAt(kEdgeEv) + post.errorAt(kEdgeEv); }

    FittedLine pre, post;
};

const FittedLines &linesOfReference(std::size_t compound);
const FittedLines &linesOfTarget(Sample sample);

} // namespace orvel::phantom
