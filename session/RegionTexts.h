#pragma once

#include "analysis/RegionStatistics.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace orvel {

/// A region as session files hold it: "COLOUR Rectangle X0 Y0 X1 Y1" or "COLOUR Polygon X Y X Y
/// ...", numbers with as many digits as they need.
QString textOf(const Region &region);
/// None for what is no valid region.
std::optional<Region> regionFromText(const QString &text);

/// One line of the table of regions.
struct RegionRow {
    int region = 0; ///< from 0, as listed
    Quantity quantity = Quantity::Valence;
    RegionStatistics found;
};

/// Every determined quantity of every region, region by region.
/// references  how many valid ones take part
std::vector<RegionRow> regionRows(const ResultMaps &maps, int references,
                                  const std::vector<Region> &regions);

/// The table as CSV: region (from 1), colour, shape, quantity, mean, deviation, median, finite,
/// pixels.
QByteArray regionCsv(const std::vector<RegionRow> &rows, const std::vector<Region> &regions);

/// Where the table of a result file goes: map.dat, map_Regions.csv.
QString regionPathBeside(const QString &resultPath);
/// Writes it there; false when it could not be written, an older file then stays whole.
bool writeRegionFile(const QString &resultPath, const ResultMaps &maps, int references,
                     const std::vector<Region> &regions);

} // namespace orvel
