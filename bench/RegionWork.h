#pragma once

#include "bench/Work.h"

namespace orvel::bench {

/// Statistics of one region of 1e6 pixels in a map that is little larger.
std::unique_ptr<Work> makeRegionStats();

} // namespace orvel::bench
