#pragma once

#include "analysis/ResultMaps.h"

#include <QString>

#include <array>
#include <vector>

namespace orvel {

/// What the panel adds to the maps when it writes them.
struct ResultFileOptions {
    std::array<bool, kQuantities> record; ///< columns of a non-equivalent file, by Quantity
    /// Valences of the valid references as they are now; a four-points file computes its valence
    /// column by the first two, and shows 0 with fewer.
    std::vector<double> valences;
};

/// Name of a quantity's column; "UnKnown" for an index outside.
const char *columnName(int index);

/// Writes a "# klyv result map V1.0" file: the image's header lines, an empty line, then one line
/// a pixel, numbers in general format with six digits, right-aligned in 10 characters. A bounded
/// fit adds one comment line to the header that says so.
///
/// maps  null: nothing was computed yet, the file has no pixel
/// False when it could not be written; an older file then stays whole.
bool writeResultFile(const QString &path, const ResultMaps *maps, const ResultFileOptions &options);

/// Where the standard deviations of a result file go: map.dat, map_Sigma.dat.
QString sigmaPathBeside(const QString &resultPath);

/// Writes the planes of residuals and standard deviations in the layout of the result file, with a
/// line that names the columns and one that says what noise they stand on. Not determined: nan.
///
/// maps  with precision()
/// False when it could not be written; an older file then stays whole.
bool writeSigmaFile(const QString &path, const ResultMaps &maps);

} // namespace orvel
