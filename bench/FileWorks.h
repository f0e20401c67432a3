#pragma once

#include "bench/Work.h"

namespace orvel::bench {

std::unique_ptr<Work> makeReadMap();       ///< 1e6 lines of a text map into an A2DData
std::unique_ptr<Work> makeWriteMap();      ///< a result file of 1e6 lines of five numbers
std::unique_ptr<Work> makeReadSpectrum();  ///< 2000 points, both lines fitted
std::unique_ptr<Work> makeReadProcessed(); ///< 4096 x 4096 values and flags
std::unique_ptr<Work> makeRawRead();       ///< the bytes of that file

} // namespace orvel::bench
