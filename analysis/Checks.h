#pragma once

#include "analysis/AnalysisInput.h"
#include "analysis/Message.h"

namespace orvel {

/// What a step is to run.
enum class Method {
    None, ///< a check stopped it
    ThreePoints,
    ExactFourPoints,
    LeastSquares,
    NonEquivLinear,
    NonEquivVictoreen,
};

inline bool isNonEquiv(Method method)
{
    return method == Method::NonEquivLinear || method == Method::NonEquivVictoreen;
}

/// Outcome of the checks before a step: the messages in their order, and what runs on which points.
/// A message need not stop the step.
struct Plan {
    std::vector<Line> messages;
    Method method = Method::None;
    std::vector<size_t> used; ///< indices into AnalysisInput::points, in row order
    int vPoint = -1;          ///< the same of the last used V point; -1: none
};

Plan checkTarget(const AnalysisInput &input);
Plan checkMap(const AnalysisInput &input);

/// Outcome of the checks before a linear combination fit.
struct LcfPlan {
    std::vector<Line> messages;
    bool run = false;
    double lowEv = 0.0; ///< range of the fit, both ends included
    double highEv = 0.0;
};

LcfPlan checkLcf(const AnalysisInput &input);

} // namespace orvel
