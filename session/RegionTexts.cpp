#include "session/RegionTexts.h"

#include "analysis/BinCounts.h"
#include "session/SessionTexts.h"
#include "text/Csv.h"
#include "text/OutputFile.h"

#include <QStringList>

namespace orvel {
namespace {

QString shapeName(Region::Shape shape)
{
    return shape == Region::Shape::Rectangle ? QStringLiteral("Rectangle")
                                             : QStringLiteral("Polygon");
}

} // namespace

QString textOf(const Region &region)
{
    QStringList items = {QString::number(region.colour), shapeName(region.shape)};
    for (const RegionPoint &corner : region.corners) {
        items << csvNumber(corner.x) << csvNumber(corner.y);
    }
    return items.join(QLatin1Char(' '));
}

std::optional<Region> regionFromText(const QString &text)
{
    constexpr int kBefore = 2;
    const QStringList items = text.simplified().split(QLatin1Char(' '));
    if (items.size() < kBefore || items.size() > kBefore + 2 * kMostCorners ||
        items.size() % 2 != 0) {
        return std::nullopt;
    }
    Region region;
    region.colour = items[0].toInt();
    region.shape = items[1] == shapeName(Region::Shape::Polygon) ? Region::Shape::Polygon
                                                                 : Region::Shape::Rectangle;
    bool areNumbers = items[1] == shapeName(region.shape);
    for (int i = kBefore; i < items.size() && areNumbers; i += 2) {
        RegionPoint corner;
        bool isNumber[2] = {false, false};
        corner.x = items[i].toDouble(&isNumber[0]);
        corner.y = items[i + 1].toDouble(&isNumber[1]);
        areNumbers = isNumber[0] && isNumber[1];
        region.corners.push_back(corner);
    }
    return areNumbers && region.isValid() ? std::optional<Region>(region) : std::nullopt;
}

std::vector<RegionRow> regionRows(const ResultMaps &maps, int references,
                                  const std::vector<Region> &regions)
{
    std::vector<RegionRow> rows;
    RegionStatistician statistician;
    for (size_t i = 0; i < regions.size(); ++i) {
        const std::vector<PixelSpan> pixels = pixelsOf(regions[i], maps.width(), maps.height());
        for (int q = 0; q < kMapQuantities; ++q) {
            if (isDetermined(maps, references, quantityAt(q))) {
                rows.push_back({static_cast<int>(i), quantityAt(q),
                                statistician.of(maps, quantityAt(q), pixels)});
            }
        }
    }
    return rows;
}

QByteArray regionCsv(const std::vector<RegionRow> &rows, const std::vector<Region> &regions)
{
    QByteArray csv = csvLine(QStringLiteral("region colour shape quantity mean deviation median "
                                            "finite pixels")
                                 .split(QLatin1Char(' ')));
    for (const RegionRow &row : rows) {
        const Region &region = regions[static_cast<size_t>(row.region)];
        csv += csvLine({QString::number(row.region + 1), QString::number(region.colour),
                        shapeName(region.shape), mapQuantityNames()[indexOf(row.quantity)],
                        csvNumber(row.found.mean), csvNumber(row.found.deviation),
                        csvNumber(row.found.median), QString::number(row.found.finite),
                        QString::number(row.found.pixels)});
    }
    return csv;
}

QString regionPathBeside(const QString &resultPath)
{
    return BinCounts::pathBeside(resultPath, QStringLiteral("Regions"), QStringLiteral("csv"));
}

bool writeRegionFile(const QString &resultPath, const ResultMaps &maps, int references,
                     const std::vector<Region> &regions)
{
    OutputFile file(regionPathBeside(resultPath));
    if (!file.open()) {
        return false;
    }
    file.write(regionCsv(regionRows(maps, references, regions), regions));
    return file.commit();
}

} // namespace orvel
