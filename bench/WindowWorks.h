#pragma once

#include "bench/Work.h"

class QCoreApplication;

namespace orvel::bench {

/// The application object that the works of paint and window need: offscreen, with widgets.
std::unique_ptr<QCoreApplication> makeApplication(int &argc, char **argv);

/// From a choice or a click in the shown window until it is idle again: everything calculated,
/// laid out and painted.
std::unique_ptr<Work> makeWindowLoad();
std::unique_ptr<Work> makeWindowClick();

/// A session of eight maps opened in the shown window until it is idle, and its inputs just read.
std::unique_ptr<Work> makeSessionOpen();
std::unique_ptr<Work> makeSessionRead();

/// The scatter of amounts alone: after a new result, and unchanged.
std::unique_ptr<Work> makePaintScatter();
std::unique_ptr<Work> makePaintScatterAgain();
/// A frame of a drag in the graph of all spectra, everything shown.
std::unique_ptr<Work> makePaintComparison();
std::unique_ptr<Work> makePaintComparisonAgain();
std::unique_ptr<Work> makeDragEnergy();

/// From nothing to the first paint: the main window, and one of as many plain widgets in the same
/// layouts, with the same texts and none of our classes.
std::unique_ptr<Work> makeWindowStart();
std::unique_ptr<Work> makeWindowEmpty();

} // namespace orvel::bench
