// Text maps of all three kinds, as file content and as the image of an energy point.

#include "images/TextMap.h"
#include "fuzz/Fuzz.h"
#include "images/A2DData.h"

#include <cmath>

using namespace orvel::fuzz;
using orvel::MapColumns;
using orvel::ReadFailure;
using orvel::TextMap;

namespace {

struct Reading {
    ReadFailure failure = ReadFailure::None;
    TextMap map;
    QStringList energies;
};

Reading readMap(const QString &path)
{
    Reading reading;
    reading.failure = orvel::readTextMap(
        path, [&reading](const QString &text) { reading.energies.append(text); }, reading.map);
    return reading;
}

bool sameColumns(const MapColumns &a, const MapColumns &b)
{
    return sameBits(a.x, b.x) && sameBits(a.y, b.y) && sameBits(a.signal, b.signal) &&
           sameBits(a.reference, b.reference);
}

bool sameReading(const Reading &a, const Reading &b)
{
    return a.failure == b.failure && a.energies == b.energies && a.map.header == b.map.header &&
           a.map.xNum == b.map.xNum && a.map.yNum == b.map.yNum &&
           sameColumns(a.map.columns, b.map.columns);
}

void requireOutcome(const Reading &reading)
{
    const MapColumns &columns = reading.map.columns;
    const auto records = static_cast<qint64>(columns.x.size());
    const int xNum = reading.map.xNum;
    const int yNum = reading.map.yNum;
    require(columns.y.size() == columns.x.size() && columns.signal.size() == columns.x.size() &&
                columns.reference.size() == columns.x.size(),
            "columns have one length");
    require(reading.energies.size() <= reading.map.header.size(),
            "energies come from header lines");
    switch (reading.failure) {
    case ReadFailure::None:
        require(xNum > 0 && yNum > 0 && records > 0 &&
                    qint64(xNum) * yNum - records <= orvel::kMostMissing,
                "a map that was read has a grid and pixels for it");
        break;
    case ReadFailure::NoPixel:
        require(records == 0, "no pixel means none");
        break;
    case ReadFailure::NoGrid:
        require(xNum < 1 || yNum < 1, "no grid means none");
        break;
    case ReadFailure::GridTooLarge:
        require(qint64(xNum) * yNum - records > orvel::kMostMissing,
                "a grid is refused for its size only");
        break;
    default:
        break;
    }
}

QByteArray exactText(double value)
{
    if (std::isnan(value)) {
        return "nan"; // its sign is not kept, nor is one ever read
    }
    char text[32];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

/// The columns as a file of their own: 17 digits hold every double.
QByteArray rewritten(const TextMap &map, bool beamline)
{
    QByteArray bytes = beamline ? QByteArray("# 2003901\n# I : 0\n# I0 : 1\n")
                                : "# X-NUM " + QByteArray::number(map.xNum) + "\n# Y-NUM " +
                                      QByteArray::number(map.yNum) + '\n';
    const MapColumns &columns = map.columns;
    for (std::size_t i = 0; i < columns.x.size(); ++i) {
        bytes += exactText(columns.x[i]) + ' ' + exactText(columns.y[i]) + '\t' +
                 exactText(columns.signal[i]) + ' ' + exactText(columns.reference[i]) + '\n';
    }
    return bytes;
}

void requireImage(const QString &path, const Reading &reading)
{
    const MapColumns &columns = reading.map.columns;
    A2DData point;
    const bool loaded = point.loadTextMap(path);
    require(loaded == (reading.failure == ReadFailure::None) &&
                point.loadFailure() == reading.failure && point.hasMap() == loaded,
            "a file that was read is the image of its point");
    if (!loaded) {
        return;
    }
    const auto image = point.map();
    require(image->size() == static_cast<qint64>(columns.x.size()) &&
                image->header() == reading.map.header,
            "an image holds its file");
    for (qint64 i = 0; i < image->size(); ++i) {
        const auto k = static_cast<std::size_t>(i);
        const orvel::PixelRecord pixel = image->pixel(i);
        require(sameBits(pixel.x, columns.x[k]) && sameBits(pixel.y, columns.y[k]) &&
                    sameBits(pixel.signal, columns.signal[k]) &&
                    sameBits(pixel.reference, columns.reference[k]),
                "an image's records are the file's");
        require(sameBits(image->absorptionPlane()[k],
                         orvel::absorptionOf(pixel.signal, pixel.reference)),
                "absorptions taken at loading are those of the records");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = bytesOf(data, size);
    const QString path = scratchFile(QStringLiteral("map.txt"), bytes);

    const Reading first = readMap(path);
    requireOutcome(first);
    require(sameReading(first, readMap(path)), "a second read gives the same");
    requireImage(path, first);

    for (const SameText &text : sameTexts(bytes)) {
        const Reading variant = readMap(scratchFile(QStringLiteral("same.txt"), text.bytes));
        require(sameReading(first, variant), text.relation);
    }

    for (const bool beamline : {false, true}) {
        const Reading again =
            readMap(scratchFile(QStringLiteral("rewritten.txt"), rewritten(first.map, beamline)));
        require(sameColumns(first.map.columns, again.map.columns),
                "columns survive being written with all their digits");
        if (!beamline) {
            require(again.map.xNum == first.map.xNum && again.map.yNum == first.map.yNum,
                    "a grid survives being written");
        }
    }
    return 0;
}
