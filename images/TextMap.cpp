#include "images/TextMap.h"

#include "text/NumberText.h"
#include "text/TextFile.h"

#include <QDebug>

#include <limits>

namespace orvel {
namespace {

constexpr int kMostHeaderLines = 1 << 16;
constexpr qint64 kMostHeaderText = 1 << 24; ///< characters
constexpr int kFirstDataItem = 2;           ///< column numbers of beamline files count from here

enum class Kind {
    Scanner,  ///< "# 1306": x y signal [reference]
    Beamline, ///< "# 2003901": columns named by the header, grid counted from the positions
    Plain,    ///< anything else: as Scanner
};

Kind kindOf(const QString &firstLine)
{
    if (firstLine.startsWith(QLatin1String("# 1306"))) {
        return Kind::Scanner;
    }
    return firstLine.startsWith(QLatin1String("# 2003901")) ? Kind::Beamline : Kind::Plain;
}

class TextMapReader {
public:
    TextMapReader(TextMap &map, const EnergyListener &onEnergy) : m_map(map), m_onEnergy(onEnergy)
    {
    }

    ReadFailure read(TextFile &file)
    {
        m_fileSize = file.size();
        QString line;
        TextFile::Bytes bytes;
        bool first = true;
        while (file.isBytes() ? file.readBytes(bytes) : file.readLine(line)) {
            if (first) {
                m_kind = kindOf(file.isBytes() ? TextFile::textOf(bytes) : line);
                first = false;
            }
            m_bytesRead += file.isBytes() ? bytes.end - bytes.begin + 1 : m_fileSize;
            if (file.isBytes() && takePlainDataLine(bytes)) {
                if (m_map.columns.x.size() > static_cast<size_t>(ImageData::kMostPixels)) {
                    return ReadFailure::TooMuchData;
                }
                continue;
            }
            if (file.isBytes()) {
                line = TextFile::textOf(bytes);
            }
            const QStringList items = itemsOf(line);
            if (items.isEmpty()) {
                continue;
            }
            if (items[0].startsWith(QLatin1Char('#'))) {
                takeHeaderLine(line, items);
            } else {
                takeDataLine(items);
            }
            if (m_map.header.size() > kMostHeaderLines || m_headerText > kMostHeaderText ||
                m_map.columns.x.size() > static_cast<size_t>(ImageData::kMostPixels)) {
                return ReadFailure::TooMuchData;
            }
        }
        if (m_kind == Kind::Beamline) {
            countGrid();
        }
        return file.failure();
    }

private:
    void takeHeaderLine(const QString &line, const QStringList &items)
    {
        m_map.header.append(line);
        m_headerText += line.size();
        if (items.size() < 3) {
            return;
        }
        const QString key = items[1].toUpper();
        if (key == QLatin1String("AXIS") && items.size() > 7) {
            const int axis = items[2].toInt();
            const int last = items[7].toInt();
            const int count = last == std::numeric_limits<int>::max() ? last : last + 1;
            if (axis == 0) {
                m_map.xNum = count;
            } else if (axis == 1) {
                m_map.yNum = count;
            }
        } else if (key == QLatin1String("X-NUM")) {
            m_map.xNum = items[2].toInt();
        } else if (key == QLatin1String("Y-NUM")) {
            m_map.yNum = items[2].toInt();
        } else if (key == QLatin1String("ENERGY") && items.size() > 3) {
            if (m_onEnergy) {
                m_onEnergy(items[3]);
            }
        } else if (key == QLatin1String("I0")) {
            m_referenceItem = itemNumber(line);
        } else if (key == QLatin1String("I")) {
            m_signalItem = itemNumber(line);
        }
    }

    /// Item that a "# I : 3" line names. 64 bits: the number may be anything.
    static qint64 itemNumber(const QString &line)
    {
        return qint64(line.mid(line.indexOf(QLatin1Char(':')) + 1).toInt()) + kFirstDataItem;
    }

