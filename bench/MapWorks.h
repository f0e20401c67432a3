#pragma once

#include "bench/Work.h"

namespace orvel::bench {

/// Maps of the sample's 1000 x 1000 pixels. The plain ones take the logarithms of the intensities
/// too, the -Again ones find them taken.
std::unique_ptr<Work> makeNonEquivMap();
std::unique_ptr<Work> makeNonEquivMapAgain();
std::unique_ptr<Work> makeFourPointMap();
std::unique_ptr<Work> makeFourPointMapAgain();
/// The -Again map with its planes of residuals and standard deviations.
std::unique_ptr<Work> makeSigmaMap();
/// A map without negative coefficients; a quarter of the pixels would have one.
std::unique_ptr<Work> makeBoundedMap();

} // namespace orvel::bench
