#include "images/TextMap.h"

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
        QString line;
        bool first = true;
        while (file.readLine(line)) {
            if (first) {
                m_kind = kindOf(line);
                first = false;
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
        MapColumns &columns = m_map.columns;
        columns.x.push_back(items[0].toDouble());
        columns.y.push_back(items[1].toDouble());
        columns.signal.push_back(signal);
        columns.reference.push_back(reference);
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
