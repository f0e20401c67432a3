#pragma once

#include "bench/Work.h"

namespace orvel::bench {

/// A map of 1000 x 1000 values painted into 900 x 700 pixels: just computed, its limits unknown;
/// once more, nothing changed; moved by a few pixels.
std::unique_ptr<Work> makePaintMap();
std::unique_ptr<Work> makePaintMapAgain();
std::unique_ptr<Work> makePanMap();

/// A noisy spectrum of 2000 points with frame and titles on 900 x 700; the second one for a
/// display of twice the resolution.
std::unique_ptr<Work> makePaintGraph();
std::unique_ptr<Work> makePaintGraph2x();

} // namespace orvel::bench
