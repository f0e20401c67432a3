#pragma once

#include "images/ImageData.h"
#include "text/ReadFailure.h"

#include <functional>

namespace orvel {

/// Takes the text of an "ENERGY" header line [eV], as it stands, the moment it is read.
using EnergyListener = std::function<void(const QString &)>;

/// Content of a text map file; docs/formats.md shows the three kinds.
struct TextMap {
    QStringList header; ///< comment lines as they stand
    int xNum = 0;
    int yNum = 0;
    MapColumns columns;
};

/// Reads a text map. Bad numbers count as 0, short data lines are skipped.
///
/// None          grid and at least one pixel are there
/// NoGrid, NoPixel   the file was read, map holds what there was
/// any other     the file cannot be taken: missing, too large, or its header claims a grid of far
///               more pixels than the file holds (more than kMostMissing are missing)
ReadFailure readTextMap(const QString &path, const EnergyListener &onEnergy, TextMap &map);

/// Pixels that a grid may promise beyond those that are there.
inline constexpr qint64 kMostMissing = qint64(1) << 22;

} // namespace orvel
