#include "bench/Work.h"

#include "bench/AdviserWork.h"
#include "bench/FileWorks.h"
#include "bench/MapWorks.h"
#include "bench/PaintWorks.h"
#include "bench/RegionWork.h"
#include "bench/WindowWorks.h"

namespace orvel::bench {

const std::vector<NamedWork> &works()
{
    static const std::vector<NamedWork> all = {
        {"read-map", makeReadMap},
        {"noneq-map", makeNonEquivMap},
        {"noneq-map-again", makeNonEquivMapAgain},
        {"sigma-map", makeSigmaMap},
        {"bounded-map", makeBoundedMap},
        {"fourpoint-map", makeFourPointMap},
        {"fourpoint-map-again", makeFourPointMapAgain},
        {"advise", makeAdvise},
        {"region-stats", makeRegionStats},
        {"write-map", makeWriteMap},
        {"read-spectrum", makeReadSpectrum},
        {"read-processed", makeReadProcessed},
        {"raw-read", makeRawRead},
        {"paint-map", makePaintMap},
        {"paint-map-again", makePaintMapAgain},
        {"pan-map", makePanMap},
        {"paint-graph", makePaintGraph},
        {"paint-graph-2x", makePaintGraph2x},
        {"window-load", makeWindowLoad},
        {"window-click", makeWindowClick},
        {"session-open", makeSessionOpen},
        {"session-read", makeSessionRead},
        {"paint-scatter", makePaintScatter},
        {"paint-scatter-again", makePaintScatterAgain},
        {"paint-comparison", makePaintComparison},
        {"paint-comparison-again", makePaintComparisonAgain},
        {"drag-energy", makeDragEnergy},
        {"window-start", makeWindowStart},
        {"window-empty", makeWindowEmpty},
    };
    return all;
}

} // namespace orvel::bench
