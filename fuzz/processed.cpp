// Processed maps: the binary file of width x height doubles with a validity flag each.

#include "fuzz/Fuzz.h"
#include "images/A2DData.h"
#include "images/TDData0.h"
#include "text/NumberText.h"

using namespace orvel::fuzz;

namespace {

/// Round trips of larger maps would take the time of hundreds of small ones.
constexpr int kMostPixelsWritten = 1 << 14;

/// Pixels that a header promises, roughly as it is read.
qint64 promisedPixels(const QByteArray &bytes)
{
    qint64 pixels = 1;
    for (const QByteArray key : {"\nWIDTH:", "\nHEIGHT:"}) {
        const int at = bytes.lastIndexOf(key) + key.size();
        pixels *= bytes.mid(at, qMax(0, bytes.indexOf('\n', at) - at)).trimmed().toInt();
    }
    return pixels;
}

bool sameNumbers(const TDData0 &a, const TDData0 &b)
{
    return a.width == b.width && a.height == b.height && sameBits(a.data, b.data) &&
           a.valid == b.valid;
}

bool sameMap(const TDData0 &a, const TDData0 &b)
{
    return sameNumbers(a, b) && a.dataId == b.dataId && sameBits(a.minVal, b.minVal) &&
           sameBits(a.maxVal, b.maxVal);
}

void fill(TDData0 &map)
{
    map.dataId = QStringLiteral("earlier map");
    map.width = 2;
    map.height = 1;
    map.data = {1.5, -2.5};
    map.valid = {true, false};
    map.minVal = -2.5;
    map.maxVal = 1.5;
}

/// A file that ends early has the same pixels as far as it goes, and then zeros without validity.
void requireCut(const QByteArray &bytes, int left, const TDData0 &whole)
{
    TDData0 cut;
    if (!cut.read(scratchFile(QStringLiteral("cut.tdd"), bytes.left(left))) ||
        cut.width != whole.width || cut.height != whole.height) {
        return; // the cut went into the header
    }
    bool ended = false;
    for (int i = 0; i < cut.data.size(); ++i) {
        const bool same = sameBits(cut.data[i], whole.data[i]);
        require(same || sameBits(cut.data[i], 0.0), "a missing value is 0");
        ended = ended || !same;
        require(!ended || sameBits(cut.data[i], 0.0), "no value follows a missing one");
        require(!cut.valid[i] || whole.valid[i], "a missing flag is not valid");
    }
}

void requireRoundTrip(TDData0 &map)
{
    const QString path = scratchPath(QStringLiteral("written.tdd"));
    require(map.write(path), "a map that was read can be written");
    TDData0 back;
    require(back.read(path), "a map that was written can be read");
    require(sameNumbers(map, back), "values and flags survive being written");
    QString id = map.dataId;
    require(back.dataId == id.replace(QChar(), QLatin1Char(' ')),
            "an identifier survives being written, but for its zero characters");
    require(sameBits(back.minVal, orvel::throughSixDigits(map.minVal)) &&
                sameBits(back.maxVal, orvel::throughSixDigits(map.maxVal)),
            "limits survive with six digits");
    const QString secondPath = scratchPath(QStringLiteral("second.tdd"));
    TDData0 second;
    require(back.write(secondPath) && second.read(secondPath) && sameMap(back, second),
            "from then on nothing changes");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = bytesOf(data, size);
    // A search tries millions of lengths of digits; replaying takes the large claims of the corpus.
    if (kSearching && promisedPixels(bytes) > kMostPixelsWritten) {
        return 0;
    }
    const QString path = scratchFile(QStringLiteral("map.tdd"), bytes);

    TDData0 first;
    fill(first);
    TDData0 untouched;
    fill(untouched);
    const bool read = first.read(path);
    require(read == (first.readFailure() == orvel::ReadFailure::None),
            "a failed read has a reason");
    if (!read) {
        require(sameMap(first, untouched), "a failed read changes nothing");
        return 0;
    }
    require(first.width > 0 && first.height > 0 &&
                first.data.size() == qint64(first.width) * first.height &&
                first.valid.size() == first.data.size(),
            "a map that was read fills its grid");
    require(TDData0::isProcessedMap(path), "a map that was read is told by its first bytes");
    if (first.data.size() > kMostPixelsWritten) {
        return 0;
    }

    TDData0 second;
    require(second.read(path) && sameMap(first, second), "a second read gives the same");
    A2DData point;
    require(point.loadMap(path) && point.pixelCount() == first.data.size() &&
                sameBits(point.map()->absorptionPlane(),
                         orvel::Column(first.data.cbegin(), first.data.cend())),
            "its values are the absorptions of an image");
    requireRoundTrip(first);
    const int size32 = bytes.size();
    for (const int left : {size32 - 1, size32 - first.data.size() - 3, size32 / 2}) {
        if (left > 0) {
            requireCut(bytes, left, first);
        }
    }
    return 0;
}
