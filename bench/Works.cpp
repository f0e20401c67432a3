#include "bench/Work.h"

#include "bench/FileWorks.h"
#include "bench/MapWorks.h"

namespace orvel::bench {

const std::vector<NamedWork> &works()
{
    static const std::vector<NamedWork> all = {
        {"read-map", makeReadMap},
        {"noneq-map", makeNonEquivMap},
        {"noneq-map-again", makeNonEquivMapAgain},
        {"fourpoint-map", makeFourPointMap},
        {"fourpoint-map-again", makeFourPointMapAgain},
        {"write-map", makeWriteMap},
        {"read-spectrum", makeReadSpectrum},
        {"read-processed", makeReadProcessed},
        {"raw-read", makeRawRead},
    };
    return all;
}

} // namespace orvel::bench
