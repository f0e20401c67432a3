#pragma once

#include "analysis/AnalysisInput.h"

#include <QString>

namespace orvel {

/// Text of a row's absorption field: the spectrum's mu at the row's energy minus its pre-edge or
/// post-edge line, six significant digits; empty when the spectrum does not reach the energy.
QString rowValueText(const AMutE &spectrum, double energyEv, bool subtractPost);

/// Fills the absorptions of all points from the spectra, through their texts. Points without a
/// positive energy and columns of references that are not loaded stay as they are.
void fillRowValues(AnalysisInput &input);

} // namespace orvel
