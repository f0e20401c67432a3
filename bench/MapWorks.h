#pragma once

#include "bench/Work.h"

namespace orvel::bench {

/// Maps of the sample's 1000 x 1000 pixels. The plain ones take the logarithms of the intensities
/// too, the -Again ones find them taken.
std::unique_ptr<Work> makeNonEquivMap();
std::unique_ptr<Work> makeNonEquivMapAgain();
std::unique_ptr<Work> makeFourPointMap();
std::unique_ptr<Work> makeFourPointMapAgain();

} // namespace orvel::bench