    /// takeDataLine() for lines of plain ASCII numbers, without making texts of them. False, with
    /// nothing taken, when the line needs the other way.
    bool takePlainDataLine(TextFile::Bytes line)
    {
        while (line.begin != line.end && line.end[-1] == '\r') {
            --line.end;
        }
        const char *at = line.begin;
        double x = 0.0;
        double y = 0.0;
        double signal = 0.0;
        double reference = 1.0;
        if (m_kind == Kind::Beamline) {
            if (m_signalItem < 0 || m_referenceItem < 0) {
                return false;
            }
            const qint64 last = qMax<qint64>(1, qMax(m_signalItem, m_referenceItem));
            for (qint64 i = 0; i <= last; ++i) {
                double value = 0.0;
                switch (readNumber(at, line.end, value)) {
                case NextNumber::Other:
                    return false;
                case NextNumber::None:
                    return true; // too short to hold a pixel
                case NextNumber::Item:
                    break;
                }
                x = i == 0 ? value : x;
                y = i == 1 ? value : y;
                signal = i == m_signalItem ? value : signal;
                reference = i == m_referenceItem ? value : reference;
            }
        } else {
            double *const values[] = {&x, &y, &signal, &reference};
            for (int i = 0; i < 4; ++i) {
                switch (readNumber(at, line.end, *values[i])) {
                case NextNumber::Other:
                    return false;
                case NextNumber::None:
                    if (i < 3) {
                        return true;
                    }
                    break; // no reference: 1
                case NextNumber::Item:
                    break;
                }
            }
        }
        append(x, y, signal, reference);
        return true;
    }

    void append(double x, double y, double signal, double reference)
    {
        MapColumns &columns = m_map.columns;
        constexpr size_t kSampled = 1024; // enough to tell how many lines a file in bytes has
        if (columns.x.size() == kSampled) {
            const double lines =
                static_cast<double>(m_fileSize) / static_cast<double>(m_bytesRead) * kSampled;
            const auto expected = static_cast<size_t>(
                qBound(0.0, 1.05 * lines, static_cast<double>(ImageData::kMostPixels)));
            for (Column *column : {&columns.x, &columns.y, &columns.signal, &columns.reference}) {
                column->reserve(expected);
            }
        }
        columns.x.push_back(x);
        columns.y.push_back(y);
        columns.signal.push_back(signal);
        columns.reference.push_back(reference);
    }

    void takeDataLine(const QStringList &items)
    {
        double signal = 0.0;
        double reference = 1.0;
        if (m_kind == Kind::Beamline) {
            const auto has = [&items](qint64 i) { return i >= 0 && i < items.size(); };
            if (items.size() < kFirstDataItem || !has(m_signalItem) || !has(m_referenceItem)) {
                return;
            }
            signal = items[static_cast<int>(m_signalItem)].toDouble();
            reference = items[static_cast<int>(m_referenceItem)].toDouble();
        } else {
            if (items.size() < 3) {
                return;
            }
            signal = items[2].toDouble();
            if (items.size() > 3) {
                reference = items[3].toDouble();
            }
        }
        append(items[0].toDouble(), items[1].toDouble(), signal, reference);
    }

    void countGrid()
    {
        const MapColumns &columns = m_map.columns;
        m_map.xNum = 0;
        m_map.yNum = 0;
        for (size_t i = 0; i < columns.x.size(); ++i) {
            m_map.xNum += columns.y[i] == columns.y[0] ? 1 : 0;
            m_map.yNum += columns.x[i] == columns.x[0] ? 1 : 0;
        }
    }

    TextMap &m_map;
    const EnergyListener &m_onEnergy;
    Kind m_kind = Kind::Plain;
    qint64 m_headerText = 0;
    qint64 m_fileSize = 0;
    qint64 m_bytesRead = 0;
    qint64 m_signalItem = kFirstDataItem;
    qint64 m_referenceItem = kFirstDataItem;
};

} // namespace

ReadFailure readTextMap(const QString &path, const EnergyListener &onEnergy, TextMap &map)
{
    map = TextMap();
    TextFile file(path);
    if (!file.open()) {
        return file.failure();
    }
    const ReadFailure failure = TextMapReader(map, onEnergy).read(file);
    if (failure != ReadFailure::None) {
        return failure;
    }
    qDebug().noquote() << "size" << map.xNum << map.yNum;
    if (map.columns.x.empty()) {
        return ReadFailure::NoPixel;
    }
    if (map.xNum < 1 || map.yNum < 1) {
        return ReadFailure::NoGrid;
    }
    const qint64 promised = qint64(map.xNum) * map.yNum;
    if (promised - qint64(map.columns.x.size()) > kMostMissing) {
        return ReadFailure::GridTooLarge;
    }
    return ReadFailure::None;
}

} // namespace orvel
