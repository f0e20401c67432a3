// The two layouts of spectrum files; docs/formats.md shows examples of both.

#include "spectra/AMutE.h"

#include "text/NumberText.h"
#include "text/TextFile.h"

#include <QDebug>
#include <QFileInfo>

#include <cmath>
#include <new>

using orvel::itemsOf;
using orvel::ReadFailure;
using orvel::TextFile;

namespace {

// Angles and energies are those of the beamline's own programs, which use this value of pi and
// these lattice constants; better ones would shift the energies of existing files.
constexpr double kPi = 3.1415926535;
constexpr double kHcKevAngstrom = 12.398424360387684;
constexpr double kDefaultSpacing = 3.1355316; // d of Si(111) [Angstrom]
constexpr double kTwiceSpacing = 6.2710632;   // 2d for the angles of two-column files [Angstrom]

// Far above any measurement; bounds what a hostile file can claim.
constexpr int kMostPoints = 1 << 24;

constexpr int kFirstDataColumn = 3;
enum ColumnMode { I0Column = 1, Transmission = 2, Fluorescence = 3 };

double numberAt(const QStringList &items, int i)
{
    return i >= 0 && i < items.size() ? items[i].toDouble() : 0.0;
}

/// Whether a line begins with two plain numbers, and then those; else it is for itemsOf().
bool isPlainPair(const TextFile::Bytes &line, double &first, double &second)
{
    const char *at = line.begin;
    const char *end = line.end;
    while (end != at && end[-1] == '\r') {
        --end;
    }
    return orvel::readNumber(at, end, first) == orvel::NextNumber::Item &&
           orvel::readNumber(at, end, second) == orvel::NextNumber::Item;
}

/// The columns of a scan file, as its "Mode" lines give them.
struct ScanColumns {
    QVector<int> modes; ///< mode of item k
    int i0 = -1;
    int transmission = -1; ///< the first column of that mode
    int kind = -1;         ///< the first mode of 2 or more in the file: what is measured

    void take(const QStringList &modeLine)
    {
        modes.fill(0, modeLine.size());
        transmission = -1;
        for (int k = kFirstDataColumn; k < modeLine.size(); ++k) {
            modes[k] = modeLine[k].toInt();
            if (modes[k] == I0Column) {
                i0 = k;
            } else if (modes[k] >= Transmission && kind < 0) {
                kind = modes[k];
            }
            if (modes[k] == Transmission && transmission < 0) {
                transmission = k;
            }
        }
    }

    double mutOf(const QStringList &items) const
    {
        if (i0 < 0) {
            return 0.0;
        }
        const double i0Counts = numberAt(items, i0);
        if (kind == Transmission) {
            return transmission < 0 ? 0.0 : std::log(i0Counts / numberAt(items, transmission));
        }
        double sum = 0.0;
        if (kind == Fluorescence) {
            for (int k = kFirstDataColumn; k < qMin(modes.size(), items.size()); ++k) {
                if (modes[k] == Fluorescence) {
                    sum += items[k].toDouble() / i0Counts;
                }
            }
        }
        return sum;
    }
};

} // namespace

bool AMutE::readFile(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isFile() || !info.isReadable()) {
        m_readFailure = ReadFailure::NotARegularFile;
        return false;
    }
    m_filePath = path;
    m_fileName = info.fileName();
    try {
        return is9809(path) ? read9809(path) : readColumns(path);
    } catch (const std::bad_alloc &) {
        return readingDone(false, ReadFailure::NotEnoughMemory);
    }
}

bool AMutE::is9809(const QString &path) const
{
    TextFile file(path);
    QString line;
    if (!file.open()) {
        qDebug().noquote() << "Can't open a XAFS file" << path;
        return false;
    }
    return file.readLine(line) && line.simplified().startsWith(QLatin1String("9809"));
}

int AMutE::findToken(const QStringList &items, const QString &key)
{
    return items.indexOf(key);
}

bool AMutE::read9809(const QString &path)
{
    clearPoints();
    TextFile file(path);
    if (!file.open()) {
        qDebug().noquote() << "Can't open a XAFS file" << path;
        return readingDone(false, file.failure());
    }
    bool dataStarted = false;
    ScanColumns columns;
    double spacing = kDefaultSpacing;
    QString line;
    while (file.readLine(line)) {
        const QStringList items = itemsOf(line);
        if (dataStarted && items.size() > 4) {
            if (m_points.size() >= kMostPoints) {
                return readingDone(false, ReadFailure::TooMuchData);
            }
            const double angleDeg = items[1].toDouble();
            const double energyEv =
                kHcKevAngstrom / (2.0 * spacing * std::sin(angleDeg * kPi / 180.0)) * 1000.0;
            append(angleDeg, energyEv, columns.mutOf(items));
        }
        if (findToken(items, QStringLiteral("Mode")) >= 0) {
            columns.take(items);
        }
        if (findToken(items, QStringLiteral("Offset")) >= 0) {
            dataStarted = true; // from the next line on
        }
        const int d = findToken(items, QStringLiteral("D="));
        if (d >= 0 && d + 1 < items.size()) {
            spacing = items[d + 1].toDouble();
        }
    }
    if (file.failure() != ReadFailure::None) {
        return readingDone(false, file.failure());
    }
    return readingDone(dataStarted, ReadFailure::NoDataMark);
}

bool AMutE::readColumns(const QString &path)
{
    clearPoints();
    TextFile file(path);
    if (!file.open()) {
        qDebug().noquote() << "Can't open a XAFS file" << path;
        return readingDone(false, file.failure());
    }
    QString line;
    TextFile::Bytes bytes;
    while (file.isBytes() ? file.readBytes(bytes) : file.readLine(line)) {
        double energyEv = 0.0;
        double mut = 0.0;
        if (!file.isBytes() || !isPlainPair(bytes, energyEv, mut)) {
            const QStringList items = itemsOf(file.isBytes() ? TextFile::textOf(bytes) : line);
            if (items.size() < 2 || items[0].startsWith(QLatin1Char('#'))) {
                continue;
            }
            energyEv = items[0].toDouble();
            mut = items[1].toDouble();
        }
        if (m_points.size() >= kMostPoints) {
            return readingDone(false, ReadFailure::TooMuchData);
        }
        const double angleDeg = std::asin(kHcEvAngstrom / energyEv / kTwiceSpacing) / kPi * 180.0;
        append(angleDeg, energyEv, mut);
    }
    return readingDone(file.failure() == ReadFailure::None, file.failure());
}

bool AMutE::readingDone(bool complete, ReadFailure reason)
{
    if (!complete) {
        clearPoints();
        m_readFailure = reason;
        return false;
    }
    m_valid = !m_points.isEmpty();
    m_readFailure = m_valid ? ReadFailure::None : ReadFailure::NoPoint;
    if (m_valid) {
        fitVictoreens();
    }
    return m_valid;
}
