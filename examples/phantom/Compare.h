#pragma once

#include "Expectation.h"

#include <filesystem>
#include <iosfwd>

namespace orvel::phantom {

/// Both functions print one line a quantity to `out` and return whether every found number is
/// finite and lies within its own bound (Expected::bound plus half a unit of the last printed
/// digit). They throw std::runtime_error where the file cannot be read or holds something else than
/// an analysis by this plan.

/// A result map file, pixel by pixel, positions included. Columns that were not recorded are not
/// compared, but at least one quantity must be there. Bounds differ from pixel to pixel: thin
/// places are known less well; the line tells where found and true lie furthest apart.
bool compareMap(const Plan &plan, const std::filesystem::path &resultFile, std::ostream &out);

/// The lines "CalcRes = ", "TargetDMut = " (non-equivalent only) and "LCFRes = ", in English, of a
/// file with what the program printed.
bool compareTarget(const Plan &plan, const std::filesystem::path &printed, std::ostream &out);

/// A table of the beamtime's samples, one line each, known by the folder in its first column: every
/// status 0, the means of all ratios, of valence and amount within the mean of their pixels'
/// bounds.
bool compareTable(const std::filesystem::path &table, std::ostream &out);

} // namespace orvel::phantom
